// browse/DisplayText.cpp - values as the texts that display names are made of.
#include "browse/DisplayText.h"

#include <algorithm>
#include <cmath>
#include <string>

#include <storefabric/DataType.h>

#include "automation/variant/PlatformNumbers.h"
#include "store/core/IAttribute.h"
#include "store/core/IBulkReader.h"
#include "store/core/IEnvironment.h"
#include "store/core/IStore.h"

namespace hv::vex {

namespace {

constexpr std::u16string_view kTimeFormatVariable = u"vexFormatStringTime";

void AppendAscii(std::string_view ascii, WString& text) { text += cor::FromUtf8(ascii); }

void AppendInteger(std::int64_t value, std::int32_t typeCode, WString& text) {
  if (typeCode == kTypeBoolean) {
    text += value != 0 ? u"true" : u"false";
    return;
  }
  // A byte counts as signed here: texts were always made so.
  const bool isByte = typeCode == eByte;
  AppendAscii(std::to_string(isByte ? static_cast<std::int8_t>(value) : value), text);
}

void AppendReal(double value, WString& text) { AppendAscii(automation::FormatGcvt40(value), text); }

bool IsIntegerType(std::int32_t typeCode) {
  return (typeCode >= eI8 && typeCode <= eU64) || typeCode == kTypeBoolean;
}

/// 1904-01-01, from which time values count, as an automation date.
constexpr double kDateOf1904 = 1462;
constexpr double kSecondsPerDay = 86400;
/// A millisecond as a fraction of a second times 2^64, less than one unit too small.
constexpr std::uint64_t kMillisecond = 18446744073709551;

/// The moment of an automation date, to the millisecond: finer, such dates only hold noise.
util::conv::TimeValue TimeOfDate(double date) {
  const double day = std::trunc(date);
  const double milliseconds = std::round(std::abs(date - day) * kSecondsPerDay * 1000);
  const auto whole = static_cast<std::int64_t>(milliseconds);
  util::conv::TimeValue time;
  time.seconds = static_cast<std::int64_t>(day - kDateOf1904) * 86400 + whole / 1000;
  // Rounded up, so that a time that is cut to its decimals again shows the same millisecond.
  const auto parts = static_cast<std::uint64_t>(whole % 1000);
  if (parts > 0) time.fraction = parts * kMillisecond + 1000;
  return time;
}

}  // namespace

bool IsShowableType(std::int32_t typeCode) {
  switch (typeCode) {
    case eNoType:
    case kTypeReference:
    case kTypeExternalReference:
    case kTypeByteString:
    case kTypeBlob:
    case kTypeComplex:
    case kTypeDoubleComplex:
      return false;
    default:
      return true;
  }
}

WString ReadTimeFormat(IStore& store) {
  WString format;
  const auto environment = Ref<IEnvironment>::Adopt(store.GetEnvironment());
  if (!environment) return format;
  const auto variable = Ref<IAttribute>::Adopt(environment->GetVariable(kTimeFormatVariable));
  if (variable && variable->GetCount() > 0) variable->GetStringValue(format);
  return format;
}

DisplayFormat::DisplayFormat(std::u16string_view timeFormat) {
  if (timeFormat.empty()) return;
  m_timeFormat = util::conv::CreateTimeFormat();
  m_timeFormat->SetPattern(timeFormat);
}

void DisplayFormat::AppendTime(const util::conv::TimeValue& time, WString& text) const {
  if (!m_timeFormat) {
    AppendAscii(time.ToText(), text);
    return;
  }
  WString formatted;
  m_timeFormat->Format(&formatted, time.ToRecord());
  text += formatted;
}

void DisplayFormat::AppendDigits(std::u16string_view digits, WString& text) const {
  if (!digits.empty()) AppendTime(util::conv::TimeValue::FromText(cor::ToUtf8(digits)), text);
}

bool DisplayFormat::AppendCell(IValueTable& table, std::uint64_t row, std::uint64_t column,
                               WString& text) const {
  const std::int32_t type = table.GetColumnType(column);
  if (!IsShowableType(type)) return false;
  if (table.IsNull(row, column) != 0) return true;
  if (IsIntegerType(type)) {
    AppendInteger(table.GetInteger(row, column), type, text);
  } else if (type == eR32 || type == eR64) {
    AppendReal(table.GetReal(row, column), text);
  } else if (type == eTime) {
    AppendDigits(table.GetText(row, column), text);
  } else {
    text += table.GetText(row, column);
  }
  return true;
}

bool DisplayFormat::AppendAttribute(IAttribute& attribute, WString& text) const {
  const std::int32_t type = attribute.GetDataType();
  if (!IsShowableType(type)) return false;
  if (attribute.GetCount() == 0) return true;
  if (IsIntegerType(type)) {
    AppendInteger(attribute.GetInteger(0), type, text);
  } else if (type == eR32 || type == eR64) {
    AppendReal(attribute.GetReal(0), text);
  } else {
    WString value;
    attribute.GetText(0, value);
    if (type == eTime) {
      AppendDigits(value, text);
    } else {
      text += value;
    }
  }
  return true;
}

bool DisplayFormat::AppendVariant(const Variant& value, WString& text) const {
  const Variant& source = value.Dereferenced();
  switch (source.Type()) {
    case VT_EMPTY:
    case VT_NULL:
      return true;
    case VT_I2:
    case VT_I4:
    case VT_I8:
      AppendInteger(source.AsInt64(), eI64, text);
      return true;
    case VT_UI1:
      AppendInteger(static_cast<std::int64_t>(source.AsUInt64()), eByte, text);
      return true;
    case VT_BOOL:
      AppendInteger(source.AsInt64(), kTypeBoolean, text);
      return true;
    case VT_R4:
    case VT_R8:
      AppendReal(source.AsDouble(), text);
      return true;
    case VT_DATE:
      AppendTime(TimeOfDate(source.AsDouble()), text);
      return true;
    case VT_BSTR:
      text += source.AsText();
      return true;
    default:
      return false;
  }
}

}  // namespace hv::vex
