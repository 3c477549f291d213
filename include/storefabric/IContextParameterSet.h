// storefabric/IContextParameterSet.h - a named set of context parameters.
#pragma once

#include <storefabric/Dispatch.h>

namespace hv::vex {

/// A named set of context parameters. Its members are reached by name.
class IContextParameterSet : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IContextParameterSet");

 protected:
  ~IContextParameterSet() = default;
};

}  // namespace hv::vex
