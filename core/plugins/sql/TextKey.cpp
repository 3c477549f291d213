// core/plugins/sql/TextKey.cpp - the two encodings, folding, and dates of other tools.
#include "core/plugins/sql/TextKey.h"

#include <algorithm>

#include "core/query/TextMatch.h"

namespace hv::vex::engine::sql {
namespace {

bool IsHigh(char16_t c) { return c >= 0xD800 && c < 0xDC00; }
bool IsLow(char16_t c) { return c >= 0xDC00 && c < 0xE000; }

void AppendThree(char16_t c, std::string& out) {
  out += static_cast<char>(0xE0 | (c >> 12));
  out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
  out += static_cast<char>(0x80 | (c & 0x3F));
}

void AppendUnit(char16_t c, std::string& out) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | (c >> 6));
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    AppendThree(c, out);
  }
}

bool IsContinuation(std::string_view text, std::size_t at) {
  return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
}

}  // namespace

void AppendStored(std::u16string_view text, std::string& out) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t c = text[i];
    if (IsHigh(c) && i + 1 < text.size() && IsLow(text[i + 1])) {
      const char32_t full = 0x10000 + ((char32_t{c} - 0xD800) << 10) + (text[i + 1] - 0xDC00u);
      out += static_cast<char>(0xF0 | (full >> 18));
      out += static_cast<char>(0x80 | ((full >> 12) & 0x3F));
      out += static_cast<char>(0x80 | ((full >> 6) & 0x3F));
      out += static_cast<char>(0x80 | (full & 0x3F));
      ++i;
    } else {
      AppendUnit(c, out);
    }
  }
}

std::string ToStored(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  AppendStored(text, out);
  return out;
}

std::string ToKeyBytes(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  for (const char16_t c : text) AppendUnit(c, out);
  return out;
}

void AppendUtf16(std::string_view stored, std::u16string& out) {
  for (std::size_t i = 0; i < stored.size();) {
    const auto lead = static_cast<unsigned char>(stored[i]);
    if (lead < 0x80) {
      std::size_t end = i + 1;
      while (end < stored.size() && static_cast<unsigned char>(stored[end]) < 0x80) ++end;
      out.append(stored.begin() + static_cast<std::ptrdiff_t>(i),
                 stored.begin() + static_cast<std::ptrdiff_t>(end));
      i = end;
      continue;
    }
    const auto bits = [&](std::size_t k) {
      return static_cast<char32_t>(static_cast<unsigned char>(stored[i + k]) & 0x3F);
    };
    std::size_t length = 1;
    char32_t c = 0xFFFD;
    if (lead >= 0xC2 && lead < 0xE0 && IsContinuation(stored, i + 1)) {
      c = (char32_t{lead & 0x1Fu} << 6) | bits(1);
      length = 2;
    } else if (lead >= 0xE0 && lead < 0xF0 && IsContinuation(stored, i + 1) &&
               IsContinuation(stored, i + 2)) {
      c = (char32_t{lead & 0x0Fu} << 12) | (bits(1) << 6) | bits(2);
      length = 3;
    } else if (lead >= 0xF0 && lead < 0xF5 && IsContinuation(stored, i + 1) &&
               IsContinuation(stored, i + 2) && IsContinuation(stored, i + 3)) {
      c = (char32_t{lead & 0x07u} << 18) | (bits(1) << 12) | (bits(2) << 6) | bits(3);
      length = 4;
    }
    if (c > 0x10FFFF) c = 0xFFFD;
    if (c >= 0x10000) {
      out += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
      out += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
    } else {
      out += static_cast<char16_t>(c);
    }
    i += length;
  }
}

std::u16string FromStored(std::string_view stored) {
  std::u16string text;
  AppendUtf16(stored, text);
  return text;
}

bool HasKey(OdsType type) {
  return type == OdsType::String || type == OdsType::ExternalReference || type == OdsType::Date;
}

std::optional<std::string> KeyOf(OdsType type, std::u16string_view text, std::string_view stored) {
  if (type == OdsType::Date) {
    const auto digits = NormalizeDate14(text);
    std::string key = digits ? std::string(digits->begin(), digits->end()) : std::string();
    if (key == stored) return std::nullopt;
    return key;
  }
  std::u16string buffer;
  std::string key = ToKeyBytes(FoldCase(text, buffer));
  if (key == stored) return std::nullopt;
  return key;
}

std::string FoldedKey(std::u16string_view text) {
  std::u16string buffer;
  return ToKeyBytes(FoldCase(text, buffer));
}

std::string BehindPrefix(std::string prefix) {
  // No byte of a key is 0xFF, so the last one can always be counted up.
  if (!prefix.empty()) prefix.back() = static_cast<char>(prefix.back() + 1);
  return prefix;
}

int CompareStored(std::string_view a, std::string_view b) {
  const auto [x, y] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
  if (x == a.end() || y == b.end()) return (y == b.end() ? 0 : -1) + (x == a.end() ? 0 : 1);
  // Beyond the basic plane units begin with D8: before E000 and behind everything else.
  const auto weight = [](unsigned char byte) { return byte >= 0xF0 ? 0xED * 2 + 1 : byte * 2; };
  return weight(static_cast<unsigned char>(*x)) < weight(static_cast<unsigned char>(*y)) ? -1 : 1;
}

std::u16string DateDigits(std::u16string_view text) {
  if (text.size() < 10 || text[4] != u'-') return std::u16string(text);
  std::u16string digits;
  for (const char16_t c : text) {
    if (c >= u'0' && c <= u'9') {
      digits += c;
    } else if (digits.size() >= 14 && c != u'.' && c != u',') {
      break;  // the zone: times are taken as they stand
    }
  }
  constexpr std::size_t kLongest = 23;
  if (digits.size() > kLongest) digits.resize(kLongest);
  return digits;
}

}  // namespace hv::vex::engine::sql
