// query/files/QueryLayout.cpp - the instances of a query, written in a fixed order, and read back.
#include "query/objects/QueryLayout.h"

#include "automation/Guards.h"
#include "query/conditions/DataStoreConditionCollImpl.h"
#include "query/conditions/DateValue.h"
#include "query/conditions/LogicNames.h"
#include "query/files/QueryDocument.h"
#include "query/files/StoredValue.h"
#include "query/objects/IAdvancedQueryImpl.h"
#include "query/objects/StoreNames.h"
#include "query/values/AttributeDataTypeHelper.h"
#include "query/values/Operators.h"
#include "query/values/OrList.h"
#include "query/values/RelativeRange.h"
#include "store/core/IContainer.h"
#include "store/core/IInstList.h"
#include "store/core/IInstance.h"
#include "store/core/IStore.h"

#include <utility>

namespace hv::vex {

namespace {

using com::cErrCode;
using easyImpl::CDataStoreConditionCollImpl;
using easyImpl::IConditionCollImpl;
using easyImpl::IConditionImpl;

constexpr std::u16string_view kConditions = u"conditions";
constexpr std::u16string_view kAsEntity = u"as_entity";
/// Old files give this name to every condition.
constexpr std::u16string_view kNoName = u"condition";

/// Content that the store can't take: the whole query is refused, and told so in one message.
void Require(bool holds) {
  if (!holds) throw cErrCode::eBadQueryContent;
}

void SaveCondition(IConditionCollImpl& conditions, IConditionImpl& condition, IInstance& stored) {
  const Ref<IContainer> values = QueryRef<IContainer>(&stored);
  const WString shownOperator = condition.GetOperatorForDisplay();
  const WString& symbol = condition.GetOperatorSymbol();
  const Variant& first = condition.GetFirstValue();
  const bool dateLike = IsDateValue(first) || IsRelativeOperator(symbol) ||
                        IsDateOperatorName(shownOperator) ||
                        conditions.IsDateProperty(condition.GetType(), condition.GetProperty());
  const StoredValue value = StoreValue(first, symbol, dateLike);
  values->SetString(u"name", condition.GetName());
  values->SetString(u"property", condition.GetInternalProperty());
  values->SetString(u"type", kAsEntity);
  values->SetString(u"type_name", condition.GetInternalType());
  values->SetString(u"operator", OperatorToFileName(shownOperator));
  values->SetString(u"value", value.text);
  // A range is stored by its keyword and shown by its name, whichever of them the condition holds.
  values->SetString(u"values", IsRelativeOperator(symbol)
                                   ? KeywordToLocalName(condition.GetValueText())
                                   : condition.GetValueText());
  values->SetInteger(u"datatype", value.dataType);
}

/// The name under which a stored condition is added; empty if it needs a new one.
WString NameFor(IConditionCollImpl& conditions, WString stored) {
  if (stored == kNoName || !IsLogicName(stored)) return {};
  bool isTaken = false;
  Require(!Failed(conditions.Exists(stored, &isTaken)));
  return isTaken ? WString() : std::move(stored);
}

WString TextAt(IContainer& values, std::u16string_view name) {
  WString text;
  values.GetString(text, name);
  return text;
}

void LoadCondition(CDataStoreConditionCollImpl& conditions, IInstance& stored) {
  const Ref<IContainer> values = QueryRef<IContainer>(&stored);
  const WString op = FileNameToOperator(TextAt(*values, u"operator"));
  const WString path = TextAt(*values, u"type_name") + u"." + TextAt(*values, u"property");
  IConditionModelSource& model = *conditions.GetModel();
  WString type;
  WString property;
  WString internalType;
  WString internalProperty;
  Require(!Failed(model.ResolveNames(path, &type, &property)));
  Require(!Failed(model.ResolveInternal(type, property, &internalType, &internalProperty)));
  Require(model.IsValidProperty(type, property));
  Ref<IAttributeDataTypeHelper> helper;
  Require(!Failed(model.GetTypeHelper(type, property, helper.Put())));

  const StoredValue first{TextAt(*values, u"value"),
                          static_cast<std::int32_t>(values->GetInteger64(u"datatype", 0))};
  const WString all = TextAt(*values, u"values");
  const WString name = NameFor(conditions, TextAt(*values, u"name"));
  Variant value = LoadValue(first, op, helper->GetDataType());
  // The first value stands alone here, while texts for conditions join several.
  if (value.Is(VT_BSTR)) value = Variant::Text(EscapeValue(value.AsText()));
  Ref<IConditionImpl> condition;
  Require(!Failed(conditions.AddResolved(name, type, property, internalType, internalProperty, op,
                                         value, condition.Put())));
  if (HasOr(all)) Require(!Failed(condition->SetFromText(all)));
}

}  // namespace

Result SaveQueryInto(IAdvancedQueryImpl& query, IInstance& manager) try {
  Ref<IConditionCollImpl> conditions;
  HV_RETURN_IF_FAILED(query.GetConditions(conditions.Put()));
  const auto stored = Ref<IInstance>::Adopt(manager.CreateRelated(querydoc::kQueries));
  const Ref<IContainer> values = stored.As<IContainer>();
  values->SetString(u"returntype", kAsEntity);
  values->SetString(u"returntype_name", query.GetInternalReturnType());
  values->SetBoolean(u"filterActive", query.GetFilterActive());
  values->SetString(u"logic", conditions->GetLogic());
  std::int32_t count = 0;
  HV_RETURN_IF_FAILED(conditions->GetCount(&count));
  for (std::int32_t i = 0; i < count; ++i) {
    Ref<IConditionImpl> condition;
    HV_RETURN_IF_FAILED(conditions->GetItem(i, condition.Put()));
    const auto place = Ref<IInstance>::Adopt(stored->CreateRelated(kConditions));
    SaveCondition(*conditions, *condition, *place);
  }
  return S_OK;
}
HV_CATCH_RETURN()

Result LoadQueryFrom(IInstance& stored, IAdvancedQueryImpl& query) try {
  CDataStoreConditionCollImpl* const conditions = query.GetStoreConditions();
  HV_RETURN_CODE_IF(!conditions || !query.GetStore() || !conditions->GetModel(), VEX_E_NO_STORE);
  const Ref<IContainer> values = QueryRef<IContainer>(&stored);
  const WString internal = TextAt(*values, u"returntype_name");
  WString returnType;
  const StoreNames names(Ref<IModel>::Adopt(query.GetStore()->GetModel()));
  if (Failed(names.ExternalEntity(internal, &returnType))) returnType = internal;
  Require(!Failed(query.SetReturnType(returnType)));
  query.SetFilterActive(values->GetBoolean(u"filterActive", 0));
  HV_RETURN_IF_FAILED(conditions->Clear());
  const auto list = Ref<IInstList>::Adopt(stored.GetRelated(kConditions));
  while (const auto next = Ref<IInstance>::Adopt(list->Next())) {
    LoadCondition(*conditions, *next);
  }
  const WString logic = TextAt(*values, u"logic");
  // A logic that doesn't hold any more is no reason to lose the conditions: they are joined by AND.
  if (Failed(conditions->SetLogic(logic)) && !logic.empty()) {
    HV_RETURN_IF_FAILED(conditions->SetLogic({}));
  }
  return S_OK;
}
HV_CATCH_RETURN_AS(VEX_E_BAD_FILE)

}  // namespace hv::vex
