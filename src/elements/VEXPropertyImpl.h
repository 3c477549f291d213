// elements/VEXPropertyImpl.h - a property over a value of the engine.
#pragma once

#include <cstdint>
#include <string_view>

#include "elements/PropertyBase.h"

namespace hv::vex::easyImpl {

/// One attribute of an instance. Reads and writes go to the engine's value object.
/// A value of an unsuitable type gives DISP_E_TYPEMISMATCH, one that the store doesn't let be
/// written E_ACCESSDENIED, a record that is gone VEX_E_OBJECT_GONE.
class CVEXPropertyImpl final : public tPropertyImpl<IPropertyImpl> {
 public:
  CVEXPropertyImpl(IInstance& instance, IAttribute& value, std::u16string_view name,
                   enumDataType dataType, bool isApplicationProperty, std::uint32_t size)
      : tPropertyImpl(instance, &value, name, dataType, isApplicationProperty, size) {}

  // IPropertyImpl
  Result GetIsDefault(std::int32_t* isDefault) override;
  Result GetValue(Variant* value) override;
  Result GetValueAt(std::int32_t index, Variant* value) override;
  Result GetSize(std::int32_t* size) override;
  Result SetValueAt(std::int32_t index, const Variant& value) override;

 private:
  ~CVEXPropertyImpl() override = default;
};

}  // namespace hv::vex::easyImpl
