#include "core/objects/ValueText.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "core/query/TextMatch.h"
#include "store/core/Exception.h"

namespace hv::vex::engine {
namespace {

[[noreturn]] void ThrowWrongType(std::u16string_view what) {
  throw Exception(errc::kWrongType, WString(what));
}

void CheckIndex(const Value& value, std::uint64_t index) {
  if (index >= value.Count()) {
    throw Exception(errc::kInvalidArgument, u"value index out of range");
  }
}

/// Numbers are plain ASCII; anything else can't be one. Empty if the text is too long or isn't
/// ASCII.
struct Narrow {
  char text[64];
  std::size_t size = 0;
  explicit Narrow(std::u16string_view wide) {
    while (!wide.empty() && wide.front() == u' ') wide.remove_prefix(1);
    while (!wide.empty() && wide.back() == u' ') wide.remove_suffix(1);
    if (!wide.empty() && wide.front() == u'+') wide.remove_prefix(1);
    if (wide.size() > sizeof text) return;
    for (const char16_t unit : wide) {
      if (unit > 0x7f) {
        size = 0;
        return;
      }
      text[size++] = static_cast<char>(unit);
    }
  }
  template <class T>
  bool Parse(T& out) const {
    if (size == 0) return false;
    const auto [end, error] = std::from_chars(text, text + size, out);
    return error == std::errc() && end == text + size;
  }
};

void AppendAscii(std::u16string& out, const char* begin, const char* end) {
  out.append(begin, end);
}

bool EqualsNoCase(std::u16string_view a, std::u16string_view b) {
  return FoldCase(a) == FoldCase(b);
}

std::int64_t IntegerFromText(OdsType type, std::u16string_view text, EnumPtr enumeration) {
  if (type == OdsType::Enum && enumeration) {
    if (const auto number = enumeration->ValueOf(text)) return *number;
  }
  if (type == OdsType::Boolean) {
    if (EqualsNoCase(text, u"true")) return 1;
    if (EqualsNoCase(text, u"false")) return 0;
  }
  const Narrow narrow(text);
  std::int64_t number = 0;
  if (narrow.Parse(number)) return number;
  double real = 0;
  if (narrow.Parse(real) && std::trunc(real) == real && std::fabs(real) < 9.2e18) {
    return static_cast<std::int64_t>(real);
  }
  ThrowWrongType(u"\"" + std::u16string(text) + u"\" is not a value of the type " +
                 std::u16string(NameOfType(type, false)));
}

template <class Vector>
Vector& DataOf(Value& value) {
  if (!std::holds_alternative<Vector>(value.data)) value.data = Vector{};
  return std::get<Vector>(value.data);
}

/// Makes room for element `index`: an existing one, or one behind the last.
void Prepare(Value& value, std::uint64_t index) {
  const std::uint64_t count = value.Count();
  if (index > count || (index == count && index > 0 && !value.sequence)) {
    throw Exception(errc::kInvalidArgument, u"value index out of range");
  }
  if (index == count) ResizeValue(value, index + 1);
}

}  // namespace

std::int64_t ElementAsInteger(const Value& value, std::uint64_t index) {
  CheckIndex(value, index);
  if (const auto* integers = std::get_if<Value::Integers>(&value.data)) return (*integers)[index];
  if (const auto* reals = std::get_if<Value::Reals>(&value.data)) {
    const double real = (*reals)[index * PartsOf(value.type)];
    if (!(real >= -9223372036854775808.0 && real < 9223372036854775808.0)) {
      ThrowWrongType(u"the number is out of the range of an integer");
    }
    return static_cast<std::int64_t>(std::nearbyint(real));
  }
  if (const auto* texts = std::get_if<Value::Texts>(&value.data)) {
    return IntegerFromText(OdsType::LongLong, (*texts)[index], nullptr);
  }
  ThrowWrongType(u"bytes are no number");
}

double ElementAsReal(const Value& value, std::uint64_t index) {
  CheckIndex(value, index);
  if (const auto* reals = std::get_if<Value::Reals>(&value.data)) {
    return (*reals)[index * PartsOf(value.type)];
  }
  if (const auto* integers = std::get_if<Value::Integers>(&value.data)) {
    return static_cast<double>((*integers)[index]);
  }
  if (const auto* texts = std::get_if<Value::Texts>(&value.data)) {
    double real = 0;
    if (Narrow((*texts)[index]).Parse(real)) return real;
  }
  ThrowWrongType(u"the value is no number");
}

void IntegerAsText(OdsType type, std::int64_t value, EnumPtr enumeration, std::u16string& out) {
  if (type == OdsType::Enum && enumeration) {
    if (const EnumItem* item = enumeration->ItemOf(value)) {
      out += item->name;
      return;
    }
  }
  char buffer[24];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  AppendAscii(out, buffer, result.ptr);
}

void RealAsText(OdsType type, double value, std::u16string& out) {
  char buffer[40];
  const bool isSingle = type == OdsType::Float || type == OdsType::Complex;
  const auto result = isSingle && std::isfinite(value)
                          ? std::to_chars(buffer, buffer + sizeof buffer, static_cast<float>(value))
                          : std::to_chars(buffer, buffer + sizeof buffer, value);
  AppendAscii(out, buffer, result.ptr);
}

void ElementAsText(const Value& value, std::uint64_t index, EnumPtr enumeration,
                   std::u16string& out) {
  CheckIndex(value, index);
  if (const auto* texts = std::get_if<Value::Texts>(&value.data)) {
    out += (*texts)[index];
  } else if (const auto* integers = std::get_if<Value::Integers>(&value.data)) {
    IntegerAsText(value.type, (*integers)[index], enumeration, out);
  } else if (const auto* reals = std::get_if<Value::Reals>(&value.data)) {
    const std::size_t parts = PartsOf(value.type);
    for (std::size_t part = 0; part < parts; ++part) {
      if (part > 0) out += u' ';
      RealAsText(value.type, (*reals)[index * parts + part], out);
    }
  } else {
    ThrowWrongType(u"bytes have no text");
  }
}

void CheckIntegerRange(OdsType type, std::int64_t value) {
  const auto isIn = [value](std::int64_t low, std::int64_t high) {
    return value >= low && value <= high;
  };
  bool fits = true;
  switch (type) {
    case OdsType::Byte:
      fits = isIn(0, 255);
      break;
    case OdsType::Boolean:
      fits = isIn(0, 1);
      break;
    case OdsType::Short:
      fits =
          isIn(std::numeric_limits<std::int16_t>::min(), std::numeric_limits<std::int16_t>::max());
      break;
    case OdsType::Long:
    case OdsType::Enum:
      fits =
          isIn(std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max());
      break;
    default:
      break;
  }
  if (!fits) {
    ThrowWrongType(u"the number is out of the range of " + std::u16string(NameOfType(type, false)));
  }
}

void SetElementInteger(Value& value, std::uint64_t index, std::int64_t element) {
  switch (StorageKindOf(value.type)) {
    case StorageKind::Integer:
      CheckIntegerRange(value.type, element);
      Prepare(value, index);
      DataOf<Value::Integers>(value)[index] = element;
      return;
    case StorageKind::Real:
      SetElementReal(value, index, static_cast<double>(element));
      return;
    case StorageKind::Text: {
      std::u16string text;
      IntegerAsText(OdsType::LongLong, element, nullptr, text);
      SetElementText(value, index, text, nullptr);
      return;
    }
    case StorageKind::Bytes:
      break;
  }
  ThrowWrongType(u"a number can't become bytes");
}

void SetElementReal(Value& value, std::uint64_t index, double element) {
  switch (StorageKindOf(value.type)) {
    case StorageKind::Integer: {
      const double rounded = std::nearbyint(element);
      if (!(rounded >= -9223372036854775808.0 && rounded < 9223372036854775808.0)) {
        ThrowWrongType(u"the number is out of the range of an integer");
      }
      SetElementInteger(value, index, static_cast<std::int64_t>(rounded));
      return;
    }
    case StorageKind::Real: {
      if (value.type == OdsType::Float && std::isfinite(element) &&
          std::fabs(element) > static_cast<double>(std::numeric_limits<float>::max())) {
        ThrowWrongType(u"the number is out of the range of DT_FLOAT");
      }
      Prepare(value, index);
      const bool isSingle = value.type == OdsType::Float || value.type == OdsType::Complex;
      DataOf<Value::Reals>(value)[index * PartsOf(value.type)] =
          isSingle && std::isfinite(element) ? static_cast<double>(static_cast<float>(element))
                                             : element;
      return;
    }
    case StorageKind::Text: {
      std::u16string text;
      RealAsText(OdsType::Double, element, text);
      SetElementText(value, index, text, nullptr);
      return;
    }
    case StorageKind::Bytes:
      break;
  }
  ThrowWrongType(u"a number can't become bytes");
}

void SetElementText(Value& value, std::uint64_t index, std::u16string_view element,
                    EnumPtr enumeration) {
  switch (StorageKindOf(value.type)) {
    case StorageKind::Integer:
      SetElementInteger(value, index, IntegerFromText(value.type, element, enumeration));
      return;
    case StorageKind::Real: {
      double real = 0;
      if (!Narrow(element).Parse(real)) {
        ThrowWrongType(u"\"" + std::u16string(element) + u"\" is not a number");
      }
      SetElementReal(value, index, real);
      return;
    }
    case StorageKind::Text:
      if (value.type == OdsType::Date && !element.empty() && !NormalizeDate14(element)) {
        ThrowWrongType(u"\"" + std::u16string(element) + u"\" is not a date of 4 to 23 digits");
      }
      Prepare(value, index);
      DataOf<Value::Texts>(value)[index] = std::u16string(element);
      return;
    case StorageKind::Bytes:
      break;
  }
  ThrowWrongType(u"a text can't become bytes");
}

void ResizeValue(Value& value, std::uint64_t count) {
  if (count > 1 && !value.sequence) {
    throw Exception(errc::kInvalidArgument, u"a single value has at most one element");
  }
  if (count == 0 && !value.sequence) {
    value.data = std::monostate{};
    return;
  }
  switch (StorageKindOf(value.type)) {
    case StorageKind::Integer:
      DataOf<Value::Integers>(value).resize(count);
      return;
    case StorageKind::Real:
      DataOf<Value::Reals>(value).resize(count * PartsOf(value.type));
      return;
    case StorageKind::Text:
      DataOf<Value::Texts>(value).resize(count);
      return;
    case StorageKind::Bytes:
      DataOf<Value::ByteStrings>(value).resize(count);
      return;
  }
}

}  // namespace hv::vex::engine
