// core/plugins/atfx/AsciiText.h - small helpers for names and numbers, which are plain ASCII.
#pragma once

#include <string>
#include <string_view>

namespace hv::vex::engine::atfx {

/// White space of XML.
constexpr bool IsBlank(char16_t c) { return c == u' ' || c == u'\n' || c == u'\t' || c == u'\r'; }

constexpr char16_t ToAsciiLower(char16_t c) {
  return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + (u'a' - u'A')) : c;
}

constexpr bool EqualsIgnoringAsciiCase(std::u16string_view a, std::u16string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (ToAsciiLower(a[i]) != ToAsciiLower(b[i])) return false;
  }
  return true;
}

inline std::u16string AsciiLower(std::u16string_view text) {
  std::u16string result(text);
  for (char16_t& c : result) c = ToAsciiLower(c);
  return result;
}

constexpr std::u16string_view Trim(std::u16string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

constexpr bool IsAllBlank(std::u16string_view text) { return Trim(text).empty(); }

/// Widens text that is known to be ASCII.
inline std::u16string Widen(std::string_view ascii) {
  return std::u16string(ascii.begin(), ascii.end());
}

}  // namespace hv::vex::engine::atfx
