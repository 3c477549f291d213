// core/model/Model.h - an application model: entities, attributes, relations, enumerations.
// Immutable once built (ModelBuilder); shared by a store, its records and its seam objects.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/model/NameFold.h"
#include "core/model/OdsType.h"

namespace hv::vex::engine {

/// Position of an entity in its model; base entities and application entities share the numbering.
using EntityId = std::uint32_t;
inline constexpr EntityId kNoEntity = 0xFFFFFFFFu;
inline constexpr std::int32_t kNone = -1;
/// "Many" as the maximum of a relation.
inline constexpr std::int32_t kMany = -1;

struct EnumItem {
  std::u16string name;
  std::int64_t value;
};

struct Enumeration {
  std::u16string name;
  bool isBase = false;  ///< one of the standard's own; never written into files
  std::vector<EnumItem> items;
  /// The item's number; exact name first, then without regard to case.
  [[nodiscard]] std::optional<std::int64_t> ValueOf(std::u16string_view itemName) const;
  [[nodiscard]] const EnumItem* ItemOf(std::int64_t value) const;
};

struct Attribute {
  std::u16string name;
  std::u16string baseName;  ///< lower case, or empty
  OdsType type = OdsType::String;
  bool sequence = false;
  bool obligatory = false;
  bool unique = false;
  bool autogenerate = false;
  std::int32_t length = 0;           ///< longest text; 0: no limit
  std::int32_t enumeration = kNone;  ///< index into the model's enumerations
  std::int64_t unit = 0;             ///< id of an AoUnit record; 0: none
  [[nodiscard]] std::int32_t SeamType() const { return SeamTypeOf(type); }
};

enum class Relationship : std::uint8_t { None, Father, Child, InfoTo, InfoFrom, InfoRel };

struct Relation {
  std::u16string name;
  std::u16string baseName;  ///< lower case, or empty
  EntityId source = kNoEntity;
  EntityId target = kNoEntity;
  std::int32_t minOccurs = 0;
  std::int32_t maxOccurs = kMany;
  std::int32_t inverse = kNone;  ///< index into the target's relations
  std::u16string inverseName;    ///< as the model's source told it; may name nothing
  Relationship relationship = Relationship::None;
  bool isDeclared = true;  ///< false: made here because only the other side told of it
  [[nodiscard]] bool ToMany() const { return maxOccurs != 1; }
  /// True if the target is a base entity, so that the relation leads to records of any entity that
  /// stands on it. Only models without the standard's base model have such ones.
  [[nodiscard]] bool IsMixed() const { return inverse == kNone; }
};

/// A member in the order of declaration: attributes and relations mixed.
struct MemberRef {
  bool isRelation;
  std::uint32_t index;
};

struct Entity {
  EntityId id = kNoEntity;
  std::u16string name;         ///< application name, or the lower-case base name of a base entity
  bool isBase = false;         ///< of the base model, not of the application model
  EntityId super = kNoEntity;  ///< application entity: its base entity; base entity: none
  std::vector<EntityId> subTypes;
  std::vector<Attribute> attributes;
  std::vector<Relation> relations;
  std::vector<MemberRef> members;
  std::int32_t idAttribute = kNone;    ///< the attribute with the base name "id"
  std::int32_t nameAttribute = kNone;  ///< the attribute with the base name "name"

  /// Index of an attribute: exact name, then base name, then either without regard to case; or
  /// kNone.
  [[nodiscard]] std::int32_t FindAttribute(std::u16string_view name) const;
  /// The same for relations. Of several with one base name the first in declaration order.
  [[nodiscard]] std::int32_t FindRelation(std::u16string_view name) const;
  /// By base name alone (lower case).
  [[nodiscard]] std::int32_t FindBaseAttribute(std::u16string_view baseName) const;
  [[nodiscard]] std::int32_t FindBaseRelation(std::u16string_view baseName) const;
  /// The first relation of a kind, for instance the way up (Father), whose base name differs from
  /// element to element; or kNone.
  [[nodiscard]] std::int32_t FirstRelationOf(Relationship relationship) const;

