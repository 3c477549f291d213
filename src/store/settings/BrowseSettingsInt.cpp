// store/settings/BrowseSettingsInt.cpp - browse settings and their levels as hosts see them.
#include "store/settings/BrowseSettingsInt.h"

#include <storefabric/IBrowseConfig.h>
#include <storefabric/IDataStoreModel.h>
#include <storefabric/IStoreElement.h>

#include "automation/rows/BrowseSettings.h"
#include "elements/WrapObject.h"
#include "store/elements/IStoreElementImpl.h"
#include "store/elements/IStoreElementsImpl.h"
#include "store/elements/StoreElementFactory.h"
#include "store/model/EntityInt.h"

namespace hv::vex {

namespace {

using namespace automation;  // NOLINT: the vocabulary of the tables below
using S = IBrowseSettings;
using E = IBrowseEntity;

constexpr auto kSettingsRows = MakeRows(
    Get<&S::get_RootElements>(u"RootElements", 1, rows::kBrowseSettingsRootElements),
    Get<&S::get_RootEntity>(u"RootEntity", 2, rows::kBrowseSettingsRootEntity),
    Method<&S::GetParent>(u"GetParent", 3, rows::kBrowseSettingsGetParent),
    Method<&S::GetChildren>(u"GetChildren", 4, rows::kBrowseSettingsGetChildren),
    Method<&S::GetBrowseEntity>(u"GetBrowseEntity", 5, rows::kBrowseSettingsGetBrowseEntity),
    Method<&S::GetVexBrowseConfig>(u"GetVexBrowseConfig", 6));
constexpr DispatchMap kSettingsMap(u"BrowseSettings", kSettingsRows);

constexpr auto kEntityRows =
    MakeRows(Get<&E::get_EntityType>(u"EntityType", 1), Get<&E::get_ParentPath>(u"ParentPath", 2),
             Get<&E::get_ChildPath>(u"ChildPath", 3), Get<&E::get_ChildEntity>(u"ChildEntity", 4),
             Get<&E::get_ParentEntity>(u"ParentEntity", 5));
constexpr DispatchMap kEntityMap(u"BrowseEntity", kEntityRows);

/// The element that a host handed in. Null and every other object are no elements.
Result ElementArgument(IDispatch* object, Ref<IStoreElementImpl>* element) {
  return Failed(StoreElementOf(object, element)) ? E_INVALIDARG : S_OK;
}

}  // namespace

// --- CBrowseSettingsInt ------------------------------------------------------------------------

const DispatchMap& CBrowseSettingsInt::Map() { return kSettingsMap; }

Result CBrowseSettingsInt::get_RootElements(IStoreElements** elements) {
  HV_RETURN_IF_NULL(elements);
  *elements = nullptr;
  Ref<IStoreElementListImpl> list;
  HV_RETURN_IF_FAILED(m_logic->GetRootElements(list.Put()));
  return WrapStoreElements(list.Get(), elements);
}

Result CBrowseSettingsInt::get_RootEntity(IBrowseEntity** entity) {
  return WrapResult<IBrowseEntityImpl, CBrowseEntityInt>(
      entity, [this](auto** out) { return m_logic->GetRootEntity(out); });
}

Result CBrowseSettingsInt::GetParent(IDispatch* element, IStoreElement** parent) {
  HV_RETURN_IF_NULL(parent);
  *parent = nullptr;
  Ref<IStoreElementImpl> below;
  Ref<IStoreElementImpl> above;
  HV_RETURN_IF_FAILED(ElementArgument(element, &below));
  HV_RETURN_IF_FAILED(m_logic->GetParent(below.Get(), above.Put()));
  return WrapStoreElement(above.Get(), parent);
}

Result CBrowseSettingsInt::GetChildren(IDispatch* element, IStoreElements** children) {
  HV_RETURN_IF_NULL(children);
  *children = nullptr;
  Ref<IStoreElementImpl> above;
  Ref<IStoreElementListImpl> below;
  HV_RETURN_IF_FAILED(ElementArgument(element, &above));
  HV_RETURN_IF_FAILED(m_logic->GetChildren(above.Get(), below.Put()));
  return WrapStoreElements(below.Get(), children);
}

Result CBrowseSettingsInt::GetBrowseEntity(IDispatch* element, IBrowseEntity** entity) {
  HV_RETURN_IF_NULL(entity);
  *entity = nullptr;
  Ref<IStoreElementImpl> asked;
  HV_RETURN_IF_FAILED(ElementArgument(element, &asked));
  return WrapResult<IBrowseEntityImpl, CBrowseEntityInt>(
      entity, [&](auto** out) { return m_logic->GetBrowseEntity(asked.Get(), out); });
}

Result CBrowseSettingsInt::GetVexBrowseConfig(IUnknown** config) {
  HV_RETURN_IF_NULL(config);
  *config = nullptr;
  Ref<IBrowseConfig> found;
  HV_RETURN_IF_FAILED(m_logic->GetConfig(found.Put()));
  return found.CopyTo(config);
}

// --- CBrowseEntityInt --------------------------------------------------------------------------

const DispatchMap& CBrowseEntityInt::Map() { return kEntityMap; }

Result CBrowseEntityInt::get_EntityType(IModelEntity** entity) {
  return WrapResult<IEntityImpl, CEntityInt>(
      entity, [this](auto** out) { return m_logic->GetEntityType(out); });
}

Result CBrowseEntityInt::get_ParentPath(WString* path) { return m_logic->GetParentPath(path); }
Result CBrowseEntityInt::get_ChildPath(WString* path) { return m_logic->GetChildPath(path); }

Result CBrowseEntityInt::get_ChildEntity(IBrowseEntity** entity) {
  return WrapResult<IBrowseEntityImpl, CBrowseEntityInt>(
      entity, [this](auto** out) { return m_logic->GetChildEntity(out); });
}

Result CBrowseEntityInt::get_ParentEntity(IBrowseEntity** entity) {
  return WrapResult<IBrowseEntityImpl, CBrowseEntityInt>(
      entity, [this](auto** out) { return m_logic->GetParentEntity(out); });
}

}  // namespace hv::vex
