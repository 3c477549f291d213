// automation/MessageFormat.h - arguments into the texts of the string table.
#pragma once

#include <array>
#include <concepts>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include <storefabric/WString.h>

#include "automation/StringTable.h"

namespace hv::automation {

/// One argument of a message: a text or a 32-bit integer.
class MessageArg {
 public:
  MessageArg(WString text) : m_text(std::move(text)) {}
  MessageArg(const char16_t* text) : m_text(text) {}
  MessageArg(std::u16string_view text) : m_text(text) {}
  MessageArg(const std::u16string& text) : m_text(text) {}
  MessageArg(std::int32_t number) : m_number(number), m_isNumber(true) {}

  /// The argument where a text is asked for: the text, or the number in decimal.
  [[nodiscard]] WString AsText() const;
  /// The argument where a number is asked for, in decimal. A text counts as the number that it
  /// begins with, 0 if it begins with none.
  [[nodiscard]] WString AsNumber() const;

 private:
  WString m_text;
  std::int32_t m_number = 0;
  bool m_isNumber = false;
};

/// Fills a format with numbered placeholders ("%1s", "%2d": one digit, then "s" for a text or any
/// other letter for an integer). The digit is the place among the values that the text shows, so a
/// translation may reorder them: "%2s and %1s" with "a", "b" gives "b and a". An argument that
/// isn't there counts as an empty text.
/// \return the format as it stands if it has no placeholder; a single blank if a percent sign has
/// no
///         number from 1 to 10 behind it ("%s", "%%", "100%"); empty for more than 10 placeholders
[[nodiscard]] WString FormatMessage(std::u16string_view format, std::span<const MessageArg> args);

/// `FormatMessage` with a text of the default string table; empty if the number is unknown.
[[nodiscard]] WString LoadFormattedMessage(std::int32_t number, std::span<const MessageArg> args);

/// Fills plain placeholders in order: "%s" with a text, "%d" and "%i" with an integer; "%%" is a
/// percent sign. Other characters behind a percent sign stay as they are, together with it. An
/// argument that isn't there counts as an empty text.
[[nodiscard]] WString FormatPlain(std::u16string_view format, std::span<const MessageArg> args);

/// The text of that number with its arguments, by the formatter that its placeholders call for:
/// numbered ones go to `FormatMessage`, all others to `FormatPlain`. Empty if the number is
/// unknown.
[[nodiscard]] WString FormatTableMessage(const StringTable& table, std::int32_t number,
                                         std::span<const MessageArg> args);
/// The same with the default string table.
[[nodiscard]] WString FormatTableMessage(std::int32_t number, std::span<const MessageArg> args);

/// \name The same with the arguments written out
/// @{
template <class... Args>
concept MessageArgs = (std::convertible_to<const Args&, MessageArg> && ...);

template <class... Args>
requires MessageArgs<Args...>
[[nodiscard]] WString FormatMessage(std::u16string_view format, const Args&... args) {
  const std::array<MessageArg, sizeof...(Args)> all{MessageArg(args)...};
  return FormatMessage(format, std::span<const MessageArg>(all));
}
template <class... Args>
requires MessageArgs<Args...>
[[nodiscard]] WString LoadFormattedMessage(std::int32_t number, const Args&... args) {
  const std::array<MessageArg, sizeof...(Args)> all{MessageArg(args)...};
  return LoadFormattedMessage(number, std::span<const MessageArg>(all));
}
template <class... Args>
requires MessageArgs<Args...>
[[nodiscard]] WString FormatPlain(std::u16string_view format, const Args&... args) {
  const std::array<MessageArg, sizeof...(Args)> all{MessageArg(args)...};
  return FormatPlain(format, std::span<const MessageArg>(all));
}
template <class... Args>
requires MessageArgs<Args...>
[[nodiscard]] WString FormatTableMessage(std::int32_t number, const Args&... args) {
  const std::array<MessageArg, sizeof...(Args)> all{MessageArg(args)...};
  return FormatTableMessage(number, std::span<const MessageArg>(all));
}
/// @}

}  // namespace hv::automation
