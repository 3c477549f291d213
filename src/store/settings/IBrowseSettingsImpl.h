// store/settings/IBrowseSettingsImpl.h - the logic faces of browse settings and of their levels.
// Out objects carry one reference for the caller; a null out pointer gives E_POINTER; out objects
// are null after a failure. Engine failures give E_FAIL unless the common rules name another code.
#pragma once

#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

namespace hv::vex {

class IBrowseConfig;
class IBrowseEntityImpl;
class IEntityImpl;
class IStoreElementImpl;
class IStoreElementListImpl;

/// A browse configuration and the elements that lie along its path.
class IBrowseSettingsImpl : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IBrowseSettingsImpl");

  /// The elements at the top, in a new list; an empty one without a path.
  virtual Result GetRootElements(IStoreElementListImpl** elements) = 0;
  /// S_OK with null without a path.
  virtual Result GetRootEntity(IBrowseEntityImpl** entity) = 0;
  /// The first element above.
  /// \return S_OK, with null at the top; E_INVALIDARG for a null element and one whose type isn't
  /// in
  ///         the path; VEX_E_FOREIGN_ELEMENT; E_FAIL if there is nothing above where there should
  ///         be.
  virtual Result GetParent(IStoreElementImpl* element, IStoreElementImpl** parent) = 0;
  /// The elements below, in a new list; S_OK with null at the end of the path. The codes are those
  /// of `GetParent`.
  virtual Result GetChildren(IStoreElementImpl* element, IStoreElementListImpl** children) = 0;
  /// The level of an element's type; S_OK with null if it isn't in the path.
  virtual Result GetBrowseEntity(IStoreElementImpl* element, IBrowseEntityImpl** entity) = 0;
  virtual Result GetConfig(IBrowseConfig** config) = 0;

 protected:
  ~IBrowseSettingsImpl() = default;
};

/// One level of a browse path.
class IBrowseEntityImpl : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IBrowseEntityImpl");

  /// The session's one object for the level's entity.
  virtual Result GetEntityType(IEntityImpl** entity) = 0;
  /// Empty at the top.
  virtual Result GetParentPath(WString* path) = 0;
  /// Empty at the end.
  virtual Result GetChildPath(WString* path) = 0;
  /// S_OK with null at the end.
  virtual Result GetChildEntity(IBrowseEntityImpl** entity) = 0;
  /// S_OK with null at the top.
  virtual Result GetParentEntity(IBrowseEntityImpl** entity) = 0;

 protected:
  ~IBrowseEntityImpl() = default;
};

}  // namespace hv::vex
