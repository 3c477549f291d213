// query/logic/LogicChars.h - the characters and words of logic texts.
#pragma once

#include <cstddef>
#include <string_view>

namespace hv::vex::logic {

/// What is trimmed at the ends of a text. Inside it only the character 32 is a blank.
inline constexpr std::u16string_view kTrimSet = u" \n\r\t";

constexpr bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

constexpr bool IsLetter(char16_t unit, char16_t upper) {
  return unit == upper || unit == static_cast<char16_t>(upper + (u'a' - u'A'));
}

/// True if `word`, which is in upper case, stands at `pos` in any case.
constexpr bool HasWordAt(std::u16string_view text, std::size_t pos, std::u16string_view word) {
  if (pos > text.size() || text.size() - pos < word.size()) return false;
  for (std::size_t i = 0; i < word.size(); ++i) {
    if (!IsLetter(text[pos + i], word[i])) return false;
  }
  return true;
}

constexpr std::u16string_view Trim(std::u16string_view text) {
  const std::size_t first = text.find_first_not_of(kTrimSet);
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(kTrimSet) + 1 - first);
}

}  // namespace hv::vex::logic
