// core/store/memory/LinkColumn.h - one direction of a relation for all rows of a table.
#pragma once

#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "core/store/memory/RowSet.h"

namespace hv::vex::engine {

/// The rows that each row is linked to, in the order in which they were linked. A to-one relation
/// is one row number per row. A to-many relation lies in one array after the bulk filling; a row
/// whose list is changed later gets a list of its own.
class LinkColumn final {
 public:
  explicit LinkColumn(bool isToMany) : m_isToMany(isToMany) {}

  [[nodiscard]] bool IsToMany() const { return m_isToMany; }
  /// Valid until the next change.
  [[nodiscard]] std::span<const Row> Of(Row row) const;
  [[nodiscard]] std::size_t CountOf(Row row) const;
  [[nodiscard]] bool Has(Row row, Row target) const;
  /// Adds a target at the end. It must not be there, and a to-one row must have none.
  void Add(Row row, Row target);
  /// Removes a target, which must be there. Takes no longer where there are many.
  void Remove(Row row, Row target);
  void Clear(Row row);

  /// Takes over lists as one array: row r's targets are `targets[starts[r]]` up to
  /// `targets[starts[r + 1]]`.
  void SetLists(std::vector<std::uint32_t> starts, std::vector<Row> targets);
  /// Takes over the single targets of a to-one relation, kNoRow where there is none.
  void SetSingles(std::vector<Row> targets) { m_singles = std::move(targets); }

 private:
  /// A list that was changed. What is removed is taken out of `rows` all at once, when the list is
  /// looked at again: otherwise deleting all children of one record would take a walk for each.
  struct List {
    std::vector<Row> rows;
    std::vector<Row> removed;
  };
  List& ListOf(Row row);
  static void Settle(List& list);

  bool m_isToMany;
  std::vector<Row> m_singles;
  std::vector<std::uint32_t> m_starts;
  std::vector<Row> m_targets;
  mutable std::unordered_map<Row, List> m_changed;  // settling leaves the contents as they are
};

}  // namespace hv::vex::engine
