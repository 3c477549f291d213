// automation/conv/ValueOrder.h - the one place where two values of unknown types are ordered. Every
// sort by a property stands on it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include <storefabric/Result.h>
#include <storefabric/Variant.h>

namespace hv::util::conv {

/// A value made ready for many comparisons. Borrows a value that isn't a time, which must stay as
/// it is.
class OrderedValue {
 public:
  explicit OrderedValue(const Variant& value);

  /// Empty and null are equal and come behind everything; times come behind other values and are
  /// ordered by their nine fields; all others as `CompareVariants` orders them. `*order` is
  /// `VarOrder::Null`, which says that there is no order, with every failure.
  /// \return S_OK; E_POINTER; DISP_E_TYPEMISMATCH or DISP_E_BADVARTYPE for types without an order.
  Result Compare(const OrderedValue& other, VarOrder* order) const;

  [[nodiscard]] bool IsNothing() const { return m_kind == Kind::Nothing; }
  [[nodiscard]] bool IsTime() const { return m_kind == Kind::Time; }
  /// The nine fields of a time, year first.
  [[nodiscard]] const std::array<std::int16_t, 9>& Fields() const { return m_fields; }

 private:
  enum class Kind : std::uint8_t { Other, Time, Nothing };  // in their order

  Kind m_kind = Kind::Other;
  std::array<std::int16_t, 9> m_fields{};
  const Variant* m_value = nullptr;
};

/// The order of two values, see `OrderedValue::Compare`.
Result CompareValues(const Variant& a, const Variant& b, VarOrder* order);

/// The positions of the values in ascending order. Equal ones keep their order, and a pair that has
/// none counts as equal.
std::vector<std::size_t> AscendingOrder(std::span<const Variant> values);

}  // namespace hv::util::conv
