// browse/RepresentedByPart.cpp - one part of a display name.
#include "browse/RepresentedByPart.h"

#include "automation/Guards.h"
#include "store/core/IEntity.h"

namespace hv::vex {

Ref<IAttributeDefinition> FindAttributeDefinition(IEntity& entity, std::u16string_view name) {
  return Ref<IAttribute>::Adopt(entity.GetAttribute(name)).As<IAttributeDefinition>();
}

bool CRepresentedByPartImpl::IsKind(PartKind kind) {
  switch (kind) {
    case PartKind::Property:
      return !IsFreeText();
    case PartKind::FreeText:
      return IsFreeText();
  }
  return false;
}

bool CRepresentedByPartImpl::IsValid() {
  return IsFreeText() ? !m_freeText.empty() : m_property != nullptr;
}

Result CRepresentedByPartImpl::GetFreeText(WString* text) {
  HV_RETURN_IF_NULL(text);
  HV_RETURN_CODE_IF(m_property != nullptr, E_NOTIMPL);
  *text = m_freeText;
  return S_OK;
}

Result CRepresentedByPartImpl::SetFreeText(std::u16string_view text) {
  HV_RETURN_CODE_IF(m_property != nullptr, E_NOTIMPL);
  m_freeText = text;
  return S_OK;
}

Result CRepresentedByPartImpl::GetProperty(IAttributeDefinition** property) {
  HV_RETURN_IF_NULL(property);
  *property = nullptr;
  HV_RETURN_CODE_IF(IsFreeText(), E_POINTER);
  HV_RETURN_CODE_IF(!m_property, E_NOTIMPL);
  return m_property.CopyTo(property);
}

Result CRepresentedByPartImpl::SetProperty(IAttributeDefinition* property) {
  HV_RETURN_IF_NULL(property);
  HV_RETURN_CODE_IF(IsFreeText(), E_POINTER);
  m_propertyName.clear();
  m_property = Ref<IAttributeDefinition>::Share(property);
  return S_OK;
}

Result CRepresentedByPartImpl::GetPropertyName(WString* name) try {
  HV_RETURN_IF_NULL(name);
  name->clear();
  HV_RETURN_CODE_IF(IsFreeText(), E_NOTIMPL);
  if (m_property) {
    m_property->GetName(*name);
  } else {
    *name = m_propertyName;
  }
  return S_OK;
}
HV_CATCH_RETURN()

Result CRepresentedByPartImpl::GetPropertyKey(WString* key) try {
  HV_RETURN_IF_NULL(key);
  HV_RETURN_IF_FAILED(GetPropertyName(key));
  if (!m_property) return S_OK;
  WString baseName;
  m_property->GetBaseName(baseName);
  if (baseName.empty()) return S_OK;
  // An attribute may bear another one's base name as its own name, and then it is what the base
  // name leads to.
  const auto entity = Ref<IEntity>::Adopt(m_property->GetSourceEntity());
  const auto byBase =
      entity ? FindAttributeDefinition(*entity, baseName) : Ref<IAttributeDefinition>();
  WString found;
  if (byBase) byBase->GetName(found);
  if (found.EqualsExact(*key)) *key = baseName;
  return S_OK;
}
HV_CATCH_RETURN()

Result CRepresentedByPartImpl::SetPropertyName(std::u16string_view name) {
  HV_RETURN_CODE_IF(IsFreeText(), E_NOTIMPL);
  m_property.Reset();
  m_propertyName = name;
  return S_OK;
}

}  // namespace hv::vex
