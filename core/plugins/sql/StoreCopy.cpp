// core/plugins/sql/StoreCopy.cpp - records in batches, then links, orders and indexes.
#include "core/plugins/sql/StoreCopy.h"

#include <algorithm>
#include <numeric>

#include "core/plugins/sql/BulkValues.h"
#include "core/plugins/sql/Cells.h"
#include "core/plugins/sql/TextIndex.h"
#include "core/plugins/sql/TextKey.h"

namespace hv::vex::engine::sql {

// Of SqlStoreWrite.cpp.
void WriteSequenceRows(Connection& connection, const EntityPlace& place, RecordId id,
                       std::int32_t attribute, const Value& value);
void WriteInstanceAttribute(Connection& connection, std::int64_t aid, RecordId id,
                            const InstanceAttribute& attribute);

RecordId Counterpart::IdOf(RecordId id) const {
  if (keepsIds) return id;
  const auto at = std::lower_bound(oldIds.begin(), oldIds.end(), id);
  return firstId + (at - oldIds.begin());
}

namespace {

constexpr std::size_t kBatch = 1024;

template <class Use>
void ForEachBatch(const std::vector<RecordId>& ids, Use use) {
  for (std::size_t at = 0; at < ids.size(); at += kBatch) {
    use(std::span(ids).subspan(at, std::min(kBatch, ids.size() - at)));
  }
}

std::int32_t MappedRelation(const Counterpart& counterpart, std::int32_t relation) {
  return relation == kNone ? kNone : counterpart.relations[static_cast<std::size_t>(relation)];
}

class StoreCopier final {
 public:
  StoreCopier(const RecordStore& source, const CopyTarget& target,
              const std::vector<Counterpart>& counterparts, const Watch& watch)
      : m_source(source),
        m_target(target.connection),
        m_layout(target.layout),
        m_targetModel(target.model),
        m_model(*source.GetModel()),
        m_counterparts(counterparts),
        m_watch(watch) {
    for (const Entity& entity : m_model.Entities()) {
      if (IsCopied(entity.id)) m_records += m_source.CountOf(entity.id);
      if (!entity.isBase && m_model.BaseNameOf(entity.id) == u"aounit") m_units = entity.id;
    }
    // Orders of links take little time beside the records, indexes about a quarter of theirs.
    m_total = m_records + m_records / 8 + m_records / 4 + 1;
    if (m_watch.IsAnybodyThere()) {
      m_target.AskMeanwhile([this] { return m_watch.MayGoOn(m_done, m_total); });
    }
  }
  StoreCopier(const StoreCopier&) = delete;
  StoreCopier& operator=(const StoreCopier&) = delete;
  ~StoreCopier() { m_target.AskMeanwhile({}); }

  std::vector<RelationRef> Copy() {
    for (const Entity& entity : m_model.Entities()) {
      if (IsCopied(entity.id)) CopyEntity(entity);
    }
    for (const Entity& entity : m_model.Entities()) {
      if (IsCopied(entity.id)) CopyLinks(entity);
    }
    m_done = m_records + m_records / 8;
    return std::move(m_unlinked);
  }
  void MakeIndexes() {
    CreateIndexes(m_target, m_targetModel, m_layout);
    m_watch.Tell(m_total, m_total);
  }

 private:
  /// One column of the target's table with what fills it: an attribute or relation of the source.
  struct Member {
    std::int32_t from;
    std::int32_t to;
  };

  [[nodiscard]] bool IsCopied(EntityId entity) const {
    return m_counterparts[entity].entity != kNoEntity;
  }
  [[nodiscard]] const EntityPlace& PlaceOf(EntityId entity) const {
    return m_layout.entities[m_counterparts[entity].entity];
  }

