// store/model/ModelReferenceCollImpl.cpp - the references of an entity.
#include "store/model/ModelReferenceCollImpl.h"

#include <cstddef>
#include <span>
#include <utility>

#include <storefabric/DataType.h>

#include "automation/Guards.h"
#include "elements/TextList.h"
#include "store/collections/CollectionImpl.h"
#include "store/core/IAttribute.h"
#include "store/core/IModel.h"
#include "store/model/BaseNames.h"
#include "store/model/ModelReferenceImpl.h"

namespace hv::vex {

CModelReferenceCollImpl::CModelReferenceCollImpl(IEntity& entity, IEntityImplCache& cache)
    : m_entity(Ref<IEntity>::Share(&entity)), m_cache(Ref<IEntityImplCache>::Share(&cache)) {}

bool CModelReferenceCollImpl::IsLocalColumn() {
  const auto model = Ref<IModel>::Adopt(m_entity->GetModel());
  if (!model) return false;
  const auto localColumn = Ref<IEntity>::Adopt(model->GetEntityByName(kLocalColumnBase));
  return localColumn && m_entity->IsKindOf(localColumn.Get()) != 0;
}

Result CModelReferenceCollImpl::Fill() try {
  const bool isLocalColumn = IsLocalColumn();
  const auto list = Ref<IAttribute>::Adopt(m_entity->GetAttributeNames());
  const std::span<const WString> names = TextsOf(list.Get());
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (m_entity->GetAttributeType(i) != kTypeReference) continue;
    WString baseName;
    m_entity->GetAttributeBaseName(baseName, names[i]);
    // The values of a local column are no reference, whatever an engine holds them in.
    if (isLocalColumn && baseName == kValuesBase) continue;
    const auto relation = Ref<IRelation>::Adopt(m_entity->GetRelation(i));
    HV_RETURN_CODE_IF(!relation, E_FAIL);
    AddReference(names[i], std::move(baseName), *relation);
  }
  return S_OK;
}
HV_CATCH_RETURN()

void CModelReferenceCollImpl::AddReference(const WString& name, WString baseName,
                                           IRelation& relation) {
  ReferenceFacts facts;
  facts.name = name;
  facts.baseName = baseName;
  relation.GetOccurrence(&facts.minOccur, &facts.maxOccur);
  if (const auto target = Ref<IEntity>::Adopt(relation.GetTargetEntity())) {
    target->GetName(facts.targetEntity);
  }
  if (const auto inverse = Ref<IRelation>::Adopt(relation.GetInverse())) {
    inverse->GetName(facts.inverseName);
    if (const auto target = Ref<IEntity>::Adopt(inverse->GetTargetEntity())) {
      target->GetName(facts.inverseEntity);
    }
  }
  if (!m_members.Contains(name)) {
    m_members.Append(MakeRef<CModelReferenceImpl>(std::move(facts), *m_cache), name);
  }
  m_namesByBase.insert_or_assign(std::move(baseName), name);
}

Result CModelReferenceCollImpl::GetItem(std::int32_t index, IModelReferenceImpl** reference) {
  return m_members.GetItem(index, reference);
}

Result CModelReferenceCollImpl::GetCount(std::int32_t* count) { return m_members.GetCount(count); }

Result CModelReferenceCollImpl::GetItemByName(std::u16string_view name,
                                              IModelReferenceImpl** reference) {
  const Result byName = m_members.Find(name, reference);
  HV_RETURN_CODE_IF(byName != E_INVALIDARG || name.empty(), byName);
  const auto byBase = m_namesByBase.find(name);
  HV_RETURN_CODE_IF(byBase == m_namesByBase.end(), E_INVALIDARG);
  return m_members.Find(byBase->second, reference);
}

Result CModelReferenceCollImpl::Exists(std::u16string_view name, bool* exists) {
  HV_RETURN_IF_NULL(exists);
  *exists = !name.empty() && (m_members.Contains(name) || m_namesByBase.contains(name));
  return S_OK;
}

Result CModelReferenceCollImpl::GetIterator(
    easyImpl::tIIteratorImpl<IModelReferenceImpl>** iterator) try {
  HV_RETURN_IF_NULL(iterator);
  *iterator = nullptr;
  *iterator = MakeRef<easyImpl::tBePoIterator<CModelReferenceCollImpl>>(*this).Detach();
  return S_OK;
}
HV_CATCH_RETURN()

}  // namespace hv::vex
