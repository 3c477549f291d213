// elements/PropertyCollectionImpl.cpp - the properties of one instance of the engine.
#include "elements/PropertyCollectionImpl.h"

#include <array>

#include "automation/Guards.h"
#include "elements/VEXPropertyImpl.h"
#include "store/core/IAttribute.h"

namespace hv::vex::easyImpl {

namespace {

/// A refused read doesn't tell one failure of the engine from another, but for its timeout.
constexpr std::array kReadFailures{CodeRow{errc::kWriteProtected, E_INVALIDARG},
                                   CodeRow{errc::kInstanceGone, VEX_E_OBJECT_GONE}};

}  // namespace

Result CopyProperties(IPropertyCollectionImpl& from, std::u16string_view prefix,
                      IPropertyCollectionImpl& to) try {
  Ref<tIIteratorImpl<IPropertyImpl>> iterator;
  HV_RETURN_IF_FAILED(from.GetIterator(iterator.Put()));
  for (;;) {
    Ref<IPropertyImpl> property;
    HV_RETURN_IF_FAILED(iterator->Next(property.Put()));
    HV_RETURN_CODE_IF(!property, S_OK);
    WString name;
    HV_RETURN_IF_FAILED(property->GetName(&name));
    Variant value;
    HV_RETURN_IF_FAILED(property->GetValue(&value));
    Ref<IPropertyImpl> copy;
    HV_RETURN_IF_FAILED(to.Add(WString(prefix) + name, value, copy.Put()));
  }
}
HV_CATCH_RETURN()

void* CPropertyCollectionImpl::FindFace(const Iid& iid) {
  using Named = INamedCollectionImpl<IPropertyImpl>;
  using Plain = ICollectionImpl<IPropertyImpl>;
  if (iid == Named::kIid) return static_cast<Named*>(this);
  if (iid == Plain::kIid) return static_cast<Plain*>(this);
  return cor::Counted<IPropertyCollectionImpl>::FindFace(iid);
}

bool CPropertyCollectionImpl::IsAllowedName(std::u16string_view /*name*/) const { return false; }

Result CPropertyCollectionImpl::GetNames(const CInstPropNames** names) try {
  HV_RETURN_IF_NULL(names);
  *names = nullptr;
  if (!m_namesRead) {
    m_names.Read(*m_instance);
    m_namesRead = true;
  }
  *names = &m_names;
  return S_OK;
}
HV_CATCH_RETURN_AS(E_INVALIDARG, kReadFailures)

Result CPropertyCollectionImpl::GetItem(std::int32_t index, IPropertyImpl** property) {
  HV_RETURN_IF_NULL(property);
  *property = nullptr;
  const CInstPropNames* names = nullptr;
  HV_RETURN_IF_FAILED(GetNames(&names));
  const WString* name = index < 0 ? nullptr : names->At(static_cast<std::size_t>(index));
  HV_RETURN_CODE_IF(!name, E_INVALIDARG);
  return GetItemByName(*name, property);
}

Result CPropertyCollectionImpl::GetCount(std::int32_t* count) {
  HV_RETURN_IF_NULL(count);
  *count = 0;
  const CInstPropNames* names = nullptr;
  HV_RETURN_IF_FAILED(GetNames(&names));
  *count = static_cast<std::int32_t>(names->Count());
  return S_OK;
}

Result CPropertyCollectionImpl::GetIterator(tIIteratorImpl<IPropertyImpl>** iterator) try {
  HV_RETURN_IF_NULL(iterator);
  *iterator = nullptr;
  *iterator = MakeRef<CPropertyCollectionIteratorImpl>(*this).Detach();
  return S_OK;
}
HV_CATCH_RETURN()

Result CPropertyCollectionImpl::RemoveAt(std::int32_t /*index*/) { return E_NOTIMPL; }
Result CPropertyCollectionImpl::Clear() { return E_NOTIMPL; }
Result CPropertyCollectionImpl::Swap(std::int32_t /*first*/, std::int32_t /*second*/) {
  return E_NOTIMPL;
}

Result CPropertyCollectionImpl::GetItemByName(std::u16string_view name,
                                              IPropertyImpl** property) try {
  HV_RETURN_IF_NULL(property);
  *property = nullptr;
  HV_RETURN_CODE_IF(name.empty(), E_INVALIDARG);
  const auto attribute = Ref<IAttribute>::Adopt(m_instance->GetAttributeValue(name));
  HV_RETURN_CODE_IF(!attribute, E_FAIL);
  const std::uint64_t count = attribute->GetCount();
  const std::int32_t type = attribute->GetDataType();
  HV_RETURN_CODE_IF(!IsPropertyType(type) && !IsAllowedName(name), E_INVALIDARG);
  const Ref<IAttribute> value = attribute.As<IAttribute>();
  HV_RETURN_CODE_IF(!value, E_UNEXPECTED);
  const bool isApplicationProperty = m_instance->GetInstanceAttributeType(name) == eNoType;
  *property = MakeRef<CVEXPropertyImpl>(*m_instance, *value, name, static_cast<enumDataType>(type),
                                        isApplicationProperty, static_cast<std::uint32_t>(count))
                  .Detach();
  return S_OK;
}
HV_CATCH_RETURN_AS(E_INVALIDARG, kReadFailures)

Result CPropertyCollectionImpl::RemoveByName(std::u16string_view /*name*/) { return E_NOTIMPL; }

Result CPropertyCollectionImpl::Exists(std::u16string_view name, bool* exists) {
  HV_RETURN_IF_NULL(exists);
  Ref<IPropertyImpl> property;
  *exists = !Failed(GetItemByName(name, property.Put()));
  return S_OK;
}

Result CPropertyCollectionImpl::Rename(std::u16string_view /*oldName*/,
                                       std::u16string_view /*newName*/, WString* unique) {
  HV_RETURN_IF_NULL(unique);
  unique->clear();
  return E_NOTIMPL;
}

Result CPropertyCollectionImpl::Add(std::u16string_view /*name*/, const Variant& /*value*/,
                                    IPropertyImpl** property) {
  HV_RETURN_IF_NULL(property);
  *property = nullptr;
  return E_NOTIMPL;
}

Result CPropertyCollectionImpl::Remove(std::u16string_view /*name*/) { return E_NOTIMPL; }
Result CPropertyCollectionImpl::RemoveAll() { return E_NOTIMPL; }

Result CPropertyCollectionImpl::AddProperties(IPropertyCollectionImpl* properties,
                                              std::u16string_view prefix) {
  HV_RETURN_IF_NULL(properties);
  return CopyProperties(*properties, prefix, *this);
}

const WString* CPropertyCollectionIteratorImpl::Current(const CInstPropNames& names) {
  const tListInstPropNames& groups = names.Groups();
  while (m_group < groups.size() && m_name >= groups[m_group].size()) {
    ++m_group;
    m_name = 0;
  }
  return m_group < groups.size() ? &groups[m_group][m_name] : nullptr;
}

Result CPropertyCollectionIteratorImpl::Next(IPropertyImpl** property) {
  HV_RETURN_IF_NULL(property);
  *property = nullptr;
  const CInstPropNames* names = nullptr;
  HV_RETURN_IF_FAILED(m_collection->GetNames(&names));
  const WString* name = Current(*names);
  HV_RETURN_CODE_IF(!name, S_FALSE);
  ++m_name;
  return m_collection->GetItemByName(*name, property);
}

Result CPropertyCollectionIteratorImpl::Skip(std::int32_t count) {
  HV_RETURN_CODE_IF(count < 0, E_INVALIDARG);
  const CInstPropNames* names = nullptr;
  HV_RETURN_IF_FAILED(m_collection->GetNames(&names));
  for (; count > 0; --count) {
    HV_RETURN_CODE_IF(!Current(*names), S_FALSE);
    ++m_name;
  }
  return S_OK;
}

Result CPropertyCollectionIteratorImpl::Reset() {
  m_group = 0;
  m_name = 0;
  return S_OK;
}

Result CPropertyCollectionIteratorImpl::Clone(tIIteratorImpl<IPropertyImpl>** iterator) try {
  HV_RETURN_IF_NULL(iterator);
  *iterator = nullptr;
  auto copy = MakeRef<CPropertyCollectionIteratorImpl>(*m_collection);
  copy->m_group = m_group;
  copy->m_name = m_name;
  *iterator = copy.Detach();
  return S_OK;
}
HV_CATCH_RETURN()

}  // namespace hv::vex::easyImpl
