// elements/InterfaceFactory.h - makes the objects that hosts see, where only the generic logic
// faces are known.
#pragma once

#include <storefabric/Dispatch.h>

#include "cor/Counted.h"
#include "elements/IVEXElementImpl.h"

namespace hv::vex {
class IVEXElement;
}

namespace hv::vex::easyImpl {

/// One for each kind of element. Null goes out as null; a null out pointer gives E_POINTER.
class ICvexInterfaceFactory : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::easyImpl::ICvexInterfaceFactory");

  virtual Result MakeElement(IVEXElementImpl* element, IVEXElement** out) = 0;
  virtual Result MakeElements(IVEXElementsImpl* elements, IDispatch** out) = 0;

 protected:
  ~ICvexInterfaceFactory() = default;
};

/// Elements without anything special to their kind.
class CCvexInterfaceFactory final : public cor::Counted<ICvexInterfaceFactory> {
 public:
  CCvexInterfaceFactory() = default;

  // ICvexInterfaceFactory
  Result MakeElement(IVEXElementImpl* element, IVEXElement** out) override;
  Result MakeElements(IVEXElementsImpl* elements, IDispatch** out) override;

 private:
  ~CCvexInterfaceFactory() override = default;
};

}  // namespace hv::vex::easyImpl
