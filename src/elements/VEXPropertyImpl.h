// elements/VEXPropertyImpl.h - a property over a value of the engine.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Ref.h>

#include "cor/Counted.h"
#include "elements/IPropertyImpl.h"
#include "store/core/CoreBinding.h"
#include "store/core/IAttribute.h"
#include "store/core/IInstance.h"

namespace hv::vex::easyImpl {

/// One attribute of an instance. Reads and writes go to the engine's value object.
/// A value of an unsuitable type gives DISP_E_TYPEMISMATCH, one that the store doesn't let be
/// written E_ACCESSDENIED, a record that is gone VEX_E_OBJECT_GONE.
class CVEXPropertyImpl final : private CoreBinding, public cor::Counted<IPropertyImpl> {
 public:
  /// \param isApplicationProperty  true if the entity has the attribute, false for one that only
  ///                               this instance has
  /// \param size                   the number of values
  CVEXPropertyImpl(IInstance& instance, IAttribute& value, std::u16string_view name,
                   enumDataType dataType, bool isApplicationProperty, std::uint32_t size);

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
  ~CVEXPropertyImpl() override = default;

  Ref<IInstance> m_instance;
  WString m_name;
  std::uint32_t m_size;
  bool m_isApplicationProperty;
  enumDataType m_dataType;
  Ref<IAttribute> m_value;
};

}  // namespace hv::vex::easyImpl
