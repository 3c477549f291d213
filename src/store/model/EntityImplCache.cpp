// store/model/EntityImplCache.cpp - the one logic object per entity of a session.
#include "store/model/EntityImplCache.h"

#include <utility>

#include "automation/Guards.h"
#include "store/core/IEntity.h"
#include "store/model/EntityImpl.h"

namespace hv::vex {

CEntityImplCache::CEntityImplCache() = default;
CEntityImplCache::~CEntityImplCache() { (void)Clear(); }

CEntityImpl* CEntityImplCache::FindExact(std::u16string_view name) const {
  const auto [first, last] = m_entities.equal_range(name);
  for (auto at = first; at != last; ++at) {
    if (at->first.EqualsExact(name)) return at->second.Get();
  }
  return nullptr;
}

Result CEntityImplCache::Get(std::u16string_view name, IEntityImpl** entity) {
  HV_RETURN_IF_NULL(entity);
  *entity = nullptr;
  HV_RETURN_CODE_IF(name.empty(), E_INVALIDARG);
  if (CEntityImpl* exact = FindExact(name)) return Ref<CEntityImpl>::Share(exact).CopyTo(entity);
  const auto anyCase = m_entities.find(name);
  HV_RETURN_CODE_IF(anyCase == m_entities.end(), E_INVALIDARG);
  return anyCase->second.CopyTo(entity);
}

Result CEntityImplCache::GetOrCreate(IEntity* coreEntity, IEntityImpl** entity) try {
  HV_RETURN_IF_NULL(entity);
  *entity = nullptr;
  HV_RETURN_IF_NULL(coreEntity);
  WString name;
  coreEntity->GetName(name);
  if (CEntityImpl* known = FindExact(name)) return Ref<CEntityImpl>::Share(known).CopyTo(entity);
  auto made = MakeRef<CEntityImpl>(*this, *coreEntity, name);
  HV_RETURN_IF_FAILED(made->Init());
  m_entities.emplace(std::move(name), made);
  return made.CopyTo(entity);
}
HV_CATCH_RETURN()

Result CEntityImplCache::Clear() {
  // The entities go last: one that dies may be the last to hold what leads back here.
  const Entities leaving = std::exchange(m_entities, {});
  for (const auto& [name, entity] : leaving) entity->ForgetCache();
  return S_OK;
}

}  // namespace hv::vex
