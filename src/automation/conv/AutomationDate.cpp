// automation/conv/AutomationDate.cpp - time values from and to the dates of the automation layer.
#include "automation/conv/AutomationDate.h"

#include <cmath>
#include <cstdint>

#include "automation/variant/VariantTime.h"
#include "util/conv/Calendar.h"

namespace hv::util::conv {

namespace {

/// Days from 0000-01-01 to 1899-12-30.
constexpr std::int64_t kDaysToDate0 = 693'959;
/// Half a second: what the break-down of a date may add by rounding.
constexpr double kHalfSecond = 5.787037037037037e-6;

/// The milliseconds in a date, which its break-down into calendar fields rounds off.
std::int32_t MillisecondsOf(double date) {
  double whole = 0;
  const double hours = std::modf(date, &whole) * 24;
  const double minutes = std::modf(hours, &whole) * 60;
  const double seconds = std::modf(minutes, &whole) * 60;
  return static_cast<std::int32_t>(std::modf(seconds, &whole) * 1000 + 0.5);
}

}  // namespace

double ToAutomationDate(const TimeValue& time) {
  std::int64_t dayNumber = 0;
  std::int32_t secondOfDay = 0;
  time.SplitDay(&dayNumber, &secondOfDay);
  const double second = secondOfDay + time.ToParts().millisecond / 1000.0;
  const double timeOfDay = second / static_cast<double>(kSecondsPerDay);
  if (dayNumber == 0) return timeOfDay;
  const auto day = static_cast<double>(DaysSinceYear0(dayNumber) - kDaysToDate0);
  return day < 0 ? day - timeOfDay : day + timeOfDay;
}

TimeValue FromAutomationDate(double date) {
  if (date >= -1 && date <= 1) {
    double seconds = 0;
    const double fraction =
        std::modf(std::fabs(date) * static_cast<double>(kSecondsPerDay), &seconds);
    return TimeValue::FromSeconds(seconds, fraction);
  }
  if (!std::isfinite(date)) return {};
  automation::SystemTime fields;
  if (!automation::IsVariantTimeInRange(date)) return {};
  std::int32_t milliseconds = MillisecondsOf(date);
  const bool hasMilliseconds = milliseconds >= 1 && milliseconds <= 999;
  // The break-down rounds to the nearest second; half a second less makes that the second begun.
  if (!hasMilliseconds || !automation::VariantTimeToSystemTime(date - kHalfSecond, &fields)) {
    milliseconds = 0;
    if (!automation::VariantTimeToSystemTime(date, &fields)) return {};
  }
  return TimeValue::FromParts({fields.year, fields.month, fields.day, fields.hour, fields.minute,
                               fields.second, milliseconds});
}

}  // namespace hv::util::conv
