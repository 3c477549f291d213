// store/model/IModelReferenceImpl.h - the logic faces of an entity's references.
// Out objects carry one reference for the caller; a null out pointer gives E_POINTER; out objects
// are null after a failure. Engine failures give E_FAIL unless the common rules name another code.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

#include "store/collections/ICollectionImpl.h"

namespace hv::vex {

class IEntityImpl;

/// A reference from one entity to another.
class IModelReferenceImpl : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IModelReferenceImpl");

  virtual Result GetName(WString* name) = 0;
  /// The entity referred to. E_FAIL if the session knows none of its name.
  virtual Result GetEntityType(IEntityImpl** entity) = 0;
  /// Empty if there is no base name, which is no failure.
  virtual Result GetBaseName(WString* baseName) = 0;
  virtual Result GetMinOccur(std::int32_t* minOccur) = 0;
  virtual Result GetMaxOccur(std::int32_t* maxOccur) = 0;
  /// The reference of the other direction. E_NOTIMPL if there is none.
  virtual Result GetInverse(IModelReferenceImpl** inverse) = 0;

 protected:
  ~IModelReferenceImpl() = default;
};

/// The references of an entity in the order of the engine.
class IModelReferenceCollImpl : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IModelReferenceCollImpl");
  using Item = IModelReferenceImpl;

  /// E_INVALIDARG for an index outside.
  virtual Result GetItem(std::int32_t index, IModelReferenceImpl** reference) = 0;
  virtual Result GetCount(std::int32_t* count) = 0;
  /// By name or base name. E_INVALIDARG for an unknown one.
  virtual Result GetItemByName(std::u16string_view name, IModelReferenceImpl** reference) = 0;
  /// True for a reference's name or base name.
  virtual Result Exists(std::u16string_view name, bool* exists) = 0;
  /// A new iterator at the start.
  virtual Result GetIterator(easyImpl::tIIteratorImpl<IModelReferenceImpl>** iterator) = 0;

 protected:
  ~IModelReferenceCollImpl() = default;
};

}  // namespace hv::vex
