// core/store/memory/ColumnOrder.h - distinct values, bounds and sorting by columns.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "core/query/BoundQuery.h"
#include "core/store/RecordStore.h"
#include "core/store/memory/MemoryStore.h"
#include "core/store/memory/MemoryTable.h"

namespace hv::vex::engine {

/// Distinct set values of an attribute among `rows`, ascending; texts by their folded form and then
/// by code unit. NaN counts as unset. Throws kNotSupported if values of the attribute have no order
/// (sequences, complex numbers, byte strings).
ColumnBlock DistinctValues(const MemoryTable& table, std::int32_t attribute, const RowSet& rows,
                           std::size_t limit);
/// Lowest and highest by the same order.
Bounds ColumnBounds(const MemoryTable& table, std::int32_t attribute, const RowSet& rows);

/// Sorts rows of `entity` by the order clauses, ties by id; the first `limit` rows (0: all) are
/// given. A record without a value comes last in either direction. Where a path leads to several
/// records, the lowest of their values counts, or the highest if the order is descending.
std::vector<Row> SortedRows(const MemoryStore& store, EntityId entity,
                            std::span<const BoundOrder> order, const RowSet& rows,
                            std::size_t limit);

}  // namespace hv::vex::engine
