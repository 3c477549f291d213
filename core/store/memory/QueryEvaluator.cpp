// core/store/memory/QueryEvaluator.cpp - plans a query, narrows bitmaps, walks relations backwards.
#include "core/store/memory/QueryEvaluator.h"

#include <algorithm>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "core/query/TextMatch.h"
#include "core/store/memory/ColumnOrder.h"
#include "core/store/memory/MemoryStoreAccess.h"

namespace hv::vex::engine {
struct QueryEvaluator::Plan {
  enum class Kind : std::uint8_t { All, Any, Local, Related };
  Kind kind = Kind::All;
  int cost = 0;
  std::vector<Plan> children;
  std::unique_ptr<ColumnMatcher> matcher;
  const ResolvedPath* path = nullptr;
  std::unique_ptr<RowSet> starts;  // Related: the rows that meet it, found when first needed
};

QueryEvaluator::QueryEvaluator(const MemoryStore& store, const BoundQuery& query)
    : m_store(store), m_query(query), m_table(store.Table(query.entity)) {
  std::vector<Plan> parts;
  if (query.hasCondition) parts.push_back(MakePlan(query.condition));
  if (!query.freeText.empty()) parts.push_back(MakeTextPlan());
  if (parts.empty()) return;
  m_root = std::make_unique<Plan>();
  m_root->children = std::move(parts);
}

QueryEvaluator::~QueryEvaluator() = default;

QueryEvaluator::Plan QueryEvaluator::MakePlan(const BoundNode& node) const {
  Plan plan;
  if (node.kind == BoundNode::Kind::Logic) {
    plan.kind = node.op == QueryOp::Or ? Plan::Kind::Any : Plan::Kind::All;
    for (const BoundNode& child : node.children) {
      plan.children.push_back(MakePlan(child));
      plan.cost += plan.children.back().cost;
    }
    // What costs little goes first; in an All it leaves fewer rows to the others.
    std::stable_sort(plan.children.begin(), plan.children.end(),
                     [](const Plan& a, const Plan& b) { return a.cost < b.cost; });
    return plan;
  }
  const bool isLocal = node.path.steps.empty();
  const MemoryTable& table = isLocal ? m_table : m_store.Table(node.path.target);
  plan.kind = isLocal ? Plan::Kind::Local : Plan::Kind::Related;
  plan.path = &node.path;
  plan.matcher = node.kind == BoundNode::Kind::InstanceAttribute
                     ? MakeInstanceAttributeMatcher(table, node)
                     : MakeCompareMatcher(table, node.path.attribute, node.op, node.constant);
  plan.cost = plan.matcher->Cost() + static_cast<int>(node.path.steps.size()) * 30;
  return plan;
}

QueryEvaluator::Plan QueryEvaluator::MakeTextPlan() const {
  Plan plan;
  for (const std::u16string& word : SearchWords(m_query.freeText)) {
    Plan& part = plan.children.emplace_back();
    part.kind = Plan::Kind::Local;
    part.matcher = MakeTextSearchMatcher(m_table, word);
  }
  return plan;
}

std::vector<RecordId> QueryEvaluator::Run() {
  const auto limit = static_cast<std::size_t>(std::max<std::int64_t>(m_query.limit, 0));
  if (m_query.order.empty() && m_query.start) {
    const RowSet found = FindRows(0);
    std::vector<RecordId> ids;
    for (const Row row : StartRows()) {
      if (limit != 0 && ids.size() == limit) break;
      if (found.Has(row)) ids.push_back(m_table.IdAt(row));
    }
    return ids;
  }
  if (m_query.order.empty()) return m_table.SortedIds(FindRows(limit), limit);
  const std::vector<Row> sorted =
      SortedRows(m_store, m_query.entity, m_query.order, FindRows(0), limit);
  std::vector<RecordId> ids(sorted.size());
  std::transform(sorted.begin(), sorted.end(), ids.begin(),
                 [this](Row row) { return m_table.IdAt(row); });
  return ids;
}

RowSet QueryEvaluator::Rows() {
  if (m_query.limit <= 0) return FindRows(0);
  RowSet rows(m_table.Rows());
  for (const RecordId id : Run()) rows.Add(m_table.Find(id));
  return rows;
}

std::span<const Row> QueryEvaluator::StartRows() const {
  const BoundStart& start = *m_query.start;
  const MemoryTable& table = m_store.Table(start.entity);
  const Row row = table.Find(start.id);
  return row == kNoRow ? std::span<const Row>() : table.Links(start.relation).Of(row);
}

/// All rows that meet the condition; or, if rows are in the order of ids, at least the first
/// `limit` of them (0: all).
RowSet QueryEvaluator::FindRows(std::size_t limit) {
  RowSet rows(m_table.Rows());
  if (m_query.start) {
    for (const Row row : StartRows()) rows.Add(row);
    if (m_root) Narrow(*m_root, rows.All(), rows);
    return rows;
  }
  const bool mayStop = limit != 0 && m_table.Ids().IsAscending();
  constexpr std::size_t kChunkWords = 256;
  const std::size_t chunk = mayStop ? kChunkWords : std::max<std::size_t>(rows.WordCount(), 1);
  std::size_t found = 0;
  for (std::size_t begin = 0; begin < rows.WordCount(); begin += chunk) {
    const WordRange range{begin, std::min(begin + chunk, rows.WordCount())};
    rows.Unite(m_table.Alive(), range);
    if (m_root) Narrow(*m_root, range, rows);
    if (!mayStop) continue;
    found += rows.Count(range);
    if (found >= limit) break;
  }
  return rows;
}

void QueryEvaluator::Narrow(Plan& plan, WordRange range, RowSet& rows) const {
  switch (plan.kind) {
    case Plan::Kind::All:
      for (Plan& child : plan.children) {
        if (rows.IsEmpty(range)) return;
        Narrow(child, range, rows);
      }
      return;
    case Plan::Kind::Any:
      return NarrowAny(plan, range, rows);
    case Plan::Kind::Local:
      return plan.matcher->Keep(range, rows);
    case Plan::Kind::Related:
      return NarrowRelated(plan, range, rows);
  }
}

void QueryEvaluator::NarrowAny(Plan& plan, WordRange range, RowSet& rows) const {
  if (plan.children.empty()) return;
  RowSet open = rows;  // rows that no condition has let pass yet
  RowSet passed(rows.Size());
  for (Plan& child : plan.children) {
    RowSet part = open;
    Narrow(child, range, part);
    passed.Unite(part, range);
    open.Subtract(part, range);
    if (open.IsEmpty(range)) break;
  }
  rows.Intersect(passed, range);
}

void QueryEvaluator::NarrowRelated(Plan& plan, WordRange range, RowSet& rows) const {
  if (!plan.starts) {
    // A few rows are asked one by one, if no step can fan out over and over.
    const auto& steps = plan.path->steps;
    const bool isNarrow =
        steps.size() == 1 || std::all_of(steps.begin(), steps.end(), [&](auto& s) {
          return !m_store.Table(s.source).Links(s.relation).IsToMany();
        });
    const std::size_t count = rows.Count(range);
    const MemoryTable& target = m_store.Table(plan.path->target);
    if (isNarrow && count * 8 < std::min(target.Rows(), m_table.Rows())) {
      rows.Keep(range, [&](Row row) { return LeadsToMatch(plan, 0, row); });
      return;
    }
    plan.starts = std::make_unique<RowSet>(WalkBack(plan));
  }
  rows.Intersect(*plan.starts, range);
}

bool QueryEvaluator::LeadsToMatch(const Plan& plan, std::size_t step, Row row) const {
  if (step == plan.path->steps.size()) return plan.matcher->Matches(row);
  const PathStep& at = plan.path->steps[step];
  const std::span<const Row> targets = m_store.Table(at.source).Links(at.relation).Of(row);
  return std::any_of(targets.begin(), targets.end(),
                     [&](Row target) { return LeadsToMatch(plan, step + 1, target); });
}

RowSet QueryEvaluator::WalkBack(const Plan& plan) const {
  const MemoryTable& target = m_store.Table(plan.path->target);
  RowSet rows = target.Alive();
  plan.matcher->Keep(rows.All(), rows);
  const auto& steps = plan.path->steps;
  for (auto step = steps.rbegin(); step != steps.rend(); ++step) rows = StepBack(*step, rows);
  return rows;
}

RowSet QueryEvaluator::StepBack(const PathStep& step, const RowSet& targets) const {
  const MemoryTable& table = m_store.Table(step.source);
  RowSet sources(table.Rows());
  const std::size_t targetCount = targets.Count();
  if (targetCount == 0) return sources;
  const Relation& relation = RelationOf(*m_store.GetModel(), step.source, step.relation);
  const LinkColumn& backward = m_store.Table(relation.target).Links(relation.inverse);
  if (!backward.IsToMany() || targetCount * 4 < targets.Size()) {
    targets.ForEach([&](Row row) {
      for (const Row source : backward.Of(row)) sources.Add(source);
    });
    return sources;
  }
  const LinkColumn& forward = table.Links(step.relation);
  sources = table.Alive();
  sources.Keep(sources.All(), [&](Row row) {
    const std::span<const Row> linked = forward.Of(row);
    return std::any_of(linked.begin(), linked.end(), [&](Row to) { return targets.Has(to); });
  });
  return sources;
}

}  // namespace hv::vex::engine
