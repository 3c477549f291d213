// store/core/IModel.h - the data model of a store.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

namespace hv::vex {

class IAttribute;
class IEntity;
class IEntityList;
class IInstance;

/// The data model of a store: one object per store.
class IModel : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IModel");

  /// All entities, base entities first.
  virtual IEntityList* GetEntities() = 0;
  /// By application name, or by base name in lower case ("aolocalcolumn", which gives the base
  /// entity); a name that fits neither is tried without regard to case. Null if there is none.
  virtual IEntity* GetEntityByName(std::u16string_view name) = 0;
  virtual IEntity* GetEntityOf(IInstance* instance) = 0;
  /// Non-zero if the model has that part, told by the path of its URI ("/DataModels/VEX/QMD/1_0").
  virtual std::int32_t HasModelPart(std::u16string_view identifier) = 0;
  /// By application name or base name, exactly. Null if there is none.
  virtual IEntity* GetEntity(std::u16string_view name) = 0;

  // Added behind the operations above.

  /// The application entity that stands on a base entity (lower-case name); the first in the
  /// model's order where there are several; null if there is none.
  virtual IEntity* GetApplicationEntityOfBase(std::u16string_view baseName) = 0;
  /// The dotted path of reference names from one entity to another: along fathers and children as
  /// far as possible, and of such ways the shortest. Non-zero if there is one; an entity reaches
  /// itself by the empty path.
  virtual std::int32_t FindPath(IEntity* from, IEntity* to, WString& path) = 0;
  /// Grows with every change of the model.
  virtual std::uint64_t GetChangeCounter() = 0;
  /// Longest value that a query may hold; 0 for no limit.
  virtual std::uint64_t GetLongestValue() = 0;
  /// Non-zero if queries may combine conditions freely.
  virtual std::int32_t SupportsCustomLogic() = 0;
  /// Non-zero if one condition may hold several values joined with OR.
  virtual std::int32_t SupportsMultipleValues() = 0;
  /// The version text of the base model ("asam36"), empty if the model stands on none.
  virtual void GetBaseModelVersion(WString& version) = 0;
  /// Names of the enumerations that the application model declares, also of those that no attribute
  /// has: a list of texts.
  virtual IAttribute* GetEnumerationNames() = 0;
  /// Items of one of them in the order of declaration; a name that doesn't exist has 0 items.
  virtual std::uint64_t GetEnumerationItemCount(std::u16string_view enumeration) = 0;
  virtual void GetEnumerationItem(std::u16string_view enumeration, std::uint64_t index,
                                  WString& name, std::int64_t* value) = 0;

 protected:
  ~IModel() = default;
};

}  // namespace hv::vex
