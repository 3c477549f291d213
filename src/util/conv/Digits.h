// util/conv/Digits.h - decimal digits of small numbers, in texts of either kind of unit.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace hv::util::conv {

/// "00" to "99".
inline constexpr std::array<char, 200> kDigitPairs = [] {
  std::array<char, 200> pairs{};
  for (std::size_t i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<char>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
}();

/// \name Writers
/// Write all digits of a field, zeros in front, and return the end. The number must fit the field.
/// @{
template <class Unit>
constexpr Unit* PutTwoDigits(Unit* out, std::uint32_t value) {
  const std::size_t pair = std::size_t{2} * value;
  out[0] = static_cast<Unit>(kDigitPairs[pair]);
  out[1] = static_cast<Unit>(kDigitPairs[pair + 1]);
  return out + 2;
}
template <class Unit>
constexpr Unit* PutThreeDigits(Unit* out, std::uint32_t value) {
  out[0] = static_cast<Unit>('0' + value / 100);
  return PutTwoDigits(out + 1, value % 100);
}
template <class Unit>
constexpr Unit* PutFourDigits(Unit* out, std::uint32_t value) {
  return PutTwoDigits(PutTwoDigits(out, value / 100), value % 100);
}
/// @}

/// The number that up to nine units are; nothing if one of them isn't a digit, or there are more.
template <class Unit>
constexpr std::optional<std::uint32_t> NumberOfDigits(std::basic_string_view<Unit> digits) {
  if (digits.size() > 9) return std::nullopt;
  std::uint32_t number = 0;
  for (const Unit unit : digits) {
    const auto digit = static_cast<std::uint32_t>(unit) - '0';
    if (digit > 9) return std::nullopt;
    number = number * 10 + digit;
  }
  return number;
}

}  // namespace hv::util::conv
