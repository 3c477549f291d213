// exports/Operations.cpp - the bodies of the exported functions.
#include "exports/Operations.h"

#include <new>

#include "automation/Guards.h"
#include "browse/BrowseOperations.h"
#include "exports/DataStoreDllInterface.h"
#include "exports/GUIInitializeContainer.h"
#include "exports/SessionParts.h"
#include "query/files/QueryInfoSetLoader.h"
#include "query/files/QueryInfoSetSaver.h"
#include "store/session/DataStoreImpl.h"
#include "store/session/DataStoreInt.h"

namespace hv::vex::datastore {

namespace {

WString TextAt(const char16_t* const* text) { return WString(text ? *text : nullptr); }

Ref<CDataStoreImpl> MakeSession() {
  InstallSessionParts();
  return MakeRef<CDataStoreImpl>();
}

}  // namespace

Result ConnectByParams(const char16_t* const* name, const char16_t* const* pluginName,
                       const char16_t* const* parameter, IDataStore** store,
                       IEnvironment* environment) try {
  HV_RETURN_IF_NULL(store);
  const Ref<CDataStoreImpl> session = MakeSession();
  HV_RETURN_IF_FAILED(
      session->Connect(TextAt(name), TextAt(pluginName), TextAt(parameter), environment));
  *store = new CDataStoreInt(session);
  return S_OK;
}
HV_CATCH_RETURN()

Result OpenByCoreStore(IStore* coreStore, IDataStore** store) try {
  HV_RETURN_IF_NULL(store);
  *store = nullptr;
  const Ref<CDataStoreImpl> session = MakeSession();
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

Result MakeQueryInfoSetLoader(const char16_t* path, IQueryInfoSetLoader** loader) try {
  HV_RETURN_IF_NULL(loader);
  const auto made = MakeRef<CDataStoreQueryInfoSetLoader>();
  HV_RETURN_IF_FAILED(made->OpenByPath(TextAt(&path), kQueryInfoSetVersion));
  return made.CopyTo(loader);
}
HV_CATCH_RETURN()

Result MakeQueryInfoSetLoaderByStream(ITextStream* stream, IQueryInfoSetLoader** loader) try {
  HV_RETURN_IF_NULL(loader);
  const auto made = MakeRef<CDataStoreQueryInfoSetLoader>();
  HV_RETURN_IF_FAILED(made->OpenByStream(stream, kQueryInfoSetVersion));
  return made.CopyTo(loader);
}
HV_CATCH_RETURN()

Result MakeQueryInfoSetSaver(IQueryInfoSetSaver** saver) try {
  HV_RETURN_IF_NULL(saver);
  const auto made = MakeRef<CDataStoreQueryInfoSetSaver>();
  HV_RETURN_IF_FAILED(made->Init(kQueryInfoSetVersion));
  return made.CopyTo(saver);
}
HV_CATCH_RETURN()

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
