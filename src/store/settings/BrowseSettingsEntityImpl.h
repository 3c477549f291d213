// store/settings/BrowseSettingsEntityImpl.h - one level of a browse path.
#pragma once

#include <storefabric/IBrowseConfig.h>
#include <storefabric/Ref.h>

#include "cor/Counted.h"
#include "store/core/CoreBinding.h"
#include "store/model/IEntityImpl.h"
#include "store/settings/IBrowseSettingsImpl.h"

namespace hv::vex {

/// Made anew whenever a level is given out.
class CBrowseSettingsEntityImpl final : private CoreBinding,
                                        public cor::Counted<IBrowseEntityImpl> {
 public:
  CBrowseSettingsEntityImpl(Ref<IBrowseConfigEntity> entity, Ref<IEntityImplCache> cache)
      : m_entity(std::move(entity)), m_cache(std::move(cache)) {}

  /// The level over one of the configuration's; null for null.
  static Result Make(Ref<IBrowseConfigEntity> entity, const Ref<IEntityImplCache>& cache,
                     IBrowseEntityImpl** out);

  // IBrowseEntityImpl
  Result GetEntityType(IEntityImpl** entity) override;
  Result GetParentPath(WString* path) override;
  Result GetChildPath(WString* path) override;
  Result GetChildEntity(IBrowseEntityImpl** entity) override;
  Result GetParentEntity(IBrowseEntityImpl** entity) override;

 private:
  ~CBrowseSettingsEntityImpl() override = default;

  Ref<IBrowseConfigEntity> m_entity;
  Ref<IEntityImplCache> m_cache;
};

}  // namespace hv::vex
