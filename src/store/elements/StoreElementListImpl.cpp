// store/elements/StoreElementListImpl.cpp - a plain list of a store's elements.
#include "store/elements/StoreElementListImpl.h"

#include "automation/Guards.h"
#include "store/core/IInstance.h"
#include "store/elements/IStoreElementImpl.h"
#include "store/elements/StoreElementFactory.h"

namespace hv::vex {

Result ElementOfObject(easyImpl::ISimplifiedStoreImpl& provider, IUnknown* object,
                       Ref<IStoreElementImpl>* element) {
  element->Reset();
  HV_RETURN_IF_NULL(object);
  const auto instance = QueryRef<IInstance>(object);
  HV_RETURN_CODE_IF(!instance, VEX_E_BAD_TYPE_ARGUMENT);
  HV_RETURN_CODE_IF(!provider.OwnsInstance(instance.Get()), VEX_E_FOREIGN_ELEMENT);
  return provider.GetElement(instance.Get(), element->Put());
}

Result CStoreElementListImpl::Add(IUnknown* instance, Element** element) {
  HV_RETURN_IF_NULL(element);
  *element = nullptr;
  Ref<IStoreElementImpl> made;
  HV_RETURN_IF_FAILED(ElementOfObject(*m_provider, instance, &made));
  HV_RETURN_IF_FAILED(Append(made.Get()));
  *element = made.Detach();
  return S_OK;
}

Result CStoreElementListImpl::Reserve(std::int32_t count) try {
  HV_RETURN_CODE_IF(count < 0, E_INVALIDARG);
  ReserveMore(static_cast<std::size_t>(count));
  return S_OK;
}
HV_CATCH_RETURN_AS(E_OUTOFMEMORY)

Result MakeStoreElementList(easyImpl::ISimplifiedStoreImpl& provider,
                            IStoreElementListImpl** list) try {
  HV_RETURN_IF_NULL(list);
  *list = MakeRef<CStoreElementListImpl>(provider).Detach();
  return S_OK;
}
HV_CATCH_RETURN()

}  // namespace hv::vex
