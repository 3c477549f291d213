// store/elements/IReferencesImpl.h - the logic faces of an element's references.
// Out objects carry one reference for the caller; a null out pointer gives E_POINTER; out objects
// are null after a failure.
#pragma once

#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

#include "store/collections/ICollectionImpl.h"

namespace hv::vex {

class IStoreElementsImpl;

/// One reference of an element.
class IReferenceImpl : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IReferenceImpl");

  virtual Result GetName(WString* name) = 0;
  /// The name in the base model; empty if it has none.
  virtual Result GetBaseName(WString* name) = 0;
  /// The members: one collection for the reference's life.
  virtual Result GetElements(IStoreElementsImpl** elements) = 0;

 protected:
  ~IReferenceImpl() = default;
};

/// The references of an element in the order of the model. Names beyond those listed may be base
/// names or paths.
class IReferencesImpl : public easyImpl::INamedCollectionImpl<IReferenceImpl> {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IReferencesImpl");

 protected:
  ~IReferencesImpl() = default;
};

}  // namespace hv::vex
