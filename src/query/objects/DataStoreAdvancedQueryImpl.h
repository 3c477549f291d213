// query/objects/DataStoreAdvancedQueryImpl.h - a query that is bound to one store.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/IBrowseConfig.h>
#include <storefabric/Ref.h>
#include <storefabric/WString.h>

#include "cor/Counted.h"
#include "query/conditions/DataStoreConditionCollImpl.h"
#include "query/objects/AdvancedQueryImpl.h"
#include "query/objects/StoreModelSource.h"
#include "store/core/CoreBinding.h"
#include "store/core/IStore.h"

namespace hv::vex {

/// Attached while it has a store. Keeps the names that its user gives and, beside them, internal
/// ones, by which it finds its way in a store whose names are others. Lost its store, it can still
/// be read, and be bound again.
class CDataStoreAdvancedQueryImpl final : private CoreBinding,
                                          public cor::Counted<CAdvancedQueryImpl> {
 public:
  static constexpr Iid kClassIid = MakeIid("hv::vex::CDataStoreAdvancedQueryImpl");

  /// A query for elements of the measurement's type, without conditions. Throws what the engine
  /// throws. \param browseConfig  the path of the session that it is made for; may be null
  CDataStoreAdvancedQueryImpl(IStore& store, IBrowseConfig* browseConfig);
  /// A query that has lost its store.
  CDataStoreAdvancedQueryImpl();

  // IQueryImpl
  bool IsKindOf(enumQueryType type) override { return type == eDataStoreQuery; }

  // IAdvancedQueryImpl
  Result SaveInto(IInstance& manager) override;
  Result LoadFrom(IInstance& query) override;
  Result SetReturnType(std::u16string_view returnType) override;
  Result Detach() override;
  WString GetStoreName() override { return m_storeName; }
  WString PathPrefix(std::u16string_view entity) override;
  std::int32_t SecondUriHook() override { return 0; }
  std::int32_t ReservedHook() override { return 0; }
  bool IsValidReturnType(std::u16string_view entity) override;
  const WString& GetInternalReturnType() override { return m_internalReturnType; }
  bool IsAttached() override { return bool(m_store); }
  Result Reattach(IStore* store, bool remap) override;
  Result CopyFrom(IAdvancedQueryImpl* other) override;
  std::int32_t GetFilterActive() override { return m_filterActive; }
  void SetFilterActive(std::int32_t filterActive) override { m_filterActive = filterActive; }
  easyImpl::CDataStoreConditionCollImpl* GetStoreConditions() override {
    return m_storeConditions.Get();
  }
  Result Sync() override;
  Result CheckSync(std::u16string_view entity) override;
  IStore* GetStore() override { return m_store.Get(); }
  Result MakeEmpty(IAdvancedQueryImpl** query) override;

  // IConditionOwner
  Result CheckModel(std::u16string_view type) override;

  // For the library
  /// True if the query was made for a store of that name and for that path, and the path hasn't
  /// changed since.
  [[nodiscard]] bool IsMadeFor(IStore& store, const IBrowseConfig& browseConfig,
                               std::uint64_t generation);

 private:
  ~CDataStoreAdvancedQueryImpl() override;

  void* FindFace(const Iid& iid) override;
  // IEntityPaths
  WString PathBetween(std::u16string_view from, std::u16string_view to) override;

  /// Knows nothing without a store.
  [[nodiscard]] StoreNames Names() const;
  [[nodiscard]] std::uint64_t ModelCounter() const;
  void ResolveReturnType();

  /// No state of a model has this stamp.
  static constexpr std::uint64_t kNeverSynced = ~std::uint64_t{0};

  Ref<IStore> m_store;
  WString m_storeName;
  WString m_internalReturnType;
  std::int32_t m_filterActive = 0;
  std::uint64_t m_modelStamp = kNeverSynced;
  Ref<IBrowseConfig> m_browseConfig;
  std::uint64_t m_pathGeneration = 0;
  Ref<CStoreModelSource> m_model;
  Ref<easyImpl::CDataStoreConditionCollImpl> m_storeConditions;  // the base's, as what they are
};

/// The body of a store query; null for a query of another kind.
[[nodiscard]] Ref<CDataStoreAdvancedQueryImpl> OwnStoreQuery(IQueryImpl* query);

}  // namespace hv::vex
