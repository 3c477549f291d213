// core/model/OdsType.h - the data types of ASAM ODS and what they are at the seam.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace hv::vex::engine {

/// The scalar data types; the numbers are those of the standard's DataTypeEnum. A sequence (DS_...)
/// is the same type with `sequence` set beside it.
enum class OdsType : std::uint8_t {
  Unknown = 0,
  String = 1,
  Short = 2,
  Float = 3,
  Boolean = 4,
  Byte = 5,
  Long = 6,
  Double = 7,
  LongLong = 8,
  Id = 9,
  Date = 10,
  ByteStr = 11,
  Blob = 12,
  Complex = 13,
  DComplex = 14,
  ExternalReference = 28,
  Enum = 30,
};

/// How a value of a type is held in memory.
enum class StorageKind : std::uint8_t {
  Integer,  ///< int64: Short, Boolean, Byte, Long, LongLong, Id, Enum (the item's number)
  Real,     ///< double: Float, Double; two of them for Complex, DComplex
  Text,     ///< UTF-16: String, Date (4 to 23 digits), ExternalReference (three texts, see Value.h)
  Bytes,    ///< ByteStr, Blob
};

StorageKind StorageKindOf(OdsType type);
/// The type code at the seam: Byte 5, Short 2, Long 3, LongLong and Id 4, Float 9, Double 10,
/// Boolean 11, String 23, Enum 24, Date 30, ExternalReference 41, ByteStr 101, Blob 102,
/// Complex 103, DComplex 104, Unknown 0.
std::int32_t SeamTypeOf(OdsType type);
/// The type of a seam code that can be stored (`eI8` 1 counts as Short); nothing for others.
std::optional<OdsType> OdsTypeOfSeam(std::int32_t seamType);

struct TypeName {
  OdsType type;
  bool sequence;
};
/// "DT_LONG", "DS_STRING" ... in any case; nothing for an unknown name.
std::optional<TypeName> ParseTypeName(std::u16string_view name);
std::u16string_view NameOfType(OdsType type, bool sequence);

/// The seam's code of a reference attribute.
inline constexpr std::int32_t kReferenceType = 40;
/// Numbers of values per element: 2 for complex types, otherwise 1.
constexpr std::size_t PartsOf(OdsType type) {
  return type == OdsType::Complex || type == OdsType::DComplex ? 2 : 1;
}

}  // namespace hv::vex::engine
