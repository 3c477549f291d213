// store/properties/StorePropertyImpl.cpp - one property of an element of a store.
#include "store/properties/StorePropertyImpl.h"

#include <array>

#include "elements/ValueVariant.h"

namespace hv::vex {

namespace {

constexpr std::array kWriteFailures{
    CodeRow{errc::kWriteProtected, E_ACCESSDENIED}, CodeRow{errc::kWrongType, VEX_E_VALUE_TYPE},
    CodeRow{errc::kInvalidArgument, E_INVALIDARG}, CodeRow{errc::kInstanceGone, VEX_E_OBJECT_GONE}};

}  // namespace

void* CStorePropertyImpl::FindFace(const Iid& iid) {
  if (iid == easyImpl::IPropertyImpl::kIid) return static_cast<easyImpl::IPropertyImpl*>(this);
  return cor::Counted<IStorePropertyImpl>::FindFace(iid);
}

Result CStorePropertyImpl::Reread() {
  auto value = Ref<IAttribute>::Adopt(m_instance->GetAttributeValue(m_name));
  HV_RETURN_CODE_IF(!value, VEX_E_OBJECT_GONE);
  m_size = static_cast<std::uint32_t>(value->GetCount());
  m_value = std::move(value);
  return S_OK;
}

Result CStorePropertyImpl::GetIsDefault(std::int32_t* isDefault) try {
  HV_RETURN_IF_NULL(isDefault);
  *isDefault = 0;
  HV_RETURN_IF_FAILED(Reread());
  *isDefault = m_size == 0 ? 1 : 0;
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, easyImpl::kPropertyReadFailures)

Result CStorePropertyImpl::GetValue(Variant* value) try {
  HV_RETURN_IF_NULL(value);
  value->Clear();
  ScalarValue scalar;
  if (m_instance->ReadScalar(m_name, &scalar) != 0) return easyImpl::VariantOf(scalar, value);
  HV_RETURN_IF_FAILED(Reread());
  if (m_size == 0) {
    *value = Variant::Null();
    return S_OK;
  }
  return easyImpl::ReadValue(*m_value, m_dataType, 0, value);
}
HV_CATCH_RETURN_AS(E_FAIL, easyImpl::kPropertyReadFailures)

Result CStorePropertyImpl::GetValueAt(std::int32_t index, Variant* value) try {
  HV_RETURN_IF_NULL(value);
  value->Clear();
  HV_RETURN_CODE_IF(index < 0, E_INVALIDARG);
  const auto position = static_cast<std::uint32_t>(index);
  // The record gives a list as a whole, so that a walk through it asks but once.
  if (position == 0 || position >= m_size) HV_RETURN_IF_FAILED(Reread());
  HV_RETURN_CODE_IF(position >= m_size, E_INVALIDARG);
  return easyImpl::ReadValue(*m_value, m_dataType, position, value);
}
HV_CATCH_RETURN_AS(E_FAIL, easyImpl::kPropertyReadFailures)

Result CStorePropertyImpl::GetSize(std::int32_t* size) try {
  HV_RETURN_IF_NULL(size);
  *size = 0;
  HV_RETURN_IF_FAILED(Reread());
  *size = static_cast<std::int32_t>(m_size);
  return S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, easyImpl::kPropertyReadFailures)

Result CStorePropertyImpl::SetValueAt(std::int32_t index, const Variant& value) try {
  HV_RETURN_CODE_IF(index < 0, E_INVALIDARG);
  const Variant& source = value.Dereferenced();
  HV_RETURN_CODE_IF(!easyImpl::FitsDataType(source, m_dataType), VEX_E_VALUE_TYPE);
  HV_RETURN_IF_FAILED(Reread());
  const auto position = static_cast<std::uint32_t>(index);
  const bool isNothing = source.IsEmpty() || source.Is(VT_NULL);
  HV_RETURN_CODE_IF(isNothing && position >= m_size, S_OK);
  HV_RETURN_CODE_IF(m_value->IsWritable() == 0, E_ACCESSDENIED);
  const Result rc = easyImpl::WriteValue(*m_value, m_dataType, position, source);
  m_size = static_cast<std::uint32_t>(m_value->GetCount());
  // The type fits, but not this value: a number beyond its range, an unknown item.
  return rc == DISP_E_TYPEMISMATCH ? VEX_E_VALUE_TYPE : rc;
}
HV_CATCH_RETURN_AS(E_FAIL, kWriteFailures)

}  // namespace hv::vex