  void CopyEntity(const Entity& entity) {
    const Counterpart& counterpart = m_counterparts[entity.id];
    const EntityPlace& place = PlaceOf(entity.id);
    m_attributes.clear();
    m_sequences.clear();
    m_relations.clear();
    std::string columns = place.id;
    std::string places = "?";
    const auto add = [&](const std::string& column) {
      columns += "," + column;
      places += ",?";
    };
    for (std::size_t a = 0; a < entity.attributes.size(); ++a) {
      const Member member{static_cast<std::int32_t>(a), counterpart.attributes[a]};
      if (member.to == kNone) continue;
      const AttributePlace& at = place.attributes[static_cast<std::size_t>(member.to)];
      if (at.kind == AttributePlace::Kind::Sequence) m_sequences.push_back(member);
      if (at.kind != AttributePlace::Kind::Column) continue;
      m_attributes.push_back(member);
      add(at.column);
      if (!at.key.empty()) add(at.key);
    }
    for (std::size_t r = 0; r < entity.relations.size(); ++r) {
      const Member member{static_cast<std::int32_t>(r), counterpart.relations[r]};
      if (!IsDirect(entity, member.from)) continue;
      const RelationPlace& at = place.relations[static_cast<std::size_t>(member.to)];
      if (at.kind != RelationPlace::Kind::Own) continue;
      m_relations.push_back(member);
      add(at.column);
    }
    Run insert(m_target, "INSERT INTO " + place.table + "(" + columns + ") VALUES(" + places + ")");
    std::vector<RecordId> made;
    ForEachBatch(m_source.AllOf(entity.id), [&](std::span<const RecordId> ids) {
      made.clear();
      for (const RecordId id : ids) made.push_back(counterpart.IdOf(id));
      InsertBatch(entity, insert, ids, made);
      CopySequences(entity, ids, made);
      CopyInstanceAttributes(entity, ids, made);
      if (m_model.BaseNameOf(entity.id) == u"aolocalcolumn") {
        CopyValues(entity, ids, made);
      } else {
        m_done += ids.size();
      }
      IndexTextsOf(m_target, m_targetModel, m_layout, counterpart.entity, made);
      m_watch.Tell(m_done, m_total);
    });
  }

  static std::vector<std::int32_t> SourcesOf(const std::vector<Member>& members) {
    std::vector<std::int32_t> indexes;
    indexes.reserve(members.size());
    for (const Member& member : members) indexes.push_back(member.from);
    return indexes;
  }

  void InsertBatch(const Entity& entity, Run& insert, std::span<const RecordId> ids,
                   std::span<const RecordId> made) {
    const EntityPlace& place = PlaceOf(entity.id);
    const std::vector<ColumnBlock> blocks =
        m_source.ReadColumns(entity.id, ids, SourcesOf(m_attributes));
    std::vector<std::vector<std::optional<RecordId>>> targets;  // by position in m_relations
    for (const Member& relation : m_relations) {
      auto& list = targets.emplace_back(ids.size());
      for (const Link& link : m_source.Follow(entity.id, relation.from, ids)) {
        list[link.source] = m_counterparts[link.target.entity].IdOf(link.target.id);
      }
    }
    std::vector<std::string> buffers(m_attributes.size() * 2);
    for (std::size_t row = 0; row < ids.size(); ++row) {
      int index = 0;
      insert->BindInteger(++index, made[row]);
      for (std::size_t a = 0; a < m_attributes.size(); ++a) {
        BindCell(*insert, ++index, blocks[a], row, buffers[2 * a]);
        if (place.attributes[static_cast<std::size_t>(m_attributes[a].to)].key.empty()) continue;
        BindKey(*insert, ++index, blocks[a], row, buffers[2 * a], buffers[2 * a + 1]);
      }
      for (const auto& list : targets) {
        ++index;
        list[row] ? insert->BindInteger(index, *list[row]) : insert->BindNull(index);
      }
      insert.Finish();
      insert->Reset();
    }
  }

  void CopySequences(const Entity& entity, std::span<const RecordId> ids,
                     std::span<const RecordId> made) {
    if (m_sequences.empty()) return;
    const std::vector<ColumnBlock> blocks =
        m_source.ReadColumns(entity.id, ids, SourcesOf(m_sequences));
    for (std::size_t s = 0; s < m_sequences.size(); ++s) {
      for (std::size_t row = 0; row < ids.size(); ++row) {
        if (blocks[s].isNull[row] != 0) continue;
        WriteSequenceRows(m_target, PlaceOf(entity.id), made[row], m_sequences[s].to,
                          ValueAt(blocks[s], row));
      }
    }
  }

  void CopyInstanceAttributes(const Entity& entity, std::span<const RecordId> ids,
                              std::span<const RecordId> made) {
    for (RecordInstanceAttribute& one : m_source.ReadInstanceAttributes(entity.id, ids)) {
      if (one.attribute.unit != 0) one.attribute.unit = UnitOf(one.attribute.unit);
      WriteInstanceAttribute(m_target, PlaceOf(entity.id).aid, made[one.source], one.attribute);
    }
  }

