// core/store/memory/MemoryTable.h - all records of one application entity, column by column.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "core/model/Model.h"
#include "core/store/memory/Column.h"
#include "core/store/memory/IdIndex.h"
#include "core/store/memory/InMemoryValues.h"
#include "core/store/memory/InstanceAttributes.h"
#include "core/store/memory/LinkColumn.h"
#include "core/store/memory/RowSet.h"

namespace hv::vex::engine {

/// Long values of one row: in memory, behind a provider, or (`own`) copied from there by who
/// changes them one by one.
struct LongValues {
  std::shared_ptr<const InMemoryValues> inMemory;
  ValueProvider provider;
  std::shared_ptr<InMemoryValues> own = nullptr;

  [[nodiscard]] bool IsSet() const {
    return inMemory != nullptr || provider != nullptr || own != nullptr;
  }
  /// Null if not set.
  [[nodiscard]] std::unique_ptr<ValueSource> Open() const {
    if (own != nullptr) return InMemoryValues::Open(own);
    if (inMemory != nullptr) return InMemoryValues::Open(inMemory);
    return provider ? provider() : nullptr;
  }
};

/// The values and flags of a local column.
struct LocalColumn {
  LongValues values;
  LongValues flags;
};

/// Keeps columns, links and ids together; knows nothing of other tables. Copying copies all
/// records; long values are shared until one of those who share them changes theirs.
class MemoryTable final {
 public:
  explicit MemoryTable(const Entity& entity);

  // Records.
  [[nodiscard]] std::size_t Rows() const { return m_ids.Rows(); }
  [[nodiscard]] std::size_t Records() const { return m_recordCount; }
  [[nodiscard]] const IdIndex& Ids() const { return m_ids; }
  /// The rows that hold a record.
  [[nodiscard]] const RowSet& Alive() const { return m_alive; }
  /// The row of a record, or kNoRow.
  [[nodiscard]] Row Find(RecordId id) const;
  [[nodiscard]] RecordId IdAt(Row row) const { return m_ids.At(row); }
  /// Adds a record; kNoRow if there is one with that id.
  Row Append(RecordId id);
  /// Adds a row without a record, emptied of what was set in it before.
  void AppendDead();
  /// Removes the record and all its cells; not the links of other tables to it.
  void Remove(Row row);
  /// An id above all that were met. Throws kNotSupported if there is none.
  [[nodiscard]] RecordId NewId() const;
  /// Ids of the rows, ascending; at most `limit` of them (0: all).
  [[nodiscard]] std::vector<RecordId> SortedIds(const RowSet& rows, std::size_t limit = 0) const;

  // Cells. The id attribute has no column.
  [[nodiscard]] std::int32_t IdAttribute() const { return m_idAttribute; }
  [[nodiscard]] std::int32_t AttributeCount() const {
    return static_cast<std::int32_t>(m_columns.size());
  }
  [[nodiscard]] Column& At(std::int32_t attribute) {
    return m_columns[static_cast<std::size_t>(attribute)];
  }
  [[nodiscard]] const Column& At(std::int32_t attribute) const {
    return m_columns[static_cast<std::size_t>(attribute)];
  }
  [[nodiscard]] LinkColumn& Links(std::int32_t relation) {
    return m_links[static_cast<std::size_t>(relation)];
  }
  [[nodiscard]] const LinkColumn& Links(std::int32_t relation) const {
    return m_links[static_cast<std::size_t>(relation)];
  }
  [[nodiscard]] InstanceAttributes& InstanceValues() { return m_instanceAttributes; }
  [[nodiscard]] const InstanceAttributes& InstanceValues() const { return m_instanceAttributes; }
  /// Null if the row has neither values nor flags.
  [[nodiscard]] const LocalColumn* LocalColumnAt(Row row) const;
  LocalColumn& MakeLocalColumn(Row row);

  void ShrinkToFit();

 private:
  IdIndex m_ids;
  RowSet m_alive;
  std::size_t m_recordCount = 0;
  std::int32_t m_idAttribute;
  std::vector<Column> m_columns;
  std::vector<LinkColumn> m_links;
  InstanceAttributes m_instanceAttributes;
  std::vector<std::uint32_t> m_localColumnSlots;  // position plus 1
  std::vector<LocalColumn> m_localColumns;
};

}  // namespace hv::vex::engine
