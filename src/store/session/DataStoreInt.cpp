// store/session/DataStoreInt.cpp - the automation face of a session.
#include "store/session/DataStoreInt.h"

#include <storefabric/IBrowseSettings.h>
#include <storefabric/IDataStoreContext.h>
#include <storefabric/IDataStoreModel.h>
#include <storefabric/ISVEXQuery.h>
#include <storefabric/IStoreElement.h>

#include "automation/Guards.h"
#include "elements/WrapObject.h"
#include "store/core/IInstList.h"
#include "store/core/IStore.h"
#include "store/elements/IStoreElementImpl.h"
#include "store/elements/IStoreElementsImpl.h"
#include "store/elements/StoreElementFactory.h"
#include "store/model/DataStoreModelInt.h"
#include "store/session/CallArguments.h"
#include "store/session/ISessionQueries.h"
#include "store/session/NotAvailable.h"
#include "store/settings/BrowseSettingsInt.h"

namespace hv::vex {

namespace {

constexpr std::int32_t kDefaultContext = 100;

/// The channel's property `InstKey`, read by name: channels of every kind have it. Empty if there
/// is none.
WString InstanceKeyOf(IDispatch& channel) {
  std::int32_t id = kDispIdUnknown;
  Variant value;
  if (Failed(channel.GetIdOfName(u"InstKey", &id))) return {};
  if (Failed(channel.Invoke(id, CallKind::Get | CallKind::Method, {}, &value, nullptr))) return {};
  return TextOr(value, u"");
}

/// The store query that a host handed in, borrowed from its object.
Result StoreQueryOf(IDispatch* query, IAdvancedQueryImpl** logic) {
  if (ISessionQueries* const queries = GetSessionQueries()) return queries->Unwrap(query, logic);
  return QueryRef<ISVEXQuery>(query) ? E_NOTIMPL : VEX_E_NOT_STORE_QUERY;
}

}  // namespace

WString CDataStoreInt::TextForMessage(automation::ObjectTextId) const {
  WString name;
  if (Failed(m_session->GetName(&name))) name.clear();
  return name;
}

Result CDataStoreInt::get_Name(WString* name) { return m_session->GetName(name); }

Result CDataStoreInt::get_PluginName(WString* name) { return m_session->GetPluginName(name); }

Result CDataStoreInt::get_Parameters(WString* parameters) {
  return m_session->GetParameters(parameters);
}

Result CDataStoreInt::get_Model(IDataStoreModel** model) try {
  HV_RETURN_IF_NULL(model);
  *model = nullptr;
  Ref<IDataStoreModelImpl> logic;
  HV_RETURN_IF_FAILED(m_session->GetModel(logic.Put()));
  *model = new CDataStoreModelInt(std::move(logic));
  return S_OK;
}
HV_CATCH_RETURN()

Result CDataStoreInt::get_RootElements(IStoreElements** elements) {
  HV_RETURN_IF_NULL(elements);
  *elements = nullptr;
  Ref<IRootElementsImpl> logic;
  HV_RETURN_IF_FAILED(m_session->GetRootElements(logic.Put()));
  return WrapStoreElements(logic.Get(), elements);
}

Result CDataStoreInt::CreateElement(const Variant& entity, const WString& name,
                                    IStoreElement** element) try {
  HV_RETURN_IF_NULL(element);
  *element = nullptr;
  HV_RETURN_CODE_IF(name.empty(), VEX_E_EMPTY_NAME);
  WString entityName;
  HV_RETURN_IF_FAILED(EntityNameOf(entity, &entityName));
  Ref<IStoreElementImpl> logic;
  HV_RETURN_IF_FAILED(m_session->CreateElement(entityName, name, logic.Put()));
  return WrapStoreElement(logic.Get(), element);
}
HV_CATCH_RETURN()

Result CDataStoreInt::GetElementByKey(const WString& key, IStoreElement** element) {
  HV_RETURN_IF_NULL(element);
  *element = nullptr;
  Ref<IStoreElementImpl> logic;
  HV_RETURN_IF_FAILED(m_session->GetElementByKey(key, logic.Put()));
  return WrapStoreElement(logic.Get(), element);
}

Result CDataStoreInt::GetElementByDataChannel(IDispatch* channel, IStoreElement** element) try {
  HV_RETURN_IF_NULL(element);
  *element = nullptr;
  HV_RETURN_CODE_IF(!channel, E_INVALIDARG);
  const WString key = InstanceKeyOf(*channel);
  HV_RETURN_CODE_IF(key.empty(), E_INVALIDARG);
  Ref<IStoreElementImpl> logic;
  HV_RETURN_IF_FAILED(m_session->GetElementByKey(key, logic.Put()));
  // A channel has its own way to its values.
  return WrapPlainStoreElement(logic.Get(), element);
}
HV_CATCH_RETURN()

Result CDataStoreInt::GetElementList(const WString& returnType, const WString& queryExpression,
                                     const Variant& odsConform, IStoreElementList** elements) try {
  HV_RETURN_IF_NULL(elements);
  *elements = nullptr;
  bool conform = false;
  HV_RETURN_IF_FAILED(OdsConformOf(odsConform, &conform));
  WString expression = queryExpression;
  if (!conform) expression.ReplaceAll(u"*", u"%").ReplaceAll(u"?", u"_");
  Ref<IStoreElementListImpl> list;
  const Result rc = m_session->GetElementList(returnType, expression, conform, list.Put());
  HV_RETURN_IF_FAILED(WrapStoreElementList(list.Get(), elements));
  return rc;
}
HV_CATCH_RETURN()

Result CDataStoreInt::CreateQuery(ISVEXQuery** query) {
  HV_RETURN_CODE_IF(!query || !GetSessionQueries(), NotAvailable(query));
  *query = nullptr;
  IAdvancedQueryImpl* made = nullptr;
  HV_RETURN_IF_FAILED(m_session->CreateQuery(&made));
  return GetSessionQueries()->Wrap(made, query);
}

Result CDataStoreInt::SaveQuery(IDispatch* query, const WString& path) {
  IAdvancedQueryImpl* logic = nullptr;
  HV_RETURN_IF_FAILED(StoreQueryOf(query, &logic));
  return m_session->SaveQuery(logic, path);
}

Result CDataStoreInt::LoadQuery(const WString& path, ISVEXQuery** query) {
  HV_RETURN_CODE_IF(!query || !GetSessionQueries(), NotAvailable(query));
  *query = nullptr;
  IAdvancedQueryImpl* loaded = nullptr;
  HV_RETURN_IF_FAILED(m_session->LoadQuery(&loaded, path));
  return GetSessionQueries()->Wrap(loaded, query);
}

Result CDataStoreInt::DeleteElement(IDispatch* element) {
  HV_RETURN_CODE_IF(!element, E_UNEXPECTED);
  Ref<IStoreElementImpl> logic;
  HV_RETURN_CODE_IF(Failed(StoreElementOf(element, &logic)), E_INVALIDARG);
  return m_session->DeleteElement(logic.Get());
}

Result CDataStoreInt::CreateElementsByInstList(IUnknown* instList, IStoreElementList** elements) {
  HV_RETURN_IF_NULL(elements);
  *elements = nullptr;
  const auto instances = QueryRef<IInstList>(instList);
  Ref<IStoreElementListImpl> list;
  const Result rc = m_session->CreateElementsByInstList(instances.Get(), list.Put());
  HV_RETURN_IF_FAILED(WrapStoreElementList(list.Get(), elements));
  return rc;
}

Result CDataStoreInt::get_Results(IStoreElementList** results) {
  return m_session->GetResults(results);
}

Result CDataStoreInt::Search(IDispatch* query) {
  IAdvancedQueryImpl* logic = nullptr;
  HV_RETURN_IF_FAILED(StoreQueryOf(query, &logic));
  return m_session->Search(logic);
}

Result CDataStoreInt::SearchColumns(IDispatch* query, const Variant& properties, Variant* columns) {
  std::optional<WString> unknown;
  return SearchColumns(query, properties, columns, &unknown);
}

Result CDataStoreInt::SearchColumns(IDispatch* query, const Variant& properties, Variant* columns,
                                    std::optional<WString>* unknown) {
  HV_RETURN_IF_NULL(columns);
  columns->Clear();
  IAdvancedQueryImpl* logic = nullptr;
  HV_RETURN_IF_FAILED(StoreQueryOf(query, &logic));
  return m_session->SearchColumns(logic, properties, columns, unknown);
}

Result CDataStoreInt::GetVexStore(IUnknown** store) {
  HV_RETURN_IF_NULL(store);
  *store = nullptr;
  Ref<IStore> found;
  HV_RETURN_IF_FAILED(m_session->GetCoreStore(found.Put()));
  return found.CopyTo(store);
}

Result CDataStoreInt::Save(const Variant& saveMode) try {
  return m_session->Save(TextOr(saveMode, u""));
}
HV_CATCH_RETURN()

Result CDataStoreInt::Refresh() { return m_session->Refresh(); }

Result CDataStoreInt::IsModified(std::int32_t* modified) {
  HV_RETURN_IF_NULL(modified);
  HV_RETURN_IF_FAILED(m_session->IsModified(modified));
  *modified = *modified != 0 ? 1 : 0;
  return S_OK;
}

Result CDataStoreInt::IsQuerySupported(std::int32_t* supported) {
  HV_RETURN_IF_NULL(supported);
  HV_RETURN_IF_FAILED(m_session->IsQuerySupported(supported));
  *supported = *supported != 0 ? 1 : 0;
  return S_OK;
}

Result CDataStoreInt::GetContext(const Variant& mode, IDataStoreContext** context) try {
  HV_RETURN_IF_NULL(context);
  *context = nullptr;
  IDataStoreContextImpl* none = nullptr;  // the session has no object to give
  return m_session->GetContext(NumberOr(mode, kDefaultContext), &none);
}
HV_CATCH_RETURN()

Result CDataStoreInt::GetBrowseSettings(IBrowseSettings** settings) {
  return WrapResult<IBrowseSettingsImpl, CBrowseSettingsInt>(
      settings, [this](auto** out) { return m_session->GetBrowseSettings(out); });
}

Result CDataStoreInt::GetBrowseSettingsInternal(IBrowseSettings** settings) {
  return WrapResult<IBrowseSettingsImpl, CBrowseSettingsInt>(
      settings, [this](auto** out) { return m_session->GetBrowseSettingsInternal(out); });
}

Result CDataStoreInt::SetBrowseSettings(IDispatch* settings) {
  HV_RETURN_CODE_IF(!settings, m_session->SetBrowseSettings(nullptr));
  // Which object it is makes no difference to a store whose settings are fixed.
  HV_RETURN_CODE_IF(m_session->HasQmdModel(), E_ACCESSDENIED);
  const auto own = QueryRef<easyImpl::ILogicOf<IBrowseSettingsImpl>>(settings);
  return own ? m_session->SetBrowseSettings(&own->GetLogic()) : E_INVALIDARG;
}

}  // namespace hv::vex
