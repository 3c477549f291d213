// store/elements/NamelessElements.h - what lists of a store's elements without names can't do.
#pragma once

#include <string_view>

#include "automation/Guards.h"
#include "store/elements/IStoreElementsImpl.h"

namespace hv::vex {

/// The operations that only collections with names have. `Base` is a body without them whose face
/// is derived from `IStoreElementListImpl`.
template <class Base>
class tNamelessElements : public Base {
 public:
  using Element = easyImpl::IVEXElementImpl;

  using Base::Add;
  using Base::Base;

  Result GetItemByName(std::u16string_view /*name*/, Element** element) override {
    HV_RETURN_IF_NULL(element);
    *element = nullptr;
    return DISP_E_TYPEMISMATCH;
  }
  Result RemoveByName(std::u16string_view /*name*/) override { return DISP_E_TYPEMISMATCH; }
  Result Exists(std::u16string_view /*name*/, bool* exists) override {
    HV_RETURN_IF_NULL(exists);
    *exists = false;
    return DISP_E_TYPEMISMATCH;
  }
  Result Rename(std::u16string_view /*oldName*/, std::u16string_view /*newName*/,
                WString* unique) override {
    HV_RETURN_IF_NULL(unique);
    unique->clear();
    return E_NOTIMPL;
  }
  Result Add(std::u16string_view /*name*/, IStoreElementImpl** element) override {
    HV_RETURN_IF_NULL(element);
    *element = nullptr;
    return E_NOTIMPL;
  }
  Result Remove(const Variant& /*indexOrName*/) override { return E_NOTIMPL; }
  Result RemoveElement(IStoreElementImpl* /*element*/) override { return E_NOTIMPL; }
  Result RemoveAll() override { return E_NOTIMPL; }
  Result AddReference(IStoreElementImpl* /*element*/, IStoreElementImpl** member) override {
    HV_RETURN_IF_NULL(member);
    *member = nullptr;
    return E_NOTIMPL;
  }
  Result RemoveReference(IStoreElementImpl* /*element*/) override { return E_NOTIMPL; }
  Result RemoveAllReferences() override { return E_NOTIMPL; }
  Result Reload() override { return E_NOTIMPL; }

 protected:
  ~tNamelessElements() override = default;

  void* FindFace(const Iid& iid) override {
    if (iid == IStoreElementListImpl::kIid) return static_cast<IStoreElementListImpl*>(this);
    if (iid == IStoreElementsImpl::kIid) return static_cast<IStoreElementsImpl*>(this);
    if (iid == easyImpl::IVEXElementsImpl::kIid) {
      return static_cast<easyImpl::IVEXElementsImpl*>(this);
    }
    return Base::FindFace(iid);
  }
};

}  // namespace hv::vex
