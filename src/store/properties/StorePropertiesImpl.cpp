// store/properties/StorePropertiesImpl.cpp - the properties of an element of a store.
#include "store/properties/StorePropertiesImpl.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <utility>

#include "automation/Guards.h"
#include "elements/TextList.h"
#include "elements/ValueVariant.h"
#include "store/core/IAttribute.h"
#include "store/core/IModel.h"
#include "store/core/IStore.h"
#include "store/properties/InstanceTypes.h"
#include "store/properties/StorePropertyImpl.h"

namespace hv::vex {

using easyImpl::IPropertyCollectionImpl;
using easyImpl::IPropertyImpl;

namespace {

/// The engine's number for "may a new attribute have this name".
constexpr std::int32_t kForNewAttribute = 3;

/// A refused read is a plain failure, also where writing was meant.
constexpr std::array kReadFailures{CodeRow{errc::kWriteProtected, E_FAIL},
                                   CodeRow{errc::kInstanceGone, VEX_E_OBJECT_GONE}};
constexpr std::array kChangeFailures{
    CodeRow{errc::kInvalidArgument, E_INVALIDARG}, CodeRow{errc::kNotUnique, E_INVALIDARG},
    CodeRow{errc::kUnknownName, E_INVALIDARG}, CodeRow{errc::kWrongType, VEX_E_BAD_PROPERTY_TYPE},
    CodeRow{errc::kInstanceGone, VEX_E_OBJECT_GONE}};

bool Contains(std::span<const WString> names, std::u16string_view name) {
  return std::ranges::any_of(names, [name](const WString& n) { return n.EqualsExact(name); });
}

}  // namespace

void* CStorePropertiesImpl::FindFace(const Iid& iid) {
  if (iid == IPropertyCollectionImpl::kIid) return static_cast<IPropertyCollectionImpl*>(this);
  return Named::FindFace(iid);
}

Ref<IEntity> CStorePropertiesImpl::GetEntity() const {
  const auto store = Ref<IStore>::Adopt(m_instance->GetStore());
  const auto model = Ref<IModel>::Adopt(store ? store->GetModel() : nullptr);
  return Ref<IEntity>::Adopt(model ? model->GetEntityOf(m_instance.Get()) : nullptr);
}

Result CStorePropertiesImpl::ReadApplication(Ref<CApplicationProperties>* application) {
  ApplicationPropertiesCache* const cache = std::exchange(m_cache, nullptr);
  return cache ? cache->Get(*m_instance, application)
               : CApplicationProperties::Read(*m_instance, application);
}

CStorePropertiesImpl::Names CStorePropertiesImpl::ReadInstanceNames() const {
  Names names;
  const auto list = Ref<IAttribute>::Adopt(m_instance->GetInstanceAttributeNames());
  for (const WString& name : TextsOf(list.Get())) {
    if (IsPropertyType(m_instance->GetInstanceAttributeType(name))) names.push_back(name);
  }
  return names;
}

IPropertyImpl& CStorePropertiesImpl::ApplicationProperty(std::size_t position) {
  const auto& members = m_application->Members();
  m_made.resize(members.size());
  Ref<IPropertyImpl>& made = m_made[position];
  if (!made) {
    const CApplicationProperties::Member& member = members[position];
    made = MakeRef<CStorePropertyImpl>(*m_instance, member.name, member.type, true);
  }
  return *made;
}

Result CStorePropertiesImpl::MakeInstanceProperty(const WString& name,
                                                  Ref<IPropertyImpl>* made) const {
  // What the model doesn't know, the value itself tells.
  const auto value = Ref<IAttribute>::Adopt(m_instance->GetAttributeValue(name));
  HV_RETURN_CODE_IF(!value, E_FAIL);
  const auto type = static_cast<enumDataType>(value->GetDataType());
  *made = MakeRef<CStorePropertyImpl>(*m_instance, name, type, false);
  return S_OK;
}

Result CStorePropertiesImpl::List(Names instanceNames) {
  std::vector<Ref<IPropertyImpl>> own(instanceNames.size());
  for (std::size_t i = 0; i < own.size(); ++i) {
    HV_RETURN_IF_FAILED(MakeInstanceProperty(instanceNames[i], &own[i]));
  }
  HV_RETURN_IF_FAILED(Named::Clear());
  const auto& members = m_application->Members();
  for (std::size_t i = 0; i < members.size(); ++i) {
    HV_RETURN_IF_FAILED(Named::Add(&ApplicationProperty(i), members[i].name));
  }
  m_instanceNames = std::move(instanceNames);
  for (std::size_t i = 0; i < own.size(); ++i) {
    HV_RETURN_IF_FAILED(Named::Add(own[i].Get(), m_instanceNames[i]));
  }
  m_isListed = true;
  return S_OK;
}

Result CStorePropertiesImpl::Fill() try {
  HV_RETURN_CODE_IF(m_instance->IsValid() == 0, VEX_E_OBJECT_GONE);
  Ref<CApplicationProperties> application;
  HV_RETURN_IF_FAILED(ReadApplication(&application));
  Names instanceNames;
  if (m_listInstanceProperties) instanceNames = ReadInstanceNames();
  HV_RETURN_IF_FAILED(Named::Clear());
  m_application = std::move(application);
  m_made.clear();
  m_isListed = false;
  return m_listInstanceProperties ? List(std::move(instanceNames)) : S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kReadFailures)

Result CStorePropertiesImpl::GetItem(std::int32_t index, IPropertyImpl** property) try {
  HV_RETURN_CODE_IF(m_isListed || !m_application, Named::GetItem(index, property));
  HV_RETURN_IF_NULL(property);
  *property = nullptr;
  const std::size_t count = m_application->Members().size();
  HV_RETURN_CODE_IF(index < 0 || static_cast<std::size_t>(index) >= count, E_INVALIDARG);
  *property =
      Ref<IPropertyImpl>::Share(&ApplicationProperty(static_cast<std::size_t>(index))).Detach();
  return S_OK;
}
HV_CATCH_RETURN()

Result CStorePropertiesImpl::GetCount(std::int32_t* count) {
  HV_RETURN_CODE_IF(m_isListed || !m_application, Named::GetCount(count));
  HV_RETURN_IF_NULL(count);
  *count = static_cast<std::int32_t>(m_application->Members().size());
  return S_OK;
}

Result CStorePropertiesImpl::GetIterator(easyImpl::tIIteratorImpl<IPropertyImpl>** iterator) try {
  HV_RETURN_IF_NULL(iterator);
  *iterator = nullptr;
  if (m_application) HV_RETURN_IF_FAILED(List());
  return Named::GetIterator(iterator);
}
HV_CATCH_RETURN()

Result CStorePropertiesImpl::GetListInstanceProperties(std::int32_t* list) {
  HV_RETURN_IF_NULL(list);
  *list = m_listInstanceProperties ? 1 : 0;
  return S_OK;
}

Result CStorePropertiesImpl::SetListInstanceProperties(std::int32_t list) try {
  const bool wanted = list != 0;
  if (m_application && wanted != m_listInstanceProperties) {
    HV_RETURN_IF_FAILED(List(wanted ? ReadInstanceNames() : Names()));
  }
  m_listInstanceProperties = wanted;
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kReadFailures)

Result CStorePropertiesImpl::GetItemByName(std::u16string_view name, IPropertyImpl** property) try {
  HV_RETURN_IF_NULL(property);
  *property = nullptr;
  HV_RETURN_CODE_IF(!m_application, E_INVALIDARG);
  std::size_t position = m_application->Find(name);
  if (position == CApplicationProperties::kNone) {
    if (m_isListed && !Failed(Named::GetItemByName(name, property))) return S_OK;
    position = m_application->FindBaseName(name);
  }
  HV_RETURN_CODE_IF(position == CApplicationProperties::kNone, E_INVALIDARG);
  *property = Ref<IPropertyImpl>::Share(&ApplicationProperty(position)).Detach();
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kReadFailures)

bool CStorePropertiesImpl::IsBaseName(std::u16string_view name) const {
  const Ref<IEntity> entity = GetEntity();
  if (!entity || name.empty()) return false;
  const auto attribute = Ref<IAttribute>::Adopt(entity->GetAttribute(name));
  if (!attribute || !IsPropertyType(attribute->GetDataType())) return false;
  WString baseName;
  entity->GetAttributeBaseName(baseName, name);
  return baseName.EqualsExact(name);
}

Result CStorePropertiesImpl::Exists(std::u16string_view name, bool* exists) {
  HV_RETURN_IF_NULL(exists);
  Ref<IPropertyImpl> property;
  *exists = !Failed(GetItemByName(name, property.Put()));
  return S_OK;
}

Result CStorePropertiesImpl::IsApplicationProperty(std::u16string_view name,
                                                   std::int32_t* isApplication) try {
  HV_RETURN_IF_NULL(isApplication);
  *isApplication = 0;
  const bool isOfEntity =
      (m_application && m_application->Find(name) != CApplicationProperties::kNone) ||
      (!Contains(m_instanceNames, name) && IsBaseName(name));
  *isApplication = isOfEntity ? 1 : 0;
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kReadFailures)

Result CStorePropertiesImpl::AddNew(std::u16string_view name, const Variant& value,
                                    std::int32_t type, IPropertyImpl** property) {
  AddInstanceAttribute(*m_instance, name, type);
  const WString ownName(name);
  Ref<IPropertyImpl> made;
  Result rc = MakeInstanceProperty(ownName, &made);
  if (!Failed(rc)) rc = made->SetValue(value);
  if (Failed(rc)) {
    m_instance->RemoveInstanceAttribute(name);
    return rc;
  }
  m_instanceNames.push_back(ownName);
  HV_RETURN_IF_FAILED(Named::Add(made.Get(), ownName));
  return GetItemByName(name, property);
}

Result CStorePropertiesImpl::Add(std::u16string_view name, const Variant& value, std::int32_t type,
                                 IPropertyImpl** property) try {
  HV_RETURN_IF_NULL(property);
  *property = nullptr;
  const Variant& source = value.Dereferenced();
  HV_RETURN_CODE_IF(!IsTypeToAdd(type), VEX_E_BAD_PROPERTY_TYPE);
  HV_RETURN_CODE_IF(!easyImpl::FitsDataType(source, type), DISP_E_TYPEMISMATCH);
  Ref<IPropertyImpl> existing;
  if (!Failed(GetItemByName(name, existing.Put()))) {
    HV_RETURN_IF_FAILED(existing->SetValue(source));
    return existing.CopyTo(property);
  }
  HV_RETURN_CODE_IF(m_instance->IsValidAttributeName(name, kForNewAttribute) == 0, E_INVALIDARG);
  HV_RETURN_CODE_IF(!m_listInstanceProperties, VEX_E_INSTANCE_PROPERTIES_OFF);
  return AddNew(name, source, type, property);
}
HV_CATCH_RETURN_AS(E_FAIL, kChangeFailures)

Result CStorePropertiesImpl::Add(std::u16string_view name, const Variant& value,
                                 IPropertyImpl** property) {
  return Add(name, value, TypeOfVariant(value.Dereferenced()), property);
}

void CStorePropertiesImpl::Forget(std::u16string_view name) {
  std::erase_if(m_instanceNames, [name](const WString& n) { return n.EqualsExact(name); });
  for (std::size_t i = 0; i < Size(); ++i) {
    if (!NameAt(i).EqualsExact(name)) continue;
    (void)Named::RemoveAt(static_cast<std::int32_t>(i));
    return;
  }
}

Result CStorePropertiesImpl::Remove(std::u16string_view name) try {
  HV_RETURN_CODE_IF(!m_listInstanceProperties, VEX_E_INSTANCE_PROPERTIES_OFF);
  std::int32_t isApplication = 0;
  HV_RETURN_IF_FAILED(IsApplicationProperty(name, &isApplication));
  HV_RETURN_CODE_IF(isApplication != 0, VEX_E_APPLICATION_PROPERTY);
  HV_RETURN_CODE_IF(!Contains(m_instanceNames, name), E_INVALIDARG);
  const WString ownName(name);  // the caller's text may go with the property
  m_instance->RemoveInstanceAttribute(ownName);
  Forget(ownName);
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kChangeFailures)

Result CStorePropertiesImpl::RemoveAll() try {
  HV_RETURN_CODE_IF(!m_listInstanceProperties, VEX_E_INSTANCE_PROPERTIES_OFF);
  while (!m_instanceNames.empty()) {
    const WString name = m_instanceNames.front();
    m_instance->RemoveInstanceAttribute(name);
    Forget(name);
  }
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kChangeFailures)

Result CStorePropertiesImpl::RemoveAt(std::int32_t index) try {
  Ref<IPropertyImpl> property;
  HV_RETURN_IF_FAILED(GetItem(index, property.Put()));
  WString name;
  HV_RETURN_IF_FAILED(property->GetName(&name));
  return Remove(name);
}
HV_CATCH_RETURN()

Result CStorePropertiesImpl::RemoveByName(std::u16string_view name) { return Remove(name); }

Result CStorePropertiesImpl::Clear() { return E_NOTIMPL; }

Result CStorePropertiesImpl::Swap(std::int32_t /*firstIndex*/, std::int32_t /*secondIndex*/) {
  return E_NOTIMPL;
}

Result CStorePropertiesImpl::Rename(std::u16string_view /*oldName*/,
                                    std::u16string_view /*newName*/, WString* unique) {
  HV_RETURN_IF_NULL(unique);
  unique->clear();
  return E_NOTIMPL;
}

Result CStorePropertiesImpl::AddCopy(IPropertyImpl& source, std::u16string_view prefix) {
  WString name;
  HV_RETURN_IF_FAILED(source.GetName(&name));
  enumDataType type = eNoType;
  HV_RETURN_IF_FAILED(source.GetDataType(&type));
  std::int32_t size = 0;
  HV_RETURN_IF_FAILED(source.GetSize(&size));
  Variant value;
  HV_RETURN_IF_FAILED(source.GetValue(&value));
  Ref<IPropertyImpl> copy;
  HV_RETURN_IF_FAILED(Add(WString(prefix) + name, value, TypeOfCopy(type), copy.Put()));
  for (std::int32_t i = 1; i < size; ++i) {
    HV_RETURN_IF_FAILED(source.GetValueAt(i, &value));
    HV_RETURN_IF_FAILED(copy->SetValueAt(i, value));
  }
  return S_OK;
}

Result CStorePropertiesImpl::AddProperties(IPropertyCollectionImpl* properties,
                                           std::u16string_view prefix) try {
  HV_RETURN_IF_NULL(properties);
  Ref<easyImpl::tIIteratorImpl<IPropertyImpl>> iterator;
  HV_RETURN_IF_FAILED(properties->GetIterator(iterator.Put()));
  // Gathered first: the other list may be this one, which grows.
  std::vector<Ref<IPropertyImpl>> sources;
  for (;;) {
    Ref<IPropertyImpl> source;
    HV_RETURN_IF_FAILED(iterator->Next(source.Put()));
    if (!source) break;
    sources.push_back(std::move(source));
  }
  for (const Ref<IPropertyImpl>& source : sources) HV_RETURN_IF_FAILED(AddCopy(*source, prefix));
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kChangeFailures)

}  // namespace hv::vex
