// query/conditions/DataStoreConditionCollImpl.cpp - conditions and the model of their store.
#include "query/conditions/DataStoreConditionCollImpl.h"

#include "automation/Guards.h"
#include "query/values/Operators.h"

namespace hv::vex::easyImpl {

CDataStoreConditionCollImpl::CDataStoreConditionCollImpl(IConditionOwner* owner,
                                                         IConditionModelSource* model)
    : CConditionCollImpl(owner), m_model(Ref<IConditionModelSource>::Share(model)) {}

void* CDataStoreConditionCollImpl::FindFace(const Iid& iid) {
  return iid == kIid ? this : CConditionCollImpl::FindFace(iid);
}

Ref<CConditionImpl> CDataStoreConditionCollImpl::MakeCondition(std::u16string_view type,
                                                               std::u16string_view property) {
  return MakeRef<CDataStoreConditionImpl>(type, property, m_model.Get());
}

std::int32_t CDataStoreConditionCollImpl::TypeOf(std::u16string_view type,
                                                 std::u16string_view property) const {
  Ref<IAttributeDataTypeHelper> helper;
  if (!m_model || Failed(m_model->GetTypeHelper(type, property, helper.Put())) || !helper) {
    return eNoType;
  }
  return helper->GetDataType();
}

bool CDataStoreConditionCollImpl::IsDateProperty(std::u16string_view type,
                                                 std::u16string_view property) {
  return IsDateType(TypeOf(type, property));
}

bool CDataStoreConditionCollImpl::IsValidType(std::u16string_view type) {
  return m_model && m_model->IsValidType(type);
}

bool CDataStoreConditionCollImpl::IsValidProperty(std::u16string_view type,
                                                  std::u16string_view property) {
  return m_model && m_model->IsValidProperty(type, property);
}

bool CDataStoreConditionCollImpl::IsOperatorSupported(std::u16string_view op,
                                                      std::u16string_view type,
                                                      std::u16string_view property) {
  const std::int32_t dataType = TypeOf(type, property);
  if (IsDateType(dataType)) return IsDateOperatorName(op);
  if (IsStringType(dataType)) return IsStringOperator(op);
  return IsSymbolOperator(op) && !IsRelativeOperator(op);
}

WString CDataStoreConditionCollImpl::GetStoreName() {
  return m_model ? m_model->GetStoreName() : WString();
}

Result CDataStoreConditionCollImpl::AddResolved(std::u16string_view name, std::u16string_view type,
                                                std::u16string_view property,
                                                std::u16string_view internalType,
                                                std::u16string_view internalProperty,
                                                std::u16string_view op, const Variant& value,
                                                IConditionImpl** condition) try {
  return Complete(MakeRef<CDataStoreConditionImpl>(type, property, internalType, internalProperty,
                                                   m_model.Get()),
                  name, op, value, condition);
}
HV_CATCH_RETURN()

void CDataStoreConditionCollImpl::Detach() {
  for (std::size_t i = 0; i < Size(); ++i) {
    static_cast<CDataStoreConditionImpl&>(ConditionAt(i)).DetachFromModel();
  }
  m_model.Reset();
  DetachFromOwner();
}

Result CDataStoreConditionCollImpl::Reattach(IConditionOwner* owner, IConditionModelSource* model,
                                             bool remap) {
  HV_RETURN_IF_NULL(owner);
  HV_RETURN_IF_NULL(model);
  SetOwnerQuery(owner);
  m_model = Ref<IConditionModelSource>::Share(model);
  for (std::size_t i = 0; i < Size(); ++i) ConditionAt(i).SetOwner(*this);
  for (std::size_t i = 0; i < Size(); ++i) {
    auto& condition = static_cast<CDataStoreConditionImpl&>(ConditionAt(i));
    HV_RETURN_IF_FAILED(condition.ReattachToModel(model, remap));
  }
  return S_OK;
}

}  // namespace hv::vex::easyImpl
