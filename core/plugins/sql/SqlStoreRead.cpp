// core/plugins/sql/SqlStoreRead.cpp - reading in batches: columns, links, sequences, values.
#include <algorithm>

#include "core/plugins/sql/Cells.h"
#include "core/plugins/sql/SqlStore.h"
#include "core/plugins/sql/TextKey.h"
#include "core/store/memory/Failure.h"
#include "core/store/memory/InMemoryValues.h"

namespace hv::vex::engine::sql {

namespace {

void Reserve(ColumnBlock& block, std::size_t rows) {
  constexpr std::size_t kUsualText = 16;
  block.isNull.reserve(rows);
  switch (StorageKindOf(block.type)) {
    case StorageKind::Integer:
      block.integers.reserve(rows);
      break;
    case StorageKind::Real:
      block.reals.reserve(rows * PartsOf(block.type));
      break;
    case StorageKind::Text:
      block.textEnds.reserve(rows);
      block.textArena.reserve(rows * kUsualText);
      break;
    case StorageKind::Bytes:
      block.others.reserve(rows);
      break;
  }
}

bool IsInTable(const AttributePlace& place) {
  return place.kind == AttributePlace::Kind::Column || place.kind == AttributePlace::Kind::Id;
}

}  // namespace

std::vector<ColumnBlock> SqlStore::ReadColumns(EntityId entity, std::span<const RecordId> ids,
                                               std::span<const std::int32_t> attributes) const {
  const EntityPlace& place = Place(entity);
  std::vector<ColumnBlock> blocks(attributes.size());
  std::vector<std::size_t> inTable;
  std::string columns;
  for (std::size_t i = 0; i < attributes.size(); ++i) {
    const Attribute& declared = AttributeOf(*m_schema.model, entity, attributes[i]);
    blocks[i].type = declared.type;
    const AttributePlace& at = place.attributes[static_cast<std::size_t>(attributes[i])];
    if (IsInTable(at)) {
      inTable.push_back(i);
      Reserve(blocks[i], ids.size());
      columns += (columns.empty() ? "t." : ",t.") + at.column;
    } else {
      ReadSequences(entity, attributes[i], ids, blocks[i]);
    }
  }
  if (inTable.empty() || ids.empty()) return blocks;
  Run run(*m_connection, "SELECT " + columns + " FROM " + m_connection->GetDialect().IdList("i") +
                             " LEFT JOIN " + place.table + " AS t ON t." + place.id + "=i.id");
  run.AddIds(ids);
  const bool isForeign = !m_schema.layout.isOwn;
  while (run->Step()) {
    for (std::size_t c = 0; c < inTable.size(); ++c) {
      AppendCell(*run, static_cast<int>(c), isForeign, blocks[inTable[c]]);
    }
  }
  return blocks;
}

SelectedColumns SqlStore::SelectColumns(const BoundQuery& query,
                                        std::span<const std::int32_t> attributes) const {
  Prepare(query);
  const EntityPlace& place = Place(query.entity);
  SelectedColumns selected;
  for (const std::int32_t attribute : attributes) {
    const Attribute& declared = AttributeOf(*m_schema.model, query.entity, attribute);
    if (!IsInTable(place.attributes[static_cast<std::size_t>(attribute)])) {
      return RecordStore::SelectColumns(query, attributes);
    }
    selected.blocks.emplace_back().type = declared.type;
  }
  const Fragment select = Compile(query, attributes);
  Run run(*m_connection, select.text);
  BindAll(run, select);
  const bool isForeign = !m_schema.layout.isOwn;
  while (run->Step()) {
    selected.ids.push_back(run->Integer(0));
    for (std::size_t i = 0; i < attributes.size(); ++i) {
      AppendCell(*run, static_cast<int>(i) + 1, isForeign, selected.blocks[i]);
    }
  }
  selected.ids.shrink_to_fit();
  return selected;
}

namespace {

/// Adds an element's part of a sequence, or of a value of any type.
void AddElement(const Statement& row, int column, Value& value) {
  switch (StorageKindOf(value.type)) {
    case StorageKind::Integer:
      std::get<Value::Integers>(value.data).push_back(row.Integer(column));
      break;
    case StorageKind::Real:
      std::get<Value::Reals>(value.data).push_back(row.Real(column));
      break;
    case StorageKind::Text:
      std::get<Value::Texts>(value.data).push_back(FromStored(row.Text(column)));
      break;
    case StorageKind::Bytes: {
      const std::span<const std::byte> bytes = row.Bytes(column);
      std::get<Value::ByteStrings>(value.data).emplace_back(bytes.begin(), bytes.end());
      break;
    }
  }
}

/// An empty sequence, or value, of the type with that number.
Value EmptyOf(std::int64_t number) {
  for (int type = 0; type <= static_cast<int>(OdsType::Enum); ++type) {
    for (const bool sequence : {false, true}) {
      const auto ods = static_cast<OdsType>(type);
      if (NumberOfType(ods, sequence) != number || NameOfType(ods, false) == u"DT_UNKNOWN")
        continue;
      Value value = Value::Unset(ods, sequence);
      switch (StorageKindOf(ods)) {
        case StorageKind::Integer:
          value.data = Value::Integers();
          break;
        case StorageKind::Real:
          value.data = Value::Reals();
          break;
        case StorageKind::Text:
          value.data = Value::Texts();
          break;
        case StorageKind::Bytes:
          value.data = Value::ByteStrings();
          break;
      }
      return value;
    }
  }
  return {};
}

}  // namespace

void SqlStore::ReadSequences(EntityId entity, std::int32_t attribute, std::span<const RecordId> ids,
                             ColumnBlock& block) const {
  const Attribute& declared = AttributeOf(*m_schema.model, entity, attribute);
  const EntityPlace& place = Place(entity);
  std::vector<Value> values(ids.size(), Value::Unset(declared.type, declared.sequence));
  const bool isStored =
      place.attributes[static_cast<std::size_t>(attribute)].kind == AttributePlace::Kind::Sequence;
  if (isStored && !place.sequences.empty() && !ids.empty()) {
    const Dialect& dialect = m_connection->GetDialect();
    std::string sql = "SELECT i.pos, s.POS, s.VAL FROM " + dialect.IdList("i");
    sql += dialect.OrderedJoin();
    sql += place.sequences + " AS s ON s.IID=i.id AND s.ATTRNR=? ORDER BY i.pos, s.POS";
    Run run(*m_connection, std::move(sql));
    run.AddIds(ids).Add(std::int64_t{attribute});
    while (run->Step()) {
      Value& value = values[static_cast<std::size_t>(run->Integer(0))];
      if (run->Integer(1) < 0) {
        value = EmptyOf(run->Integer(2));
      } else if (value.IsSet()) {
        AddElement(*run, 2, value);
      }
    }
  }
  const bool isComplex = !declared.sequence && PartsOf(declared.type) == 2;
  for (Value& value : values) {
    block.isNull.push_back(value.IsSet() ? 0 : 1);
    if (isComplex) {
      const auto* parts = std::get_if<Value::Reals>(&value.data);
      block.reals.push_back(parts == nullptr ? 0 : parts->at(0));
      block.reals.push_back(parts == nullptr ? 0 : parts->at(1));
    } else {
      block.others.push_back(std::move(value));
    }
  }
}

Value SqlStore::ReadValue(RecordRef record, std::int32_t attribute) const {
  const Attribute& declared = AttributeOf(*m_schema.model, record.entity, attribute);
  const EntityPlace& place = Place(record.entity);
  const AttributePlace& at = place.attributes[static_cast<std::size_t>(attribute)];
  std::vector<ColumnBlock> blocks(1);
  ColumnBlock& block = blocks.front();
  if (at.kind == AttributePlace::Kind::Column || at.kind == AttributePlace::Kind::Id) {
    // One look tells the value and whether there is such a record.
    Run run(*m_connection,
            "SELECT " + at.column + " FROM " + place.table + " WHERE " + place.id + "=?");
    run.Add(record.id);
    if (!run->Step()) NoSuchRecord(record);
    block.type = declared.type;
    AppendCell(*run, 0, !m_schema.layout.isOwn, block);
  } else {
    MustExist(record);
    const std::int32_t asked[] = {attribute};
    const RecordId ids[] = {record.id};
    blocks = ReadColumns(record.entity, ids, asked);
  }
  if (blocks.front().isNull.empty() || blocks.front().isNull[0] != 0) {
    return Value::Unset(declared.type, declared.sequence);
  }
  return ValueAt(blocks.front(), 0);
}

// --- links ---------------------------------------------------------------------------------------

std::string SqlStore::FollowStatement(EntityId entity, std::int32_t relation,
                                      bool* isForward) const {
  const EntityPlace& source = Place(entity);
  const RelationPlace& place = source.relations[static_cast<std::size_t>(relation)];
  const EntityPlace& target = Place(RelationOf(*m_schema.model, entity, relation).target);
  const Dialect& dialect = m_connection->GetDialect();
  const std::string ids = " FROM " + dialect.IdList("i") + std::string(dialect.OrderedJoin());
  *isForward = place.kind == RelationPlace::Kind::Own;
  switch (place.kind) {
    case RelationPlace::Kind::Own:
      return "SELECT i.pos, t." + place.column + ", 0" + ids + source.table + " AS t ON t." +
             source.id + "=i.id AND t." + place.column + " IS NOT NULL";
    case RelationPlace::Kind::Other:
      return "SELECT i.pos, t." + target.id + ", " + OrderOfLinks(place, "t." + target.id, "t.") +
             ids + target.table + " AS t ON t." + place.column + "=i.id";
    case RelationPlace::Kind::Pairs: {
      std::string sql = "SELECT i.pos, t." + place.there + ", " + OrderOfLinks(place, {}, "t.") +
                        ids + place.table + " AS t ON t." + place.column + "=i.id";
      if (!place.name.empty()) sql += " AND t.REFNAME=?";
      return sql;
    }
    case RelationPlace::Kind::Nowhere:
      break;
  }
  return {};
}

/// The many targets of one record: nothing but their ids is fetched, in the order of the index.
std::vector<Link> SqlStore::FollowOne(EntityId entity, std::int32_t relation, RecordId id) const {
  const EntityId target = RelationOf(*m_schema.model, entity, relation).target;
  const EntityPlace& there = Place(target);
  const RelationPlace& place = Place(entity).relations[static_cast<std::size_t>(relation)];
  const bool isColumn = place.kind == RelationPlace::Kind::Other;
  std::string sql = "SELECT " + (isColumn ? there.id : place.there) + " FROM " +
                    (isColumn ? there.table : place.table) + " WHERE " + place.column + "=?";
  if (!place.name.empty()) sql += " AND REFNAME=?";
  Run run(*m_connection, sql + " ORDER BY " + OrderOfLinks(place, there.id));
  run.Add(id);
  if (!place.name.empty()) run.Add(place.name);
  const std::vector<RecordId> ids = run->TakeIntegers();
  std::vector<Link> links;
  links.reserve(ids.size());
  for (const RecordId to : ids) links.push_back({0, {target, to}});
  return links;
}

std::vector<Link> SqlStore::Follow(EntityId entity, std::int32_t relation,
                                   std::span<const RecordId> ids) const {
  (void)Place(entity);
  const EntityId target = RelationOf(*m_schema.model, entity, relation).target;
  const RelationPlace& place = Place(entity).relations[static_cast<std::size_t>(relation)];
  const bool isToMany =
      place.kind == RelationPlace::Kind::Other || place.kind == RelationPlace::Kind::Pairs;
  if (ids.size() == 1 && isToMany) return FollowOne(entity, relation, ids[0]);
  bool isForward = false;
  std::string sql = FollowStatement(entity, relation, &isForward);
  std::vector<Link> links;
  if (sql.empty() || ids.empty()) return links;
  if (isForward) links.reserve(ids.size());
  Run run(*m_connection, std::move(sql));
  run.AddIds(ids);
  if (!place.name.empty() && place.kind == RelationPlace::Kind::Pairs) run.Add(place.name);
  std::vector<std::int64_t> keys;
  bool isSorted = true;
  while (run->Step()) {
    const auto source = static_cast<std::uint32_t>(run->Integer(0));
    links.push_back({source, {target, run->Integer(1)}});
    if (isForward) continue;
    keys.push_back(run->Integer(2));
    const std::size_t n = links.size();
    isSorted = isSorted && (n < 2 || links[n - 2].source < source ||
                            (links[n - 2].source == source && keys[n - 2] <= keys[n - 1]));
  }
  if (isSorted) return links;
  // Indexes give the targets in their order, so this is for databases without ours.
  std::vector<std::size_t> order(links.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return std::pair(links[a].source, keys[a]) < std::pair(links[b].source, keys[b]);
  });
  std::vector<Link> sorted;
  sorted.reserve(links.size());
  for (const std::size_t i : order) sorted.push_back(links[i]);
  return sorted;
}

