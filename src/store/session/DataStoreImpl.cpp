// store/session/DataStoreImpl.cpp - the session with one data store.
#include "store/session/DataStoreImpl.h"

#include <utility>

#include "automation/Guards.h"
#include "browse/BrowseOperations.h"
#include "store/core/CoreLibrary.h"
#include "store/core/IEnvironment.h"
#include "store/core/IModel.h"
#include "store/core/IPlugin.h"
#include "store/core/IStoreContext.h"
#include "store/elements/StoreElementFactory.h"

namespace hv::vex {

namespace {

constexpr std::u16string_view kWholeTreeMode = u"HV_MEASUREMENT_TREE";
constexpr std::int32_t kUnsavedChanges = 3;
constexpr std::int32_t kNoFlags = 0;

constexpr std::int32_t kResultsLimit = 200;

constexpr CodeRow kConnectRows[] = {
    {errc::kConnectFailed, VEX_E_CONNECT_FAILED},
    {errc::kConnectRefused, VEX_E_CONNECT_REFUSED},
};
// Why a save failed makes no difference to hosts: the message is about data that can't be saved.
constexpr CodeRow kSaveRows[] = {
    {errc::kOutOfMemory, E_FAIL},
    {errc::kTimeout, E_FAIL},
    {errc::kWriteProtected, E_FAIL},
};

// Building a session tells a timeout, and nothing else.
constexpr CodeRow kBuildRows[] = {
    {errc::kOutOfMemory, E_UNEXPECTED},
    {errc::kWriteProtected, E_UNEXPECTED},
};

Result ReadText(IStore* store, void (IStore::*read)(WString&), WString* text) try {
  HV_RETURN_IF_NULL(text);
  HV_RETURN_CODE_IF(!store, E_UNEXPECTED);
  (store->*read)(*text);
  return S_OK;
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

/// The engine's own environment if none is given.
Ref<IStore> OpenStore(std::u16string_view name, std::u16string_view pluginName,
                      std::u16string_view parameter, IEnvironment* given) {
  const Ref<IEnvironment> environment =
      given ? Ref<IEnvironment>::Share(given) : GetEngineEnvironment();
  if (!environment) return {};
  return Ref<IStore>::Adopt(
      name.empty() ? environment->OpenStoreByParameter(name, pluginName, parameter, kNoFlags)
                   : environment->OpenStore(name, kNoFlags));
}

}  // namespace

Result CDataStoreImpl::Connect(std::u16string_view name, std::u16string_view pluginName,
                               std::u16string_view parameter, IEnvironment* environment) {
  try {
    Ref<IStore> opened = OpenStore(name, pluginName, parameter, environment);
    HV_RETURN_CODE_IF(!opened, E_FAIL);
    m_store = std::move(opened);
  }
  HV_CATCH_RETURN_AS(E_FAIL, kConnectRows)
  return Build();
}

Result CDataStoreImpl::OpenByStore(IStore* store) {
  HV_RETURN_CODE_IF(!store, E_UNEXPECTED);
  m_store = Ref<IStore>::Share(store);
  return Build();
}

Result CDataStoreImpl::Build() try {
  m_browseSettings.Reset();
  m_config.Reset();
  m_rootElements.Reset();
  m_resultsImpl.Reset();
  m_results.Reset();
  m_simplified.Reset();
  m_model = MakeRef<CDataStoreModelImpl>();
  HV_RETURN_IF_FAILED(m_model->SetStore(m_store.Get()));
  // A store whose path can't be made still opens, without one.
  (void)LoadDefaultBrowseConfig(m_store.Get(), m_config.Put());
  Ref<IEntityImplCache> cache;
  HV_RETURN_IF_FAILED(m_model->GetCache(cache.Put()));
  HV_RETURN_IF_FAILED(MakeSimplifiedStore(m_store.Get(), m_config.Get(), m_simplified.Put()));
  if (m_config) m_browseSettings = MakeRef<CBrowseSettingsImpl>(m_config, cache, m_simplified);
  ReadRootEntityName();
  HV_RETURN_IF_FAILED(MakeResultCollection(*m_simplified, kResultsLimit, m_resultsImpl.Put()));
  return WrapStoreElementList(m_resultsImpl.Get(), m_results.Put());
}
HV_CATCH_RETURN_AS(E_UNEXPECTED, kBuildRows)

Result CDataStoreImpl::GetName(WString* name) {
  return ReadText(m_store.Get(), &IStore::GetName, name);
}

Result CDataStoreImpl::GetPluginName(WString* name) {
  return ReadText(m_store.Get(), &IStore::GetPluginName, name);
}

Result CDataStoreImpl::GetParameters(WString* parameters) {
  return ReadText(m_store.Get(), &IStore::GetParameters, parameters);
}

Result CDataStoreImpl::GetModel(IDataStoreModelImpl** model) {
  HV_RETURN_IF_NULL(model);
  *model = nullptr;
  HV_RETURN_CODE_IF(!m_model, E_UNEXPECTED);
  return m_model.CopyTo(model);
}

Result CDataStoreImpl::GetCoreStore(IStore** store) {
  HV_RETURN_IF_NULL(store);
  *store = nullptr;
  HV_RETURN_CODE_IF(!m_store, E_UNEXPECTED);
  return m_store.CopyTo(store);
}

Result CDataStoreImpl::Save(std::u16string_view mode) try {
  HV_RETURN_CODE_IF(!m_store, E_UNEXPECTED);
  m_store->Save(mode.empty() ? kWholeTreeMode : mode);
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kSaveRows)

Result CDataStoreImpl::Refresh() {
  // Hosts aren't told of failures: what couldn't be looked at again stays as it was.
  if (m_simplified) (void)m_simplified->Refresh();
  if (m_rootElements) (void)m_rootElements->Reload();
  return S_OK;
}

Result CDataStoreImpl::IsModified(std::int32_t* modified) try {
  HV_RETURN_IF_NULL(modified);
  HV_RETURN_CODE_IF(!m_store, E_UNEXPECTED);
  *modified = m_store->GetState(kUnsavedChanges);
  return S_OK;
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

Result CDataStoreImpl::IsQuerySupported(std::int32_t* supported) try {
  HV_RETURN_IF_NULL(supported);
  *supported = 0;
  HV_RETURN_CODE_IF(!m_store, E_UNEXPECTED);
  WString pluginName;
  m_store->GetPluginName(pluginName);
  const auto environment = Ref<IEnvironment>::Adopt(m_store->GetEnvironment());
  if (!environment) return S_OK;
  const auto plugins = Ref<IPluginList>::Adopt(environment->GetPlugins());
  const auto plugin = Ref<IPluginInfo>::Adopt(plugins ? plugins->GetPlugin(pluginName) : nullptr);
  // A plug-in that isn't installed runs no queries.
  if (plugin) *supported = plugin->SupportsQueries();
  return S_OK;
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

Result CDataStoreImpl::GetContext(std::int32_t mode, IDataStoreContextImpl** context) try {
  HV_RETURN_IF_NULL(context);
  *context = nullptr;
  HV_RETURN_CODE_IF(!m_store, E_FAIL);
  const auto found = Ref<IStoreContext>::Adopt(m_store->GetContext(mode));
  return found ? E_NOTIMPL : VEX_E_FOREIGN_ELEMENT;
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

}  // namespace hv::vex
