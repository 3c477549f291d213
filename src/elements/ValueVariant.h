// elements/ValueVariant.h - values of the engine as variants, and back.
#pragma once

#include <cstdint>

#include <storefabric/Result.h>
#include <storefabric/Variant.h>

namespace hv::vex {
class IAttribute;
struct ScalarValue;
}  // namespace hv::vex

namespace hv::vex::easyImpl {

/// True if a variant may be written to a value of that type code. By-reference variants are
/// followed. Empty and null fit everything; numbers everything but times; truth values what numbers
/// fit, but no text; texts a text or an enumeration; dates and objects a time; decimals reals, text
/// and time.
bool FitsDataType(const Variant& value, std::int32_t typeCode);

/// One value as a variant: integers by their size (a 64-bit one as VT_I4 where it fits, which every
/// script host knows), reals, truth values, texts, enumerations as texts, times as VT_DATE.
/// \param index  below the attribute's count
/// \return S_OK; DISP_E_TYPEMISMATCH for a type that can't be shown or digits that are no date.
/// Throws what the engine throws.
Result ReadValue(IAttribute& attribute, std::int32_t typeCode, std::uint64_t index, Variant* value);

/// The same for a value that was read without an object; one that isn't set gives VT_NULL.
Result VariantOf(const ScalarValue& scalar, Variant* value);

/// Writes one value; one behind the last makes the list longer. Empty and null make a single value
/// unset, and do nothing behind the last one.
/// \return S_OK; DISP_E_TYPEMISMATCH for a value that doesn't fit or can't be converted.
/// Throws what the engine throws, and then the list is as long as before.
Result WriteValue(IAttribute& attribute, std::int32_t typeCode, std::uint64_t index,
                  const Variant& value);

}  // namespace hv::vex::easyImpl
