// store/elements/IStoreElementImpl.h - the logic faces of the elements of a store.
// Out objects carry one reference for the caller; a null out pointer gives E_POINTER; out objects
// are null after a failure. Every operation of an element whose record is gone gives
// VEX_E_OBJECT_GONE, unless it says that it looks at no record.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/DataType.h>
#include <storefabric/Unknown.h>
#include <storefabric/Variant.h>
#include <storefabric/WString.h>

#include "elements/IVEXElementImpl.h"

namespace hv::vex::easyImpl {
class ISimplifiedStoreImpl;
}

namespace hv::vex {

class IBrowseConfig;
class IInstance;
class IReferencesImpl;
class IStore;
class IStoreElementBulkImpl;
class IStoreElementImpl;
class IStoreElementListImpl;

/// Hears that an element got another name. Not counted: it takes itself out of the element before
/// it dies.
class IElementNameClient {
 public:
  /// The element's record already has the new name.
  virtual void OnElementRenamed(IStoreElementImpl& element, std::u16string_view oldName,
                                std::u16string_view newName) = 0;

 protected:
  ~IElementNameClient() = default;
};

/// An element of a store: the face of one record. There is one per record and store while anybody
/// holds it. What it remembers (name, display name, properties, parent) stays until `Refresh`.
///
/// What the generic operations say here, beyond IVEXElementImpl:
///  - `SetName` writes to the store's session at once and tells the name client.
///    VEX_E_WRITE_PROTECTED; E_FAIL.
///  - `IsKindOf` knows "Element<DataStore>", of a column of values also "StoreElement<WithBulk>",
///    and the names of the model's entities; an unknown or empty name gives 0.
///  - `GetInstance` gives the engine's instance; `GetPath` and `GetTransportData` E_NOTIMPL.
///  - An element outside the browse path has no browse level, children or parent: `GetBrowseLevel`,
///    `HasChildren` and `GetParent` give E_NOTIMPL, `GetChildren` E_FAIL, `GetChildrenFiltered`
///    E_UNEXPECTED.
///  - `GetChildren` gives an `IStoreElementsImpl`, null with S_OK for a leaf of the path.
///  - `GetParent` takes the first parent where there are several.
///  - `Refresh` also follows a change of the browse path. E_UNEXPECTED without a configuration.
class IStoreElementImpl : public easyImpl::IVEXElementImpl {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IStoreElementImpl");

  /// A new list at each call.
  virtual Result GetReferences(IReferencesImpl** references) = 0;
  /// The text that `GetElementByKey` takes, stable for the store.
  virtual Result GetInstanceKey(WString* key) = 0;
  /// The property "id" as text. E_FAIL if it can't be read.
  virtual Result GetIdText(WString* text) = 0;
  /// Stores this element's changes and forgets its properties.
  virtual Result Save() = 0;
  /// Looks at no record.
  virtual Result GetProvider(easyImpl::ISimplifiedStoreImpl** provider) = 0;
  /// The face for the values of a column. E_NOINTERFACE for every other element. Looks at no
  /// record.
  virtual Result GetBulkInterface(IStoreElementBulkImpl** bulk) = 0;
  /// The elements that a reference leads to, names and display names filled in, read with one call
  /// to the engine.
  /// \param filter         a query text that the elements have to meet; empty for all
  /// \param referenceName  a reference of this element's entity, own name or base name
  /// \return S_OK; E_UNEXPECTED for an empty name, a store that reads nothing in bulk and a store
  ///         without a configuration; E_INVALIDARG for a name of no reference; E_FAIL
  virtual Result GetChildrenPrefetched(std::u16string_view filter,
                                       std::u16string_view referenceName,
                                       IStoreElementListImpl** children) = 0;

  // None of the following looks at a record.

  /// The engine's instance, borrowed; never null.
  virtual IInstance* GetCoreInstance() = 0;
  /// A face of the body, borrowed, or null.
  virtual void* QueryInternal(const Iid& iid) = 0;
  /// A new empty list for elements of this store.
  virtual Result CreateElementList(IStoreElementListImpl** list) = 0;
  /// The provider's store and its configuration.
  virtual Result GetStore(IStore** store) = 0;
  virtual Result GetBrowseConfig(IBrowseConfig** config) = 0;
  /// Put in what somebody has read for many elements at once. An empty text counts as not read.
  virtual void SetCachedName(WString name) = 0;
  virtual void SetCachedDisplayName(WString displayName) = 0;

  /// The one who hears of a new name: the collection that showed the element last.
  virtual void SetNameClient(IElementNameClient* client) = 0;
  /// Takes a client out that is about to die; nothing happens if another one stands there.
  virtual void DropNameClient(IElementNameClient* client) = 0;
  /// The browse configuration in force is another one, or has changed: `Refresh` looks for the
  /// element's place anew.
  virtual void ResetBrowseData() = 0;

 protected:
  ~IStoreElementImpl() = default;
};

/// The values of a column. Index 0 is the first value.
class IStoreElementBulkImpl : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IStoreElementBulkImpl");

  /// E_INVALIDARG for an index outside.
  virtual Result GetValue(std::int32_t index, Variant* value) = 0;
  /// \return S_OK; E_INVALIDARG for an index outside; E_ACCESSDENIED if the store refuses;
  ///         DISP_E_TYPEMISMATCH for a value that doesn't fit the column
  virtual Result SetValue(std::int32_t index, const Variant& value) = 0;
  /// The flag of a value, or the one that all values share. E_INVALIDARG for an index outside.
  virtual Result GetFlag(std::int32_t index, std::int32_t* flag) = 0;
  /// Writes the flag of one value, also where a flag for all values hides it. E_INVALIDARG for an
  /// index outside.
  virtual Result SetFlag(std::int32_t index, std::int32_t flag) = 0;
  /// The number of values that can be reached by index.
  virtual Result GetSize(std::int32_t* size) = 0;
  /// Without values the type that the measurement quantity tells. VEX_E_BAD_QUANTITY_TYPE if that
  /// is none of a column.
  virtual Result GetDataType(enumDataType* dataType) = 0;
  /// Gives a column without values its type.
  /// \return S_OK; E_INVALIDARG for a type that none can have; VEX_E_TYPE_ALREADY_SET
  virtual Result SetDataType(std::int32_t dataType) = 0;
  /// Copies a data channel into the column.
  /// \return S_OK; E_INVALIDARG for an object that is no channel; VEX_E_NOT_LOCAL_COLUMN;
  ///         VEX_E_BAD_QUANTITY_TYPE; E_FAIL for a value that doesn't fit; E_UNEXPECTED if the
  ///         store fails
  virtual Result SetValues(IUnknown* source) = 0;

 protected:
  ~IStoreElementBulkImpl() = default;
};

}  // namespace hv::vex
