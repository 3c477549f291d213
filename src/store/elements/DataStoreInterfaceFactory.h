// store/elements/DataStoreInterfaceFactory.h - makes the objects that hosts see of a store's
// elements.
#pragma once

#include "cor/Counted.h"
#include "elements/InterfaceFactory.h"

namespace hv::vex {

/// E_INVALIDARG for logic objects that aren't of a store.
class CDataStoreInterfaceFactory final : public cor::Counted<easyImpl::ICvexInterfaceFactory> {
 public:
  CDataStoreInterfaceFactory() = default;

  // ICvexInterfaceFactory
  Result MakeElement(easyImpl::IVEXElementImpl* element, IVEXElement** out) override;
  Result MakeElements(easyImpl::IVEXElementsImpl* elements, IDispatch** out) override;

 private:
  ~CDataStoreInterfaceFactory() override = default;
};

}  // namespace hv::vex
