// cor/Utf8.cpp - UTF-8 to the wide string and back.
#include <storefabric/WString.h>

#include <algorithm>
#include <cstring>

namespace hv::cor {

namespace {

constexpr char16_t kReplacement = 0xFFFD;

constexpr bool IsLead(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool IsTrail(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

/// What a first byte says about its sequence: how many bytes follow, the bits that it carries, and
/// the range of the second byte, which keeps out overlong forms, surrogates and numbers too large.
struct FirstByte {
  int following = 0;
  char32_t bits = 0;
  unsigned char low = 0x80;
  unsigned char high = 0xBF;
};

constexpr FirstByte ReadFirstByte(unsigned char byte) {
  if (byte >= 0xC2 && byte <= 0xDF) return {1, static_cast<char32_t>(byte & 0x1F)};
  if (byte >= 0xE0 && byte <= 0xEF) {
    FirstByte first{2, static_cast<char32_t>(byte & 0x0F)};
    if (byte == 0xE0) first.low = 0xA0;
    if (byte == 0xED) first.high = 0x9F;
    return first;
  }
  if (byte >= 0xF0 && byte <= 0xF4) {
    FirstByte first{3, static_cast<char32_t>(byte & 0x07)};
    if (byte == 0xF0) first.low = 0x90;
    if (byte == 0xF4) first.high = 0x8F;
    return first;
  }
  return {};
}

/// The character that starts at `*pos`, a byte beyond ASCII; moves `*pos` behind what was read.
char32_t ReadSequence(std::string_view text, std::size_t* pos) {
  FirstByte first = ReadFirstByte(static_cast<unsigned char>(text[(*pos)++]));
  if (first.following == 0) return kReplacement;
  char32_t character = first.bits;
  for (int i = 0; i < first.following; ++i) {
    if (*pos == text.size()) return kReplacement;
    const auto byte = static_cast<unsigned char>(text[*pos]);
    if (byte < first.low || byte > first.high) return kReplacement;
    character = character << 6 | (byte & 0x3F);
    first.low = 0x80;
    first.high = 0xBF;
    ++*pos;
  }
  return character;
}

/// How many bytes from `pos` on are ASCII; looks at eight at once.
std::size_t AsciiRun(std::string_view text, std::size_t pos) {
  const std::size_t start = pos;
  while (text.size() - pos >= 8) {
    std::uint64_t eight = 0;
    std::memcpy(&eight, text.data() + pos, 8);
    if ((eight & 0x8080808080808080ULL) != 0) break;
    pos += 8;
  }
  while (pos < text.size() && static_cast<unsigned char>(text[pos]) < 0x80) ++pos;
  return pos - start;
}

void AppendUtf8(std::string* out, char32_t c) {
  const auto byte = [](char32_t value) {
    return static_cast<char>(static_cast<unsigned char>(value));
  };
  if (c < 0x800) {
    out->push_back(byte(0xC0 | c >> 6));
  } else {
    if (c < 0x10000) {
      out->push_back(byte(0xE0 | c >> 12));
    } else {
      out->push_back(byte(0xF0 | c >> 18));
      out->push_back(byte(0x80 | (c >> 12 & 0x3F)));
    }
    out->push_back(byte(0x80 | (c >> 6 & 0x3F)));
  }
  out->push_back(byte(0x80 | (c & 0x3F)));
}

}  // namespace

std::string ToUtf8(std::u16string_view text) {
  std::string out;
  out.reserve(text.size() + text.size() / 8);
  std::size_t pos = 0;
  while (pos < text.size()) {
    std::size_t end = pos;
    while (end < text.size() && text[end] < 0x80) ++end;
    const std::size_t oldSize = out.size();
    out.resize(oldSize + (end - pos));
    std::transform(text.begin() + static_cast<std::ptrdiff_t>(pos),
                   text.begin() + static_cast<std::ptrdiff_t>(end),
                   out.begin() + static_cast<std::ptrdiff_t>(oldSize),
                   [](char16_t unit) { return static_cast<char>(unit); });
    pos = end;
    for (; pos < text.size() && text[pos] >= 0x80; ++pos) {
      char32_t character = text[pos];
      if (IsLead(text[pos]) && pos + 1 < text.size() && IsTrail(text[pos + 1])) {
        character = 0x10000 + ((character - 0xD800) << 10) + (text[pos + 1] - 0xDC00u);
        ++pos;
      } else if (IsLead(text[pos]) || IsTrail(text[pos])) {
        character = kReplacement;
      }
      AppendUtf8(&out, character);
    }
  }
  return out;
}

WString FromUtf8(std::string_view text) {
  WString out;
  if (text.empty()) return out;
  // No sequence gives more units than it has bytes.
  out.reserve(text.size());
  char16_t* to = out.m_begin;
  std::size_t pos = 0;
  while (pos < text.size()) {
    const std::size_t run = AsciiRun(text, pos);
    for (std::size_t i = 0; i < run; ++i) *to++ = static_cast<unsigned char>(text[pos + i]);
    pos += run;
    while (pos < text.size() && static_cast<unsigned char>(text[pos]) >= 0x80) {
      const char32_t character = ReadSequence(text, &pos);
      if (character >= 0x10000) {
        *to++ = static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10));
        *to++ = static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FF));
      } else {
        *to++ = static_cast<char16_t>(character);
      }
    }
  }
  out.SetLength(static_cast<std::size_t>(to - out.m_begin));
  // Texts of many-byte scripts would keep up to three times the memory that they need.
  if (out.size() < out.capacity() / 2) return WString(out.view());
  return out;
}

}  // namespace hv::cor
