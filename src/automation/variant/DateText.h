// automation/variant/DateText.h - dates in texts, as the automation layer writes and reads them in
// the neutral English locale.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace hv::automation {

/// "12/31/2008 10:30:00 AM". A date of no full day is a time alone, one without a time a day alone.
/// \return nothing for a date out of range.
std::optional<std::string> FormatDate(double date);

/// Reads a date, a time or both in either order. `:` and `.` separate the parts of a time; `/`,
/// `-`,
/// `,` and blanks those of a date. Months and weekdays have their English names, long or short. A
/// date in figures is month, day, year; where that is impossible day, month, year; with a first
/// figure that can only be a year, the year comes first. A date without a day is the first of its
/// month. \param currentYear  the year of a date that has none \return nothing if the text is no
/// date; a number alone is none.
std::optional<double> ParseDateText(std::u16string_view text, int currentYear);

/// The year of today in local time.
int CurrentYear();

}  // namespace hv::automation
