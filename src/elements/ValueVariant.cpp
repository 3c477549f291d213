// elements/ValueVariant.cpp - values of the engine as variants, and back.
#include "elements/ValueVariant.h"

#include <array>
#include <cstdio>
#include <limits>
#include <optional>

#include <storefabric/DataType.h>
#include <storefabric/Dispatch.h>

#include "elements/DateDigits.h"
#include "store/core/IAttribute.h"

namespace hv::vex::easyImpl {

namespace {

constexpr std::uint64_t kGreatestInteger = std::numeric_limits<std::int64_t>::max();

bool IsNothing(const Variant& value) { return value.IsEmpty() || value.Is(VT_NULL); }

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

/// A number that an object gives under a name.
std::optional<std::int32_t> NumberOfObject(IDispatch& object, std::u16string_view name) {
  std::int32_t id = kDispIdUnknown;
  Variant value;
  if (Failed(object.GetIdOfName(name, &id)) ||
      Failed(object.Invoke(id, CallKind::Get, {}, &value, nullptr)) ||
      Failed(value.ChangeType(VT_I4, &value))) {
    return std::nullopt;
  }
  return static_cast<std::int32_t>(value.AsInt64());
}

/// The digits of a time object, which shows its parts under these names.
std::optional<WString> DigitsOfTimeObject(IDispatch& object) {
  struct Part {
    std::u16string_view name;
    int width;
    std::int32_t greatest;
  };
  static constexpr std::array<Part, 9> kParts{{{u"Year", 4, 9999},
                                               {u"Month", 2, 12},
                                               {u"Day", 2, 31},
                                               {u"Hour", 2, 23},
                                               {u"Minute", 2, 59},
                                               {u"Second", 2, 59},
                                               {u"Millisecond", 3, 999},
                                               {u"Microsecond", 3, 999},
                                               {u"Nanosecond", 3, 999}}};
  WString digits;
  for (const Part& part : kParts) {
    const std::optional<std::int32_t> number = NumberOfObject(object, part.name);
    if (!number || *number < 0 || *number > part.greatest) return std::nullopt;
    std::array<char, 12> text{};
    const int length = std::snprintf(text.data(), text.size(), "%0*d", part.width, *number);
    digits += cor::FromUtf8({text.data(), static_cast<std::size_t>(length)});
  }
  return digits;
}

std::optional<WString> DigitsOfVariant(const Variant& value) {
  if (value.Is(VT_DISPATCH)) {
    return value.AsObject() ? DigitsOfTimeObject(*value.AsObject()) : std::nullopt;
  }
  if (value.Is(VT_UNKNOWN)) {
    const auto object = QueryRef<IDispatch>(value.AsUnknown());
    return object ? DigitsOfTimeObject(*object) : std::nullopt;
  }
  Variant date;
  if (Failed(value.ChangeType(VT_DATE, &date))) return std::nullopt;
  return DigitsOfDate(date.AsDouble());
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
  WString text;
  switch (typeCode) {
    case eI8:
    case eI16:
    case eI32:
    case eI64:
    case eByte:
    case eU16:
    case eU32:
    case eU64:
      *value = IntegerVariant(typeCode, attribute.GetInteger(index));
      return S_OK;
    case eR32:
      *value = Variant::R4(static_cast<float>(attribute.GetReal(index)));
      return S_OK;
    case eR64:
      *value = Variant::R8(attribute.GetReal(index));
      return S_OK;
    case kTypeBoolean:
      *value = Variant::Bool(attribute.GetInteger(index) != 0);
      return S_OK;
    case eString:
    case kTypeEnumeration:
      attribute.GetText(index, text);
      *value = Variant::Text(std::move(text));
      return S_OK;
    case eTime: {
      attribute.GetText(index, text);
      const std::optional<double> date = DateOfDigits(text);
      if (!date) return DISP_E_TYPEMISMATCH;
      *value = Variant::Date(*date);
      return S_OK;
    }
    default:
      return DISP_E_TYPEMISMATCH;
  }
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
