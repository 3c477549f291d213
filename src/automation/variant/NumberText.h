// automation/variant/NumberText.h - numbers in texts, as the automation layer writes and reads them
// in the neutral English locale.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "automation/variant/DecimalMath.h"

namespace hv::automation {

/// A number as a text tells it, with nothing rounded yet.
struct ParsedNumber {
  bool negative = false;
  /// The digits without zeros at either end; empty for zero. Times 10 to the power of `exponent`.
  std::string digits;
  std::int64_t exponent = 0;
  /// A text with &H or &O tells a bit pattern.
  bool isPattern = false;
  bool patternBeyond = false;  ///< the pattern has more than 64 bits
  std::uint64_t pattern = 0;
};

/// Reads a number: blanks around, a sign in front or behind or parentheses, `$` on either side,
/// commas anywhere behind the first digit, a point, an exponent with `e`; or `&H` and `&O` with
/// digits. A text ends at its first zero. \return nothing if the text is no number.
std::optional<ParsedNumber> ParseNumberText(std::u16string_view text);

/// The nearest double; nothing if it is beyond the range of doubles.
std::optional<double> ParsedToDouble(const ParsedNumber& number);

/// The number times 10 to the power of `shift`, rounded half to even; nothing if it needs more than
/// 64 bits. Not for patterns.
std::optional<SignedMagnitude> ParsedToInteger(const ParsedNumber& number, int shift);

/// Significant digits of a number in a text.
inline constexpr int kDoubleDigits = 15;
inline constexpr int kFloatDigits = 7;

/// The shortest of the fixed and the exponent form ("1E+15", "1E-05"), zeros at the end dropped.
/// Minus zero is "0"; infinities and NaN are "1.#INF", "-1.#INF", "1.#QNAN".
std::string FormatReal(double value, int digits);

/// The decimal of the value rounded to so many significant digits.
/// \return nothing for an infinity, a NaN or a value beyond 96 bits.
std::optional<Decimal> RealToDecimal(double value, int digits);

}  // namespace hv::automation
