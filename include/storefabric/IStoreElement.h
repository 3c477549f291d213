// storefabric/IStoreElement.h - elements of a store and collections of them.
#pragma once

#include <storefabric/Dispatch.h>

namespace hv::vex {

/// One element of a store. Its members are reached by name.
class IStoreElement : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IStoreElement");

 protected:
  ~IStoreElement() = default;
};

/// A collection of elements: the top of a store, children, hits of a search. Its members are
/// reached by name.
class IStoreElements : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IStoreElements");

 protected:
  ~IStoreElements() = default;
};

}  // namespace hv::vex
