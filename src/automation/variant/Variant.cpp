// automation/variant/Variant.cpp - making, copying and reading variants.
#include <storefabric/Variant.h>

#include <storefabric/Dispatch.h>

#include <utility>

namespace hv {

static_assert(sizeof(Variant) == 16, "a variant travels in two words");

namespace {

constexpr std::uint16_t kArrayOfVariants = VT_ARRAY | VT_VARIANT;
constexpr std::uint16_t kRefToVariant = VT_BYREF | VT_VARIANT;

}  // namespace

Variant::Variant(const Variant& other) : m_type(other.m_type), m_value(other.m_value) {
  switch (m_type) {
    case VT_BSTR:
      m_value.text = new WString(*other.m_value.text);
      break;
    case VT_DECIMAL:
      m_value.decimal = new Decimal(*other.m_value.decimal);
      break;
    case kArrayOfVariants:
      m_value.array = new std::vector<Variant>(*other.m_value.array);
      break;
    case VT_DISPATCH:
      m_value.dispatch = Ref<IDispatch>::Share(other.m_value.dispatch).Detach();
      break;
    case VT_UNKNOWN:
      m_value.unknown = Ref<IUnknown>::Share(other.m_value.unknown).Detach();
      break;
    default:
      break;
  }
}

Variant::Variant(Variant&& other) noexcept
    : m_type(std::exchange(other.m_type, static_cast<std::uint16_t>(VT_EMPTY))),
      m_value(std::exchange(other.m_value, Value{})) {}

Variant& Variant::operator=(const Variant& other) {
  // The copy is made first: `other` may live inside the array that this variant lets go of.
  Variant(other).Swap(*this);
  return *this;
}

Variant& Variant::operator=(Variant&& other) noexcept {
  Variant(std::move(other)).Swap(*this);
  return *this;
}

Variant::~Variant() { Clear(); }

void Variant::Clear() {
  const std::uint16_t type = std::exchange(m_type, static_cast<std::uint16_t>(VT_EMPTY));
  const Value value = std::exchange(m_value, Value{});
  switch (type) {
    case VT_BSTR:
      delete value.text;
      break;
    case VT_DECIMAL:
      delete value.decimal;
      break;
    case kArrayOfVariants:
      delete value.array;
      break;
    case VT_DISPATCH:
      Ref<IDispatch>::Adopt(value.dispatch).Reset();
      break;
    case VT_UNKNOWN:
      Ref<IUnknown>::Adopt(value.unknown).Reset();
      break;
    default:
      break;
  }
}

void Variant::Swap(Variant& other) noexcept {
  std::swap(m_type, other.m_type);
  std::swap(m_value, other.m_value);
}

Variant Variant::Signed(VarType type, std::int64_t value) {
  Variant v;
  v.m_type = type;
  v.m_value.i64 = value;
  return v;
}

Variant Variant::Unsigned(VarType type, std::uint64_t value) {
  Variant v;
  v.m_type = type;
  v.m_value.u64 = value;
  return v;
}

Variant Variant::Real(VarType type, double value) {
  Variant v;
  v.m_type = type;
  v.m_value.r64 = value;
  return v;
}

Variant Variant::Null() { return Signed(VT_NULL, 0); }
Variant Variant::Missing() { return Error(DISP_E_PARAMNOTFOUND); }
Variant Variant::Error(Result code) { return Signed(VT_ERROR, static_cast<std::int32_t>(code)); }
Variant Variant::Bool(bool value) { return Signed(VT_BOOL, value ? -1 : 0); }
Variant Variant::BoolBits(std::int16_t bits) { return Signed(VT_BOOL, bits); }
Variant Variant::I1(std::int8_t value) { return Signed(VT_I1, value); }
Variant Variant::I2(std::int16_t value) { return Signed(VT_I2, value); }
Variant Variant::I4(std::int32_t value) { return Signed(VT_I4, value); }
Variant Variant::I8(std::int64_t value) { return Signed(VT_I8, value); }
Variant Variant::UI1(std::uint8_t value) { return Unsigned(VT_UI1, value); }
Variant Variant::UI2(std::uint16_t value) { return Unsigned(VT_UI2, value); }
Variant Variant::UI4(std::uint32_t value) { return Unsigned(VT_UI4, value); }
Variant Variant::UI8(std::uint64_t value) { return Unsigned(VT_UI8, value); }
Variant Variant::Int(std::int32_t value) { return Signed(VT_INT, value); }
Variant Variant::UInt(std::uint32_t value) { return Unsigned(VT_UINT, value); }
Variant Variant::R4(float value) { return Real(VT_R4, static_cast<double>(value)); }
Variant Variant::R8(double value) { return Real(VT_R8, value); }
Variant Variant::Cy(std::int64_t tenThousandths) { return Signed(VT_CY, tenThousandths); }
Variant Variant::Date(double days) { return Real(VT_DATE, days); }

Variant Variant::Dec(const Decimal& value) {
  Variant v;
  v.m_value.decimal = new Decimal(value);
  v.m_type = VT_DECIMAL;
  return v;
}

Variant Variant::Text(std::u16string_view text) { return Text(WString(text)); }

Variant Variant::Text(const char16_t* text) { return Text(WString(text)); }

Variant Variant::Text(WString&& text) {
  Variant v;
  v.m_value.text = new WString(std::move(text));
  v.m_type = VT_BSTR;
  return v;
}

Variant Variant::Object(IDispatch* object) {
  Variant v;
  v.m_value.dispatch = Ref<IDispatch>::Share(object).Detach();
  v.m_type = VT_DISPATCH;
  return v;
}

Variant Variant::Unknown(IUnknown* object) {
  Variant v;
  v.m_value.unknown = Ref<IUnknown>::Share(object).Detach();
  v.m_type = VT_UNKNOWN;
  return v;
}

Variant Variant::Array(std::vector<Variant> items) {
  Variant v;
  v.m_value.array = new std::vector<Variant>(std::move(items));
  v.m_type = kArrayOfVariants;
  return v;
}

Variant Variant::RefTo(Variant* target) {
  Variant v;
  v.m_value.target = target;
  v.m_type = kRefToVariant;
  return v;
}

bool Variant::IsMissing() const {
  return m_type == VT_ERROR && m_value.i64 == static_cast<std::int32_t>(DISP_E_PARAMNOTFOUND);
}

const WString& Variant::AsText() const { return *m_value.text; }
const Decimal& Variant::AsDecimal() const { return *m_value.decimal; }
const std::vector<Variant>& Variant::AsArray() const { return *m_value.array; }
std::vector<Variant>& Variant::AsArray() { return *m_value.array; }

const Variant& Variant::Dereferenced() const {
  const Variant* v = this;
  while (v->m_type == kRefToVariant && v->m_value.target) v = v->m_value.target;
  return *v;
}

}  // namespace hv
