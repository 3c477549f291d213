// core/plugins/sql/QueryLeaves.cpp - comparisons of one value with a constant.
#include <cmath>
#include <limits>

#include "core/plugins/sql/QueryCompiler.h"
#include "core/plugins/sql/TextKey.h"
#include "core/query/TextMatch.h"
#include "core/store/memory/ValueTest.h"

namespace hv::vex::engine::sql {
namespace {

std::string_view OperatorOf(QueryOp op) {
  switch (op) {
    case QueryOp::Equal:
      return "=";
    case QueryOp::NotEqual:
      return "<>";
    case QueryOp::Less:
      return "<";
    case QueryOp::LessEqual:
      return "<=";
    case QueryOp::Greater:
      return ">";
    default:
      return ">=";
  }
}

Fragment Plain(std::string text) { return {std::move(text), {}}; }

Fragment Binary(const std::string& left, std::string_view op, Fragment::Parameter right) {
  Fragment fragment;
  fragment += left;
  fragment += op;
  fragment.Value(std::move(right));
  return fragment;
}

Fragment Both(Fragment a, Fragment b) {
  Fragment both;
  both += "(";
  both += std::move(a);
  both += " AND ";
  both += std::move(b);
  both += ")";
  return both;
}

/// True for numbers; what isn't one stands behind infinity in the database's order.
Fragment IsNumber(const std::string& column) {
  return Binary(column, "<=", std::numeric_limits<double>::infinity());
}

}  // namespace

Fragment QueryCompiler::IntegerTestOf(const std::string& column, QueryOp op,
                                      const BoundConstant& constant) const {
  using Limits = std::numeric_limits<std::int64_t>;
  const IntegerTest test = IntegerTest::Make(op, constant);
  if (test.IsNever()) return Plain("0");
  if (test.lowest == test.highest) return Binary(column, test.isOutside ? "<>" : "=", test.lowest);
  const bool isOpenBelow = test.lowest == Limits::min();
  const bool isOpenAbove = test.highest == Limits::max();
  if (isOpenBelow && isOpenAbove) return Plain(column + " IS NOT NULL");
  if (isOpenBelow) return Binary(column, "<=", test.highest);
  if (isOpenAbove) return Binary(column, ">=", test.lowest);
  return Both(Binary(column, ">=", test.lowest), Binary(column, "<=", test.highest));
}

Fragment QueryCompiler::RealTestOf(const std::string& column, QueryOp op,
                                   const BoundConstant& constant, bool isFloat) const {
  const RealTest test = RealTest::Make(op, constant, isFloat);
  if (test.kind == RealTest::Kind::Never) return Plain("0");
  if (test.kind == RealTest::Kind::Any) return IsNumber(column);
  Fragment compare = Binary(column, OperatorOf(op), test.constant);
  const bool mayBeBehind =
      op == QueryOp::NotEqual || op == QueryOp::Greater || op == QueryOp::GreaterEqual;
  return mayBeBehind ? Both(std::move(compare), IsNumber(column)) : compare;
}

QueryCompiler::Text QueryCompiler::TextOf(const AttributePlace& place, OdsType type,
                                          const std::string& alias) const {
  Text text{alias + "." + place.column, {}, !place.key.empty(), type == OdsType::Date};
  if (text.isKept) {
    text.key = "coalesce(" + alias + "." + place.key + "," + text.column + ")";
  } else {
    text.key = text.isDate ? m_dialect.Date14(text.column) : m_dialect.FoldedText(text.column);
  }
  return text;
}

Fragment QueryCompiler::TextTestOf(const Text& text, QueryOp op,
                                   const BoundConstant& constant) const {
  const bool isEquality = op == QueryOp::Equal || op == QueryOp::NotEqual;
  if (constant.isNever) {
    return Plain(op == QueryOp::NotEqual ? text.column + " IS NOT NULL" : "0");
  }
  if (text.isDate) return Binary(text.key, OperatorOf(op), ToStored(constant.text));
  if (isEquality && constant.wildcards) return PatternTestOf(text, op, constant);
  if (constant.ignoreCase) return Binary(text.key, OperatorOf(op), ToKeyBytes(constant.text));
  if (!isEquality) {
    return Binary(m_dialect.CodeUnitOrder(text.column), OperatorOf(op), ToStored(constant.text));
  }
  Fragment exact = Binary(text.column, OperatorOf(op), ToStored(constant.text));
  if (op == QueryOp::NotEqual || !text.isKept) return exact;
  // The index is over keys: equal texts have equal keys.
  return Both(Binary(text.key, "=", FoldedKey(constant.text)), std::move(exact));
}

Fragment QueryCompiler::PatternTestOf(const Text& text, QueryOp op,
                                      const BoundConstant& constant) const {
  const WildcardPattern pattern(constant.text);
  if (pattern.IsLiteral()) {
    BoundConstant literal = constant;
    literal.wildcards = false;
    return TextTestOf(text, op, literal);
  }
  const std::string& column = constant.ignoreCase ? text.key : text.column;
  if (pattern.IsPrefix() && pattern.LiteralPrefix().empty()) {
    return Plain(op == QueryOp::Equal ? text.column + " IS NOT NULL" : "0");
  }
  Fragment matches;
  if (op == QueryOp::NotEqual) matches += "NOT ";
  matches += m_dialect.Matches(column);
  matches.parameters.emplace_back(ToStored(constant.text));
  if (op == QueryOp::NotEqual || !constant.ignoreCase || pattern.LiteralPrefix().empty()) {
    return matches;
  }
  const std::string prefix = ToKeyBytes(pattern.LiteralPrefix());
  Fragment range = Both(Binary(column, ">=", prefix), Binary(column, "<", BehindPrefix(prefix)));
  return pattern.IsPrefix() ? range : Both(std::move(range), std::move(matches));
}

Fragment QueryCompiler::CompareLeaf(const BoundNode& node, const std::string& alias) {
  if (node.path.attribute == kNone) return Plain("0");
  const auto index = static_cast<std::size_t>(node.path.attribute);
  const EntityId entity = node.path.steps.empty() ? m_query->entity : node.path.target;
  const Attribute& declared = m_model.At(entity).attributes[index];
  const AttributePlace& place = Place(entity).attributes[index];
  if (place.kind == AttributePlace::Kind::Id) {
    return IntegerTestOf(alias + "." + place.column, node.op, node.constant);
  }
  if (place.kind != AttributePlace::Kind::Column || PartsOf(declared.type) != 1) {
    return Plain("0");
  }
  switch (StorageKindOf(declared.type)) {
    case StorageKind::Integer:
      return IntegerTestOf(alias + "." + place.column, node.op, node.constant);
    case StorageKind::Real:
      return RealTestOf(alias + "." + place.column, node.op, node.constant,
                        declared.type == OdsType::Float);
    case StorageKind::Text:
      return TextTestOf(TextOf(place, declared.type, alias), node.op, node.constant);
    case StorageKind::Bytes:
      break;
  }
  return Plain("0");
}

Fragment QueryCompiler::InstanceName(const BoundNode& node, const std::string& alias,
                                     EntityId entity) const {
  Fragment all;
  all += alias + ".AID=";
  all.Value(Place(entity).aid);
  all += " AND " + alias + ".VALUE IS NOT NULL";
  if (!node.attributeName.empty()) {
    all += " AND coalesce(" + alias + ".NAME_F," + alias + ".NAME)=";
    all.Value(ToKeyBytes(node.attributeName));
  }
  return all;
}

Fragment QueryCompiler::InstanceLeaf(const BoundNode& node, const std::string& alias) {
  if (!m_layout.isOwn) return Plain("0");
  const EntityId entity = node.path.steps.empty() ? m_query->entity : node.path.target;
  const std::string n = NewAlias();
  const std::string id = alias + "." + Place(entity).id;
  const bool isDriver = m_plan->driver && m_plan->driver->nodes[0] == &node;
  Fragment all;
  all += isDriver ? id + " IN (SELECT " + n + ".IID" : std::string("EXISTS(SELECT 1");
  all += " FROM SF_INSTATTR AS " + n + " WHERE ";
  all += InstanceName(node, n, entity);
  if (!isDriver) all += " AND " + n + ".IID=" + id;
  if (!node.anyValue) {
    const BoundConstant& constant = node.constant;
    const BoundConstant number = constant.ForNumbers();
    const std::string value = n + ".VALUE";
    const std::string key = "coalesce(" + n + ".VALUE_F," + value + ")";
    const auto add = [&](const char* types, Fragment test) {
      all += n + ".TYPE IN (" + types + ") AND ";
      all += std::move(test);
    };
    all += " AND (";
    add("2,5,6,8", IntegerTestOf(value, node.op, number));
    all += " OR ";
    add("3", RealTestOf(value, node.op, number, true));
    all += " OR ";
    add("7", RealTestOf(value, node.op, number, false));
    all += " OR ";
    add("10", TextTestOf({value, key, true, true}, node.op, constant.ForDates()));
    all += " OR ";
    add("1", TextTestOf({value, key, true, false}, node.op, constant));
    all += ")";
  }
  all += ")";
  return all;
}

}  // namespace hv::vex::engine::sql
