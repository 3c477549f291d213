// tests/elements/TestElement.h - the plainest element over an instance of the engine.
#pragma once

#include <cstdint>
#include <string_view>

#include "elements/PropertyCollectionImpl.h"
#include "elements/VEXElementImpl.h"

namespace hv::test {

/// An element with nothing below or above it.
class CTestElement : public vex::easyImpl::tVEXElementImpl<vex::easyImpl::IVEXElementImpl> {
 public:
  explicit CTestElement(vex::IInstance& instance) : tVEXElementImpl(instance) {}

  Result IsKindOf(std::u16string_view type, std::int32_t* isKindOf) override {
    HV_RETURN_IF_NULL(isKindOf);
    *isKindOf = type == u"Test" ? 1 : 0;
    return CheckValid();
  }
  Result GetBrowseLevel(std::int32_t*) override { return E_NOTIMPL; }
  Result GetChildren(vex::easyImpl::IVEXElementsImpl** children) override {
    HV_RETURN_IF_NULL(children);
    *children = nullptr;
    return S_OK;
  }
  Result GetChildrenFiltered(std::u16string_view, vex::easyImpl::IVEXElementsImpl**) override {
    return E_UNEXPECTED;
  }
  Result HasChildren(std::int32_t*) override { return E_NOTIMPL; }
  Result GetParent(vex::easyImpl::IVEXElementImpl** parent) override {
    HV_RETURN_IF_NULL(parent);
    *parent = nullptr;
    return S_OK;
  }
  Result GetTransportData(IDispatch**) override { return E_NOTIMPL; }
  Result Refresh() override {
    DropProperties();
    return CheckValid();
  }
  Result GetDisplayType(WString* type) override { return GetType(type); }
  Result GetDisplayName(WString* name) override { return GetName(name); }

 protected:
  Result MakeProperties(vex::IInstance& instance,
                        vex::easyImpl::IPropertyCollectionImpl** properties) override {
    return MakeRef<vex::easyImpl::CPropertyCollectionImpl>(instance).CopyTo(properties);
  }
  ~CTestElement() override = default;
};

}  // namespace hv::test
