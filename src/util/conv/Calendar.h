// util/conv/Calendar.h - day numbers of the Gregorian calendar, extended backwards without end.
#pragma once

#include <cstdint>

namespace hv::util::conv {

inline constexpr std::int64_t kSecondsPerDay = 86'400;

/// Day number of 1904-01-01, where the seconds of a time value begin.
inline constexpr std::int64_t kDayOfOrigin = 695'420;
/// What lies between day 0 and the origin, in seconds.
inline constexpr std::int64_t kSecondsOfOrigin = kDayOfOrigin * kSecondsPerDay;

/// A day by its calendar fields.
struct CalendarDate {
  std::int64_t year = 0;
  std::int32_t month = 1;  ///< 1 to 12
  std::int32_t day = 1;    ///< 1 to 31
  friend bool operator==(const CalendarDate&, const CalendarDate&) = default;
};

constexpr bool IsLeapYear(std::int64_t year) {
  return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

/// The number of a day; day 0 is 0000-01-01. A month outside of 1 to 12 counts as January, a day of
/// 0 as the first; other days run over. The count of leap days makes 0000-12-31 and 0001-01-01 the
/// same number, 365. Stored times depend on it.
std::int64_t DayNumber(std::int64_t year, std::int32_t month, std::int32_t day);

/// The day of a number. 365 gives the last day of the year 0.
CalendarDate DateOfDayNumber(std::int64_t number);

/// How many days lie between 0000-01-01 and that day number, with each day counted once.
constexpr std::int64_t DaysSinceYear0(std::int64_t number) {
  return number > 365 ? number + 1 : number;
}

}  // namespace hv::util::conv
