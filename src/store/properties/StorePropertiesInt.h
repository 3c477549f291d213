// store/properties/StorePropertiesInt.h - the properties of a store element as hosts see them.
#pragma once

#include <cstdint>
#include <utility>

#include <storefabric/IStoreProperties.h>
#include <storefabric/Ref.h>

#include "elements/LogicOf.h"
#include "elements/WrapObject.h"
#include "store/properties/IStorePropertiesImpl.h"
#include "store/properties/StorePropertyInt.h"

namespace hv::vex {

class CStorePropertiesInt final
    : public automation::tReadCollectionInt<
          CStorePropertiesInt, tReadTraits<IStorePropertiesImpl, IProperty, CStorePropertyInt>,
          IStoreProperties, IProperties, easyImpl::ILogicOf<easyImpl::IPropertyCollectionImpl>> {
 public:
  explicit CStorePropertiesInt(Ref<IStorePropertiesImpl> logic)
      : tReadCollectionInt(std::move(logic)) {}
  static const automation::DispatchMap& Map();

  // IProperties
  Result Add(const WString& name, const Variant& value, IProperty** property) override;
  Result Remove(const Variant& nameOrIndex) override;
  Result RemoveAll() override;
  Result Exists(const WString& name, std::int32_t* exists) override;
  /// E_POINTER for null; E_INVALIDARG for an object that isn't of this library.
  Result AddProperties(IProperties* properties, const WString& prefix) override;

  // IStoreProperties
  Result get_ListInstanceProperties(std::int32_t* list) override;
  Result put_ListInstanceProperties(std::int32_t list) override;
  Result Add(const WString& name, const Variant& value, enumDataType type,
             IStoreProperty** property) override;

  // ILogicOf
  easyImpl::IPropertyCollectionImpl& GetLogic() override { return Logic(); }

 private:
  ~CStorePropertiesInt() override = default;
};

}  // namespace hv::vex
