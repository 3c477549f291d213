// store/properties/StorePropertyInt.h - a property of a store element as hosts see it.
#pragma once

#include <cstdint>
#include <utility>

#include <storefabric/IStoreProperties.h>
#include <storefabric/Ref.h>

#include "automation/DispatchImpl.h"
#include "elements/IPropertyImpl.h"

namespace hv::vex {

class CStorePropertyInt final
    : public automation::DispatchImpl<CStorePropertyInt, IStoreProperty, IProperty> {
 public:
  explicit CStorePropertyInt(Ref<easyImpl::IPropertyImpl> logic) : m_logic(std::move(logic)) {}
  static const automation::DispatchMap& Map();

  // IProperty
  Result get_Name(WString* name) override;
  Result get_Default(std::int32_t* isDefault) override;
  Result get_Value(Variant* value) override;
  Result put_Value(const Variant& value) override;
  Result get_DisplayName(WString* name) override;
  Result get_Values(std::int32_t index, Variant* value) override;
  Result put_Values(std::int32_t index, const Variant& value) override;
  Result get_Size(std::int32_t* size) override;
  Result get_DataType(enumDataType* dataType) override;
  Result get_Hidden(std::int32_t* isHidden) override;

  // IStoreProperty
  Result get_BaseName(WString* baseName) override;
  Result get_IsInstanceProperty(std::int32_t* isInstanceProperty) override;

 private:
  ~CStorePropertyInt() override = default;

  Ref<easyImpl::IPropertyImpl> m_logic;
};

}  // namespace hv::vex
