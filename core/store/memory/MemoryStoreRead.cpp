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

void FailAt(const MemoryStore& store, RecordRef record, std::int32_t code,
            std::initializer_list<std::u16string_view> parts) {
  std::u16string text;
  for (const std::u16string_view part : parts) text += part;
  Fail(code, {store.GetModel()->At(record.entity).name, u":", DecimalText(record.id), u": ", text});
}

Row RowOf(const MemoryStore& store, RecordRef record) {
  const Row row = store.Table(record.entity).Find(record.id);
  if (row == kNoRow) FailAt(store, record, errc::kInstanceGone, {u"there is no such record"});
  return row;
}

const Attribute& AttributeOf(const Model& model, EntityId entity, std::int32_t attribute) {
  const auto& attributes = model.At(entity).attributes;
  if (attribute < 0 || static_cast<std::size_t>(attribute) >= attributes.size()) {
    Fail(errc::kUnknownName,
         {model.At(entity).name, u" has no attribute with the index ", DecimalText(attribute)});
  }
  return attributes[static_cast<std::size_t>(attribute)];
}

const Relation& RelationOf(const Model& model, EntityId entity, std::int32_t relation) {
  const auto& relations = model.At(entity).relations;
  if (relation < 0 || static_cast<std::size_t>(relation) >= relations.size()) {
    Fail(errc::kUnknownName,
         {model.At(entity).name, u" has no relation with the index ", DecimalText(relation)});
  }
  return relations[static_cast<std::size_t>(relation)];
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

std::vector<InstanceAttribute> MemoryStore::InstanceAttributesOf(RecordRef record) const {
  return Table(record.entity).InstanceValues().Of(RowOf(*this, record));
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

namespace {

/// The generation parameters of an implicit local column, or null.
std::unique_ptr<ValueSource> OpenParameters(const MemoryStore& store, RecordRef record, Row row) {
  const Entity& entity = store.GetModel()->At(record.entity);
  if (store.GetModel()->BaseNameOf(record.entity) != u"aolocalcolumn") return nullptr;
  const std::int32_t representation = entity.FindBaseAttribute(u"sequence_representation");
  const std::int32_t parameters = entity.FindBaseAttribute(u"generation_parameters");
  if (representation == kNone || parameters == kNone) return nullptr;
  const MemoryTable& table = store.Table(record.entity);
  const Value kind = table.At(representation).Read(row);
  const auto* number = std::get_if<Value::Integers>(&kind.data);
  // Constant, linear and saw.
  if (number == nullptr || number->front() < 1 || number->front() > 3) return nullptr;
  const Value* const value = table.At(parameters).ValueAt(row);
  if (value == nullptr) return nullptr;
  return InMemoryValues::Open(InMemoryValues::FromValue(*value));
}

}  // namespace

std::unique_ptr<ValueSource> MemoryStore::OpenValues(RecordRef localColumn) const {
  const Row row = RowOf(*this, localColumn);
  const LocalColumn* const column = Table(localColumn.entity).LocalColumnAt(row);
  if (column != nullptr && column->values.IsSet()) return column->values.Open();
  return OpenParameters(*this, localColumn, row);
}

std::unique_ptr<ValueSource> MemoryStore::OpenFlags(RecordRef localColumn) const {
  const Row row = RowOf(*this, localColumn);
  const LocalColumn* const column = Table(localColumn.entity).LocalColumnAt(row);
  return column == nullptr ? nullptr : column->flags.Open();
}

}  // namespace hv::vex::engine
