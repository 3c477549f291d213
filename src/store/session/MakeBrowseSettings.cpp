// store/session/MakeBrowseSettings.cpp - browse settings of a session's elements.
#include "store/session/MakeBrowseSettings.h"

#include <utility>

#include "automation/Guards.h"
#include "store/core/IModel.h"
#include "store/model/IDataStoreModelImpl.h"
#include "store/session/IDataStoreImpl.h"
#include "store/settings/BrowseSettingsImpl.h"
#include "store/settings/CopyBrowseSettings.h"

namespace hv::vex {

Result MakeBrowseSettings(IDataStoreImpl& session, IBrowseConfig& config,
                          IBrowseSettingsImpl** settings) try {
  HV_RETURN_IF_NULL(settings);
  *settings = nullptr;
  Ref<easyImpl::ISimplifiedStoreImpl> provider;
  Ref<IDataStoreModelImpl> sessionModel;
  Ref<IEntityImplCache> cache;
  Ref<IModel> model;
  Ref<CDataStoreBrowseConfigImpl> copy;
  HV_RETURN_IF_FAILED(session.GetSimplifiedStore(provider.Put()));
  HV_RETURN_IF_FAILED(session.GetModel(sessionModel.Put()));
  HV_RETURN_IF_FAILED(sessionModel->GetCache(cache.Put()));
  HV_RETURN_IF_FAILED(provider->GetModel(model.Put()));
  HV_RETURN_IF_FAILED(CopyForModel(*model, config, &copy));
  *settings =
      MakeRef<CBrowseSettingsImpl>(std::move(copy), std::move(cache), std::move(provider)).Detach();
  return S_OK;
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

}  // namespace hv::vex
