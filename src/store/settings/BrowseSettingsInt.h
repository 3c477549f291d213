// store/settings/BrowseSettingsInt.h - browse settings and their levels as hosts see them.
#pragma once

#include <utility>

#include <storefabric/IBrowseSettings.h>
#include <storefabric/Ref.h>

#include "automation/DispatchImpl.h"
#include "elements/LogicOf.h"
#include "store/settings/IBrowseSettingsImpl.h"

namespace hv::vex {

class CBrowseSettingsInt final
    : public automation::DispatchImpl<CBrowseSettingsInt, IBrowseSettings,
                                      easyImpl::ILogicOf<IBrowseSettingsImpl>> {
 public:
  explicit CBrowseSettingsInt(Ref<IBrowseSettingsImpl> logic) : m_logic(std::move(logic)) {}
  static const automation::DispatchMap& Map();

  // IBrowseSettings
  Result get_RootElements(IStoreElements** elements) override;
  Result get_RootEntity(IBrowseEntity** entity) override;
  Result GetParent(IDispatch* element, IStoreElement** parent) override;
  Result GetChildren(IDispatch* element, IStoreElements** children) override;
  Result GetBrowseEntity(IDispatch* element, IBrowseEntity** entity) override;
  Result GetVexBrowseConfig(IUnknown** config) override;
  // ILogicOf
  IBrowseSettingsImpl& GetLogic() override { return *m_logic; }

 private:
  ~CBrowseSettingsInt() override = default;

  Ref<IBrowseSettingsImpl> m_logic;
};

class CBrowseEntityInt final : public automation::DispatchImpl<CBrowseEntityInt, IBrowseEntity> {
 public:
  explicit CBrowseEntityInt(Ref<IBrowseEntityImpl> logic) : m_logic(std::move(logic)) {}
  static const automation::DispatchMap& Map();

  // IBrowseEntity
  Result get_EntityType(IModelEntity** entity) override;
  Result get_ParentPath(WString* path) override;
  Result get_ChildPath(WString* path) override;
  Result get_ChildEntity(IBrowseEntity** entity) override;
  Result get_ParentEntity(IBrowseEntity** entity) override;

 private:
  ~CBrowseEntityInt() override = default;

  Ref<IBrowseEntityImpl> m_logic;
};

}  // namespace hv::vex
