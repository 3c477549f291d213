// automation/conv/AutomationDate.cpp - time values from and to the dates of the automation layer.
#include "automation/conv/AutomationDate.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "automation/variant/VariantTime.h"
#include "util/conv/Calendar.h"
#include "util/conv/Digits.h"

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
  // Before the origin too, where this isn't the nearest: other hosts see the same milliseconds.
  const double shifted = std::modf(seconds, &whole) * 1000 + 0.5;
  return static_cast<std::int32_t>(shifted);
}

constexpr std::int64_t kMillisecondsPerDay = kSecondsPerDay * 1000;
/// 1904-01-01, from which time values count, as a date.
constexpr std::int64_t kDateOfOrigin = 1462;

/// A date of whole days and a time of day, which counts away from zero on both sides of day 0.
double DateOf(std::int64_t day, std::int64_t millisecond) {
  const double time = static_cast<double>(millisecond) / static_cast<double>(kMillisecondsPerDay);
  return static_cast<double>(day) + (day < 0 ? -time : time);
}

}  // namespace

double ToAutomationDate(const TimeValue& time) {
  std::int64_t dayNumber = 0;
  std::int32_t secondOfDay = 0;
  time.SplitDay(&dayNumber, &secondOfDay);
  const double second = secondOfDay + time.MillisecondOfSecond() / 1000.0;
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

TimeValue MomentOfDate(double date) {
  if (!std::isfinite(date) || !automation::IsVariantTimeInRange(date)) return {};
  const double day = std::trunc(date);
  const std::int64_t milliseconds =
      std::llround(std::abs(date - day) * static_cast<double>(kMillisecondsPerDay));
  TimeParts parts;
  parts.millisecond = static_cast<std::int32_t>(milliseconds % 1000);
  TimeValue moment = TimeValue::FromParts(parts);
  moment.seconds =
      (static_cast<std::int64_t>(day) - kDateOfOrigin) * kSecondsPerDay + milliseconds / 1000;
  return moment;
}

std::optional<double> DateOfDigits(std::u16string_view digits) {
  static constexpr std::array<std::size_t, 7> kWidths{4, 2, 2, 2, 2, 2, 3};
  if (digits.size() < kWidths[0] || digits.size() > kTimeTextLength) return std::nullopt;
  std::array<std::uint32_t, kWidths.size()> fields{};
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const std::u16string_view field = digits.substr(0, kWidths[i]);
    const auto number = NumberOfDigits(field);
    if (!number) return std::nullopt;
    fields[i] = *number;
    // "5" behind the second is half of it.
    if (i == 6) {
      for (std::size_t missing = field.size(); missing < kWidths[i]; ++missing) fields[i] *= 10;
    }
    digits.remove_prefix(field.size());
  }
  const auto [year, givenMonth, givenDay, hour, minute, second, millisecond] = fields;
  const std::uint32_t month = std::max(givenMonth, 1U);
  const std::uint32_t day = std::max(givenDay, 1U);
  if (month > 12 || day > 31 || !NumberOfDigits(digits)) return std::nullopt;
  const std::int64_t time = ((std::int64_t{hour} * 60 + minute) * 60 + second) * 1000 + millisecond;
  if (year == 0 && month == 1 && day == 1) return DateOf(0, time);
  namespace chrono = std::chrono;
  constexpr chrono::sys_days kDay0 = chrono::year{1899} / 12 / 30;
  const chrono::sys_days first = chrono::year{static_cast<int>(year)} / chrono::month{month} / 1;
  return DateOf((first - kDay0).count() + day - 1 + time / kMillisecondsPerDay,
                time % kMillisecondsPerDay);
}

std::optional<WString> DigitsOfDate(double date) {
  const TimeValue moment = MomentOfDate(date);
  if (!moment.IsTime()) return std::nullopt;
  constexpr int kToTheSecond = 14;
  constexpr int kToTheMillisecond = 17;
  std::string digits;
  moment.ToText(&digits, moment.fraction == 0 ? kToTheSecond : kToTheMillisecond);
  return cor::FromUtf8(digits);
}

}  // namespace hv::util::conv
