// core/plugins/sql/StoreCopy.cpp - records in batches, then links, orders and indexes.
#include "core/plugins/sql/StoreCopy.h"

#include <algorithm>

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

namespace {

constexpr std::size_t kBatch = 1024;

template <class Use>
void ForEachBatch(const std::vector<RecordId>& ids, Use use) {
  for (std::size_t at = 0; at < ids.size(); at += kBatch) {
    use(std::span(ids).subspan(at, std::min(kBatch, ids.size() - at)));
  }
}

class StoreCopier final {
 public:
  StoreCopier(const RecordStore& source, Connection& target, const Layout& layout,
              const CopyProgress& progress)
      : m_source(source),
        m_target(target),
        m_layout(layout),
        m_model(*source.GetModel()),
        m_progress(progress) {}

  void Copy() {
    for (const Entity& entity : m_model.Entities()) {
      if (!entity.isBase) m_total += m_source.CountOf(entity.id);
    }
    WriteContextValues(m_target, m_source.ContextValues());
    for (const Entity& entity : m_model.Entities()) {
      if (!entity.isBase) CopyRecords(entity);
    }
    for (const Entity& entity : m_model.Entities()) {
      if (!entity.isBase) CopyLinks(entity);
    }
    CreateIndexes(m_target, m_model, m_layout);
    if (m_progress) m_progress(m_total, m_total);
  }

 private:
  /// What of a batch goes into the columns of a table.
  struct Batch {
    std::vector<ColumnBlock> blocks;           // by position in m_attributes
    std::vector<std::vector<RecordId>> links;  // by position in m_relations; 0: none
  };

  void CopyRecords(const Entity& entity) {
    const EntityPlace& place = m_layout.entities[entity.id];
    m_attributes.clear();
    m_sequences.clear();
    m_relations.clear();
    std::string columns = place.id;
    std::string places = "?";
    const auto add = [&](const std::string& column) {
      columns += "," + column;
      places += ",?";
    };
    for (std::size_t a = 0; a < place.attributes.size(); ++a) {
      const AttributePlace& at = place.attributes[a];
      const auto index = static_cast<std::int32_t>(a);
      if (at.kind == AttributePlace::Kind::Sequence) m_sequences.push_back(index);
      if (at.kind != AttributePlace::Kind::Column) continue;
      m_attributes.push_back(index);
      add(at.column);
      if (!at.key.empty()) add(at.key);
    }
    for (std::size_t r = 0; r < place.relations.size(); ++r) {
      if (place.relations[r].kind != RelationPlace::Kind::Own) continue;
      m_relations.push_back(static_cast<std::int32_t>(r));
      add(place.relations[r].column);
    }
    Run insert(m_target, "INSERT INTO " + place.table + "(" + columns + ") VALUES(" + places + ")");
    const bool isLocalColumn = m_model.BaseNameOf(entity.id) == u"aolocalcolumn";
    ForEachBatch(m_source.AllOf(entity.id), [&](std::span<const RecordId> ids) {
      InsertBatch(entity, insert, ids);
      CopySequences(entity, ids);
      for (const RecordId id : ids) {
        for (const InstanceAttribute& attribute : m_source.InstanceAttributesOf({entity.id, id})) {
          WriteInstanceAttribute(m_target, place.aid, id, attribute);
        }
        if (isLocalColumn) CopyValues({entity.id, id});
      }
      IndexTextsOf(m_target, m_model, m_layout, entity.id, ids);
      m_done += ids.size();
      if (m_progress) m_progress(m_done, m_total);
    });
  }

  void InsertBatch(const Entity& entity, Run& insert, std::span<const RecordId> ids) {
    const EntityPlace& place = m_layout.entities[entity.id];
    Batch batch;
    batch.blocks = m_source.ReadColumns(entity.id, ids, m_attributes);
    for (const std::int32_t relation : m_relations) {
      std::vector<RecordId>& targets = batch.links.emplace_back(ids.size());
      for (const Link& link : m_source.Follow(entity.id, relation, ids)) {
        targets[link.source] = link.target.id;
      }
    }
    std::vector<std::string> buffers(m_attributes.size() * 2);
    for (std::size_t row = 0; row < ids.size(); ++row) {
      int index = 0;
      insert->BindInteger(++index, ids[row]);
      for (std::size_t a = 0; a < m_attributes.size(); ++a) {
        const ColumnBlock& block = batch.blocks[a];
        BindCell(*insert, ++index, block, row, buffers[2 * a]);
        if (place.attributes[static_cast<std::size_t>(m_attributes[a])].key.empty()) continue;
        BindKey(*insert, ++index, block, row, buffers[2 * a], buffers[2 * a + 1]);
      }
      for (std::size_t r = 0; r < m_relations.size(); ++r) {
        const RecordId target = batch.links[r][row];
        ++index;
        target == 0 && !IsLinkedToZero(entity.id, m_relations[r], ids[row])
            ? insert->BindNull(index)
            : insert->BindInteger(index, target);
      }
      insert.Finish();
      insert->Reset();
    }
  }

  /// Zero stands for no link in a batch, but some tools give records that id.
  bool IsLinkedToZero(EntityId entity, std::int32_t relation, RecordId id) const {
    const EntityId target = m_model.At(entity).relations[static_cast<std::size_t>(relation)].target;
    if (!m_source.Exists({target, 0})) return false;
    const RecordId ids[] = {id};
    return !m_source.Follow(entity, relation, ids).empty();
  }

