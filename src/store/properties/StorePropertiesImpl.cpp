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

constexpr std::u16string_view kLocalColumnEntity = u"aolocalcolumn";
/// The element of a local column shows its flags value by value instead.
constexpr std::u16string_view kFlagsName = u"flags";
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

bool CStorePropertiesImpl::IsLocalColumn() const {
  const auto store = Ref<IStore>::Adopt(m_instance->GetStore());
  const auto model = Ref<IModel>::Adopt(store ? store->GetModel() : nullptr);
  const auto column =
      Ref<IEntity>::Adopt(model ? model->GetEntityByName(kLocalColumnEntity) : nullptr);
  return column && m_instance->IsKindOf(column.Get()) != 0;
}

Result CStorePropertiesImpl::ReadApplicationNames(Names* names) const {
  const Ref<IEntity> entity = GetEntity();
  HV_RETURN_CODE_IF(!entity, E_FAIL);
  const bool isLocalColumn = IsLocalColumn();
  const auto list = Ref<IAttribute>::Adopt(entity->GetAttributeNames());
  const std::span<const WString> all = TextsOf(list.Get());
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (!IsPropertyType(entity->GetAttributeType(i))) continue;
    if (isLocalColumn) {
      WString baseName;
      entity->GetAttributeBaseName(baseName, all[i]);
      if (all[i].EqualsExact(kFlagsName) || baseName.EqualsExact(kFlagsName)) continue;
    }
    names->push_back(all[i]);
  }
  return S_OK;
}

CStorePropertiesImpl::Names CStorePropertiesImpl::ReadInstanceNames() const {
  Names names;
  const auto list = Ref<IAttribute>::Adopt(m_instance->GetInstanceAttributeNames());
  for (const WString& name : TextsOf(list.Get())) {
    if (IsPropertyType(m_instance->GetInstanceAttributeType(name))) names.push_back(name);
  }
  return names;
}

Result CStorePropertiesImpl::MakeProperty(const WString& name, bool isApplicationProperty,
                                          Ref<IPropertyImpl>* made) const {
  std::int32_t type = 0;
  if (isApplicationProperty) {
    const Ref<IEntity> entity = GetEntity();
    const auto declared = Ref<IAttribute>::Adopt(entity ? entity->GetAttribute(name) : nullptr);
    if (declared) type = declared->GetDataType();
  }
  // What the model leaves open, the value itself tells.
  if (type == 0) {
    const auto value = Ref<IAttribute>::Adopt(m_instance->GetAttributeValue(name));
    HV_RETURN_CODE_IF(!value, E_FAIL);
    type = value->GetDataType();
  }
  *made = MakeRef<CStorePropertyImpl>(*m_instance, name, static_cast<enumDataType>(type),
                                      isApplicationProperty);
  return S_OK;
}

Result CStorePropertiesImpl::Rebuild(Names applicationNames, Names instanceNames) {
  std::vector<Ref<IPropertyImpl>> properties;
  properties.reserve(applicationNames.size() + instanceNames.size());
  for (const WString& name : applicationNames) {
    HV_RETURN_IF_FAILED(MakeProperty(name, true, &properties.emplace_back()));
  }
  for (const WString& name : instanceNames) {
    HV_RETURN_IF_FAILED(MakeProperty(name, false, &properties.emplace_back()));
  }
  HV_RETURN_IF_FAILED(Named::Clear());
  m_applicationNames = std::move(applicationNames);
  m_instanceNames = std::move(instanceNames);
  std::size_t position = 0;
  for (const Names* names : {&m_applicationNames, &m_instanceNames}) {
    for (const WString& name : *names) {
      HV_RETURN_IF_FAILED(Named::Add(properties[position++].Get(), name));
    }
  }
  m_filled = true;
  return S_OK;
}

Result CStorePropertiesImpl::Fill() try {
  HV_RETURN_CODE_IF(m_instance->IsValid() == 0, VEX_E_OBJECT_GONE);
  Names applicationNames;
  HV_RETURN_IF_FAILED(ReadApplicationNames(&applicationNames));
  return Rebuild(std::move(applicationNames),
                 m_listInstanceProperties ? ReadInstanceNames() : Names());
}
HV_CATCH_RETURN_AS(E_FAIL, kReadFailures)

Result CStorePropertiesImpl::GetListInstanceProperties(std::int32_t* list) {
  HV_RETURN_IF_NULL(list);
  *list = m_listInstanceProperties ? 1 : 0;
  return S_OK;
}

Result CStorePropertiesImpl::SetListInstanceProperties(std::int32_t list) try {
  const bool wanted = list != 0;
  if (m_filled) {
    Names instanceNames;
    if (wanted) instanceNames = m_listInstanceProperties ? m_instanceNames : ReadInstanceNames();
    HV_RETURN_IF_FAILED(Rebuild(m_applicationNames, std::move(instanceNames)));
  }
  m_listInstanceProperties = wanted;
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kReadFailures)

WString CStorePropertiesImpl::OwnNameOf(std::u16string_view baseName) const {
  WString name;
  if (baseName.empty()) return name;
  const Ref<IEntity> entity = GetEntity();
  const auto attribute = Ref<IAttribute>::Adopt(entity ? entity->GetAttribute(baseName) : nullptr);
  if (attribute && attribute->GetDataType() != kTypeReference) attribute->GetName(name);
  return name;
}

Result CStorePropertiesImpl::GetItemByName(std::u16string_view name, IPropertyImpl** property) try {
  const Result byName = Named::GetItemByName(name, property);
  HV_RETURN_CODE_IF(byName != E_INVALIDARG, byName);
  return Named::GetItemByName(OwnNameOf(name), property);
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

Result CStorePropertiesImpl::Exists(std::u16string_view name, bool* exists) try {
  HV_RETURN_IF_FAILED(Named::Exists(name, exists));
  HV_RETURN_CODE_IF(*exists || !IsBaseName(name), S_OK);
  return Named::Exists(OwnNameOf(name), exists);
}
HV_CATCH_RETURN_AS(E_FAIL, kReadFailures)

Result CStorePropertiesImpl::IsApplicationProperty(std::u16string_view name,
                                                   std::int32_t* isApplication) try {
  HV_RETURN_IF_NULL(isApplication);
  *isApplication = 0;
  const bool isOfEntity =
      Contains(m_applicationNames, name) || (!Contains(m_instanceNames, name) && IsBaseName(name));
  *isApplication = isOfEntity ? 1 : 0;
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kReadFailures)

Result CStorePropertiesImpl::AddNew(std::u16string_view name, const Variant& value,
                                    std::int32_t type, IPropertyImpl** property) {
  AddInstanceAttribute(*m_instance, name, type);
  const WString ownName(name);
  Ref<IPropertyImpl> made;
  Result rc = MakeProperty(ownName, false, &made);
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

Result CStorePropertiesImpl::RemoveAt(std::int32_t index) {
  HV_RETURN_CODE_IF(index < 0 || static_cast<std::size_t>(index) >= Size(), E_INVALIDARG);
  return Remove(NameAt(static_cast<std::size_t>(index)));
}

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
