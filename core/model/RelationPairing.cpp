// core/model/RelationPairing.cpp - finds the other direction of each relation, or makes it.
//
// Exporters differ in what they tell: both inverse names, one of them, only base relations, or one
// direction alone. Each pass takes the surest clue that is left and touches no relation that has
// its partner already.
#include "core/model/ModelAssembler.h"

namespace hv::vex::engine {
namespace {

std::size_t Pos(std::int32_t index) { return static_cast<std::size_t>(index); }

/// What two relations of plain information are to each other, from the ranges alone.
Relationship FromRanges(const Relation& relation, const Relation& inverse) {
  if (&relation == &inverse || relation.ToMany() == inverse.ToMany()) {
    return Relationship::InfoRel;
  }
  return relation.ToMany() ? Relationship::InfoFrom : Relationship::InfoTo;
}

}  // namespace

void ModelAssembler::Pair(Entity& entity, std::int32_t relation, Entity& target,
                          std::int32_t inverse) {
  entity.relations[Pos(relation)].inverse = inverse;
  target.relations[Pos(inverse)].inverse = relation;
}

void ModelAssembler::PairBaseRelations() {
  for (Entity& entity : m_entities) {
    if (!entity.isBase) continue;
    for (Relation& relation : entity.relations) {
      // One base relation may be the inverse of several, so that this isn't always mutual.
      const Entity& target = m_entities[relation.target];
      if (m_draft.baseVersion != 0) {
        const BaseRelation* back = BaseInverseOf(relation);
        if (back != nullptr) relation.inverseName = back->name;
      }
      relation.inverse = target.FindBaseRelation(relation.inverseName);
    }
  }
}

void ModelAssembler::PairByName(Claim claim) {
  for (EntityId id = m_firstApplicationEntity; id < m_entities.size(); ++id) {
    Entity& entity = m_entities[id];
    for (std::size_t i = 0; i < entity.relations.size(); ++i) {
      const Relation& relation = entity.relations[i];
      if (relation.inverse != kNone || relation.inverseName.empty()) {
        continue;
      }
      Entity& target = m_entities[relation.target];
      const std::int32_t found = target.FindRelation(relation.inverseName);
      if (found == kNone) continue;
      const Relation& other = target.relations[Pos(found)];
      if (other.inverse != kNone || other.target != id) continue;
      const auto own = static_cast<std::int32_t>(i);
      if (claim == Claim::OneSided || entity.FindRelation(other.inverseName) == own) {
        Pair(entity, own, target, found);
      }
    }
  }
}

const BaseRelation* ModelAssembler::BaseInverseOf(const Relation& relation) const {
  if (m_draft.baseVersion == 0 || relation.baseName.empty()) return nullptr;
  const BaseElement* from = BaseElementOf(m_entities[relation.source]);
  const BaseElement* to = BaseElementOf(m_entities[relation.target]);
  if (from == nullptr || to == nullptr) return nullptr;
  const BaseRelation* base = FindBaseRelation(*from, relation.baseName, m_draft.baseVersion);
  return base == nullptr ? nullptr : InverseOf(*from, *base, *to, m_draft.baseVersion);
}

void ModelAssembler::PairByBaseRelation() {
  for (EntityId id = m_firstApplicationEntity; id < m_entities.size(); ++id) {
    Entity& entity = m_entities[id];
    for (std::size_t i = 0; i < entity.relations.size(); ++i) {
      const Relation& relation = entity.relations[i];
      if (relation.inverse != kNone) continue;
      const BaseRelation* back = BaseInverseOf(relation);
      if (back == nullptr) continue;
      Entity& target = m_entities[relation.target];
      for (std::size_t k = 0; k < target.relations.size(); ++k) {
        const Relation& other = target.relations[k];
        // Two names that don't fit are a stronger sign than a base relation that does.
        const bool disagree = !relation.inverseName.empty() && !other.inverseName.empty();
        if (other.inverse != kNone || other.target != id || other.baseName != back->name ||
            &other == &relation || disagree) {
          continue;
        }
        Pair(entity, static_cast<std::int32_t>(i), target, static_cast<std::int32_t>(k));
        break;
      }
    }
  }
}

void ModelAssembler::MakeMissingInverses() {
  for (EntityId id = m_firstApplicationEntity; id < m_entities.size(); ++id) {
    Entity& entity = m_entities[id];
    for (std::size_t i = 0; i < entity.relations.size(); ++i) {
      const Relation& relation = entity.relations[i];
      if (relation.inverse != kNone) continue;
      Entity& target = m_entities[relation.target];
      // Mixed relations have none.
      if (target.isBase) continue;
      const BaseRelation* back = BaseInverseOf(relation);
      Relation made;
      made.name = FreeName(target, entity, relation);
      made.source = target.id;
      made.target = id;
      made.inverseName = relation.name;
      made.isDeclared = false;
      if (back != nullptr) {
        made.baseName = back->name;
        made.minOccurs = back->minOccurs;
        made.maxOccurs = back->maxOccurs;
        made.relationship = back->relationship;
      }
      ReportMember(
          false, entity, u"relation", relation.name,
          u"no inverse relation in '" + target.name + u"'; '" + made.name + u"' was made.");
      // If the target is this entity, `relation` is gone after this.
      const std::int32_t inverse = Append(target, std::move(made));
      Pair(entity, static_cast<std::int32_t>(i), target, inverse);
    }
  }
}

std::u16string ModelAssembler::FreeName(const Entity& entity, const Entity& source,
                                        const Relation& relation) {
  const auto isFree = [&entity](std::u16string_view name) {
    return entity.FindAttribute(name) == kNone && entity.FindRelation(name) == kNone;
  };
  if (!relation.inverseName.empty() && isFree(relation.inverseName)) return relation.inverseName;
  std::u16string name = u"inverse_of_" + source.name + u"_" + relation.name;
  const std::size_t stem = name.size();
  for (char16_t suffix = u'2'; !isFree(name); ++suffix) {
    if (suffix <= u'9') name.resize(stem);
    name += u'_';
    if (suffix <= u'9') name += suffix;
  }
  return name;
}

void ModelAssembler::SettleRelationships() {
  for (EntityId id = m_firstApplicationEntity; id < m_entities.size(); ++id) {
    for (Relation& relation : m_entities[id].relations) {
      if (relation.relationship != Relationship::None) continue;
      if (relation.inverse == kNone) {
        relation.relationship = Relationship::InfoTo;
        continue;
      }
      Relation& inverse = m_entities[relation.target].relations[Pos(relation.inverse)];
      if (inverse.relationship == Relationship::None) {
        inverse.relationship = FromRanges(inverse, relation);
      }
      relation.relationship = InverseOf(inverse.relationship);
    }
  }
}

}  // namespace hv::vex::engine
