// storefabric/IVEXElement.h - the generic face of elements and their properties, whatever their
// kind.
//
// Every object given out carries one reference for the caller. A null out pointer gives E_POINTER
// and nothing happens; out pointers are null after a failure. Truth values are 1 and 0. The same
// members can be called by name; their dispatch ids are in the comments and frozen.
// E_NOTIMPL says that an element or collection of this kind can't do that.
#pragma once

#include <cstdint>

#include <storefabric/DataType.h>
#include <storefabric/Dispatch.h>

namespace hv::vex {

class IProperties;
class IProperty;
class IVEXElements;

/// An element: something with a name, a type, properties and children.
class IVEXElement : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IVEXElement");

  /// 1, property. What stands behind the element, for instance an instance of the engine.
  virtual Result get_Instance(IUnknown** instance) = 0;
  /// 2, property.
  virtual Result get_Path(WString* path) = 0;
  /// 3. 1 if the element is of that type or of one derived from it, otherwise 0.
  virtual Result IsKindOf(const WString& type, std::int32_t* isKindOf) = 0;
  /// 4, property.
  virtual Result get_Properties(IProperties** properties) = 0;
  /// 5, property.
  virtual Result get_Name(WString* name) = 0;
  /// \return S_OK; E_INVALIDARG or E_POINTER for a name that can't be; E_ACCESSDENIED for an
  ///         element whose name is fixed.
  virtual Result put_Name(const WString& name) = 0;
  /// 6, property. What a drag of this element hands on.
  virtual Result get_TransportDataCollection(IDispatch** collection) = 0;
  /// 7, property. The elements below this one; null where nothing can be below.
  virtual Result get_Children(IVEXElements** children) = 0;
  /// 8, property. The name of the element's type.
  virtual Result get_Type(WString* type) = 0;

 protected:
  ~IVEXElement() = default;
};

/// What people see of an element.
class IVEXElementEx : public IVEXElement {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IVEXElementEx");

  /// 9, property. The name as people see it.
  virtual Result get_DisplayName(WString* name) = 0;
  /// 10, property. The type as people see it.
  virtual Result get_DisplayType(WString* type) = 0;

 protected:
  ~IVEXElementEx() = default;
};

/// An element's place in a tree.
class IVEXElementEx_1_9 : public IVEXElementEx {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IVEXElementEx_1_9");

  /// 11, property. The element above this one; null at the top.
  virtual Result get_Parent(IVEXElement** parent) = 0;
  /// 12. Forgets what is remembered of the element, so that it is read anew.
  virtual Result Refresh() = 0;

 protected:
  ~IVEXElementEx_1_9() = default;
};

/// A list of elements.
class IVEXElements : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IVEXElements");

  /// 1. Adds the element of an instance, and gives it. E_ACCESSDENIED where elements can't be had.
  virtual Result Add(IUnknown* instance, IVEXElement** element) = 0;
  /// 0, the default member. An element by its index from 0.
  /// \return S_OK; E_INVALIDARG for an index outside; DISP_E_TYPEMISMATCH for anything but a number
  ///         where elements have no names.
  virtual Result Item(const Variant& index, IVEXElement** element) = 0;
  /// 2. Takes an element out of the list. E_INVALIDARG for an index outside.
  virtual Result Remove(std::int32_t index) = 0;
  /// 3, property.
  virtual Result get_Count(std::int32_t* count) = 0;
  /// -4, property. Walks the elements.
  virtual Result get__NewEnum(IVariantIterator** iterator) = 0;
  /// 4. Empties the list.
  virtual Result RemoveAll() = 0;
  /// 5, property. What a drag of these elements hands on.
  virtual Result get_TransportDataCollection(IDispatch** collection) = 0;
  /// 6, property. 1 if there are more elements than the list was allowed to take, otherwise 0.
  virtual Result get_IsIncomplete(std::int32_t* isIncomplete) = 0;
  /// 7, property. The most elements that a search puts into the list.
  virtual Result get_MaxCount(std::int32_t* maxCount) = 0;
  /// E_INVALIDARG for a number below 1.
  virtual Result put_MaxCount(std::int32_t maxCount) = 0;
  /// 8. Sorts the list; elements that can't be told apart keep their order. Both arguments may be
  /// left out.
  /// \param property   a property's name; left out, the elements' types and names count
  /// \param ascending  a truth value; left out it counts as true
  /// \return S_OK; DISP_E_TYPEMISMATCH for an empty name or an argument of another type.
  virtual Result Sort(const Variant& property, const Variant& ascending) = 0;

 protected:
  ~IVEXElements() = default;
};

/// The properties of an element.
class IProperties : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IProperties");

  /// 1. Adds a property, and gives it.
  virtual Result Add(const WString& name, const Variant& value, IProperty** property) = 0;
  /// 0, the default member. A property by its name or its index from 0. A text is a name even if it
  /// holds digits only.
  /// \return S_OK; E_INVALIDARG for an unknown name or an index outside; DISP_E_TYPEMISMATCH for an
  ///         argument that is neither a text nor a number.
  virtual Result Item(const Variant& nameOrIndex, IProperty** property) = 0;
  /// 2. Removes a property; the argument as for `Item`.
  virtual Result Remove(const Variant& nameOrIndex) = 0;
  /// 3, property.
  virtual Result get_Count(std::int32_t* count) = 0;
  /// 4. Removes all properties that can be removed.
  virtual Result RemoveAll() = 0;
  /// 5. 1 if there is a property of that name, otherwise 0.
  virtual Result Exists(const WString& name, std::int32_t* exists) = 0;
  /// -4, property. Walks the properties.
  virtual Result get__NewEnum(IVariantIterator** iterator) = 0;
  /// 6. Adds each of the other properties under its name behind `prefix`.
  virtual Result AddProperties(IProperties* properties, const WString& prefix) = 0;

 protected:
  ~IProperties() = default;
};

/// A value or a list of values under a name.
class IProperty : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IProperty");

  /// 1, property.
  virtual Result get_Name(WString* name) = 0;
  /// 2, property. 1 if the value has never been set, otherwise 0.
  virtual Result get_Default(std::int32_t* isDefault) = 0;
  /// 0, property, the default member. The first value; null if there is none.
  virtual Result get_Value(Variant* value) = 0;
  /// \return S_OK; DISP_E_TYPEMISMATCH for a value of an unsuitable type; E_ACCESSDENIED if the
  ///         property can't be written.
  virtual Result put_Value(const Variant& value) = 0;
  /// 3, property. The name as people see it.
  virtual Result get_DisplayName(WString* name) = 0;
  /// 4, property with an index from 0. E_INVALIDARG for an index outside.
  virtual Result get_Values(std::int32_t index, Variant* value) = 0;
  /// A value behind the last one makes the list longer.
  virtual Result put_Values(std::int32_t index, const Variant& value) = 0;
  /// 5, property. The number of values.
  virtual Result get_Size(std::int32_t* size) = 0;
  /// 6, property. The code of the value type; codes beyond `enumDataType` go through unchanged.
  virtual Result get_DataType(enumDataType* dataType) = 0;
  /// 7, property. 1 if the property isn't meant to be shown, otherwise 0.
  virtual Result get_Hidden(std::int32_t* isHidden) = 0;

 protected:
  ~IProperty() = default;
};

}  // namespace hv::vex
