// core/model/Model.cpp - look-ups in a finished model.
#include "core/model/Model.h"

#include <algorithm>
#include <compare>
#include <limits>

namespace hv::vex::engine {
namespace {

std::size_t Pos(std::int32_t index) { return static_cast<std::size_t>(index); }

/// How a path came to an entity, which decides what the next step costs.
enum class Direction : std::uint8_t { Other, Up, Down };
constexpr std::size_t kDirections = 3;

Direction DirectionOf(Relationship relationship) {
  if (relationship == Relationship::Father) return Direction::Up;
  return relationship == Relationship::Child ? Direction::Down : Direction::Other;
}

/// The cost of a path: first how far it strays, then its length, then how many of its relations the
/// base model doesn't know.
struct Cost {
  std::uint32_t stray = std::numeric_limits<std::uint32_t>::max();
  std::uint32_t length = 0;
  std::uint32_t own = 0;
  friend auto operator<=>(const Cost&, const Cost&) = default;
};

/// A step across the hierarchy strays by one; up to a father and down again to all of its children
/// by two, since of those only one is related.
std::uint32_t StrayOf(Direction before, Direction step) {
  if (step == Direction::Other) return 1;
  return before == Direction::Up && step == Direction::Down ? 2 : 0;
}

/// The best way to an entity in a direction, as far as it is known.
struct Reached {
  Cost cost;
  bool isFinal = false;
  std::size_t before = 0;      ///< the place that the last step came from
  std::int32_t relation = -1;  ///< the last step
};

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
  // Models have some dozens of entities: looking for the best place takes no heap.
  std::vector<Reached> places(m_entities.size() * kDirections);
  places[from * kDirections].cost = {0, 0, 0};
  while (true) {
    std::size_t best = places.size();
    for (std::size_t i = 0; i < places.size(); ++i) {
      if (places[i].isFinal || places[i].cost == Cost{}) continue;
      if (best == places.size() || places[i].cost < places[best].cost) best = i;
    }
    if (best == places.size()) return std::nullopt;
    const auto entity = static_cast<EntityId>(best / kDirections);
    if (IsKindOf(entity, to)) {
      path.target = entity;
      for (; places[best].relation >= 0; best = places[best].before) {
        const auto source = static_cast<EntityId>(places[best].before / kDirections);
        path.steps.push_back({source, places[best].relation});
      }
      std::reverse(path.steps.begin(), path.steps.end());
      return path;
    }
    places[best].isFinal = true;
    const auto before = static_cast<Direction>(best % kDirections);
    const std::vector<Relation>& relations = m_entities[entity].relations;
    for (std::size_t i = 0; i < relations.size(); ++i) {
      const Direction step = DirectionOf(relations[i].relationship);
      Reached& next = places[relations[i].target * kDirections + static_cast<std::size_t>(step)];
      const Cost cost = {places[best].cost.stray + StrayOf(before, step),
                         places[best].cost.length + 1,
                         places[best].cost.own + (relations[i].baseName.empty() ? 1 : 0)};
      if (!next.isFinal && cost < next.cost) {
        next = {cost, false, best, static_cast<std::int32_t>(i)};
      }
    }
  }
}

}  // namespace hv::vex::engine
