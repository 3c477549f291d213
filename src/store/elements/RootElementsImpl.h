// store/elements/RootElementsImpl.h - the elements at the top of the browse path.
#pragma once

#include <string_view>

#include "store/elements/NamedElements.h"

namespace hv::vex {

/// All records of the path's first level. Nothing refers to them, so that references can neither be
/// added nor removed.
class CRootElementsImpl final : public tNamedElements<IRootElementsImpl> {
 public:
  explicit CRootElementsImpl(easyImpl::ISimplifiedStoreImpl& provider) : tNamedElements(provider) {}

  // IStoreElementsImpl
  using tNamedElements::Add;
  /// The record gets the name made unique, so that the next session lists it under the same one.
  Result Add(std::u16string_view name, IStoreElementImpl** element) override;
  /// VEX_E_ROOT_IS_AUTOMATIC, like the next two.
  Result AddReference(IStoreElementImpl* element, IStoreElementImpl** member) override;
  Result RemoveReference(IStoreElementImpl* element) override;
  Result RemoveAllReferences() override;

  // IRootElementsImpl
  Result Fill() override;

 private:
  ~CRootElementsImpl() override = default;

  void* FindFace(const Iid& iid) override;
  Result ReadMembers() override { return Fill(); }
};

}  // namespace hv::vex
