// store/session/IDataStoreEnvironmentImpl.h - the logic face of the object that opens sessions.
#pragma once

#include <string_view>

#include <storefabric/Unknown.h>

namespace hv::vex {

class IDataStoreImpl;

/// Opens sessions. Stateless.
class IDataStoreEnvironmentImpl : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IDataStoreEnvironmentImpl");

  /// A new session, connected with the engine's own environment; see `IDataStoreImpl::Connect` for
  /// the arguments and the codes. `*store` is null on failure.
  virtual Result Connect(std::u16string_view name, std::u16string_view pluginName,
                         std::u16string_view parameter, IDataStoreImpl** store) = 0;

 protected:
  ~IDataStoreEnvironmentImpl() = default;
};

}  // namespace hv::vex
