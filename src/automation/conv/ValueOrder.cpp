// automation/conv/ValueOrder.cpp - the order of values of unknown types.
#include "automation/conv/ValueOrder.h"

#include <algorithm>
#include <compare>
#include <limits>
#include <numeric>

#include <storefabric/Dispatch.h>
#include <storefabric/IVexTimeDisp.h>

#include "automation/Guards.h"
#include "automation/conv/AutomationDate.h"
#include "automation/conv/VexTime.h"

namespace hv::util::conv {

namespace {

std::array<std::int16_t, 9> FieldsOf(const TimeParts& parts) {
  using Limits = std::numeric_limits<std::int16_t>;
  const auto narrow = [](std::int32_t field) {
    return static_cast<std::int16_t>(std::clamp<std::int32_t>(field, Limits::min(), Limits::max()));
  };
  return {narrow(parts.year),        narrow(parts.month),       narrow(parts.day),
          narrow(parts.hour),        narrow(parts.minute),      narrow(parts.second),
          narrow(parts.millisecond), narrow(parts.microsecond), narrow(parts.nanosecond)};
}

template <class T>
VarOrder OrderOf(const T& a, const T& b) {
  return a < b ? VarOrder::Less : b < a ? VarOrder::Greater : VarOrder::Equal;
}

}  // namespace

OrderedValue::OrderedValue(const Variant& value) : m_value(&value) {
  TimeParts parts;
  if (value.IsEmpty() || value.Is(VT_NULL)) {
    m_kind = Kind::Nothing;
  } else if (value.Is(VT_DATE)) {
    m_kind = Kind::Time;
    parts = FromAutomationDate(value.AsDouble()).ToParts();
  } else if (value.Is(VT_DISPATCH)) {
    const auto object = QueryRef<vex::IVexTimeDisp>(value.AsObject());
    if (object && !Failed(vex::ReadTimeObject(*object, &parts))) m_kind = Kind::Time;
  }
  if (m_kind == Kind::Time) m_fields = FieldsOf(parts);
}

Result OrderedValue::Compare(const OrderedValue& other, VarOrder* order) const {
  HV_RETURN_IF_NULL(order);
  if (m_kind != other.m_kind) {
    *order = OrderOf(m_kind, other.m_kind);
    return S_OK;
  }
  switch (m_kind) {
    case Kind::Nothing:
      *order = VarOrder::Equal;
      return S_OK;
    case Kind::Time:
      *order = OrderOf(m_fields, other.m_fields);
      return S_OK;
    case Kind::Other:
      break;
  }
  const Result rc = CompareVariants(*m_value, *other.m_value, order);
  if (Failed(rc)) *order = VarOrder::Null;
  return rc;
}

Result CompareValues(const Variant& a, const Variant& b, VarOrder* order) try {
  return OrderedValue(a).Compare(OrderedValue(b), order);
}
HV_CATCH_RETURN()

std::vector<std::size_t> AscendingOrder(std::span<const Variant> values) {
  // Times are broken down once, not in each of the many comparisons of a sort.
  const std::vector<OrderedValue> keys(values.begin(), values.end());
  std::vector<std::size_t> positions(values.size());
  std::iota(positions.begin(), positions.end(), std::size_t{0});
  std::ranges::stable_sort(positions, [&keys](std::size_t a, std::size_t b) {
    VarOrder order = VarOrder::Null;
    return !Failed(keys[a].Compare(keys[b], &order)) && order == VarOrder::Less;
  });
  return positions;
}

}  // namespace hv::util::conv
