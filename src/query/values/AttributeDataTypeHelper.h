// query/values/AttributeDataTypeHelper.h - what kind of values a property takes.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/DataType.h>
#include <storefabric/Ref.h>
#include <storefabric/Unknown.h>

#include "cor/Counted.h"

namespace hv::vex {

class IEntityImpl;

/// \name Kinds of type codes
/// @{
/// Texts, and enumerations, which are read and written as texts.
constexpr bool IsStringType(std::int32_t type) {
  return type == eString || type == kTypeEnumeration;
}
/// Codes 2 to 7. `eI8` and `eU64` stay outside, which queries in stored files depend on.
constexpr bool IsIntegerType(std::int32_t type) { return type >= eI16 && type <= eU32; }
constexpr bool IsRealType(std::int32_t type) { return type == eR32 || type == eR64; }
constexpr bool IsDateType(std::int32_t type) { return type == eTime; }
constexpr bool IsKnownType(std::int32_t type) { return type > eNoType; }
/// @}

/// Answers for one property. Every question stands twice in the order of the operations; the second
/// of a pair asks the first.
class IAttributeDataTypeHelper : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IAttributeDataTypeHelper");

  virtual bool IsString() = 0;
  virtual bool ForwardIsString() = 0;
  virtual bool IsInteger() = 0;
  virtual bool ForwardIsInteger() = 0;
  virtual bool IsReal() = 0;
  virtual bool ForwardIsReal() = 0;
  virtual bool IsDate() = 0;
  virtual bool ForwardIsDate() = 0;
  virtual bool IsKnown() = 0;
  virtual bool ForwardIsKnown() = 0;
  /// The type code; 0 if the entity or the property is missing.
  virtual std::int32_t GetDataType() = 0;
  virtual std::int32_t ForwardGetDataType() = 0;

 protected:
  ~IAttributeDataTypeHelper() = default;
};

class CDSAttributeDataTypeHelper final : public cor::Counted<IAttributeDataTypeHelper> {
 public:
  /// \param entity  may be null; kept
  CDSAttributeDataTypeHelper(IEntityImpl* entity, std::u16string_view propertyName);

  // IAttributeDataTypeHelper
  bool IsString() override { return IsStringType(m_dataType); }
  bool ForwardIsString() override { return IsString(); }
  bool IsInteger() override { return IsIntegerType(m_dataType); }
  bool ForwardIsInteger() override { return IsInteger(); }
  bool IsReal() override { return IsRealType(m_dataType); }
  bool ForwardIsReal() override { return IsReal(); }
  bool IsDate() override { return IsDateType(m_dataType); }
  bool ForwardIsDate() override { return IsDate(); }
  bool IsKnown() override { return IsKnownType(m_dataType); }
  bool ForwardIsKnown() override { return IsKnown(); }
  std::int32_t GetDataType() override { return m_dataType; }
  std::int32_t ForwardGetDataType() override { return GetDataType(); }

 private:
  ~CDSAttributeDataTypeHelper() override;

  Ref<IEntityImpl> m_entity;
  std::int32_t m_dataType = eNoType;
};

}  // namespace hv::vex
