// store/properties/StorePropertyImpl.h - one property of an element of a store.
#pragma once

#include <cstdint>
#include <string_view>

#include "elements/PropertyBase.h"
#include "store/properties/IStorePropertiesImpl.h"

namespace hv::vex {

/// Stays good when the list that it came from is dropped or made anew: it asks the record again, so
/// that it sees what was written by other ways.
class CStorePropertyImpl final : public easyImpl::tPropertyImpl<IStorePropertyImpl> {
 public:
  /// The value is read when it is asked for.
  CStorePropertyImpl(IInstance& instance, std::u16string_view name, enumDataType dataType,
                     bool isApplicationProperty)
      : tPropertyImpl(instance, nullptr, name, dataType, isApplicationProperty, 0) {}

  // IPropertyImpl
  Result GetIsDefault(std::int32_t* isDefault) override;
  Result GetValue(Variant* value) override;
  Result GetValueAt(std::int32_t index, Variant* value) override;
  Result GetSize(std::int32_t* size) override;
  Result SetValueAt(std::int32_t index, const Variant& value) override;

 private:
  ~CStorePropertyImpl() override = default;

  void* FindFace(const Iid& iid) override;

  /// Takes the value as the record has it now. VEX_E_OBJECT_GONE if it has it no more. Throws what
  /// the engine throws.
  Result Reread();
};

}  // namespace hv::vex
