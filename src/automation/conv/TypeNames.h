// automation/conv/TypeNames.h - names of types for messages and diagnostics.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Variant.h>
#include <storefabric/WString.h>

namespace hv::util::conv {

/// "VT_I4" and its like for a type number; the by-reference bit isn't looked at. "unknown type" for
/// a number without a name.
std::u16string_view VariantTypeName(std::uint16_t type);
/// The same for a variant; one that refers to a variant is named after that.
std::u16string_view VariantTypeName(const Variant& value);

/// "eI32" and its like for a data type; the number in decimal for one without a name.
WString DataTypeName(std::int32_t dataType);

}  // namespace hv::util::conv
