// store/model/EntityImpl.cpp - an entity of the model.
#include "store/model/EntityImpl.h"

#include "automation/Guards.h"
#include "store/core/IModel.h"
#include "store/model/BaseNames.h"
#include "store/model/EntityCollImpl.h"
#include "store/model/EntityImplCache.h"
#include "store/model/ModelPropertyCollImpl.h"
#include "store/model/ModelReferenceCollImpl.h"

namespace hv::vex {

CEntityImpl::CEntityImpl(CEntityImplCache& cache, IEntity& entity, std::u16string_view name)
    : m_cache(&cache),
      m_entity(Ref<IEntity>::Share(&entity)),
      m_name(name),
      m_properties(MakeRef<CModelPropertyCollImpl>(entity)) {}

CEntityImpl::~CEntityImpl() = default;

Result CEntityImpl::Init() try {
  m_modelStamp = ModelStamp();
  return m_properties->Fill();
}
HV_CATCH_RETURN()

std::uint64_t CEntityImpl::ModelStamp() const {
  const auto model = Ref<IModel>::Adopt(m_entity->GetModel());
  return model ? model->GetChangeCounter() : 0;
}

Result CEntityImpl::GetName(WString* name) {
  HV_RETURN_IF_NULL(name);
  *name = m_name;
  return S_OK;
}

Result CEntityImpl::GetModelProperties(IModelPropertyCollImpl** properties) try {
  if (ModelStamp() != m_modelStamp) HV_RETURN_IF_FAILED(Init());
  return m_properties.CopyTo(properties);
}
HV_CATCH_RETURN()

Result CEntityImpl::GetModelReferences(IModelReferenceCollImpl** references) try {
  HV_RETURN_IF_NULL(references);
  *references = nullptr;
  HV_RETURN_CODE_IF(!m_cache, VEX_E_OBJECT_GONE);
  auto made = MakeRef<CModelReferenceCollImpl>(*m_entity, *m_cache);
  HV_RETURN_IF_FAILED(made->Fill());
  *references = made.Detach();
  return S_OK;
}
HV_CATCH_RETURN()

Result CEntityImpl::GetSubTypes(IEntityCollImpl** subTypes) try {
  HV_RETURN_IF_NULL(subTypes);
  *subTypes = nullptr;
  HV_RETURN_CODE_IF(!m_cache, VEX_E_OBJECT_GONE);
  const auto list = Ref<IEntityList>::Adopt(m_entity->GetSubTypes());
  HV_RETURN_CODE_IF(!list || list->GetCount() == 0, S_OK);
  auto made = MakeRef<CEntityCollImpl>();
  HV_RETURN_IF_FAILED(made->Fill(*list, *m_cache));
  *subTypes = made.Detach();
  return S_OK;
}
HV_CATCH_RETURN()

Result CEntityImpl::GetSuperType(IEntityImpl** superType) try {
  HV_RETURN_IF_NULL(superType);
  *superType = nullptr;
  HV_RETURN_CODE_IF(!m_cache, VEX_E_OBJECT_GONE);
  const auto parent = Ref<IEntity>::Adopt(m_entity->GetSuperType());
  HV_RETURN_CODE_IF(!parent, S_OK);
  return m_cache->GetOrCreate(parent.Get(), superType);
}
HV_CATCH_RETURN()

Result CEntityImpl::IsKindOf(std::u16string_view name, std::int32_t* isKindOf) try {
  HV_RETURN_IF_NULL(isKindOf);
  *isKindOf = 0;
  const auto model = Ref<IModel>::Adopt(m_entity->GetModel());
  HV_RETURN_CODE_IF(!model, E_FAIL);
  const auto other = Ref<IEntity>::Adopt(model->GetEntityByName(name));
  *isKindOf = m_name == name || m_entity->IsKindOf(other.Get()) != 0 ? 1 : 0;
  return S_OK;
}
HV_CATCH_RETURN()

Result CEntityImpl::IsBaseType(std::int32_t* isBaseType) {
  HV_RETURN_IF_NULL(isBaseType);
  *isBaseType = HasBaseTypeName(m_name) ? 1 : 0;
  return S_OK;
}

}  // namespace hv::vex