  /// A unit that isn't there can't be told any more when units get new ids.
  [[nodiscard]] std::int64_t UnitOf(std::int64_t unit) const {
    if (m_units == kNoEntity || m_counterparts[m_units].keepsIds) return unit;
    return m_source.Exists({m_units, unit}) ? m_counterparts[m_units].IdOf(unit) : 0;
  }

  void CopyValues(const Entity& entity, std::span<const RecordId> ids,
                  std::span<const RecordId> made) {
    const std::int64_t aid = PlaceOf(entity.id).aid;
    const std::vector<bool> hasParameters = FindParameters(entity, ids);
    for (std::size_t i = 0; i < ids.size(); ++i) {
      const RecordRef column{entity.id, ids[i]};
      if (!hasParameters[i]) {
        if (const auto values = m_source.OpenValues(column)) {
          CopyBulk(m_target, {aid, made[i], BulkPart::Values}, *values);
        }
      }
      if (const auto flags = m_source.OpenFlags(column)) {
        CopyBulk(m_target, {aid, made[i], BulkPart::Flags}, *flags);
      }
      // Columns may be long, so each one counts.
      m_watch.Tell(++m_done, m_total);
    }
  }

  /// True for the implicit columns that give their generation parameters as values: those are an
  /// attribute.
  std::vector<bool> FindParameters(const Entity& entity, std::span<const RecordId> ids) const {
    std::vector<bool> found(ids.size());
    const std::int32_t attributes[] = {entity.FindBaseAttribute(u"sequence_representation"),
                                       entity.FindBaseAttribute(u"generation_parameters")};
    if (attributes[0] == kNone || attributes[1] == kNone) return found;
    const std::vector<ColumnBlock> blocks = m_source.ReadColumns(entity.id, ids, attributes);
    for (std::size_t row = 0; row < ids.size(); ++row) {
      if (blocks[0].isNull[row] != 0 || blocks[1].isNull[row] != 0) continue;
      const std::int64_t kind = blocks[0].integers[row];
      found[row] = kind >= 1 && kind <= 3;
    }
    return found;
  }

  /// True if the target pairs the relation with its inverse as the source does, so that its links
  /// can be put where they belong without a look at what is there.
  [[nodiscard]] bool IsDirect(const Entity& entity, std::int32_t relation) const {
    const std::int32_t mapped = MappedRelation(m_counterparts[entity.id], relation);
    const EntityId other = entity.relations[static_cast<std::size_t>(relation)].target;
    if (mapped == kNone || !IsCopied(other)) return false;
    const std::int32_t inverse = MutualInverse(m_model, entity.id, relation);
    return PlaceOf(entity.id).relations[static_cast<std::size_t>(mapped)].inverse ==
           MappedRelation(m_counterparts[other], inverse);
  }

  void CopyLinks(const Entity& entity) {
    for (std::size_t r = 0; r < entity.relations.size(); ++r) {
      const auto index = static_cast<std::int32_t>(r);
      const std::int32_t mapped = m_counterparts[entity.id].relations[r];
      if (mapped == kNone || !IsCopied(entity.relations[r].target)) continue;
      if (!IsDirect(entity, index)) {
        m_unlinked.push_back({entity.id, index});
        continue;
      }
      const RelationPlace& at = PlaceOf(entity.id).relations[static_cast<std::size_t>(mapped)];
      if (at.kind == RelationPlace::Kind::Other && !at.position.empty()) {
        KeepOrder(entity, index, at);
      } else if (at.kind == RelationPlace::Kind::Pairs) {
        at.position == "\"POS\"" ? CopyPairs(entity, index, at) : KeepPairOrder(entity, index, at);
      }
      m_watch.Tell(m_done, m_total);
    }
  }

  /// Calls `use(id, ids)` with each record that has links and what they lead to, as the target
  /// names them.
  template <class Use>
  void ForEachList(const Entity& entity, std::int32_t relation, Use use) {
    const Counterpart& other =
        m_counterparts[entity.relations[static_cast<std::size_t>(relation)].target];
    std::vector<RecordId> targets;
    ForEachBatch(m_source.AllOf(entity.id), [&](std::span<const RecordId> ids) {
      const std::vector<Link> links = m_source.Follow(entity.id, relation, ids);
      for (std::size_t i = 0; i < links.size(); ++i) {
        targets.push_back(other.IdOf(links[i].target.id));
        if (i + 1 < links.size() && links[i + 1].source == links[i].source) continue;
        use(m_counterparts[entity.id].IdOf(ids[links[i].source]), targets);
        targets.clear();
      }
    });
  }

