// elements/ValueVariant.cpp - values of the engine as variants, and back.
#include "elements/ValueVariant.h"

#include <limits>
#include <optional>

#include <storefabric/DataType.h>

#include "automation/conv/AutomationDate.h"
#include "automation/conv/ValueText.h"
#include "store/core/IAttribute.h"
#include "store/core/IInstance.h"

namespace hv::vex::easyImpl {

namespace {

constexpr std::uint64_t kGreatestInteger = std::numeric_limits<std::int64_t>::max();

bool IsNothing(const Variant& value) { return value.IsEmpty() || value.Is(VT_NULL); }

/// How values of a type come out of the engine.
enum class Form : std::uint8_t { None, Integer, Real, Text };

Form FormOf(std::int32_t typeCode) {
  switch (typeCode) {
    case eI8:
    case eI16:
    case eI32:
    case eI64:
    case eByte:
    case eU16:
    case eU32:
    case eU64:
    case kTypeBoolean:
      return Form::Integer;
    case eR32:
    case eR64:
      return Form::Real;
    case eString:
    case kTypeEnumeration:
    case eTime:
      return Form::Text;
    default:
      return Form::None;
  }
}

Variant IntegerVariant(std::int32_t typeCode, std::int64_t number) {
  switch (typeCode) {
    case eI8:
    case eI16:
      return Variant::I2(static_cast<std::int16_t>(number));
    case eByte:
      return Variant::UI1(static_cast<std::uint8_t>(number));
    case eU16:
      return Variant::UI2(static_cast<std::uint16_t>(number));
    case eU32:
      return Variant::UI4(static_cast<std::uint32_t>(number));
    case eU64:
      return Variant::UI8(static_cast<std::uint64_t>(number));
    default:
      break;
  }
  using Narrow = std::numeric_limits<std::int32_t>;
  return number >= Narrow::min() && number <= Narrow::max()
             ? Variant::I4(static_cast<std::int32_t>(number))
             : Variant::I8(number);
}

/// The digits of a date, or of an object that shows a time.
std::optional<WString> DigitsOfVariant(const Variant& value) {
  if (value.Is(VT_DISPATCH) || value.Is(VT_UNKNOWN)) {
    util::conv::TimeValue time;
    if (Failed(util::conv::TimeOfVariant(value, &time)) || !time.IsTime()) return std::nullopt;
    constexpr std::int32_t kLastYear = 9999;  // that four digits hold
    const std::int32_t year = time.ToParts().year;
    if (year < 0 || year > kLastYear) return std::nullopt;
    return cor::FromUtf8(time.ToText());
  }
  Variant date;
  if (Failed(value.ChangeType(VT_DATE, &date))) return std::nullopt;
  return util::conv::DigitsOfDate(date.AsDouble());
}

/// Converts the value into what the attribute takes, and writes it.
Result WriteElement(IAttribute& attribute, std::int32_t typeCode, std::uint64_t index,
                    const Variant& value) {
  Variant converted;
  if (typeCode == eTime) {
    const std::optional<WString> digits = DigitsOfVariant(value);
    if (!digits) return DISP_E_TYPEMISMATCH;
    attribute.SetText(index, *digits);
  } else if (typeCode == eString || value.Is(VT_BSTR)) {
    if (Failed(value.ChangeType(VT_BSTR, &converted))) return DISP_E_TYPEMISMATCH;
    attribute.SetText(index, converted.AsText());
  } else if (typeCode == eR32 || typeCode == eR64) {
    if (Failed(value.ChangeType(VT_R8, &converted))) return DISP_E_TYPEMISMATCH;
    attribute.SetReal(index, converted.AsDouble());
  } else {
    const std::uint16_t target = typeCode == kTypeBoolean ? VT_BOOL : VT_I8;
    // The platform's conversion gives the bits, and with them a negative number.
    const bool isBeyond = value.Is(VT_UI8) && value.AsUInt64() > kGreatestInteger;
    if (isBeyond && target == VT_I8) return DISP_E_TYPEMISMATCH;
    if (Failed(value.ChangeType(target, &converted))) return DISP_E_TYPEMISMATCH;
    const std::int64_t number = converted.AsInt64();
    attribute.SetInteger(index, typeCode == kTypeBoolean ? (number != 0 ? 1 : 0) : number);
  }
  return S_OK;
}

/// A list that is made longer for a value, and goes back if the value can't be written.
class Growth {
 public:
  Growth(IAttribute& attribute, std::uint64_t index)
      : m_attribute(attribute), m_oldCount(attribute.GetCount()) {
    m_isOpen = index > m_oldCount;
    if (m_isOpen) attribute.SetCount(index + 1);
  }
  Growth(const Growth&) = delete;
  Growth& operator=(const Growth&) = delete;
  ~Growth() {
    if (!m_isOpen) return;
    try {
      m_attribute.SetCount(m_oldCount);
    } catch (...) {
      // The failure that led here is the one to tell.
    }
  }
  void Keep() { m_isOpen = false; }

