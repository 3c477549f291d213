// query/objects/AdvancedQueryImpl.cpp - the part of a query that knows no store.
#include "query/objects/AdvancedQueryImpl.h"

#include "automation/Guards.h"
#include "automation/StringTable.h"
#include "elements/IVEXElementImpl.h"
#include "query/expression/ExpressionText.h"
#include "query/logic/LogicRepair.h"
#include "query/logic/LogicText.h"

namespace hv::vex {

namespace {

constexpr std::int32_t kEnterValue = 5011;
constexpr std::int32_t kEnterProperty = 12005;

/// True for a condition that a user has begun and not finished.
bool IsUnfinished(std::u16string_view valueText) {
  if (valueText.empty()) return true;
  for (const std::int32_t number : {kEnterValue, kEnterProperty}) {
    const WString* const placeholder = automation::StringTable::Default().Find(number);
    if (placeholder && placeholder->EqualsExact(valueText)) return true;
  }
  return false;
}

}  // namespace

bool CAdvancedQueryImpl::IsEmpty() {
  std::int32_t count = 0;
  return Failed(m_conditions->GetCount(&count)) || count == 0;
}

Result CAdvancedQueryImpl::GetConditions(easyImpl::IConditionCollImpl** conditions) {
  return m_conditions.CopyTo(conditions);
}

Result CAdvancedQueryImpl::GetReturnType(WString* returnType) {
  HV_RETURN_IF_NULL(returnType);
  *returnType = m_returnType;
  return S_OK;
}

Result CAdvancedQueryImpl::SetReturnType(std::u16string_view returnType) {
  HV_RETURN_CODE_IF(!IsValidReturnType(returnType), E_INVALIDARG);
  m_returnType = returnType;
  return S_OK;
}

Result CAdvancedQueryImpl::GetExpression(IStoreConfigHelper& config, WString* text) {
  return BuildExpression(m_returnType, text, config, 0);
}

Result CAdvancedQueryImpl::GetExpressionWithReturnType(WString* text, IStoreConfigHelper& config,
                                                       std::int32_t limit) {
  return BuildExpression(m_returnType, text, config, limit);
}

Result CAdvancedQueryImpl::GetExpressionBelow(easyImpl::IVEXElementImpl* element, WString* text,
                                              IStoreConfigHelper& config) {
  return BuildExpressionBelow(element, text, config, nullptr);
}

Result CAdvancedQueryImpl::Reserved(easyImpl::IVEXElementImpl* element, WString* text,
                                    IStoreConfigHelper& config) {
  return GetExpressionBelow(element, text, config);
}

Result CAdvancedQueryImpl::BuildExpression(std::u16string_view returnType, WString* text,
                                           IStoreConfigHelper& config, std::int32_t limit) {
  return Build({.entity = returnType, .freeText = m_freeText, .limit = limit}, config, text);
}

Result CAdvancedQueryImpl::BuildPlainExpression(std::u16string_view returnType, WString* text,
                                                IStoreConfigHelper& config) {
  return Build({.entity = returnType}, config, text);
}

Result CAdvancedQueryImpl::BuildExpressionBelow(easyImpl::IVEXElementImpl* element, WString* text,
                                                IStoreConfigHelper& config,
                                                IIdentifierMapper* mapper) {
  HV_RETURN_IF_NULL(text);
  text->clear();
  HV_RETURN_CODE_IF(!element, E_INVALIDARG);
  WString type;
  HV_RETURN_IF_FAILED(element->GetType(&type));
  return Build({.entity = type, .isBelowElement = true, .mapper = mapper}, config, text);
}

Result CAdvancedQueryImpl::Build(const Frame& frame, IStoreConfigHelper& config, WString* text) {
  HV_RETURN_IF_NULL(text);
  text->clear();
  const Result rc = Write(frame, config, text);
  if (Failed(rc)) *text = FailureText(rc);
  return rc;
}

Result CAdvancedQueryImpl::Write(const Frame& frame, IStoreConfigHelper& config,
                                 WString* text) try {
  HV_RETURN_IF_FAILED(Check(config, frame.isBelowElement));
  AppendHead(*text, frame.entity, {}, frame.limit, frame.freeText);
  ExpressionWriter writer(Source(frame, config));
  if (frame.mapper) {  // may have the body put inside another function
    WString body;
    HV_RETURN_IF_FAILED(writer.WriteLogic(&body, &m_failedCondition));
    *text += body;
  } else {
    HV_RETURN_IF_FAILED(writer.WriteLogic(text, &m_failedCondition));
  }
  AppendTail(*text);
  return S_OK;
}
HV_CATCH_RETURN()

ExpressionSource CAdvancedQueryImpl::Source(const Frame& frame, IStoreConfigHelper& config) {
  return {*m_conditions,        config,       *this,    frame.entity,
          frame.isBelowElement, frame.mapper, m_clock()};
}

Result CAdvancedQueryImpl::WriteGroup(std::span<const LogicToken> tokens, std::size_t* position,
                                      WString* body, IStoreConfigHelper& config,
                                      bool isBelowElement, IIdentifierMapper* mapper) try {
  HV_RETURN_CODE_IF(!position || !body, E_POINTER);
  HV_RETURN_CODE_IF(*position >= tokens.size() || tokens[*position].kind != LogicKind::Open,
                    E_INVALIDARG);
  const Frame frame{.entity = m_returnType, .isBelowElement = isBelowElement, .mapper = mapper};
  return ExpressionWriter(Source(frame, config))
      .WriteGroup(tokens, position, body, &m_failedCondition);
}
HV_CATCH_RETURN()

Result CAdvancedQueryImpl::WriteCondition(easyImpl::IConditionImpl& condition, LogicKind parent,
                                          WString* body, IStoreConfigHelper& config,
                                          bool isBelowElement, IIdentifierMapper* mapper) try {
  HV_RETURN_IF_NULL(body);
  const Frame frame{.entity = m_returnType, .isBelowElement = isBelowElement, .mapper = mapper};
  return ExpressionWriter(Source(frame, config))
      .WriteCondition(condition, parent == LogicKind::TopOr, body);
}
HV_CATCH_RETURN()

Result CAdvancedQueryImpl::WriteFilter(IIdentifierMapper* mapper, LogicKind resultKind,
                                       WString* body) try {
  HV_RETURN_IF_NULL(body);
  ExpressionWriter::WriteFilter(mapper, resultKind == LogicKind::TopOr, body);
  return S_OK;
}
HV_CATCH_RETURN()

Result CAdvancedQueryImpl::CheckCondition(easyImpl::IConditionImpl& condition,
                                          IStoreConfigHelper& config, bool isBelowElement) {
  const WString& type = condition.GetType();
  // Below an element a property that the model doesn't know is one of the instance's own.
  const bool isKnown = isBelowElement
                           ? m_conditions->IsValidType(type)
                           : m_conditions->IsValidProperty(type, condition.GetProperty());
  HV_RETURN_CODE_IF(!isKnown, VEX_E_INVALID_PROPERTY);
  std::int32_t size = 0;
  HV_RETURN_IF_FAILED(condition.GetSize(&size));
  HV_RETURN_CODE_IF(size > 1 && !config.SupportsMultipleValues(), VEX_E_OR_UNSUPPORTED);
  HV_RETURN_CODE_IF(size > 1 && condition.GetOperatorSymbol() != u"=", VEX_E_OR_OPERATOR);
  return S_OK;
}

Result CAdvancedQueryImpl::Check(IStoreConfigHelper& config, bool isBelowElement) try {
  m_failedCondition = 0;
  WString logic = m_conditions->GetLogic();
  HV_RETURN_CODE_IF(!config.SupportsCustomLogic() && !IsPlainAnd(logic, m_conditions->GetNames()),
                    VEX_E_LOGIC_UNSUPPORTED);
  std::int32_t count = 0;
  HV_RETURN_IF_FAILED(m_conditions->GetCount(&count));
  for (std::int32_t i = 0; i < count; ++i) {
    Ref<easyImpl::IConditionImpl> condition;
    HV_RETURN_IF_FAILED(m_conditions->GetItem(i, condition.Put()));
    const Result rc = CheckCondition(*condition, config, isBelowElement);
    if (Failed(rc)) {
      m_failedCondition = static_cast<std::uint32_t>(i) + 1;
      return rc;
    }
    // Only whether anything is left counts here; what is written still has the condition.
    if (IsUnfinished(condition->GetValueText())) RemoveFromLogic(condition->GetName(), logic);
  }
  return logic.empty() ? E_INVALIDARG : S_OK;
}
HV_CATCH_RETURN()

}  // namespace hv::vex
