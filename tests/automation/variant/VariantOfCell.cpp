// tests/automation/variant/VariantOfCell.cpp - variants from the two cells that describe them.
#include "VariantOfCell.h"

#include "GoldenTable.h"

#include <storefabric/Dispatch.h>
#include "cor/Counted.h"

#include <bit>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace hv::golden {

namespace {

constexpr std::pair<const char*, std::uint16_t> kTypes[] = {
    {"VT_EMPTY", VT_EMPTY},     {"VT_NULL", VT_NULL},
    {"VT_I2", VT_I2},           {"VT_I4", VT_I4},
    {"VT_R4", VT_R4},           {"VT_R8", VT_R8},
    {"VT_CY", VT_CY},           {"VT_DATE", VT_DATE},
    {"VT_BSTR", VT_BSTR},       {"VT_DISPATCH", VT_DISPATCH},
    {"VT_ERROR", VT_ERROR},     {"VT_BOOL", VT_BOOL},
    {"VT_UNKNOWN", VT_UNKNOWN}, {"VT_DECIMAL", VT_DECIMAL},
    {"VT_I1", VT_I1},           {"VT_UI1", VT_UI1},
    {"VT_UI2", VT_UI2},         {"VT_UI4", VT_UI4},
    {"VT_I8", VT_I8},           {"VT_UI8", VT_UI8},
    {"VT_INT", VT_INT},         {"VT_UINT", VT_UINT}};

/// An object whose default member gives the number 10, or that has none.
class FakeObject final : public cor::Counted<IDispatch> {
 public:
  explicit FakeObject(bool hasDefault) : m_hasDefault(hasDefault) {}
  Result GetIdOfName(std::u16string_view, std::int32_t* id) override {
    *id = kDispIdUnknown;
    return DISP_E_UNKNOWNNAME;
  }
  Result Invoke(std::int32_t id, CallKind, std::span<const Variant>, Variant* result,
                ErrorInfo*) override {
    if (id != kDispIdValue || !m_hasDefault) return DISP_E_MEMBERNOTFOUND;
    *result = Variant::I4(10);
    return S_OK;
  }
  std::uint32_t GetMemberCount() override { return 0; }
  Result GetMember(std::uint32_t, MemberInfo*) override { return E_INVALIDARG; }
  std::u16string_view GetClassName() override { return u"Fake"; }

