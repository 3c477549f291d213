// store/session/DataStoreEnvironmentInt.h - the automation face of the object that opens sessions.
#pragma once

#include <storefabric/IDataStoreEnvironment.h>
#include <storefabric/Ref.h>

#include "automation/DispatchImpl.h"
#include "store/session/IDataStoreEnvironmentImpl.h"

namespace hv::vex {

class CDataStoreEnvironmentInt final
    : public automation::DispatchImpl<CDataStoreEnvironmentInt, IDataStoreEnvironment> {
 public:
  explicit CDataStoreEnvironmentInt(Ref<IDataStoreEnvironmentImpl> environment)
      : m_environment(std::move(environment)) {}

  static const automation::DispatchMap& Map();
  /// Makes the object with its logic; what "VEX.DataStoreEnvironment" stands for.
  static Result Create(IDispatch** out);

  // IDataStoreEnvironment
  Result ConnectDataStore(const WString& dataStoreName, IDataStore** store) override;
  Result ConnectDataStoreByParameter(const WString& pluginName, const WString& dataStoreParameter,
                                     IDataStore** store) override;

 private:
  ~CDataStoreEnvironmentInt() override = default;

  Result Connect(std::u16string_view name, std::u16string_view pluginName,
                 std::u16string_view parameter, IDataStore** store);

  Ref<IDataStoreEnvironmentImpl> m_environment;
};

}  // namespace hv::vex
