// query/objects/QueryInt.cpp - queries as hosts see them.
#include "query/objects/QueryInt.h"

#include <storefabric/IDataStore.h>
#include <storefabric/ISVEXConditions.h>

#include "automation/Guards.h"
#include "automation/rows/Query.h"
#include "elements/WrapObject.h"
#include "query/conditions/ConditionCollInt.h"
#include "query/objects/DataStoreAdvancedQueryImpl.h"

#include <string>

namespace hv::vex {

namespace {

using namespace automation;  // NOLINT: the vocabulary of the tables below
using Q = ISVEXQuery;
using S = IDataStoreQuery;

/// By name the property takes a context or none, whatever is done with it. A member has one id, so
/// the one that hosts write by stands under a name of its own.
Result PutQueryString(ISVEXQuery& query, CallFrame&) { return query.put_QueryString({}); }

constexpr auto kQueryRows =
    MakeRows(Method<&Q::IsKindOf>(u"IsKindOf", 1, rows::kQueryIsKindOf),
             Method<&Q::IsEmpty>(u"IsEmpty", 2, rows::kQueryIsEmpty),
             Get<&Q::get_QueryString>(u"QueryString", 200, rows::kQueryQueryString).Optional(1),
             Custom<&PutQueryString>(u"QueryString", 200, CallKind::Put, 1, rows::kQueryQueryString)
                 .Optional(1),
             Method<&Q::put_QueryString>(u"put_QueryString", 201, rows::kQueryQueryString));
constexpr DispatchMap kQueryMap(u"Query", kQueryRows);

constexpr auto kStoreQueryRows =
    MakeRows(Get<&S::get_ReturnType>(u"ReturnType", 100, rows::kStoreQueryReturnType),
             Put<&S::put_ReturnType>(u"ReturnType", 100, rows::kStoreQueryReturnType),
             Get<&S::get_Conditions>(u"Conditions", 101, rows::kStoreQueryConditions),
             Method<&S::Detach>(u"Detach", 103, rows::kStoreQueryDetach));
constexpr DispatchMap kStoreQueryMap(u"DataStoreQuery", kStoreQueryRows, &kQueryMap);

/// The engine's store behind the object that a host has; null for null.
Result StoreOf(IDispatch* context, Ref<IStore>* store) {
  HV_RETURN_CODE_IF(!context, S_OK);
  const auto session = QueryRef<IDataStore>(context);
  HV_RETURN_CODE_IF(!session, E_INVALIDARG);
  Ref<IUnknown> found;
  HV_RETURN_CODE_IF(Failed(session->GetVexStore(found.Put())), E_INVALIDARG);
  *store = found.As<IStore>();
  return *store ? S_OK : E_INVALIDARG;
}

Result QueryStringOf(IAdvancedQueryImpl& query, IDispatch* context, WString* text) try {
  HV_RETURN_IF_NULL(text);
  text->clear();
  Ref<IStore> store;
  HV_RETURN_IF_FAILED(StoreOf(context, &store));
  const auto config = MakeRef<CDataStoreConfigHelper>(store.Get());
  // A query that can't be expressed has no text, and that isn't a failure.
  if (Failed(query.Sync()) || Failed(query.GetExpression(*config, text))) text->clear();
  return S_OK;
}
HV_CATCH_RETURN()

Result Answer(bool answer, bool* out) {
  HV_RETURN_IF_NULL(out);
  *out = answer;
  return S_OK;
}

/// The operator under which a query's condition has values that it can't have.
WString OperatorOfTooMany(easyImpl::IConditionCollImpl& conditions) {
  std::int32_t count = 0;
  if (Failed(conditions.GetCount(&count))) return {};
  for (std::int32_t i = 0; i < count; ++i) {
    Ref<easyImpl::IConditionImpl> condition;
    std::int32_t size = 0;
    if (Failed(conditions.GetItem(i, condition.Put())) || Failed(condition->GetSize(&size))) break;
    if (size > 1 && condition->GetOperatorSymbol() != u"=") {
      return condition->GetOperatorForDisplay();
    }
  }
  return {};
}

}  // namespace

const DispatchMap& CQueryInt::Map() { return kQueryMap; }

Result CQueryInt::IsKindOf(enumQueryType type, bool* isKindOf) {
  return Answer(m_logic->IsKindOf(type), isKindOf);
}

Result CQueryInt::IsEmpty(bool* isEmpty) { return Answer(m_logic->IsEmpty(), isEmpty); }

Result CQueryInt::get_QueryString(IDispatch* context, WString* text) {
  return QueryStringOf(*m_logic, context, text);
}

Result CQueryInt::put_QueryString(const WString&) { return E_NOTIMPL; }

const DispatchMap& CDataStoreQueryInt::Map() { return kStoreQueryMap; }

Result CDataStoreQueryInt::Create(IDispatch** query) try {
  HV_RETURN_IF_NULL(query);
  *query = nullptr;
  *query = MakeRef<CDataStoreQueryInt>(MakeRef<CDataStoreAdvancedQueryImpl>()).Detach();
  return S_OK;
}
HV_CATCH_RETURN()

Result CDataStoreQueryInt::CheckModel() {
  HV_RETURN_IF_FAILED(m_logic->Sync());
  return m_logic->CheckSync(m_logic->GetReturnType());
}

Result CDataStoreQueryInt::IsKindOf(enumQueryType type, bool* isKindOf) {
  return Answer(m_logic->IsKindOf(type), isKindOf);
}

Result CDataStoreQueryInt::IsEmpty(bool* isEmpty) { return Answer(m_logic->IsEmpty(), isEmpty); }

Result CDataStoreQueryInt::get_QueryString(IDispatch* context, WString* text) {
  return QueryStringOf(*m_logic, context, text);
}

Result CDataStoreQueryInt::put_QueryString(const WString&) { return E_NOTIMPL; }

Result CDataStoreQueryInt::get_ReturnType(WString* returnType) {
  HV_RETURN_IF_NULL(returnType);
  returnType->clear();
  HV_RETURN_IF_FAILED(CheckModel());
  return m_logic->GetReturnType(returnType);
}

Result CDataStoreQueryInt::put_ReturnType(const WString& returnType) {
  HV_RETURN_IF_FAILED(CheckModel());
  return m_logic->SetReturnType(returnType);
}

Result CDataStoreQueryInt::get_Conditions(IDataStoreConditions** conditions) {
  HV_RETURN_IF_NULL(conditions);
  *conditions = nullptr;
  HV_RETURN_IF_FAILED(CheckModel());
  return WrapResult<easyImpl::IConditionCollImpl, CDataStoreConditionCollInt>(
      conditions, [&](auto** out) { return m_logic->GetConditions(out); });
}

Result CDataStoreQueryInt::Detach() { return m_logic->Detach(); }

WString CDataStoreQueryInt::GetMessageText(ObjectTextId id) try {
  Ref<easyImpl::IConditionCollImpl> conditions;
  if (Failed(m_logic->GetConditions(conditions.Put()))) return {};
  switch (id) {
    case ObjectTextId::QueryLogic:
      return conditions->GetLogic();
    case ObjectTextId::QueryOperator:
      return OperatorOfTooMany(*conditions);
    case ObjectTextId::LongestValue:
      return cor::FromUtf8(
          std::to_string(MakeRef<CDataStoreConfigHelper>(m_logic->GetStore())->GetLongestValue()));
    default:
      return {};
  }
} catch (...) {
  return {};
}

}  // namespace hv::vex
