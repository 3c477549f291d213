// store/elements/RootElementsImpl.cpp - the elements at the top of the browse path.
#include "store/elements/RootElementsImpl.h"

#include <storefabric/IBrowseConfig.h>

#include "automation/Guards.h"
#include "store/core/IEntity.h"
#include "store/core/IStore.h"
#include "store/elements/StoreElementFactory.h"

namespace hv::vex {

void* CRootElementsImpl::FindFace(const Iid& iid) {
  if (iid == IRootElementsImpl::kIid) return static_cast<IRootElementsImpl*>(this);
  return tNamedElements::FindFace(iid);
}

Result CRootElementsImpl::Fill() try {
  Ref<IBrowseConfig> config;
  HV_RETURN_IF_FAILED(Provider().GetBrowseConfig(config.Put()));
  HV_RETURN_CODE_IF(!config, E_UNEXPECTED);
  WString path;
  config->GetFirstRootPath(path);
  HV_RETURN_CODE_IF(path.empty(), E_NOTIMPL);
  return AppendFrom(nullptr, path);
}
HV_CATCH_RETURN()

Result CRootElementsImpl::Add(std::u16string_view name, IStoreElementImpl** element) try {
  HV_RETURN_IF_NULL(element);
  *element = nullptr;
  Ref<IBrowseConfig> config;
  HV_RETURN_IF_FAILED(Provider().GetBrowseConfig(config.Put()));
  const auto level = Ref<IBrowseConfigEntity>::Adopt(config ? config->GetFirstRoot() : nullptr);
  HV_RETURN_CODE_IF(!level, E_NOTIMPL);
  const auto entity = Ref<IEntity>::Adopt(level->GetModelEntity());
  Ref<IStore> store;
  HV_RETURN_IF_FAILED(Provider().GetStore(store.Put()));
  const auto instance = Ref<IInstance>::Adopt(store->CreateInstance(entity.Get()));
  HV_RETURN_CODE_IF(!instance, E_FAIL);

  const WString unique = MakeUnique(name.empty() ? DefaultName() : WString(name));
  Ref<IStoreElementImpl> made;
  HV_RETURN_IF_FAILED(NameNew(*instance, unique, &made));
  HV_RETURN_IF_FAILED(AddMember(*made, unique));
  *element = made.Detach();
  return S_OK;
}
HV_CATCH_RETURN()

Result CRootElementsImpl::AddReference(IStoreElementImpl* /*element*/, IStoreElementImpl** member) {
  HV_RETURN_IF_NULL(member);
  *member = nullptr;
  return VEX_E_ROOT_IS_AUTOMATIC;
}

Result CRootElementsImpl::RemoveReference(IStoreElementImpl* /*element*/) {
  return VEX_E_ROOT_IS_AUTOMATIC;
}

Result CRootElementsImpl::RemoveAllReferences() { return VEX_E_ROOT_IS_AUTOMATIC; }

Result MakeRootElements(easyImpl::ISimplifiedStoreImpl& provider,
                        IRootElementsImpl** elements) try {
  HV_RETURN_IF_NULL(elements);
  *elements = MakeRef<CRootElementsImpl>(provider).Detach();
  return S_OK;
}
HV_CATCH_RETURN()

}  // namespace hv::vex
