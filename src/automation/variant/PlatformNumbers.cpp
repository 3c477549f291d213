// automation/variant/PlatformNumbers.cpp - the lenient number reader and the 40-digit format.
#include "automation/variant/PlatformNumbers.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace hv::automation {

namespace {

bool IsBlank(char16_t unit) { return unit != 0x85 && u_isUWhiteSpace(unit); }

void DropZerosBehindPoint(std::string* digits) {
  if (digits->find('.') == std::string::npos) {
    *digits += '.';
    return;
  }
  digits->erase(digits->find_last_not_of('0') + 1);
}

}  // namespace

std::int32_t ParseInt32LikeWtoi(std::u16string_view text) {
  using Limits = std::numeric_limits<std::int32_t>;
  text = text.substr(0, text.find(u'\0'));
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  const bool negative = text.starts_with(u'-');
  if (negative || text.starts_with(u'+')) text.remove_prefix(1);
  std::int64_t value = 0;
  for (const char16_t unit : text) {
    const std::int32_t digit = u_charDigitValue(unit);
    if (digit < 0 || value > Limits::max()) break;
    value = value * 10 + digit;
  }
  if (negative) value = -value;
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

std::string FormatGcvt40(double value) {
  constexpr int kDigits = 40;
  if (!std::isfinite(value))
    return std::signbit(value) ? (std::isnan(value) ? "-nan" : "-inf")
                               : (std::isnan(value) ? "nan" : "inf");
  // Sign, 40 digits, point, and "e-324" at most.
  char buffer[64];
  const auto scientific = std::to_chars(buffer, buffer + sizeof buffer, value,
                                        std::chars_format::scientific, kDigits - 1);
  std::string text(buffer, scientific.ptr);
  const std::size_t mark = text.find('e');
  const int exponent = std::atoi(text.c_str() + mark + 1);
  if (value != 0 && (exponent < -1 || exponent >= kDigits)) {
    std::string digits = text.substr(0, mark);
    DropZerosBehindPoint(&digits);
    return digits + text.substr(mark);
  }
  const int decimals = kDigits - 1 - exponent;
  const auto fixed =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
  text.assign(buffer, fixed.ptr);
  DropZerosBehindPoint(&text);
  return text;
}

}  // namespace hv::automation
