// storefabric/IStoreElement.h - elements of a store, collections of them, and their references.
//
// Every object given out carries one reference for the caller. A null out pointer gives E_POINTER
// and nothing happens; out pointers are null after a failure. Objects passed in are borrowed for
// the call. Truth values are 1 and 0. The same members can be called by name; their dispatch ids
// are in the comments and frozen, and those inherited from the generic faces stay as they are
// there.
//
// Changes go to the store's session at once; others see them after a save. Where the store refuses
// changes they give VEX_E_WRITE_PROTECTED. Once the record of an element has been deleted, every
// member gives VEX_E_OBJECT_GONE.
#pragma once

#include <cstdint>

#include <storefabric/IStoreProperties.h>
#include <storefabric/IVEXElement.h>

namespace hv::vex {

class IReference;
class IReferences;
class IStoreElements;

/// One element of a store: the face of one record.
///
/// An element remembers its name, display name, properties and parent until `Refresh`. Its place in
/// the browse path tells parent, children and display name; an element outside that path has its
/// name as its display name, E_NOTIMPL for `Parent`, and E_FAIL for `Children`.
/// `Path` and `TransportDataCollection` give E_NOTIMPL.
class IStoreElement : public IVEXElementEx_1_9 {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IStoreElement");

  // The members of the generic face that give out objects come twice: as they are there, and with
  // the types of a store. Callers by name have the latter.

  using IVEXElementEx_1_9::get_Properties;
  /// 4, property.
  virtual Result get_Properties(IStoreProperties** properties) = 0;
  using IVEXElementEx_1_9::get_Children;
  /// 7, property. The elements below this one in the browse path; null for a leaf of the path.
  virtual Result get_Children(IStoreElements** children) = 0;
  using IVEXElementEx_1_9::get_Parent;
  /// 11, property. The element above this one in the browse path; null at the top. The first one
  /// where there are several.
  virtual Result get_Parent(IStoreElement** parent) = 0;

  // `Name` (5) can be written: E_POINTER for null, VEX_E_EMPTY_NAME, VEX_E_WRITE_PROTECTED, E_FAIL.
  // `IsKindOf` (3) knows "Element<DataStore>" and the names of the model's entities.

  /// 13, property. The references of the element: a new list at each call.
  virtual Result get_References(IReferences** references) = 0;
  /// 14, property. The element's key as text, stable for the store: what a host keeps, and what
  /// `IDataStore::GetElementByKey` takes.
  virtual Result get_InstanceKey(WString* key) = 0;
  /// 15. Stores the changes of this element, where the store keeps elements apart; otherwise they
  /// wait for a save of the store. Its properties are read anew.
  virtual Result Save() = 0;

 protected:
  ~IStoreElement() = default;
};

/// An element that holds a column of measured values. Indexes count from 0.
class IStoreElementWithBulk : public IStoreElement {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IStoreElementWithBulk");

  /// 16, property with an index.
  /// \return S_OK; E_INVALIDARG for an index outside; E_ACCESSDENIED for a store that refuses
  ///         changes; DISP_E_TYPEMISMATCH for a value that doesn't fit the column
  virtual Result get_Values(std::int32_t index, Variant* value) = 0;
  virtual Result put_Values(std::int32_t index, const Variant& value) = 0;
  /// 17, property. The number of values: 0 for a column without values and for one whose values
  /// lie outside the store, the number of its parameters for an implicit one.
  virtual Result get_Size(std::int32_t* size) = 0;
  /// 18, property. The type of the values; without values that of the measurement quantity.
  /// \return S_OK; VEX_E_BAD_QUANTITY_TYPE for a quantity of a type that no column has
  virtual Result get_DataType(enumDataType* dataType) = 0;
  /// Gives an empty column its type.
  /// \return S_OK; E_INVALIDARG for a number that is no type; VEX_E_TYPE_ALREADY_SET
  virtual Result put_DataType(enumDataType dataType) = 0;
  /// 19, property with an index. The flag of a value, or the one that all values share.
  /// E_INVALIDARG for an index outside.
  virtual Result get_Flags(std::int32_t index, std::int32_t* flag) = 0;
  /// Writes the flag of one value. E_INVALIDARG also for a column that has no flags of its own but
  /// the one that all values share.
  virtual Result put_Flags(std::int32_t index, std::int32_t flag) = 0;
  /// 20. Copies all values of a data channel into the column.
  /// \return S_OK; E_INVALIDARG for an object that is no data channel; VEX_E_NOT_LOCAL_COLUMN;
  ///         VEX_E_BAD_QUANTITY_TYPE; E_FAIL for a value that doesn't fit
  virtual Result SetValues(IDispatch* channel) = 0;