 private:
  friend class Model;
  friend class ModelAssembler;
  NameIndex m_attributeNames;
  NameIndex m_relationNames;
};

/// One step of a resolved path.
struct PathStep {
  EntityId source;
  std::int32_t relation;  ///< index into the source's relations
};

/// A dotted path: relation steps and, where asked for, an attribute at the end.
struct ResolvedPath {
  std::vector<PathStep> steps;
  EntityId target = kNoEntity;     ///< where the steps lead
  std::int32_t attribute = kNone;  ///< attribute of `target`, or kNone
};

class Model {
 public:
  Model() = default;
  Model(const Model&) = delete;
  Model& operator=(const Model&) = delete;

  /// The file's text, such as "asam36".
  [[nodiscard]] const std::u16string& BaseModelVersion() const { return m_baseModelVersion; }
  /// The version that counts, 29 to 36; 0 for a model without the standard's base model.
  [[nodiscard]] int BaseVersion() const { return m_baseVersion; }
  /// Base entities first in the order of the base model, then application entities in the order of
  /// their declaration.
  [[nodiscard]] const std::deque<Entity>& Entities() const { return m_entities; }
  [[nodiscard]] const Entity& At(EntityId id) const { return m_entities[id]; }
  [[nodiscard]] const std::vector<Enumeration>& Enumerations() const { return m_enumerations; }
  /// Exact name, then without regard to case; null if there is none.
  [[nodiscard]] const Enumeration* FindEnumeration(std::u16string_view name) const;
  /// Model parts that the model says it holds, by identifier (for instance
  /// "/DataModels/VEX/QMD/1_0").
  [[nodiscard]] bool HasPart(std::u16string_view identifier) const;
  [[nodiscard]] const std::vector<std::u16string>& Parts() const { return m_parts; }

  /// Exact application name, or the lower-case name of a base entity; null if there is none.
  [[nodiscard]] const Entity* Find(std::u16string_view name) const;
  /// As `Find`, and then without regard to case.
  [[nodiscard]] const Entity* FindAnyCase(std::u16string_view name) const;
  /// True if `entity` is `other` or derived from it.
  [[nodiscard]] bool IsKindOf(EntityId entity, EntityId other) const;
  /// The entity itself if it is an application entity, else all application entities derived from
  /// it.
  [[nodiscard]] std::vector<EntityId> ApplicationEntitiesOf(EntityId entity) const;
  /// The base entity's name of an application entity ("aotest"); a base entity's own name.
  [[nodiscard]] const std::u16string& BaseNameOf(EntityId entity) const;

  /// Resolves "relation.relation.attribute" from `start`. Names may hold dots: at each step the
  /// longest existing name wins. With `wantAttribute` the last part must be an attribute, otherwise
  /// all parts are relations. Nothing if a name doesn't exist.
  /// No way back is tried: a longer name that leads nowhere hides a shorter one.
  [[nodiscard]] std::optional<ResolvedPath> Resolve(EntityId start, std::u16string_view path,
                                                    bool wantAttribute) const;
  /// The way from one entity to another, or to any entity derived from it, that people mean: along
  /// fathers and children as far as possible, since those say what belongs to what. Of several such
  /// ways the shortest, and of those the one that the base model knows. Going up and then down
  /// again counts as two steps that are neither. Empty steps from an entity to itself. Nothing if
  /// there is no way.
  [[nodiscard]] std::optional<ResolvedPath> FindPath(EntityId from, EntityId to) const;

 private:
  friend class ModelAssembler;
  /// Length and index of the longest name at the start of `path` that is a relation and ends at a
  /// dot or with the path; kNone if there is none.
  static std::pair<std::size_t, std::int32_t> LongestRelation(const Entity& entity,
                                                              std::u16string_view path);

  std::u16string m_baseModelVersion;
  int m_baseVersion = 0;
  std::deque<Entity> m_entities;
  std::vector<Enumeration> m_enumerations;
  std::vector<std::u16string> m_parts;
  ExactNameMap<EntityId> m_byName;
  FoldedNameMap<EntityId> m_byFoldedName;
};

}  // namespace hv::vex::engine
