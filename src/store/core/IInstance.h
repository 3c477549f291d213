// store/core/IInstance.h - a stored record of an entity.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

namespace hv::vex {

class IAttribute;
class IEntity;
class IInstList;
class IStore;

/// A single value, read without an object for it.
struct ScalarValue {
  std::int32_t typeCode = 0;
  bool isSet = false;        ///< otherwise nothing below counts
  std::int64_t integer = 0;  ///< integers, truth values and enumerations
  double real = 0;           ///< reals
  /// Texts, digits of times, items of enumerations. Good until the engine is called again.
  std::u16string_view text{};
};

/// A stored record of an entity. There is one live object per record and store while anybody holds
/// it, so two lookups give the same pointer. Answers for IContainer as well.
class IInstance : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IInstance");

  /// The key as text, stable for the store: application entity, colon, id ("Measurement:17").
  virtual void GetKey(WString& key) = 0;
  /// Stores this instance's changes. Where a store saves as a whole (files), its changes are kept
  /// with the store's until that is saved.
  virtual void Save() = 0;
  /// The type code of an instance attribute; 0 if there is none of that name.
  virtual std::int32_t GetInstanceAttributeType(std::u16string_view name) = 0;
  /// The value of an attribute, reference or instance attribute (own name or base name), or null
  /// for a name that doesn't exist. The object writes through to the record.
  virtual IAttribute* GetAttributeValue(std::u16string_view name) = 0;
  /// Adds an attribute that only this instance has. Types 2, 3, 4, 5, 9, 10, 23 and 30 (1 counts as
  /// 2); others throw kWrongType. A name that is taken throws kNotUnique.
  virtual void AddInstanceAttribute(std::u16string_view name, std::int32_t typeCode) = 0;
  /// Removes it. A name that doesn't exist throws kUnknownName.
  virtual void RemoveInstanceAttribute(std::u16string_view name) = 0;
  virtual IStore* GetStore() = 0;
  /// Non-zero if the instance is of that entity or one derived from it.
  virtual std::int32_t IsKindOf(IEntity* entity) = 0;
  /// Rereads the instance from the store.
  virtual void Refresh() = 0;
  /// A list of texts.
  virtual IAttribute* GetInstanceAttributeNames() = 0;
  /// Non-zero if the name may be used for a new attribute (selector 3): not empty, a letter or "_"
  /// first, then letters, digits, "_", "-" or ".", and not taken.
  virtual std::int32_t IsValidAttributeName(std::u16string_view name, std::int32_t selector) = 0;
  /// Zero when the record no longer exists.
  virtual std::int32_t IsValid() = 0;

  // Added behind the operations above.

  virtual IEntity* GetEntity() = 0;
  /// The instances that a reference (own name or base name) or path leads to; never null.
  virtual IInstList* GetRelated(std::u16string_view path) = 0;
  /// Makes a new instance of the reference's target entity and links it.
  virtual IInstance* CreateRelated(std::u16string_view reference) = 0;
  /// Links or unlinks an instance of the same store. A partner of the wrong entity throws
  /// kWrongType.
  virtual void Link(std::u16string_view reference, IInstance* target) = 0;
  virtual void Unlink(std::u16string_view reference, IInstance* target) = 0;
  /// Deletes the record. Child records stay and lose their parent.
  virtual void Delete() = 0;
  /// The record's id, unique in its entity.
  virtual std::int64_t GetId() = 0;
  /// What `GetAttributeValue` would give, at less cost, for the attributes of the model that have
  /// one value of a type from 1 to 11, 23, 24 or 30. Zero for all other names, and nothing is read.
  virtual std::int32_t ReadScalar(std::u16string_view name, ScalarValue* value) = 0;

 protected:
  ~IInstance() = default;
};

}  // namespace hv::vex
