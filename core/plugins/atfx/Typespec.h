// core/plugins/atfx/Typespec.h - how values lie in a component file, by typespec name and number.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "core/model/OdsType.h"

namespace hv::vex::engine::atfx {

enum class Layout : std::uint8_t {
  PackedBits,  ///< one bit per value, the highest of a byte first
  Signed,      ///< integers of `width` bytes
  Unsigned,
  Float,        ///< IEEE floats of `width` bytes
  Latin1Texts,  ///< texts in ISO-8859-1, each ended by a zero byte
  Utf8Texts,    ///< texts in UTF-8, each ended by a zero byte
  ByteStrings,  ///< per value a length of four bytes and the bytes
  BitSigned,    ///< some bits of a few bytes
  BitUnsigned,
  BitFloat,
};

struct Typespec {
  std::u16string_view name;
  std::int32_t number;
  Layout layout;
  std::uint8_t width;  ///< bytes per value; 0 where it isn't fixed
  bool bigEndian;
  bool bigEndianFlags;  ///< the flags in a flags file have the high byte first
};

/// By name in any case; null for an unknown name.
const Typespec* FindTypespec(std::u16string_view name);
/// By the number of the standard's typespec_enum, including those of older versions; null for
/// others.
const Typespec* FindTypespec(std::int64_t number);

/// The type of a column that is stored so. Where the layout leaves it open (complex numbers are
/// stored as pairs of floats, dates as texts, bit fields have no width of their own), `wanted`, the
/// type that the column's quantity tells, decides; Unknown if it tells none.
/// \param bitCount  bits per value of a bit field.
OdsType TypeOfStorage(const Typespec& typespec, OdsType wanted, std::uint32_t bitCount);

/// The typespec with which the values of a type are written.
std::optional<std::u16string_view> TypespecForWriting(OdsType type);

}  // namespace hv::vex::engine::atfx
