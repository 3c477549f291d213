// core/store/memory/QueryEvaluator.h - runs a bound query over tables in memory, set by set.
#pragma once

#include <memory>
#include <span>
#include <vector>

#include "core/query/BoundQuery.h"
#include "core/store/memory/ColumnMatcher.h"
#include "core/store/memory/MemoryStore.h"
#include "core/store/memory/RowSet.h"

namespace hv::vex::engine {

/// One run of one query. Conditions are scans of one column that leave a bitmap of rows; a
/// condition on related records is scanned where they are and walked back along the relations to
/// the records asked for. The store must not change meanwhile, and `query` must outlive the
/// evaluator.
class QueryEvaluator final {
 public:
  QueryEvaluator(const MemoryStore& store, const BoundQuery& query);
  QueryEvaluator(const QueryEvaluator&) = delete;
  QueryEvaluator& operator=(const QueryEvaluator&) = delete;
  ~QueryEvaluator();

  /// The ids as RecordStore::Select gives them.
  [[nodiscard]] std::vector<RecordId> Run();
  /// The rows of those records.
  [[nodiscard]] RowSet Rows();

 private:
  struct Plan;
  Plan MakePlan(const BoundNode& node) const;
  Plan MakeTextPlan() const;
  RowSet FindRows(std::size_t limit);
  /// The rows that the query's start leads to, in the order of their links.
  [[nodiscard]] std::span<const Row> StartRows() const;
  void Narrow(Plan& plan, WordRange range, RowSet& rows) const;
  void NarrowAny(Plan& plan, WordRange range, RowSet& rows) const;
  void NarrowRelated(Plan& plan, WordRange range, RowSet& rows) const;
  [[nodiscard]] RowSet WalkBack(const Plan& plan) const;
  [[nodiscard]] RowSet StepBack(const PathStep& step, const RowSet& targets) const;
  [[nodiscard]] bool LeadsToMatch(const Plan& plan, std::size_t step, Row row) const;

  const MemoryStore& m_store;
  const BoundQuery& m_query;
  const MemoryTable& m_table;
  std::unique_ptr<Plan> m_root;  // null: no condition
};

}  // namespace hv::vex::engine
