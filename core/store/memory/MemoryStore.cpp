// core/store/memory/MemoryStore.cpp - changing records, saving and taking over contents.
#include "core/store/memory/MemoryStore.h"

#include <algorithm>

#include "core/model/ModelChange.h"
#include "core/store/RecordAccess.h"
#include "core/store/memory/Failure.h"
#include "core/store/memory/MemoryStoreAccess.h"
#include "core/store/memory/MemoryTable.h"
#include "store/core/Exception.h"

namespace hv::vex::engine {
namespace {

/// The two directions of a relation between two tables.
struct Link2 {
  LinkColumn& forward;
  LinkColumn& backward;
  bool IsSymmetric() const { return &backward == &forward; }

  void Add(Row from, Row to) const {
    forward.Add(from, to);
    if (!(IsSymmetric() && from == to)) backward.Add(to, from);
  }
  void Remove(Row from, Row to) const {
    forward.Remove(from, to);
    if (!(IsSymmetric() && from == to)) backward.Remove(to, from);
  }
  bool Has(Row from, Row to) const {
    // The to-one side, or else the shorter list, is looked at.
    const bool useBackward = backward.CountOf(to) < forward.CountOf(from);
    return useBackward ? backward.Has(to, from) : forward.Has(from, to);
  }
  /// Lets go of the partners that a to-one side can't keep beside a new one.
  void MakeRoom(Row from, Row to) const {
    if (!forward.IsToMany() && !forward.Of(from).empty()) Remove(from, forward.Of(from).front());
    if (!backward.IsToMany() && !backward.Of(to).empty()) Remove(backward.Of(to).front(), to);
  }
};

std::uint64_t CountOfValues(const LongValues& values) {
  const std::unique_ptr<ValueSource> source = values.Open();
  return source == nullptr ? 0 : source->Count();
}

std::vector<std::unique_ptr<MemoryTable>> MakeTables(const Model& model) {
  std::vector<std::unique_ptr<MemoryTable>> tables(model.Entities().size());
  for (const Entity& entity : model.Entities()) {
    if (!entity.isBase) tables[entity.id] = std::make_unique<MemoryTable>(entity);
  }
  return tables;
}

/// What may be changed where it lies. Whoever else holds it keeps it as it was.
InMemoryValues& Own(LongValues& values, const std::function<std::unique_ptr<ValueSource>()>& open) {
  if (values.own == nullptr || values.own.use_count() > 1) {
    values = {nullptr, nullptr, InMemoryValues::FromSource(*open())};
  }
  return *values.own;
}

/// Adds to the values or flags there are. Throws kWrongType as `InMemoryValues::Append` does.
void Extend(LongValues& values, const Value& added) {
  if (CountOfValues(values) == 0) {
    values = {nullptr, nullptr, InMemoryValues::FromValue(added)};
  } else {
    Own(values, [&] { return values.Open(); }).Append(added);
  }
}

}  // namespace

MemoryStore::MemoryStore(std::shared_ptr<const Model> model, MemoryPersistence persistence)
    : m_model(std::move(model)),
      m_persistence(std::move(persistence)),
      m_tables(MakeTables(*m_model)) {}

MemoryStore::~MemoryStore() = default;

std::unique_ptr<MemoryStore> MemoryStore::Clone(MemoryPersistence persistence) const {
  auto clone = std::make_unique<MemoryStore>(m_model, std::move(persistence));
  for (std::size_t i = 0; i < m_tables.size(); ++i) {
    if (m_tables[i] != nullptr) *clone->m_tables[i] = *m_tables[i];
  }
  clone->m_mixedLinks = m_mixedLinks;
  clone->m_warnings = m_warnings;
  clone->m_contextValues = m_contextValues;
  return clone;
}

void MemoryStore::AddWarning(std::u16string text) const { m_warnings.push_back(std::move(text)); }

MemoryTable& MemoryStore::Writable(EntityId entity) {
  if (!m_persistence.save) Fail(errc::kWriteProtected, {u"the store can't be changed"});
  return const_cast<MemoryTable&>(Table(entity));
}

RecordId MemoryStore::Create(EntityId entity, RecordId id) {
  MemoryTable& table = Writable(entity);
  if (id == 0) id = table.NewId();
  if (table.Append(id) == kNoRow) {
    Fail(errc::kNotUnique, {m_model->At(entity).name, u":", DecimalText(id), u" exists already"});
  }
  m_isModified = true;
  return id;
}

void MemoryStore::Write(RecordRef record, std::int32_t attribute, const Value& value) {
  MemoryTable& table = Writable(record.entity);
  const Row row = RowOf(*this, record);
  const Attribute& declared = AttributeOf(*m_model, record.entity, attribute);
  if (attribute == table.IdAttribute()) {
    if (value == Value::Integer(declared.type, record.id)) return;
    FailAt(*this, record, errc::kInvalidArgument, {u"the id of a record can't be changed"});
  }
  const LongAttribute which = LongAttributeOf(*m_model, record.entity, attribute);
  if (which != LongAttribute::None) {
    std::shared_ptr<const InMemoryValues> values;
    if (value.IsSet()) values = InMemoryValues::FromValue(value);
    if (which == LongAttribute::Flags && values != nullptr && values->Type() != OdsType::Short) {
      FailAt(*this, record, errc::kWrongType,
             {u"flags are of type ", NameOfType(OdsType::Short, true)});
    }
    LocalColumn& column = table.MakeLocalColumn(row);
    (which == LongAttribute::Values ? column.values : column.flags) = {std::move(values), nullptr};
  } else if (!table.At(attribute).SetValue(row, value)) {
    FailAt(*this, record, errc::kWrongType,
           {u"the value doesn't fit attribute ", declared.name, u" of type ",
            NameOfType(declared.type, declared.sequence)});
  }
  m_isModified = true;
}

namespace {

/// The two records of a link, found, and where their links are.
struct Ends {
  Row from;
  Row to;
  Link2 links;
};

/// Checks both records of a link.
std::pair<Row, Row> FindRows(const MemoryStore& store, RecordRef record, std::int32_t relation,
                             RecordRef target) {
  const Model& model = *store.GetModel();
  const Row from = RowOf(store, record);
  const Relation& declared = RelationOf(model, record.entity, relation);
  if (!model.IsKindOf(target.entity, declared.target)) {
    FailAt(store, record, errc::kWrongType,
           {u"relation ", declared.name, u" leads to ", model.At(declared.target).name});
  }
  return {from, RowOf(store, target)};
}

/// Only to be called once the store is known to be writable.
Ends FindEnds(const MemoryStore& store, RecordRef record, std::int32_t relation, RecordRef target) {
  const Model& model = *store.GetModel();
  const auto [from, to] = FindRows(store, record, relation, target);
  const Relation& declared = RelationOf(model, record.entity, relation);
  auto& sourceTable = const_cast<MemoryTable&>(store.Table(record.entity));
  auto& targetTable = const_cast<MemoryTable&>(store.Table(target.entity));
  return {from, to, {sourceTable.Links(relation), targetTable.Links(declared.inverse)}};
}

}  // namespace

void MemoryStore::Connect(RecordRef record, std::int32_t relation, RecordRef target) {
  (void)Writable(record.entity);
  const Relation& declared = RelationOf(*m_model, record.entity, relation);
  if (declared.IsMixed()) {
    FindRows(*this, record, relation, target);
    if (m_mixedLinks.Add(record, relation, target, declared.ToMany())) m_isModified = true;
    return;
  }
  const auto [from, to, links] = FindEnds(*this, record, relation, target);
  if (links.Has(from, to)) return;
  links.MakeRoom(from, to);
  links.Add(from, to);
  m_isModified = true;
}

void MemoryStore::Disconnect(RecordRef record, std::int32_t relation, RecordRef target) {
  (void)Writable(record.entity);
  if (RelationOf(*m_model, record.entity, relation).IsMixed()) {
    FindRows(*this, record, relation, target);
    if (m_mixedLinks.Remove(record, relation, target)) m_isModified = true;
    return;
  }
  const auto [from, to, links] = FindEnds(*this, record, relation, target);
  if (!links.Has(from, to)) return;
  links.Remove(from, to);
  m_isModified = true;
}

void MemoryStore::Delete(RecordRef record) {
  MemoryTable& table = Writable(record.entity);
  const Row row = RowOf(*this, record);
  const auto& relations = m_model->At(record.entity).relations;
  for (std::size_t r = 0; r < relations.size(); ++r) {
    if (relations[r].IsMixed()) continue;
    LinkColumn& backward = m_tables[relations[r].target]->Links(relations[r].inverse);
    const std::span<const Row> targets = table.Links(static_cast<std::int32_t>(r)).Of(row);
    for (const Row target : std::vector<Row>(targets.begin(), targets.end())) {
      backward.Remove(target, row);
    }
  }
  m_mixedLinks.Forget(record);
  table.Remove(row);
  m_isModified = true;
}

void MemoryStore::SetInstanceAttribute(RecordRef record, const InstanceAttribute& attribute) {
  MemoryTable& table = Writable(record.entity);
  const Row row = RowOf(*this, record);
  if (attribute.name.empty()) {
    FailAt(*this, record, errc::kInvalidArgument, {u"an instance attribute needs a name"});
  }
  if (!table.InstanceValues().Set(row, attribute)) {
    FailAt(*this, record, errc::kWrongType,
           {u"instance attribute ", attribute.name, u" can't have this value"});
  }
  m_isModified = true;
}

bool MemoryStore::RemoveInstanceAttribute(RecordRef record, std::u16string_view name) {
  MemoryTable& table = Writable(record.entity);
  if (!table.InstanceValues().Remove(RowOf(*this, record), name)) return false;
  m_isModified = true;
  return true;
}

void MemoryStore::WriteValues(RecordRef localColumn, const Value& values,
                              std::span<const std::int16_t> flags, bool append) {
  MemoryTable& table = Writable(localColumn.entity);
  const Row row = RowOf(*this, localColumn);
  if (m_model->BaseNameOf(localColumn.entity) != u"aolocalcolumn") {
    FailAt(*this, localColumn, errc::kNotSupported, {u"only local columns have values"});
  }
  if (!flags.empty() && flags.size() != values.Count()) {
    FailAt(*this, localColumn, errc::kInvalidArgument, {u"there must be one flag for each value"});
  }
  if (append && !values.IsSet()) return;
  LocalColumn& column = table.MakeLocalColumn(row);
  if (!append) {
    LocalColumn changed;
    if (values.IsSet()) changed.values.inMemory = InMemoryValues::FromValue(values);
    if (!flags.empty()) changed.flags.inMemory = InMemoryValues::FromFlags(flags);
    column = std::move(changed);
  } else {
    const bool hadFlags = column.flags.IsSet();
    const std::uint64_t old = hadFlags ? 0 : CountOfValues(column.values);
    Extend(column.values, values);
    // Once some values have flags, all have; those written without one are valid.
    if (!flags.empty() || hadFlags) {
      Value added{OdsType::Short, true, Value::Integers(flags.begin(), flags.end())};
      auto& all = std::get<Value::Integers>(added.data);
      all.resize(values.Count(), kFlagsOfValid);
      all.insert(all.begin(), static_cast<std::size_t>(old), kFlagsOfValid);
      Extend(column.flags, added);
    }
  }
  m_isModified = true;
}

void MemoryStore::PutValues(RecordRef localColumn, ColumnPart part, std::uint64_t first,
                            const Value& values) {
  MemoryTable& table = Writable(localColumn.entity);
  const Row row = RowOf(*this, localColumn);
  const bool isFlags = part == ColumnPart::Flags;
  const auto open = [&] { return isFlags ? OpenFlags(localColumn) : OpenValues(localColumn); };
  OdsType type = values.type;
  std::uint64_t count = 0;
  if (const std::unique_ptr<ValueSource> source = open()) {
    type = source->Type();
    count = source->Count();
  }
  CheckPut(*this, localColumn, part, type, count, first, values);
  LocalColumn& column = table.MakeLocalColumn(row);
  LongValues& changed = isFlags ? column.flags : column.values;
  if (first < count) {
    Own(changed, open).Overwrite(first, values);
  } else if (isFlags) {
    Extend(changed, values);
  } else {
    if (count != 0) (void)Own(changed, open);  // parameters stay in front
    WriteValues(localColumn, values, {}, true);
  }
  m_isModified = true;
}

void MemoryStore::Save(std::u16string_view mode) {
  if (!m_persistence.save) Fail(errc::kWriteProtected, {u"the store can't be saved"});
  const bool mustReload = m_persistence.save(*this, mode);
  m_isModified = false;
  if (!mustReload || !m_persistence.reload) return;
  if (const std::unique_ptr<MemoryStore> contents = m_persistence.reload(false)) {
    TakeOver(*contents);
  }
}

void MemoryStore::Discard() {
  if (!m_isModified) return;
  if (!m_persistence.reload) {
    Fail(errc::kNotSupported, {u"the store can't go back to what was saved"});
  }
  const std::unique_ptr<MemoryStore> contents = m_persistence.reload(false);
  if (contents == nullptr) Fail(errc::kInternal, {u"the saved contents can't be read again"});
  TakeOver(*contents);
}

void MemoryStore::Refresh() {
  if (m_isModified || !m_persistence.reload) return;
  if (const std::unique_ptr<MemoryStore> contents = m_persistence.reload(true)) {
    TakeOver(*contents);
  }
}

void MemoryStore::TakeOver(MemoryStore& other) {
  const ModelChange change = CompareModels(*m_model, *other.m_model);
  if (change == ModelChange::Other) FailModelChanged();
  if (change == ModelChange::Grown) {
    m_model = other.m_model;
    ++m_modelStamp;
  }
  m_tables.swap(other.m_tables);
  std::swap(m_mixedLinks, other.m_mixedLinks);
  m_warnings.swap(other.m_warnings);
  m_contextValues.swap(other.m_contextValues);
  m_isModified = false;
}

}  // namespace hv::vex::engine
