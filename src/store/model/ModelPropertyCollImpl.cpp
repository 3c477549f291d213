// store/model/ModelPropertyCollImpl.cpp - the properties of an entity.
#include "store/model/ModelPropertyCollImpl.h"

#include <cstddef>
#include <span>
#include <utility>

#include "automation/Guards.h"
#include "elements/TextList.h"
#include "store/core/IAttribute.h"
#include "store/model/ModelPropertyImpl.h"

namespace hv::vex {

Result CModelPropertyCollImpl::Fill() try {
  const auto list = Ref<IAttribute>::Adopt(m_entity->GetAttributeNames());
  const std::span<const WString> names = TextsOf(list.Get());
  std::int32_t known = 0;
  HV_RETURN_IF_FAILED(m_members.GetCount(&known));
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::int32_t type = m_entity->GetAttributeType(i);
    if (!IsPropertyType(type) || (known != 0 && m_members.Contains(names[i]))) continue;
    WString baseName;
    m_entity->GetAttributeBaseName(baseName, names[i]);
    std::int32_t minOccur = 0;
    std::int32_t maxOccur = 0;
    const auto attribute = Ref<IAttribute>::Adopt(m_entity->GetAttribute(names[i]));
    if (const auto definition = attribute.As<IAttributeDefinition>()) {
      definition->GetOccurrence(&minOccur, &maxOccur);
    }
    m_members.Append(
        MakeRef<CModelPropertyImpl>(names[i], std::move(baseName), static_cast<enumDataType>(type),
                                    minOccur, maxOccur),
        names[i]);
  }
  return S_OK;
}
HV_CATCH_RETURN()

Result CModelPropertyCollImpl::GetItem(std::int32_t index, IModelPropertyImpl** property) {
  return m_members.GetItem(index, property);
}

Result CModelPropertyCollImpl::GetCount(std::int32_t* count) { return m_members.GetCount(count); }

Result CModelPropertyCollImpl::GetItemByName(std::u16string_view name,
                                             IModelPropertyImpl** property) try {
  const Result byName = m_members.Find(name, property);
  HV_RETURN_CODE_IF(byName != E_INVALIDARG || name.empty(), byName);
  const auto attribute = Ref<IAttribute>::Adopt(m_entity->GetAttribute(name));
  HV_RETURN_CODE_IF(!attribute || attribute->GetDataType() == kTypeReference, E_INVALIDARG);
  WString ownName;
  attribute->GetName(ownName);
  return m_members.Find(ownName, property);
}
HV_CATCH_RETURN()

Result CModelPropertyCollImpl::Exists(std::u16string_view name, bool* exists) try {
  HV_RETURN_IF_NULL(exists);
  *exists = m_members.Contains(name);
  HV_RETURN_CODE_IF(*exists || name.empty(), S_OK);
  const auto attribute = Ref<IAttribute>::Adopt(m_entity->GetAttribute(name));
  HV_RETURN_CODE_IF(!attribute || !IsPropertyType(attribute->GetDataType()), S_OK);
  WString baseName;
  m_entity->GetAttributeBaseName(baseName, name);
  *exists = baseName.EqualsExact(name);
  return S_OK;
}
HV_CATCH_RETURN()

}  // namespace hv::vex
