// util/conv/NumberReader.h - lenient readers of numbers in 8-bit texts. They never fail: what isn't
// a number is 0, and what stands behind one is left alone. A text ends at its first zero.
// Independent of the process's locale.
#pragma once

#include <cstdint>
#include <string_view>

namespace hv::util::conv {

/// \name Whole numbers
/// Blanks, one sign, digits. Values beyond the type stop at its limits.
/// @{
std::int32_t ReadInt32(std::string_view text);
std::int64_t ReadInt64(std::string_view text);
/// A minus sign negates modulo 2^64; a number beyond the type becomes the greatest one, with either
/// sign.
std::uint64_t ReadUInt64(std::string_view text);
/// @}

/// A decimal number: blanks, one sign, digits with at most one ".", and an exponent behind "e",
/// "E", "d" or "D", whose sign may be a blank. Only the first 17 significant digits count, the
/// others hold their places. From a decimal exponent of 309 on the result is infinite, below -340
/// it is zero, in between it is the double that is nearest to the digits that count.
double ReadDecimal(std::string_view text);

}  // namespace hv::util::conv
