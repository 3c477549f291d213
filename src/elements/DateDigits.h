// elements/DateDigits.h - dates of the engine, which are digits, and dates of the automation layer.
#pragma once

#include <optional>
#include <string_view>

#include <storefabric/WString.h>

namespace hv::vex::easyImpl {

/// The automation date of a time in digits: "YYYYMMDDhhmmss" and up to nine decimals of a second,
/// cut off anywhere behind the year. What lies below a millisecond is dropped. A month or day of 0
/// counts as 1. A time on the first day of the year 0 is a bare time of day.
/// \return nothing for a text that isn't made of 4 to 23 digits, or names a month above 12 or a day
///         above 31.
std::optional<double> DateOfDigits(std::u16string_view digits);

/// The digits of an automation date, to the second, or to the millisecond if it isn't a whole one.
/// \return nothing for a date outside the years 100 to 9999.
std::optional<WString> DigitsOfDate(double date);

}  // namespace hv::vex::easyImpl
