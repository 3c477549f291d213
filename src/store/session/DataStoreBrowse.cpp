// store/session/DataStoreBrowse.cpp - the browse settings of a session.
#include "automation/Guards.h"
#include "browse/BrowseConfigImpl.h"
#include "store/core/IModel.h"
#include "store/session/DataStoreImpl.h"
#include "store/session/MakeBrowseSettings.h"
#include "store/settings/CopyBrowseSettings.h"

namespace hv::vex {

namespace {

constexpr std::u16string_view kQmdModel = u"/DataModels/VEX/QMD/1_0";

}  // namespace

Result CDataStoreImpl::GetBrowseSettings(IBrowseSettingsImpl** settings) {
  HV_RETURN_IF_NULL(settings);
  *settings = nullptr;
  HV_RETURN_CODE_IF(!m_browseSettings, E_UNEXPECTED);
  return MakeBrowseSettings(*this, *m_config, settings);
}

Result CDataStoreImpl::GetBrowseSettingsInternal(IBrowseSettingsImpl** settings) {
  HV_RETURN_IF_NULL(settings);
  *settings = nullptr;
  HV_RETURN_CODE_IF(!m_browseSettings, E_UNEXPECTED);
  return m_browseSettings.CopyTo(settings);
}

Result CDataStoreImpl::SetBrowseSettings(IBrowseSettingsImpl* settings) try {
  HV_RETURN_CODE_IF(HasQmdModel(), E_ACCESSDENIED);
  HV_RETURN_CODE_IF(!settings || settings == m_browseSettings.Get(), S_OK);
  Ref<IBrowseConfig> given;
  HV_RETURN_CODE_IF(!m_config || Failed(settings->GetConfig(given.Put())), E_FAIL);
  const auto current = OwnBrowseConfig(m_config.Get());
  const auto model = Ref<IModel>::Adopt(m_config->GetModel());
  const auto givenModel = Ref<IModel>::Adopt(given->GetModel());
  HV_RETURN_CODE_IF(!current || !model || !givenModel, E_FAIL);
  // What can't be taken over shows on a copy, so that the path in force stays whole.
  Ref<CDataStoreBrowseConfigImpl> copy;
  const Result unfit = model == givenModel ? VEX_E_BROWSE_MODEL : VEX_E_OTHER_STORE;
  HV_RETURN_CODE_IF(Failed(CopyForModel(*model, *given, &copy)), unfit);
  HV_RETURN_CODE_IF(Failed(current->CloneFrom(copy.Get())), VEX_E_BROWSE_MODEL);
  HV_RETURN_IF_FAILED(m_simplified->ResetBrowseData());
  if (m_rootElements) (void)m_rootElements->Reload();
  return S_OK;
}
HV_CATCH_RETURN()

bool CDataStoreImpl::HasQmdModel() {
  if (!m_store) return false;
  try {
    const auto model = Ref<IModel>::Adopt(m_store->GetModel());
    return model && model->HasModelPart(kQmdModel) != 0;
  } catch (...) {
    return false;
  }
}

Result CDataStoreImpl::GetSimplifiedStore(easyImpl::ISimplifiedStoreImpl** simplified) {
  HV_RETURN_IF_NULL(simplified);
  *simplified = nullptr;
  HV_RETURN_CODE_IF(!m_simplified, E_UNEXPECTED);
  return m_simplified.CopyTo(simplified);
}

}  // namespace hv::vex
