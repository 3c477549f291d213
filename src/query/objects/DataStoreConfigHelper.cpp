// query/objects/DataStoreConfigHelper.cpp - what the writer of query expressions asks a store.
#include "query/objects/DataStoreConfigHelper.h"

#include "automation/Guards.h"
#include "query/objects/AttributePath.h"
#include "query/objects/StoreNames.h"
#include "query/values/AttributeDataTypeHelper.h"
#include "store/model/EntityImplCache.h"

#include <utility>

namespace hv::vex {

CDataStoreConfigHelper::CDataStoreConfigHelper(IStore* store)
    : m_store(Ref<IStore>::Share(store)),
      m_model(Ref<IModel>::Adopt(store ? store->GetModel() : nullptr)),
      m_entities(MakeRef<CEntityImplCache>()) {}

CDataStoreConfigHelper::~CDataStoreConfigHelper() = default;

bool CDataStoreConfigHelper::SupportsCustomLogic() {
  return !m_model || m_model->SupportsCustomLogic() != 0;
}

bool CDataStoreConfigHelper::SupportsMultipleValues() {
  return !m_model || m_model->SupportsMultipleValues() != 0;
}

std::uint64_t CDataStoreConfigHelper::GetLongestValue() {
  return m_model ? m_model->GetLongestValue() : 0;
}

Ref<IAttributeDataTypeHelper> CDataStoreConfigHelper::Make(std::u16string_view type,
                                                           std::u16string_view property) {
  const Ref<IEntity> start = StoreNames(m_model).FindEntity(type);
  AttributePathInfo path;
  if (!start || Failed(path.Parse(*start, property, true))) {
    return MakeRef<CDSAttributeDataTypeHelper>(nullptr, property);
  }
  Ref<IEntityImpl> entity;
  if (Failed(m_entities->GetOrCreate(&path.Target(), entity.Put()))) entity.Reset();
  return MakeRef<CDSAttributeDataTypeHelper>(entity.Get(), path.Property());
}

Result CDataStoreConfigHelper::MakePropertyHelper(std::u16string_view type,
                                                  std::u16string_view property,
                                                  IAttributeDataTypeHelper** helper) try {
  HV_RETURN_IF_NULL(helper);
  *helper = nullptr;
  auto found = m_helpers.find(PropertyKeyView(type, property));
  if (found == m_helpers.end()) {
    found = m_helpers.emplace(PropertyKey(type, property), Make(type, property)).first;
  }
  return found->second.CopyTo(helper);
}
HV_CATCH_RETURN()

}  // namespace hv::vex
