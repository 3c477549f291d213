// store/model/DataStoreModelImpl.h - the data model of a session.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Ref.h>
#include <storefabric/WString.h>

#include "cor/Counted.h"
#include "store/core/CoreBinding.h"
#include "store/core/IStore.h"
#include "store/model/IDataStoreModelImpl.h"

namespace hv::vex {

class CEntityCollImpl;
class CEntityImplCache;

/// Read from the engine when the store is set, and kept: what others add to the model in the
/// meantime is appended.
class CDataStoreModelImpl final : private CoreBinding, public cor::Counted<IDataStoreModelImpl> {
 public:
  CDataStoreModelImpl();

  // IDataStoreModelImpl
  Result GetEntities(IEntityCollImpl** entities) override;
  Result Export(std::u16string_view path) override;
  Result SetStore(IStore* store) override;
  Result GetCache(IEntityImplCache** cache) override;

 private:
  ~CDataStoreModelImpl() override;

  /// Adds what the engine's model has grown by.
  Result Follow();

  WString m_exportPath;  // of the last export, with its extension
  Ref<CEntityCollImpl> m_entities;
  Ref<IStore> m_store;
  Ref<CEntityImplCache> m_cache;
  std::uint64_t m_modelStamp = 0;
};

}  // namespace hv::vex
