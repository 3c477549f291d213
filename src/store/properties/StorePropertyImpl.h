// store/properties/StorePropertyImpl.h - one property of an element of a store.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Ref.h>

#include "cor/Counted.h"
#include "store/core/CoreBinding.h"
#include "store/core/IAttribute.h"
#include "store/core/IInstance.h"
#include "store/properties/IStorePropertiesImpl.h"

namespace hv::vex {

/// Stays good when the list that it came from is dropped or made anew: it asks the record again, so
/// that it sees what was written by other ways.
class CStorePropertyImpl final : private CoreBinding, public cor::Counted<IStorePropertyImpl> {
 public:
  /// \param value                  what the instance gave for the name
  /// \param size                   the number of values
  /// \param isApplicationProperty  true if the entity has the attribute, false for one that only
  ///                               this instance has
  CStorePropertyImpl(IInstance& instance, IAttribute& value, std::u16string_view name,
                     enumDataType dataType, std::uint32_t size, bool isApplicationProperty);

  // IPropertyImpl
  Result GetName(WString* name) override;
  Result GetIsDefault(std::int32_t* isDefault) override;
  Result GetValue(Variant* value) override;
  Result SetValueText(std::u16string_view text) override;
  Result SetValue(const Variant& value) override;
  Result GetDataType(enumDataType* dataType) override;
  Result GetValueAt(std::int32_t index, Variant* value) override;
  Result GetSize(std::int32_t* size) override;
  Result GetBaseName(WString* baseName) override;
  Result IsInstanceProperty(std::int32_t* isInstanceProperty) override;
  Result GetDisplayName(WString* name) override;
  Result SetValueAt(std::int32_t index, const Variant& value) override;
  Result GetIsHidden(std::int32_t* isHidden) override;

 private:
  ~CStorePropertyImpl() override = default;

  void* FindFace(const Iid& iid) override;

  /// Takes the value as the record has it now. VEX_E_OBJECT_GONE if it has it no more. Throws what
  /// the engine throws.
  Result Reread();

  Ref<IInstance> m_instance;
  WString m_name;
  std::uint32_t m_size;
  bool m_isApplicationProperty;
  enumDataType m_dataType;
  Ref<IAttribute> m_value;
};

}  // namespace hv::vex
