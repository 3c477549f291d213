// elements/PropertyBase.h - what properties over values of the engine share, and their wrappers.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <utility>

#include <storefabric/IVEXElement.h>
#include <storefabric/Ref.h>

#include "automation/DispatchImpl.h"
#include "automation/Guards.h"
#include "cor/Counted.h"
#include "elements/IPropertyImpl.h"
#include "store/core/CoreBinding.h"
#include "store/core/IAttribute.h"
#include "store/core/IEntity.h"
#include "store/core/IInstance.h"

namespace hv::vex::easyImpl {

/// How properties tell failures of the engine: everything else is E_FAIL.
inline constexpr std::array kPropertyReadFailures{CodeRow{errc::kInstanceGone, VEX_E_OBJECT_GONE}};

/// One attribute of an instance, and what is the same whenever its value is read.
template <class Face>
class tPropertyImpl : private CoreBinding, public cor::Counted<Face> {
 public:
  // IPropertyImpl
  Result GetName(WString* name) override {
    HV_RETURN_IF_NULL(name);
    *name = m_name;
    return S_OK;
  }
  Result SetValueText(std::u16string_view text) override {
    return this->SetValue(Variant::Text(text));
  }
  Result SetValue(const Variant& value) override { return this->SetValueAt(0, value); }
  Result GetDataType(enumDataType* dataType) override {
    HV_RETURN_IF_NULL(dataType);
    *dataType = m_dataType;
    return S_OK;
  }
  Result GetBaseName(WString* baseName) override try {
    HV_RETURN_IF_NULL(baseName);
    baseName->clear();
    if (m_isApplicationProperty) {
      const auto entity = Ref<IEntity>::Adopt(m_instance->GetEntity());
      if (entity) entity->GetAttributeBaseName(*baseName, m_name);
    }
    return baseName->empty() ? VEX_E_NOT_BASE_PROPERTY : S_OK;
  }
  HV_CATCH_RETURN_AS(E_FAIL, kPropertyReadFailures)
  Result IsInstanceProperty(std::int32_t* isInstanceProperty) override {
    HV_RETURN_IF_NULL(isInstanceProperty);
    *isInstanceProperty = m_isApplicationProperty ? 0 : 1;
    return S_OK;
  }
  Result GetDisplayName(WString* name) override { return GetName(name); }
  Result GetIsHidden(std::int32_t* isHidden) override {
    HV_RETURN_IF_NULL(isHidden);
    *isHidden = IsPropertyType(m_dataType) ? 0 : 1;
    return S_OK;
  }

 protected:
  /// \param value                  what the instance gave for the name; null if it was not asked
  /// yet \param isApplicationProperty  true if the entity has the attribute, false for one that
  /// only
  ///                               this instance has
  /// \param size                   the number of values
  tPropertyImpl(IInstance& instance, IAttribute* value, std::u16string_view name,
                enumDataType dataType, bool isApplicationProperty, std::uint32_t size)
      : m_instance(Ref<IInstance>::Share(&instance)),
        m_name(name),
        m_size(size),
        m_isApplicationProperty(isApplicationProperty),
        m_dataType(dataType),
        m_value(Ref<IAttribute>::Share(value)) {}
  ~tPropertyImpl() override = default;

  Ref<IInstance> m_instance;
  WString m_name;
  std::uint32_t m_size;
  bool m_isApplicationProperty;
  enumDataType m_dataType;
  Ref<IAttribute> m_value;
};

/// The wrapper of a property, with the members that every property has.
template <class Derived, class... Faces>
class tPropertyInt : public automation::DispatchImpl<Derived, Faces...> {
 public:
  explicit tPropertyInt(Ref<IPropertyImpl> logic) : m_logic(std::move(logic)) {}

  // IProperty
  Result get_Name(WString* name) override { return m_logic->GetName(name); }
  Result get_Default(std::int32_t* isDefault) override { return m_logic->GetIsDefault(isDefault); }
  Result get_Value(Variant* value) override { return m_logic->GetValue(value); }
  Result put_Value(const Variant& value) override {
    return m_logic->SetValue(value.Dereferenced());
  }
  Result get_DisplayName(WString* name) override { return m_logic->GetDisplayName(name); }
  Result get_Values(std::int32_t index, Variant* value) override {
    return m_logic->GetValueAt(index, value);
  }
  Result put_Values(std::int32_t index, const Variant& value) override {
    return m_logic->SetValueAt(index, value.Dereferenced());
  }
  Result get_Size(std::int32_t* size) override { return m_logic->GetSize(size); }
  Result get_DataType(enumDataType* dataType) override { return m_logic->GetDataType(dataType); }
  Result get_Hidden(std::int32_t* isHidden) override { return m_logic->GetIsHidden(isHidden); }

 protected:
  ~tPropertyInt() override = default;

  [[nodiscard]] IPropertyImpl& Logic() const { return *m_logic; }

 private:
  Ref<IPropertyImpl> m_logic;
};

}  // namespace hv::vex::easyImpl
