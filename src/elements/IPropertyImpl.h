// elements/IPropertyImpl.h - the logic faces of properties and of lists of them.
// Out objects carry one reference for the caller; a null out pointer gives E_POINTER; out objects
// are null after a failure.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/DataType.h>
#include <storefabric/Unknown.h>
#include <storefabric/Variant.h>
#include <storefabric/WString.h>

#include "store/collections/ICollectionImpl.h"

namespace hv::vex::easyImpl {

/// A value or a list of values under a name.
class IPropertyImpl : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::easyImpl::IPropertyImpl");

  virtual Result GetName(WString* name) = 0;
  /// 1 if the value has never been set.
  virtual Result GetIsDefault(std::int32_t* isDefault) = 0;
  /// The first value; the null variant if there is none.
  virtual Result GetValue(Variant* value) = 0;
  /// `SetValue` with a text.
  virtual Result SetValueText(std::u16string_view text) = 0;
  /// `SetValueAt` with index 0.
  virtual Result SetValue(const Variant& value) = 0;
  virtual Result GetDataType(enumDataType* dataType) = 0;
  /// E_INVALIDARG for an index outside.
  virtual Result GetValueAt(std::int32_t index, Variant* value) = 0;
  /// The number of values.
  virtual Result GetSize(std::int32_t* size) = 0;
  /// VEX_E_NOT_BASE_PROPERTY with an empty text for a property without a base name.
  virtual Result GetBaseName(WString* baseName) = 0;
  /// 1 for a property that only this instance has.
  virtual Result IsInstanceProperty(std::int32_t* isInstanceProperty) = 0;
  virtual Result GetDisplayName(WString* name) = 0;
  /// Writes one value; one behind the last makes the list longer.
  /// \return S_OK; E_INVALIDARG for an index that can't be; E_ACCESSDENIED if the value can't be
  ///         written; the property's own code for a value of an unsuitable type.
  virtual Result SetValueAt(std::int32_t index, const Variant& value) = 0;
  /// 1 if the property isn't meant to be shown.
  virtual Result GetIsHidden(std::int32_t* isHidden) = 0;

 protected:
  ~IPropertyImpl() = default;
};

/// The properties of an element. E_NOTIMPL from what changes the list says that this list can't be
/// changed.
class IPropertyCollectionImpl : public INamedCollectionImpl<IPropertyImpl> {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::easyImpl::IPropertyCollectionImpl");

  virtual Result Add(std::u16string_view name, const Variant& value, IPropertyImpl** property) = 0;
  /// Removes a property from the element itself, not only from this list.
  virtual Result Remove(std::u16string_view name) = 0;
  /// Removes all properties that can be removed.
  virtual Result RemoveAll() = 0;
  /// Adds each of the other properties under its name behind `prefix`. The first failure ends it.
  virtual Result AddProperties(IPropertyCollectionImpl* properties, std::u16string_view prefix) = 0;

 protected:
  ~IPropertyCollectionImpl() = default;
};

}  // namespace hv::vex::easyImpl
