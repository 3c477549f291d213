// store/model/ModelReferenceImpl.cpp - a reference from one entity to another.
#include "store/model/ModelReferenceImpl.h"

#include <utility>

#include "automation/Guards.h"

namespace hv::vex {

CModelReferenceImpl::CModelReferenceImpl(ReferenceFacts facts, IEntityImplCache& cache)
    : m_facts(std::move(facts)), m_cache(Ref<IEntityImplCache>::Share(&cache)) {}

Result CModelReferenceImpl::GetName(WString* name) {
  HV_RETURN_IF_NULL(name);
  *name = m_facts.name;
  return S_OK;
}

Result CModelReferenceImpl::GetEntityType(IEntityImpl** entity) {
  HV_RETURN_IF_NULL(entity);
  const Result rc = m_cache->Get(m_facts.targetEntity, entity);
  return rc == E_INVALIDARG ? E_FAIL : rc;
}

Result CModelReferenceImpl::GetBaseName(WString* baseName) {
  HV_RETURN_IF_NULL(baseName);
  *baseName = m_facts.baseName;
  return S_OK;
}

Result CModelReferenceImpl::GetMinOccur(std::int32_t* minOccur) {
  HV_RETURN_IF_NULL(minOccur);
  *minOccur = m_facts.minOccur;
  return S_OK;
}

Result CModelReferenceImpl::GetMaxOccur(std::int32_t* maxOccur) {
  HV_RETURN_IF_NULL(maxOccur);
  *maxOccur = m_facts.maxOccur;
  return S_OK;
}

Result CModelReferenceImpl::GetInverse(IModelReferenceImpl** inverse) {
  HV_RETURN_IF_NULL(inverse);
  *inverse = nullptr;
  HV_RETURN_CODE_IF(m_facts.inverseName.empty(), E_NOTIMPL);
  Ref<IEntityImpl> target;
  HV_RETURN_IF_FAILED(GetEntityType(target.Put()));
  Ref<IModelReferenceCollImpl> references;
  HV_RETURN_IF_FAILED(target->GetModelReferences(references.Put()));
  return references->GetItemByName(m_facts.inverseName, inverse);
}

}  // namespace hv::vex
