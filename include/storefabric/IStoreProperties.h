// storefabric/IStoreProperties.h - the properties of an element of a store.
//
// Every object given out carries one reference for the caller. A null out pointer gives E_POINTER
// and nothing happens; out pointers are null after a failure. Truth values are 1 and 0; every other
// number than 0 is taken for true. The same members can be called by name; their dispatch ids are
// in the comments and frozen, and those inherited from IProperties and IProperty stay as they are
// there.
//
// An element has the properties of its entity. A single instance may have further ones beside
// those: its instance properties, which are listed only while `ListInstanceProperties` is on.
#pragma once

#include <cstdint>

#include <storefabric/DataType.h>
#include <storefabric/IVEXElement.h>

namespace hv::vex {

/// One property of an element. Writing goes to the store's session at once.
///
/// Differs from IProperty in its codes: a value of an unsuitable type gives VEX_E_VALUE_TYPE, a
/// write that the store refuses E_ACCESSDENIED. `Values` written behind the last value makes a list
/// longer, what lies between is 0 or empty; an empty or null value written there does nothing.
class IStoreProperty : public IProperty {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IStoreProperty");

  /// 8, property. The name that the base model has for the property.
  /// \return S_OK; VEX_E_NOT_BASE_PROPERTY with an empty name if there is none, as for every
  ///         property of the instance alone.
  virtual Result get_BaseName(WString* baseName) = 0;
  /// 9, property. 1 for a property that only this instance has; 0 for one of its entity.
  virtual Result get_IsInstanceProperty(std::int32_t* isInstanceProperty) = 0;

 protected:
  ~IStoreProperty() = default;
};

/// The properties of one element: those of its entity in the order of the model, then those of the
/// instance. Names are told apart by case. A base name finds the property of the entity behind it.
class IStoreProperties : public IProperties {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IStoreProperties");

  /// 7, property. 1 if the properties of the instance alone are listed; 0 at first.
  virtual Result get_ListInstanceProperties(std::int32_t* list) = 0;
  virtual Result put_ListInstanceProperties(std::int32_t list) = 0;

  /// The type of the new property is that of the value; otherwise as below. Callers by name always
  /// give the type.
  using IProperties::Add;
  /// 1. Adds a property to this instance and gives it. A name that exists, also of a property of
  /// the entity, is written to instead.
  /// \param type  1 to 10, 23, 24 or 30; only the value's fit to it counts for a name that exists.
  ///              Stores keep the types 2 to 5, 9, 10, 23 and 30; a new property of another type
  ///              has the nearest of these that holds its values, an enumeration a text.
  /// \return S_OK; VEX_E_BAD_PROPERTY_TYPE; DISP_E_TYPEMISMATCH if value and type don't fit;
  ///         E_INVALIDARG for a name that can't be used; VEX_E_INSTANCE_PROPERTIES_OFF for a new
  ///         name while `ListInstanceProperties` is off; VEX_E_VALUE_TYPE for a value that the
  ///         property can't hold, and then nothing is added.
  virtual Result Add(const WString& name, const Variant& value, enumDataType type,
                     IStoreProperty** property) = 0;

  // `Remove` and `RemoveAll` are for instance properties: VEX_E_INSTANCE_PROPERTIES_OFF while these
  // aren't listed, VEX_E_APPLICATION_PROPERTY for a property of the entity, E_INVALIDARG for an
  // unknown name. `RemoveAll` lets the properties of the entity be.
  // `AddProperties` takes over all values with their types.

 protected:
  ~IStoreProperties() = default;
};

}  // namespace hv::vex
