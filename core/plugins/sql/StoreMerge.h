// core/plugins/sql/StoreMerge.h - adds all records of one store to another.
#pragma once

#include "core/plugins/sql/SqlStore.h"
#include "core/store/Watch.h"

namespace hv::vex::engine::sql {

/// Adds copies of all records under new ids, with their links among each other, and saves.
/// Elements, attributes and relations are matched by their names; the target may have more of them.
/// \throws Exception kWrongType if something that the source holds has no place in the target: the
///         message names everything that doesn't fit. Nothing was changed then, as after any
///         failure, or when the watcher stops it.
void MergeStore(const RecordStore& source, SqlStore& target, const Watch& watch = {});

}  // namespace hv::vex::engine::sql
