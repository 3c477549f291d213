// core/store/memory/TextArena.cpp - packs texts, one byte per character where that is enough.
#include "core/store/memory/TextArena.h"

#include <algorithm>
#include <cstring>

#include "core/query/TextMatch.h"

namespace hv::vex::engine {
namespace {

bool IsAscii(std::u16string_view text) {
  char16_t bits = 0;
  for (const char16_t unit : text) bits = static_cast<char16_t>(bits | unit);
  return bits < 0x80;
}

std::size_t LengthBytes(std::uint64_t length) {
  std::size_t count = 1;
  for (; length >= 0x80; length >>= 7) ++count;
  return count;
}

}  // namespace

std::u16string_view StoredText::Fold(std::u16string& buffer) const {
  if (!isAscii) return FoldCase(wide, buffer);
  buffer.resize(ascii.size());
  std::transform(ascii.begin(), ascii.end(), buffer.begin(), [](char c) {
    return static_cast<char16_t>(c >= 'A' && c <= 'Z' ? c + ('a' - 'A') : c);
  });
  return buffer;
}

std::uint64_t TextArena::Add(std::u16string_view text) {
  if (m_last != kNone) {
    const StoredText last = At(m_last);
    if (last.Size() == text.size() &&
        (last.isAscii ? std::equal(text.begin(), text.end(), last.ascii.begin(),
                                   [](char16_t a, char b) { return a == static_cast<char16_t>(b); })
                      : last.wide == text)) {
      return m_last;
    }
  }
  if (!IsAscii(text)) return AddWide(text);
  if (m_bytes.empty()) m_bytes.resize(1);
  const std::uint64_t handle = m_bytes.size();
  PutLength(std::uint64_t{text.size()} * 2);
  const std::size_t begin = m_bytes.size();
  m_bytes.resize(begin + text.size());
  std::transform(text.begin(), text.end(), m_bytes.begin() + static_cast<std::ptrdiff_t>(begin),
                 [](char16_t unit) { return static_cast<std::byte>(unit); });
  return m_last = handle;
}

std::uint64_t TextArena::AddFrom(const TextArena& other, std::uint64_t handle) {
  const StoredText text = other.At(handle);
  if (m_last != kNone) {
    const StoredText last = At(m_last);
    if (last.isAscii == text.isAscii && last.ascii == text.ascii && last.wide == text.wide) {
      return m_last;
    }
  }
  return text.isAscii ? AddAscii(text.ascii) : AddWide(text.wide);
}

std::uint64_t TextArena::AddAscii(std::string_view text) {
  if (m_bytes.empty()) m_bytes.resize(1);
  const std::uint64_t handle = m_bytes.size();
  PutLength(std::uint64_t{text.size()} * 2);
  const auto* units = reinterpret_cast<const std::byte*>(text.data());
  m_bytes.insert(m_bytes.end(), units, units + text.size());
  return m_last = handle;
}

std::uint64_t TextArena::AddWide(std::u16string_view text) {
  if (m_bytes.empty()) m_bytes.resize(1);
  const std::uint64_t length = std::uint64_t{text.size()} * 2 + 1;
  if ((m_bytes.size() + LengthBytes(length)) % 2 != 0) m_bytes.push_back(std::byte{0});
  const std::uint64_t handle = m_bytes.size();
  PutLength(length);
  const auto* units = reinterpret_cast<const std::byte*>(text.data());
  m_bytes.insert(m_bytes.end(), units, units + text.size() * sizeof(char16_t));
  return m_last = handle;
}

void TextArena::PutLength(std::uint64_t length) {
  for (; length >= 0x80; length >>= 7) {
    m_bytes.push_back(static_cast<std::byte>((length & 0x7F) | 0x80));
  }
  m_bytes.push_back(static_cast<std::byte>(length));
}

StoredText TextArena::At(std::uint64_t handle) const {
  const std::byte* at = m_bytes.data() + handle;
  std::uint64_t length = 0;
  for (unsigned shift = 0;; shift += 7) {
    const auto part = static_cast<std::uint64_t>(*at++);
    length |= (part & 0x7F) << shift;
    if (part < 0x80) break;
  }
  const auto units = static_cast<std::size_t>(length >> 1);
  if ((length & 1) != 0) return {{}, {reinterpret_cast<const char16_t*>(at), units}, false};
  return {{reinterpret_cast<const char*>(at), units}, {}, true};
}

}  // namespace hv::vex::engine
