// query/conditions/ConditionImpl.cpp - the fields of a condition and the rules that tie them.
#include "query/conditions/ConditionImpl.h"

#include <utility>

#include "automation/Guards.h"
#include "automation/StringTable.h"
#include "query/conditions/DateValue.h"
#include "query/logic/LogicRepair.h"
#include "query/values/Operators.h"
#include "query/values/OrList.h"
#include "query/values/ValueFromText.h"

namespace hv::vex::easyImpl {

namespace {

constexpr std::int32_t kTextLanguage = 5000;

}  // namespace

CConditionImpl::CConditionImpl(std::u16string_view type, std::u16string_view property)
    : m_property(property), m_shownProperty(property), m_type(type), m_shownType(type) {}

Result CConditionImpl::SetName(std::u16string_view name) try {
  m_name = name;
  return S_OK;
}
HV_CATCH_RETURN()

WString CConditionImpl::GetOperatorForDisplay() {
  const bool isDate = IsDateType(m_dataType) || (m_propertyObject && m_propertyObject->IsDate()) ||
                      IsDateValue(GetFirstValue());
  return isDate ? OperatorToDisplay(m_operator) : m_operator;
}

Result CConditionImpl::SetOperator(std::u16string_view op) try {
  m_operator = DisplayToOperator(op);
  return S_OK;
}
HV_CATCH_RETURN()

Result CConditionImpl::SetProperty(std::u16string_view property) try {
  m_property = property;
  OnRenamed();
  return S_OK;
}
HV_CATCH_RETURN()

Result CConditionImpl::SetType(std::u16string_view type) try {
  m_type = type;
  OnRenamed();
  return S_OK;
}
HV_CATCH_RETURN()

std::int32_t CConditionImpl::GetEffectiveSize() {
  const auto size = static_cast<std::int32_t>(m_values.size());
  const bool isHidden = m_owner && size > 1 && Failed(m_owner->CheckOperatorForOr(m_operator));
  return isHidden ? 0 : size;
}

Result CConditionImpl::GetSize(std::int32_t* size) {
  HV_RETURN_IF_NULL(size);
  *size = 0;
  HV_RETURN_IF_FAILED(CheckReadable());
  *size = static_cast<std::int32_t>(m_values.size());
  return S_OK;
}

Result CConditionImpl::GetValue(std::int32_t index, Variant* value) try {
  HV_RETURN_IF_NULL(value);
  value->Clear();
  HV_RETURN_IF_FAILED(CheckReadable());
  const auto position = static_cast<std::size_t>(index);
  HV_RETURN_CODE_IF(index < 0 || position >= m_values.size(), E_INVALIDARG);
  // The bounds of a range are values as well, which nobody outside is to take for alternatives.
  const bool isShown = m_values.size() == 1 || m_operator.EqualsExact(u"=");
  if (isShown) *value = m_values[position];
  return S_OK;
}
HV_CATCH_RETURN()

const Variant& CConditionImpl::GetFirstValue() {
  static const Variant none{};
  return m_values.empty() ? none : m_values.front();
}

Result CConditionImpl::CopyValues(std::vector<Variant>* values) try {
  HV_RETURN_IF_NULL(values);
  *values = m_values;
  return S_OK;
}
HV_CATCH_RETURN()

Result CConditionImpl::SetValue(const Variant& value, std::u16string_view text) try {
  return SetValues({value}, text);
}
HV_CATCH_RETURN()

Result CConditionImpl::SetFromText(std::u16string_view text) try {
  WString folded(text);
  FoldKeywords(folded, FoldedKeyword::Or);
  std::vector<Variant> values;
  for (const WString& piece : SplitValues(folded, true, false)) {
    values.push_back(ValueFromText(piece, m_dataType));
  }
  m_valueText = std::move(folded);
  m_values = std::move(values);
  return S_OK;
}
HV_CATCH_RETURN()

Result CConditionImpl::SetValues(std::vector<Variant> values, std::u16string_view text) try {
  m_valueText = text;
  m_values = std::move(values);
  return S_OK;
}
HV_CATCH_RETURN()

Result CConditionImpl::SetDataType(std::int32_t dataType) {
  m_dataType = dataType;
  return S_OK;
}

Result CConditionImpl::SetOrderBy(enumOrderBy /*orderBy*/) { return E_NOTIMPL; }

Result CConditionImpl::ClearOrderBy() { return E_NOTIMPL; }

Result CConditionImpl::ReadOperator(WString* op) try {
  HV_RETURN_IF_NULL(op);
  *op = GetOperatorForDisplay();
  return S_OK;
}
HV_CATCH_RETURN()

Result CConditionImpl::ReadProperty(WString* property) try {
  HV_RETURN_IF_NULL(property);
  *property = m_property;
  return S_OK;
}
HV_CATCH_RETURN()

Result CConditionImpl::ReadType(WString* type) try {
  HV_RETURN_IF_NULL(type);
  *type = m_type;
  return S_OK;
}
HV_CATCH_RETURN()

Result CConditionImpl::ReadEffectiveSize(std::int32_t* size) {
  HV_RETURN_IF_NULL(size);
  *size = GetEffectiveSize();
  return S_OK;
}

Result CConditionImpl::ReadFirstValue(Variant* value) try {
  HV_RETURN_IF_NULL(value);
  *value = GetFirstValue();
  return S_OK;
}
HV_CATCH_RETURN()

void CConditionImpl::RefreshSnapshots() {
  m_shownProperty = m_property;
  m_shownType = m_type;
  if (!m_displayNames) return;
  try {
    WString type;
    WString property;
    const WString language = automation::LoadString(kTextLanguage);
    if (Failed(m_displayNames->GetLocalNames(language, m_type, m_property, &type, &property))) {
      return;
    }
    m_shownProperty = std::move(property);
    m_shownType = std::move(type);
  } catch (const Exception&) {
    // A store that can't tell the names of a language is no reason to refuse a condition.
  }
}

void CConditionImpl::CopyFields(IConditionImpl& source) {
  std::vector<Variant> values;
  (void)source.CopyValues(&values);
  m_operator = source.GetOperatorSymbol();
  m_property = source.GetProperty();
  m_shownProperty = source.GetShownProperty();
  m_type = source.GetType();
  m_shownType = source.GetShownType();
  m_valueText = source.GetValueText();
  m_dataType = source.GetDataType();
  m_values = std::move(values);
  if (source.HasOrderBy()) (void)SetOrderBy(source.GetOrderBy());
}

void CConditionImpl::SetPropertyObject(Ref<IAttributeDataTypeHelper> property) {
  m_propertyObject = std::move(property);
  if (m_propertyObject && m_propertyObject->IsKnown()) {
    m_dataType = m_propertyObject->GetDataType();
  }
}

void CConditionImpl::SetDisplayNameSource(IDisplayNameSource* source) {
  m_displayNames = Ref<IDisplayNameSource>::Share(source);
}

void CConditionImpl::SetTypeAndProperty(WString type, WString property) {
  m_type = std::move(type);
  m_property = std::move(property);
}

}  // namespace hv::vex::easyImpl