 protected:
  ~IStoreElementWithBulk() = default;
};

/// Elements under unique names: what a reference leads to, children, the top of a store. Two
/// members of the same name are told apart by "_1", "_2" behind it.
class IStoreElements : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IStoreElements");

  /// 0, the default member. An element by its index from 0 or by its name.
  /// \return S_OK; E_INVALIDARG for no member; DISP_E_TYPEMISMATCH for an argument that is neither
  ///         a text nor a number.
  virtual Result Item(const Variant& nameOrIndex, IStoreElement** element) = 0;
  /// 1. Makes a new element in the store and gives it. VEX_E_EMPTY_NAME.
  virtual Result Add(const WString& name, IStoreElement** element) = 0;
  /// 2. Deletes a member, given by its name or by its index, which counts from 1 here.
  virtual Result Remove(const Variant& nameOrIndex) = 0;
  /// 3, property.
  virtual Result get_Count(std::int32_t* count) = 0;
  /// -4, property. Walks the elements.
  virtual Result get__NewEnum(IVariantIterator** iterator) = 0;
  /// 4. Deletes all members.
  virtual Result RemoveAll() = 0;
  // 5 to 8 are those of the generic list and not used here.
  /// 9. Makes an element of the same store a member, and gives it.
  /// \return S_OK; E_POINTER; VEX_E_BAD_TYPE_ARGUMENT for an object that is no element;
  ///         VEX_E_FOREIGN_ELEMENT; VEX_E_REFERENCE_TYPE for an element of another type than the
  ///         reference has; VEX_E_ADD_REFERENCE; VEX_E_ROOT_IS_AUTOMATIC at the top of a store
  virtual Result AddReference(IDispatch* element, IStoreElement** member) = 0;
  /// 10. Takes a member out without deleting it. The codes are those of `AddReference`, with
  /// VEX_E_REMOVE_REFERENCE.
  virtual Result RemoveReference(IDispatch* element) = 0;
  /// 11. Takes all members out without deleting them. VEX_E_ROOT_IS_AUTOMATIC.
  virtual Result RemoveAllReferences() = 0;
  /// 12. Values of all members; see `IStoreElementList`.
  virtual Result ReadColumns(const Variant& properties, Variant* columns) = 0;

 protected:
  ~IStoreElements() = default;
};

/// A list of elements without names: a choice of elements, the hits of a search. Taking an element
/// out doesn't delete it. `Sort`, `MaxCount` and `IsIncomplete` are those of the generic list.
class IStoreElementList : public IVEXElements {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IStoreElementList");

  using IVEXElements::Item;
  /// 0, the default member. An element by its index from 0. The codes are those of the generic
  /// list.
  virtual Result Item(const Variant& index, IStoreElement** element) = 0;
  /// 12. Values of all elements in their order, read together: for many elements that is far
  /// quicker than one property after the other.
  /// \param properties  the name of a property, or a list of names: own names, base names, or paths
  ///                    along references to one ("Test.Name")
  /// \param columns     for one name a list with one value for each element, for a list of names a
  ///                    list of such lists. Values are those of `IProperty::Value`: null for an
  ///                    element that has none.
  /// \return S_OK; E_INVALIDARG for a name that is no property of any of the elements;
  ///         DISP_E_TYPEMISMATCH for what is neither a text nor a list of texts; E_NOTIMPL for a
  ///         store that can't
  virtual Result ReadColumns(const Variant& properties, Variant* columns) = 0;

 protected:
  ~IStoreElementList() = default;
};

/// One reference of an element.
class IReference : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IReference");

  /// 1, property.
  virtual Result get_Name(WString* name) = 0;
  /// 2, property. The name in the base model; empty if it has none.
  virtual Result get_BaseName(WString* name) = 0;
  /// 3, property. What the reference leads to.
  virtual Result get_Elements(IStoreElements** elements) = 0;

 protected:
  ~IReference() = default;
};

/// The references of an element in the order of the model.
class IReferences : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IReferences");

  /// 0, the default member. A reference by its index from 0, or by its name, which may also be a
  /// base name or a path of references with points in between.
  /// \return S_OK; E_INVALIDARG for no reference; DISP_E_TYPEMISMATCH for an argument that is
  ///         neither a text nor a number.
  virtual Result Item(const Variant& nameOrIndex, IReference** reference) = 0;
  /// 1, property.
  virtual Result get_Count(std::int32_t* count) = 0;
  /// -4, property. Walks the references.
  virtual Result get__NewEnum(IVariantIterator** iterator) = 0;

 protected:
  ~IReferences() = default;
};

}  // namespace hv::vex
