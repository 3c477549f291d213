// query/objects/StoreModelSource.cpp - the model of a store as the conditions of a query see it.
#include "query/objects/StoreModelSource.h"

#include "automation/Guards.h"
#include "query/values/AttributeDataTypeHelper.h"

#include <utility>

namespace hv::vex {

CStoreModelSource::CStoreModelSource(IStore& store, IBrowseConfig* browseConfig)
    : m_store(Ref<IStore>::Share(&store)),
      m_browseConfig(Ref<IBrowseConfig>::Share(browseConfig)),
      m_names(Ref<IModel>::Adopt(store.GetModel())),
      m_helpers(MakeRef<CDataStoreConfigHelper>(&store)) {}

WString CStoreModelSource::GetStoreName() {
  WString name;
  try {
    m_store->GetName(name);
  } catch (...) {
    name.clear();  // a message goes without it
  }
  return name;
}

const CStoreModelSource::Known& CStoreModelSource::Find(std::u16string_view type,
                                                        std::u16string_view property) {
  const auto found = m_known.find(PropertyKeyView(type, property));
  if (found != m_known.end()) return found->second;
  Known known;
  known.pathFlags = m_names.CheckPath(type, property, m_browseConfig.Get());
  known.isResolved = !Failed(m_names.InternalEntity(type, &known.entityPath)) &&
                     !Failed(m_names.InternalProperty(type, property, &known.internalProperty));
  return m_known.emplace(PropertyKey(type, property), std::move(known)).first->second;
}

bool CStoreModelSource::IsValidType(std::u16string_view type) try {
  return bool(m_names.FindEntity(type));
} catch (...) {
  return false;
}

bool CStoreModelSource::IsValidProperty(std::u16string_view type,
                                        std::u16string_view property) try {
  return Find(type, property).pathFlags == pathflag::kValid;
} catch (...) {
  return false;
}

Result CStoreModelSource::GetTypeHelper(std::u16string_view type, std::u16string_view property,
                                        IAttributeDataTypeHelper** helper) {
  return m_helpers->MakePropertyHelper(type, property, helper);
}

Result CStoreModelSource::GetValueType(std::u16string_view type, std::u16string_view property,
                                       std::int32_t* dataType) {
  HV_RETURN_IF_NULL(dataType);
  *dataType = 0;
  Ref<IAttributeDataTypeHelper> helper;
  HV_RETURN_IF_FAILED(GetTypeHelper(type, property, helper.Put()));
  *dataType = helper->GetDataType();
  return *dataType != 0 ? S_OK : E_INVALIDARG;
}

Result CStoreModelSource::ResolveInternal(std::u16string_view type, std::u16string_view property,
                                          WString* entityPath, WString* internalProperty) try {
  HV_RETURN_CODE_IF(!entityPath || !internalProperty, E_POINTER);
  const Known& known = Find(type, property);
  HV_RETURN_CODE_IF(!known.isResolved, E_INVALIDARG);
  *entityPath = known.entityPath;
  *internalProperty = known.internalProperty;
  return S_OK;
}
HV_CATCH_RETURN()

Result CStoreModelSource::ResolveNames(std::u16string_view path, WString* type,
                                       WString* property) try {
  HV_RETURN_CODE_IF(!type || !property, E_POINTER);
  return m_names.ExternalNames(path, type, property);
}
HV_CATCH_RETURN()

}  // namespace hv::vex