 private:
  ~FakeObject() override = default;
  bool m_hasDefault;
};

/// An object that offers no dispatch.
class PlainObject final : public cor::Counted<IUnknown> {
  ~PlainObject() override = default;
};

Variant ObjectOf(std::uint16_t type, const std::string& cell) {
  if (type == VT_UNKNOWN) {
    if (cell == "null") return Variant::Unknown(nullptr);
    return Variant::Unknown(MakeRef<PlainObject>().Get());
  }
  if (cell == "null") return Variant::Object(nullptr);
  return Variant::Object(MakeRef<FakeObject>(cell == "object(default=VT_I4:10)").Get());
}

Variant SimpleVariant(std::uint16_t type, const std::string& cell) {
  const std::int64_t number = std::strtoll(cell.c_str(), nullptr, 10);
  const std::uint64_t natural = std::strtoull(cell.c_str(), nullptr, 10);
  switch (type) {
    case VT_NULL:
      return Variant::Null();
    case VT_I1:
      return Variant::I1(static_cast<std::int8_t>(number));
    case VT_I2:
      return Variant::I2(static_cast<std::int16_t>(number));
    case VT_I4:
      return Variant::I4(static_cast<std::int32_t>(number));
    case VT_INT:
      return Variant::Int(static_cast<std::int32_t>(number));
    case VT_I8:
      return Variant::I8(number);
    case VT_UI1:
      return Variant::UI1(static_cast<std::uint8_t>(natural));
    case VT_UI2:
      return Variant::UI2(static_cast<std::uint16_t>(natural));
    case VT_UI4:
      return Variant::UI4(static_cast<std::uint32_t>(natural));
    case VT_UINT:
      return Variant::UInt(static_cast<std::uint32_t>(natural));
    case VT_UI8:
      return Variant::UI8(natural);
    case VT_BOOL:
      return Variant::BoolBits(static_cast<std::int16_t>(number));
    case VT_CY:
      return Variant::Cy(number);
    case VT_R4:
      return Variant::R4(static_cast<float>(DecodeDouble(cell)));
    case VT_R8:
      return Variant::R8(DecodeDouble(cell));
    case VT_DATE:
      return Variant::Date(DecodeDouble(cell));
    case VT_BSTR:
      return Variant::Text(DecodeText(cell));
    case VT_DECIMAL:
      return Variant::Dec(DecodeDecimal(cell));
    case VT_ERROR:
      return Variant::Error(
          MakeResult(static_cast<std::uint32_t>(std::strtoul(cell.c_str(), nullptr, 16))));
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return ObjectOf(type, cell);
    default:
      return {};
  }
}

bool SameDouble(double a, double b) {
  if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

}  // namespace

std::uint16_t TypeOfName(const std::string& name) {
  for (const auto& [known, type] : kTypes) {
    if (name == known) return type;
  }
  ADD_FAILURE() << "unknown type " << name;
  return VT_EMPTY;
}

std::optional<OwnedVariant> VariantOfCells(const std::string& type, const std::string& value) {
  if (type == "VT_15" || type == "VT_VOID" || type == "VT_ARRAY|VT_UI1") return std::nullopt;
  if (type == "VT_ARRAY|VT_I2") return OwnedVariant{Variant::Array({}), nullptr};
  const std::string byRef = "VT_BYREF|";
  if (!type.starts_with(byRef))
    return OwnedVariant{SimpleVariant(TypeOfName(type), value), nullptr};
  std::string targetType = type.substr(byRef.size());
  std::string targetValue = value;
  if (targetType == "VT_VARIANT") {
    const std::size_t colon = value.find(':');
    targetType = value.substr(0, colon);
    targetValue = value.substr(colon + 1);
  }
  auto target = std::make_unique<Variant>(SimpleVariant(TypeOfName(targetType), targetValue));
  Variant reference = Variant::RefTo(target.get());
  return OwnedVariant{std::move(reference), std::move(target)};
}

bool Matches(const Variant& value, std::uint16_t type, const std::string& cell) {
  if (value.Type() != type) return false;
  switch (type) {
    case VT_EMPTY:
    case VT_NULL:
      return true;
    case VT_R4:
    case VT_R8:
    case VT_DATE:
      return SameDouble(value.AsDouble(), DecodeDouble(cell));
    case VT_BSTR:
      return value.AsText().view() == DecodeText(cell);
    case VT_DECIMAL:
      return value.AsDecimal() == DecodeDecimal(cell);
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return (value.AsUnknown() != nullptr) == (cell == "object");
    default:
      return value.AsInt64() == SimpleVariant(type, cell).AsInt64();
  }
}

std::string Describe(const Variant& value) {
  const std::string type = "type " + std::to_string(value.Type()) + " value ";
  switch (value.Type()) {
    case VT_R4:
    case VT_R8:
    case VT_DATE: {
      char buffer[64];
      std::snprintf(buffer, sizeof buffer, "%a", value.AsDouble());
      return type + buffer;
    }
    case VT_BSTR:
      return type + cor::ToUtf8(value.AsText().view());
    case VT_DECIMAL: {
      const Decimal& decimal = value.AsDecimal();
      return type + std::to_string(decimal.sign) + ":" + std::to_string(decimal.scale) + ":" +
             std::to_string(decimal.high) + ":" + std::to_string(decimal.low);
    }
    default:
      return type + std::to_string(value.AsInt64());
  }
}

}  // namespace hv::golden
