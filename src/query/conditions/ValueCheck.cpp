// query/conditions/ValueCheck.cpp - the check of operator and value, in its order.
#include "query/conditions/ValueCheck.h"

#include <utility>

#include "automation/Guards.h"
#include "query/conditions/DateValue.h"
#include "query/values/Operators.h"
#include "query/values/OrList.h"
#include "query/values/RelativeRange.h"

namespace hv::vex::easyImpl {

namespace {

bool IsArray(const Variant& value) { return (value.Type() & VT_ARRAY) != 0; }

Result CheckArray(std::u16string_view op, const std::vector<Variant>& elements,
                  CheckedValue* checked) {
  for (const Variant& item : elements) {
    const Variant& element = item.Dereferenced();
    HV_RETURN_CODE_IF(IsArray(element), VEX_E_VALUE_DIMENSIONS);
    WString text;
    HV_RETURN_CODE_IF(Failed(TextOfConditionValue(element, op, &text)), VEX_E_VALUE_TYPE);
    if (&item != &elements.front()) checked->text += u" OR ";
    checked->text += EscapeValue(text);
  }
  checked->value = Variant::Text(checked->text.view());
  if (elements.size() > 1) {
    for (const Variant& item : elements) checked->values.push_back(item.Dereferenced());
  }
  return S_OK;
}

Result CheckPlain(IConditionCollImpl& conditions, std::u16string_view op, const Variant& value,
                  CheckedValue* checked) {
  const Result orResult = conditions.CheckOperatorForOr(op);
  if (IsArray(value)) {
    HV_RETURN_IF_FAILED(orResult);
    return CheckArray(op, value.AsArray(), checked);
  }
  WString text;
  HV_RETURN_CODE_IF(Failed(TextOfConditionValue(value, op, &text)), E_INVALIDARG);
  if (HasOr(text)) HV_RETURN_IF_FAILED(orResult);
  checked->value = value;
  return S_OK;
}

Result CheckDate(IConditionCollImpl& conditions, std::u16string_view op, const Variant& value,
                 CheckedValue* checked) {
  checked->value = value;
  if (!IsRelativeOperator(op)) return conditions.NormaliseDateValue(&checked->value);
  const bool isRange = value.Is(VT_BSTR) && IsRelativeKeyword(value.AsText());
  return isRange ? S_OK : VEX_E_BAD_VALUE;
}

}  // namespace

Result CheckValue(IConditionCollImpl& conditions, std::u16string_view type,
                  std::u16string_view property, std::u16string_view op, const Variant& given,
                  CheckedValue* checked) {
  const Variant& value = given.Dereferenced();
  const bool isDate = conditions.IsDateProperty(type, property);
  const WString tested = isDate ? OperatorToDisplay(op) : WString(op);
  HV_RETURN_CODE_IF(!conditions.IsOperatorSupported(tested, type, property), VEX_E_BAD_OPERATOR);
  return isDate ? CheckDate(conditions, op, value, checked)
                : CheckPlain(conditions, op, value, checked);
}

}  // namespace hv::vex::easyImpl
