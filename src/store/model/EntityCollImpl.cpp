// store/model/EntityCollImpl.cpp - a list of entities in the order of the engine.
#include "store/model/EntityCollImpl.h"

#include <cstdint>

#include "automation/Guards.h"
#include "store/core/IEntity.h"
#include "store/model/BaseNames.h"

namespace hv::vex {

Result CEntityCollImpl::Fill(IEntityList& list, IEntityImplCache& cache) try {
  m_cache = Ref<IEntityImplCache>::Share(&cache);
  Result result = S_OK;
  const std::uint64_t count = list.GetCount();
  for (std::uint64_t i = 0; i < count; ++i) {
    const auto coreEntity = Ref<IEntity>::Adopt(list.GetEntity(i));
    if (!coreEntity) continue;
    if (const Result added = AddEntity(*coreEntity); Failed(added)) result = added;
  }
  return result;
}
HV_CATCH_RETURN()

Result CEntityCollImpl::AddNew(IEntityList& list) try {
  Result result = S_OK;
  const std::uint64_t count = list.GetCount();
  for (std::uint64_t i = 0; i < count; ++i) {
    const auto coreEntity = Ref<IEntity>::Adopt(list.GetEntity(i));
    if (!coreEntity) continue;
    const Result added = AddEntity(*coreEntity);
    if (Failed(added) && added != E_ACCESSDENIED) result = added;
  }
  return result;
}
HV_CATCH_RETURN()

Result CEntityCollImpl::AddEntity(IEntity& coreEntity) {
  WString name;
  coreEntity.GetName(name);
  // Entities of the base model that no application stands on aren't shown.
  if (HasBaseTypeName(name) && !Ref<IEntity>::Adopt(coreEntity.GetApplicationElement())) {
    return S_OK;
  }
  Ref<IEntityImpl> entity;
  HV_RETURN_IF_FAILED(m_cache->GetOrCreate(&coreEntity, entity.Put()));
  bool exists = false;
  HV_RETURN_IF_FAILED(Exists(name, &exists));
  HV_RETURN_CODE_IF(exists, E_ACCESSDENIED);
  return Add(entity.Get(), name);
}

}  // namespace hv::vex
