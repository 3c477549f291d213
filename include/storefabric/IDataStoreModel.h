// storefabric/IDataStoreModel.h - the data model of a store: entities, properties, references.
//
// Every object given out carries one reference for the caller. A null out pointer gives E_POINTER
// and nothing happens; out pointers are null after a failure. Truth values are 1 and 0. The same
// members can be called by name; their dispatch ids are in the comments and frozen.
// The model is read once per session and doesn't change. An entity that outlives the model it came
// from answers VEX_E_OBJECT_GONE where it has to find another one.
#pragma once

#include <cstdint>

#include <storefabric/DataType.h>
#include <storefabric/Dispatch.h>

namespace hv::vex {

class IModelEntities;
class IModelEntity;
class IModelProperties;
class IModelProperty;
class IModelReference;
class IModelReferences;

/// The data model of a store.
class IDataStoreModel : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IDataStoreModel");

  /// 1, property. The entities that applications see, in the order of the model.
  virtual Result get_Entities(IModelEntities** entities) = 0;
  /// 2. Writes the whole store, model and data, into a file.
  /// \param pathName  without an extension, ".atfx" is appended. The extension "vsf" stands for the
  ///                  format VEX; every other one for ATFX.
  /// \return S_OK; E_FAIL if the file can't be written.
  virtual Result Export(const WString& pathName) = 0;

 protected:
  ~IDataStoreModel() = default;
};

/// A list of entities.
class IModelEntities : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IModelEntities");

  /// 0, the default member. An entity by its name, told apart by case, or by its index from 0. A
  /// text is a name even if it holds digits only.
  /// \return S_OK; E_INVALIDARG for an unknown name or an index outside; DISP_E_TYPEMISMATCH for an
  ///         argument that is neither a text nor a number.
  virtual Result Item(const Variant& nameOrIndex, IModelEntity** entity) = 0;
  /// 1, property.
  virtual Result get_Count(std::int32_t* count) = 0;
  /// 2. 1 if there is an entity of that name, otherwise 0.
  virtual Result Exists(const WString& name, std::int32_t* exists) = 0;
  /// -4, property. Walks the entities.
  virtual Result get__NewEnum(IVariantIterator** iterator) = 0;

 protected:
  ~IModelEntities() = default;
};

/// A type of instance in a store.
class IModelEntity : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IModelEntity");

  /// 1, property. The application name; of an entity of the base model its name in lower case.
  virtual Result get_Name(WString* name) = 0;
  /// 2, property.
  virtual Result get_ModelProperties(IModelProperties** properties) = 0;
  /// 3, property. A list of its own at each call: keep it while looking things up.
  virtual Result get_ModelReferences(IModelReferences** references) = 0;
  /// 4, property. The entities that derive from this one; null if there are none.
  virtual Result get_SubTypes(IModelEntities** subTypes) = 0;
  /// 5, property. The entity that this one derives from; null if there is none.
  virtual Result get_SuperType(IModelEntity** superType) = 0;
  /// 6, property. 1 if the name begins with "ao" in lower case. Only the text counts: an
  /// application entity of such a name is one, too.
  virtual Result get_IsBaseType(std::int32_t* isBaseType) = 0;
  /// 7. 1 if this is the other entity or derives from it, otherwise 0. An unknown name gives 0.
  /// \param nameOrEntity  a name, application or base, or an object with `IModelEntity`
  /// \return S_OK; E_INVALIDARG if the argument is neither.
  virtual Result IsKindOf(const Variant& nameOrEntity, std::int32_t* isKindOf) = 0;

 protected:
  ~IModelEntity() = default;
};

/// The properties of an entity, in the order of the model. Attributes of types that can't be shown
/// (see `IsPropertyType`) aren't listed.
class IModelProperties : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IModelProperties");

  /// 0, the default member. A property by its name, its base name or its index from 0.
  /// \return S_OK; E_INVALIDARG for an unknown name or an index outside; DISP_E_TYPEMISMATCH for an
  ///         argument that is neither a text nor a number.
  virtual Result Item(const Variant& nameOrIndex, IModelProperty** property) = 0;
  /// 1, property.
  virtual Result get_Count(std::int32_t* count) = 0;
  /// 2. 1 if there is a property of that name or base name, otherwise 0.
  virtual Result Exists(const WString& name, std::int32_t* exists) = 0;

 protected:
  ~IModelProperties() = default;
};

/// A property of an entity.
class IModelProperty : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IModelProperty");

  /// 1, property.
  virtual Result get_Name(WString* name) = 0;
  /// 2, property. The code of the value type; codes beyond `enumDataType` go through unchanged.
  virtual Result get_DataType(enumDataType* dataType) = 0;
  /// 3, property. \return S_OK; VEX_E_NOT_BASE_PROPERTY with an empty name for a property of the
  /// application alone.
  virtual Result get_BaseName(WString* baseName) = 0;
  /// 4, property. The least number of values.
  virtual Result get_MinOccur(std::int32_t* minOccur) = 0;
  /// 5, property. The greatest number of values; -1 for any number.
  virtual Result get_MaxOccur(std::int32_t* maxOccur) = 0;

 protected:
  ~IModelProperty() = default;
};

/// The references of an entity, in the order of the model.
class IModelReferences : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IModelReferences");

  /// 0, the default member. A reference by its name, its base name or its index from 0.
  /// \return S_OK; E_INVALIDARG for an unknown name or an index outside; DISP_E_TYPEMISMATCH for an
  ///         argument that is neither a text nor a number.
  virtual Result Item(const Variant& nameOrIndex, IModelReference** reference) = 0;
  /// 1, property.
  virtual Result get_Count(std::int32_t* count) = 0;
  /// 2. 1 if there is a reference of that name or base name, otherwise 0.
  virtual Result Exists(const WString& name, std::int32_t* exists) = 0;
  /// -4, property. Walks the references.
  virtual Result get__NewEnum(IVariantIterator** iterator) = 0;

 protected:
  ~IModelReferences() = default;
};

/// A reference from one entity to another.
class IModelReference : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IModelReference");

  /// 1, property.
  virtual Result get_Name(WString* name) = 0;
  /// 2, property. The entity referred to. E_FAIL if the model has no such entity.
  virtual Result get_EntityType(IModelEntity** entity) = 0;
  /// 3, property. Empty for a reference of the application alone.
  virtual Result get_BaseName(WString* baseName) = 0;
  /// 4, property. The least number of references.
  virtual Result get_MinOccur(std::int32_t* minOccur) = 0;
  /// 5, property. The greatest number of references; -1 for any number.
  virtual Result get_MaxOccur(std::int32_t* maxOccur) = 0;
  /// 6, property. The reference of the other direction. E_NOTIMPL if there is none.
  virtual Result get_Inverse(IModelReference** inverse) = 0;

 protected:
  ~IModelReference() = default;
};

}  // namespace hv::vex
