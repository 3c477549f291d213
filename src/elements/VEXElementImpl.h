// elements/VEXElementImpl.h - what all elements over an instance of the engine share.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Ref.h>

#include "automation/Guards.h"
#include "cor/Counted.h"
#include "elements/IPropertyImpl.h"
#include "elements/IVEXElementImpl.h"
#include "store/core/CoreBinding.h"
#include "store/core/IContainer.h"
#include "store/core/IEntity.h"
#include "store/core/IInstance.h"

namespace hv::vex::easyImpl {

/// What operations of an element make of the engine's failures beyond the common ones.
inline constexpr CodeRow kElementFailures[] = {{errc::kInstanceGone, VEX_E_OBJECT_GONE}};

/// The instance and the properties of an element. `Face` is `IVEXElementImpl` or an interface
/// derived from it. An element whose record is gone answers VEX_E_OBJECT_GONE everywhere.
template <class Face, class... MoreFaces>
class tVEXElementImpl : protected CoreBinding, public cor::Counted<Face, MoreFaces...> {
 public:
  /// The attribute "name", read at each call.
  Result GetName(WString* name) override try {
    HV_RETURN_IF_NULL(name);
    name->clear();
    HV_RETURN_IF_FAILED(CheckValid());
    const Ref<IContainer> values = m_instance.template As<IContainer>();
    HV_RETURN_CODE_IF(!values, E_FAIL);
    values->GetString(*name, kNameAttribute);
    return S_OK;
  }
  HV_CATCH_RETURN_AS(E_FAIL, kElementFailures)

  /// VEX_E_WRITE_PROTECTED if the store refuses.
  Result SetName(std::u16string_view name) override try {
    HV_RETURN_IF_FAILED(CheckValid());
    const Ref<IContainer> values = m_instance.template As<IContainer>();
    HV_RETURN_CODE_IF(!values, E_FAIL);
    values->SetString(kNameAttribute, name);
    return S_OK;
  }
  HV_CATCH_RETURN_AS(E_FAIL, kElementFailures)

  /// Made and filled on first use, and kept.
  Result GetProperties(IPropertyCollectionImpl** properties) override try {
    HV_RETURN_IF_NULL(properties);
    *properties = nullptr;
    HV_RETURN_IF_FAILED(CheckValid());
    if (!m_propertiesFilled) {
      HV_RETURN_IF_FAILED(MakeProperties(*m_instance, m_properties.Put()));
      m_propertiesFilled = true;
    }
    return m_properties.CopyTo(properties);
  }
  HV_CATCH_RETURN_AS(E_FAIL, kElementFailures)

  Result GetType(WString* type) override try {
    HV_RETURN_IF_NULL(type);
    type->clear();
    HV_RETURN_IF_FAILED(CheckValid());
    const auto entity = Ref<IEntity>::Adopt(m_instance->GetEntity());
    HV_RETURN_CODE_IF(!entity, E_FAIL);
    entity->GetName(*type);
    return S_OK;
  }
  HV_CATCH_RETURN_AS(E_FAIL, kElementFailures)

  Result GetInstance(IUnknown** instance) override {
    HV_RETURN_IF_NULL(instance);
    *instance = nullptr;
    HV_RETURN_IF_FAILED(CheckValid());
    return m_instance.CopyTo(instance);
  }

  /// E_NOTIMPL: elements of a store have no path.
  Result GetPath(WString* path) override {
    HV_RETURN_IF_NULL(path);
    path->clear();
    return E_NOTIMPL;
  }
  Result Reserved() override { return E_NOTIMPL; }

 protected:
  static constexpr std::u16string_view kNameAttribute = u"name";

  explicit tVEXElementImpl(IInstance& instance) : m_instance(Ref<IInstance>::Share(&instance)) {}
  ~tVEXElementImpl() override = default;

  void* FindFace(const Iid& iid) override {
    if (iid == IVEXElementImpl::kIid) return static_cast<IVEXElementImpl*>(this);
    return cor::Counted<Face, MoreFaces...>::FindFace(iid);
  }

  /// Makes the list of properties and fills it.
  virtual Result MakeProperties(IInstance& instance, IPropertyCollectionImpl** properties) = 0;

  /// The first line of every operation.
  Result CheckValid() try { return m_instance->IsValid() != 0 ? S_OK : VEX_E_OBJECT_GONE; }
  HV_CATCH_RETURN_AS(E_FAIL, kElementFailures)

  /// Forgets the properties, so that they are read anew.
  void DropProperties() {
    m_propertiesFilled = false;
    m_properties.Reset();
  }

  [[nodiscard]] IInstance& Instance() const { return *m_instance; }

 private:
  Ref<IInstance> m_instance;
  bool m_propertiesFilled = false;
  Ref<IPropertyCollectionImpl> m_properties;
};

/// An element with a place in a browse path. `BrowseEntity` is the counted level of the path.
template <class BrowseEntity, class Face, class... MoreFaces>
class tGUIVEXElementImpl : public tVEXElementImpl<Face, MoreFaces...> {
 protected:
  /// \param browseEntity  null for an element outside the path
  tGUIVEXElementImpl(IInstance& instance, BrowseEntity* browseEntity)
      : tVEXElementImpl<Face, MoreFaces...>(instance),
        m_browseEntity(Ref<BrowseEntity>::Share(browseEntity)) {}
  ~tGUIVEXElementImpl() override = default;

  [[nodiscard]] BrowseEntity* GetBrowseEntity() const { return m_browseEntity.Get(); }
  void SetBrowseEntity(BrowseEntity* browseEntity) {
    m_browseEntity = Ref<BrowseEntity>::Share(browseEntity);
  }

 private:
  Ref<BrowseEntity> m_browseEntity;
};

}  // namespace hv::vex::easyImpl
