// store/elements/StoreElementInt.h - an element of a store as hosts see it.
#pragma once

#include <cstdint>
#include <utility>

#include <storefabric/IStoreElement.h>
#include <storefabric/Ref.h>

#include "automation/DispatchImpl.h"
#include "elements/LogicOf.h"
#include "elements/VEXElementInt.h"
#include "elements/WrapObject.h"
#include "store/elements/IReferencesImpl.h"
#include "store/elements/IStoreElementImpl.h"
#include "store/elements/StoreElementFactory.h"
#include "store/properties/StorePropertiesInt.h"

namespace hv::vex {

/// The members that elements of both kinds have. Made anew each time an element is handed out;
/// holds nothing but the element. The typed members of the generic face hand out generic objects,
/// all others those of a store.
template <class Derived, class Interface, class... Faces>
class tStoreElementInt
    : public automation::DispatchImpl<Derived, Interface, IStoreElement, IVEXElementEx_1_9,
                                      IVEXElementEx, IVEXElement,
                                      easyImpl::ILogicOf<easyImpl::IVEXElementImpl>, Faces...> {
 public:
  // IVEXElement
  Result get_Instance(IUnknown** instance) override { return m_logic->GetInstance(instance); }
  Result get_Path(WString* path) override { return m_logic->GetPath(path); }
  Result IsKindOf(const WString& type, std::int32_t* isKindOf) override {
    return m_logic->IsKindOf(type, isKindOf);
  }
  Result get_Properties(IProperties** properties) override {
    Ref<IStoreProperties> made;
    HV_RETURN_IF_NULL(properties);
    *properties = nullptr;
    HV_RETURN_IF_FAILED(get_Properties(made.Put()));
    return made.CopyTo(properties);
  }
  Result get_Name(WString* name) override { return m_logic->GetName(name); }
  Result put_Name(const WString& name) override {
    return name.empty() ? VEX_E_EMPTY_NAME : m_logic->SetName(name);
  }
  Result get_TransportDataCollection(IDispatch** collection) override {
    return m_logic->GetTransportData(collection);
  }
  Result get_Children(IVEXElements** children) override {
    return WrapResult<easyImpl::IVEXElementsImpl, easyImpl::CVEXElementsInt>(
        children, [this](auto** out) { return m_logic->GetChildren(out); });
  }
  Result get_Type(WString* type) override { return m_logic->GetType(type); }

  // IVEXElementEx
  Result get_DisplayName(WString* name) override { return m_logic->GetDisplayName(name); }
  Result get_DisplayType(WString* type) override { return m_logic->GetDisplayType(type); }

  // IVEXElementEx_1_9
  Result get_Parent(IVEXElement** parent) override {
    Ref<IStoreElement> made;
    HV_RETURN_IF_NULL(parent);
    *parent = nullptr;
    HV_RETURN_IF_FAILED(get_Parent(made.Put()));
    return made.CopyTo(parent);
  }
  Result Refresh() override { return m_logic->Refresh(); }

  // IStoreElement
  Result get_Properties(IStoreProperties** properties) override {
    return HandOut<easyImpl::IPropertyCollectionImpl, IStorePropertiesImpl>(
        properties, [this](auto** out) { return m_logic->GetProperties(out); },
        [](IStorePropertiesImpl* made, IStoreProperties** out) {
          *out = MakeRef<CStorePropertiesInt>(Ref<IStorePropertiesImpl>::Share(made)).Detach();
          return S_OK;
        });
  }
  Result get_Children(IStoreElements** children) override {
    return HandOut<easyImpl::IVEXElementsImpl, easyImpl::IVEXElementsImpl>(
        children, [this](auto** out) { return m_logic->GetChildren(out); },
        [](easyImpl::IVEXElementsImpl* made, IStoreElements** out) {
          return WrapStoreElements(made, out);
        });
  }
  Result get_Parent(IStoreElement** parent) override {
    return HandOut<easyImpl::IVEXElementImpl, IStoreElementImpl>(
        parent, [this](auto** out) { return m_logic->GetParent(out); },
        [](IStoreElementImpl* made, IStoreElement** out) { return WrapStoreElement(made, out); });
  }
  Result get_References(IReferences** references) override {
    return HandOut<IReferencesImpl, IReferencesImpl>(
        references, [this](auto** out) { return m_logic->GetReferences(out); },
        [](IReferencesImpl* made, IReferences** out) { return WrapReferences(made, out); });
  }
  Result get_InstanceKey(WString* key) override { return m_logic->GetInstanceKey(key); }
  Result Save() override { return m_logic->Save(); }

  // ILogicOf
  easyImpl::IVEXElementImpl& GetLogic() override { return *m_logic; }

 protected:
  explicit tStoreElementInt(Ref<IStoreElementImpl> logic) : m_logic(std::move(logic)) {}
  ~tStoreElementInt() override = default;

  [[nodiscard]] IStoreElementImpl& Element() const { return *m_logic; }

 private:
  /// Gets a logic object, asks it for the face `Logic` and hands that out by `wrap`; null goes out
  /// as null.
  template <class Given, class Logic, class Out, class Get, class Wrap>
  static Result HandOut(Out** out, Get get, Wrap wrap) try {
    HV_RETURN_IF_NULL(out);
    *out = nullptr;
    Ref<Given> made;
    const Result rc = get(made.Put());
    if (Failed(rc) || !made) return rc;
    const auto logic = QueryRef<Logic>(made.Get());
    HV_RETURN_CODE_IF(!logic, E_UNEXPECTED);
    HV_RETURN_IF_FAILED(wrap(logic.Get(), out));
    return rc;
  }
  HV_CATCH_RETURN()

  Ref<IStoreElementImpl> m_logic;
};

/// Any element but a column of values.
class CStoreElementInt final : public tStoreElementInt<CStoreElementInt, IStoreElement> {
 public:
  explicit CStoreElementInt(Ref<IStoreElementImpl> logic) : tStoreElementInt(std::move(logic)) {}
  static const automation::DispatchMap& Map();

 private:
  ~CStoreElementInt() override = default;
};

/// A column of values.
class CStoreElementWithBulkInt final
    : public tStoreElementInt<CStoreElementWithBulkInt, IStoreElementWithBulk> {
 public:
  CStoreElementWithBulkInt(Ref<IStoreElementImpl> logic, Ref<IStoreElementBulkImpl> bulk)
      : tStoreElementInt(std::move(logic)), m_bulk(std::move(bulk)) {}
  static const automation::DispatchMap& Map();

  // IStoreElementWithBulk
  Result get_Values(std::int32_t index, Variant* value) override;
  Result put_Values(std::int32_t index, const Variant& value) override;
  Result get_Size(std::int32_t* size) override;
  Result get_DataType(enumDataType* dataType) override;
  Result put_DataType(enumDataType dataType) override;
  Result get_Flags(std::int32_t index, std::int32_t* flag) override;
  Result put_Flags(std::int32_t index, std::int32_t flag) override;
  Result SetValues(IDispatch* channel) override;

 private:
  ~CStoreElementWithBulkInt() override = default;

  Ref<IStoreElementBulkImpl> m_bulk;
};

}  // namespace hv::vex
