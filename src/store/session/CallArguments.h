// store/session/CallArguments.h - variant arguments of the session's members.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Variant.h>

namespace hv::vex {

/// The value as text, or `otherwise` if it can't be converted or is left out.
WString TextOr(const Variant& value, std::u16string_view otherwise);
/// The value as a number, or `otherwise` if it can't be converted or is left out.
std::int32_t NumberOr(const Variant& value, std::int32_t otherwise);

/// An entity given by its name or as an object with the interface `IModelEntity`. E_INVALIDARG if
/// the value is neither.
Result EntityNameOf(const Variant& entity, WString* name);

/// Whether an expression has the wildcards of the standard. Left out, empty and null count as
/// false; E_INVALIDARG for every other value that is no truth value.
Result OdsConformOf(const Variant& value, bool* conform);

/// The file that a store's parameter text names in its tag "filename"; empty if there is none.
WString FileNameOf(std::u16string_view parameters);

}  // namespace hv::vex