 private:
  IAttribute& m_attribute;
  std::uint64_t m_oldCount;
  bool m_isOpen = false;
};

}  // namespace

bool FitsDataType(const Variant& value, std::int32_t typeCode) {
  switch (value.Dereferenced().Type()) {
    case VT_EMPTY:
    case VT_NULL:
      return true;
    case VT_I2:
    case VT_I4:
    case VT_R4:
    case VT_R8:
    case VT_I1:
    case VT_UI1:
    case VT_UI2:
    case VT_UI4:
    case VT_I8:
    case VT_UI8:
    case VT_INT:
    case VT_UINT:
      return typeCode != eNoType && typeCode != eTime;
    case VT_DATE:
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return typeCode == eTime;
    case VT_BSTR:
      return typeCode == eString || typeCode == kTypeEnumeration;
    case VT_BOOL:
      return typeCode != eNoType && typeCode != eString && typeCode != eTime;
    case VT_DECIMAL:
      return typeCode == eR32 || typeCode == eR64 || typeCode == eString || typeCode == eTime;
    default:
      return false;
  }
}

Result ReadValue(IAttribute& attribute, std::int32_t typeCode, std::uint64_t index,
                 Variant* value) {
  ScalarValue scalar{typeCode, true};
  WString text;
  switch (FormOf(typeCode)) {
    case Form::Integer:
      scalar.integer = attribute.GetInteger(index);
      break;
    case Form::Real:
      scalar.real = attribute.GetReal(index);
      break;
    case Form::Text:
      attribute.GetText(index, text);
      scalar.text = text;
      break;
    case Form::None:
      break;
  }
  return VariantOf(scalar, value);
}

Result VariantOf(const ScalarValue& scalar, Variant* value) {
  if (!scalar.isSet) {
    *value = Variant::Null();
    return S_OK;
  }
  switch (FormOf(scalar.typeCode)) {
    case Form::Integer:
      *value = scalar.typeCode == kTypeBoolean ? Variant::Bool(scalar.integer != 0)
                                               : IntegerVariant(scalar.typeCode, scalar.integer);
      return S_OK;
    case Form::Real:
      *value = scalar.typeCode == eR32 ? Variant::R4(static_cast<float>(scalar.real))
                                       : Variant::R8(scalar.real);
      return S_OK;
    case Form::Text: {
      if (scalar.typeCode != eTime) {
        *value = Variant::Text(scalar.text);
        return S_OK;
      }
      const std::optional<double> date = util::conv::DateOfDigits(scalar.text);
      if (!date) return DISP_E_TYPEMISMATCH;
      *value = Variant::Date(*date);
      return S_OK;
    }
    case Form::None:
      break;
  }
  return DISP_E_TYPEMISMATCH;
}

Result WriteValue(IAttribute& attribute, std::int32_t typeCode, std::uint64_t index,
                  const Variant& value) {
  const Variant& source = value.Dereferenced();
  if (!FitsDataType(source, typeCode)) return DISP_E_TYPEMISMATCH;
  if (IsNothing(source)) {
    const std::uint64_t count = attribute.GetCount();
    if (index >= count) return S_OK;
    if (count != 1) return DISP_E_TYPEMISMATCH;  // a list has no gaps
    attribute.Clear();
    return S_OK;
  }
  Growth growth(attribute, index);
  const Result rc = WriteElement(attribute, typeCode, index, source);
  if (!Failed(rc)) growth.Keep();
  return rc;
}

}  // namespace hv::vex::easyImpl
