// automation/variant/ChangeType.cpp - the conversions between the types of a variant.
#include <storefabric/Dispatch.h>
#include <storefabric/Variant.h>

#include <bit>
#include <cmath>
#include <limits>

#include "automation/variant/DateText.h"
#include "automation/variant/DecimalMath.h"
#include "automation/variant/NumberText.h"
#include "automation/variant/VariantTime.h"

namespace hv {

namespace {

using automation::CurrentYear;
using automation::DecimalFromDigits;
using automation::DecimalToDouble;
using automation::DecimalToInteger;
using automation::DecimalToText;
using automation::FormatDate;
using automation::FormatReal;
using automation::IsValidDecimal;
using automation::IsVariantTimeInRange;
using automation::kDoubleDigits;
using automation::kFloatDigits;
using automation::MakeDecimal;
using automation::ParsedNumber;
using automation::ParseNumberText;
using automation::SignedMagnitude;
using automation::Tie;

constexpr int kCyDecimals = 4;
constexpr double kCyScale = 10000;

Result Give(Variant&& value, Variant* out) {
  *out = std::move(value);
  return S_OK;
}

/// What an integer type can hold. The bounds of VT_BOOL are those of its 16 bits.
struct IntegerType {
  int bits;
  bool isSigned;
};

std::optional<IntegerType> FindIntegerType(std::uint16_t type) {
  switch (type) {
    case VT_I1:
      return IntegerType{8, true};
    case VT_I2:
    case VT_BOOL:
      return IntegerType{16, true};
    case VT_I4:
    case VT_INT:
      return IntegerType{32, true};
    case VT_I8:
      return IntegerType{64, true};
    case VT_UI1:
      return IntegerType{8, false};
    case VT_UI2:
      return IntegerType{16, false};
    case VT_UI4:
    case VT_UINT:
      return IntegerType{32, false};
    case VT_UI8:
      return IntegerType{64, false};
    default:
      return std::nullopt;
  }
}

bool IsIntegerTarget(std::uint16_t type) { return type != VT_BOOL && FindIntegerType(type); }

Variant MakeInteger(std::uint16_t type, std::uint64_t bits) {
  switch (type) {
    case VT_I1:
      return Variant::I1(static_cast<std::int8_t>(bits));
    case VT_I2:
      return Variant::I2(static_cast<std::int16_t>(bits));
    case VT_I4:
      return Variant::I4(static_cast<std::int32_t>(bits));
    case VT_INT:
      return Variant::Int(static_cast<std::int32_t>(bits));
    case VT_I8:
      return Variant::I8(static_cast<std::int64_t>(bits));
    case VT_UI1:
      return Variant::UI1(static_cast<std::uint8_t>(bits));
    case VT_UI2:
      return Variant::UI2(static_cast<std::uint16_t>(bits));
    case VT_UI4:
      return Variant::UI4(static_cast<std::uint32_t>(bits));
    case VT_UINT:
      return Variant::UInt(static_cast<std::uint32_t>(bits));
    default:
      return Variant::UI8(bits);
  }
}

/// Gives an integer type a value that must be within its range.
Result GiveInteger(SignedMagnitude number, std::uint16_t type, Variant* out) {
  const IntegerType target = *FindIntegerType(type);
  const std::uint64_t all = std::numeric_limits<std::uint64_t>::max() >> (64 - target.bits);
  const std::uint64_t positive = target.isSigned ? all >> 1 : all;
  const std::uint64_t negative = target.isSigned ? positive + 1 : 0;
  if (number.value > (number.negative ? negative : positive)) return DISP_E_OVERFLOW;
  return Give(MakeInteger(type, number.negative ? std::uint64_t{0} - number.value : number.value),
              out);
}

/// The values of `GiveInteger`, rounded half to even. The range counts for the rounded value.
Result GiveRounded(double value, std::uint16_t type, Variant* out) {
  constexpr double kBehind64Bits = 18446744073709551616.0;
  const double rounded = std::nearbyint(value);
  if (!(std::fabs(rounded) < kBehind64Bits)) return DISP_E_OVERFLOW;
  const auto magnitude = static_cast<std::uint64_t>(std::fabs(rounded));
  return GiveInteger({rounded < 0, magnitude}, type, out);
}

Result GiveFloat(double value, Variant* out) {
  constexpr double kMost = std::numeric_limits<float>::max();
  if (std::fabs(value) > kMost) return DISP_E_OVERFLOW;
  return Give(Variant::R4(static_cast<float>(value)), out);
}

Result GiveCy(double value, Variant* out) {
  // Currency values end at 2^63 tenths of thousandths; the parts are scaled apart, so that no digit
  // of the whole part is lost.
  constexpr double kBehindLast = 922337203685478;
  if (!(std::fabs(value) < kBehindLast)) return DISP_E_OVERFLOW;
  const double whole = std::trunc(value);
  const auto fraction = static_cast<std::int64_t>(std::nearbyint((value - whole) * kCyScale));
  std::int64_t scaled = static_cast<std::int64_t>(whole) * static_cast<std::int64_t>(kCyScale);
  if (__builtin_add_overflow(scaled, fraction, &scaled)) return DISP_E_OVERFLOW;
  return Give(Variant::Cy(scaled), out);
}

Result GiveCy(std::optional<SignedMagnitude> scaled, Variant* out) {
  Variant number;
  if (!scaled || Failed(GiveInteger(*scaled, VT_I8, &number))) return DISP_E_OVERFLOW;
  return Give(Variant::Cy(number.AsInt64()), out);
}

Result GiveDate(double value, Variant* out) {
  if (!IsVariantTimeInRange(value)) return DISP_E_OVERFLOW;
  return Give(Variant::Date(value), out);
}

Result GiveDecimal(const std::optional<Decimal>& value, Variant* out) {
  if (!value) return DISP_E_OVERFLOW;
  return Give(Variant::Dec(*value), out);
}

Result GiveText(std::string_view ascii, Variant* out) {
  return Give(Variant::Text(std::u16string(ascii.begin(), ascii.end())), out);
}

SignedMagnitude MagnitudeOf(std::int64_t value) {
  const auto bits = static_cast<std::uint64_t>(value);
  return {value < 0, value < 0 ? std::uint64_t{0} - bits : bits};
}

// One function for each family of source types. The targets that don't depend on the value
// (VT_EMPTY, VT_NULL, VT_ERROR and the objects) are served before.

Result ChangeInteger(const Variant& source, std::uint16_t type, Variant* out) {
  const IntegerType from = *FindIntegerType(source.Type());
  const SignedMagnitude number =
      from.isSigned ? MagnitudeOf(source.AsInt64()) : SignedMagnitude{false, source.AsUInt64()};
  const auto magnitude = static_cast<double>(number.value);
  const double real = number.negative ? -magnitude : magnitude;
  if (IsIntegerTarget(type)) {
    const IntegerType to = *FindIntegerType(type);
    // Types of one width exchange their bits, and a boolean gives its bits to every type.
    const bool bits = source.Is(VT_BOOL) || from.bits == to.bits;
    return bits ? Give(MakeInteger(type, source.AsUInt64()), out) : GiveInteger(number, type, out);
  }
  switch (type) {
    case VT_BOOL:
      return Give(Variant::Bool(number.value != 0), out);
    case VT_R4:
      return Give(Variant::R4(static_cast<float>(real)), out);
    case VT_R8:
      return Give(Variant::R8(real), out);
    case VT_DATE:
      return GiveDate(real, out);
    case VT_CY: {
      SignedMagnitude scaled = number;
      const bool fits = !__builtin_mul_overflow(number.value, std::uint64_t{10000}, &scaled.value);
      return GiveCy(fits ? std::optional(scaled) : std::nullopt, out);
    }
    case VT_DECIMAL:
      // As a decimal any true boolean is 1, unlike as any other number.
      if (source.Is(VT_BOOL)) {
        return GiveDecimal(MakeDecimal({false, number.value != 0 ? 1U : 0U}), out);
      }
      return GiveDecimal(MakeDecimal(number), out);
    case VT_BSTR:
      return GiveText((number.negative ? "-" : "") + std::to_string(number.value), out);
    default:
      return DISP_E_BADVARTYPE;
  }
}

Result ChangeReal(const Variant& source, std::uint16_t type, Variant* out) {
  const double value = source.AsDouble();
  const int digits = source.Is(VT_R4) ? kFloatDigits : kDoubleDigits;
  if (IsIntegerTarget(type)) return GiveRounded(value, type, out);
  switch (type) {
    case VT_BOOL:
      return Give(Variant::Bool(value != 0), out);
    case VT_R4:
      return source.Is(VT_DATE) ? Give(Variant::R4(static_cast<float>(value)), out)
                                : GiveFloat(value, out);
    case VT_R8:
      return Give(Variant::R8(value), out);
    case VT_DATE:
      // Only doubles have their range looked at.
      return source.Is(VT_R4) ? Give(Variant::Date(value), out) : GiveDate(value, out);
    case VT_CY:
      return GiveCy(value, out);
    case VT_DECIMAL:
      return GiveDecimal(automation::RealToDecimal(value, digits), out);
    case VT_BSTR:
      if (source.Is(VT_DATE)) {
        const std::optional<std::string> text = FormatDate(value);
        return text ? GiveText(*text, out) : E_INVALIDARG;
      }
      return GiveText(FormatReal(value, digits), out);
    default:
      return DISP_E_BADVARTYPE;
  }
}

Result ChangeDecimal(const Decimal& source, std::uint16_t type, Tie tieOfCy, Variant* out) {
  if (IsIntegerTarget(type)) {
    const std::optional<SignedMagnitude> number = DecimalToInteger(source, 0, Tie::ToEven);
    return number ? GiveInteger(*number, type, out) : DISP_E_OVERFLOW;
  }
  switch (type) {
    case VT_BOOL:
      return Give(Variant::Bool(source.low != 0 || source.high != 0), out);
    case VT_R4:
      return Give(Variant::R4(static_cast<float>(DecimalToDouble(source))), out);
    case VT_R8:
      return Give(Variant::R8(DecimalToDouble(source)), out);
    case VT_DATE:
      return GiveDate(DecimalToDouble(source), out);
    case VT_CY:
      return GiveCy(DecimalToInteger(source, kCyDecimals, tieOfCy), out);
    case VT_DECIMAL:
      return GiveDecimal(source, out);
    case VT_BSTR:
      return GiveText(DecimalToText(source), out);
    default:
      return DISP_E_BADVARTYPE;
  }
}

bool EqualsNoCase(std::u16string_view text, std::u16string_view lower) {
  if (text.size() != lower.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    if ((unit >= u'A' && unit <= u'Z' ? unit + (u'a' - u'A') : unit) != lower[i]) return false;
  }
  return true;
}

/// A bit pattern fits if it has no more bits than the type; the highest one may be the sign.
Result GivePattern(const ParsedNumber& number, std::uint16_t type, Variant* out) {
  const int bits = FindIntegerType(type)->bits;
  if (number.patternBeyond || static_cast<int>(std::bit_width(number.pattern)) > bits)
    return DISP_E_OVERFLOW;
  return Give(MakeInteger(type, number.pattern), out);
}

Result ChangeParsed(const ParsedNumber& number, std::uint16_t type, Variant* out) {
  if (IsIntegerTarget(type)) {
    if (number.isPattern) return GivePattern(number, type, out);
    const std::optional<SignedMagnitude> integer = ParsedToInteger(number, 0);
    return integer ? GiveInteger(*integer, type, out) : DISP_E_OVERFLOW;
  }
  if (number.isPattern && (type == VT_CY || type == VT_DECIMAL)) {
    if (number.patternBeyond) return DISP_E_OVERFLOW;
    return ChangeDecimal(MakeDecimal({false, number.pattern}), type, Tie::ToEven, out);
  }
  if (type == VT_CY) return GiveCy(ParsedToInteger(number, kCyDecimals), out);
  if (type == VT_DECIMAL) {
    return GiveDecimal(DecimalFromDigits(number.negative, number.digits, number.exponent), out);
  }
  const std::optional<double> real = automation::ParsedToDouble(number);
  if (!real) return DISP_E_OVERFLOW;
  if (type == VT_BOOL) return Give(Variant::Bool(*real != 0), out);
  return type == VT_R4 ? GiveFloat(*real, out) : Give(Variant::R8(*real), out);
}

Result ChangeText(std::u16string_view text, std::uint16_t type, Variant* out) {
  if (type == VT_DATE) {
    const std::optional<double> date = automation::ParseDateText(text, CurrentYear());
    return date ? Give(Variant::Date(*date), out) : DISP_E_TYPEMISMATCH;
  }
  if (type == VT_BOOL) {
    const std::u16string_view word = text.substr(0, text.find(u'\0'));
    if (EqualsNoCase(word, u"true") || word == u"#TRUE#") return Give(Variant::Bool(true), out);
    if (EqualsNoCase(word, u"false") || word == u"#FALSE#") return Give(Variant::Bool(false), out);
  }
  const std::optional<ParsedNumber> number = ParseNumberText(text);
  return number ? ChangeParsed(*number, type, out) : DISP_E_TYPEMISMATCH;
}

/// The object as another face of itself, or the value of its default member as another type.
Result ChangeObject(const Variant& source, std::uint16_t type, Variant* out) {
  IUnknown* object = source.Is(VT_DISPATCH) ? source.AsObject() : source.AsUnknown();
  if (type == VT_UNKNOWN) return Give(Variant::Unknown(object), out);
  if (type == VT_DISPATCH) {
    const Ref<IDispatch> face = QueryRef<IDispatch>(object);
    if (object && !face) return DISP_E_TYPEMISMATCH;
    return Give(Variant::Object(face.Get()), out);
  }
  if (source.Is(VT_UNKNOWN)) return DISP_E_TYPEMISMATCH;
  if (!object) return DISP_E_BADVARTYPE;
  Variant value;
  const Result rc = source.AsObject()->Invoke(kDispIdValue, CallKind::Method | CallKind::Get, {},
                                              &value, nullptr);
  // A default member that gives an object again would lead from object to object without end.
  if (Failed(rc) || value.Is(VT_DISPATCH)) return DISP_E_TYPEMISMATCH;
  return value.ChangeType(type, out);
}

bool IsKnownType(std::uint16_t type) { return type <= VT_UINT && type != VT_VARIANT && type != 15; }

/// The targets whose answer depends on the source's type alone. True if this was one.
bool ChangeByType(const Variant& source, std::uint16_t type, Variant* out, Result* rc) {
  const std::uint16_t from = source.Type();
  const bool isFixed = from == VT_NULL || from == VT_ERROR || (from & VT_ARRAY) != 0;
  const bool isObject = from == VT_DISPATCH || from == VT_UNKNOWN;
  const bool wantsObject = type == VT_DISPATCH || type == VT_UNKNOWN;
  if (from == type) {
    *rc = Give(Variant(source), out);
  } else if (isFixed || (type & VT_ARRAY) != 0 || type == VT_ERROR || (wantsObject && !isObject)) {
    *rc = DISP_E_TYPEMISMATCH;
  } else if (type == VT_EMPTY) {
    *rc = Give(Variant(), out);
  } else if (type == VT_NULL) {
    *rc = Give(Variant::Null(), out);
  } else if (isObject) {
    *rc = ChangeObject(source, type, out);
  } else {
    return false;
  }
  return true;
}

}  // namespace

Result Variant::ChangeType(std::uint16_t type, Variant* out) const {
  const Variant& source = Dereferenced();
  if (type != source.m_type && type != (VT_ARRAY | VT_VARIANT) && !IsKnownType(type)) {
    return DISP_E_BADVARTYPE;
  }
  Result rc = S_OK;
  if (ChangeByType(source, type, out, &rc)) return rc;
  switch (source.m_type) {
    case VT_EMPTY:
      return type == VT_BSTR ? Give(Text(u""), out) : ChangeInteger(I4(0), type, out);
    case VT_BSTR:
      return ChangeText(source.AsText(), type, out);
    case VT_R4:
    case VT_R8:
    case VT_DATE:
      return ChangeReal(source, type, out);
    case VT_CY:
      return ChangeDecimal(MakeDecimal(MagnitudeOf(source.AsInt64()), kCyDecimals), type,
                           Tie::ToEven, out);
    case VT_DECIMAL:
      if (!IsValidDecimal(source.AsDecimal())) return E_INVALIDARG;
      return ChangeDecimal(source.AsDecimal(), type, Tie::Away, out);
    default:
      return ChangeInteger(source, type, out);
  }
}

}  // namespace hv
