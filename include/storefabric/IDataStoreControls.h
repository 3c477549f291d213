// storefabric/IDataStoreControls.h - the three controls as automation objects.
#pragma once

#include <storefabric/Dispatch.h>

namespace hv::vex {

/// The form in which a user builds and runs a query. Its members are reached by name.
class IDataStoreQueryForm : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IDataStoreQueryForm");

 protected:
  ~IDataStoreQueryForm() = default;
};

/// The display of a search's hits. Its members are reached by name.
class IDataStoreResultsDisplay : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IDataStoreResultsDisplay");

 protected:
  ~IDataStoreResultsDisplay() = default;
};

/// The tree that browses a store. Its members are reached by name.
class IDataStoreBrowser : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IDataStoreBrowser");

 protected:
  ~IDataStoreBrowser() = default;
};

}  // namespace hv::vex
