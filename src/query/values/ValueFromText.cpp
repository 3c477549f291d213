// query/values/ValueFromText.cpp - the value that a piece of a value text stands for.
#include "query/values/ValueFromText.h"

#include "query/values/AttributeDataTypeHelper.h"

#include <charconv>
#include <optional>
#include <string>
#include <system_error>

namespace hv::vex {

namespace {

template <class Number>
std::optional<Number> ParseWhole(const std::string& text) {
  Number number{};
  const char* const end = text.data() + text.size();
  const std::from_chars_result read = std::from_chars(text.data(), end, number);
  if (read.ec != std::errc() || read.ptr != end) return std::nullopt;
  return number;
}

/// The text in ASCII without a plus sign in front, or nothing if it can't be a number.
std::optional<std::string> NumberBytes(std::u16string_view text) {
  if (text.starts_with(u"+") && !text.starts_with(u"+-")) text.remove_prefix(1);
  // Letters other than the exponent's are words to the reader of reals: "inf", "nan".
  if (text.empty() || text.find_first_not_of(u"0123456789+-.eE") != text.npos) return std::nullopt;
  return std::string(text.begin(), text.end());
}

}  // namespace

Variant ValueFromText(std::u16string_view text, std::int32_t dataType) {
  if (IsStringType(dataType) || IsDateType(dataType)) return Variant::Text(text);
  const std::optional<std::string> bytes = NumberBytes(text);
  if (!bytes) return Variant::Text(text);
  if (IsIntegerType(dataType)) {
    if (const auto number = ParseWhole<std::int64_t>(*bytes)) {
      const auto small = static_cast<std::int32_t>(*number);
      return small == *number ? Variant::I4(small) : Variant::I8(*number);
    }
  }
  const auto number = ParseWhole<double>(*bytes);
  return number ? Variant::R8(*number) : Variant::Text(text);
}

}  // namespace hv::vex
