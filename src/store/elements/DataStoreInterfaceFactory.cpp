// store/elements/DataStoreInterfaceFactory.cpp - makes the objects that hosts see of a store's
// elements.
#include "store/elements/DataStoreInterfaceFactory.h"

#include <storefabric/IStoreElement.h>
#include <storefabric/Ref.h>

#include "automation/Guards.h"
#include "store/elements/IStoreElementImpl.h"
#include "store/elements/IStoreElementsImpl.h"
#include "store/elements/StoreElementFactory.h"

namespace hv::vex {

Result CDataStoreInterfaceFactory::MakeElement(easyImpl::IVEXElementImpl* element,
                                               IVEXElement** out) {
  HV_RETURN_IF_NULL(out);
  *out = nullptr;
  if (!element) return S_OK;
  const auto own = QueryRef<IStoreElementImpl>(element);
  HV_RETURN_CODE_IF(!own, E_INVALIDARG);
  Ref<IStoreElement> made;
  HV_RETURN_IF_FAILED(WrapStoreElement(own.Get(), made.Put()));
  return made.CopyTo(out);
}

Result CDataStoreInterfaceFactory::MakeElements(easyImpl::IVEXElementsImpl* elements,
                                                IDispatch** out) {
  HV_RETURN_IF_NULL(out);
  *out = nullptr;
  if (!elements) return S_OK;
  if (const auto list = QueryRef<IStoreElementListImpl>(elements)) {
    Ref<IStoreElementList> made;
    HV_RETURN_IF_FAILED(WrapStoreElementList(list.Get(), made.Put()));
    return made.CopyTo(out);
  }
  HV_RETURN_CODE_IF(!QueryRef<IStoreElementsImpl>(elements), E_INVALIDARG);
  Ref<IStoreElements> made;
  HV_RETURN_IF_FAILED(WrapStoreElements(elements, made.Put()));
  return made.CopyTo(out);
}

}  // namespace hv::vex
