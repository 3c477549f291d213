// store/model/EntityCollImpl.h - a list of entities in the order of the engine.
#pragma once

#include <storefabric/Ref.h>

#include "store/collections/NamedCollectionImpl.h"
#include "store/core/CoreBinding.h"
#include "store/model/IEntityImpl.h"

namespace hv::vex {

class IEntityList;

/// The entities of a model, or the ones that derive from an entity.
class CEntityCollImpl final : private CoreBinding,
                              public easyImpl::tNamedCollectionImpl<IEntityCollImpl> {
 public:
  CEntityCollImpl() = default;

  /// Appends the entities that applications see and keeps the cache alive. An entity that fails is
  /// left out, and the others follow.
  /// \return S_OK; the last failure: E_ACCESSDENIED for a name that is there already, the code of
  ///         an entity that can't be made or of the engine.
  Result Fill(IEntityList& list, IEntityImplCache& cache);
  /// Appends those of the list that have come since.
  /// \return as `Fill`, but a name that is there is no failure
  Result AddNew(IEntityList& list);

 private:
  ~CEntityCollImpl() override = default;

  Result AddEntity(IEntity& coreEntity);

  Ref<IEntityImplCache> m_cache;
};

}  // namespace hv::vex
