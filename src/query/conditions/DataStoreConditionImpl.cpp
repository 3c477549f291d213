// query/conditions/DataStoreConditionImpl.cpp - resolving the names of a condition, and moving it.
#include "query/conditions/DataStoreConditionImpl.h"

#include <utility>

#include "automation/Guards.h"
#include "query/conditions/DateValue.h"
#include "query/values/Operators.h"
#include "query/values/RelativeRange.h"

namespace hv::vex::easyImpl {

namespace {

/// Texts count among the numbers, as they are parsed later.
bool IsNumberOrText(std::uint16_t type) {
  return (type >= VT_I2 && type <= VT_BSTR) || type == VT_BOOL ||
         (type >= VT_I1 && type <= VT_UINT);
}

Ref<IAttributeDataTypeHelper> HelperOf(IConditionModelSource& model, std::u16string_view type,
                                       std::u16string_view property) {
  Ref<IAttributeDataTypeHelper> helper;
  if (Failed(model.GetTypeHelper(type, property, helper.Put()))) helper.Reset();
  return helper;
}

}  // namespace

CDataStoreConditionImpl::CDataStoreConditionImpl(std::u16string_view type,
                                                 std::u16string_view property,
                                                 IConditionModelSource* model)
    : CConditionImpl(type, property) {
  TakeModel(model);
  ResolveOrKeep();
  RefreshSnapshots();
}

CDataStoreConditionImpl::CDataStoreConditionImpl(std::u16string_view type,
                                                 std::u16string_view property,
                                                 std::u16string_view internalType,
                                                 std::u16string_view internalProperty,
                                                 IConditionModelSource* model)
    : CConditionImpl(type, property),
      m_internalType(internalType),
      m_internalProperty(internalProperty) {
  TakeModel(model);
  if (m_model) SetPropertyObject(HelperOf(*m_model, type, property));
  RefreshSnapshots();
}

void* CDataStoreConditionImpl::FindFace(const Iid& iid) {
  return iid == kIid ? this : CConditionImpl::FindFace(iid);
}

void CDataStoreConditionImpl::TakeModel(IConditionModelSource* model) {
  m_model = Ref<IConditionModelSource>::Share(model);
  SetDisplayNameSource(model ? model->GetDisplayNameSource() : nullptr);
}

void CDataStoreConditionImpl::ResolveOrKeep() {
  const bool isResolved =
      m_model && !Failed(m_model->ResolveInternal(GetType(), GetProperty(), &m_internalType,
                                                  &m_internalProperty));
  if (!isResolved) {
    m_internalType = GetType();
    m_internalProperty = GetProperty();
  }
  if (m_model) SetPropertyObject(HelperOf(*m_model, GetType(), GetProperty()));
}

void CDataStoreConditionImpl::OnRenamed() {
  ResolveOrKeep();
  CConditionImpl::OnRenamed();
}

Result CDataStoreConditionImpl::CheckReadable() {
  return Owner() ? Owner()->CheckModel(GetType()) : S_OK;
}

void CDataStoreConditionImpl::CopyFields(IConditionImpl& source) {
  CConditionImpl::CopyFields(source);
  m_internalType = source.GetInternalType();
  m_internalProperty = source.GetInternalProperty();
  if (!m_model) return;
  SetPropertyObject(HelperOf(*m_model, GetType(), GetProperty()));
  (void)SetDataType(source.GetDataType());
}

void CDataStoreConditionImpl::DetachFromModel() { TakeModel(nullptr); }

Result CDataStoreConditionImpl::ReattachToModel(IConditionModelSource* model, bool remap) try {
  HV_RETURN_IF_NULL(model);
  TakeModel(model);
  WString type = GetType();
  WString property = GetProperty();
  if (remap) {
    const WString path = m_internalType + u"." + m_internalProperty;
    HV_RETURN_CODE_IF(Failed(model->ResolveNames(path, &type, &property)), E_UNEXPECTED);
  }
  WString internalType;
  WString internalProperty;
  HV_RETURN_CODE_IF(
      Failed(model->ResolveInternal(type, property, &internalType, &internalProperty)),
      VEX_E_OTHER_STORE);
  std::int32_t dataType = eNoType;
  const bool hasType = !Failed(model->GetValueType(type, property, &dataType));
  HV_RETURN_CODE_IF(!hasType || !FitsFirstValue(dataType), VEX_E_OTHER_STORE);
  SetPropertyObject(HelperOf(*model, type, property));
  SetTypeAndProperty(std::move(type), std::move(property));
  m_internalType = std::move(internalType);
  m_internalProperty = std::move(internalProperty);
  RefreshSnapshots();
  return S_OK;
}
HV_CATCH_RETURN()

bool CDataStoreConditionImpl::FitsFirstValue(std::int32_t dataType) {
  const Variant& value = GetFirstValue();
  if (dataType == eString) return value.Is(VT_BSTR);
  if (IsDateType(dataType)) {
    // A date as a script gives it is as good as a time object, and a range is told by its keyword.
    const bool isRange = GetOperatorSymbol().EqualsExact(u"#") && value.Is(VT_BSTR);
    return isRange ? IsRelativeKeyword(value.AsText()) : IsDateValue(value);
  }
  const bool isNumber = dataType >= eI8 && dataType <= eR64;
  return (isNumber || dataType == kTypeEnumeration) && IsNumberOrText(value.Type());
}

}  // namespace hv::vex::easyImpl
