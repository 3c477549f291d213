// automation/variant/PlatformNumbers.h - numbers read and written by the C library rules that
// stored texts were made with: readers that never fail, and the 40-digit general format.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace hv::automation {

/// \name Readers
/// Each skips blanks, takes one sign and the digits that follow, and stops at the first other
/// character; a text ends at its first zero. No digits give 0. Values beyond the type stop at its
/// limits.
/// @{

/// `_wtoi`. Blanks are the blanks of all scripts but U+0085, digits the decimal digits of all
/// scripts.
std::int32_t ParseInt32LikeWtoi(std::u16string_view text);
/// `atoi` and `atol`: ASCII blanks and digits.
std::int32_t ParseInt32LikeAtoi(std::string_view text);
/// `_atoi64`: ASCII blanks and digits.
std::int64_t ParseInt64LikeAtoi64(std::string_view text);

/// `sscanf(text, "%I64u", value)`. A minus sign is accepted and negates modulo 2^64; a number
/// beyond the type becomes the greatest one, with either sign. \return 1; 0 if the text has
/// something else than a number; -1 if it has nothing but blanks. The
///         value is untouched unless 1 is returned.
int ScanUInt64LikeSscanf(std::string_view text, std::uint64_t* value);
/// @}

/// `_gcvt` with 40 significant digits, exact ones: the point is always kept ("5."), zeros behind it
/// are dropped, an absolute value below 0.1 or from 1e40 on has an exponent of two digits or more
/// ("1.e+100"). Infinities and NaNs give "inf", "-inf", "nan" and "-nan".
std::string FormatGcvt40(double value);

}  // namespace hv::automation
