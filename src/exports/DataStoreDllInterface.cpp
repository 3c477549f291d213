// exports/DataStoreDllInterface.cpp - the library as an object.
#include "exports/DataStoreDllInterface.h"

#include <storefabric/IDataStore.h>

#include "automation/Guards.h"
#include "browse/BrowseOperations.h"
#include "elements/LogicOf.h"
#include "elements/WrapObject.h"
#include "exports/Operations.h"
#include "store/session/IDataStoreImpl.h"
#include "store/session/MakeBrowseSettings.h"
#include "store/session/NotAvailable.h"
#include "store/settings/BrowseSettingsInt.h"

namespace hv::vex::datastore {

namespace {

bool IsEmpty(const char16_t* text) { return !text || *text == 0; }

}  // namespace

Result CDataStoreDllInterface::SetHelpCallback(HelpCallback callback, std::uint32_t cookie) {
  m_dialog.helpCallback = callback;
  m_dialog.helpCookie = cookie;
  return S_OK;
}

Result CDataStoreDllInterface::SetDialogFont(const DialogFont* font) {
  HV_RETURN_IF_NULL(font);
  m_dialog.dialogFont = *font;
  return S_OK;
}

Result CDataStoreDllInterface::SetDialogElementCallback(DialogElementCallback callback) {
  m_dialog.elementCallback = callback;
  return S_OK;
}

Result CDataStoreDllInterface::ConnectDataStoreByParams(const char16_t* const* name,
                                                        const char16_t* const* pluginName,
                                                        const char16_t* const* parameter, Variant,
                                                        IDataStore** store,
                                                        IEnvironment* environment) {
  return ConnectByParams(name, pluginName, parameter, store, environment);
}

Result CDataStoreDllInterface::OpenDataStoreByStore(IStore* coreStore, Variant,
                                                    IDataStore** store) {
  return OpenByCoreStore(coreStore, store);
}

Result CDataStoreDllInterface::GetDataStoreBrowseConfig(IStore* coreStore, IBrowseConfig** config) {
  return MakeDefaultBrowseConfig(coreStore, config);
}

Result CDataStoreDllInterface::GetQueryInfoSetLoader(const char16_t* path,
                                                     IQueryInfoSetLoader** loader) {
  return MakeQueryInfoSetLoader(path, loader);
}

Result CDataStoreDllInterface::GetQueryInfoSetLoaderByStream(ITextStream* stream,
                                                             IQueryInfoSetLoader** loader) {
  return MakeQueryInfoSetLoaderByStream(stream, loader);
}

Result CDataStoreDllInterface::GetQueryInfoSetSaver(IQueryInfoSetSaver** saver) {
  return MakeQueryInfoSetSaver(saver);
}

Result CDataStoreDllInterface::CreateGUIInitializeContainer(std::uint32_t clientData,
                                                            IGUIInitializeContainer** container) {
  return MakeGuiContainer(clientData, container);
}

Result CDataStoreDllInterface::InitializeDataStoreGUI(IGUIInitializeContainer* container) {
  return InitializeGui(container);
}

Result CDataStoreDllInterface::CreateContextParameterSet(IContextParameterSet** set) {
  return NotAvailable(set);
}

Result CDataStoreDllInterface::LoadBrowseConfigFile(const char16_t* fileName, IStore* coreStore,
                                                    IBrowseConfig** config) {
  HV_RETURN_IF_NULL(config);
  HV_RETURN_CODE_IF(!coreStore, E_INVALIDARG);
  return vex::LoadBrowseConfigFile(fileName ? fileName : u"", coreStore, config);
}

Result CDataStoreDllInterface::SaveBrowseConfigFile(const char16_t* fileName,
                                                    IBrowseConfig* config) {
  HV_RETURN_CODE_IF(!config, E_INVALIDARG);
  return IsEmpty(fileName) ? S_OK : E_NOTIMPL;
}

Result CDataStoreDllInterface::LoadBrowseConfigStream(ITextStream*, IStore* coreStore,
                                                      IBrowseConfig** config) {
  HV_RETURN_IF_NULL(config);
  return coreStore ? E_NOTIMPL : E_INVALIDARG;
}

Result CDataStoreDllInterface::SaveBrowseConfigStream(IBrowseConfig* config, ITextStream*) {
  return config ? E_NOTIMPL : E_INVALIDARG;
}

Result CDataStoreDllInterface::EditBrowseConfig(IStore* coreStore, IBrowseConfig* config) {
  return coreStore && config ? E_NOTIMPL : E_INVALIDARG;
}

Result CDataStoreDllInterface::CreateBrowseSettingsObject(IBrowseConfig* config, IDataStore* store,
                                                          IBrowseSettings** settings) {
  HV_RETURN_IF_NULL(settings);
  *settings = nullptr;
  HV_RETURN_CODE_IF(!config, E_INVALIDARG);
  const auto session = QueryRef<easyImpl::ILogicOf<IDataStoreImpl>>(store);
  HV_RETURN_CODE_IF(!session, E_FAIL);
  const Result rc = WrapResult<IBrowseSettingsImpl, CBrowseSettingsInt>(
      settings, [&](auto** out) { return MakeBrowseSettings(session->GetLogic(), *config, out); });
  return Failed(rc) ? E_FAIL : S_OK;
}

Result CDataStoreDllInterface::CopyBrowseConfig(IBrowseConfig* source, IBrowseConfig* target) {
  return vex::CopyBrowseConfig(source, target);
}

Result CDataStoreDllInterface::GetBrowseDisplayName(IBrowseConfig* config, IInstance* instance,
                                                    WString* name) {
  HV_RETURN_IF_NULL(name);
  return vex::GetBrowseDisplayName(config, instance, name);
}

}  // namespace hv::vex::datastore
