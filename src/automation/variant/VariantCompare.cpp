// automation/variant/VariantCompare.cpp - the order of two variants.
#include <storefabric/Variant.h>

#include <cmath>
#include <limits>

#include "automation/variant/DecimalMath.h"
#include "automation/variant/TextCompare.h"

namespace hv {

namespace {

using automation::CompareDecimals;
using automation::CompareTextPlatform;

constexpr double kCyScale = 10000;

enum class Side : std::uint8_t { Left, Right };

/// Types that no comparison takes, whatever the other side is.
bool IsRefused(std::uint16_t type, Side side) {
  if (side == Side::Right && (type == VT_UI8 || type == VT_INT)) return true;
  return type >= VT_UINT || type == VT_VARIANT;
}

bool IsComparable(std::uint16_t type) {
  switch (type) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_I2:
    case VT_I4:
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_BSTR:
    case VT_BOOL:
    case VT_DECIMAL:
    case VT_UI1:
    case VT_I8:
    case VT_INT:
      return true;
    default:
      return false;
  }
}

VarOrder OrderOf(int difference) {
  return difference < 0 ? VarOrder::Less : difference > 0 ? VarOrder::Greater : VarOrder::Equal;
}

/// A NaN is greater than everything, from both sides.
template <class T>
VarOrder Order(T a, T b) {
  return a < b ? VarOrder::Less : a == b ? VarOrder::Equal : VarOrder::Greater;
}

VarOrder Reverse(VarOrder order) {
  return order == VarOrder::Less      ? VarOrder::Greater
         : order == VarOrder::Greater ? VarOrder::Less
                                      : order;
}

bool IsReal(const Variant& v) { return v.Is(VT_R4) || v.Is(VT_R8) || v.Is(VT_DATE); }

double ToDouble(const Variant& v) {
  return IsReal(v) ? v.AsDouble() : static_cast<double>(v.AsInt64());
}

bool IsNegative(const Variant& v) {
  return IsReal(v) ? std::signbit(v.AsDouble()) : v.AsInt64() < 0;
}

/// The order of a decimal and a number of another type, as decimals.
Result CompareWithDecimal(const Decimal& a, const Variant& b, VarOrder* order) {
  if (IsReal(b) && std::isnan(b.AsDouble())) return DISP_E_BADVARTYPE;
  Variant converted;
  if (Failed(b.ChangeType(VT_DECIMAL, &converted))) {
    // Beyond every decimal, on the side that its sign tells.
    *order = IsNegative(b) ? VarOrder::Greater : VarOrder::Less;
  } else {
    *order = OrderOf(CompareDecimals(a, converted.AsDecimal()));
  }
  return S_OK;
}

/// The order of a currency value and another number: beside a real number as doubles, beside an
/// integer as currency values.
VarOrder CompareWithCy(std::int64_t a, const Variant& b) {
  if (IsReal(b)) return Order(static_cast<double>(a) / kCyScale, b.AsDouble());
  Variant converted;
  if (Failed(b.ChangeType(VT_CY, &converted))) {
    return IsNegative(b) ? VarOrder::Greater : VarOrder::Less;
  }
  return Order(a, converted.AsInt64());
}

/// The order of two numbers as floats; a number that no float can hold keeps its own place.
VarOrder CompareAsFloats(double a, double b) {
  constexpr double kMost = std::numeric_limits<float>::max();
  if (std::fabs(a) > kMost || std::fabs(b) > kMost) return Order(a, b);
  return Order(static_cast<float>(a), static_cast<float>(b));
}

Result CompareNumbers(const Variant& a, const Variant& b, VarOrder* order) {
  if (a.Is(VT_DECIMAL) && b.Is(VT_DECIMAL)) {
    *order = OrderOf(CompareDecimals(a.AsDecimal(), b.AsDecimal()));
    return S_OK;
  }
  if (a.Is(VT_DECIMAL)) return CompareWithDecimal(a.AsDecimal(), b, order);
  if (b.Is(VT_DECIMAL)) {
    const Result rc = CompareWithDecimal(b.AsDecimal(), a, order);
    *order = Reverse(*order);
    return rc;
  }
  if (a.Is(VT_CY)) {
    *order = CompareWithCy(a.AsInt64(), b);
  } else if (b.Is(VT_CY)) {
    const bool isNan = IsReal(a) && std::isnan(a.AsDouble());
    *order = isNan ? VarOrder::Greater : Reverse(CompareWithCy(b.AsInt64(), a));
  } else if (a.Is(VT_R4) || b.Is(VT_R4)) {
    *order = CompareAsFloats(ToDouble(a), ToDouble(b));
  } else if (IsReal(a) || IsReal(b)) {
    *order = Order(ToDouble(a), ToDouble(b));
  } else {
    *order = Order(a.AsInt64(), b.AsInt64());
  }
  return S_OK;
}

/// The order of two values, at least one of them a text. Numbers come before all texts.
VarOrder CompareWithText(const Variant& a, const Variant& b) {
  if (a.Is(VT_BSTR) && b.Is(VT_BSTR)) {
    return OrderOf(CompareTextPlatform(a.AsText().view(), b.AsText().view()));
  }
  if (b.Is(VT_BSTR)) {
    return a.IsEmpty() && b.AsText().empty() ? VarOrder::Equal : VarOrder::Less;
  }
  return Reverse(CompareWithText(b, a));
}

}  // namespace

Result CompareVariants(const Variant& a, const Variant& b, VarOrder* order) {
  if (!order) return E_POINTER;
  if (IsRefused(a.Type(), Side::Left) || IsRefused(b.Type(), Side::Right)) return DISP_E_BADVARTYPE;
  *order = VarOrder::Equal;
  if (a.Is(VT_ERROR) && b.Is(VT_ERROR)) return S_OK;
  if (!IsComparable(a.Type()) || !IsComparable(b.Type())) return DISP_E_TYPEMISMATCH;
  if (a.Is(VT_NULL) || b.Is(VT_NULL)) {
    *order = VarOrder::Null;
    return S_OK;
  }
  if (a.Is(VT_BSTR) || b.Is(VT_BSTR)) {
    *order = CompareWithText(a, b);
    return S_OK;
  }
  return CompareNumbers(a, b, order);
}

}  // namespace hv
