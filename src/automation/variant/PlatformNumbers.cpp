// automation/variant/PlatformNumbers.cpp - the lenient number readers and the 40-digit format.
#include "automation/variant/PlatformNumbers.h"

#include <unicode/uchar.h>

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>

namespace hv::automation {

namespace {

int DigitOf(char unit) { return unit >= '0' && unit <= '9' ? unit - '0' : -1; }
int DigitOf(char16_t unit) { return u_charDigitValue(unit); }

bool IsBlank(char unit) { return unit == ' ' || (unit >= '\t' && unit <= '\r'); }
bool IsBlank(char16_t unit) { return unit != 0x85 && u_isUWhiteSpace(unit); }

template <class Char>
std::basic_string_view<Char> SkipBlanks(std::basic_string_view<Char> text) {
  text = text.substr(0, text.find(Char{}));
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  return text;
}

struct Magnitude {
  bool negative = false;
  bool beyond = false;  ///< the digits say more than `value`, which is then the greatest one
  std::uint64_t value = 0;
};

/// Reads a sign and digits, or nothing if there are no digits. The blanks are gone already.
template <class Char>
std::optional<Magnitude> ReadMagnitude(std::basic_string_view<Char> text) {
  Magnitude number;
  if (!text.empty() && (text.front() == Char{'-'} || text.front() == Char{'+'})) {
    number.negative = text.front() == Char{'-'};
    text.remove_prefix(1);
  }
  if (text.empty() || DigitOf(text.front()) < 0) return std::nullopt;
  for (const Char unit : text) {
    const int digit = DigitOf(unit);
    if (digit < 0) break;
    std::uint64_t next = 0;
    if (__builtin_mul_overflow(number.value, std::uint64_t{10}, &next) ||
        __builtin_add_overflow(next, static_cast<std::uint64_t>(digit), &next)) {
      number.beyond = true;
      number.value = std::numeric_limits<std::uint64_t>::max();
      break;
    }
    number.value = next;
  }
  return number;
}

template <class Int, class Char>
Int ReadSaturated(std::basic_string_view<Char> text) {
  using Limits = std::numeric_limits<Int>;
  const std::optional<Magnitude> number = ReadMagnitude(SkipBlanks(text));
  if (!number) return 0;
  if (number->value > static_cast<std::uint64_t>(Limits::max())) {
    return number->negative ? Limits::min() : Limits::max();
  }
  const Int value = static_cast<Int>(number->value);
  return number->negative ? static_cast<Int>(-value) : value;
}

void DropZerosBehindPoint(std::string* digits) {
  if (digits->find('.') == std::string::npos) {
    *digits += '.';
    return;
  }
  digits->erase(digits->find_last_not_of('0') + 1);
}

}  // namespace

std::int32_t ParseInt32LikeWtoi(std::u16string_view text) {
  return ReadSaturated<std::int32_t>(text);
}

std::int32_t ParseInt32LikeAtoi(std::string_view text) { return ReadSaturated<std::int32_t>(text); }

std::int64_t ParseInt64LikeAtoi64(std::string_view text) {
  return ReadSaturated<std::int64_t>(text);
}

int ScanUInt64LikeSscanf(std::string_view text, std::uint64_t* value) {
  text = SkipBlanks(text);
  if (text.empty()) return -1;
  const std::optional<Magnitude> number = ReadMagnitude(text);
  if (!number) return 0;
  const bool negate = number->negative && !number->beyond;
  *value = negate ? std::uint64_t{0} - number->value : number->value;
  return 1;
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
