// core/plugins/sql/QueryCompiler.h - makes one SELECT of a query, with all values bound.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "core/plugins/sql/Layout.h"
#include "core/query/BoundQuery.h"

namespace hv::vex::engine::sql {

/// A piece of a statement and the values of its places, in their order.
struct Fragment {
  using Parameter = std::variant<std::int64_t, double, std::string>;
  std::string text;
  std::vector<Parameter> parameters;

  Fragment& operator+=(std::string_view more) {
    text += more;
    return *this;
  }
  Fragment& operator+=(Fragment more) {
    text += more.text;
    for (Parameter& parameter : more.parameters) parameters.push_back(std::move(parameter));
    return *this;
  }
  Fragment& Value(Parameter parameter) {
    text += '?';
    parameters.push_back(std::move(parameter));
    return *this;
  }
};

/// Binds the parameters of a fragment, which must outlive the run.
void BindAll(Run& run, const Fragment& fragment);

/// Conditions of a query that must all hold and that one way through the database's indexes finds
/// the records of: on one attribute of the records asked for, or along one path.
struct ConditionGroup {
  std::vector<const BoundNode*> nodes;
  std::vector<PathStep> steps;     ///< empty: of the records asked for
  std::int32_t attribute = kNone;  ///< without steps
  EntityId target = kNoEntity;     ///< where the steps lead
  bool leadsToOne = true;          ///< all steps do
  bool isServed = false;           ///< an index serves a condition at the end of the path
};

/// Where a search begins; see QueryPlanner.h.
struct QueryPlan {
  /// The table of the records asked for comes first, all others are asked record by record.
  bool isOrdered = false;
  bool isScan = false;  ///< that table is read in the order of ids
  std::optional<ConditionGroup> driver;
};

/// To-one steps of conditions that must hold become joins, all other paths become EXISTS or, where
/// the condition at their end finds few records by an index, IN; so no hit is ever repeated. Texts
/// are compared by their keys (TextKey.h), prefixes as ranges of keys, which indexes serve.
class QueryCompiler final {
 public:
  QueryCompiler(const Model& model, const Layout& layout, const Dialect& dialect)
      : m_model(model), m_layout(layout), m_dialect(dialect) {}

  /// The ids of the hits, in order, and behind them attributes that stand in the same table.
  Fragment Compile(const BoundQuery& query, const QueryPlan& plan = {},
                   std::span<const std::int32_t> attributes = {});

  /// The groups of a query's conditions from which its search can begin.
  [[nodiscard]] std::vector<ConditionGroup> GroupsOf(const BoundQuery& query) const;
  /// Counts what a group leads to, at most `most`: records asked for or, along paths that don't
  /// lead to one, what stands at their end.
  Fragment Count(const BoundQuery& query, const ConditionGroup& group, std::int64_t most);

  /// The form in which a scalar attribute's values are put in order; empty if they have no order.
  /// What isn't a number counts as null.
  [[nodiscard]] Fragment OrderKey(EntityId entity, std::int32_t attribute,
                                  const std::string& alias) const;

 private:
  /// Records reached by steps: where they come from, and how the first is tied to the start.
  struct Chain {
    Fragment from;
    Fragment link;      ///< condition that ties the first record to `outer`
    std::string inner;  ///< the column of the chain that equals `outer`
    std::string outer;
    std::string last;  ///< alias of the last records
  };
  struct Text {
    std::string column;
    std::string key;
    bool isKept;  ///< the key stands in a column of its own
    bool isDate;
  };

  const EntityPlace& Place(EntityId entity) const { return m_layout.entities[entity]; }
  const RelationPlace& Place(const PathStep& step) const {
    return Place(step.source).relations[static_cast<std::size_t>(step.relation)];
  }
  std::string NewAlias() { return "t" + std::to_string(m_aliases++); }
  Fragment Condition(const BoundNode& node, bool mayJoin);
  Fragment Logic(const BoundNode& node, bool mayJoin);
  Fragment AtPath(const BoundNode& node, bool mayJoin);
  Fragment Through(const BoundNode& node, std::size_t firstStep, const std::string& alias,
                   bool isIn);
  std::string JoinOnce(const std::string& alias, const PathStep& step);
  Chain FollowChain(const std::vector<PathStep>& steps, std::size_t first,
                    const std::string& alias);
  void AddStep(Chain& chain, const PathStep& step);
  [[nodiscard]] std::string HintOf(const ConditionGroup& group) const;
  Fragment Driver(const ConditionGroup& group);
  Fragment AllAt(const std::vector<const BoundNode*>& nodes, const std::string& alias);
  Fragment AnyAt(const BoundNode& node, const std::string& alias);
  Fragment Leaf(const BoundNode& node, const std::string& alias);
  Fragment CompareLeaf(const BoundNode& node, const std::string& alias);
  /// Which instance attributes the condition is about, whatever their values.
  Fragment InstanceName(const BoundNode& node, const std::string& alias, EntityId entity) const;
  Fragment InstanceLeaf(const BoundNode& node, const std::string& alias);
  Fragment StartTest(const BoundStart& start, const std::string& alias) const;
  Fragment StartOrder(const BoundStart& start, const std::string& alias) const;
  /// True if an index leads from the condition to few records.
  [[nodiscard]] bool FindsFew(const BoundNode& node) const;
  /// True if an index serves the condition, in a query for records of `asked`.
  [[nodiscard]] bool IsServed(const BoundNode& node, EntityId asked) const;
  [[nodiscard]] const AttributePlace& PlaceOf(const BoundNode& leaf, EntityId asked) const;
  [[nodiscard]] Fragment IntegerTestOf(const std::string& column, QueryOp op,
                                       const BoundConstant& constant) const;
  [[nodiscard]] Fragment RealTestOf(const std::string& column, QueryOp op,
                                    const BoundConstant& constant, bool isFloat) const;
  [[nodiscard]] Fragment TextTestOf(const Text& text, QueryOp op,
                                    const BoundConstant& constant) const;
  [[nodiscard]] Fragment PatternTestOf(const Text& text, QueryOp op,
                                       const BoundConstant& constant) const;
  [[nodiscard]] Text TextOf(const AttributePlace& place, OdsType type,
                            const std::string& alias) const;
  Fragment FreeText(const BoundQuery& query, const std::string& alias) const;
  Fragment OrderBy(const BoundQuery& query, const std::string& alias);

  const Model& m_model;
  const Layout& m_layout;
  const Dialect& m_dialect;
  const BoundQuery* m_query = nullptr;
  const QueryPlan* m_plan = nullptr;
  std::string m_root;
  Fragment m_joins;
  std::vector<std::pair<std::string, std::string>> m_joined;  // "alias relation", alias
  int m_aliases = 0;
};

/// The conditions that must all hold.
std::vector<const BoundNode*> Conjuncts(const BoundQuery& query);

}  // namespace hv::vex::engine::sql
