// core/store/memory/MemoryStoreRead.cpp - finding and reading records in batches.
#include <algorithm>

#include "core/store/memory/ColumnOrder.h"
#include "core/store/memory/Failure.h"
#include "core/store/memory/MemoryStore.h"
#include "core/store/memory/MemoryStoreAccess.h"
#include "core/store/memory/MemoryTable.h"
#include "core/store/memory/QueryEvaluator.h"
#include "store/core/Exception.h"

namespace hv::vex::engine {

Row RowOf(const MemoryStore& store, RecordRef record) {
  const Row row = store.Table(record.entity).Find(record.id);
  if (row == kNoRow) FailAt(store, record, errc::kInstanceGone, {u"there is no such record"});
  return row;
}

LongAttribute LongAttributeOf(const Model& model, EntityId entity, std::int32_t attribute) {
  const std::u16string& baseName = AttributeOf(model, entity, attribute).baseName;
  if (baseName != u"values" && baseName != u"flags") return LongAttribute::None;
  if (model.BaseNameOf(entity) != u"aolocalcolumn") return LongAttribute::None;
  return baseName == u"values" ? LongAttribute::Values : LongAttribute::Flags;
}

const MemoryTable& MemoryStore::Table(EntityId entity) const {
  if (entity >= m_tables.size()) Fail(errc::kUnknownName, {u"there is no such entity"});
  if (m_tables[entity] == nullptr) {
    Fail(errc::kUnknownName, {u"base entity ", m_model->At(entity).name, u" has no records"});
  }
  return *m_tables[entity];
}

Capabilities MemoryStore::GetCapabilities() const {
  Capabilities capabilities;
  capabilities.writable = m_persistence.save != nullptr;
  return capabilities;
}

bool MemoryStore::Exists(RecordRef record) const {
  return record.entity < m_tables.size() && m_tables[record.entity] != nullptr &&
         m_tables[record.entity]->Find(record.id) != kNoRow;
}

std::uint64_t MemoryStore::CountOf(EntityId entity) const { return Table(entity).Records(); }

std::vector<RecordId> MemoryStore::AllOf(EntityId entity) const {
  return Table(entity).SortedIds(Table(entity).Alive());
}

std::vector<RecordId> MemoryStore::Select(const BoundQuery& query) const {
  return QueryEvaluator(*this, query).Run();
}

namespace {

/// The rows that a restriction leaves.
RowSet RestrictedRows(const MemoryStore& store, EntityId entity, const BoundQuery* restriction) {
  if (restriction == nullptr) return store.Table(entity).Alive();
  if (restriction->entity != entity) {
    Fail(errc::kInvalidArgument, {u"the restriction asks for records of another entity"});
  }
  return QueryEvaluator(store, *restriction).Rows();
}

/// Scalar values only: sequences and bytes have no order.
void CheckScalar(const Model& model, EntityId entity, std::int32_t attribute) {
  const Attribute& declared = AttributeOf(model, entity, attribute);
  if (declared.sequence) {
    Fail(errc::kNotSupported,
         {model.At(entity).name, u".", declared.name, u" is a sequence, which has no order"});
  }
}

}  // namespace

ColumnBlock MemoryStore::Distinct(EntityId entity, std::int32_t attribute,
                                  const BoundQuery* restriction, std::size_t limit) const {
  const MemoryTable& table = Table(entity);
  CheckScalar(*m_model, entity, attribute);
  return DistinctValues(table, attribute, RestrictedRows(*this, entity, restriction), limit);
}

Bounds MemoryStore::BoundsOf(EntityId entity, std::int32_t attribute,
                             const BoundQuery* restriction) const {
  const MemoryTable& table = Table(entity);
  CheckScalar(*m_model, entity, attribute);
  return ColumnBounds(table, attribute, RestrictedRows(*this, entity, restriction));
}

std::vector<ColumnBlock> MemoryStore::ReadColumns(EntityId entity, std::span<const RecordId> ids,
                                                  std::span<const std::int32_t> attributes) const {
  const MemoryTable& table = Table(entity);
  std::vector<Row> rows(ids.size());
  std::transform(ids.begin(), ids.end(), rows.begin(), [&](RecordId id) { return table.Find(id); });
  std::vector<ColumnBlock> blocks(attributes.size());
  for (std::size_t i = 0; i < attributes.size(); ++i) {
    ColumnBlock& block = blocks[i];
    const Attribute& declared = AttributeOf(*m_model, entity, attributes[i]);
    if (attributes[i] != table.IdAttribute()) {
      table.At(attributes[i]).Read(rows, block);
      continue;
    }
    block.type = declared.type;
    block.isNull.resize(rows.size());
    block.integers.assign(ids.begin(), ids.end());
    for (std::size_t row = 0; row < rows.size(); ++row) {
      if (rows[row] != kNoRow) continue;
      block.isNull[row] = 1;
      block.integers[row] = 0;
    }
  }
  return blocks;
}

Value MemoryStore::ReadValue(RecordRef record, std::int32_t attribute) const {
  const MemoryTable& table = Table(record.entity);
  const Row row = RowOf(*this, record);
  const Attribute& declared = AttributeOf(*m_model, record.entity, attribute);
  if (attribute == table.IdAttribute()) return Value::Integer(declared.type, record.id);
  return table.At(attribute).Read(row);
}

std::vector<Link> MemoryStore::Follow(EntityId entity, std::int32_t relation,
                                      std::span<const RecordId> ids) const {
  const MemoryTable& table = Table(entity);
  const Relation& declared = RelationOf(*m_model, entity, relation);
  const EntityId targetEntity = declared.target;
  std::vector<Link> links;
  if (declared.IsMixed()) {
    for (std::size_t i = 0; i < ids.size(); ++i) {
      for (const RecordRef to : m_mixedLinks.Of({entity, ids[i]}, relation)) {
        links.push_back({static_cast<std::uint32_t>(i), to});
      }
    }
    return links;
  }
  const MemoryTable& target = Table(targetEntity);
  const LinkColumn& column = table.Links(relation);
  links.reserve(column.IsToMany() ? 0 : ids.size());
  for (std::size_t i = 0; i < ids.size(); ++i) {
    const Row row = table.Find(ids[i]);
    if (row == kNoRow) continue;
    for (const Row to : column.Of(row)) {
      links.push_back({static_cast<std::uint32_t>(i), {targetEntity, target.IdAt(to)}});
    }
  }
  return links;
}

std::vector<RecordInstanceAttribute> MemoryStore::ReadInstanceAttributes(
    EntityId entity, std::span<const RecordId> ids) const {
  const MemoryTable& table = Table(entity);
  std::vector<RecordInstanceAttribute> all;
  if (table.InstanceValues().Items().empty()) return all;
  for (std::size_t i = 0; i < ids.size(); ++i) {
    const Row row = table.Find(ids[i]);
    if (row == kNoRow) continue;
    for (InstanceAttribute& attribute : table.InstanceValues().Of(row)) {
      all.push_back({static_cast<std::uint32_t>(i), std::move(attribute)});
    }
  }
  return all;
}

std::unique_ptr<ValueSource> MemoryStore::OpenValues(RecordRef localColumn) const {
  const Row row = RowOf(*this, localColumn);
  const LocalColumn* const column = Table(localColumn.entity).LocalColumnAt(row);
  if (column != nullptr && column->values.IsSet()) return column->values.Open();
  return OpenParameters(*this, localColumn);
}

std::unique_ptr<ValueSource> MemoryStore::OpenFlags(RecordRef localColumn) const {
  const Row row = RowOf(*this, localColumn);
  const LocalColumn* const column = Table(localColumn.entity).LocalColumnAt(row);
  return column == nullptr ? nullptr : column->flags.Open();
}

}  // namespace hv::vex::engine
