// storefabric/IBrowseSettings.h - which way through a store's model a browser follows.
#pragma once

#include <storefabric/Dispatch.h>

namespace hv::vex {

/// The browse settings of a store session. Its members are reached by name.
class IBrowseSettings : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IBrowseSettings");

 protected:
  ~IBrowseSettings() = default;
};

}  // namespace hv::vex
