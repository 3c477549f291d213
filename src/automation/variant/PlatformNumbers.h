// automation/variant/PlatformNumbers.h - numbers read and written by the C library rules that
// stored texts were made with: a reader that never fails, and the 40-digit general format.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace hv::automation {

/// `_wtoi`: skips blanks, takes one sign and the digits that follow, and stops at the first other
/// character; a text ends at its first zero. No digits give 0. Values beyond the type stop at its
/// limits. Blanks are the blanks of all scripts but U+0085, digits the decimal digits of all
/// scripts. Texts of 8-bit units are read by util/conv/NumberReader.h.
std::int32_t ParseInt32LikeWtoi(std::u16string_view text);

/// `_gcvt` with 40 significant digits, exact ones: the point is always kept ("5."), zeros behind it
/// are dropped, an absolute value below 0.1 or from 1e40 on has an exponent of two digits or more
/// ("1.e+100"). Infinities and NaNs give "inf", "-inf", "nan" and "-nan".
std::string FormatGcvt40(double value);

}  // namespace hv::automation
