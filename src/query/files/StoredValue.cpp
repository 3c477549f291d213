// query/files/StoredValue.cpp - one table of types for both ways, and dates as numbers of days.
#include "query/files/StoredValue.h"

#include <cstdio>
#include <optional>

#include "automation/conv/AutomationDate.h"
#include "automation/conv/ValueText.h"
#include "query/conditions/DateValue.h"
#include "query/values/AttributeDataTypeHelper.h"
#include "query/values/Operators.h"
#include "query/values/RelativeRange.h"
#include "query/values/ValueFromText.h"

namespace hv::vex {

namespace {

std::int32_t StoredTypeOf(std::uint16_t variantType) {
  switch (variantType) {
    case VT_I2:
    case VT_I4:
    case VT_I1:
    case VT_UI1:
    case VT_UI2:
    case VT_INT:
      return storedtype::kInteger;
    case VT_R4:
    case VT_R8:
    case VT_UI4:
    case VT_UINT:
      return storedtype::kReal;
    default:
      return storedtype::kText;
  }
}

std::optional<double> DaysOf(const Variant& value) {
  if (value.Is(VT_DATE)) return value.AsDouble();
  util::conv::TimeValue time;
  if (Failed(util::conv::TimeOfVariant(value, &time)) || !time.IsTime()) return std::nullopt;
  return util::conv::ToAutomationDate(time);
}

WString TextOf(const Variant& value) {
  WString text;
  if (!Failed(util::conv::TextOfVariant(value, &text))) return text;
  // Types for which files have no text of their own, such as 64-bit numbers.
  Variant converted;
  return Failed(value.ChangeType(VT_BSTR, &converted)) ? WString() : converted.AsText();
}

/// The number of days, padded to a width of 20.
WString DaysText(double days) {
  char buffer[64];
  const int length = std::snprintf(buffer, sizeof buffer, "%20.16g", days);
  WString text;
  // The process's locale may have another sign for the point.
  for (int i = 0; i < length; ++i) {
    text += buffer[i] == ',' ? u'.' : static_cast<char16_t>(buffer[i]);
  }
  return text;
}

/// Files of other locales have a comma for the point.
std::optional<Variant> DateFromDays(std::u16string_view text) {
  const std::size_t first = text.find_first_not_of(u' ');
  if (first == text.npos) return std::nullopt;
  std::u16string number(text.substr(first, text.find_last_not_of(u' ') + 1 - first));
  for (char16_t& unit : number) {
    if (unit == u',') unit = u'.';
  }
  const Variant days = ValueFromText(number, eR64);
  if (!days.Is(VT_R8) || !util::conv::IsAutomationDate(days.AsDouble())) return std::nullopt;
  return Variant::Date(days.AsDouble());
}

}  // namespace

StoredValue StoreValue(const Variant& value, std::u16string_view op, bool dateLike) {
  const Variant& plain = value.Dereferenced();
  if (!dateLike) return {TextOf(plain), StoredTypeOf(plain.Type())};
  if (IsRelativeOperator(op)) return {LocalNameToKeyword(TextOf(plain)), storedtype::kText};
  std::optional<double> days = DaysOf(plain);
  if (!days && plain.Is(VT_BSTR)) {
    if (const std::optional<Variant> date = DateFromText(plain.AsText())) days = date->AsDouble();
  }
  // What is no date at all, such as a value that wasn't entered yet, is kept as it is.
  if (!days) return {TextOf(plain), storedtype::kText};
  return {DaysText(*days), storedtype::kDate};
}

Variant LoadValue(const StoredValue& stored, std::u16string_view op, std::int32_t propertyType) {
  if (IsRelativeOperator(op)) return Variant::Text(stored.text);
  std::int32_t type = stored.dataType;
  if (IsDateOperatorName(op)) {
    type = storedtype::kDate;
  } else if (type == storedtype::kOld) {
    type = IsIntegerType(propertyType) ? storedtype::kInteger
           : IsRealType(propertyType)  ? storedtype::kReal
                                       : storedtype::kText;
  }
  switch (type) {
    case storedtype::kInteger:
      return ValueFromText(stored.text, eI32);
    case storedtype::kReal:
      return ValueFromText(stored.text, eR64);
    case storedtype::kDate:
      return DateFromDays(stored.text).value_or(Variant::Text(stored.text));
    default:
      return Variant::Text(stored.text);
  }
}

}  // namespace hv::vex
