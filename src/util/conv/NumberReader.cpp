// util/conv/NumberReader.cpp - lenient readers of numbers in 8-bit texts.
#include "util/conv/NumberReader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <limits>
#include <optional>
#include <system_error>

namespace hv::util::conv {

namespace {

constexpr std::size_t kSignificantDigits = 17;
constexpr std::int64_t kInfiniteFrom = 309;
constexpr std::int64_t kZeroBelow = -340;
constexpr std::int64_t kAbsurdAbove = 340;
/// Up to here every whole number is a double.
constexpr std::uint64_t kLastExact = std::uint64_t{1} << 53;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

struct SignedText {
  bool negative = false;
  std::string_view digits;
};

/// Takes blanks and one sign off. A zero needs no search: it ends whatever is read behind these.
SignedText TakeSign(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  return {negative, text};
}

template <class Int>
Int ReadSigned(std::string_view text) {
  using Limits = std::numeric_limits<Int>;
  const SignedText number = TakeSign(text);
  std::uint64_t value = 0;
  const char* end = number.digits.data() + number.digits.size();
  const auto read = std::from_chars(number.digits.data(), end, value);
  if (read.ec == std::errc::result_out_of_range) value = std::numeric_limits<std::uint64_t>::max();
  if (value > static_cast<std::uint64_t>(Limits::max())) {
    return number.negative ? Limits::min() : Limits::max();
  }
  const Int magnitude = static_cast<Int>(value);
  return number.negative ? static_cast<Int>(-magnitude) : magnitude;
}

/// Digits of a decimal number: `mantissa` times 10 to the power of `exponent`.
struct Mantissa {
  std::uint64_t value = 0;
  std::size_t count = 0;  ///< of significant digits, 17 at most
  std::int64_t exponent = 0;
  bool sawZero = false;
  bool isWhole = true;  ///< no digit is left out
};

/// Reads digits with at most one point and takes them off the text.
Mantissa TakeMantissa(std::string_view* text) {
  Mantissa mantissa;
  bool behindPoint = false;
  std::size_t at = 0;
  for (; at < text->size(); ++at) {
    const char c = (*text)[at];
    if (c == '.' && !behindPoint) {
      behindPoint = true;
      continue;
    }
    if (!IsDigit(c)) break;
    const bool isLeadingZero = c == '0' && mantissa.count == 0;
    mantissa.sawZero |= c == '0';
    if (!isLeadingZero && mantissa.count < kSignificantDigits) {
      mantissa.value = mantissa.value * 10 + static_cast<std::uint64_t>(c - '0');
      ++mantissa.count;
      mantissa.exponent -= behindPoint ? 1 : 0;
    } else if (isLeadingZero) {
      mantissa.exponent -= behindPoint ? 1 : 0;
    } else {
      mantissa.exponent += behindPoint ? 0 : 1;
      mantissa.isWhole = false;
    }
  }
  text->remove_prefix(at);
  return mantissa;
}

bool StartsExponent(std::string_view text) {
  if (text.empty()) return false;
  const char letter = text.front();
  return letter == 'e' || letter == 'E' || letter == 'd' || letter == 'D';
}

/// Reads the exponent behind its letter; stops as soon as it is absurd.
std::int64_t ReadExponent(std::string_view text) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+') || text.starts_with(' ')) text.remove_prefix(1);
  std::int64_t exponent = 0;
  for (const char c : text) {
    if (!IsDigit(c) || exponent > kAbsurdAbove) break;
    exponent = exponent * 10 + (c - '0');
  }
  return negative ? -exponent : exponent;
}

/// The double nearest to `mantissa` times 10 to the power of `exponent`.
double Scale(std::uint64_t mantissa, std::int64_t exponent) {
  // A whole number below 2^53 and these powers are doubles without an error, and so their product
  // or quotient has only the one rounding that is due.
  static constexpr std::array<double, 23> kPowers = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                     1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                     1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  constexpr std::int64_t kMost = kPowers.size() - 1;
  if (mantissa <= kLastExact && exponent >= -kMost && exponent <= kMost) {
    const double power = kPowers[static_cast<std::size_t>(exponent < 0 ? -exponent : exponent)];
    const auto whole = static_cast<double>(mantissa);
    return exponent < 0 ? whole / power : whole * power;
  }
  constexpr std::size_t kRoom = 24;  // for each of the two numbers
  std::array<char, kRoom> number{};
  std::array<char, 2 * kRoom> text{};
  const char* numberEnd = std::to_chars(number.data(), number.data() + kRoom, mantissa).ptr;
  char* end = std::copy(static_cast<const char*>(number.data()), numberEnd, text.data());
  *end++ = 'e';
  end = std::to_chars(end, text.data() + text.size(), exponent).ptr;
  double value = 0;
  if (std::from_chars(text.data(), end, value).ec == std::errc::result_out_of_range) {
    return exponent > 0 ? std::numeric_limits<double>::infinity() : 0.0;
  }
  return value;
}

/// True if a number, as the standard library reads it, has no more digits than count.
bool HasAllDigitsCounted(std::string_view number) {
  if (number.size() <= kSignificantDigits) return true;
  number = number.substr(0, std::min(number.find('e'), number.find('E')));
  const bool hasPoint = number.find('.') != number.npos;
  return number.size() <= kSignificantDigits + (hasPoint ? 1 : 0);
}

/// The number in front of a text, where the standard library's reader goes by the same rules: all
/// its digits count, and it meets neither an exponent of another notation nor a limit.
std::optional<double> ReadPlain(std::string_view digits) {
  if (digits.empty() || (!IsDigit(digits.front()) && digits.front() != '.')) return std::nullopt;
  const char* const end = digits.data() + digits.size();
  double value = 0;
  const auto read = std::from_chars(digits.data(), end, value);
  if (read.ec != std::errc()) return std::nullopt;
  const auto length = static_cast<std::size_t>(read.ptr - digits.data());
  if (!HasAllDigitsCounted(digits.substr(0, length))) return std::nullopt;
  if (StartsExponent(digits.substr(length))) return std::nullopt;
  return value;
}

}  // namespace

