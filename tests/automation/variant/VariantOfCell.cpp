// tests/automation/variant/VariantOfCell.cpp - variants from the two cells that describe them.
#include "VariantOfCell.h"

#include "GoldenTable.h"

#include <storefabric/Dispatch.h>
#include "cor/Counted.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <sstream>
#include <utility>

namespace hv::golden {

namespace {

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

using Cell = const std::string&;
struct Kind {
  const char* name;
  std::uint16_t type;
  Variant (*make)(Cell);
};
template <class Number, Variant (*kMake)(Number)>
Variant Of(Cell cell) {
  return kMake(static_cast<Number>(std::strtoull(cell.c_str(), nullptr, 10)));  // minus wraps
}
const Kind kKinds[] = {
    {"VT_EMPTY", VT_EMPTY, [](Cell) { return Variant(); }},
    {"VT_NULL", VT_NULL, [](Cell) { return Variant::Null(); }},
    {"VT_I1", VT_I1, &Of<std::int8_t, &Variant::I1>},
    {"VT_I2", VT_I2, &Of<std::int16_t, &Variant::I2>},
    {"VT_I4", VT_I4, &Of<std::int32_t, &Variant::I4>},
    {"VT_INT", VT_INT, &Of<std::int32_t, &Variant::Int>},
    {"VT_I8", VT_I8, &Of<std::int64_t, &Variant::I8>},
    {"VT_UI1", VT_UI1, &Of<std::uint8_t, &Variant::UI1>},
    {"VT_UI2", VT_UI2, &Of<std::uint16_t, &Variant::UI2>},
    {"VT_UI4", VT_UI4, &Of<std::uint32_t, &Variant::UI4>},
    {"VT_UINT", VT_UINT, &Of<std::uint32_t, &Variant::UInt>},
    {"VT_UI8", VT_UI8, &Of<std::uint64_t, &Variant::UI8>},
    {"VT_BOOL", VT_BOOL, &Of<std::int16_t, &Variant::BoolBits>},
    {"VT_CY", VT_CY, &Of<std::int64_t, &Variant::Cy>},
    {"VT_R4", VT_R4, [](Cell c) { return Variant::R4(static_cast<float>(DecodeDouble(c))); }},
    {"VT_R8", VT_R8, [](Cell c) { return Variant::R8(DecodeDouble(c)); }},
    {"VT_DATE", VT_DATE, [](Cell c) { return Variant::Date(DecodeDouble(c)); }},
    {"VT_BSTR", VT_BSTR, [](Cell c) { return Variant::Text(DecodeText(c)); }},
    {"VT_DECIMAL", VT_DECIMAL, [](Cell c) { return Variant::Dec(DecodeDecimal(c)); }},
    {"VT_ERROR", VT_ERROR,
     [](Cell c) {
       return Variant::Error(static_cast<Result>(std::strtoul(c.c_str(), nullptr, 16)));
     }},
    {"VT_DISPATCH", VT_DISPATCH,
     [](Cell c) {
       if (c == "null") return Variant::Object(nullptr);
       return Variant::Object(MakeRef<FakeObject>(c == "object(default=VT_I4:10)").Get());
     }},
    {"VT_UNKNOWN", VT_UNKNOWN, [](Cell c) {
       if (c == "null") return Variant::Unknown(nullptr);
       return Variant::Unknown(MakeRef<PlainObject>().Get());
     }}};

const Kind& KindOf(const std::string& name) {
  const auto* const kind = std::ranges::find(kKinds, name, &Kind::name);
  if (kind != std::end(kKinds)) return *kind;
  ADD_FAILURE() << "unknown type " << name;
  return kKinds[0];
}

Variant SimpleVariant(const std::string& type, Cell cell) { return KindOf(type).make(cell); }

}  // namespace

std::uint16_t TypeOfName(const std::string& name) { return KindOf(name).type; }

std::optional<OwnedVariant> VariantOfCells(const std::string& type, const std::string& value) {
  if (type == "VT_15" || type == "VT_VOID" || type == "VT_ARRAY|VT_UI1") return std::nullopt;
  if (type == "VT_ARRAY|VT_I2") return OwnedVariant{Variant::Array({}), nullptr};
  const std::string byRef = "VT_BYREF|";
  if (!type.starts_with(byRef)) return OwnedVariant{SimpleVariant(type, value), nullptr};
  std::string targetType = type.substr(byRef.size());
  std::string targetValue = value;
  if (targetType == "VT_VARIANT") {
    const std::size_t colon = value.find(':');
    targetType = value.substr(0, colon);
    targetValue = value.substr(colon + 1);
  }
  auto target = std::make_unique<Variant>(SimpleVariant(targetType, targetValue));
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
      return std::isnan(DecodeDouble(cell)) ? std::isnan(value.AsDouble())
                                            : std::bit_cast<std::uint64_t>(value.AsDouble()) ==
                                                  std::bit_cast<std::uint64_t>(DecodeDouble(cell));
    case VT_BSTR:
      return value.AsText().view() == DecodeText(cell);
    case VT_DECIMAL:
      return value.AsDecimal() == DecodeDecimal(cell);
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return (value.AsUnknown() != nullptr) == (cell == "object");
    default:
      return value.AsInt64() == std::ranges::find(kKinds, type, &Kind::type)->make(cell).AsInt64();
  }
}

std::string Describe(const Variant& value) {
  std::ostringstream text;
  text << "type " << value.Type() << " value " << std::hexfloat;
  if (value.Is(VT_R4) || value.Is(VT_R8) || value.Is(VT_DATE)) {
    text << value.AsDouble();
  } else if (value.Is(VT_BSTR)) {
    text << cor::ToUtf8(value.AsText());
  } else if (value.Is(VT_DECIMAL)) {
    const Decimal& decimal = value.AsDecimal();
    text << +decimal.sign << ':' << +decimal.scale << ':' << decimal.high << ':' << decimal.low;
  } else {
    text << value.AsInt64();
  }
  return text.str();
}

}  // namespace hv::golden
