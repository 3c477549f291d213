// store/properties/IStorePropertiesImpl.h - the logic faces of the properties of store elements.
// Out objects carry one reference for the caller; a null out pointer gives E_POINTER; out objects
// are null after a failure. Engine failures give E_FAIL unless an operation names another code: out
// of memory gives E_OUTOFMEMORY, a timeout E_PENDING, a record that is gone VEX_E_OBJECT_GONE.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/DataType.h>

#include "elements/IPropertyImpl.h"

namespace hv::vex {

/// A value or a list of values of an instance. Has no operations beyond those of the generic face;
/// an unsuitable value gives VEX_E_VALUE_TYPE, a refused write E_ACCESSDENIED.
class IStorePropertyImpl : public easyImpl::IPropertyImpl {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IStorePropertyImpl");

 protected:
  ~IStorePropertyImpl() = default;
};

/// The properties of an instance: those of its entity and, if they are listed, those of its own.
class IStorePropertiesImpl : public easyImpl::IPropertyCollectionImpl {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IStorePropertiesImpl");

  /// Adds an instance property of the type that the value itself has.
  using easyImpl::IPropertyCollectionImpl::Add;
  /// Adds an instance property, or writes the one that has that name.
  /// \return S_OK; VEX_E_BAD_PROPERTY_TYPE for a type that none can have; DISP_E_TYPEMISMATCH for a
  ///         value that doesn't fit the type; E_INVALIDARG for a name that can't be used;
  ///         VEX_E_INSTANCE_PROPERTIES_OFF for a new name while instance properties aren't listed;
  ///         VEX_E_WRITE_PROTECTED; what writing the value gave, and then nothing was added.
  virtual Result Add(std::u16string_view name, const Variant& value, std::int32_t type,
                     easyImpl::IPropertyImpl** property) = 0;
  virtual Result GetListInstanceProperties(std::int32_t* list) = 0;
  /// Any number but 0 lists the properties of the instance alone. After a failure all is as before.
  virtual Result SetListInstanceProperties(std::int32_t list) = 0;
  /// Reads the names and makes the properties anew. After a failure all is as before.
  virtual Result Fill() = 0;
  /// 1 for a property of the entity, and for a base name of one even if it isn't listed.
  virtual Result IsApplicationProperty(std::u16string_view name, std::int32_t* isApplication) = 0;

 protected:
  ~IStorePropertiesImpl() = default;
};

}  // namespace hv::vex
