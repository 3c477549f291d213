// core/model/NameFold.cpp - case folding of model names.
#include "core/model/NameFold.h"

#include <unicode/uchar.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <utility>

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
  const bool isOne = !baseName.empty() && name == baseName;
  Append(name, position, isOne ? kName | kBaseName : kName);
  if (!isOne && !baseName.empty()) Append(baseName, position, kBaseName);
  m_longest = std::max({m_longest, name.size(), baseName.size()});
}

void NameIndex::Append(std::u16string_view name, std::int32_t position, std::uint8_t kinds) {
  Entry entry{};
  entry.begin = static_cast<std::uint32_t>(m_text.size());
  entry.size = static_cast<std::uint32_t>(name.size());
  entry.hash = static_cast<std::uint32_t>(FoldedHash()(name));
  entry.position = position;
  entry.kinds = kinds;
  m_text += name;
  m_entries.push_back(entry);
  if (m_entries.size() <= m_buckets.size()) {
    Chain(static_cast<std::uint32_t>(m_entries.size() - 1));
    return;
  }
  constexpr std::size_t kFewest = 16;
  m_buckets.assign(std::max(kFewest, m_buckets.size() * 2), 0);
  for (std::uint32_t i = 0; i < m_entries.size(); ++i) Chain(i);
}

void NameIndex::Chain(std::uint32_t entry) {
  std::uint32_t& bucket = m_buckets[m_entries[entry].hash & (m_buckets.size() - 1)];
  m_entries[entry].next = std::exchange(bucket, entry + 1);
}

std::uint32_t NameIndex::FirstOf(std::uint32_t hash) const {
  return m_buckets.empty() ? 0 : m_buckets[hash & (m_buckets.size() - 1)];
}

void NameIndex::Seal() { m_isSealed = true; }

std::int32_t NameIndex::Find(std::u16string_view name) const {
  if (name.size() > m_longest) return -1;
  const auto hash = static_cast<std::uint32_t>(FoldedHash()(name));
  // A bucket leads from the last to the first, so the first of each kind stays.
  std::int32_t exact = -1;
  std::int32_t exactBase = -1;
  std::int32_t folded = -1;
  std::int32_t foldedBase = -1;
  for (std::uint32_t at = FirstOf(hash); at != 0; at = m_entries[at - 1].next) {
    const Entry& entry = m_entries[at - 1];
    if (entry.hash != hash) continue;
    const bool isName = (entry.kinds & kName) != 0;
    if (!isName && !m_isSealed) continue;
    const std::u16string_view found = NameOf(entry);
    if (found == name) {
      (isName ? exact : exactBase) = entry.position;
    } else if (EqualFolded(found, name)) {
      (isName ? folded : foldedBase) = entry.position;
    }
  }
  for (const std::int32_t position : {exact, exactBase, folded}) {
    if (position != -1) return position;
  }
  return foldedBase;
}

std::int32_t NameIndex::FindBase(std::u16string_view baseName) const {
  const auto hash = static_cast<std::uint32_t>(FoldedHash()(baseName));
  std::int32_t position = -1;
  for (std::uint32_t at = FirstOf(hash); at != 0; at = m_entries[at - 1].next) {
    const Entry& entry = m_entries[at - 1];
    if ((entry.kinds & kBaseName) == 0 || entry.hash != hash || NameOf(entry) != baseName) continue;
    position = entry.position;
  }
  return position;
}

}  // namespace hv::vex::engine
