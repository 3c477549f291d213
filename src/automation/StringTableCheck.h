// automation/StringTableCheck.h - what a string table file must be, testable while compiling.
// A text file of one language: see the head of resources/strings/en.txt for its form.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace hv::automation {

enum class StringTableFault : std::uint8_t {
  None,
  NoFinalNewline,       ///< the last line isn't ended
  BadUtf8,              ///< not well-formed UTF-8
  ControlCharacter,     ///< a character below the blank, for instance a carriage return
  NoNumber,             ///< the line begins with neither a number nor "#"
  BadNumber,            ///< a leading zero, or more than `kMaxStringNumber`
  NotAscending,         ///< a number that isn't above the one before
  NoTab,                ///< no tab behind the number
  EmptyText,            ///< nothing behind the tab
  BadEscape,            ///< a backslash with neither n, r, t nor backslash behind it
  BadPlaceholder,       ///< a percent sign that starts no placeholder
  MixedPlaceholders,    ///< numbered and plain placeholders in one text
  PlaceholderGap,       ///< the numbers aren't 1 to n, each once
  PlaceholderTypes,     ///< a reordered text that would read an argument as the wrong type
  TooManyPlaceholders,  ///< more numbered placeholders than the formatter takes
};

/// The outcome of a check: the fault and its line from 1, or no fault and the number of entries.
struct StringTableCheck {
  StringTableFault fault = StringTableFault::None;
  std::size_t line = 0;
  std::size_t entries = 0;
};

inline constexpr std::int32_t kMaxStringNumber = 999'999;

namespace stringtable {

constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// `string_view::find`, which g++ 12 can't evaluate while compiling with the undefined-behaviour
/// sanitizer on.
constexpr std::size_t Find(std::string_view text, char wanted, std::size_t from = 0) {
  for (std::size_t i = from; i < text.size(); ++i) {
    if (text[i] == wanted) return i;
  }
  return std::string_view::npos;
}

/// Checks the placeholders of one text.
constexpr StringTableFault CheckPlaceholders(std::string_view text) {
  constexpr std::size_t kMost = 9;  // one digit
  std::array<std::size_t, kMost> order{};
  std::array<char, kMost> type{};
  std::size_t numbered = 0;
  bool plain = false;
  for (std::size_t p = Find(text, '%'); p != std::string_view::npos; p = Find(text, '%', p + 1)) {
    const char next = p + 1 < text.size() ? text[p + 1] : '\0';
    if (next >= '1' && next <= '9') {
      const char letter = p + 2 < text.size() ? text[p + 2] : '\0';
      if (letter != 's' && letter != 'd') return StringTableFault::BadPlaceholder;
      if (numbered == kMost) return StringTableFault::TooManyPlaceholders;
      order[numbered] = static_cast<std::size_t>(next - '1');
      type[numbered++] = letter;
    } else if (next == 's' || next == 'd' || next == 'i') {
      plain = true;
    } else if (next == '%') {
      plain = true;
      ++p;
    } else {
      return StringTableFault::BadPlaceholder;
    }
  }
  if (numbered > 0 && plain) return StringTableFault::MixedPlaceholders;
  std::uint32_t seen = 0;
  for (std::size_t i = 0; i < numbered; ++i) {
    if (order[i] >= numbered || ((seen >> order[i]) & 1U) != 0)
      return StringTableFault::PlaceholderGap;
    seen |= 1U << order[i];
    // The formatter looks the type up by number although it is kept by place.
    if (type[order[i]] != type[i]) return StringTableFault::PlaceholderTypes;
  }
  return StringTableFault::None;
}

/// Length of the well-formed UTF-8 sequence at `pos`, or 0.
constexpr std::size_t Utf8SequenceLength(std::string_view text, std::size_t pos) {
  const auto byte = [text](std::size_t at) {
    return at < text.size() ? static_cast<std::uint8_t>(text[at]) : std::uint8_t{0};
  };
  const std::uint8_t lead = byte(pos);
  if (lead < 0x80) return 1;
  const std::size_t length = lead < 0xC2   ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                             : lead < 0xF5 ? 4
                                           : 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(pos + i) & 0xC0) != 0x80) return 0;
  }
  const std::uint8_t second = byte(pos + 1);
  const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
  const bool outside = (lead == 0xED && second >= 0xA0) || (lead == 0xF4 && second >= 0x90);
  return overlong || outside ? 0 : length;
}

/// Checks the characters of one text, escapes included.
constexpr StringTableFault CheckCharacters(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t length = Utf8SequenceLength(text, i);
    if (length == 0) return StringTableFault::BadUtf8;
    if (length == 1 && static_cast<std::uint8_t>(text[i]) < 0x20)
      return StringTableFault::ControlCharacter;
    if (text[i] == '\\') {
      const char next = i + 1 < text.size() ? text[i + 1] : '\0';
      if (next != 'n' && next != 'r' && next != 't' && next != '\\')
        return StringTableFault::BadEscape;
      ++i;
    }
    i += length;
  }
  return StringTableFault::None;
}

/// Reads the number at the start of an entry and its length in characters.
constexpr StringTableFault ReadNumber(std::string_view line, std::int32_t* number,
                                      std::size_t* length) {
  std::size_t i = 0;
  std::int32_t value = 0;
  for (; i < line.size() && IsDigit(line[i]); ++i) {
    value = value * 10 + (line[i] - '0');
    if (value > kMaxStringNumber) return StringTableFault::BadNumber;
  }
  if (i == 0) return StringTableFault::NoNumber;
  if (line[0] == '0') return StringTableFault::BadNumber;
  *number = value;
  *length = i;
  return StringTableFault::None;
}

/// Checks one entry; `previous` is the number before it and receives its own.
constexpr StringTableFault CheckEntry(std::string_view line, std::int32_t* previous) {
  std::int32_t number = 0;
  std::size_t length = 0;
  const StringTableFault fault = ReadNumber(line, &number, &length);
  if (fault != StringTableFault::None) return fault;
  if (number <= *previous) return StringTableFault::NotAscending;
  *previous = number;
  if (length == line.size() || line[length] != '\t') return StringTableFault::NoTab;
  const std::string_view text = line.substr(length + 1);
  if (text.empty()) return StringTableFault::EmptyText;
  const StringTableFault characters = CheckCharacters(text);
  return characters != StringTableFault::None ? characters : CheckPlaceholders(text);
}

}  // namespace stringtable

/// Checks a whole file.
constexpr StringTableCheck CheckStringTable(std::string_view file) {
  StringTableCheck result;
  std::int32_t previous = 0;
  while (!file.empty()) {
    ++result.line;
    const std::size_t end = stringtable::Find(file, '\n');
    if (end == std::string_view::npos) {
      result.fault = StringTableFault::NoFinalNewline;
      return result;
    }
    const std::string_view line = file.substr(0, end);
    file.remove_prefix(end + 1);
    if (line.empty() || line.front() == '#') continue;
    result.fault = stringtable::CheckEntry(line, &previous);
    if (result.fault != StringTableFault::None) return result;
    ++result.entries;
  }
  result.line = 0;
  return result;
}

}  // namespace hv::automation
