// automation/variant/DecimalMath.cpp - exact arithmetic on 96-bit decimals, in 128 bits.
#include "automation/variant/DecimalMath.h"

#include <algorithm>
#include <array>

namespace hv::automation {

namespace {

__extension__ using UInt128 = unsigned __int128;

constexpr int kUInt128Digits = 39;
constexpr UInt128 kBehind96Bits = UInt128{1} << 96;

/// 10 to the powers that fit into 128 bits: 0 to 38.
constexpr auto kPowers = [] {
  std::array<UInt128, kUInt128Digits> powers{};
  UInt128 power = 1;
  for (UInt128& entry : powers) {
    entry = power;
    power *= 10;  // The last product wraps and is never used.
  }
  return powers;
}();

UInt128 PowerOfTen(int exponent) { return kPowers[static_cast<std::size_t>(exponent)]; }

UInt128 Mantissa(const Decimal& value) { return (UInt128{value.high} << 64) | value.low; }

UInt128 DivideRounding(UInt128 dividend, UInt128 divisor, Tie tie) {
  const UInt128 quotient = dividend / divisor;
  const UInt128 rest = dividend % divisor;
  const UInt128 missing = divisor - rest;
  if (rest > missing) return quotient + 1;
  if (rest == missing && (tie == Tie::Away || quotient % 2 == 1)) return quotient + 1;
  return quotient;
}

Decimal Assemble(bool negative, UInt128 mantissa, int scale) {
  Decimal value;
  value.low = static_cast<std::uint64_t>(mantissa);
  value.high = static_cast<std::uint32_t>(mantissa >> 64);
  if (mantissa == 0) return value;
  value.scale = static_cast<std::uint8_t>(scale);
  value.sign = negative ? kDecimalNegative : 0;
  return value;
}

std::string Digits(UInt128 value) {
  std::string digits;
  do {
    digits += static_cast<char>('0' + static_cast<int>(value % 10));
    value /= 10;
  } while (value != 0);
  std::ranges::reverse(digits);
  return digits;
}

/// The value of at most 38 digits.
UInt128 FromDigits(std::string_view digits) {
  UInt128 value = 0;
  for (const char c : digits) value = value * 10 + static_cast<unsigned>(c - '0');
  return value;
}

}  // namespace

bool IsValidDecimal(const Decimal& value) {
  return value.scale <= kMaxDecimalScale && (value.sign == 0 || value.sign == kDecimalNegative);
}

Decimal MakeDecimal(SignedMagnitude number, std::uint8_t scale) {
  Decimal value = Assemble(number.negative, number.value, scale);
  value.scale = scale;
  return value;
}

std::optional<Decimal> DecimalFromDigits(bool negative, std::string_view digits,
                                         std::int64_t exponent) {
  constexpr std::size_t kMostDigits = 29;
  if (digits.empty()) return Decimal{};
  if (digits.size() > kMostDigits) return std::nullopt;
  const auto room = static_cast<std::int64_t>(kMostDigits - digits.size());
  if (exponent > room) return std::nullopt;
  UInt128 mantissa = FromDigits(digits);
  if (exponent > 0) mantissa *= PowerOfTen(static_cast<int>(exponent));
  if (mantissa >= kBehind96Bits) return std::nullopt;
  if (exponent >= -kMaxDecimalScale) {
    return Assemble(negative, mantissa, exponent < 0 ? static_cast<int>(-exponent) : 0);
  }
  const std::int64_t surplus = -exponent - kMaxDecimalScale;
  if (surplus >= kUInt128Digits) return Decimal{};
  mantissa = DivideRounding(mantissa, PowerOfTen(static_cast<int>(surplus)), Tie::ToEven);
  return Assemble(negative, mantissa, kMaxDecimalScale);
}

std::optional<SignedMagnitude> DecimalToInteger(const Decimal& value, int shift, Tie tie) {
  UInt128 mantissa = Mantissa(value);
  const int decimals = value.scale - shift;
  if (decimals > 0) {
    mantissa = DivideRounding(mantissa, PowerOfTen(decimals), tie);
  } else if (__builtin_mul_overflow(mantissa, PowerOfTen(-decimals), &mantissa)) {
    return std::nullopt;
  }
  if (mantissa >> 64 != 0) return std::nullopt;
  return SignedMagnitude{value.sign != 0 && mantissa != 0, static_cast<std::uint64_t>(mantissa)};
}

std::string DecimalToText(const Decimal& value) {
  std::string text = Digits(Mantissa(value));
  if (text == "0") return text;
  if (value.scale > 0) {
    const std::size_t decimals = value.scale;
    if (text.size() <= decimals) text.insert(0, decimals + 1 - text.size(), '0');
    text.insert(text.size() - decimals, 1, '.');
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
  }
  if (value.sign != 0) text.insert(0, 1, '-');
  return text;
}

double DecimalToDouble(const Decimal& value) {
  // A quotient of doubles: its last bit is part of the contract, though it isn't always the
  // nearest.
  const double quotient =
      static_cast<double>(Mantissa(value)) / static_cast<double>(PowerOfTen(value.scale));
  return value.sign != 0 && quotient != 0 ? -quotient : quotient;
}

int CompareDecimals(const Decimal& a, const Decimal& b) {
  const UInt128 mantissaA = Mantissa(a);
  const UInt128 mantissaB = Mantissa(b);
  const bool negativeA = a.sign != 0 && mantissaA != 0;
  const bool negativeB = b.sign != 0 && mantissaB != 0;
  if (negativeA != negativeB) return negativeA ? -1 : 1;
  // Whole parts first, then the decimals widened to 28: each product stays below 128 bits.
  const auto order = [negativeA](UInt128 x, UInt128 y) {
    if (x == y) return 0;
    return (x < y) != negativeA ? -1 : 1;
  };
  const UInt128 unitA = PowerOfTen(a.scale);
  const UInt128 unitB = PowerOfTen(b.scale);
  if (const int whole = order(mantissaA / unitA, mantissaB / unitB); whole != 0) return whole;
  return order(mantissaA % unitA * PowerOfTen(kMaxDecimalScale - a.scale),
               mantissaB % unitB * PowerOfTen(kMaxDecimalScale - b.scale));
}

}  // namespace hv::automation
