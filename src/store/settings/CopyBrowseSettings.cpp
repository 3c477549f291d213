// store/settings/CopyBrowseSettings.cpp - copies of browse configurations for a session.
#include "store/settings/CopyBrowseSettings.h"

#include <utility>

#include "automation/Guards.h"
#include "store/core/IModel.h"

namespace hv::vex {

Result CopyForModel(IModel& model, IBrowseConfig& source, Ref<CDataStoreBrowseConfigImpl>* copy) {
  HV_RETURN_CODE_IF(!OwnBrowseConfig(&source), E_INVALIDARG);
  auto made = MakeRef<CDataStoreBrowseConfigImpl>();
  if (Ref<IModel>::Adopt(source.GetModel()).Get() == &model) {
    HV_RETURN_IF_FAILED(made->CloneFrom(&source));
  } else {
    HV_RETURN_IF_FAILED(made->InitModel(&model));
    HV_RETURN_IF_FAILED(made->CopyFrom(&source));
  }
  *copy = std::move(made);
  return S_OK;
}

}  // namespace hv::vex
