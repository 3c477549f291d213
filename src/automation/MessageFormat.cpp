// automation/MessageFormat.cpp - the two formatters of the string table's texts.
#include "automation/MessageFormat.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <limits>

namespace hv::automation {
namespace {

constexpr std::size_t kMaxPlaceholders = 10;

WString Decimal(std::int32_t number) {
  std::array<char, 16> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  WString text;
  for (const char* p = digits.data(); p != end; ++p) text += static_cast<char16_t>(*p);
  return text;
}

constexpr bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

/// The decimal number at `pos`, held at the 32-bit limit; 0 if there is no digit.
std::int32_t ReadDecimal(std::u16string_view text, std::size_t pos) {
  constexpr std::int64_t kLimit = std::numeric_limits<std::int32_t>::max();
  std::int64_t value = 0;
  for (; pos < text.size() && IsDigit(text[pos]); ++pos)
    value = std::min<std::int64_t>(value * 10 + (text[pos] - u'0'), kLimit);
  return static_cast<std::int32_t>(value);
}

std::int32_t LeadingNumber(std::u16string_view text) {
  std::size_t pos = text.find_first_not_of(u" \t\r\n");
  if (pos == std::u16string_view::npos) return 0;
  const bool negative = text[pos] == u'-';
  if (negative || text[pos] == u'+') ++pos;
  const std::int32_t value = ReadDecimal(text, pos);
  return negative ? -value : value;
}

bool HasNumberedPlaceholder(std::u16string_view text) {
  for (std::size_t p = text.find(u'%'); p != std::u16string_view::npos;
       p = text.find(u'%', p + 1)) {
    if (p + 1 < text.size() && text[p + 1] >= u'1' && text[p + 1] <= u'9') return true;
  }
  return false;
}

/// A format whose placeholders have become "%s", with what stood in them.
struct Template {
  std::u16string text;
  std::size_t count = 0;
  std::array<std::size_t, kMaxPlaceholders> places{};  // where each "%s" stands in `text`
  std::array<std::int32_t, kMaxPlaceholders> order{};  // the number less one; -1 for none
  std::array<char16_t, kMaxPlaceholders> type{};
};

Template ReadTemplate(std::u16string_view format) {
  Template result;
  std::u16string& text = result.text;
  text = format;
  for (std::size_t p = text.find(u'%'); p != std::u16string::npos; p = text.find(u'%', p + 1)) {
    if (result.count < kMaxPlaceholders) {
      result.places[result.count] = p;
      result.order[result.count] = ReadDecimal(text, p + 1) - 1;
      result.type[result.count] = p + 2 < text.size() ? text[p + 2] : u'\0';
    }
    ++result.count;
    if (p + 1 < text.size()) text.erase(p + 1, 1);
    if (p + 1 < text.size()) {
      text[p + 1] = u's';
    } else {
      text += u's';
    }
  }
  return result;
}

}  // namespace

WString MessageArg::AsText() const { return m_isNumber ? Decimal(m_number) : m_text; }

WString MessageArg::AsNumber() const {
  return Decimal(m_isNumber ? m_number : LeadingNumber(m_text));
}

WString FormatMessage(std::u16string_view format, std::span<const MessageArg> args) {
  const Template parts = ReadTemplate(format);
  if (parts.count == 0) return format;
  if (parts.count > kMaxPlaceholders) return {};

  std::array<WString, kMaxPlaceholders> values;
  for (std::size_t i = 0; i < parts.count; ++i) {
    const std::int32_t number = parts.order[i];
    if (number < 0 || number >= static_cast<std::int32_t>(kMaxPlaceholders)) return u" ";
    const auto k = static_cast<std::size_t>(number);
    if (i >= args.size()) continue;
    // The type is kept by place but looked up by number. Callers' tables rely on it: a reordered
    // text decides by its own letters how the arguments are read.
    values[k] = parts.type[k] == u's' ? args[i].AsText() : args[i].AsNumber();
  }

  WString result;
  std::size_t copied = 0;
  for (std::size_t i = 0; i < parts.count; ++i) {
    const std::size_t place = parts.places[i];
    result.append(std::u16string_view(parts.text).substr(copied, place - copied));
    result.append(values[i]);
    copied = place + 2;
  }
  result.append(std::u16string_view(parts.text).substr(copied));
  return result;
}

WString LoadFormattedMessage(std::int32_t number, std::span<const MessageArg> args) {
  const WString* format = StringTable::Default().Find(number);
  return format ? FormatMessage(*format, args) : WString();
}

WString FormatPlain(std::u16string_view format, std::span<const MessageArg> args) {
  WString result;
  std::size_t used = 0;
  std::size_t copied = 0;
  for (std::size_t p = format.find(u'%'); p + 1 < format.size() && p != std::u16string_view::npos;
       p = format.find(u'%', copied)) {
    result.append(format.substr(copied, p - copied));
    copied = p + 2;
    switch (format[p + 1]) {
      case u's':
        if (used < args.size()) result.append(args[used].AsText());
        ++used;
        break;
      case u'd':
      case u'i':
        if (used < args.size()) result.append(args[used].AsNumber());
        ++used;
        break;
      case u'%':
        result += u'%';
        break;
      default:
        result.append(format.substr(p, 2));
        break;
    }
  }
  result.append(format.substr(std::min(copied, format.size())));
  return result;
}

WString FormatTableMessage(const StringTable& table, std::int32_t number,
                           std::span<const MessageArg> args) {
  const WString* text = table.Find(number);
  if (!text) return {};
  return HasNumberedPlaceholder(*text) ? FormatMessage(*text, args) : FormatPlain(*text, args);
}

WString FormatTableMessage(std::int32_t number, std::span<const MessageArg> args) {
  return FormatTableMessage(StringTable::Default(), number, args);
}

}  // namespace hv::automation
