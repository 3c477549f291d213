// store/settings/BrowseSettingsEntityImpl.cpp - one level of a browse path.
#include "store/settings/BrowseSettingsEntityImpl.h"

#include <utility>

#include "automation/Guards.h"
#include "store/core/IEntity.h"

namespace hv::vex {

Result CBrowseSettingsEntityImpl::Make(Ref<IBrowseConfigEntity> entity,
                                       const Ref<IEntityImplCache>& cache,
                                       IBrowseEntityImpl** out) {
  HV_RETURN_IF_NULL(out);
  *out = nullptr;
  if (entity) *out = MakeRef<CBrowseSettingsEntityImpl>(std::move(entity), cache).Detach();
  return S_OK;
}

Result CBrowseSettingsEntityImpl::GetEntityType(IEntityImpl** entity) try {
  HV_RETURN_IF_NULL(entity);
  *entity = nullptr;
  const auto modelEntity = Ref<IEntity>::Adopt(m_entity->GetModelEntity());
  HV_RETURN_CODE_IF(!modelEntity, E_FAIL);
  return m_cache->GetOrCreate(modelEntity.Get(), entity);
}
HV_CATCH_RETURN()

Result CBrowseSettingsEntityImpl::GetParentPath(WString* path) try {
  HV_RETURN_IF_NULL(path);
  m_entity->GetParentPath(*path);
  return S_OK;
}
HV_CATCH_RETURN()

Result CBrowseSettingsEntityImpl::GetChildPath(WString* path) try {
  HV_RETURN_IF_NULL(path);
  m_entity->GetFirstChildPath(*path);
  return S_OK;
}
HV_CATCH_RETURN()

Result CBrowseSettingsEntityImpl::GetChildEntity(IBrowseEntityImpl** entity) try {
  return Make(Ref<IBrowseConfigEntity>::Adopt(m_entity->GetFirstChild()), m_cache, entity);
}
HV_CATCH_RETURN()

Result CBrowseSettingsEntityImpl::GetParentEntity(IBrowseEntityImpl** entity) try {
  return Make(Ref<IBrowseConfigEntity>::Adopt(m_entity->GetParent()), m_cache, entity);
}
HV_CATCH_RETURN()

}  // namespace hv::vex
