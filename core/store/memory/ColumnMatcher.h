// core/store/memory/ColumnMatcher.h - one condition on the rows of one table, prepared for
// scanning.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "core/query/BoundQuery.h"
#include "core/store/memory/MemoryTable.h"

namespace hv::vex::engine {

/// A condition with its constant prepared for the column it is compared with. Refers to the table,
/// which must not change meanwhile.
///
/// Beyond what BoundQuery says: a constant for a Float attribute is rounded to Float first, so that
/// 0.1 finds 0.1; a NaN meets no condition, as if it were unset; sequences, complex numbers and
/// byte strings meet none.
class ColumnMatcher {
 public:
  ColumnMatcher() = default;
  ColumnMatcher(const ColumnMatcher&) = delete;
  ColumnMatcher& operator=(const ColumnMatcher&) = delete;
  virtual ~ColumnMatcher() = default;

  /// Keeps those rows of the range that meet the condition.
  virtual void Keep(WordRange range, RowSet& rows) const = 0;
  [[nodiscard]] virtual bool Matches(Row row) const = 0;
  /// Rough cost of a row, relative to a comparison of numbers (10).
  [[nodiscard]] virtual int Cost() const = 0;
};

/// `attribute` of the table, compared by `op` with `constant`.
std::unique_ptr<ColumnMatcher> MakeCompareMatcher(const MemoryTable& table, std::int32_t attribute,
                                                  QueryOp op, const BoundConstant& constant);
/// The condition of an InstanceAttribute node, whose path is already walked. `node` must live as
/// long as the result.
std::unique_ptr<ColumnMatcher> MakeInstanceAttributeMatcher(const MemoryTable& table,
                                                            const BoundNode& node);
/// The folded `word` occurs in a String attribute.
std::unique_ptr<ColumnMatcher> MakeTextSearchMatcher(const MemoryTable& table,
                                                     std::u16string_view word);

}  // namespace hv::vex::engine
