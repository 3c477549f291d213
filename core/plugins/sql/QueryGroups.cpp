// core/plugins/sql/QueryGroups.cpp - which conditions an index serves, and searches that begin with
// them.
#include <algorithm>
#include <limits>

#include "core/plugins/sql/QueryCompiler.h"
#include "core/query/TextMatch.h"
#include "core/store/memory/ValueTest.h"

namespace hv::vex::engine::sql {
namespace {

bool AreSame(const std::vector<PathStep>& a, const std::vector<PathStep>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const PathStep& x, const PathStep& y) {
                      return x.source == y.source && x.relation == y.relation;
                    });
}

void Collect(const BoundNode& node, std::vector<const BoundNode*>& all) {
  if (node.kind == BoundNode::Kind::Logic && node.op == QueryOp::And) {
    for (const BoundNode& child : node.children) Collect(child, all);
  } else {
    all.push_back(&node);
  }
}

/// The condition itself, or the first of alternatives that are all about one attribute; null: they
/// aren't.
const BoundNode* OneOf(const BoundNode& node) {
  if (node.kind == BoundNode::Kind::Compare) {
    return node.path.attribute == kNone ? nullptr : &node;
  }
  if (node.kind != BoundNode::Kind::Logic || node.children.empty()) return nullptr;
  const BoundNode& first = node.children.front();
  const bool areAlike =
      std::all_of(node.children.begin(), node.children.end(), [&](const BoundNode& child) {
        return child.kind == BoundNode::Kind::Compare && child.path.attribute != kNone &&
               child.path.attribute == first.path.attribute &&
               AreSame(child.path.steps, first.path.steps);
      });
  return areAlike ? &first : nullptr;
}

bool IsBounded(const Attribute& declared, const BoundNode& node) {
  const BoundConstant& constant = node.constant;
  switch (StorageKindOf(declared.type)) {
    case StorageKind::Integer: {
      const IntegerTest test = IntegerTest::Make(node.op, constant);
      using Limits = std::numeric_limits<std::int64_t>;
      const bool isOpen = test.lowest == Limits::min() && test.highest == Limits::max();
      return !test.IsNever() && !test.isOutside && !isOpen;
    }
    case StorageKind::Real:
      return RealTest::Make(node.op, constant, declared.type == OdsType::Float).kind ==
             RealTest::Kind::Compare;
    case StorageKind::Text:
      if (constant.isNever) return false;
      if (declared.type == OdsType::Date) return true;
      if (node.op != QueryOp::Equal) return constant.ignoreCase;
      if (!constant.wildcards) return true;
      {
        const WildcardPattern pattern(constant.text);
        return pattern.IsLiteral() || (constant.ignoreCase && !pattern.LiteralPrefix().empty());
      }
    case StorageKind::Bytes:
      break;
  }
  return false;
}

}  // namespace

std::vector<const BoundNode*> Conjuncts(const BoundQuery& query) {
  std::vector<const BoundNode*> all;
  if (query.hasCondition) Collect(query.condition, all);
  return all;
}

const AttributePlace& QueryCompiler::PlaceOf(const BoundNode& leaf, EntityId asked) const {
  const EntityId entity = leaf.path.steps.empty() ? asked : leaf.path.target;
  return Place(entity).attributes[static_cast<std::size_t>(leaf.path.attribute)];
}

bool QueryCompiler::IsServed(const BoundNode& node, EntityId asked) const {
  if (node.kind == BoundNode::Kind::Logic) {
    return std::all_of(node.children.begin(), node.children.end(),
                       [&](const BoundNode& child) { return IsServed(child, asked); });
  }
  if (node.kind != BoundNode::Kind::Compare || node.op == QueryOp::NotEqual) return false;
  if (node.path.attribute == kNone) return false;
  const EntityId entity = node.path.steps.empty() ? asked : node.path.target;
  const AttributePlace& place = PlaceOf(node, asked);
  const bool isId = place.kind == AttributePlace::Kind::Id;
  if (!isId && place.index.empty()) return false;
  return IsBounded(m_model.At(entity).attributes[static_cast<std::size_t>(node.path.attribute)],
                   node);
}

bool QueryCompiler::FindsFew(const BoundNode& node) const {
  return node.op == QueryOp::Equal && IsServed(node, m_query->entity);
}

std::vector<ConditionGroup> QueryCompiler::GroupsOf(const BoundQuery& query) const {
  std::vector<ConditionGroup> groups;
  for (const BoundNode* node : Conjuncts(query)) {
    if (node->kind == BoundNode::Kind::InstanceAttribute && node->path.steps.empty() &&
        !node->attributeName.empty()) {
      groups.push_back({{node}, {}, kNone, kNoEntity, true, true});
      continue;
    }
    const BoundNode* one = OneOf(*node);
    if (one == nullptr) continue;
    const auto& steps = one->path.steps;
    const bool isServed = IsServed(*node, query.entity);
    const bool leadsToOne = std::all_of(steps.begin(), steps.end(), [&](const PathStep& step) {
      return Place(step).kind == RelationPlace::Kind::Own;
    });
    const auto fits = [&](const ConditionGroup& group) {
      return AreSame(group.steps, steps) && leadsToOne && group.attribute != kNone &&
             (!steps.empty() || group.attribute == one->path.attribute);
    };
    // Each condition on many related records may be met by another of them.
    const auto found = std::find_if(groups.begin(), groups.end(), fits);
    if (found != groups.end()) {
      found->nodes.push_back(node);
      found->isServed = found->isServed || isServed;
      continue;
    }
    if (steps.empty() && !isServed) continue;
    if (!steps.empty() && Place(steps[0]).kind == RelationPlace::Kind::Own &&
        Place(steps[0]).index.empty()) {
      continue;
    }
    groups.push_back({{node}, steps, one->path.attribute, one->path.target, leadsToOne, isServed});
  }
  return groups;
}

