// core/store/memory/MemoryTable.cpp - adding, finding and removing the records of one entity.
#include "core/store/memory/MemoryTable.h"

#include <algorithm>
#include <limits>

#include "core/store/memory/Failure.h"
#include "store/core/Exception.h"

namespace hv::vex::engine {

MemoryTable::MemoryTable(const Entity& entity) : m_idAttribute(kNone) {
  if (entity.idAttribute != kNone) {
    // A model of another kind may call a text "id"; that one is an attribute like any other.
    const Attribute& id = entity.attributes[static_cast<std::size_t>(entity.idAttribute)];
    const bool isNumber = StorageKindOf(id.type) == StorageKind::Integer && !id.sequence;
    if (isNumber) m_idAttribute = entity.idAttribute;
  }
  m_columns.reserve(entity.attributes.size());
  for (const Attribute& attribute : entity.attributes) {
    m_columns.emplace_back(attribute.type, attribute.sequence);
  }
  m_links.reserve(entity.relations.size());
  for (const Relation& relation : entity.relations) m_links.emplace_back(relation.ToMany());
}

Row MemoryTable::Find(RecordId id) const {
  const Row row = m_ids.Find(id);
  return row != kNoRow && m_alive.Has(row) ? row : kNoRow;
}

Row MemoryTable::Append(RecordId id) {
  Row row = m_ids.Find(id);
  if (row != kNoRow && m_alive.Has(row)) return kNoRow;
  if (row == kNoRow) {
    if (m_ids.Rows() >= kNoRow) Fail(errc::kOutOfMemory, {u"too many records of one entity"});
    row = m_ids.Append(id);
  }
  // The row of a deleted record was emptied and serves again under the same id.
  m_alive.Add(row);
  ++m_recordCount;
  return row;
}

void MemoryTable::AppendDead() {
  const Row row = m_ids.AppendUnnamed();
  m_alive.Resize(m_ids.Rows());
  ++m_recordCount;
  Remove(row);
}

void MemoryTable::Remove(Row row) {
  for (Column& column : m_columns) column.Clear(row);
  for (LinkColumn& links : m_links) links.Clear(row);
  m_instanceAttributes.Clear(row);
  if (LocalColumnAt(row) != nullptr) MakeLocalColumn(row) = LocalColumn();
  m_alive.Remove(row);
  --m_recordCount;
}

RecordId MemoryTable::NewId() const {
  if (m_ids.Highest() == std::numeric_limits<RecordId>::max()) {
    Fail(errc::kNotSupported, {u"no id is left above the highest one"});
  }
  return m_ids.Highest() + 1;
}

std::vector<RecordId> MemoryTable::SortedIds(const RowSet& rows, std::size_t limit) const {
  std::vector<RecordId> ids;
  const std::size_t count = rows.Count();
  ids.reserve(count);
  rows.ForEach([&](Row row) { ids.push_back(m_ids.At(row)); });
  if (limit == 0 || limit > count) limit = count;
  if (!m_ids.IsAscending()) {
    std::partial_sort(ids.begin(), ids.begin() + static_cast<std::ptrdiff_t>(limit), ids.end());
  }
  ids.resize(limit);
  return ids;
}

const LocalColumn* MemoryTable::LocalColumnAt(Row row) const {
  if (row >= m_localColumnSlots.size() || m_localColumnSlots[row] == 0) return nullptr;
  return &m_localColumns[m_localColumnSlots[row] - 1];
}

LocalColumn& MemoryTable::MakeLocalColumn(Row row) {
  if (row >= m_localColumnSlots.size()) m_localColumnSlots.resize(std::size_t{row} + 1);
  if (m_localColumnSlots[row] == 0) {
    m_localColumns.emplace_back();
    m_localColumnSlots[row] = static_cast<std::uint32_t>(m_localColumns.size());
  }
  return m_localColumns[m_localColumnSlots[row] - 1];
}

void MemoryTable::ShrinkToFit() {
  for (Column& column : m_columns) column.ShrinkToFit();
  m_localColumns.shrink_to_fit();
}

}  // namespace hv::vex::engine