// --- instance attributes and values --------------------------------------------------------------

std::vector<RecordInstanceAttribute> SqlStore::ReadInstanceAttributes(
    EntityId entity, std::span<const RecordId> ids) const {
  const EntityPlace& place = Place(entity);
  std::vector<RecordInstanceAttribute> all;
  if (!m_schema.layout.isOwn) return all;
  const Dialect& dialect = m_connection->GetDialect();
  // The order of ids first, so that the index gives each record's attributes, then their own.
  Run run(*m_connection, "SELECT i.pos, a.NAME, a.TYPE, a.VALUE, a.UNITID FROM " +
                             dialect.IdList("i") + std::string(dialect.OrderedJoin()) +
                             "SF_INSTATTR AS a ON a.AID=? AND a.IID=i.id ORDER BY i.pos, a.SEQ");
  run.AddIds(ids).Add(place.aid);
  while (run->Step()) {
    RecordInstanceAttribute& one = all.emplace_back();
    one.source = static_cast<std::uint32_t>(run->Integer(0));
    one.attribute.name = FromStored(run->Text(1));
    one.attribute.unit = run->Integer(4);
    ColumnBlock block;
    block.type = static_cast<OdsType>(run->Integer(2));
    AppendCell(*run, 3, false, block);
    one.attribute.value = ValueAt(block, 0);
  }
  return all;
}

BulkKey SqlStore::KeyOf(RecordRef localColumn, BulkPart part) const {
  return {Place(localColumn.entity).aid, localColumn.id, part};
}

const std::shared_ptr<Connection>& SqlStore::BulkConnection() const {
  if (m_isWriting) return m_connection;
  if (m_bulkReader == nullptr) {
    m_bulkReader = m_connection->OpenReader();
    if (m_bulkReader == nullptr) m_bulkReader = m_connection;
  }
  return m_bulkReader;
}

std::unique_ptr<ValueSource> SqlStore::OpenValues(RecordRef localColumn) const {
  MustExist(localColumn);
  if (m_schema.layout.isOwn) {
    if (auto source = OpenBulk(BulkConnection(), KeyOf(localColumn, BulkPart::Values)))
      return source;
  }
  return OpenParameters(*this, localColumn);
}

std::unique_ptr<ValueSource> SqlStore::OpenFlags(RecordRef localColumn) const {
  MustExist(localColumn);
  if (!m_schema.layout.isOwn) return nullptr;
  return OpenBulk(BulkConnection(), KeyOf(localColumn, BulkPart::Flags));
}

}  // namespace hv::vex::engine::sql
