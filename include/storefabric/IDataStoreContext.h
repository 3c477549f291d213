// storefabric/IDataStoreContext.h - the context of a store session.
#pragma once

#include <storefabric/Dispatch.h>

namespace hv::vex {

/// Parameters of a store session. Its members are reached by name.
class IDataStoreContext : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IDataStoreContext");

 protected:
  ~IDataStoreContext() = default;
};

}  // namespace hv::vex
