// store/elements/StoreElementFactory.cpp - the provider, and elements on their way out to hosts.
#include "store/elements/StoreElementFactory.h"

#include "automation/Guards.h"
#include "elements/LogicOf.h"
#include "store/elements/SimplifiedDataStoreImpl.h"
#include "store/elements/StoreElementInt.h"

namespace hv::vex {

Result MakeSimplifiedStore(IStore* store, IBrowseConfig* config,
                           easyImpl::ISimplifiedStoreImpl** provider) try {
  HV_RETURN_IF_NULL(provider);
  *provider = nullptr;
  HV_RETURN_CODE_IF(!store, E_UNEXPECTED);
  *provider = MakeRef<CSimplifiedDataStoreImpl>(*store, config).Detach();
  return S_OK;
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

Result WrapStoreElement(IStoreElementImpl* element, IStoreElement** out) try {
  HV_RETURN_IF_NULL(out);
  *out = nullptr;
  if (!element) return S_OK;
  Ref<IStoreElementBulkImpl> bulk;
  if (Failed(element->GetBulkInterface(bulk.Put()))) return WrapPlainStoreElement(element, out);
  *out = MakeRef<CStoreElementWithBulkInt>(Ref<IStoreElementImpl>::Share(element), std::move(bulk))
             .Detach();
  return S_OK;
}
HV_CATCH_RETURN()

Result WrapPlainStoreElement(IStoreElementImpl* element, IStoreElement** out) try {
  HV_RETURN_IF_NULL(out);
  *out = nullptr;
  if (element) *out = MakeRef<CStoreElementInt>(Ref<IStoreElementImpl>::Share(element)).Detach();
  return S_OK;
}
HV_CATCH_RETURN()

Result StoreElementOf(IUnknown* object, Ref<IStoreElementImpl>* element) {
  element->Reset();
  HV_RETURN_IF_NULL(object);
  using Wrapped = easyImpl::ILogicOf<easyImpl::IVEXElementImpl>;
  if (const auto wrapper = QueryRef<Wrapped>(object)) {
    *element = QueryRef<IStoreElementImpl>(&wrapper->GetLogic());
  }
  return *element ? S_OK : VEX_E_BAD_TYPE_ARGUMENT;
}

}  // namespace hv::vex
