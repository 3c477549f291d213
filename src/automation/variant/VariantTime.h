// automation/variant/VariantTime.h - dates of the automation layer and their calendar fields.
// A date is a count of days since 1899-12-30 in the Gregorian calendar, extended to the past; the
// part behind the point is the time of day, also where the count of days is negative.
#pragma once

#include <cstdint>

namespace hv::automation {

/// Calendar fields of a moment. All of them count from 1 or 0 as people write them.
struct SystemTime {
  std::uint16_t year = 0;
  std::uint16_t month = 0;      ///< 1 to 12
  std::uint16_t dayOfWeek = 0;  ///< 0 is Sunday; given, never read
  std::uint16_t day = 0;        ///< 1 to 31
  std::uint16_t hour = 0;
  std::uint16_t minute = 0;
  std::uint16_t second = 0;
  std::uint16_t millisecond = 0;  ///< always 0 when given, ignored when read
  friend bool operator==(const SystemTime&, const SystemTime&) = default;
};

/// The dates that can be broken down lie between these two, both excluded: 100-01-01 to 9999-12-31.
inline constexpr double kDateBelowFirst = -657435;
inline constexpr double kDateBehindLast = 2958466;

/// True if the date can be broken down. A NaN counts as such, and as day 0.
constexpr bool IsVariantTimeInRange(double date) {
  return !(date <= kDateBelowFirst) && !(date >= kDateBehindLast);
}

/// Breaks a date down, rounded to whole seconds; an exact half second goes up.
/// \return false, with `*time` untouched, for a date out of range.
bool VariantTimeToSystemTime(double date, SystemTime* time);

/// Makes a date of calendar fields. Years 0 to 49 stand for 2000 to 2049, years 50 to 99 for 1950
/// to 1999. Month 0 is the December before, day 0 the last day of the month before; a day up to 31
/// runs over into the next month; hours, minutes and seconds run over and count as signed 16-bit
/// numbers. \return false, with `*date` untouched, for a month above 12, a day above 31, a year
/// above 9999, or
///         a moment out of the range of dates.
bool SystemTimeToVariantTime(const SystemTime& time, double* date);

}  // namespace hv::automation
