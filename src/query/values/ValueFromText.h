// query/values/ValueFromText.h - the value that a piece of a value text stands for.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Variant.h>

namespace hv::vex {

/// A number where the whole text is one, and the type isn't that of a text or a date: VT_I4, or
/// VT_I8 if it needs more room, for a whole number under an integer type, else VT_R8. Anything else
/// stays a VT_BSTR. A number has a sign, digits, a point and an exponent, and nothing around it.
/// \param dataType  type code of the property, 0 if it isn't known
Variant ValueFromText(std::u16string_view text, std::int32_t dataType);

}  // namespace hv::vex
