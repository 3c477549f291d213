// query/conditions/DateValue.h - dates among the values of conditions, and their texts.
#pragma once

#include <optional>
#include <string_view>

#include <storefabric/Variant.h>
#include <storefabric/WString.h>

#include "query/values/DateNotation.h"

namespace hv::vex {

/// True for a date and for a time object.
bool IsDateValue(const Variant& value);

/// The date that a text writes in the format of the language, with or without a time of day.
/// Numbers may have less digits than the format asks for. Nothing for any other text, and for a day
/// that the calendar doesn't have.
std::optional<Variant> DateFromText(std::u16string_view text, Language language = LanguageOf());

/// The text of a date or time object in the format that the language has for the operator: with
/// the time of day under ">=" and "<=". Empty for any other value.
WString DateToText(const Variant& value, std::u16string_view op, Language language = LanguageOf());

/// The clock in local time, to the second.
Variant DateOfNow();

/// The text of a value of any type for a condition's value text: dates in the format of the
/// language, reals with all digits that tell them apart.
/// \return S_OK; the failure of the conversion, as for null or an array
Result TextOfConditionValue(const Variant& value, std::u16string_view op, WString* text);

}  // namespace hv::vex
