// core/plugins/sql/SqlStoreWrite.cpp - creating, writing and deleting records.
#include <algorithm>
#include <limits>

#include "core/plugins/sql/Cells.h"
#include "core/plugins/sql/SqlStore.h"
#include "core/plugins/sql/TextIndex.h"
#include "core/plugins/sql/TextKey.h"
#include "core/store/memory/Column.h"
#include "core/store/memory/Failure.h"
#include "core/store/memory/InMemoryValues.h"
#include "core/store/memory/InstanceAttributes.h"

namespace hv::vex::engine::sql {
namespace {

/// A column of the type knows all rules of fitting.
bool Fits(const Attribute& declared, const Value& value) {
  Column probe(declared.type, declared.sequence);
  return probe.SetValue(0, value);
}

}  // namespace

RecordId SqlStore::Create(EntityId entity, RecordId id) {
  const EntityPlace& place = Place(entity);
  Change change(*this);
  if (id == 0) {
    Run last(*m_connection, "SELECT max(" + place.id + ") FROM " + place.table);
    if (last->Step() && last->Integer(0) == std::numeric_limits<RecordId>::max()) {
      Fail(errc::kNotSupported,
           {m_schema.model->At(entity).name, u": there is no id left for a new record"});
    }
    Run(*m_connection, "INSERT INTO " + place.table + " DEFAULT VALUES").Finish();
    id = m_connection->LastId();
  } else {
    if (Exists({entity, id})) {
      Fail(errc::kNotUnique,
           {m_schema.model->At(entity).name, u":", DecimalText(id), u" exists already"});
    }
    Run(*m_connection, "INSERT INTO " + place.table + "(" + place.id + ") VALUES(?)")
        .Add(id)
        .Finish();
  }
  change.Done();
  return id;
}

void SqlStore::Write(RecordRef record, std::int32_t attribute, const Value& value) {
  (void)Place(record.entity);
  Change change(*this);
  MustExist(record);
  const Attribute& declared = AttributeOf(*m_schema.model, record.entity, attribute);
  const AttributePlace& place =
      Place(record.entity).attributes[static_cast<std::size_t>(attribute)];
  if (place.kind == AttributePlace::Kind::Id) {
    if (value == Value::Integer(declared.type, record.id)) return;
    FailAt(*this, record, errc::kInvalidArgument, {u"the id of a record can't be changed"});
  }
  if (place.kind == AttributePlace::Kind::Bulk) {
    const BulkPart part = declared.baseName == u"flags" ? BulkPart::Flags : BulkPart::Values;
    if (part == BulkPart::Flags && value.IsSet() && value.type != OdsType::Short) {
      FailAt(*this, record, errc::kWrongType,
             {u"flags are of type ", NameOfType(OdsType::Short, true)});
    }
    if (value.IsSet()) (void)InMemoryValues::FromValue(value);
    DeleteBulk(*m_connection, KeyOf(record, part));
    if (value.IsSet()) AppendBulk(*m_connection, KeyOf(record, part), value);
  } else if (!Fits(declared, value)) {
    FailAt(*this, record, errc::kWrongType,
           {u"the value doesn't fit attribute ", declared.name, u" of type ",
            NameOfType(declared.type, declared.sequence)});
  } else if (place.kind == AttributePlace::Kind::Column) {
    WriteCell(record, place, value);
    if (IsSearchedForWords(declared, place)) NoteTexts(record);
  } else {
    WriteSequence(record, attribute, value);
  }
  change.Done();
}

void SqlStore::WriteCell(RecordRef record, const AttributePlace& place, const Value& value) {
  const EntityPlace& table = Place(record.entity);
  std::string sql = "UPDATE " + table.table + " SET " + place.column + "=?";
  if (!place.key.empty()) sql += "," + place.key + "=?";
  Run run(*m_connection, sql + " WHERE " + table.id + "=?");
  std::string buffer, keyBuffer;
  const ColumnBlock block = value.IsSet() ? BlockOf(value) : ColumnBlock();
  if (value.IsSet()) {
    BindCell(*run, run.Next(), block, 0, buffer);
    if (!place.key.empty()) BindKey(*run, run.Next(), block, 0, buffer, keyBuffer);
  } else {
    run.AddNull();
    if (!place.key.empty()) run.AddNull();
  }
  run.Add(record.id).Finish();
}

void WriteSequenceRows(Connection& connection, const EntityPlace& place, RecordId id,
                       std::int32_t attribute, const Value& value) {
  Run run(connection, "INSERT INTO " + place.sequences + " VALUES(?,?,?,?)");
  const auto put = [&](std::int64_t position, const auto& bind) {
    run->BindInteger(1, id);
    run->BindInteger(2, attribute);
    run->BindInteger(3, position);
    bind();
    run.Finish();
    run->Reset();
  };
  put(-1, [&] { run->BindInteger(4, NumberOfType(value.type, value.sequence)); });
  std::int64_t position = 0;
  std::string stored;
  if (const auto* integers = std::get_if<Value::Integers>(&value.data)) {
    for (const std::int64_t v : *integers) put(position++, [&] { run->BindInteger(4, v); });
  } else if (const auto* reals = std::get_if<Value::Reals>(&value.data)) {
    for (const double v : *reals) put(position++, [&] { run->BindReal(4, v); });
  } else if (const auto* texts = std::get_if<Value::Texts>(&value.data)) {
    for (const std::u16string& text : *texts) {
      stored = ToStored(text);
      put(position++, [&] { run->BindText(4, stored); });
    }
  } else if (const auto* strings = std::get_if<Value::ByteStrings>(&value.data)) {
    for (const Bytes& bytes : *strings) put(position++, [&] { run->BindBytes(4, bytes); });
  }
}

void SqlStore::WriteSequence(RecordRef record, std::int32_t attribute, const Value& value) {
  const EntityPlace& place = Place(record.entity);
  Run(*m_connection, "DELETE FROM " + place.sequences + " WHERE IID=? AND ATTRNR=?")
      .Add(record.id)
      .Add(std::int64_t{attribute})
      .Finish();
  if (value.IsSet()) WriteSequenceRows(*m_connection, place, record.id, attribute, value);
}

void SqlStore::Delete(RecordRef record) {
  const EntityPlace& place = Place(record.entity);
  Change change(*this);
  MustExist(record);
  RemoveAllLinks(record);
  const auto remove = [&](const std::string& sql, bool needsElement) {
    Run run(*m_connection, sql);
    if (needsElement) run.Add(place.aid);
    run.Add(record.id).Finish();
  };
  remove("DELETE FROM " + place.sequences + " WHERE IID=?", false);
  remove("DELETE FROM SF_INSTATTR WHERE AID=? AND IID=?", true);
  remove("DELETE FROM SF_BULK WHERE AID=? AND IID=?", true);
  if (!place.texts.empty()) remove("DELETE FROM " + place.texts + " WHERE rowid=?", false);
  remove("DELETE FROM " + place.table + " WHERE " + place.id + "=?", false);
  m_unindexed.erase({record.entity, record.id});
  change.Done();
}

// --- words ---------------------------------------------------------------------------------------

void SqlStore::NoteTexts(RecordRef record) {
  if (Place(record.entity).texts.empty()) return;
  m_unindexed.emplace(record.entity, record.id);
  constexpr std::size_t kMostNoted = 50000;
  if (m_unindexed.size() >= kMostNoted) IndexTexts();
}

void SqlStore::IndexTexts() const {
  std::vector<RecordId> ids;
  for (auto at = m_unindexed.begin(); at != m_unindexed.end();) {
    const EntityId entity = at->first;
    ids.clear();
    for (; at != m_unindexed.end() && at->first == entity; ++at) ids.push_back(at->second);
    IndexTextsOf(*m_connection, *m_schema.model, m_schema.layout, entity, ids);
  }
  m_unindexed.clear();
}

// --- instance attributes and values --------------------------------------------------------------

void WriteInstanceAttribute(Connection& connection, std::int64_t aid, RecordId id,
                            const InstanceAttribute& attribute) {
  const std::string name = ToStored(attribute.name);
  const std::string folded = FoldedKey(attribute.name);
  Run run(connection, connection.GetDialect().Upsert(
                          "INSERT INTO SF_INSTATTR(AID,IID,NAME,NAME_F,TYPE,VALUE,VALUE_F,UNITID)"
                          " VALUES(?,?,?,?,?,?,?,?)",
                          "AID,IID,NAME",
                          "TYPE=excluded.TYPE,VALUE=excluded.VALUE,VALUE_F=excluded.VALUE_F,"
                          "UNITID=excluded.UNITID"));
  run.Add(aid).Add(id).Add(name);
  folded == name ? run.AddNull() : run.Add(folded);
  run.Add(std::int64_t{static_cast<int>(attribute.value.type)});
  const ColumnBlock block = BlockOf(attribute.value);
  std::string buffer, keyBuffer;
  BindCell(*run, run.Next(), block, 0, buffer);
  if (HasKey(block.type)) {
    BindKey(*run, run.Next(), block, 0, buffer, keyBuffer);
  } else {
    run.AddNull();
  }
  run.Add(attribute.unit).Finish();
}

void SqlStore::SetInstanceAttribute(RecordRef record, const InstanceAttribute& attribute) {
  (void)Place(record.entity);
  Change change(*this);
  MustExist(record);
  if (attribute.name.empty()) {
    FailAt(*this, record, errc::kInvalidArgument, {u"an instance attribute needs a name"});
  }
  if (!InstanceAttributes::IsAllowed(attribute.value)) {
    FailAt(*this, record, errc::kWrongType,
           {u"instance attribute ", attribute.name, u" can't have this value"});
  }
  WriteInstanceAttribute(*m_connection, Place(record.entity).aid, record.id, attribute);
  change.Done();
}

bool SqlStore::RemoveInstanceAttribute(RecordRef record, std::u16string_view name) {
  (void)Place(record.entity);
  Change change(*this);
  MustExist(record);
  const std::string stored = ToStored(name);
  Run(*m_connection, "DELETE FROM SF_INSTATTR WHERE AID=? AND IID=? AND NAME=?")
      .Add(Place(record.entity).aid)
      .Add(record.id)
      .Add(stored)
      .Finish();
  if (m_connection->Changes() == 0) return false;
  change.Done();
  return true;
}

void SqlStore::WriteValues(RecordRef localColumn, const Value& values,
                           std::span<const std::int16_t> flags, bool append) {
  (void)Place(localColumn.entity);
  Change change(*this);
  MustExist(localColumn);
  if (m_schema.model->BaseNameOf(localColumn.entity) != u"aolocalcolumn") {
    FailAt(*this, localColumn, errc::kNotSupported, {u"only local columns have values"});
  }
  if (!flags.empty() && flags.size() != values.Count()) {
    FailAt(*this, localColumn, errc::kInvalidArgument, {u"there must be one flag for each value"});
  }
  if (append && !values.IsSet()) return;
  if (values.IsSet()) (void)InMemoryValues::FromValue(values);
  const BulkKey valueKey = KeyOf(localColumn, BulkPart::Values);
  const BulkKey flagKey = KeyOf(localColumn, BulkPart::Flags);
  OdsType type = values.type;
  std::uint64_t old = 0;
  if (append) {
    old = CountBulk(*m_connection, valueKey, &type);
    if (old != 0 && type != values.type) {
      FailAt(*this, localColumn, errc::kWrongType,
             {u"the values there are of type ", NameOfType(type, true)});
    }
  } else {
    DeleteBulk(*m_connection, valueKey);
    DeleteBulk(*m_connection, flagKey);
  }
  // Once some values have flags, all have; those written without one are valid.
  const std::uint64_t oldFlags = append ? CountBulk(*m_connection, flagKey, nullptr) : 0;
  if (!flags.empty() || oldFlags != 0) {
    Value::Integers all(oldFlags == 0 ? static_cast<std::size_t>(old) : 0, kFlagsOfValid);
    all.insert(all.end(), flags.begin(), flags.end());
    if (flags.empty()) all.resize(all.size() + values.Count(), kFlagsOfValid);
    AppendBulk(*m_connection, flagKey, {OdsType::Short, true, std::move(all)});
  }
  if (values.IsSet()) AppendBulk(*m_connection, valueKey, values);
  change.Done();
}

void SqlStore::PutValues(RecordRef localColumn, ColumnPart part, std::uint64_t first,
                         const Value& values) {
  (void)Place(localColumn.entity);
  Change change(*this);
  MustExist(localColumn);
  const bool isFlags = part == ColumnPart::Flags;
  const BulkKey key = KeyOf(localColumn, isFlags ? BulkPart::Flags : BulkPart::Values);
  OdsType type = OdsType::Unknown;
  std::uint64_t count = CountBulk(*m_connection, key, &type);
  std::unique_ptr<ValueSource> parameters;
  if (!isFlags && type == OdsType::Unknown) parameters = OpenParameters(*this, localColumn);
  if (parameters != nullptr) {
    type = parameters->Type();
    count = parameters->Count();
  }
  CheckPut(*this, localColumn, part, type, count, first, values);
  (void)InMemoryValues::FromValue(values);
  if (parameters != nullptr) CopyBulk(*m_connection, key, *parameters);
  if (first < count) {
    OverwriteBulk(*m_connection, key, first, values);
  } else if (isFlags) {
    AppendBulk(*m_connection, key, values);
  } else {
    WriteValues(localColumn, values, {}, true);
  }
  change.Done();
}

}  // namespace hv::vex::engine::sql
