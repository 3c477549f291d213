// core/model/NameFold.cpp - case folding of model names.
#include "core/model/NameFold.h"

#include <unicode/uchar.h>
#include <unicode/utf16.h>

#include <algorithm>

namespace hv::vex::engine {
namespace {

/// Reads one code point at `at` and moves behind it. A lone surrogate stands for itself.
char32_t NextFolded(std::u16string_view text, std::size_t& at) {
  const char16_t unit = text[at++];
  if (unit < 0x80) {
    return unit >= u'A' && unit <= u'Z' ? unit + (u'a' - u'A') : unit;
  }
  char32_t point = unit;
  if (U16_IS_LEAD(unit) && at < text.size() && U16_IS_TRAIL(text[at])) {
    point = static_cast<char32_t>(U16_GET_SUPPLEMENTARY(unit, text[at]));
    ++at;
  }
  return static_cast<char32_t>(u_foldCase(static_cast<UChar32>(point), U_FOLD_CASE_DEFAULT));
}

}  // namespace

bool EqualFolded(std::u16string_view a, std::u16string_view b) {
  std::size_t i = 0;
  std::size_t k = 0;
  while (i < a.size() && k < b.size()) {
    if (NextFolded(a, i) != NextFolded(b, k)) return false;
  }
  return i == a.size() && k == b.size();
}

std::u16string Folded(std::u16string_view text) {
  std::u16string folded;
  folded.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const char32_t point = NextFolded(text, at);
    if (point < 0x10000) {
      folded.push_back(static_cast<char16_t>(point));
    } else {
      folded.push_back(static_cast<char16_t>(U16_LEAD(point)));
      folded.push_back(static_cast<char16_t>(U16_TRAIL(point)));
    }
  }
  return folded;
}

std::size_t FoldedHash::operator()(std::u16string_view text) const {
  std::uint64_t hash = 0xCBF29CE484222325u;  // FNV-1a over folded code points
  for (std::size_t at = 0; at < text.size();) {
    hash = (hash ^ NextFolded(text, at)) * 0x100000001B3u;
  }
  return static_cast<std::size_t>(hash);
}

void NameIndex::Add(std::u16string_view name, std::u16string_view baseName, std::int32_t position) {
  m_exact.emplace(name, position);
  m_folded.emplace(name, position);
  if (!baseName.empty()) m_base.emplace(baseName, position);
  m_longest = std::max({m_longest, name.size(), baseName.size()});
}

void NameIndex::Seal() {
  for (const auto& [baseName, position] : m_base) {
    m_exact.emplace(baseName, position);
    m_folded.emplace(baseName, position);
  }
}

std::int32_t NameIndex::Find(std::u16string_view name) const {
  if (name.size() > m_longest) return -1;
  if (const auto exact = m_exact.find(name); exact != m_exact.end()) return exact->second;
  const auto folded = m_folded.find(name);
  return folded == m_folded.end() ? -1 : folded->second;
}

std::int32_t NameIndex::FindBase(std::u16string_view baseName) const {
  const auto found = m_base.find(baseName);
  return found == m_base.end() ? -1 : found->second;
}

}  // namespace hv::vex::engine
