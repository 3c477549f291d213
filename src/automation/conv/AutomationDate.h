// automation/conv/AutomationDate.h - time values from and to the dates of the automation layer.
#pragma once

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

}  // namespace hv::util::conv
