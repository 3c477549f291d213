// core/store/memory/IdIndex.h - the ids of a table's rows, and the way back from an id to its row.
#pragma once

#include <cstddef>
#include <vector>

#include "core/store/RecordStore.h"
#include "core/store/memory/RowSet.h"

namespace hv::vex::engine {

/// Files number their records in ascending order nearly always, mostly without gaps; then the ids
/// are their own index. A hash table is made only once a row breaks the order.
class IdIndex final {
 public:
  [[nodiscard]] std::size_t Rows() const { return m_ids.size(); }
  [[nodiscard]] RecordId At(Row row) const { return m_ids[row]; }
  [[nodiscard]] const std::vector<RecordId>& Ids() const { return m_ids; }
  /// The row that was last given this id, or kNoRow.
  [[nodiscard]] Row Find(RecordId id) const;
  /// True while ids rise with their rows.
  [[nodiscard]] bool IsAscending() const { return m_isAscending; }
  /// The highest id ever met, at least 0.
  [[nodiscard]] RecordId Highest() const { return m_highest; }
  /// Adds a row; the id must not be one of another row.
  Row Append(RecordId id);
  /// Adds a row that no id leads to.
  Row AppendUnnamed();
  void Reserve(std::size_t rows) { m_ids.reserve(rows); }

 private:
  void StartHashing();
  void Insert(RecordId id, Row row);
  void Grow();

  std::vector<RecordId> m_ids;
  std::vector<Row> m_slots;  // open addressing, a power of two, at most half full
  std::size_t m_used = 0;
  RecordId m_highest = 0;
  bool m_isDense = true;  // id of row r is the first id + r
  bool m_isAscending = true;
};

}  // namespace hv::vex::engine
