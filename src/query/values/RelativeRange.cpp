// query/values/RelativeRange.cpp - keywords of relative ranges, and the arithmetic on days.
#include "query/values/RelativeRange.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <iterator>

namespace hv::vex {

namespace {

struct RangeRow {
  std::u16string_view keyword;
  std::int32_t localName;  ///< number of its text
  std::int32_t daysBack;
  bool isWholeDay;
};

constexpr RangeRow kRanges[] = {
    {u"Today", 5014, 0, true},
    {u"Yesterday", 5015, 1, true},
    {u"LastSevenDays", 5018, 7, false},
    {u"LastFourteenDays", 5019, 14, false},
    {u"LastThirtyDays", 5020, 30, false},
};

constexpr RangeRow kOtherText = {{}, 0, 0, false};

const RangeRow* FindRange(std::u16string_view text, const StringTable& texts) {
  const auto found = std::find_if(std::begin(kRanges), std::end(kRanges), [&](const RangeRow& row) {
    if (row.keyword == text) return true;
    const WString* const name = texts.Find(row.localName);
    return name && name->EqualsExact(text);
  });
  return found == std::end(kRanges) ? nullptr : found;
}

SystemTime AtTime(SystemTime date, std::uint16_t hour, std::uint16_t minute, std::uint16_t second) {
  date.hour = hour;
  date.minute = minute;
  date.second = second;
  date.millisecond = 0;
  return date;
}

}  // namespace

std::optional<std::u16string_view> FindRelativeKeyword(std::u16string_view text,
                                                       const StringTable& texts) {
  const RangeRow* const row = FindRange(text, texts);
  if (!row) return std::nullopt;
  return row->keyword;
}

bool IsRelativeKeyword(std::u16string_view text, const StringTable& texts) {
  return FindRange(text, texts) != nullptr;
}

WString KeywordToLocalName(std::u16string_view text, const StringTable& texts) {
  const RangeRow* const row = FindRange(text, texts);
  return row ? texts.LoadString(row->localName) : WString(text);
}

WString LocalNameToKeyword(std::u16string_view text, const StringTable& texts) {
  return FindRelativeKeyword(text, texts).value_or(text);
}

DateRange RelativeRange(std::u16string_view text, const SystemTime& now, const StringTable& texts) {
  const RangeRow* const found = FindRange(text, texts);
  const RangeRow& range = found ? *found : kOtherText;
  const SystemTime day = AddDays(now, -range.daysBack).value_or(now);
  return {AtTime(day, 0, 0, 0), range.isWholeDay ? AtTime(day, 23, 59, 59) : now};
}

SystemTime LocalNow() {
  const std::time_t seconds = std::time(nullptr);
  std::tm local{};
  localtime_r(&seconds, &local);
  const auto field = [](int value) { return static_cast<std::uint16_t>(value); };
  return {field(local.tm_year + 1900), field(local.tm_mon + 1),
          field(local.tm_wday),        field(local.tm_mday),
          field(local.tm_hour),        field(local.tm_min),
          field(local.tm_sec),         0};
}

std::optional<SystemTime> AddDays(const SystemTime& date, std::int64_t days) {
  namespace chrono = std::chrono;
  if (days > kMaxDayInterval || days < -kMaxDayInterval) return std::nullopt;
  const chrono::year_month_day before{chrono::year(date.year), chrono::month(date.month),
                                      chrono::day(date.day)};
  if (!before.ok()) return std::nullopt;
  const chrono::sys_days day = chrono::sys_days(before) + chrono::days(days);
  const chrono::year_month_day after(day);
  const int year = static_cast<int>(after.year());
  if (year < 0 || year > 9999) return std::nullopt;
  SystemTime result = date;
  result.year = static_cast<std::uint16_t>(year);
  result.month = static_cast<std::uint16_t>(static_cast<unsigned>(after.month()));
  result.day = static_cast<std::uint16_t>(static_cast<unsigned>(after.day()));
  result.dayOfWeek = static_cast<std::uint16_t>(chrono::weekday(day).c_encoding());
  return result;
}

}  // namespace hv::vex
