// store/core/IEntity.h - a type of instance in the model, and the relations between them.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

namespace hv::vex {

class IAttribute;
class IEntity;
class IModel;
class IRelation;

/// A list of entities in the order of the model.
class IEntityList : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IEntityList");

  virtual std::uint64_t GetCount() = 0;
  /// Null beyond the end.
  virtual IEntity* GetEntity(std::uint64_t index) = 0;

 protected:
  ~IEntityList() = default;
};

/// A type of instance. The entities of the base model are part of every model under their
/// lower-case names ("aotest"); application entities derive from them. One object per entity and
/// model.
class IEntity : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IEntity");

  /// Application name; of a base entity its lower-case name.
  virtual void GetName(WString& name) = 0;
  /// The names of all attributes, references among them, in the order of the model: a list of
  /// texts. The indexes of `GetAttributeType` and `GetRelation` are positions in this list.
  virtual IAttribute* GetAttributeNames() = 0;
  /// The parent entity or null.
  virtual IEntity* GetSuperType() = 0;
  /// Empty for a leaf; never null.
  virtual IEntityList* GetSubTypes() = 0;
  /// Base name of an attribute or reference, or empty.
  virtual void GetAttributeBaseName(WString& baseName, std::u16string_view attribute) = 0;
  /// Type code, 40 for a reference; 0 beyond the end.
  virtual std::int32_t GetAttributeType(std::uint64_t index) = 0;
  /// Non-zero if this is `entity` or derived from it. Null gives 0.
  virtual std::int32_t IsKindOf(IEntity* entity) = 0;
  /// The relation of a reference attribute; null for other attributes and beyond the end.
  virtual IRelation* GetRelation(std::uint64_t index) = 0;
  /// Non-zero for an attribute or reference that the application model declares.
  virtual std::int32_t HasApplicationAttribute(std::u16string_view name) = 0;
  /// The definition of an attribute or reference by own name or base name, or null. Answers for
  /// IAttributeDefinition too.
  virtual IAttribute* GetAttribute(std::u16string_view name) = 0;
  /// Null for an entity that exists in the base model only; otherwise this entity.
  virtual IEntity* GetApplicationElement() = 0;
  /// The entity of the base model that this one stands on, a base entity itself; or null.
  virtual IEntity* GetBaseEntity() = 0;
  /// By own name or base name; null if there is none.
  virtual IRelation* GetRelationByName(std::u16string_view name) = 0;
  virtual IModel* GetModel() = 0;

 protected:
  ~IEntity() = default;
};

/// A reference from one entity to another.
class IRelation : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IRelation");

  virtual void GetName(WString& name) = 0;
  /// -1 as the maximum means any number.
  virtual void GetOccurrence(std::int32_t* minimum, std::int32_t* maximum) = 0;
  virtual IEntity* GetTargetEntity() = 0;
  /// The relation of the other direction, or null.
  virtual IRelation* GetInverse() = 0;

  // Added behind the operations above.

  virtual void GetBaseName(WString& name) = 0;
  virtual IEntity* GetSourceEntity() = 0;
  /// 1 to the father, 2 to children, 3 informative to one, 4 informative from many, 5 informative
  /// n:m, 0 if the base model doesn't tell.
  virtual std::int32_t GetRelationship() = 0;

 protected:
  ~IRelation() = default;
};

}  // namespace hv::vex
