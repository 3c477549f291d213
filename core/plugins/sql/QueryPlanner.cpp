// core/plugins/sql/QueryPlanner.cpp - counts what conditions lead to.
#include "core/plugins/sql/QueryPlanner.h"

#include <algorithm>

namespace hv::vex::engine::sql {
namespace {

/// A record found by an index costs about as much as this many of those read in their order.
constexpr std::int64_t kIndexCost = 16;
constexpr std::int64_t kFew = 20;

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
    const bool mayStop = m_query.limit > 0 && m_query.order.empty();
    std::int64_t fewest = rows;
    bool isAsked = false;
    for (ConditionGroup& group : Compiler().GroupsOf(m_query)) {
      // A few related records are looked through faster than many are asked for theirs.
      if (!group.isServed && (!group.leadsToOne || RowsOf(group.target) > rows / kIndexCost)) {
        continue;
      }
      isAsked = true;
      const std::int64_t all = rows + (group.leadsToOne ? 0 : RowsOf(group.target));
      const std::int64_t most = std::max(kFew, all / (mayStop ? 4 * kIndexCost : kIndexCost));
      const std::int64_t count = CountOf(group, most);
      if (count >= most || (plan.driver && count >= fewest)) continue;
      fewest = count;
      plan.driver = std::move(group);
    }
    if (plan.driver && mayStop && IsWholeQuery(*plan.driver) && IsSoonAtLimit(rows, fewest)) {
      plan.driver.reset();
    }
    plan.isScan = isAsked && !plan.driver;
    return plan;
  }

 private:
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
