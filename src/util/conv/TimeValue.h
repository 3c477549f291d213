// util/conv/TimeValue.h - the one type of every date and time, and its text of 23 digits.
// No time zone: a time value is what a clock on the wall showed.
#pragma once

#include <compare>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "util/conv/TimeRecord.h"

namespace hv::util::conv {

/// The nine calendar fields of a time value. Fields that go in may be out of their ranges, see
/// `TimeValue::FromParts`; fields that come out never are.
struct TimeParts {
  std::int32_t year = 0;
  std::int32_t month = 0;
  std::int32_t day = 0;
  std::int32_t hour = 0;
  std::int32_t minute = 0;
  std::int32_t second = 0;
  std::int32_t millisecond = 0;
  std::int32_t microsecond = 0;
  std::int32_t nanosecond = 0;
  friend auto operator<=>(const TimeParts&, const TimeParts&) = default;
};

/// Characters of the text form "YYYYMMDDhhmmss" with nine decimals of a second.
inline constexpr int kTimeTextLength = 23;

/// A moment, to 2^-64 of a second. A plain value; the layout of two 64-bit words is frozen.
struct TimeValue {
  static constexpr std::int64_t kNoTime = std::numeric_limits<std::int64_t>::min();

  std::uint64_t fraction = 0;      ///< of a second, times 2^64
  std::int64_t seconds = kNoTime;  ///< since 1904-01-01 00:00:00

  /// From calendar fields. A month outside of 1 to 12 counts as January, a day of 0 as the first;
  /// hours, minutes and seconds run over. Of the decimals of a second only what lies below a whole
  /// second stays. A year and a month that are both 0 make a bare duration of `day` days and the
  /// time of day.
  static TimeValue FromParts(const TimeParts& parts);
  /// The same with the decimals as one fraction of a second.
  static TimeValue FromRecord(const TimeRecord& record);
  /// Seconds and a fraction of a second since day 0 of the calendar (0000-01-01). What is no number
  /// counts as 0, what is beyond the range stops at its limit.
  static TimeValue FromSeconds(double seconds, double fraction);
  /// From digits, cut off anywhere: what is missing is 0, or 1 for month and day. Three decimals of
  /// a second make a group; one that is cut has its zeros at the end ("5" is 500). Reads whatever
  /// comes: characters that aren't digits end the number that they stand in.
  static TimeValue FromText(std::string_view text);
  static TimeValue FromText(std::u16string_view text);

  /// False for the default value.
  [[nodiscard]] bool IsTime() const { return *this != TimeValue(); }
  [[nodiscard]] std::int64_t GetSecondsBase() const { return seconds; }
  /// Seconds since 1904-01-01 with their fraction.
  [[nodiscard]] double ToSeconds() const;
  /// Fraction of a second, as a double.
  [[nodiscard]] double FractionOfSecond() const;
  /// Whole milliseconds of the second, 0 to 999.
  [[nodiscard]] std::int32_t MillisecondOfSecond() const;

  /// The calendar fields, cut to whole nanoseconds. A year beyond 32 bits stops at their limits.
  [[nodiscard]] TimeParts ToParts() const;
  [[nodiscard]] TimeRecord ToRecord() const;
  /// Number of the day (see Calendar.h), and the seconds of that day that are over.
  void SplitDay(std::int64_t* dayNumber, std::int32_t* secondOfDay) const;

  /// The 23 digits; years outside of 0 to 9999 show as the nearer of the two.
  /// \param length  how much is wanted: less cuts the text, more adds blanks, 0 empties `text`, a
  ///                negative length leaves it untouched
  void ToText(std::string* text, int length = kTimeTextLength) const;
  [[nodiscard]] std::string ToText() const;

  /// The moment that many days later, or earlier; stops at the limits of the range.
  [[nodiscard]] TimeValue AddDays(std::int64_t days) const;

  friend bool operator==(const TimeValue&, const TimeValue&) = default;
  friend std::strong_ordering operator<=>(const TimeValue& a, const TimeValue& b) {
    const auto order = a.seconds <=> b.seconds;
    return order != 0 ? order : a.fraction <=> b.fraction;
  }
};

static_assert(sizeof(TimeValue) == 16);

}  // namespace hv::util::conv
