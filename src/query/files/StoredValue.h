// query/files/StoredValue.h - the first value of a condition as query files hold it: a text and the
// type that says how to read it.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Variant.h>
#include <storefabric/WString.h>

namespace hv::vex {

/// The types that files name. Frozen numbers.
namespace storedtype {
inline constexpr std::int32_t kOld = 0;  ///< files that knew no types: the property decides
inline constexpr std::int32_t kInteger = 3;
inline constexpr std::int32_t kReal = 10;
inline constexpr std::int32_t kText = 23;
inline constexpr std::int32_t kDate = 30;
}  // namespace storedtype

struct StoredValue {
  WString text;
  std::int32_t dataType = storedtype::kText;
};

/// \param op        the symbol of the operator
/// \param dateLike  true if property, operator or value make this a condition on a date
StoredValue StoreValue(const Variant& value, std::u16string_view op, bool dateLike);

/// The value again. A text that isn't what its type says stays a text.
/// \param op            as `FileNameToOperator` gives it: dates have their display names
/// \param propertyType  the property's type code, which decides for old files
Variant LoadValue(const StoredValue& stored, std::u16string_view op, std::int32_t propertyType);

}  // namespace hv::vex
