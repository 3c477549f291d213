// query/conditions/DateValue.cpp - reading and printing the values of conditions.
#include "query/conditions/DateValue.h"

#include <algorithm>
#include <chrono>
#include <cstdint>

#include "automation/Guards.h"
#include "automation/conv/DisplayText.h"
#include "automation/conv/ValueText.h"
#include "automation/variant/VariantTime.h"
#include "query/values/RelativeRange.h"
#include "util/conv/TimeFormat.h"

namespace hv::vex {

namespace conv = util::conv;

namespace {

constexpr std::u16string_view kDigits = u"0123456789";
constexpr std::u16string_view kLetters = u"YMDhms";  // of the patterns

std::optional<conv::TimeValue> TimeOf(const Variant& value) {
  conv::TimeValue time;
  if (Failed(conv::TimeOfVariant(value, &time)) || !time.IsTime()) return std::nullopt;
  return time;
}

/// True for numbers with single separators of the notation between them. The reader of times takes
/// anything for a time; what isn't one must be told before.
bool LooksLikeDate(std::u16string_view text, const DateNotation& notation) {
  int numbers = 0;
  while (!text.empty()) {
    const std::size_t length = std::min(text.find_first_not_of(kDigits), text.size());
    if (length == 0 || length > 4) return false;
    text.remove_prefix(length);
    ++numbers;
    if (text.empty()) break;
    const std::size_t separator = notation.pattern.find(text[0]);
    if (separator == notation.pattern.npos || kLetters.find(text[0]) != kLetters.npos) return false;
    text.remove_prefix(1);
    if (text.empty()) return false;
  }
  return numbers >= 3 && numbers <= 6;
}

bool IsOnCalendar(const conv::TimeRecord& time) {
  namespace chrono = std::chrono;
  const bool isDay = chrono::year_month_day(chrono::year(time.year),
                                            chrono::month(static_cast<unsigned>(time.month)),
                                            chrono::day(static_cast<unsigned>(time.day)))
                         .ok();
  return isDay && time.hour < 24 && time.minute < 60 && time.second < 60;
}

Ref<conv::ITimeFormat> FormatOf(const DateNotation& notation) {
  Ref<conv::ITimeFormat> format = conv::CreateTimeFormat();
  format->SetPattern(notation.pattern);
  return format;
}

std::optional<Variant> DateOf(const automation::SystemTime& time) {
  double date = 0;
  if (!automation::SystemTimeToVariantTime(time, &date)) return std::nullopt;
  return Variant::Date(date);
}

}  // namespace

bool IsDateValue(const Variant& value) {
  const std::uint16_t type = value.Type();
  if (type == VT_DATE) return true;
  if (type != VT_DISPATCH && type != VT_UNKNOWN) return false;
  conv::TimeValue time;
  return !Failed(conv::TimeOfVariant(value, &time));
}

std::optional<Variant> DateFromText(std::u16string_view text, Language language) {
  const DateNotation& notation = DateNotationOf(language, true);
  const std::size_t first = std::min(text.find_first_not_of(u' '), text.size());
  text = text.substr(first, text.find_last_not_of(u' ') + 1 - first);
  if (!LooksLikeDate(text, notation)) return std::nullopt;
  conv::TimeRecord time;
  FormatOf(notation)->Parse(&time, text);
  if (!IsOnCalendar(time)) return std::nullopt;
  const auto field = [](std::int32_t value) { return static_cast<std::uint16_t>(value); };
  return DateOf({field(time.year), field(time.month), 0, field(time.day), field(time.hour),
                 field(time.minute), field(time.second), 0});
}

WString DateToText(const Variant& value, std::u16string_view op, Language language) {
  WString text;
  if (const std::optional<conv::TimeValue> time = TimeOf(value)) {
    FormatOf(DateNotationOf(language, HasTimeOfDay(op)))->Format(&text, time->ToRecord());
  }
  return text;
}

Variant DateOfNow() { return DateOf(LocalNow()).value_or(Variant::Null()); }

Result TextOfConditionValue(const Variant& value, std::u16string_view op, WString* text) {
  if (value.Is(VT_R4) || value.Is(VT_R8)) return conv::DisplayTextOfVariant(value, nullptr, text);
  if (IsDateValue(value)) {
    *text = DateToText(value, op);
    return S_OK;
  }
  Variant converted;
  HV_RETURN_IF_FAILED(value.ChangeType(VT_BSTR, &converted));
  *text = converted.AsText();
  return S_OK;
}

}  // namespace hv::vex
