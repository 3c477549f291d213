// elements/DateDigits.cpp - dates of the engine, which are digits, and dates of the automation
// layer.
#include "elements/DateDigits.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "automation/variant/VariantTime.h"

namespace hv::vex::easyImpl {

namespace {

constexpr std::int64_t kMillisecondsPerDay = 86'400'000;
constexpr double kDaysPerCycle = 146'097;  // 400 years of the calendar
constexpr std::uint16_t kYearsPerCycle = 400;
constexpr std::size_t kYearDigits = 4;
constexpr std::size_t kAllDigits = 23;

/// The next `width` digits as a number; fewer at the end of the text, none is 0.
std::uint16_t TakeNumber(std::u16string_view& digits, std::size_t width) {
  const std::u16string_view taken = digits.substr(0, width);
  digits.remove_prefix(taken.size());
  unsigned number = 0;
  for (const char16_t digit : taken) number = number * 10 + (digit - u'0');
  return static_cast<std::uint16_t>(number);
}

/// A date with its time: the time counts away from zero on both sides of day 0.
double WithTime(double days, double time) { return days < 0 ? days - time : days + time; }

}  // namespace

std::optional<double> DateOfDigits(std::u16string_view digits) {
  const auto isDigit = [](char16_t unit) { return unit >= u'0' && unit <= u'9'; };
  if (digits.size() < kYearDigits || digits.size() > kAllDigits ||
      !std::ranges::all_of(digits, isDigit)) {
    return std::nullopt;
  }
  automation::SystemTime day;
  day.year = TakeNumber(digits, kYearDigits);
  day.month = std::max<std::uint16_t>(TakeNumber(digits, 2), 1);
  day.day = std::max<std::uint16_t>(TakeNumber(digits, 2), 1);
  const std::int64_t hour = TakeNumber(digits, 2);
  const std::int64_t minute = TakeNumber(digits, 2);
  const std::int64_t second = TakeNumber(digits, 2);
  // "5" behind the second is half of it.
  const std::size_t missing = 3 - std::min<std::size_t>(digits.size(), 3);
  std::int64_t millisecond = TakeNumber(digits, 3);
  for (std::size_t i = 0; i < missing; ++i) millisecond *= 10;
  const double time =
      static_cast<double>(((hour * 60 + minute) * 60 + second) * 1000 + millisecond) /
      static_cast<double>(kMillisecondsPerDay);
  if (day.year == 0 && day.month == 1 && day.day == 1) return time;
  // The platform's function takes two figures of a year for a year of our days.
  const bool shift = day.year < 100;
  if (shift) day.year = static_cast<std::uint16_t>(day.year + kYearsPerCycle);
  double days = 0;
  if (!automation::SystemTimeToVariantTime(day, &days)) return std::nullopt;
  return WithTime(shift ? days - kDaysPerCycle : days, time);
}

std::optional<WString> DigitsOfDate(double date) {
  if (!std::isfinite(date) || !automation::IsVariantTimeInRange(date)) return std::nullopt;
  double days = std::trunc(date);
  std::int64_t time =
      std::llround(std::abs(date - days) * static_cast<double>(kMillisecondsPerDay));
  if (time == kMillisecondsPerDay) {
    time = 0;
    days += 1;
  }
  automation::SystemTime day;
  if (!automation::VariantTimeToSystemTime(days, &day)) return std::nullopt;
  const auto part = [time](std::int64_t unit, std::int64_t count) {
    return static_cast<int>(time / unit % count);
  };
  std::array<char, kAllDigits + 1> text{};
  int length =
      std::snprintf(text.data(), text.size(), "%04d%02d%02d%02d%02d%02d", day.year, day.month,
                    day.day, part(3'600'000, 24), part(60'000, 60), part(1'000, 60));
  if (const int millisecond = part(1, 1'000); millisecond != 0) {
    const auto used = static_cast<std::size_t>(length);
    length += std::snprintf(text.data() + used, text.size() - used, "%03d", millisecond);
  }
  return cor::FromUtf8({text.data(), static_cast<std::size_t>(length)});
}

}  // namespace hv::vex::easyImpl
