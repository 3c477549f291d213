// exports/Operations.cpp - the bodies of the exported functions.
#include "exports/Operations.h"

#include <new>

#include "automation/Guards.h"
#include "browse/BrowseOperations.h"
#include "exports/DataStoreDllInterface.h"
#include "exports/GUIInitializeContainer.h"
#include "store/session/DataStoreImpl.h"
#include "store/session/DataStoreInt.h"
#include "store/session/NotAvailable.h"

namespace hv::vex::datastore {

namespace {

WString TextAt(const char16_t* const* text) { return WString(text ? *text : nullptr); }

}  // namespace

Result ConnectByParams(const char16_t* const* name, const char16_t* const* pluginName,
                       const char16_t* const* parameter, IDataStore** store,
                       IEnvironment* environment) try {
  HV_RETURN_IF_NULL(store);
  const Ref<CDataStoreImpl> session = MakeRef<CDataStoreImpl>();
  HV_RETURN_IF_FAILED(
      session->Connect(TextAt(name), TextAt(pluginName), TextAt(parameter), environment));
  *store = new CDataStoreInt(session);
  return S_OK;
}
HV_CATCH_RETURN()

Result OpenByCoreStore(IStore* coreStore, IDataStore** store) try {
  HV_RETURN_IF_NULL(store);
  *store = nullptr;
  const Ref<CDataStoreImpl> session = MakeRef<CDataStoreImpl>();
  HV_RETURN_IF_FAILED(session->OpenByStore(coreStore));
  *store = new CDataStoreInt(session);
  return S_OK;
}
HV_CATCH_RETURN()

Result MakeDefaultBrowseConfig(IStore* coreStore, IBrowseConfig** config) {
  HV_RETURN_IF_NULL(config);
  HV_RETURN_CODE_IF(!coreStore, E_INVALIDARG);
  return LoadDefaultBrowseConfig(coreStore, config);
}

Result MakeQueryInfoSetLoader(const char16_t*, IQueryInfoSetLoader** loader) {
  HV_RETURN_IF_NULL(loader);
  return E_NOTIMPL;
}

Result MakeQueryInfoSetLoaderByStream(ITextStream*, IQueryInfoSetLoader** loader) {
  HV_RETURN_IF_NULL(loader);
  return E_NOTIMPL;
}

Result MakeQueryInfoSetSaver(IQueryInfoSetSaver** saver) { return NotAvailable(saver); }

Result MakeGuiContainer(std::uint32_t clientData, IGUIInitializeContainer** container) {
  HV_RETURN_IF_NULL(container);
  auto* const made = new (std::nothrow) CGUIInitializeContainer(clientData);
  HV_RETURN_CODE_IF(!made, E_OUTOFMEMORY);
  *container = made;
  return S_OK;
}

Result MakeDllInterface(IDataStoreDllInterface** dllInterface) {
  HV_RETURN_IF_NULL(dllInterface);
  *dllInterface = new (std::nothrow) CDataStoreDllInterface;
  return *dllInterface ? S_OK : E_OUTOFMEMORY;
}

}  // namespace hv::vex::datastore
