// store/settings/BrowseSettingsImpl.cpp - a browse configuration and the elements along its path.
#include "store/settings/BrowseSettingsImpl.h"

#include <utility>

#include "automation/Guards.h"
#include "store/core/IInstList.h"
#include "store/core/IInstance.h"
#include "store/core/IStore.h"
#include "store/elements/IStoreElementImpl.h"
#include "store/elements/StoreElementFactory.h"
#include "store/settings/BrowseSettingsEntityImpl.h"

namespace hv::vex {

Result CBrowseSettingsImpl::GetRootElements(IStoreElementListImpl** elements) try {
  HV_RETURN_IF_NULL(elements);
  *elements = nullptr;
  WString path;
  m_config->GetFirstRootPath(path);
  HV_RETURN_CODE_IF(path.empty(), MakeStoreElementList(*m_provider, elements));
  const auto root = Ref<IBrowseConfigEntity>::Adopt(m_config->GetFirstRoot());
  return MakeList(nullptr, path, root.Get(), elements);
}
HV_CATCH_RETURN()

Result CBrowseSettingsImpl::GetRootEntity(IBrowseEntityImpl** entity) try {
  return CBrowseSettingsEntityImpl::Make(Ref<IBrowseConfigEntity>::Adopt(m_config->GetFirstRoot()),
                                         m_cache, entity);
}
HV_CATCH_RETURN()

Result CBrowseSettingsImpl::GetParent(IStoreElementImpl* element, IStoreElementImpl** parent) try {
  HV_RETURN_IF_NULL(parent);
  *parent = nullptr;
  Ref<IBrowseConfigEntity> level;
  HV_RETURN_IF_FAILED(LevelOf(element, &level));
  HV_RETURN_CODE_IF(!level, E_INVALIDARG);
  WString path;
  level->GetParentPath(path);
  HV_RETURN_CODE_IF(path.empty(), S_OK);
  const auto above = Ref<IInstList>::Adopt(element->GetCoreInstance()->GetRelated(path));
  const auto first = Ref<IInstance>::Adopt(above->GetInstance(0));
  HV_RETURN_CODE_IF(!first, E_FAIL);
  return m_provider->GetElement(first.Get(), parent);
}
HV_CATCH_RETURN()

Result CBrowseSettingsImpl::GetChildren(IStoreElementImpl* element,
                                        IStoreElementListImpl** children) try {
  HV_RETURN_IF_NULL(children);
  *children = nullptr;
  Ref<IBrowseConfigEntity> level;
  HV_RETURN_IF_FAILED(LevelOf(element, &level));
  HV_RETURN_CODE_IF(!level, E_INVALIDARG);
  WString path;
  level->GetFirstChildPath(path);
  HV_RETURN_CODE_IF(path.empty(), S_OK);
  const auto below = Ref<IBrowseConfigEntity>::Adopt(level->GetFirstChild());
  return MakeList(element->GetCoreInstance(), path, below.Get(), children);
}
HV_CATCH_RETURN()

Result CBrowseSettingsImpl::GetBrowseEntity(IStoreElementImpl* element,
                                            IBrowseEntityImpl** entity) try {
  HV_RETURN_IF_NULL(entity);
  *entity = nullptr;
  Ref<IBrowseConfigEntity> level;
  HV_RETURN_IF_FAILED(LevelOf(element, &level));
  return CBrowseSettingsEntityImpl::Make(std::move(level), m_cache, entity);
}
HV_CATCH_RETURN()

Result CBrowseSettingsImpl::GetConfig(IBrowseConfig** config) { return m_config.CopyTo(config); }

Result CBrowseSettingsImpl::LevelOf(IStoreElementImpl* element, Ref<IBrowseConfigEntity>* level) {
  HV_RETURN_CODE_IF(!element, E_INVALIDARG);
  HV_RETURN_CODE_IF(!m_provider->OwnsElement(element), VEX_E_FOREIGN_ELEMENT);
  WString type;
  HV_RETURN_IF_FAILED(element->GetType(&type));
  *level = Ref<IBrowseConfigEntity>::Adopt(m_config->GetEntityByName(type));
  return S_OK;
}

Result CBrowseSettingsImpl::MakeList(IInstance* start, std::u16string_view path,
                                     IBrowseConfigEntity* level, IStoreElementListImpl** elements) {
  Ref<IStoreElementListImpl> list;
  HV_RETURN_IF_FAILED(MakeStoreElementList(*m_provider, list.Put()));
  const Result rc = PrefetchElements(*m_provider, start, path, {}, level, *list);
  HV_RETURN_CODE_IF(!Failed(rc), list.CopyTo(elements));
  HV_RETURN_CODE_IF(rc != E_UNEXPECTED, rc);

  // A store that reads nothing in bulk.
  Ref<IStore> store;
  HV_RETURN_IF_FAILED(m_provider->GetStore(store.Put()));
  const auto instances =
      Ref<IInstList>::Adopt(start ? start->GetRelated(path) : store->GetInstances(path));
  while (const auto instance = Ref<IInstance>::Adopt(instances->Next())) {
    Ref<IStoreElementImpl> element;
    HV_RETURN_IF_FAILED(m_provider->GetElement(instance.Get(), element.Put()));
    HV_RETURN_IF_FAILED(list->Append(element.Get()));
  }
  return list.CopyTo(elements);
}

}  // namespace hv::vex
