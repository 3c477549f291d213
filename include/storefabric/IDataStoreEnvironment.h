// storefabric/IDataStoreEnvironment.h - the creatable object that opens data stores.
#pragma once

#include <storefabric/Dispatch.h>

namespace hv::vex {

class IDataStore;

/// Opens data stores; ProgID "VEX.DataStoreEnvironment". Stateless: every connect is a session of
/// its own.
///
/// \return S_OK; E_POINTER for a null out pointer; VEX_E_CONNECT_REFUSED and VEX_E_CONNECT_FAILED
/// from a server; E_PENDING and E_OUTOFMEMORY; E_FAIL for every other failure to open. `*store` is
/// null on failure.
class IDataStoreEnvironment : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IDataStoreEnvironment");

  /// Dispatch id 1. Opens a configured store by its name.
  virtual Result ConnectDataStore(const WString& dataStoreName, IDataStore** store) = 0;
  /// Dispatch id 2. Opens a store that isn't configured by its plug-in and the plug-in's parameter
  /// text, for instance "ATFX" and "<filename>a.atfx</filename>".
  virtual Result ConnectDataStoreByParameter(const WString& pluginName,
                                             const WString& dataStoreParameter,
                                             IDataStore** store) = 0;

 protected:
  ~IDataStoreEnvironment() = default;
};

}  // namespace hv::vex
