// core/plugins/sql/SqlStoreLinks.cpp - linking and unlinking records in both directions at once.
#include "core/plugins/sql/SqlStore.h"
#include "core/store/memory/Failure.h"

namespace hv::vex::engine::sql {

void SqlStore::CheckEnds(RecordRef record, std::int32_t relation, RecordRef target) const {
  MustExist(record);
  const Relation& declared = RelationOf(*m_schema.model, record.entity, relation);
  if (target.entity != declared.target) {
    FailAt(*this, record, errc::kWrongType,
           {u"relation ", declared.name, u" leads to ", m_schema.model->At(declared.target).name});
  }
  MustExist(target);
}

/// A position behind all records linked to `to`, where their ids don't give it; null is 0.
std::int64_t SqlStore::NextPosition(const EntityPlace& owner, const RelationPlace& place,
                                    RecordId to, RecordId from) const {
  const std::string key = "coalesce(" + place.position + "," + owner.id + ")";
  Run run(*m_connection, "SELECT " + key + " FROM " + owner.table + " WHERE " + place.column +
                             "=? ORDER BY " + key + " DESC LIMIT 1");
  run.Add(to);
  if (!run->Step() || run->Integer(0) < from) return 0;
  return run->Integer(0) + 1;
}

bool SqlStore::HasLink(EntityId entity, std::int32_t relation, RecordId from, RecordId to) const {
  const EntityPlace& source = Place(entity);
  const RelationPlace& place = source.relations[static_cast<std::size_t>(relation)];
  if (place.kind == RelationPlace::Kind::Other) {
    return HasLink(RelationOf(*m_schema.model, entity, relation).target, place.inverse, to, from);
  }
  const bool isPairs = place.kind == RelationPlace::Kind::Pairs;
  Run run(*m_connection, isPairs ? "SELECT 1 FROM " + place.table + " WHERE " + place.column +
                                       "=? AND " + place.there + "=?"
                                 : "SELECT 1 FROM " + source.table + " WHERE " + source.id +
                                       "=? AND " + place.column + "=?");
  run.Add(from).Add(to);
  return run->Step();
}

void SqlStore::AddLink(EntityId entity, std::int32_t relation, RecordId from, RecordId to) {
  const EntityPlace& source = Place(entity);
  const RelationPlace& place = source.relations[static_cast<std::size_t>(relation)];
  if (place.kind == RelationPlace::Kind::Other) {
    return AddLink(RelationOf(*m_schema.model, entity, relation).target, place.inverse, to, from);
  }
  if (place.kind == RelationPlace::Kind::Pairs) {
    // Behind what either record has, in its own order.
    const auto key = [](const std::string& position) {
      return std::string(position == "\"POS\"" ? "POS" : "coalesce(INVPOS,POS)");
    };
    const auto last = [&](const std::string& column, const std::string& position) {
      return "SELECT k FROM (SELECT " + key(position) + " AS k FROM " + place.table + " WHERE " +
             column + "=? ORDER BY " + key(position) + " DESC LIMIT 1) AS l";
    };
    const std::string sql = "INSERT INTO " + place.table + "(" + place.column + "," + place.there +
                            ",POS) SELECT ?,?,1+coalesce(max(k),0) FROM (" +
                            last(place.column, place.position) + " UNION ALL " +
                            last(place.there, place.otherPosition) + ") AS p";
    const auto add = [&](RecordId a, RecordId b) {
      Run(*m_connection, sql).Add(a).Add(b).Add(a).Add(b).Finish();
    };
    add(from, to);
    if (place.isSymmetric && from != to) add(to, from);
    return;
  }
  const auto set = [&](RecordId a, RecordId b) {
    const std::int64_t position = place.position.empty() ? 0 : NextPosition(source, place, b, a);
    std::string sql = "UPDATE " + source.table + " SET " + place.column + "=?";
    if (!place.position.empty()) sql += "," + place.position + "=?";
    Run run(*m_connection, sql + " WHERE " + source.id + "=?");
    run.Add(b);
    if (!place.position.empty()) position == 0 ? run.AddNull() : run.Add(position);
    run.Add(a).Finish();
  };
  set(from, to);
  if (place.isSymmetric && from != to) set(to, from);
}

void SqlStore::RemoveLink(EntityId entity, std::int32_t relation, RecordId from, RecordId to) {
  const EntityPlace& source = Place(entity);
  const RelationPlace& place = source.relations[static_cast<std::size_t>(relation)];
  if (place.kind == RelationPlace::Kind::Other) {
    return RemoveLink(RelationOf(*m_schema.model, entity, relation).target, place.inverse, to,
                      from);
  }
  std::string sql;
  if (place.kind == RelationPlace::Kind::Pairs) {
    sql = "DELETE FROM " + place.table + " WHERE " + place.column + "=? AND " + place.there + "=?";
  } else {
    sql = "UPDATE " + source.table + " SET " + place.column + "=NULL";
    if (!place.position.empty()) sql += "," + place.position + "=NULL";
    sql += " WHERE " + source.id + "=? AND " + place.column + "=?";
  }
  Run(*m_connection, sql).Add(from).Add(to).Finish();
  if (place.isSymmetric && from != to) Run(*m_connection, sql).Add(to).Add(from).Finish();
}

/// Lets go of the partners that a to-one side can't keep beside a new one.
void SqlStore::MakeRoom(EntityId entity, std::int32_t relation, RecordId from, RecordId to) {
  const Relation& forward = RelationOf(*m_schema.model, entity, relation);
  const std::int32_t inverse = Place(entity).relations[static_cast<std::size_t>(relation)].inverse;
  const auto letGo = [&](EntityId side, std::int32_t along, RecordId id) {
    const RecordId ids[] = {id};
    for (const Link& link : Follow(side, along, ids)) RemoveLink(side, along, id, link.target.id);
  };
  if (!forward.ToMany()) letGo(entity, relation, from);
  if (inverse != kNone && !RelationOf(*m_schema.model, forward.target, inverse).ToMany()) {
    letGo(forward.target, inverse, to);
  }
}

void SqlStore::Connect(RecordRef record, std::int32_t relation, RecordRef target) {
  (void)Place(record.entity);
  Change change(*this);
  CheckEnds(record, relation, target);
  const RelationPlace& place = Place(record.entity).relations[static_cast<std::size_t>(relation)];
  if (HasLink(record.entity, relation, record.id, target.id)) return;
  MakeRoom(record.entity, relation, record.id, target.id);
  if (place.isSymmetric) MakeRoom(record.entity, relation, target.id, record.id);
  AddLink(record.entity, relation, record.id, target.id);
  change.Done();
}

void SqlStore::Disconnect(RecordRef record, std::int32_t relation, RecordRef target) {
  (void)Place(record.entity);
  Change change(*this);
  CheckEnds(record, relation, target);
  if (!HasLink(record.entity, relation, record.id, target.id)) return;
  RemoveLink(record.entity, relation, record.id, target.id);
  change.Done();
}

void SqlStore::RemoveAllLinks(RecordRef record) {
  const auto run = [&](const std::string& sql) { Run(*m_connection, sql).Add(record.id).Finish(); };
  for (const Entity& entity : m_schema.model->Entities()) {
    const EntityPlace& source = m_schema.layout.entities[entity.id];
    for (std::size_t r = 0; r < source.relations.size(); ++r) {
      const RelationPlace& place = source.relations[r];
      if (place.kind == RelationPlace::Kind::Pairs && entity.id == record.entity) {
        run("DELETE FROM " + place.table + " WHERE " + place.column + "=?");
      }
      if (entity.relations[r].target != record.entity) continue;
      if (place.kind == RelationPlace::Kind::Pairs) {
        run("DELETE FROM " + place.table + " WHERE " + place.there + "=?");
      } else if (place.kind == RelationPlace::Kind::Own) {
        const std::string position =
            place.position.empty() ? std::string() : "," + place.position + "=NULL";
        run("UPDATE " + source.table + " SET " + place.column + "=NULL" + position + " WHERE " +
            place.column + "=?");
      }
    }
  }
}

}  // namespace hv::vex::engine::sql
