// core/model/Model.cpp - look-ups in a finished model.
#include "core/model/Model.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace hv::vex::engine {
namespace {

std::size_t Pos(std::int32_t index) { return static_cast<std::size_t>(index); }

/// How an entity was reached in a search for a path.
struct Way {
  std::uint32_t otherSteps = 0;  ///< steps that are neither father nor child
  std::vector<std::int32_t> relations;
  friend bool operator<(const Way& a, const Way& b) {
    return std::tie(a.otherSteps, a.relations) < std::tie(b.otherSteps, b.relations);
  }
};

bool IsHierarchy(Relationship relationship) {
  return relationship == Relationship::Father || relationship == Relationship::Child;
}

}  // namespace

std::optional<std::int64_t> Enumeration::ValueOf(std::u16string_view itemName) const {
  for (const EnumItem& item : items) {
    if (item.name == itemName) return item.value;
  }
  for (const EnumItem& item : items) {
    if (EqualFolded(item.name, itemName)) return item.value;
  }
  return std::nullopt;
}

const EnumItem* Enumeration::ItemOf(std::int64_t value) const {
  const auto found = std::find_if(items.begin(), items.end(),
                                  [value](const EnumItem& item) { return item.value == value; });
  return found == items.end() ? nullptr : &*found;
}

std::int32_t Entity::FindAttribute(std::u16string_view attribute) const {
  return m_attributeNames.Find(attribute);
}

std::int32_t Entity::FindRelation(std::u16string_view relation) const {
  return m_relationNames.Find(relation);
}

std::int32_t Entity::FindBaseAttribute(std::u16string_view baseName) const {
  return m_attributeNames.FindBase(baseName);
}

std::int32_t Entity::FindBaseRelation(std::u16string_view baseName) const {
  return m_relationNames.FindBase(baseName);
}

std::int32_t Entity::FirstRelationOf(Relationship relationship) const {
  for (std::size_t i = 0; i < relations.size(); ++i) {
    if (relations[i].relationship == relationship) return static_cast<std::int32_t>(i);
  }
  return kNone;
}

const Enumeration* Model::FindEnumeration(std::u16string_view name) const {
  for (const Enumeration& enumeration : m_enumerations) {
    if (enumeration.name == name) return &enumeration;
  }
  for (const Enumeration& enumeration : m_enumerations) {
    if (EqualFolded(enumeration.name, name)) return &enumeration;
  }
  return nullptr;
}

bool Model::HasPart(std::u16string_view identifier) const {
  return std::find(m_parts.begin(), m_parts.end(), identifier) != m_parts.end();
}

const Entity* Model::Find(std::u16string_view name) const {
  const auto found = m_byName.find(name);
  return found == m_byName.end() ? nullptr : &m_entities[found->second];
}

const Entity* Model::FindAnyCase(std::u16string_view name) const {
  if (const Entity* exact = Find(name)) return exact;
  const auto found = m_byFoldedName.find(name);
  return found == m_byFoldedName.end() ? nullptr : &m_entities[found->second];
}

bool Model::IsKindOf(EntityId entity, EntityId other) const {
  while (entity != kNoEntity && entity != other) entity = m_entities[entity].super;
  return entity != kNoEntity;
}

std::vector<EntityId> Model::ApplicationEntitiesOf(EntityId entity) const {
  const Entity& asked = m_entities[entity];
  return asked.isBase ? asked.subTypes : std::vector<EntityId>{entity};
}

const std::u16string& Model::BaseNameOf(EntityId entity) const {
  const Entity& asked = m_entities[entity];
  return asked.super == kNoEntity ? asked.name : m_entities[asked.super].name;
}

std::pair<std::size_t, std::int32_t> Model::LongestRelation(const Entity& entity,
                                                            std::u16string_view path) {
  const std::size_t longest = entity.m_relationNames.LongestName();
  std::size_t length = path.size();
  if (length > longest) length = path.rfind(u'.', longest);
  while (length != path.npos && length != 0) {
    const std::int32_t relation = entity.FindRelation(path.substr(0, length));
    if (relation != kNone) return {length, relation};
    length = path.rfind(u'.', length - 1);
  }
  return {0, kNone};
}

std::optional<ResolvedPath> Model::Resolve(EntityId start, std::u16string_view path,
                                           bool wantAttribute) const {
  ResolvedPath resolved;
  resolved.target = start;
  std::u16string_view rest = path;
  while (true) {
    const Entity& entity = m_entities[resolved.target];
    if (wantAttribute) {
      resolved.attribute = entity.FindAttribute(rest);
      if (resolved.attribute != kNone) return resolved;
    }
    const auto [length, relation] = LongestRelation(entity, rest);
    if (relation == kNone) return std::nullopt;
    resolved.steps.push_back({resolved.target, relation});
    resolved.target = entity.relations[Pos(relation)].target;
    if (length == rest.size()) break;
    rest.remove_prefix(length + 1);
  }
  if (wantAttribute) return std::nullopt;
  return resolved;
}

std::optional<ResolvedPath> Model::FindPath(EntityId from, EntityId to) const {
  ResolvedPath path;
  path.target = from;
  if (IsKindOf(from, to)) return path;
  std::vector<bool> isReached(m_entities.size(), false);
  isReached[from] = true;
  std::map<EntityId, Way> front{{from, {}}};
  while (!front.empty()) {
    std::map<EntityId, Way> next;
    for (const auto& [id, way] : front) {
      const Entity& entity = m_entities[id];
      for (std::size_t i = 0; i < entity.relations.size(); ++i) {
        const Relation& relation = entity.relations[i];
        if (isReached[relation.target]) continue;
        Way longer = way;
        longer.otherSteps += IsHierarchy(relation.relationship) ? 0 : 1;
        longer.relations.push_back(static_cast<std::int32_t>(i));
        const auto [known, isNew] = next.try_emplace(relation.target, longer);
        if (!isNew && longer < known->second) known->second = std::move(longer);
      }
    }
    const Way* best = nullptr;
    for (const auto& [id, way] : next) {
      isReached[id] = true;
      if (IsKindOf(id, to) && (best == nullptr || way < *best)) best = &way;
    }
    if (best != nullptr) {
      for (const std::int32_t relation : best->relations) {
        path.steps.push_back({path.target, relation});
        path.target = m_entities[path.target].relations[Pos(relation)].target;
      }
      return path;
    }
    front = std::move(next);
  }
  return std::nullopt;
}

}  // namespace hv::vex::engine
