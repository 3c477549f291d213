// core/store/memory/MemoryStoreAccess.h - checks of arguments shared by reading and changing.
#pragma once

#include <initializer_list>
#include <string_view>

#include "core/store/memory/MemoryStore.h"
#include "core/store/memory/RowSet.h"

namespace hv::vex::engine {

/// Throws with a message that begins with the record.
[[noreturn]] void FailAt(const MemoryStore& store, RecordRef record, std::int32_t code,
                         std::initializer_list<std::u16string_view> parts);
/// The row of a record; throws kInstanceGone if it doesn't exist.
Row RowOf(const MemoryStore& store, RecordRef record);
/// Throw kUnknownName if the index isn't one of the entity's members.
const Attribute& AttributeOf(const Model& model, EntityId entity, std::int32_t attribute);
const Relation& RelationOf(const Model& model, EntityId entity, std::int32_t relation);

/// Attributes of a local column that may be long and are therefore kept apart.
enum class LongAttribute : std::uint8_t { None, Values, Flags };
LongAttribute LongAttributeOf(const Model& model, EntityId entity, std::int32_t attribute);

}  // namespace hv::vex::engine
