// query/conditions/ValueCheck.h - whether operator and value of a new condition fit its property.
#pragma once

#include <string_view>
#include <vector>

#include <storefabric/Result.h>
#include <storefabric/Variant.h>
#include <storefabric/WString.h>

#include "query/conditions/IConditionCollImpl.h"

namespace hv::vex::easyImpl {

/// What a condition takes of a value that was given for it.
struct CheckedValue {
  Variant value;
  /// The elements of an array; empty for any other value, and for a single element.
  std::vector<Variant> values;
  WString text;  ///< with `values`: all of them, joined with " OR "
};

/// Checks a value that a host gives for a new condition, and makes it what the condition holds: a
/// date of a text under a date property, one text of an array.
/// \param op  as the host wrote it
/// \return S_OK; VEX_E_VALUE_WAS_TEXT, a warning, for a date that was given as a text;
///         VEX_E_BAD_OPERATOR; what the collection says to several values; VEX_E_VALUE_DIMENSIONS
///         for an array of arrays; VEX_E_VALUE_TYPE for an element that can't be a text;
///         E_INVALIDARG for a value that can't; VEX_E_BAD_VALUE for a text that is no relative
///         range; VEX_E_VALUE_NOT_DATE
Result CheckValue(IConditionCollImpl& conditions, std::u16string_view type,
                  std::u16string_view property, std::u16string_view op, const Variant& given,
                  CheckedValue* checked);

}  // namespace hv::vex::easyImpl
