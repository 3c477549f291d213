// store/elements/StoreElementListImpl.h - a plain list of a store's elements.
#pragma once

#include <cstdint>

#include <storefabric/Ref.h>

#include "elements/ElementsCollectionImpl.h"
#include "store/core/CoreBinding.h"
#include "store/elements/ISimplifiedStoreImpl.h"
#include "store/elements/NamelessElements.h"

namespace hv::vex {

/// The element of an instance that came as an object of any kind.
/// \return S_OK; E_POINTER; VEX_E_BAD_TYPE_ARGUMENT for an object that is no instance;
///         VEX_E_FOREIGN_ELEMENT; E_FAIL
Result ElementOfObject(easyImpl::ISimplifiedStoreImpl& provider, IUnknown* object,
                       Ref<IStoreElementImpl>* element);

class CStoreElementListImpl final
    : private CoreBinding,
      public tNamelessElements<easyImpl::tElementsCollectionImpl<IStoreElementListImpl>> {
 public:
  explicit CStoreElementListImpl(easyImpl::ISimplifiedStoreImpl& provider)
      : m_provider(Ref<easyImpl::ISimplifiedStoreImpl>::Share(&provider)) {}

  // IVEXElementsImpl
  using tNamelessElements::Add;
  /// Puts the element of an instance of the store at the end. The codes are those of
  /// `ElementOfObject`.
  Result Add(IUnknown* instance, Element** element) override;
  // IStoreElementListImpl
  /// E_INVALIDARG for a negative count; E_OUTOFMEMORY.
  Result Reserve(std::int32_t count) override;
  Result Append(Element* element) override { return AppendElement(element); }

 private:
  ~CStoreElementListImpl() override = default;

  Ref<easyImpl::ISimplifiedStoreImpl> m_provider;
};

}  // namespace hv::vex
