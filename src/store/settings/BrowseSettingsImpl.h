// store/settings/BrowseSettingsImpl.h - a browse configuration and the elements along its path.
#pragma once

#include <string_view>

#include <storefabric/IBrowseConfig.h>
#include <storefabric/Ref.h>

#include "cor/Counted.h"
#include "store/elements/ISimplifiedStoreImpl.h"
#include "store/elements/IStoreElementsImpl.h"
#include "store/model/IEntityImpl.h"
#include "store/settings/IBrowseSettingsImpl.h"

namespace hv::vex {

/// Holds nothing of its own: everything is read from the configuration and the store at each call.
class CBrowseSettingsImpl final : public cor::Counted<IBrowseSettingsImpl> {
 public:
  /// \param provider  of the store whose elements the settings are asked for
  CBrowseSettingsImpl(Ref<IBrowseConfig> config, Ref<IEntityImplCache> cache,
                      Ref<easyImpl::ISimplifiedStoreImpl> provider)
      : m_config(std::move(config)), m_cache(std::move(cache)), m_provider(std::move(provider)) {}

  // IBrowseSettingsImpl
  Result GetRootElements(IStoreElementListImpl** elements) override;
  Result GetRootEntity(IBrowseEntityImpl** entity) override;
  Result GetParent(IStoreElementImpl* element, IStoreElementImpl** parent) override;
  Result GetChildren(IStoreElementImpl* element, IStoreElementListImpl** children) override;
  Result GetBrowseEntity(IStoreElementImpl* element, IBrowseEntityImpl** entity) override;
  Result GetConfig(IBrowseConfig** config) override;

 private:
  ~CBrowseSettingsImpl() override = default;

  /// The level of an element's type; null with S_OK if it isn't in the path.
  Result LevelOf(IStoreElementImpl* element, Ref<IBrowseConfigEntity>* level);
  /// The elements at a path from an instance, or from the top of the store for null.
  /// \param level  tells how they are shown
  Result MakeList(IInstance* start, std::u16string_view path, IBrowseConfigEntity* level,
                  IStoreElementListImpl** elements);

  Ref<IBrowseConfig> m_config;
  Ref<IEntityImplCache> m_cache;
  Ref<easyImpl::ISimplifiedStoreImpl> m_provider;
};

}  // namespace hv::vex
