// core/store/memory/MemoryStoreAccess.h - checks of arguments shared by reading and changing.
#pragma once

#include "core/store/RecordAccess.h"
#include "core/store/memory/MemoryStore.h"
#include "core/store/memory/RowSet.h"

namespace hv::vex::engine {

/// The row of a record; throws kInstanceGone if it doesn't exist.
Row RowOf(const MemoryStore& store, RecordRef record);
/// Attributes of a local column that may be long and are therefore kept apart.
enum class LongAttribute : std::uint8_t { None, Values, Flags };
LongAttribute LongAttributeOf(const Model& model, EntityId entity, std::int32_t attribute);

}  // namespace hv::vex::engine
