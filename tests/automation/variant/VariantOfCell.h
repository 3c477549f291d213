// tests/automation/variant/VariantOfCell.h - variants from the two cells that describe them.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include <storefabric/Variant.h>

namespace hv::golden {

/// A variant and what it borrows.
struct OwnedVariant {
  Variant value;
  std::unique_ptr<Variant> target;  ///< of a by-reference variant
};

/// The type number of a name, without bits: "VT_I4".
std::uint16_t TypeOfName(const std::string& name);

/// The variant that the cells describe; nothing for the kinds that can't be made: unused type
/// numbers and arrays of bytes. References to other types become references to a variant of that
/// type, arrays of other types arrays of variants.
std::optional<OwnedVariant> VariantOfCells(const std::string& type, const std::string& value);

/// True if the variant has the type and, where the cell tells it, the value. Doubles must be the
/// same bit for bit but for NaNs.
bool Matches(const Variant& value, std::uint16_t type, const std::string& cell);

/// A description for messages.
std::string Describe(const Variant& value);

}  // namespace hv::golden
