// query/conditions/IConditionOwner.h - what conditions need of their query and of its store.
// The query implements both.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

namespace hv::vex {

class IAttributeDataTypeHelper;

/// The query that holds a collection of conditions. Not counted: the collection forgets it when the
/// query says so (`IConditionCollImpl::DetachFromOwner`), at the latest when the query dies.
class IConditionOwner {
 public:
  /// The name of the query's store as messages show it; empty if there is none.
  virtual WString GetStoreName() = 0;
  /// Whether the names that the query holds can still be relied upon. \param type  an entity
  /// \return S_OK if the model hasn't changed since the query looked last, or still has the type;
  ///         VEX_E_QUERY_BROWSE_PATH; VEX_E_OBJECT_GONE or VEX_E_PARENT_GONE for a closed store.
  ///         A query that was detached on purpose answers S_OK: it stays readable.
  virtual Result CheckModel(std::u16string_view type) = 0;

 protected:
  ~IConditionOwner() = default;
};

/// Gives entities and properties the names of the user's language.
class IDisplayNameSource : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IDisplayNameSource");

  /// \param language  the code of the string table, "eng" and its like
  /// \return S_OK; any failure if it doesn't know one of the two. May throw what the engine throws.
  virtual Result GetLocalNames(std::u16string_view language, std::u16string_view type,
                               std::u16string_view property, WString* localType,
                               WString* localProperty) = 0;

 protected:
  ~IDisplayNameSource() = default;
};

/// The model of the store to which conditions are bound. Shared by a collection and its conditions.
/// Called for every condition that is added: what it looks up it should look up once.
class IConditionModelSource : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IConditionModelSource");

  /// The store's name as messages show it.
  virtual WString GetStoreName() = 0;
  virtual bool IsValidType(std::u16string_view type) = 0;
  /// True if a condition may stand on that property: the check of its path has nothing to object.
  virtual bool IsValidProperty(std::u16string_view type, std::u16string_view property) = 0;
  /// Answers for the property of the entity; knows type 0 if there is none.
  virtual Result GetTypeHelper(std::u16string_view type, std::u16string_view property,
                               IAttributeDataTypeHelper** helper) = 0;
  /// The type code of a property of the entity, or of its instances if the entity has none of that
  /// name. \return S_OK; E_INVALIDARG if there is none at all
  virtual Result GetValueType(std::u16string_view type, std::u16string_view property,
                              std::int32_t* dataType) = 0;
  /// The names that the store has for them.
  /// \param entityPath  receives the dotted way from the measurement quantity to the entity
  /// \param internalProperty  receives the base name of the property, or its model name
  /// \return S_OK; any failure if they can't be resolved
  virtual Result ResolveInternal(std::u16string_view type, std::u16string_view property,
                                 WString* entityPath, WString* internalProperty) = 0;
  /// The way back: the names of a path "entity.property". \return S_OK; any failure
  virtual Result ResolveNames(std::u16string_view path, WString* type, WString* property) = 0;
  /// Null if the model knows no other names; borrowed.
  virtual IDisplayNameSource* GetDisplayNameSource() = 0;

 protected:
  ~IConditionModelSource() = default;
};

}  // namespace hv::vex
