// core/store/memory/ValueTest.h - comparisons of one value with a constant, prepared once.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/query/BoundQuery.h"
#include "core/query/TextMatch.h"
#include "core/store/memory/TextArena.h"

namespace hv::vex::engine {

/// Every comparison of whole numbers is a range that the value lies in, or (NotEqual) outside of.
struct IntegerTest {
  std::int64_t lowest = 0;
  std::int64_t highest = -1;  // below `lowest`: no value passes
  bool isOutside = false;

  static IntegerTest Make(QueryOp op, const BoundConstant& constant);
  [[nodiscard]] bool IsNever() const { return lowest > highest; }
  bool operator()(std::int64_t value) const {
    const auto base = static_cast<std::uint64_t>(lowest);
    const bool isInside =
        static_cast<std::uint64_t>(value) - base <= static_cast<std::uint64_t>(highest) - base;
    return isInside != isOutside;
  }
};

/// NaN passes no test.
struct RealTest {
  enum class Kind : std::uint8_t { Never, Any, Compare };
  Kind kind = Kind::Never;
  QueryOp op = QueryOp::Equal;
  double constant = 0;

  /// `isFloat`: for values of single precision, to which the constant is rounded.
  static RealTest Make(QueryOp op, const BoundConstant& constant, bool isFloat);
  bool operator()(double value) const;
};

/// Texts and dates.
class TextTest final {
 public:
  /// `constant` as BoundQuery tells; for dates (`isDate`) its text of 14 digits.
  TextTest(QueryOp op, const BoundConstant& constant, bool isDate);
  bool operator()(const StoredText& text) const;
  /// Relative to a comparison of numbers (10).
  [[nodiscard]] int Cost() const;

 private:
  enum class Kind : std::uint8_t { Never, Any, Equal, Pattern, Order, Date };
  [[nodiscard]] bool IsEqual(const StoredText& text) const;
  [[nodiscard]] int CompareDate(const StoredText& text) const;

  Kind m_kind;
  QueryOp m_op;
  bool m_fold;
  bool m_isAscii;  // the constant
  std::u16string m_constant;
  std::optional<WildcardPattern> m_pattern;
  mutable std::u16string m_buffer;
};

}  // namespace hv::vex::engine
