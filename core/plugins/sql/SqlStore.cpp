// core/plugins/sql/SqlStore.cpp - finding records, checks of arguments, and the session.
#include "core/plugins/sql/SqlStore.h"

#include <algorithm>
#include <atomic>

#include "core/model/ModelChange.h"
#include "core/plugins/sql/Cells.h"
#include "core/plugins/sql/QueryPlanner.h"
#include "core/plugins/sql/SchemaMigration.h"
#include "core/plugins/sql/TextKey.h"
#include "core/store/memory/Failure.h"
#include "storefabric/WString.h"

namespace hv::vex::engine::sql {
namespace {

/// Of all databases that this process has open: sessions on one file see each other's work.
std::atomic<std::uint64_t> g_changes{1};

}  // namespace

SqlStore::SqlStore(std::shared_ptr<Connection> connection, std::u16string name)
    : m_connection(std::move(connection)),
      m_name(std::move(name)),
      m_seenChanges(m_connection->ChangesOfOthers()),
      m_schema(ReadSchema(*m_connection, m_name)) {
  if (MigrateSchema(*m_connection, m_schema)) m_schema = ReadSchema(*m_connection, m_name);
}

SqlStore::~SqlStore() {
  // A session that ends without saving loses its work; a source of values may keep the connection.
  if (!m_isWriting) return;
  try {
    m_connection->Rollback();
  } catch (const Exception&) {
    // The database drops the work by itself when the connection goes.
  }
}

const EntityPlace& SqlStore::Place(EntityId entity) const {
  if (entity >= m_schema.layout.entities.size()) {
    Fail(errc::kUnknownName, {u"there is no such entity"});
  }
  const EntityPlace& place = m_schema.layout.entities[entity];
  if (place.table.empty()) {
    Fail(errc::kUnknownName, {u"entity ", m_schema.model->At(entity).name, u" has no records"});
  }
  return place;
}

void SqlStore::MustExist(RecordRef record) const {
  (void)Place(record.entity);
  if (!Exists(record)) NoSuchRecord(record);
}

void SqlStore::NoSuchRecord(RecordRef record) const {
  FailAt(*this, record, errc::kInstanceGone, {u"there is no such record"});
}

void SqlStore::MustBeScalar(EntityId entity, std::int32_t attribute) const {
  const Attribute& declared = AttributeOf(*m_schema.model, entity, attribute);
  const AttributePlace& place = Place(entity).attributes[static_cast<std::size_t>(attribute)];
  const bool isColumn =
      place.kind == AttributePlace::Kind::Column || place.kind == AttributePlace::Kind::Id;
  if (isColumn && !declared.sequence && PartsOf(declared.type) == 1 &&
      StorageKindOf(declared.type) != StorageKind::Bytes) {
    return;
  }
  Fail(errc::kNotSupported,
       {m_schema.model->At(entity).name, u".", declared.name, u": values of type ",
        NameOfType(declared.type, declared.sequence), u" can't be put in order"});
}

Capabilities SqlStore::GetCapabilities() const {
  Capabilities capabilities;
  capabilities.writable = m_schema.layout.isOwn && !m_connection->IsReadOnly();
  return capabilities;
}

bool SqlStore::Exists(RecordRef record) const {
  if (record.entity >= m_schema.layout.entities.size()) return false;
  const EntityPlace& place = m_schema.layout.entities[record.entity];
  if (place.table.empty()) return false;
  Run run(*m_connection, "SELECT 1 FROM " + place.table + " WHERE " + place.id + "=?");
  run.Add(record.id);
  return run->Step();
}

std::uint64_t SqlStore::CountOf(EntityId entity) const {
  Run run(*m_connection, "SELECT count(*) FROM " + Place(entity).table);
  return run->Step() ? static_cast<std::uint64_t>(run->Integer(0)) : 0;
}

std::vector<RecordId> SqlStore::AllOf(EntityId entity) const {
  const EntityPlace& place = Place(entity);
  Run run(*m_connection, "SELECT " + place.id + " FROM " + place.table + " ORDER BY " + place.id);
  return run->TakeIntegers();
}

void SqlStore::Prepare(const BoundQuery& query) const {
  (void)Place(query.entity);
  if (query.start) {
    (void)Place(query.start->entity);
    (void)RelationOf(*m_schema.model, query.start->entity, query.start->relation);
  }
  if (!query.freeText.empty()) IndexTexts();
}

std::vector<RecordId> SqlStore::Select(const BoundQuery& query) const {
  Prepare(query);
  const Fragment select = Compile(query);
  Run run(*m_connection, select.text);
  BindAll(run, select);
  std::vector<RecordId> ids = run->TakeIntegers();
  ids.shrink_to_fit();  // lists of hits are kept for long
  return ids;
}

Fragment SqlStore::Compile(const BoundQuery& query,
                           std::span<const std::int32_t> attributes) const {
  const QueryPlan plan = PlanQuery(*m_connection, *m_schema.model, m_schema.layout, query);
  return QueryCompiler(*m_schema.model, m_schema.layout, m_connection->GetDialect())
      .Compile(query, plan, attributes);
}

std::string SqlStore::Explain(const BoundQuery& query) const {
  const Dialect& dialect = m_connection->GetDialect();
  const Fragment select = Compile(query);
  std::string plan;
  Run run(*m_connection, dialect.Explain(select.text));
  BindAll(run, select);
  constexpr int kDetail = 3;
  while (run->Step()) plan.append(run->Text(kDetail)).append(1, '\n');
  return plan;
}

Fragment SqlStore::Restriction(EntityId entity, const BoundQuery* restriction) const {
  Fragment where;
  if (restriction == nullptr) return where;
  if (restriction->entity != entity) {
    Fail(errc::kInvalidArgument, {u"the restriction asks for records of another entity"});
  }
  if (!restriction->freeText.empty()) IndexTexts();
  where += " WHERE v." + Place(entity).id + " IN (";
  where += Compile(*restriction);
  where += ")";
  return where;
}

ColumnBlock SqlStore::Distinct(EntityId entity, std::int32_t attribute,
                               const BoundQuery* restriction, std::size_t limit) const {
  const EntityPlace& place = Place(entity);
  MustBeScalar(entity, attribute);
  const Attribute& declared = AttributeOf(*m_schema.model, entity, attribute);
  const Dialect& dialect = m_connection->GetDialect();
  const std::string column = "v." + place.attributes[static_cast<std::size_t>(attribute)].column;
  QueryCompiler compiler(*m_schema.model, m_schema.layout, dialect);
  const bool isText = StorageKindOf(declared.type) == StorageKind::Text;
  Fragment select;
  select += "SELECT DISTINCT c, k FROM (SELECT " + column + " AS c, ";
  select += compiler.OrderKey(entity, attribute, "v");
  select += " AS k FROM " + place.table + " AS v";
  select += Restriction(entity, restriction);
  select += ") AS w WHERE k IS NOT NULL ORDER BY k" +
            (isText ? ", " + dialect.CodeUnitOrder("c") : std::string());
  if (limit != 0) {
    select += " LIMIT ";
    select.Value(static_cast<std::int64_t>(limit));
  }
  ColumnBlock block;
  block.type = declared.type;
  Run run(*m_connection, select.text);
  BindAll(run, select);
  while (run->Step()) AppendCell(*run, 0, !m_schema.layout.isOwn, block);
  return block;
}

Bounds SqlStore::BoundsOf(EntityId entity, std::int32_t attribute,
                          const BoundQuery* restriction) const {
  const EntityPlace& place = Place(entity);
  MustBeScalar(entity, attribute);
  const Attribute& declared = AttributeOf(*m_schema.model, entity, attribute);
  const Dialect& dialect = m_connection->GetDialect();
  const std::string column = "v." + place.attributes[static_cast<std::size_t>(attribute)].column;
  const bool isText = StorageKindOf(declared.type) == StorageKind::Text;
  Bounds bounds{Value::Unset(declared.type), Value::Unset(declared.type), 0};
  const auto source = [&](std::string_view what) {
    Fragment select;
    select += std::string(what) + " FROM (SELECT " + column + " AS c, ";
    select +=
        QueryCompiler(*m_schema.model, m_schema.layout, dialect).OrderKey(entity, attribute, "v");
    select += " AS k FROM " + place.table + " AS v";
    select += Restriction(entity, restriction);
    select += ") AS w WHERE k IS NOT NULL";
    return select;
  };
  const auto end = [&](const char* direction, Value& value) {
    Fragment select = source("SELECT c");
    select += std::string(" ORDER BY k") + direction;
    if (isText) select += ", " + dialect.CodeUnitOrder("c") + direction;
    select += " LIMIT 1";
    Run run(*m_connection, select.text);
    BindAll(run, select);
    if (!run->Step()) return;
    ColumnBlock block;
    block.type = declared.type;
    AppendCell(*run, 0, !m_schema.layout.isOwn, block);
    value = ValueAt(block, 0);
  };
  {
    const Fragment count = source("SELECT count(*)");
    Run run(*m_connection, count.text);
    BindAll(run, count);
    if (run->Step()) bounds.count = static_cast<std::uint64_t>(run->Integer(0));
  }
  if (bounds.count == 0) return bounds;
  end(" ASC", bounds.lowest);
  end(" DESC", bounds.highest);
  return bounds;
}

std::uint64_t SqlStore::ChangeStamp() const { return g_changes; }

// --- session -------------------------------------------------------------------------------------

Change::Change(SqlStore& store) : m_store(store) {
  if (!m_store.GetCapabilities().writable) {
    Fail(errc::kWriteProtected, {m_store.m_name, u": the database can't be changed"});
  }
  if (m_store.m_isWriting) return;
  m_store.m_connection->Begin();
  m_store.m_isWriting = true;
}

Change::~Change() {
  ++g_changes;
  if (m_isDone) return;
  // A full disk makes the database drop the whole work, and then nothing is left to be saved.
  const bool isLost = !m_store.m_connection->IsInTransaction();
  if (m_store.m_isModified && !isLost) return;
  m_store.m_isModified = false;
  m_store.m_unindexed.clear();
  try {
    m_store.m_connection->Rollback();
    m_store.m_isWriting = false;
  } catch (const Exception&) {
    // The next Discard tries again.
  }
}

void Change::Done() {
  m_isDone = true;
  m_store.m_isModified = true;
}

void SqlStore::Save(std::u16string_view) {
  if (!GetCapabilities().writable) {
    Fail(errc::kWriteProtected, {m_name, u": the database can't be changed"});
  }
  if (!m_isWriting) return;
  IndexTexts();
  m_connection->Commit();
  ++g_changes;
  m_isWriting = false;
  m_isModified = false;
}

// Every statement sees what others have saved, so that only their model may have to be read.
void SqlStore::Refresh() {
  if (m_isWriting) return;
  const std::int64_t changes = m_connection->ChangesOfOthers();
  if (changes == m_seenChanges) return;
  OpenedSchema schema = ReadSchema(*m_connection, m_name);
  const ModelChange change = CompareModels(*m_schema.model, *schema.model);
  if (change == ModelChange::Other) FailModelChanged();
  if (change == ModelChange::Grown) {
    ++m_modelStamp;
  } else {
    schema.model = m_schema.model;
  }
  m_schema = std::move(schema);
  m_seenChanges = changes;
}

void SqlStore::Discard() {
  if (m_isWriting) m_connection->Rollback();
  ++g_changes;
  m_unindexed.clear();
  m_isWriting = false;
  m_isModified = false;
}

}  // namespace hv::vex::engine::sql
