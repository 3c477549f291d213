// core/plugins/sql/StoreMerge.cpp - matches the models, then copies records, then links.
#include "core/plugins/sql/StoreMerge.h"

#include <limits>

#include "core/plugins/sql/StoreCopy.h"
#include "core/store/memory/Failure.h"

namespace hv::vex::engine::sql {
namespace {

std::int32_t ExactRelation(const Entity& entity, std::u16string_view name) {
  for (std::size_t r = 0; r < entity.relations.size(); ++r) {
    if (entity.relations[r].name == name) return static_cast<std::int32_t>(r);
  }
  return kNone;
}

std::int32_t ExactAttribute(const Entity& entity, std::u16string_view name) {
  for (std::size_t a = 0; a < entity.attributes.size(); ++a) {
    if (entity.attributes[a].name == name) return static_cast<std::int32_t>(a);
  }
  return kNone;
}

class StoreMerger final {
 public:
  StoreMerger(const RecordStore& source, SqlStore& target, const Watch& watch)
      : m_source(source), m_target(target), m_watch(watch), m_model(*source.GetModel()) {}

  void Merge() {
    m_entities.resize(m_model.Entities().size());
    for (const Entity& entity : m_model.Entities()) {
      if (!entity.isBase && m_source.CountOf(entity.id) != 0) Match(entity);
    }
    if (!m_misfits.empty()) {
      Fail(errc::kWrongType, {u"the stores' models don't fit: ", m_misfits});
    }
    try {
      for (const Entity& entity : m_model.Entities()) {
        m_entities[entity.id].keepsIds = false;
        if (m_entities[entity.id].entity != kNoEntity) FindIds(entity.id);
      }
      const CopyTarget target{m_target.GetConnection(), *m_target.GetModel(), m_target.GetLayout()};
      target.connection.Execute(target.connection.GetDialect().DeferReferences());
      for (const RelationRef& unlinked : CopyRecords(m_source, target, m_entities, m_watch)) {
        Link(m_model.At(unlinked.entity), unlinked.relation);
      }
      m_target.Save(u"");
    } catch (...) {
      m_target.Discard();
      throw;
    }
  }

 private:
  void Misfit(std::initializer_list<std::u16string_view> parts) {
    if (!m_misfits.empty()) m_misfits += u"; ";
    for (const std::u16string_view part : parts) m_misfits += part;
  }

  void Match(const Entity& entity) {
    const Entity* found = m_target.GetModel()->Find(entity.name);
    if (found == nullptr || found->isBase) return Misfit({u"there is no element ", entity.name});
    Counterpart& match = m_entities[entity.id];
    match.entity = found->id;
    for (const Attribute& attribute : entity.attributes) {
      const std::int32_t index = ExactAttribute(*found, attribute.name);
      match.attributes.push_back(index);
      if (index == kNone) {
        Misfit({entity.name, u" has no attribute ", attribute.name});
        continue;
      }
      const Attribute& other = found->attributes[static_cast<std::size_t>(index)];
      if (other.type == attribute.type && other.sequence == attribute.sequence) continue;
      Misfit({entity.name, u".", attribute.name, u" is of type ",
              NameOfType(other.type, other.sequence), u", not ",
              NameOfType(attribute.type, attribute.sequence)});
    }
    for (const Relation& relation : entity.relations) {
      const std::int32_t index = ExactRelation(*found, relation.name);
      match.relations.push_back(index);
      const std::u16string& target = m_model.At(relation.target).name;
      if (index == kNone) {
        Misfit({entity.name, u" has no relation ", relation.name});
        continue;
      }
      const Relation& other = found->relations[static_cast<std::size_t>(index)];
      if (m_target.GetModel()->At(other.target).name != target) {
        Misfit({entity.name, u".", relation.name, u" doesn't lead to ", target});
      } else if (relation.ToMany() && !other.ToMany()) {
        Misfit({entity.name, u".", relation.name, u" leads to one record only"});
      }
    }
  }

  /// The target's own counter tells from where on ids are free; the record made for that goes
  /// again.
  void FindIds(EntityId entity) {
    Counterpart& match = m_entities[entity];
    match.oldIds = m_source.AllOf(entity);
    match.firstId = m_target.Create(match.entity);
    constexpr RecordId kLast = std::numeric_limits<RecordId>::max();
    if (kLast - match.firstId < static_cast<RecordId>(match.oldIds.size())) {
      Fail(errc::kNotSupported,
           {m_model.At(entity).name, u": there are no ids left for new records"});
    }
    m_target.Delete({match.entity, match.firstId});
  }

  void Link(const Entity& entity, std::int32_t relation) {
    const Counterpart& match = m_entities[entity.id];
    const Counterpart& other =
        m_entities[entity.relations[static_cast<std::size_t>(relation)].target];
    const std::int32_t mapped = match.relations[static_cast<std::size_t>(relation)];
    for (const auto& link : m_source.Follow(entity.id, relation, match.oldIds)) {
      m_watch.Tell(0, 0);
      m_target.Connect({match.entity, match.IdOf(match.oldIds[link.source])}, mapped,
                       {other.entity, other.IdOf(link.target.id)});
    }
  }

  const RecordStore& m_source;
  SqlStore& m_target;
  const Watch& m_watch;
  const Model& m_model;
  std::vector<Counterpart> m_entities;  // by entity of the source
  std::u16string m_misfits;
};

}  // namespace

void MergeStore(const RecordStore& source, SqlStore& target, const Watch& watch) {
  StoreMerger(source, target, watch).Merge();
}

}  // namespace hv::vex::engine::sql
