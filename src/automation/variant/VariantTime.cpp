// automation/variant/VariantTime.cpp - calendar arithmetic behind automation dates.
#include "automation/variant/VariantTime.h"

#include <chrono>
#include <cmath>
#include <cstdlib>

namespace hv::automation {

namespace {

using std::chrono::sys_days;

constexpr std::int64_t kSecondsPerDay = 86400;

/// Absorbs the error that a date carries from having been added up: a whole second must not be read
/// as a little less than one.
constexpr double kReadingTolerance = 1e-11;

constexpr sys_days kOrigin = std::chrono::year{1899} / 12 / 30;

std::int64_t Signed16(std::uint16_t value) { return static_cast<std::int16_t>(value); }

std::uint16_t Field(std::int64_t value) { return static_cast<std::uint16_t>(value); }

}  // namespace

bool VariantTimeToSystemTime(double date, SystemTime* time) {
  if (!IsVariantTimeInRange(date)) return false;
  if (std::isnan(date)) date = 0;
  auto day = static_cast<std::int32_t>(date);
  const double seconds =
      (std::fabs(date - day) + kReadingTolerance) * static_cast<double>(kSecondsPerDay);
  auto second = static_cast<std::int32_t>(seconds);
  if (seconds - second > 0.5) ++second;
  if (second >= kSecondsPerDay) {
    second -= static_cast<std::int32_t>(kSecondsPerDay);
    ++day;
  }
  const sys_days moment = kOrigin + std::chrono::days{day};
  const std::chrono::year_month_day calendar{moment};
  time->year = Field(static_cast<int>(calendar.year()));
  time->month = Field(static_cast<unsigned>(calendar.month()));
  time->dayOfWeek = Field(std::chrono::weekday{moment}.c_encoding());
  time->day = Field(static_cast<unsigned>(calendar.day()));
  time->hour = Field(second / 3600);
  time->minute = Field(second / 60 % 60);
  time->second = Field(second % 60);
  time->millisecond = 0;
  return true;
}

bool SystemTimeToVariantTime(const SystemTime& time, double* date) {
  if (time.month > 12 || time.day > 31 || time.year > 9999) return false;
  int year = time.year;
  if (year < 50) {
    year += 2000;
  } else if (year < 100) {
    year += 1900;
  }
  const int month = time.month == 0 ? 12 : time.month;
  if (time.month == 0) --year;
  const sys_days first =
      std::chrono::year{year} / std::chrono::month{static_cast<unsigned>(month)} / 1;
  std::int64_t day = (first - kOrigin).count() + time.day - 1;

  std::int64_t seconds =
      Signed16(time.hour) * 3600 + Signed16(time.minute) * 60 + Signed16(time.second);
  day += seconds / kSecondsPerDay;
  seconds %= kSecondsPerDay;
  if (seconds < 0) {
    seconds += kSecondsPerDay;
    --day;
  }

  // The three parts are added one after the other: the sum's last bit is part of the contract.
  const double sign = day < 0 ? -1 : 1;
  const std::int64_t hours = seconds / 3600;
  const std::int64_t minutes = seconds / 60 % 60;
  auto sum = static_cast<double>(day);
  sum += sign * static_cast<double>(hours) / 24;
  sum += sign * static_cast<double>(minutes) / 1440;
  sum += sign * static_cast<double>(seconds % 60) / static_cast<double>(kSecondsPerDay);
  if (!IsVariantTimeInRange(sum)) return false;
  *date = sum;
  return true;
}

}  // namespace hv::automation