  void CopySequences(const Entity& entity, std::span<const RecordId> ids) {
    if (m_sequences.empty()) return;
    const std::vector<ColumnBlock> blocks = m_source.ReadColumns(entity.id, ids, m_sequences);
    for (std::size_t s = 0; s < m_sequences.size(); ++s) {
      for (std::size_t row = 0; row < ids.size(); ++row) {
        if (blocks[s].isNull[row] != 0) continue;
        WriteSequenceRows(m_target, m_layout.entities[entity.id], ids[row], m_sequences[s],
                          ValueAt(blocks[s], row));
      }
    }
  }

  void CopyValues(RecordRef column) {
    const std::int64_t aid = m_layout.entities[column.entity].aid;
    if (!HasParameters(column)) {
      if (const auto values = m_source.OpenValues(column)) {
        CopyBulk(m_target, {aid, column.id, BulkPart::Values}, *values);
      }
    }
    if (const auto flags = m_source.OpenFlags(column)) {
      CopyBulk(m_target, {aid, column.id, BulkPart::Flags}, *flags);
    }
  }

  /// True if an implicit column gives its generation parameters as values: those are an attribute.
  bool HasParameters(RecordRef column) const {
    const Entity& entity = m_model.At(column.entity);
    const std::int32_t kind = entity.FindBaseAttribute(u"sequence_representation");
    const std::int32_t parameters = entity.FindBaseAttribute(u"generation_parameters");
    if (kind == kNone || parameters == kNone) return false;
    const Value value = m_source.ReadValue(column, kind);
    const auto* number = std::get_if<Value::Integers>(&value.data);
    const bool isImplicit =
        number != nullptr && !number->empty() && number->front() >= 1 && number->front() <= 3;
    return isImplicit && m_source.ReadValue(column, parameters).IsSet();
  }

  void CopyLinks(const Entity& entity) {
    const EntityPlace& place = m_layout.entities[entity.id];
    for (std::size_t r = 0; r < place.relations.size(); ++r) {
      const RelationPlace& at = place.relations[r];
      const auto index = static_cast<std::int32_t>(r);
      if (at.kind == RelationPlace::Kind::Other && !at.position.empty()) {
        KeepOrder(entity, index, at);
      } else if (at.kind == RelationPlace::Kind::Pairs) {
        at.position == "\"POS\"" ? CopyPairs(entity, index, at) : KeepPairOrder(entity, index, at);
      }
    }
  }

  /// Calls `use(links)` for the links of each source.
  template <class Use>
  void ForEachList(EntityId entity, std::int32_t relation, Use use) {
    ForEachBatch(m_source.AllOf(entity), [&](std::span<const RecordId> ids) {
      const std::vector<Link> links = m_source.Follow(entity, relation, ids);
      for (std::size_t begin = 0; begin < links.size();) {
        std::size_t end = begin;
        while (end < links.size() && links[end].source == links[begin].source) ++end;
        use(ids[links[begin].source], std::span(links).subspan(begin, end - begin));
        begin = end;
      }
    });
  }

  /// Targets lie in the order of their ids unless told otherwise.
  void KeepOrder(const Entity& entity, std::int32_t relation, const RelationPlace& at) {
    const EntityPlace& target =
        m_layout.entities[entity.relations[static_cast<std::size_t>(relation)].target];
    Run update(m_target,
               "UPDATE " + target.table + " SET " + at.position + "=? WHERE " + target.id + "=?");
    ForEachList(entity.id, relation, [&](RecordId, std::span<const Link> links) {
      std::int64_t last = links[0].target.id;
      for (std::size_t i = 1; i < links.size(); ++i) {
        const RecordId id = links[i].target.id;
        if (id > last) {
          last = id;
          continue;
        }
        update->BindInteger(1, ++last);
        update->BindInteger(2, id);
        update.Finish();
        update->Reset();
      }
    });
  }

  void CopyPairs(const Entity& entity, std::int32_t relation, const RelationPlace& at) {
    std::int64_t position = 0;
    Run insert(m_target, "INSERT INTO " + at.table + "(" + at.column + "," + at.there +
                             ",POS) VALUES(?,?,?)");
    ForEachList(entity.id, relation, [&](RecordId from, std::span<const Link> links) {
      for (const Link& link : links) {
        insert->BindInteger(1, from);
        insert->BindInteger(2, link.target.id);
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
    ForEachList(entity.id, relation, [&](RecordId from, std::span<const Link> links) {
      std::int64_t last = 0;
      bool isInOrder = true;
      for (const Link& link : links) {
        read->BindInteger(1, from);
        read->BindInteger(2, link.target.id);
        const std::int64_t position = read->Step() ? read->Integer(0) : 0;
        read->Reset();
        isInOrder = isInOrder && position > last;
        last = position;
      }
      if (isInOrder) return;
      for (const Link& link : links) {
        update->BindInteger(1, ++m_lastPosition);
        update->BindInteger(2, from);
        update->BindInteger(3, link.target.id);
        update.Finish();
        update->Reset();
      }
    });
  }

  const RecordStore& m_source;
  Connection& m_target;
  const Layout& m_layout;
  const Model& m_model;
  const CopyProgress& m_progress;
  std::vector<std::int32_t> m_attributes, m_sequences, m_relations;  // of the entity being copied
  std::uint64_t m_done = 0;
  std::uint64_t m_total = 0;
  std::int64_t m_lastPosition = 0;
};

}  // namespace

void CopyStore(const RecordStore& source, Connection& target, const Layout& layout,
               const CopyProgress& progress) {
  StoreCopier(source, target, layout, progress).Copy();
}

}  // namespace hv::vex::engine::sql