Fragment QueryCompiler::AnyAt(const BoundNode& node, const std::string& alias) {
  if (node.kind != BoundNode::Kind::Logic) return Leaf(node, alias);
  Fragment any;
  for (const BoundNode& child : node.children) {
    any += any.text.empty() ? "(" : " OR ";
    any += Leaf(child, alias);
  }
  any += ")";
  return any;
}

Fragment QueryCompiler::AllAt(const std::vector<const BoundNode*>& nodes,
                              const std::string& alias) {
  Fragment all;
  for (const BoundNode* node : nodes) {
    if (!all.text.empty()) all += " AND ";
    all += AnyAt(*node, alias);
  }
  return all;
}

std::string QueryCompiler::HintOf(const ConditionGroup& group) const {
  if (!group.steps.empty()) {
    const RelationPlace& first = Place(group.steps[0]);
    return m_dialect.FoundBy(first.kind == RelationPlace::Kind::Own ? first.index : std::string());
  }
  // Instance attributes lead to ids.
  if (group.attribute == kNone) return m_dialect.FoundBy({});
  // For alternatives the database looks an index up more than once, which can't be demanded of it.
  const bool hasAlternatives =
      std::any_of(group.nodes.begin(), group.nodes.end(),
                  [](const BoundNode* node) { return node->kind == BoundNode::Kind::Logic; });
  return hasAlternatives ? std::string()
                         : m_dialect.FoundBy(PlaceOf(*group.nodes[0], m_query->entity).index);
}

Fragment QueryCompiler::Driver(const ConditionGroup& group) {
  Chain chain = FollowChain(group.steps, 0, m_root);
  Fragment condition = AllAt(group.nodes, chain.last);
  Fragment all;
  all += chain.outer + " IN (SELECT " + chain.inner + " FROM ";
  all += std::move(chain.from);
  all += " WHERE ";
  if (!chain.link.text.empty()) {
    all += std::move(chain.link);
    all += " AND ";
  }
  all += std::move(condition);
  all += ")";
  return all;
}

// --- records that one record leads to ------------------------------------------------------------

namespace {

/// The pairs of one record, as far as their rows tell.
Fragment PairsOf(const RelationPlace& place, const std::string& what, std::int64_t id) {
  Fragment pairs;
  pairs += "SELECT " + what + " FROM " + place.table + " AS p WHERE p." + place.column + "=";
  pairs.Value(id);
  if (!place.name.empty()) {
    pairs += " AND p.REFNAME=";
    pairs.Value(place.name);
  }
  return pairs;
}

}  // namespace

Fragment QueryCompiler::StartTest(const BoundStart& start, const std::string& alias) const {
  const EntityPlace& source = Place(start.entity);
  const RelationPlace& place = Place(PathStep{start.entity, start.relation});
  const std::string id = alias + "." + Place(m_query->entity).id;
  Fragment test;
  switch (place.kind) {
    case RelationPlace::Kind::Own:
      test +=
          id + "=(SELECT " + place.column + " FROM " + source.table + " WHERE " + source.id + "=";
      test.Value(start.id);
      test += ")";
      break;
    case RelationPlace::Kind::Other:
      test += alias + "." + place.column + "=";
      test.Value(start.id);
      break;
    case RelationPlace::Kind::Pairs:
      test += id + " IN (";
      test += PairsOf(place, "p." + place.there, start.id);
      test += ")";
      break;
    case RelationPlace::Kind::Nowhere:
      test += "0";
      break;
  }
  return test;
}

Fragment QueryCompiler::StartOrder(const BoundStart& start, const std::string& alias) const {
  const RelationPlace& place = Place(PathStep{start.entity, start.relation});
  const std::string id = alias + "." + Place(m_query->entity).id;
  Fragment order;
  if (place.kind == RelationPlace::Kind::Other) {
    order += OrderOfLinks(place, id, alias + ".") + ", ";
  } else if (place.kind == RelationPlace::Kind::Pairs) {
    order += "(";
    order += PairsOf(place, OrderOfLinks(place, {}, "p."), start.id);
    order += " AND p." + place.there + "=" + id + "), ";
  }
  return order;
}

Fragment QueryCompiler::Count(const BoundQuery& query, const ConditionGroup& group,
                              std::int64_t most) {
  m_query = &query;
  m_root = NewAlias();
  const EntityPlace& place = Place(query.entity);
  const std::string root = place.table + " AS " + m_root;
  Fragment count;
  count += "SELECT count(*) FROM (SELECT 1 FROM ";
  if (group.steps.empty() && group.attribute == kNone) {
    count += "SF_INSTATTR AS n WHERE ";
    count += InstanceName(*group.nodes[0], "n", query.entity);
  } else if (group.steps.empty()) {
    count += root + HintOf(group) + " WHERE ";
    count += AllAt(group.nodes, m_root);
  } else {
    Chain chain = FollowChain(group.steps, 0, m_root);
    Fragment condition = AllAt(group.nodes, chain.last);
    count += std::move(chain.from);
    if (Place(group.steps[0]).kind == RelationPlace::Kind::Own) {
      count +=
          std::string(m_dialect.OrderedJoin()) + root + " ON " + chain.outer + "=" + chain.inner;
    }
    count += " WHERE ";
    if (!chain.link.text.empty()) {
      count += std::move(chain.link);
      count += " AND ";
    }
    count += std::move(condition);
  }
  count += " LIMIT ";
  count.Value(most);
  count += ") AS c";
  return count;
}

}  // namespace hv::vex::engine::sql
