// core/plugins/atfx/InstanceFields.h - how each tag inside an instance is read, worked out once per
// application element.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/model/Model.h"

#include <storefabric/WString.h>

namespace hv::vex::engine::atfx {

/// One tag of an instance.
struct Field {
  enum class Kind : std::uint8_t {
    Id,
    Integer,  // scalar numbers, read straight from their text
    Boolean,
    Real,
    Text,
    Date,
    Enum,
    Typed,       // everything that has a form of its own: sequences, bytes, complex numbers ...
    Unreadable,  // of no data type
    Relation,
    Values,  // of a local column
    Flags,
  };
  Kind kind = Kind::Text;
  std::int32_t index = kNone;  ///< of the attribute or relation
  OdsType type = OdsType::Unknown;
  const Enumeration* enumeration = nullptr;
  std::u16string_view name;  ///< the application name, which is the tag
  std::u16string_view baseName;
  EntityId target = kNoEntity;  ///< Relation
  std::uint32_t next = 0;       ///< the field that stood behind this one last time
};

/// What kind of base element an application element stands on, as far as the reader cares.
enum class Role : std::uint8_t { Plain, LocalColumn, ExternalComponent, Unit, File };

struct EntityFields {
  EntityId id = kNoEntity;
  Role role = Role::Plain;
  std::u16string_view name;
  bool hasId = false;
  std::vector<Field> fields;
  std::unordered_map<std::u16string_view, std::uint32_t> byTag;
  std::unordered_map<std::u16string, std::uint32_t> byFoldedTag;
  std::uint32_t last = 0;  ///< the field met last, where the search for the next one begins

  /// The field of a tag: exact name, then without regard to case; null if there is none. Instances
  /// of one element mostly repeat their order of tags, so the one that followed last time is tried
  /// first.
  Field* Find(std::u16string_view tag);
};

/// The fields of all application elements of a model, which must outlive it.
class InstanceFields {
 public:
  explicit InstanceFields(const Model& model);
  InstanceFields(const InstanceFields&) = delete;
  InstanceFields& operator=(const InstanceFields&) = delete;

  /// The element of an instance's tag, in the same way; null if there is none.
  EntityFields* Find(std::u16string_view tag);
  [[nodiscard]] Role RoleOf(EntityId entity) const { return m_roles[entity]; }

 private:
  std::vector<std::unique_ptr<EntityFields>> m_entities;
  std::unordered_map<std::u16string_view, EntityFields*> m_byTag;
  std::unordered_map<std::u16string, EntityFields*> m_byFoldedTag;
  std::vector<Role> m_roles;  // by entity
  EntityFields* m_last = nullptr;
};

}  // namespace hv::vex::engine::atfx
