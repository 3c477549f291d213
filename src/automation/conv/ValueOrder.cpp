// automation/conv/ValueOrder.cpp - the order of values of unknown types.
#include "automation/conv/ValueOrder.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

#include <storefabric/Dispatch.h>
#include <storefabric/IVexTimeDisp.h>

#include "automation/Guards.h"
#include "automation/conv/AutomationDate.h"
#include "automation/conv/VexTime.h"
#include "automation/variant/TextCompare.h"

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

namespace {

using Positions = std::vector<std::size_t>;

/// Numbers that can be compared as doubles. Up to here every whole number is one.
constexpr std::int64_t kLastExact = std::int64_t{1} << 53;

std::optional<double> PlainNumber(const Variant& value) {
  switch (value.Type()) {
    case VT_R4:
    case VT_R8:
      return std::isnan(value.AsDouble()) ? std::nullopt : std::optional(value.AsDouble());
    case VT_I2:
    case VT_I4:
    case VT_I8:
    case VT_BOOL:
      if (value.AsInt64() > kLastExact || value.AsInt64() < -kLastExact) return std::nullopt;
      return static_cast<double>(value.AsInt64());
    case VT_UI1:
      return static_cast<double>(value.AsUInt64());
    default:
      return std::nullopt;
  }
}

template <class Key>
struct Keyed {
  Key key;
  std::size_t position;
  friend bool operator<(const Keyed& a, const Keyed& b) {
    return a.key < b.key || (a.key == b.key && a.position < b.position);
  }
};

struct TextKey {
  std::optional<std::uint64_t> prefix;
  std::u16string_view text;
  std::size_t position;
  friend bool operator<(const TextKey& a, const TextKey& b) {
    if (a.prefix && b.prefix && *a.prefix != *b.prefix) return *a.prefix < *b.prefix;
    return automation::CompareTextPlatform(a.text, b.text) < 0;
  }
};

template <class Key>
void AppendPositions(const std::vector<Key>& keys, Positions* positions) {
  for (const Key& key : keys) positions->push_back(key.position);
}

/// Sorts values that are neither times nor nothing, if all of them are texts and numbers of kinds
/// that compare as doubles with each other; false, and nothing is done, if they aren't.
bool AppendPlainOrder(std::span<const Variant> values, const Positions& others,
                      Positions* positions) {
  std::vector<Keyed<double>> numbers;
  std::vector<TextKey> texts;
  numbers.reserve(others.size());
  std::size_t floats = 0;
  for (const std::size_t at : others) {
    const Variant& value = values[at];
    if (value.Is(VT_BSTR)) {
      const std::u16string_view text = value.AsText().view();
      texts.push_back({automation::WordSortPrefix(text), text, at});
    } else if (const auto number = PlainNumber(value)) {
      floats += value.Is(VT_R4) ? 1 : 0;
      numbers.push_back({*number, at});
    } else {
      return false;
    }
  }
  // Beside a float every number is rounded to one.
  if (floats != 0 && floats != numbers.size()) return false;
  std::ranges::sort(numbers, std::less<>());
  std::ranges::stable_sort(texts, std::less<>());
  AppendPositions(numbers, positions);
  AppendPositions(texts, positions);
  return true;
}

}  // namespace

std::vector<std::size_t> AscendingOrder(std::span<const Variant> values) {
  using Fields = std::array<std::int16_t, 9>;
  Positions others;
  std::vector<Keyed<Fields>> times;
  Positions nothings;
  for (std::size_t i = 0; i < values.size(); ++i) {
    // Times are broken down once, not in each of the many comparisons of a sort.
    const OrderedValue value(values[i]);
    if (value.IsNothing()) {
      nothings.push_back(i);
    } else if (value.IsTime()) {
      times.push_back({value.Fields(), i});
    } else {
      others.push_back(i);
    }
  }
  Positions positions;
  positions.reserve(values.size());
  if (!AppendPlainOrder(values, others, &positions)) {
    std::ranges::stable_sort(others, [values](std::size_t a, std::size_t b) {
      VarOrder order = VarOrder::Null;
      return !Failed(CompareVariants(values[a], values[b], &order)) && order == VarOrder::Less;
    });
    positions = std::move(others);
  }
  std::ranges::sort(times, std::less<>());
  AppendPositions(times, &positions);
  positions.insert(positions.end(), nothings.begin(), nothings.end());
  return positions;
}

}  // namespace hv::util::conv
