// storefabric/DataType.h - the value types of properties and values.
#pragma once

#include <cstdint>

namespace hv::vex {

/// The value type of properties and values. Frozen: the numbers are the engine's type codes, and
/// hosts, scripts and files hold them.
enum enumDataType : std::int32_t {
  eNoType = 0,
  eI8 = 1,
  eI16 = 2,
  eI32 = 3,
  eI64 = 4,
  eByte = 5,
  eU16 = 6,
  eU32 = 7,
  eU64 = 8,
  eR32 = 9,
  eR64 = 10,
  eString = 23,
  eTime = 30,
};

/// \name Codes of the engine that have no name in `enumDataType`
/// The first two are property types, the others never are.
/// @{
inline constexpr std::int32_t kTypeBoolean = 11;
inline constexpr std::int32_t kTypeEnumeration = 24;
inline constexpr std::int32_t kTypeReference = 40;
inline constexpr std::int32_t kTypeExternalReference = 41;
inline constexpr std::int32_t kTypeByteString = 101;
inline constexpr std::int32_t kTypeBlob = 102;
inline constexpr std::int32_t kTypeComplex = 103;
inline constexpr std::int32_t kTypeDoubleComplex = 104;
/// @}

/// True for the type code of an attribute that is shown as a property. Every list of properties is
/// built with this test.
constexpr bool IsPropertyType(std::int32_t typeCode) {
  switch (typeCode) {
    case eNoType:
    case kTypeReference:
    case kTypeExternalReference:
    case kTypeByteString:
    case kTypeBlob:
    case kTypeComplex:
    case kTypeDoubleComplex:
      return false;
    default:
      return true;
  }
}

}  // namespace hv::vex
