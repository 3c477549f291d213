// elements/VEXPropertyImpl.cpp - a property over a value of the engine.
#include "elements/VEXPropertyImpl.h"

#include <array>

#include "elements/ValueVariant.h"

namespace hv::vex::easyImpl {

namespace {

constexpr std::array kWriteFailures{
    CodeRow{errc::kWriteProtected, E_ACCESSDENIED}, CodeRow{errc::kWrongType, DISP_E_TYPEMISMATCH},
    CodeRow{errc::kInvalidArgument, E_INVALIDARG}, CodeRow{errc::kInstanceGone, VEX_E_OBJECT_GONE}};

}  // namespace

Result CVEXPropertyImpl::GetIsDefault(std::int32_t* isDefault) {
  HV_RETURN_IF_NULL(isDefault);
  *isDefault = m_size == 0 ? 1 : 0;
  return S_OK;
}

Result CVEXPropertyImpl::GetValue(Variant* value) {
  HV_RETURN_IF_NULL(value);
  *value = Variant::Null();
  return m_size == 0 ? S_OK : GetValueAt(0, value);
}

Result CVEXPropertyImpl::GetValueAt(std::int32_t index, Variant* value) try {
  HV_RETURN_IF_NULL(value);
  value->Clear();
  HV_RETURN_CODE_IF(index < 0 || static_cast<std::uint32_t>(index) >= m_size, E_INVALIDARG);
  return ReadValue(*m_value, m_dataType, static_cast<std::uint64_t>(index), value);
}
HV_CATCH_RETURN_AS(E_FAIL, kPropertyReadFailures)

Result CVEXPropertyImpl::GetSize(std::int32_t* size) {
  HV_RETURN_IF_NULL(size);
  *size = static_cast<std::int32_t>(m_size);
  return S_OK;
}

Result CVEXPropertyImpl::SetValueAt(std::int32_t index, const Variant& value) try {
  HV_RETURN_CODE_IF(index < 0, E_INVALIDARG);
  HV_RETURN_CODE_IF(!FitsDataType(value, m_dataType), DISP_E_TYPEMISMATCH);
  HV_RETURN_CODE_IF(m_value->IsWritable() == 0, E_ACCESSDENIED);
  const Result rc = WriteValue(*m_value, m_dataType, static_cast<std::uint64_t>(index), value);
  m_size = static_cast<std::uint32_t>(m_value->GetCount());
  return rc;
}
HV_CATCH_RETURN_AS(E_FAIL, kWriteFailures)

}  // namespace hv::vex::easyImpl
