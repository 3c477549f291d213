// core/plugins/atfx/Typespec.cpp - the table of typespecs.
#include "core/plugins/atfx/Typespec.h"

#include "core/plugins/atfx/AsciiText.h"

namespace hv::vex::engine::atfx {

namespace {

// Signed bytes and unsigned integers of two bytes or more have no type of their own; they become
// the next wider one, so that no value changes.
constexpr Typespec kTypespecs[] = {
    {u"dt_boolean", 0, Layout::PackedBits, 0, false, false},
    {u"dt_byte", 1, Layout::Unsigned, 1, false, false},
    {u"dt_short", 2, Layout::Signed, 2, false, false},
    {u"dt_long", 3, Layout::Signed, 4, false, false},
    {u"dt_longlong", 4, Layout::Signed, 8, false, false},
    {u"ieeefloat4", 5, Layout::Float, 4, false, false},
    {u"ieeefloat8", 6, Layout::Float, 8, false, false},
    {u"dt_short_beo", 7, Layout::Signed, 2, true, true},
    {u"dt_long_beo", 8, Layout::Signed, 4, true, true},
    {u"dt_longlong_beo", 9, Layout::Signed, 8, true, true},
    {u"ieeefloat4_beo", 10, Layout::Float, 4, true, true},
    {u"ieeefloat8_beo", 11, Layout::Float, 8, true, true},
    {u"dt_string", 12, Layout::Latin1Texts, 0, false, false},
    {u"dt_bytestr", 13, Layout::ByteStrings, 0, false, false},
    {u"dt_boolean_flags_beo", 15, Layout::PackedBits, 0, false, true},
    {u"dt_byte_flags_beo", 16, Layout::Unsigned, 1, false, true},
    {u"dt_string_flags_beo", 17, Layout::Latin1Texts, 0, false, true},
    {u"dt_bytestr_beo", 18, Layout::ByteStrings, 0, true, true},
    {u"dt_sbyte", 19, Layout::Signed, 1, false, false},
    {u"dt_sbyte_flags_beo", 20, Layout::Signed, 1, false, true},
    {u"dt_ushort", 21, Layout::Unsigned, 2, false, false},
    {u"dt_ushort_beo", 22, Layout::Unsigned, 2, true, true},
    {u"dt_ulong", 23, Layout::Unsigned, 4, false, false},
    {u"dt_ulong_beo", 24, Layout::Unsigned, 4, true, true},
    {u"dt_string_utf8", 25, Layout::Utf8Texts, 0, false, false},
    {u"dt_string_utf8_flags_beo", 26, Layout::Utf8Texts, 0, false, true},
    {u"dt_bit_int", 27, Layout::BitSigned, 0, false, false},
    {u"dt_bit_int_beo", 28, Layout::BitSigned, 0, true, true},
    {u"dt_bit_uint", 29, Layout::BitUnsigned, 0, false, false},
    {u"dt_bit_uint_beo", 30, Layout::BitUnsigned, 0, true, true},
    {u"dt_bit_ieeefloat", 31, Layout::BitFloat, 0, false, false},
    {u"dt_bit_ieeefloat_beo", 32, Layout::BitFloat, 0, true, true},
    {u"dt_bytestr_leo", 33, Layout::ByteStrings, 0, false, false},
};

OdsType SignedTypeOfBits(std::uint32_t bits) {
  return bits <= 16 ? OdsType::Short : bits <= 32 ? OdsType::Long : OdsType::LongLong;
}

/// Bits that a value of an integer type can hold, sign included; 0 for other types.
std::uint32_t BitsOf(OdsType type) {
  switch (type) {
    case OdsType::Short:
      return 16;
    case OdsType::Long:
      return 32;
    case OdsType::LongLong:
      return 64;
    default:
      return 0;
  }
}

OdsType TypeOfBitField(std::uint32_t bitsWithSign, OdsType wanted) {
  return BitsOf(wanted) >= bitsWithSign ? wanted : SignedTypeOfBits(bitsWithSign);
}

}  // namespace

const Typespec* FindTypespec(std::u16string_view name) {
  for (const Typespec& typespec : kTypespecs) {
    if (EqualsIgnoringAsciiCase(name, typespec.name)) return &typespec;
  }
  return nullptr;
}

const Typespec* FindTypespec(std::int64_t number) {
  for (const Typespec& typespec : kTypespecs) {
    if (typespec.number == number) return &typespec;
  }
  return nullptr;
}

OdsType TypeOfStorage(const Typespec& typespec, OdsType wanted, std::uint32_t bitCount) {
  const bool wantsComplex = wanted == OdsType::Complex || wanted == OdsType::DComplex;
  switch (typespec.layout) {
    case Layout::PackedBits:
      return OdsType::Boolean;
    case Layout::Signed:
      return SignedTypeOfBits(typespec.width * 8u);
    case Layout::Unsigned:
      return typespec.width == 1 ? OdsType::Byte : SignedTypeOfBits(typespec.width * 8u + 1);
    case Layout::Float:
      if (wantsComplex) return typespec.width == 4 ? OdsType::Complex : OdsType::DComplex;
      return typespec.width == 4 ? OdsType::Float : OdsType::Double;
    case Layout::Latin1Texts:
    case Layout::Utf8Texts:
      return wanted == OdsType::Date ? OdsType::Date : OdsType::String;
    case Layout::ByteStrings:
      return OdsType::ByteStr;
    case Layout::BitSigned:
      return TypeOfBitField(bitCount, wanted);
    case Layout::BitUnsigned:
      return TypeOfBitField(bitCount + 1, wanted);
    case Layout::BitFloat:
      return bitCount <= 32 ? OdsType::Float : OdsType::Double;
  }
  return OdsType::Unknown;
}

std::optional<std::u16string_view> TypespecForWriting(OdsType type) {
  switch (type) {
    case OdsType::Boolean:
      return u"dt_boolean";
    case OdsType::Byte:
      return u"dt_byte";
    case OdsType::Short:
      return u"dt_short";
    case OdsType::Long:
      return u"dt_long";
    case OdsType::LongLong:
      return u"dt_longlong";
    case OdsType::Float:
    case OdsType::Complex:
      return u"ieeefloat4";
    case OdsType::Double:
    case OdsType::DComplex:
      return u"ieeefloat8";
    case OdsType::String:
    case OdsType::Date:
      return u"dt_string_utf8";
    case OdsType::ByteStr:
      return u"dt_bytestr";
    default:
      return std::nullopt;
  }
}

}  // namespace hv::vex::engine::atfx
