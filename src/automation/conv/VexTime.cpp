// automation/conv/VexTime.cpp - the automation object of one time value.
#include "automation/conv/VexTime.h"

#include <algorithm>
#include <array>
#include <limits>
#include <mutex>

#include "automation/Guards.h"
#include "automation/conv/AutomationDate.h"

namespace hv::vex {

using automation::CallNumber;
using automation::DispatchMap;
using automation::Errors;
using automation::Get;
using automation::Literal;
using automation::MakeRows;
using automation::On;
using automation::Put;
using util::conv::TimeParts;
using util::conv::TimeValue;

namespace {

constexpr std::int32_t kTextOutOfRange = 208;
constexpr std::int32_t kTextDateOutOfRange = 374;

constexpr auto kStandard = Errors(u"");

constexpr auto RefusedField(std::u16string_view name) {
  return Errors(name, On(E_INVALIDARG, kTextOutOfRange, CallNumber(0), Literal(name)));
}
constexpr auto kMonth = RefusedField(u"Month");
constexpr auto kDay = RefusedField(u"Day");
constexpr auto kHour = RefusedField(u"Hour");
constexpr auto kMinute = RefusedField(u"Minute");
constexpr auto kSecond = RefusedField(u"Second");
constexpr auto kMillisecond = RefusedField(u"Millisecond");
constexpr auto kMicrosecond = RefusedField(u"Microsecond");
constexpr auto kNanosecond = RefusedField(u"Nanosecond");
constexpr auto kVariantDate = Errors(u"VariantDate", On(E_INVALIDARG, kTextDateOutOfRange));

constexpr std::int32_t kVariantDateId = 10;

constexpr auto kRows = MakeRows(
    Get<&IVexTimeDisp::get_Year>(u"Year", 1, kStandard),
    Put<&IVexTimeDisp::put_Year>(u"Year", 1, kStandard),
    Get<&IVexTimeDisp::get_Month>(u"Month", 2, kStandard),
    Put<&IVexTimeDisp::put_Month>(u"Month", 2, kMonth),
    Get<&IVexTimeDisp::get_Day>(u"Day", 3, kStandard), Put<&IVexTimeDisp::put_Day>(u"Day", 3, kDay),
    Get<&IVexTimeDisp::get_Hour>(u"Hour", 4, kStandard),
    Put<&IVexTimeDisp::put_Hour>(u"Hour", 4, kHour),
    Get<&IVexTimeDisp::get_Minute>(u"Minute", 5, kStandard),
    Put<&IVexTimeDisp::put_Minute>(u"Minute", 5, kMinute),
    Get<&IVexTimeDisp::get_Second>(u"Second", 6, kStandard),
    Put<&IVexTimeDisp::put_Second>(u"Second", 6, kSecond),
    Get<&IVexTimeDisp::get_Millisecond>(u"Millisecond", 7, kStandard),
    Put<&IVexTimeDisp::put_Millisecond>(u"Millisecond", 7, kMillisecond),
    Get<&IVexTimeDisp::get_Microsecond>(u"Microsecond", 8, kStandard),
    Put<&IVexTimeDisp::put_Microsecond>(u"Microsecond", 8, kMicrosecond),
    Get<&IVexTimeDisp::get_Nanosecond>(u"Nanosecond", 9, kStandard),
    Put<&IVexTimeDisp::put_Nanosecond>(u"Nanosecond", 9, kNanosecond),
    Get<&IVexTimeDisp::get_VariantDate>(u"VariantDate", kVariantDateId, kVariantDate),
    Put<&IVexTimeDisp::put_VariantDate>(u"VariantDate", kVariantDateId, kVariantDate));
constexpr DispatchMap kMap = DispatchMap(u"VexTime", kRows).WithDefault(kVariantDateId);

/// One for all time objects: hosts read and write them on threads of their own.
constinit std::mutex g_lock;

using Lock = std::lock_guard<std::mutex>;

}  // namespace

const DispatchMap& CVexTimeInt::Map() { return kMap; }

Result CVexTimeInt::GetField(Field field, std::int16_t* value) const {
  using Limits = std::numeric_limits<std::int16_t>;
  HV_RETURN_IF_NULL(value);
  const Lock lock(g_lock);
  const std::int32_t wide = m_time.ToParts().*field;
  *value = static_cast<std::int16_t>(std::clamp<std::int32_t>(wide, Limits::min(), Limits::max()));
  return S_OK;
}

Result CVexTimeInt::PutField(Field field, std::int16_t value) {
  HV_RETURN_CODE_IF(value < 0 && field != &TimeParts::year, E_INVALIDARG);
  const Lock lock(g_lock);
  TimeParts parts = m_time.ToParts();
  parts.*field = value;
  m_time = TimeValue::FromParts(parts);
  return S_OK;
}

Result CVexTimeInt::get_Year(std::int16_t* year) { return GetField(&TimeParts::year, year); }
Result CVexTimeInt::put_Year(std::int16_t year) { return PutField(&TimeParts::year, year); }
Result CVexTimeInt::get_Month(std::int16_t* month) { return GetField(&TimeParts::month, month); }
Result CVexTimeInt::put_Month(std::int16_t month) { return PutField(&TimeParts::month, month); }
Result CVexTimeInt::get_Day(std::int16_t* day) { return GetField(&TimeParts::day, day); }
Result CVexTimeInt::put_Day(std::int16_t day) { return PutField(&TimeParts::day, day); }
Result CVexTimeInt::get_Hour(std::int16_t* hour) { return GetField(&TimeParts::hour, hour); }
Result CVexTimeInt::put_Hour(std::int16_t hour) { return PutField(&TimeParts::hour, hour); }
Result CVexTimeInt::get_Minute(std::int16_t* minute) {
  return GetField(&TimeParts::minute, minute);
}
Result CVexTimeInt::put_Minute(std::int16_t minute) { return PutField(&TimeParts::minute, minute); }
Result CVexTimeInt::get_Second(std::int16_t* second) {
  return GetField(&TimeParts::second, second);
}
Result CVexTimeInt::put_Second(std::int16_t second) { return PutField(&TimeParts::second, second); }
Result CVexTimeInt::get_Millisecond(std::int16_t* millisecond) {
  return GetField(&TimeParts::millisecond, millisecond);
}
Result CVexTimeInt::put_Millisecond(std::int16_t millisecond) {
  return PutField(&TimeParts::millisecond, millisecond);
}
Result CVexTimeInt::get_Microsecond(std::int16_t* microsecond) {
  return GetField(&TimeParts::microsecond, microsecond);
}
Result CVexTimeInt::put_Microsecond(std::int16_t microsecond) {
  return PutField(&TimeParts::microsecond, microsecond);
}
Result CVexTimeInt::get_Nanosecond(std::int16_t* nanosecond) {
  return GetField(&TimeParts::nanosecond, nanosecond);
}
Result CVexTimeInt::put_Nanosecond(std::int16_t nanosecond) {
  return PutField(&TimeParts::nanosecond, nanosecond);
}

Result CVexTimeInt::get_VariantDate(double* date) {
  HV_RETURN_IF_NULL(date);
  const Lock lock(g_lock);
  *date = util::conv::ToAutomationDate(m_time);
  return util::conv::IsAutomationDate(*date) ? S_OK : E_INVALIDARG;
}

Result CVexTimeInt::put_VariantDate(double date) {
  HV_RETURN_CODE_IF(!util::conv::IsAutomationDate(date), E_INVALIDARG);
  const Lock lock(g_lock);
  m_time = util::conv::FromAutomationDate(date);
  return S_OK;
}

Result CVexTimeInt::GetTimeValue(TimeValue** time) {
  HV_RETURN_IF_NULL(time);
  *time = &m_time;
  return S_OK;
}

Ref<IVexTimeDisp> CreateTime(const TimeValue& time) { return MakeRef<CVexTimeInt>(time); }

Result CreateTime(const TimeParts& parts, IVexTimeDisp** time) try {
  HV_RETURN_IF_NULL(time);
  *time = nullptr;
  const bool isNegative = parts.month < 0 || parts.day < 0 || parts.hour < 0 || parts.minute < 0 ||
                          parts.second < 0 || parts.millisecond < 0 || parts.microsecond < 0 ||
                          parts.nanosecond < 0;
  HV_RETURN_CODE_IF(isNegative, E_INVALIDARG);
  return CreateTime(TimeValue::FromParts(parts)).CopyTo(time);
}
HV_CATCH_RETURN()

Result ReadTimeObject(IVexTimeDisp& object, TimeParts* parts) {
  HV_RETURN_IF_NULL(parts);
  struct Part {
    Result (IVexTimeDisp::*get)(std::int16_t*);
    std::int32_t TimeParts::*field;
  };
  static constexpr std::array<Part, 9> kParts{{
      {&IVexTimeDisp::get_Year, &TimeParts::year},
      {&IVexTimeDisp::get_Month, &TimeParts::month},
      {&IVexTimeDisp::get_Day, &TimeParts::day},
      {&IVexTimeDisp::get_Hour, &TimeParts::hour},
      {&IVexTimeDisp::get_Minute, &TimeParts::minute},
      {&IVexTimeDisp::get_Second, &TimeParts::second},
      {&IVexTimeDisp::get_Millisecond, &TimeParts::millisecond},
      {&IVexTimeDisp::get_Microsecond, &TimeParts::microsecond},
      {&IVexTimeDisp::get_Nanosecond, &TimeParts::nanosecond},
  }};
  TimeParts read;
  for (const Part& part : kParts) {
    std::int16_t value = 0;
    HV_RETURN_IF_FAILED((object.*part.get)(&value));
    read.*part.field = value;
  }
  *parts = read;
  return S_OK;
}

}  // namespace hv::vex
