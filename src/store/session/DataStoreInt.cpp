// store/session/DataStoreInt.cpp - the automation face of a session.
#include "store/session/DataStoreInt.h"

#include <storefabric/IBrowseSettings.h>
#include <storefabric/IDataStoreContext.h>
#include <storefabric/IDataStoreModel.h>
#include <storefabric/ISVEXQuery.h>
#include <storefabric/IStoreElement.h>

#include "automation/Guards.h"
#include "store/core/IInstList.h"
#include "store/core/IStore.h"
#include "store/model/DataStoreModelInt.h"
#include "store/session/CallArguments.h"
#include "store/session/NotAvailable.h"

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

Result CDataStoreInt::get_RootElements(IStoreElements** elements) { return NotAvailable(elements); }

Result CDataStoreInt::CreateElement(const Variant& entity, const WString& name,
                                    IStoreElement** element) try {
  HV_RETURN_IF_NULL(element);
  *element = nullptr;
  HV_RETURN_CODE_IF(name.empty(), VEX_E_EMPTY_NAME);
  WString entityName;
  HV_RETURN_IF_FAILED(EntityNameOf(entity, &entityName));
  return NotAvailable(element);
}
HV_CATCH_RETURN()

Result CDataStoreInt::GetElementByKey(const WString&, IStoreElement** element) {
  return NotAvailable(element);
}

Result CDataStoreInt::GetElementByDataChannel(IDispatch* channel, IStoreElement** element) try {
  HV_RETURN_IF_NULL(element);
  *element = nullptr;
  HV_RETURN_CODE_IF(!channel, E_INVALIDARG);
  const WString key = InstanceKeyOf(*channel);
  HV_RETURN_CODE_IF(key.empty(), E_INVALIDARG);
  return GetElementByKey(key, element);
}
HV_CATCH_RETURN()

Result CDataStoreInt::GetElementList(const WString&, const WString&, const Variant& odsConform,
                                     IStoreElements** elements) try {
  HV_RETURN_IF_NULL(elements);
  *elements = nullptr;
  bool conform = false;
  HV_RETURN_IF_FAILED(OdsConformOf(odsConform, &conform));
  return NotAvailable(elements);
}
HV_CATCH_RETURN()

Result CDataStoreInt::CreateQuery(ISVEXQuery** query) { return NotAvailable(query); }

Result CDataStoreInt::SaveQuery(IDispatch* query, const WString&) {
  return QueryRef<ISVEXQuery>(query) ? E_NOTIMPL : VEX_E_NOT_STORE_QUERY;
}

Result CDataStoreInt::LoadQuery(const WString&, ISVEXQuery** query) { return NotAvailable(query); }

Result CDataStoreInt::DeleteElement(IDispatch* element) {
  HV_RETURN_CODE_IF(!element, E_UNEXPECTED);
  return QueryRef<IStoreElement>(element) ? E_NOTIMPL : E_INVALIDARG;
}

Result CDataStoreInt::CreateElementsByInstList(IUnknown* instList, IStoreElements** elements) {
  HV_RETURN_IF_NULL(elements);
  *elements = nullptr;
  return QueryRef<IInstList>(instList) ? E_NOTIMPL : E_POINTER;
}

Result CDataStoreInt::get_Results(IStoreElements** results) { return NotAvailable(results); }

Result CDataStoreInt::Search(IDispatch* query) {
  return QueryRef<ISVEXQuery>(query) ? E_NOTIMPL : VEX_E_NOT_STORE_QUERY;
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
  return NotAvailable(settings);
}

Result CDataStoreInt::GetBrowseSettingsInternal(IBrowseSettings** settings) {
  return NotAvailable(settings);
}

Result CDataStoreInt::SetBrowseSettings(IDispatch* settings) {
  HV_RETURN_CODE_IF(!settings, m_session->SetBrowseSettings(nullptr));
  HV_RETURN_CODE_IF(m_session->HasQmdModel(), E_ACCESSDENIED);
  return QueryRef<IBrowseSettings>(settings) ? E_NOTIMPL : E_INVALIDARG;
}

}  // namespace hv::vex