  /// Targets lie in the order of their ids unless told otherwise.
  void KeepOrder(const Entity& entity, std::int32_t relation, const RelationPlace& at) {
    const EntityPlace& target =
        PlaceOf(entity.relations[static_cast<std::size_t>(relation)].target);
    Run update(m_target,
               "UPDATE " + target.table + " SET " + at.position + "=? WHERE " + target.id + "=?");
    ForEachList(entity, relation, [&](RecordId, const std::vector<RecordId>& targets) {
      std::int64_t last = targets[0];
      for (std::size_t i = 1; i < targets.size(); ++i) {
        if (targets[i] > last) {
          last = targets[i];
          continue;
        }
        update->BindInteger(1, ++last);
        update->BindInteger(2, targets[i]);
        update.Finish();
        update->Reset();
      }
    });
  }

  void CopyPairs(const Entity& entity, std::int32_t relation, const RelationPlace& at) {
    std::int64_t position = 0;
    Run insert(m_target, "INSERT INTO " + at.table + "(" + at.column + "," + at.there +
                             ",POS) VALUES(?,?,?)");
    ForEachList(entity, relation, [&](RecordId from, const std::vector<RecordId>& targets) {
      for (const RecordId to : targets) {
        insert->BindInteger(1, from);
        insert->BindInteger(2, to);
        insert->BindInteger(3, ++position);
        insert.Finish();
        insert->Reset();
      }
    });
    m_lastPosition = std::max(m_lastPosition, position);
  }

  /// The other direction of pairs that are there already.
  void KeepPairOrder(const Entity& entity, std::int32_t relation, const RelationPlace& at) {
    const std::string pair = at.table + " WHERE " + at.column + "=? AND " + at.there + "=?";
    Run read(m_target, "SELECT POS FROM " + pair);
    Run update(m_target, "UPDATE " + at.table + " SET INVPOS=? WHERE " + at.column + "=? AND " +
                             at.there + "=?");
    ForEachList(entity, relation, [&](RecordId from, const std::vector<RecordId>& targets) {
      std::int64_t last = 0;
      bool isInOrder = true;
      for (const RecordId to : targets) {
        read->BindInteger(1, from);
        read->BindInteger(2, to);
        const std::int64_t position = read->Step() ? read->Integer(0) : 0;
        read->Reset();
        isInOrder = isInOrder && position > last;
        last = position;
      }
      if (isInOrder) return;
      for (const RecordId to : targets) {
        update->BindInteger(1, ++m_lastPosition);
        update->BindInteger(2, from);
        update->BindInteger(3, to);
        update.Finish();
        update->Reset();
      }
    });
  }

  const RecordStore& m_source;
  Connection& m_target;
  const Layout& m_layout;
  const Model& m_targetModel;
  const Model& m_model;  // the source's
  const std::vector<Counterpart>& m_counterparts;
  const Watch& m_watch;
  EntityId m_units = kNoEntity;
  std::vector<Member> m_attributes, m_sequences, m_relations;  // of the entity being copied
  std::vector<RelationRef> m_unlinked;
  std::uint64_t m_records = 0;
  std::uint64_t m_done = 0;
  std::uint64_t m_total = 0;
  std::int64_t m_lastPosition = 0;
};

}  // namespace

std::vector<RelationRef> CopyRecords(const RecordStore& source, const CopyTarget& target,
                                     const std::vector<Counterpart>& counterparts,
                                     const Watch& watch) {
  return StoreCopier(source, target, counterparts, watch).Copy();
}

void CopyStore(const RecordStore& source, Connection& target, const Layout& layout,
               const Watch& watch) {
  const Model& model = *source.GetModel();
  std::vector<Counterpart> same(model.Entities().size());
  for (const Entity& entity : model.Entities()) {
    if (entity.isBase) continue;
    Counterpart& counterpart = same[entity.id];
    counterpart.entity = entity.id;
    counterpart.attributes.resize(entity.attributes.size());
    std::iota(counterpart.attributes.begin(), counterpart.attributes.end(), 0);
    counterpart.relations.resize(entity.relations.size());
    std::iota(counterpart.relations.begin(), counterpart.relations.end(), 0);
  }
  WriteContextValues(target, source.ContextValues());
  StoreCopier copier(source, {target, model, layout}, same, watch);
  copier.Copy();
  copier.MakeIndexes();
}

}  // namespace hv::vex::engine::sql
