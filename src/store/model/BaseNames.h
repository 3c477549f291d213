// store/model/BaseNames.h - names of the base model that the logic knows.
#pragma once

#include <string_view>

namespace hv::vex {

inline constexpr std::u16string_view kLocalColumnBase = u"aolocalcolumn";
inline constexpr std::u16string_view kValuesBase = u"values";

/// True if the name begins with "ao" exactly, as the names of the base model's entities do. Only
/// the text is looked at: an application entity may bear such a name as well.
constexpr bool HasBaseTypeName(std::u16string_view name) { return name.starts_with(u"ao"); }

}  // namespace hv::vex
