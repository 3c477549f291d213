// automation/conv/AutomationDate.h - time values from and to the dates of the automation layer.
#pragma once

#include <optional>
#include <string_view>

#include <storefabric/WString.h>

#include "util/conv/TimeValue.h"

namespace hv::util::conv {

/// Both excluded: the dates that time objects show, 100-01-01 to 9999-12-31.
inline constexpr double kDateBelow = -657'435.0;
inline constexpr double kDateAbove = 2'958'465.0;

/// False for a NaN.
constexpr bool IsAutomationDate(double date) { return date > kDateBelow && date < kDateAbove; }

/// The date of a time value, to the millisecond. A time of day on the first day of the year 0 is a
/// date without a day. Times outside of the years 100 to 9999 give a number as well.
double ToAutomationDate(const TimeValue& time);

/// The time value of a date, to the millisecond; before 1899-12-30 to the second. A date from -1 to
/// 1 is a bare time of day, on the first day of the year 0. "No time" for what isn't a date.
TimeValue FromAutomationDate(double date);

/// \name Dates of the calendar
/// Between the dates that properties show and the digits that stores keep. Unlike the two above
/// they lose nothing: no date is a bare time of day but those of the first day of the year 0, and
/// dates before 1899-12-30 have their milliseconds.
/// @{

/// The moment of a date, to the millisecond. "No time" for a date outside of the years 100 to 9999.
TimeValue MomentOfDate(double date);

/// The date of a time in digits: "YYYYMMDDhhmmss" and up to nine decimals of a second, cut off
/// anywhere behind the year. What lies below a millisecond is dropped. A month or day of 0 counts
/// as 1, days and times of day run over.
/// \return nothing for a text that isn't made of 4 to 23 digits, or names a month above 12 or a day
///         above 31
std::optional<double> DateOfDigits(std::u16string_view digits);

/// The digits of a date, to the second, or to the millisecond if it isn't a whole one.
/// \return nothing for a date outside of the years 100 to 9999
std::optional<WString> DigitsOfDate(double date);
/// @}

}  // namespace hv::util::conv
