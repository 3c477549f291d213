// storefabric/IQueryInfoSet.h - readers and writers of query files.
#pragma once

#include <storefabric/Unknown.h>

namespace hv::vex {

/// Reads queries and column configurations from a query file.
class IQueryInfoSetLoader : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IQueryInfoSetLoader");

 protected:
  ~IQueryInfoSetLoader() = default;
};

/// Writes queries and column configurations into a query file.
class IQueryInfoSetSaver : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IQueryInfoSetSaver");

 protected:
  ~IQueryInfoSetSaver() = default;
};

}  // namespace hv::vex
