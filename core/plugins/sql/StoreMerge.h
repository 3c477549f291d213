// core/plugins/sql/StoreMerge.h - adds all records of one store to another.
#pragma once

#include "core/store/RecordStore.h"

namespace hv::vex::engine::sql {

/// Adds copies of all records under new ids, with their links among each other, and saves.
/// Elements, attributes and relations are matched by their names; the target may have more of them.
/// \throws Exception kWrongType if something that the source holds has no place in the target: the
///         message names everything that doesn't fit. Nothing was changed then, as after any
///         failure.
void MergeStore(const RecordStore& source, RecordStore& target);

}  // namespace hv::vex::engine::sql
