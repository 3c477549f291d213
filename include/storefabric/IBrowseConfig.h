// storefabric/IBrowseConfig.h - which way through a store's model a browser follows, as an object
// of the library.
#pragma once

#include <storefabric/Unknown.h>

namespace hv::vex {

/// A browse configuration. Handed from one operation of the library to another.
class IBrowseConfig : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IBrowseConfig");

 protected:
  ~IBrowseConfig() = default;
};

}  // namespace hv::vex
