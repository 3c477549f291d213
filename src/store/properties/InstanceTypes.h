// store/properties/InstanceTypes.h - which types a property that is added may have.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/DataType.h>
#include <storefabric/Variant.h>

namespace hv::vex {

class IInstance;

/// True for 1 to 10, 23, 24 and 30.
constexpr bool IsTypeToAdd(std::int32_t type) {
  return (type >= eI8 && type <= eR64) || type == eString || type == kTypeEnumeration ||
         type == eTime;
}

/// The type that a property gets which is added with a value alone; 0 for a value of which none can
/// be made. Nothing and texts make a text.
std::int32_t TypeOfVariant(const Variant& value);

/// The type that the copy of a property is added with: its own, but a number for a truth value.
constexpr std::int32_t TypeOfCopy(std::int32_t type) {
  return type == kTypeBoolean ? static_cast<std::int32_t>(eI16) : type;
}

/// Adds an attribute to an instance. An engine that knows no instance attributes of that type gets
/// the nearest that holds the same values: exchange files know few types there. Throws what the
/// engine throws.
void AddInstanceAttribute(IInstance& instance, std::u16string_view name, std::int32_t type);

}  // namespace hv::vex
