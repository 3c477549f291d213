// query/objects/StoreModelSource.h - the model of a store as the conditions of a query see it.
#pragma once

#include <map>
#include <string_view>

#include <storefabric/IBrowseConfig.h>
#include <storefabric/Ref.h>
#include <storefabric/WString.h>

#include "cor/Counted.h"
#include "query/conditions/IConditionOwner.h"
#include "query/objects/DataStoreConfigHelper.h"
#include "query/objects/PropertyKey.h"
#include "query/objects/StoreNames.h"
#include "store/core/CoreBinding.h"
#include "store/core/IStore.h"

namespace hv::vex {

/// Looks up every name once, so it stands for one state of the model: a query makes a new one when
/// the model has changed.
class CStoreModelSource final : private CoreBinding, public cor::Counted<IConditionModelSource> {
 public:
  /// Throws what the engine throws. \param browseConfig  may be null
  CStoreModelSource(IStore& store, IBrowseConfig* browseConfig);

  // IConditionModelSource
  WString GetStoreName() override;
  bool IsValidType(std::u16string_view type) override;
  bool IsValidProperty(std::u16string_view type, std::u16string_view property) override;
  Result GetTypeHelper(std::u16string_view type, std::u16string_view property,
                       IAttributeDataTypeHelper** helper) override;
  Result GetValueType(std::u16string_view type, std::u16string_view property,
                      std::int32_t* dataType) override;
  Result ResolveInternal(std::u16string_view type, std::u16string_view property,
                         WString* entityPath, WString* internalProperty) override;
  Result ResolveNames(std::u16string_view path, WString* type, WString* property) override;
  IDisplayNameSource* GetDisplayNameSource() override { return nullptr; }

  [[nodiscard]] const StoreNames& Names() const { return m_names; }

 private:
  ~CStoreModelSource() override = default;

  /// What is known of a property of an entity.
  struct Known {
    std::int32_t pathFlags = pathflag::kUnknown;
    bool isResolved = false;
    WString entityPath;
    WString internalProperty;
  };
  const Known& Find(std::u16string_view type, std::u16string_view property);

  Ref<IStore> m_store;
  Ref<IBrowseConfig> m_browseConfig;
  StoreNames m_names;
  Ref<CDataStoreConfigHelper> m_helpers;
  std::map<PropertyKey, Known, PropertyKeyLess> m_known;
};

}  // namespace hv::vex
