// store/session/DataStoreEnvironmentImpl.cpp - the object that opens sessions.
#include "store/session/DataStoreEnvironmentImpl.h"

#include <storefabric/Ref.h>

#include "automation/Guards.h"
#include "store/session/DataStoreImpl.h"

namespace hv::vex {

Result CDataStoreEnvironmentImpl::Connect(std::u16string_view name, std::u16string_view pluginName,
                                          std::u16string_view parameter,
                                          IDataStoreImpl** store) try {
  HV_RETURN_IF_NULL(store);
  *store = nullptr;
  const Ref<CDataStoreImpl> session = MakeRef<CDataStoreImpl>();
  HV_RETURN_IF_FAILED(session->Connect(name, pluginName, parameter, nullptr));
  return session.CopyTo(store);
}
HV_CATCH_RETURN()

}  // namespace hv::vex