std::int32_t ReadInt32(std::string_view text) { return ReadSigned<std::int32_t>(text); }

std::int64_t ReadInt64(std::string_view text) { return ReadSigned<std::int64_t>(text); }

std::uint64_t ReadUInt64(std::string_view text) {
  const SignedText number = TakeSign(text);
  std::uint64_t value = 0;
  const char* end = number.digits.data() + number.digits.size();
  const auto read = std::from_chars(number.digits.data(), end, value);
  if (read.ec == std::errc::result_out_of_range) return std::numeric_limits<std::uint64_t>::max();
  return number.negative ? std::uint64_t{0} - value : value;
}

double ReadDecimal(std::string_view text) {
  const auto [negative, digits] = TakeSign(text);
  if (const auto plain = ReadPlain(digits)) return negative ? -*plain : *plain;
  std::string_view rest = digits;
  const Mantissa mantissa = TakeMantissa(&rest);
  if (mantissa.count == 0) return negative && mantissa.sawZero ? -0.0 : 0.0;
  const bool hasExponent = StartsExponent(rest);
  const std::int64_t written = hasExponent ? ReadExponent(rest.substr(1)) : 0;
  const bool isAbsurd = written > kAbsurdAbove || written < -kAbsurdAbove;
  // The power of ten of the first digit, but an absurd exponent decides alone.
  const std::int64_t total =
      isAbsurd ? written
               : written + mantissa.exponent + static_cast<std::int64_t>(mantissa.count) - 1;
  double value = 0;
  if (total >= kInfiniteFrom) {
    value = std::numeric_limits<double>::infinity();
  } else if (!hasExponent && mantissa.isWhole && mantissa.value > kLastExact) {
    // As it stands it is a text that the standard library reads alike.
    std::from_chars(digits.data(), rest.data(), value);
  } else if (total >= kZeroBelow) {
    value = Scale(mantissa.value, written + mantissa.exponent);
  }
  return negative ? -value : value;
}

}  // namespace hv::util::conv
