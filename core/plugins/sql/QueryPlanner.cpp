// core/plugins/sql/QueryPlanner.cpp - counts what conditions lead to.
#include "core/plugins/sql/QueryPlanner.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace hv::vex::engine::sql {
namespace {

/// A record found by an index costs about as much as this many of those read in their order.
constexpr std::int64_t kIndexCost = 16;
constexpr std::int64_t kFew = 20;  // so many are no matter anyway

class Planner final {
 public:
  Planner(Connection& connection, const Model& model, const Layout& layout, const BoundQuery& query)
      : m_connection(connection), m_model(model), m_layout(layout), m_query(query) {}

  QueryPlan Plan() {
    QueryPlan plan;
    if (!m_layout.isOwn) return plan;
    plan.isOrdered = true;
    // What one record leads to is little, or as much as is wanted.
    if (m_query.start) return plan;
    const std::int64_t rows = RowsOf(m_query.entity);
    std::vector<Candidate> candidates = FindCandidates(rows);
    std::int64_t hits = 0;
    if (const auto fewest = FindFewest(candidates, &hits)) {
      plan.driver = std::move(candidates[*fewest].group);
    }
    if (plan.driver && MayStop() && IsWholeQuery(*plan.driver) && IsSoonAtLimit(rows, hits)) {
      plan.driver.reset();
    }
    plan.isScan = !candidates.empty() && !plan.driver;
    return plan;
  }

 private:
  struct Candidate {
    ConditionGroup group;
    std::int64_t most;  ///< leading to so many, it is no way to begin
  };

  bool MayStop() const { return m_query.limit > 0 && m_query.order.empty(); }

  std::vector<Candidate> FindCandidates(std::int64_t rows) const {
    std::vector<Candidate> candidates;
    for (ConditionGroup& group : Compiler().GroupsOf(m_query)) {
      // A few related records are looked through faster than many are asked for theirs.
      if (!group.isServed && (!group.leadsToOne || RowsOf(group.target) > rows / kIndexCost)) {
        continue;
      }
      const std::int64_t all = rows + (group.leadsToOne ? 0 : RowsOf(group.target));
      const std::int64_t most = all / (MayStop() ? kIndexCost * kIndexCost : kIndexCost);
      candidates.push_back({std::move(group), std::max(kFew, most)});
    }
    return candidates;
  }

  /// All are counted a little, then further, until one has an end: that is what the others may
  /// cost.
  std::optional<std::size_t> FindFewest(const std::vector<Candidate>& candidates,
                                        std::int64_t* hits) const {
    constexpr std::int64_t kFurther = 16;
    std::optional<std::size_t> fewest;
    bool isCounting = true;
    for (std::int64_t limit = kFew; isCounting && !fewest; limit *= kFurther) {
      isCounting = false;
      for (std::size_t i = 0; i < candidates.size(); ++i) {
        if (limit >= candidates[i].most * kFurther) continue;  // counted to its end before
        const std::int64_t most = std::min(limit, candidates[i].most);
        const std::int64_t count = CountOf(candidates[i].group, most);
        isCounting = true;
        if (count >= most || (fewest && count >= *hits)) continue;
        fewest = i;
        *hits = count;
      }
    }
    return fewest;
  }

  QueryCompiler Compiler() const { return {m_model, m_layout, m_connection.GetDialect()}; }

  /// At least as many as there are; a table with odd ids counts as large, not as endless.
  std::int64_t RowsOf(EntityId entity) const {
    constexpr std::int64_t kMany = 20'000'000;
    const EntityPlace& place = m_layout.entities[entity];
    Run run(m_connection, "SELECT max(" + place.id + ") FROM " + place.table);
    return run->Step() ? std::clamp<std::int64_t>(run->Integer(0), 0, kMany) : 0;
  }

  std::int64_t CountOf(const ConditionGroup& group, std::int64_t most) const {
    const Fragment count = Compiler().Count(m_query, group, most);
    Run run(m_connection, count.text);
    BindAll(run, count);
    return run->Step() ? run->Integer(0) : 0;
  }

  bool IsWholeQuery(const ConditionGroup& group) const {
    return m_query.freeText.empty() && group.nodes.size() == Conjuncts(m_query).size();
  }

  /// True if reading records in their order finds `limit` hits before the index has found all.
  bool IsSoonAtLimit(std::int64_t rows, std::int64_t hits) const {
    return hits > 0 && rows / hits * m_query.limit < hits * kIndexCost;
  }

  Connection& m_connection;
  const Model& m_model;
  const Layout& m_layout;
  const BoundQuery& m_query;
};

}  // namespace

QueryPlan PlanQuery(Connection& connection, const Model& model, const Layout& layout,
                    const BoundQuery& query) {
  return Planner(connection, model, layout, query).Plan();
}

}  // namespace hv::vex::engine::sql
