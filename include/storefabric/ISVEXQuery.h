// storefabric/ISVEXQuery.h - a query as a host sees it.
#pragma once

#include <storefabric/Dispatch.h>

namespace hv::vex {

/// A query: conditions, their logic and a return type. Its members are reached by name.
class ISVEXQuery : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::ISVEXQuery");

 protected:
  ~ISVEXQuery() = default;
};

}  // namespace hv::vex
