// store/properties/StorePropertyInt.h - a property of a store element as hosts see it.
#pragma once

#include <cstdint>

#include <storefabric/IStoreProperties.h>

#include "elements/PropertyBase.h"

namespace hv::vex {

class CStorePropertyInt final
    : public easyImpl::tPropertyInt<CStorePropertyInt, IStoreProperty, IProperty> {
 public:
  using tPropertyInt::tPropertyInt;
  static const automation::DispatchMap& Map();

  // IStoreProperty
  Result get_BaseName(WString* baseName) override;
  Result get_IsInstanceProperty(std::int32_t* isInstanceProperty) override;

 private:
  ~CStorePropertyInt() override = default;
};

}  // namespace hv::vex
