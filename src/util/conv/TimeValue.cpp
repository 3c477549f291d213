// util/conv/TimeValue.cpp - the time value between calendar fields, seconds and digits.
#include "util/conv/TimeValue.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "util/conv/Calendar.h"
#include "util/conv/Digits.h"
#include "util/conv/NumberReader.h"

namespace hv::util::conv {

namespace {

constexpr double kTwoTo64 = 18'446'744'073'709'551'616.0;
constexpr double kTwoTo63 = 9'223'372'036'854'775'808.0;
constexpr double kNanosecondsPerSecond = 1e9;

using Limits = std::numeric_limits<std::int64_t>;

std::int64_t ClampedSum(std::int64_t a, std::int64_t b) {
  std::int64_t sum = 0;
  if (__builtin_add_overflow(a, b, &sum)) return b < 0 ? Limits::min() : Limits::max();
  return sum;
}

std::int64_t ClampedInteger(double value) {
  if (std::isnan(value)) return 0;
  if (value >= kTwoTo63) return Limits::max();
  if (value <= -kTwoTo63) return Limits::min();
  return static_cast<std::int64_t>(value);
}

/// What lies below a whole second, in units of 2^-64 seconds.
std::uint64_t FractionBits(double fraction) {
  if (!(fraction >= 0 && fraction < 1)) {
    if (!std::isfinite(fraction)) return 0;
    fraction -= std::floor(fraction);
  }
  const double scaled = fraction * kTwoTo64;
  return scaled >= kTwoTo64 ? 0 : static_cast<std::uint64_t>(scaled);
}

std::uint32_t Nanoseconds(std::uint64_t fraction) {
  return static_cast<std::uint32_t>(static_cast<double>(fraction) / kTwoTo64 *
                                    kNanosecondsPerSecond);
}

/// The decimals of a second as a fraction. For one value in sixteen the products end a hair below
/// the decimals, and breaking the fraction down, which cuts, would lose a nanosecond: it then gets
/// the next double.
std::uint64_t FractionOfParts(const TimeParts& parts) {
  const auto milliseconds = static_cast<std::uint32_t>(parts.millisecond);
  const auto microseconds = static_cast<std::uint32_t>(parts.microsecond);
  const auto nanoseconds = static_cast<std::uint32_t>(parts.nanosecond);
  const double fraction = ((nanoseconds * 0.001 + microseconds) * 0.001 + milliseconds) * 0.001;
  const std::uint64_t bits = FractionBits(fraction);
  if (milliseconds > 999 || microseconds > 999 || nanoseconds > 999) return bits;
  const std::uint32_t meant = milliseconds * 1'000'000 + microseconds * 1'000 + nanoseconds;
  if (Nanoseconds(bits) == meant) return bits;
  return static_cast<std::uint64_t>(std::ceil(std::nextafter(fraction, 1.0) * kTwoTo64));
}

std::int64_t SecondsOfFields(const TimeParts& parts) {
  const bool isDuration = parts.year == 0 && parts.month == 0;
  const std::int64_t days = isDuration ? parts.day : DayNumber(parts.year, parts.month, parts.day);
  return ((days * 24 + parts.hour) * 60 + parts.minute) * 60 + parts.second - kSecondsOfOrigin;
}

/// The group of digits at `start`, if the text is longer than what stands in front of it.
std::int32_t ReadGroup(std::string_view text, std::size_t start, std::size_t width) {
  if (text.size() <= start) return 0;
  const std::string_view group = text.substr(start, width);
  const auto number = NumberOfDigits(group);
  return number ? static_cast<std::int32_t>(*number) : ReadInt32(group);
}

/// Three decimals of a second; what is missing at their end counts as zeros.
std::int32_t ReadDecimals(std::string_view text, std::size_t start) {
  if (text.size() <= start) return 0;
  std::array<char, 3> group{'0', '0', '0'};
  const std::string_view given = text.substr(start, group.size());
  std::copy(given.begin(), given.end(), group.begin());
  return ReadGroup({group.data(), group.size()}, 0, group.size());
}

}  // namespace

TimeValue TimeValue::FromParts(const TimeParts& parts) {
  return {FractionOfParts(parts), SecondsOfFields(parts)};
}

TimeValue TimeValue::FromRecord(const TimeRecord& record) {
  const TimeParts parts{record.year, record.month,  record.day,
                        record.hour, record.minute, record.second};
  return {FractionBits(record.fraction), SecondsOfFields(parts)};
}

TimeValue TimeValue::FromSeconds(double seconds, double fraction) {
  return {FractionBits(fraction), ClampedSum(ClampedInteger(seconds), -kSecondsOfOrigin)};
}

TimeValue TimeValue::FromText(std::string_view text) {
  TimeParts parts;
  parts.year = ReadGroup(text, 0, 4);
  parts.month = ReadGroup(text, 4, 2);
  parts.day = ReadGroup(text, 6, 2);
  parts.hour = ReadGroup(text, 8, 2);
  parts.minute = ReadGroup(text, 10, 2);
  parts.second = ReadGroup(text, 12, 2);
  parts.millisecond = ReadDecimals(text, 14);
  parts.microsecond = ReadDecimals(text, 17);
  parts.nanosecond = ReadDecimals(text, 20);
  if (parts.month == 0) parts.month = 1;
  if (parts.day == 0) parts.day = 1;
  return FromParts(parts);
}

TimeValue TimeValue::FromText(std::u16string_view text) {
  std::array<char, kTimeTextLength> bytes{};
  text = text.substr(0, bytes.size());
  std::transform(text.begin(), text.end(), bytes.begin(),
                 [](char16_t unit) { return unit < 0x80 ? static_cast<char>(unit) : '?'; });
  return FromText(std::string_view(bytes.data(), text.size()));
}

double TimeValue::ToSeconds() const { return static_cast<double>(seconds) + FractionOfSecond(); }

double TimeValue::FractionOfSecond() const { return static_cast<double>(fraction) / kTwoTo64; }

std::int32_t TimeValue::MillisecondOfSecond() const {
  // The highest fractions are 1.0 as a double, which is no millisecond of this second any more.
  return static_cast<std::int32_t>(std::min(Nanoseconds(fraction) / 1'000'000, 999U));
}

void TimeValue::SplitDay(std::int64_t* dayNumber, std::int32_t* secondOfDay) const {
  std::int64_t sinceDay0 = 0;
  // Behind the last moment that can be counted from day 0 the seconds are taken as they are.
  if (__builtin_add_overflow(seconds, kSecondsOfOrigin, &sinceDay0)) sinceDay0 = seconds;
  *dayNumber = sinceDay0 / kSecondsPerDay;
  std::int64_t rest = sinceDay0 % kSecondsPerDay;
  if (rest < 0) {
    rest += kSecondsPerDay;
    --*dayNumber;
  }
  *secondOfDay = static_cast<std::int32_t>(rest);
}

TimeParts TimeValue::ToParts() const {
  using Year = std::numeric_limits<std::int32_t>;
  std::int64_t dayNumber = 0;
  std::int32_t rest = 0;
  SplitDay(&dayNumber, &rest);
  const CalendarDate date = DateOfDayNumber(dayNumber);
  const std::uint32_t nanoseconds = Nanoseconds(fraction);
  TimeParts parts;
  parts.year =
      static_cast<std::int32_t>(std::clamp<std::int64_t>(date.year, Year::min(), Year::max()));
  parts.month = date.month;
  parts.day = date.day;
  parts.hour = rest / 3600;
  parts.minute = rest / 60 % 60;
  parts.second = rest % 60;
  parts.millisecond = MillisecondOfSecond();
  parts.microsecond = static_cast<std::int32_t>(nanoseconds % 1'000'000 / 1'000);
  parts.nanosecond = static_cast<std::int32_t>(nanoseconds % 1'000);
  return parts;
}

TimeRecord TimeValue::ToRecord() const {
  const TimeParts parts = ToParts();
  return {parts.year,   parts.month,  parts.day,         parts.hour,
          parts.minute, parts.second, FractionOfSecond()};
}

void TimeValue::ToText(std::string* text, int length) const {
  if (length < 0) return;
  const TimeParts parts = ToParts();
  const auto field = [](std::int32_t value) { return static_cast<std::uint32_t>(value); };
  std::array<char, kTimeTextLength> digits{};
  char* out = PutFourDigits(digits.data(), field(std::clamp(parts.year, 0, 9'999)));
  for (const std::int32_t pair : {parts.month, parts.day, parts.hour, parts.minute, parts.second}) {
    out = PutTwoDigits(out, field(pair));
  }
  for (const std::int32_t triple : {parts.millisecond, parts.microsecond, parts.nanosecond}) {
    out = PutThreeDigits(out, field(triple));
  }
  text->assign(digits.data(), static_cast<std::size_t>(std::min(length, kTimeTextLength)));
  text->resize(static_cast<std::size_t>(length), ' ');
}

std::string TimeValue::ToText() const {
  std::string text;
  ToText(&text);
  return text;
}

TimeValue TimeValue::AddDays(std::int64_t days) const {
  std::int64_t offset = 0;
  if (__builtin_mul_overflow(days, kSecondsPerDay, &offset)) {
    offset = days < 0 ? Limits::min() : Limits::max();
  }
  return {fraction, ClampedSum(seconds, offset)};
}

}  // namespace hv::util::conv
