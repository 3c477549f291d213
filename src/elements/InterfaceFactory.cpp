// elements/InterfaceFactory.cpp - makes the objects that hosts see of generic elements.
#include "elements/InterfaceFactory.h"

#include <storefabric/Ref.h>

#include "automation/Guards.h"
#include "elements/VEXElementInt.h"

namespace hv::vex::easyImpl {

Result CCvexInterfaceFactory::MakeElement(IVEXElementImpl* element, IVEXElement** out) try {
  HV_RETURN_IF_NULL(out);
  *out = nullptr;
  if (element) *out = MakeRef<CVEXElementInt>(Ref<IVEXElementImpl>::Share(element)).Detach();
  return S_OK;
}
HV_CATCH_RETURN()

Result CCvexInterfaceFactory::MakeElements(IVEXElementsImpl* elements, IDispatch** out) try {
  HV_RETURN_IF_NULL(out);
  *out = nullptr;
  if (elements) *out = MakeRef<CVEXElementsInt>(Ref<IVEXElementsImpl>::Share(elements)).Detach();
  return S_OK;
}
HV_CATCH_RETURN()

}  // namespace hv::vex::easyImpl
