// elements/IVEXElementImpl.h - the logic faces of elements and of lists of them.
// Out objects carry one reference for the caller; a null out pointer gives E_POINTER; out objects
// are null after a failure. E_NOTIMPL says that elements of this kind don't have that.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Dispatch.h>
#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

#include "store/collections/ICollectionImpl.h"

namespace hv::vex::easyImpl {

class IPropertyCollectionImpl;
class IVEXElementsImpl;

/// An element, whatever its kind. Kinds with more to say derive from this face and go on behind it.
class IVEXElementImpl : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::easyImpl::IVEXElementImpl");

  virtual Result GetName(WString* name) = 0;
  virtual Result SetName(std::u16string_view name) = 0;
  virtual Result GetProperties(IPropertyCollectionImpl** properties) = 0;
  /// 1 if the element is of that type or of one derived from it.
  virtual Result IsKindOf(std::u16string_view type, std::int32_t* isKindOf) = 0;
  virtual Result GetType(WString* type) = 0;
  /// What stands behind the element.
  virtual Result GetInstance(IUnknown** instance) = 0;
  virtual Result GetPath(WString* path) = 0;
  /// How deep in the browse path the element stands.
  virtual Result GetBrowseLevel(std::int32_t* level) = 0;
  /// S_OK with null where nothing can be below.
  virtual Result GetChildren(IVEXElementsImpl** children) = 0;
  virtual Result GetChildrenFiltered(std::u16string_view filter, IVEXElementsImpl** children) = 0;
  /// 1 if the browse path goes on below this element.
  virtual Result HasChildren(std::int32_t* hasChildren) = 0;
  /// S_OK with null at the top.
  virtual Result GetParent(IVEXElementImpl** parent) = 0;
  /// E_NOTIMPL. Keeps its place in the order of the operations.
  virtual Result Reserved() = 0;
  /// What a drag of the element hands on, as the object that hosts see.
  virtual Result GetTransportData(IDispatch** collection) = 0;
  /// Forgets what is remembered, so that it is read anew.
  virtual Result Refresh() = 0;
  virtual Result GetDisplayType(WString* type) = 0;
  virtual Result GetDisplayName(WString* name) = 0;

 protected:
  ~IVEXElementImpl() = default;
};

/// A list of elements.
class IVEXElementsImpl : public ICollectionImpl<IVEXElementImpl> {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::easyImpl::IVEXElementsImpl");

  /// Adds the element of an instance, and gives it.
  virtual Result Add(IUnknown* instance, IVEXElementImpl** element) = 0;
  /// The index of an element. E_INVALIDARG for null and for one that isn't in the list.
  virtual Result IndexOf(IVEXElementImpl* element, std::int32_t* index) = 0;
  /// What a drag of the elements hands on, as the object that hosts see.
  virtual Result GetTransportData(IDispatch** collection) = 0;
  /// 1 if there were more elements than the list was allowed to take.
  virtual Result GetIsIncomplete(std::int32_t* isIncomplete) = 0;
  virtual Result GetMaxCount(std::int32_t* maxCount) = 0;
  /// E_INVALIDARG for a number below 1.
  virtual Result SetMaxCount(std::int32_t maxCount) = 0;
  /// Sorts by type and name, joined by a point, without regard to case.
  virtual Result SortByName(bool ascending) = 0;
  /// Sorts by a property's value; elements without one come last, descending first.
  virtual Result SortByProperty(std::u16string_view property, bool ascending) = 0;

 protected:
  ~IVEXElementsImpl() = default;
};

/// Is told of changes of a list. Not counted: it outlives the list or takes itself out.
class IElementsEventsClient {
 public:
  /// The elements stand in another order now.
  virtual void OnSorted() = 0;

 protected:
  ~IElementsEventsClient() = default;
};

}  // namespace hv::vex::easyImpl
