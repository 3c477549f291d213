// storefabric/IBrowseSettings.h - which way through a store's model a browser follows.
//
// Every object given out carries one reference for the caller. A null out pointer gives E_POINTER
// and nothing happens; out pointers are null after a failure. Elements passed in are borrowed for
// the call. The same members can be called by name; their dispatch ids are in the comments and
// frozen.
//
// The path is a chain of entities, for instance test, sub-test, measurement and channel, and
// between two of them the reference that leads down and the one that leads up.
#pragma once

#include <storefabric/Dispatch.h>

namespace hv::vex {

class IBrowseEntity;
class IModelEntity;
class IStoreElement;
class IStoreElements;

/// The browse path of a store session, and its elements along that path. From
/// `IDataStore::GetBrowseSettings`, as a copy that has no effect until it is set.
///
/// For every operation that takes an element: E_INVALIDARG for an object that is no element of a
/// store and for null; VEX_E_FOREIGN_ELEMENT for an element of another session; VEX_E_OBJECT_GONE
/// for an element that has been deleted; E_PENDING if the store took too long; E_FAIL for every
/// other failure of the store.
class IBrowseSettings : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IBrowseSettings");

  /// 1, property. The elements at the top of the path, in a new list at each call; an empty one
  /// if there is no path.
  virtual Result get_RootElements(IStoreElements** elements) = 0;
  /// 2, property. The first entity of the path; null if there is no path.
  virtual Result get_RootEntity(IBrowseEntity** entity) = 0;
  /// 3. The element above another one: the first, if there are several. Null for an element at the
  /// top.
  /// \return S_OK; E_INVALIDARG also for an element whose type isn't in the path; E_FAIL also for
  /// an
  ///         element that has nothing above it although the path goes on upwards.
  virtual Result GetParent(IDispatch* element, IStoreElement** parent) = 0;
  /// 4. The elements below another one in the order of the store, in a new list; null for an
  /// element at the end of the path. E_INVALIDARG also for an element whose type isn't in the path.
  virtual Result GetChildren(IDispatch* element, IStoreElements** children) = 0;
  /// 5. The place of an element's type in the path; null if it has none.
  virtual Result GetBrowseEntity(IDispatch* element, IBrowseEntity** entity) = 0;
  /// 6. The configuration behind these settings, an `IBrowseConfig`.
  virtual Result GetVexBrowseConfig(IUnknown** config) = 0;

 protected:
  ~IBrowseSettings() = default;
};

/// One level of a browse path. It stays valid when the settings change, and then shows the level as
/// it was, without its neighbours.
class IBrowseEntity : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IBrowseEntity");

  /// 1, property. The entity of the model that this level shows.
  virtual Result get_EntityType(IModelEntity** entity) = 0;
  /// 2, property. The reference that leads to the level above; empty at the top.
  virtual Result get_ParentPath(WString* path) = 0;
  /// 3, property. The reference that leads to the level below; empty at the end.
  virtual Result get_ChildPath(WString* path) = 0;
  /// 4, property. The level below; null at the end.
  virtual Result get_ChildEntity(IBrowseEntity** entity) = 0;
  /// 5, property. The level above; null at the top.
  virtual Result get_ParentEntity(IBrowseEntity** entity) = 0;

 protected:
  ~IBrowseEntity() = default;
};

}  // namespace hv::vex
