// util/conv/Calendar.cpp - day numbers of the Gregorian calendar.
#include "util/conv/Calendar.h"

#include <array>
#include <chrono>
#include <cstddef>

namespace hv::util::conv {

namespace {

constexpr std::int64_t kYearsPerCycle = 400;
constexpr std::int64_t kDaysPerCycle = 146'097;

/// Days before each month; the last entry is the length of the year.
using MonthTable = std::array<std::int16_t, 13>;
constexpr MonthTable kCommonYear = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365};
constexpr MonthTable kLeapYear = {0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335, 366};

constexpr std::int64_t LeapDays(std::int64_t years) {
  return years / 4 - years / 100 + years / 400;
}

constexpr std::int64_t DivideDown(std::int64_t value, std::int64_t divisor) {
  const std::int64_t quotient = value / divisor;
  return value % divisor < 0 ? quotient - 1 : quotient;
}

}  // namespace

std::int64_t DayNumber(std::int64_t year, std::int32_t month, std::int32_t day) {
  if (month < 1 || month > 12) month = 1;
  if (day == 0) day = 1;
  const MonthTable& table = IsLeapYear(year) ? kLeapYear : kCommonYear;
  return year * 365 + table[static_cast<std::size_t>(month - 1)] +
         LeapDays(year > 0 ? year - 1 : year) + (day - 1);
}

CalendarDate DateOfDayNumber(std::int64_t number) {
  const std::int64_t days = DaysSinceYear0(number);
  const std::int64_t cycle = DivideDown(days, kDaysPerCycle);
  // The calendar of the standard library ends at the year 32767; one cycle is all it is asked.
  constexpr std::chrono::sys_days kYear0 = std::chrono::year{0} / 1 / 1;
  const std::chrono::year_month_day inCycle{kYear0 +
                                            std::chrono::days{days - cycle * kDaysPerCycle}};
  return {cycle * kYearsPerCycle + static_cast<int>(inCycle.year()),
          static_cast<std::int32_t>(static_cast<unsigned>(inCycle.month())),
          static_cast<std::int32_t>(static_cast<unsigned>(inCycle.day()))};
}

}  // namespace hv::util::conv
