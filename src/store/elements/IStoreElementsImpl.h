// store/elements/IStoreElementsImpl.h - the logic faces of collections of a store's elements.
// Out objects carry one reference for the caller; a null out pointer gives E_POINTER; out objects
// are null after a failure. E_NOTIMPL says that a collection of this kind can't do that.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Variant.h>

#include "elements/IVEXElementImpl.h"

namespace hv::vex {

class IInstList;
class IStoreElementImpl;

/// Elements under unique names: the members of a reference, the top of a store. Taking a member out
/// deletes its record; `Clear` alone empties only the list. The named operations are those of
/// `INamedCollectionImpl`, so that its body can serve here.
class IStoreElementsImpl : public easyImpl::IVEXElementsImpl {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IStoreElementsImpl");

  /// E_INVALIDARG for an empty or unknown name; DISP_E_TYPEMISMATCH where members have no names.
  virtual Result GetItemByName(std::u16string_view name, easyImpl::IVEXElementImpl** element) = 0;
  virtual Result RemoveByName(std::u16string_view name) = 0;
  virtual Result Exists(std::u16string_view name, bool* exists) = 0;
  /// Gives a member another name in this collection, made unique. Its record isn't touched.
  virtual Result Rename(std::u16string_view oldName, std::u16string_view newName,
                        WString* unique) = 0;

  /// Adds the element of an instance; see IVEXElementsImpl.
  using easyImpl::IVEXElementsImpl::Add;
  /// Makes a new record with that name and gives its element. VEX_E_WRITE_PROTECTED; E_FAIL.
  virtual Result Add(std::u16string_view name, IStoreElementImpl** element) = 0;
  /// Takes out and deletes a member given by its index from 1 or by its name: a number below 1 and
  /// what is no number count as a name.
  /// \return S_OK; E_INVALIDARG for no member; VEX_E_WRITE_PROTECTED; E_FAIL
  virtual Result Remove(const Variant& indexOrName) = 0;
  /// Deletes the record of a member. E_POINTER; E_FAIL for an element that isn't in the list.
  virtual Result RemoveElement(IStoreElementImpl* element) = 0;
  /// Deletes the records of all members.
  virtual Result RemoveAll() = 0;
  /// Makes an element of this store a member, and gives it.
  /// \return S_OK; E_POINTER; VEX_E_FOREIGN_ELEMENT; VEX_E_REFERENCE_TYPE for an element of the
  ///         wrong type; VEX_E_ADD_REFERENCE; VEX_E_ROOT_IS_AUTOMATIC at the top of a store
  virtual Result AddReference(IStoreElementImpl* element, IStoreElementImpl** member) = 0;
  /// Takes an element out without deleting its record. The codes are those of `AddReference`, with
  /// VEX_E_REMOVE_REFERENCE.
  virtual Result RemoveReference(IStoreElementImpl* element) = 0;
  /// Takes all elements out without deleting their records.
  virtual Result RemoveAllReferences() = 0;
  /// Empties the list and fills it again.
  virtual Result Reload() = 0;

 protected:
  ~IStoreElementsImpl() = default;
};

/// The elements at the top of the browse path.
class IRootElementsImpl : public IStoreElementsImpl {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IRootElementsImpl");

  /// E_NOTIMPL for a browse configuration without a root path.
  virtual Result Fill() = 0;

 protected:
  ~IRootElementsImpl() = default;
};

/// A plain list of elements without names: what only collections with names can do gives E_NOTIMPL,
/// and `RemoveAt` takes the element out of the list only.
class IStoreElementListImpl : public IStoreElementsImpl {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IStoreElementListImpl");

  /// Makes room for that many elements more.
  virtual Result Reserve(std::int32_t count) = 0;
  /// Puts an element at the end. E_POINTER.
  virtual Result Append(easyImpl::IVEXElementImpl* element) = 0;

 protected:
  ~IStoreElementListImpl() = default;
};

/// The hits of a search: the instances are kept, and their elements made when they are asked for.
/// `MaxCount` is the most hits that the next search may give.
class IDataStoreResultCollectionImpl : public IStoreElementListImpl {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IDataStoreResultCollectionImpl");

  /// \name What a search calls, in this order
  /// @{
  virtual Result ClearResults() = 0;
  /// Takes the list with a reference of its own. E_POINTER.
  virtual Result SetList(IInstList* list) = 0;
  /// The number of hits; -1 if there were more than the limit.
  virtual Result SetTotal(std::int32_t total) = 0;
  /// @}
  /// The hits in their order, as a list of the engine, which must not be changed; null if there are
  /// none.
  virtual Result GetList(IInstList** list) = 0;

 protected:
  ~IDataStoreResultCollectionImpl() = default;
};

}  // namespace hv::vex
