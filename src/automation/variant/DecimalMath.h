// automation/variant/DecimalMath.h - exact arithmetic on the 96-bit decimal numbers of variants.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <storefabric/Variant.h>

namespace hv::automation {

inline constexpr int kMaxDecimalScale = 28;
inline constexpr std::uint8_t kDecimalNegative = 0x80;

/// How a value that lies exactly between two is rounded.
enum class Tie : std::uint8_t { ToEven, Away };

/// A sign and a magnitude; the magnitude 0 has no sign of its own.
struct SignedMagnitude {
  bool negative = false;
  std::uint64_t value = 0;
};

/// True if the scale is 0 to 28 and the sign byte is 0 or 0x80.
bool IsValidDecimal(const Decimal& value);

/// A decimal from an integer and a scale, exact; the scale is kept.
Decimal MakeDecimal(SignedMagnitude number, std::uint8_t scale = 0);

/// The decimal `digits` times 10 to the power of `exponent`; `digits` holds ASCII digits with no
/// zeros at either end. What lies behind 28 decimals is rounded half to even.
/// \return nothing if the digits need more than 96 bits.
std::optional<Decimal> DecimalFromDigits(bool negative, std::string_view digits,
                                         std::int64_t exponent);

/// The value times 10 to the power of `shift` (0 or more), rounded to an integer; nothing if it
/// needs more than 64 bits.
std::optional<SignedMagnitude> DecimalToInteger(const Decimal& value, int shift, Tie tie);

/// The digits with a point, zeros behind the point dropped: "-1.5". A zero is "0".
std::string DecimalToText(const Decimal& value);

/// The value as a double; minus zero gives zero.
double DecimalToDouble(const Decimal& value);

/// Orders two valid decimals by value: below 0, 0, above 0.
int CompareDecimals(const Decimal& a, const Decimal& b);

}  // namespace hv::automation
