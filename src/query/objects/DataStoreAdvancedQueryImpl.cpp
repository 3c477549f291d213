// query/objects/DataStoreAdvancedQueryImpl.cpp - a query that is bound to one store.
#include "query/objects/DataStoreAdvancedQueryImpl.h"

#include "automation/Guards.h"
#include "query/objects/QueryLayout.h"
#include "store/core/IStoreQuery.h"

#include <utility>

namespace hv::vex {

namespace {

constexpr std::u16string_view kMeasurement = u"AoMeasurement";
constexpr std::u16string_view kMeasurementBase = u"aomeasurement";

}  // namespace

CDataStoreAdvancedQueryImpl::CDataStoreAdvancedQueryImpl(IStore& store, IBrowseConfig* browseConfig)
    : m_store(Ref<IStore>::Share(&store)),
      m_browseConfig(Ref<IBrowseConfig>::Share(browseConfig)),
      m_pathGeneration(browseConfig ? browseConfig->GetGeneration() : 0),
      m_model(MakeRef<CStoreModelSource>(store, browseConfig)) {
  store.GetName(m_storeName);
  m_returnType = Names().ApplicationName(kMeasurementBase, kMeasurement);
  ResolveReturnType();
  m_modelStamp = ModelCounter();
  m_storeConditions = MakeRef<easyImpl::CDataStoreConditionCollImpl>(this, m_model.Get());
  m_conditions = m_storeConditions;
}

CDataStoreAdvancedQueryImpl::CDataStoreAdvancedQueryImpl() {
  m_returnType = kMeasurement;
  m_internalReturnType = kMeasurement;
  m_storeConditions = MakeRef<easyImpl::CDataStoreConditionCollImpl>(this, nullptr);
  m_conditions = m_storeConditions;
}

CDataStoreAdvancedQueryImpl::~CDataStoreAdvancedQueryImpl() {
  if (m_conditions) m_conditions->DetachFromOwner();
}

void* CDataStoreAdvancedQueryImpl::FindFace(const Iid& iid) {
  if (iid == kClassIid) return this;
  if (iid == IQueryImpl::kIid) return static_cast<IQueryImpl*>(this);
  return Counted::FindFace(iid);
}

Ref<CDataStoreAdvancedQueryImpl> OwnStoreQuery(IQueryImpl* query) {
  void* own = nullptr;
  if (!query || Failed(query->QueryInterface(CDataStoreAdvancedQueryImpl::kClassIid, &own))) {
    return {};
  }
  return Ref<CDataStoreAdvancedQueryImpl>::Adopt(static_cast<CDataStoreAdvancedQueryImpl*>(own));
}

StoreNames CDataStoreAdvancedQueryImpl::Names() const {
  return m_model ? m_model->Names() : StoreNames();
}

std::uint64_t CDataStoreAdvancedQueryImpl::ModelCounter() const {
  IModel* const model = m_model ? m_model->Names().Model() : nullptr;
  return model ? model->GetChangeCounter() : 0;
}

void CDataStoreAdvancedQueryImpl::ResolveReturnType() {
  if (Failed(Names().InternalEntity(m_returnType, &m_internalReturnType))) {
    m_internalReturnType = m_returnType;
  }
}

Result CDataStoreAdvancedQueryImpl::SetReturnType(std::u16string_view returnType) try {
  HV_RETURN_IF_FAILED(CAdvancedQueryImpl::SetReturnType(returnType));
  ResolveReturnType();
  return S_OK;
}
HV_CATCH_RETURN()

bool CDataStoreAdvancedQueryImpl::IsValidReturnType(std::u16string_view entity) {
  return m_model && m_model->IsValidType(entity);
}

WString CDataStoreAdvancedQueryImpl::PathBetween(std::u16string_view from, std::u16string_view to) {
  WString path;
  if (Failed(Names().FindPath(from, to, &path))) path.clear();
  return path;
}

WString CDataStoreAdvancedQueryImpl::PathPrefix(std::u16string_view entity) try {
  return PathBetween(m_returnType, entity);
} catch (...) {
  return {};
}

Result CDataStoreAdvancedQueryImpl::Detach() {
  HV_RETURN_CODE_IF(!m_store, E_UNEXPECTED);
  m_storeConditions->Detach();
  m_model.Reset();
  m_browseConfig.Reset();
  m_store.Reset();
  return S_OK;
}

Result CDataStoreAdvancedQueryImpl::Reattach(IStore* store, bool remap) try {
  HV_RETURN_CODE_IF(!store || !QueryRef<IStoreQuery>(store), E_INVALIDARG);
  if (m_store.Get() != store) m_browseConfig.Reset();
  m_store = Ref<IStore>::Share(store);
  m_modelStamp = kNeverSynced;
  m_model = MakeRef<CStoreModelSource>(*store, m_browseConfig.Get());
  store->GetName(m_storeName);
  WString returnType;
  HV_RETURN_CODE_IF(Failed(Names().ExternalEntity(m_internalReturnType, &returnType)),
                    VEX_E_OTHER_STORE);
  HV_RETURN_IF_FAILED(SetReturnType(returnType));
  HV_RETURN_IF_FAILED(m_storeConditions->Reattach(this, m_model.Get(), remap));
  m_modelStamp = ModelCounter();
  m_pathGeneration = m_browseConfig ? m_browseConfig->GetGeneration() : 0;
  return S_OK;
}
HV_CATCH_RETURN()

Result CDataStoreAdvancedQueryImpl::Sync() try {
  HV_RETURN_CODE_IF(!m_store, S_OK);
  const std::uint64_t counter = ModelCounter();
  HV_RETURN_CODE_IF(counter == m_modelStamp, S_OK);
  m_model = MakeRef<CStoreModelSource>(*m_store, m_browseConfig.Get());
  WString returnType;
  HV_RETURN_CODE_IF(Failed(Names().ExternalEntity(m_internalReturnType, &returnType)),
                    VEX_E_OTHER_STORE);
  HV_RETURN_IF_FAILED(SetReturnType(returnType));
  HV_RETURN_IF_FAILED(m_storeConditions->Reattach(this, m_model.Get(), false));
  m_modelStamp = counter;
  return S_OK;
}
HV_CATCH_RETURN()

Result CDataStoreAdvancedQueryImpl::CheckSync(std::u16string_view entity) try {
  HV_RETURN_CODE_IF(!m_store || ModelCounter() == m_modelStamp, S_OK);
  return StoreNames(Ref<IModel>::Adopt(m_store->GetModel())).FindEntity(entity)
             ? S_OK
             : VEX_E_QUERY_BROWSE_PATH;
}
HV_CATCH_RETURN()

Result CDataStoreAdvancedQueryImpl::CheckModel(std::u16string_view type) { return CheckSync(type); }

Result CDataStoreAdvancedQueryImpl::CopyFrom(IAdvancedQueryImpl* other) {
  HV_RETURN_CODE_IF(!other, E_INVALIDARG);
  Ref<easyImpl::IConditionCollImpl> conditions;
  HV_RETURN_IF_FAILED(other->GetConditions(conditions.Put()));
  HV_RETURN_IF_FAILED(m_conditions->AssignFrom(*conditions));
  m_returnType = other->GetReturnType();
  m_internalReturnType = other->GetInternalReturnType();
  m_filterActive = other->GetFilterActive();
  return S_OK;
}

Result CDataStoreAdvancedQueryImpl::MakeEmpty(IAdvancedQueryImpl** query) try {
  HV_RETURN_IF_NULL(query);
  *query = nullptr;
  HV_RETURN_CODE_IF(!m_store, VEX_E_NO_STORE);
  *query = MakeRef<CDataStoreAdvancedQueryImpl>(*m_store, m_browseConfig.Get()).Detach();
  return S_OK;
}
HV_CATCH_RETURN()

bool CDataStoreAdvancedQueryImpl::IsMadeFor(IStore& store, const IBrowseConfig& browseConfig,
                                            std::uint64_t generation) {
  WString name;
  store.GetName(name);
  return m_store && m_browseConfig.Get() == &browseConfig && m_pathGeneration == generation &&
         m_storeName.EqualsExact(name);
}

Result CDataStoreAdvancedQueryImpl::SaveInto(IInstance& manager) {
  return SaveQueryInto(*this, manager);
}

Result CDataStoreAdvancedQueryImpl::LoadFrom(IInstance& query) {
  return LoadQueryFrom(query, *this);
}

}  // namespace hv::vex
