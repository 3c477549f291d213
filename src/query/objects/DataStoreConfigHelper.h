// query/objects/DataStoreConfigHelper.h - what the writer of query expressions asks a store.
#pragma once

#include <map>
#include <string_view>

#include <storefabric/Ref.h>
#include <storefabric/WString.h>

#include "cor/Counted.h"
#include "query/expression/IStoreConfigHelper.h"
#include "query/objects/PropertyKey.h"
#include "store/core/CoreBinding.h"
#include "store/core/IModel.h"
#include "store/core/IStore.h"

namespace hv::vex {

class CEntityImplCache;

/// Made for one expression: what it has found out of a property it keeps.
class CDataStoreConfigHelper final : private CoreBinding, public cor::Counted<IStoreConfigHelper> {
 public:
  /// \param store  null for answers that know no store; kept. Throws what the engine throws.
  explicit CDataStoreConfigHelper(IStore* store);

  // IStoreConfigHelper
  bool HasStore() override { return bool(m_store); }
  bool SupportsCustomLogic() override;
  bool SupportsMultipleValues() override;
  std::uint64_t GetLongestValue() override;
  Result MakePropertyHelper(std::u16string_view type, std::u16string_view property,
                            IAttributeDataTypeHelper** helper) override;

 private:
  ~CDataStoreConfigHelper() override;

  Ref<IAttributeDataTypeHelper> Make(std::u16string_view type, std::u16string_view property);

  Ref<IStore> m_store;
  Ref<IModel> m_model;
  Ref<CEntityImplCache> m_entities;
  std::map<PropertyKey, Ref<IAttributeDataTypeHelper>, PropertyKeyLess> m_helpers;
};

}  // namespace hv::vex
