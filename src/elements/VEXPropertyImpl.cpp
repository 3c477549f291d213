// elements/VEXPropertyImpl.cpp - a property over a value of the engine.
#include "elements/VEXPropertyImpl.h"

#include <array>

#include "automation/Guards.h"
#include "elements/ValueVariant.h"
#include "store/core/IEntity.h"

namespace hv::vex::easyImpl {

namespace {

constexpr std::array kReadFailures{CodeRow{errc::kInstanceGone, VEX_E_OBJECT_GONE}};
constexpr std::array kWriteFailures{
    CodeRow{errc::kWriteProtected, E_ACCESSDENIED}, CodeRow{errc::kWrongType, DISP_E_TYPEMISMATCH},
    CodeRow{errc::kInvalidArgument, E_INVALIDARG}, CodeRow{errc::kInstanceGone, VEX_E_OBJECT_GONE}};

}  // namespace

CVEXPropertyImpl::CVEXPropertyImpl(IInstance& instance, IAttribute& value, std::u16string_view name,
                                   enumDataType dataType, bool isApplicationProperty,
                                   std::uint32_t size)
    : m_instance(Ref<IInstance>::Share(&instance)),
      m_name(name),
      m_size(size),
      m_isApplicationProperty(isApplicationProperty),
      m_dataType(dataType),
      m_value(Ref<IAttribute>::Share(&value)) {}

Result CVEXPropertyImpl::GetName(WString* name) {
  HV_RETURN_IF_NULL(name);
  *name = m_name;
  return S_OK;
}

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

Result CVEXPropertyImpl::SetValueText(std::u16string_view text) {
  return SetValue(Variant::Text(text));
}

Result CVEXPropertyImpl::SetValue(const Variant& value) { return SetValueAt(0, value); }

Result CVEXPropertyImpl::GetDataType(enumDataType* dataType) {
  HV_RETURN_IF_NULL(dataType);
  *dataType = m_dataType;
  return S_OK;
}

Result CVEXPropertyImpl::GetValueAt(std::int32_t index, Variant* value) try {
  HV_RETURN_IF_NULL(value);
  value->Clear();
  HV_RETURN_CODE_IF(index < 0 || static_cast<std::uint32_t>(index) >= m_size, E_INVALIDARG);
  return ReadValue(*m_value, m_dataType, static_cast<std::uint64_t>(index), value);
}
HV_CATCH_RETURN_AS(E_FAIL, kReadFailures)

Result CVEXPropertyImpl::GetSize(std::int32_t* size) {
  HV_RETURN_IF_NULL(size);
  *size = static_cast<std::int32_t>(m_size);
  return S_OK;
}

Result CVEXPropertyImpl::GetBaseName(WString* baseName) try {
  HV_RETURN_IF_NULL(baseName);
  baseName->clear();
  if (m_isApplicationProperty) {
    const auto entity = Ref<IEntity>::Adopt(m_instance->GetEntity());
    if (entity) entity->GetAttributeBaseName(*baseName, m_name);
  }
  return baseName->empty() ? VEX_E_NOT_BASE_PROPERTY : S_OK;
}
HV_CATCH_RETURN_AS(E_FAIL, kReadFailures)

Result CVEXPropertyImpl::IsInstanceProperty(std::int32_t* isInstanceProperty) {
  HV_RETURN_IF_NULL(isInstanceProperty);
  *isInstanceProperty = m_isApplicationProperty ? 0 : 1;
  return S_OK;
}

Result CVEXPropertyImpl::GetDisplayName(WString* name) { return GetName(name); }

Result CVEXPropertyImpl::SetValueAt(std::int32_t index, const Variant& value) try {
  HV_RETURN_CODE_IF(index < 0, E_INVALIDARG);
  HV_RETURN_CODE_IF(!FitsDataType(value, m_dataType), DISP_E_TYPEMISMATCH);
  HV_RETURN_CODE_IF(m_value->IsWritable() == 0, E_ACCESSDENIED);
  const Result rc = WriteValue(*m_value, m_dataType, static_cast<std::uint64_t>(index), value);
  m_size = static_cast<std::uint32_t>(m_value->GetCount());
  return rc;
}
HV_CATCH_RETURN_AS(E_FAIL, kWriteFailures)

Result CVEXPropertyImpl::GetIsHidden(std::int32_t* isHidden) {
  HV_RETURN_IF_NULL(isHidden);
  *isHidden = IsPropertyType(m_dataType) ? 0 : 1;
  return S_OK;
}

}  // namespace hv::vex::easyImpl
