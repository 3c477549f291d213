// core/plugins/sql/QueryCompiler.cpp - conditions over paths, free text and order.
#include "core/plugins/sql/QueryCompiler.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "core/plugins/sql/TextKey.h"
#include "core/query/TextMatch.h"

namespace hv::vex::engine::sql {

void BindAll(Run& run, const Fragment& fragment) {
  for (const Fragment::Parameter& parameter : fragment.parameters) {
    const int index = run.Next();
    if (const auto* integer = std::get_if<std::int64_t>(&parameter)) {
      run->BindInteger(index, *integer);
    } else if (const auto* real = std::get_if<double>(&parameter)) {
      run->BindReal(index, *real);
    } else {
      run->BindText(index, std::get<std::string>(parameter));
    }
  }
}

Fragment QueryCompiler::Compile(const BoundQuery& query, const QueryPlan& plan,
                                std::span<const std::int32_t> attributes) {
  m_query = &query;
  m_plan = &plan;
  m_root = NewAlias();
  const EntityPlace& place = Place(query.entity);
  Fragment where;
  const auto add = [&](Fragment condition) {
    if (condition.text.empty()) return;
    if (!where.text.empty()) where += " AND ";
    where += std::move(condition);
  };
  bool hasDriver = false;
  for (const BoundNode* node : Conjuncts(query)) {
    const bool isDriver =
        plan.driver && std::count(plan.driver->nodes.begin(), plan.driver->nodes.end(), node) != 0;
    if (!isDriver || plan.driver->steps.empty()) {
      add(Condition(*node, true));
    } else if (!std::exchange(hasDriver, true)) {
      add(Driver(*plan.driver));
    }
  }
  if (!query.freeText.empty()) add(FreeText(query, m_root));
  if (query.start) add(StartTest(*query.start, m_root));
  Fragment select;
  select += "SELECT " + m_root + "." + place.id;
  for (const std::int32_t attribute : attributes) {
    select += "," + m_root + "." + place.attributes[static_cast<std::size_t>(attribute)].column;
  }
  select += " FROM " + place.table + " AS " + m_root;
  if (plan.driver) select += HintOf(*plan.driver);
  if (plan.isScan) select += m_dialect.FoundBy({});
  select += std::move(m_joins);
  if (!where.text.empty()) {
    select += " WHERE ";
    select += std::move(where);
  }
  select += OrderBy(query, m_root);
  if (query.limit > 0) {
    select += " LIMIT ";
    select.Value(query.limit);
  }
  return select;
}

Fragment QueryCompiler::Condition(const BoundNode& node, bool mayJoin) {
  return node.kind == BoundNode::Kind::Logic ? Logic(node, mayJoin) : AtPath(node, mayJoin);
}

Fragment QueryCompiler::Logic(const BoundNode& node, bool mayJoin) {
  const bool isOr = node.op == QueryOp::Or;
  Fragment all;
  all += "(";
  for (std::size_t i = 0; i < node.children.size(); ++i) {
    if (i > 0) all += isOr ? " OR " : " AND ";
    all += Condition(node.children[i], mayJoin && (!isOr || node.children.size() == 1));
  }
  if (node.children.empty()) all += "1";
  all += ")";
  return all;
}

Fragment QueryCompiler::AtPath(const BoundNode& node, bool mayJoin) {
  std::string alias = m_root;
  std::size_t step = 0;
  const auto& steps = node.path.steps;
  const auto leadsToOne = [&](std::size_t i) {
    return Place(steps[i]).kind == RelationPlace::Kind::Own;
  };
  const bool isAboutId =
      node.kind == BoundNode::Kind::Compare && node.path.attribute != kNone &&
      Place(node.path.target).attributes[static_cast<std::size_t>(node.path.attribute)].kind ==
          AttributePlace::Kind::Id;
  while (step < steps.size()) {
    // The id of a related record stands in the reference itself.
    if (isAboutId && step + 1 == steps.size() && leadsToOne(step)) {
      return IntegerTestOf(alias + "." + Place(steps[step]).column, node.op, node.constant);
    }
    if (!mayJoin || !leadsToOne(step)) break;
    alias = JoinOnce(alias, steps[step]);
    ++step;
  }
  if (step == steps.size()) return Leaf(node, alias);
  // A condition that must hold was weighed before, and leads to many records if it isn't the
  // driver.
  return Through(node, step, alias, FindsFew(node) && !(mayJoin && m_plan->isOrdered));
}

std::string QueryCompiler::JoinOnce(const std::string& alias, const PathStep& step) {
  const std::string name = alias + " " + std::to_string(step.relation);
  for (const auto& [joined, found] : m_joined) {
    if (joined == name) return found;
  }
  const EntityId target =
      m_model.At(step.source).relations[static_cast<std::size_t>(step.relation)].target;
  std::string made = NewAlias();
  m_joins += m_plan->isOrdered ? m_dialect.OrderedJoin() : " JOIN ";
  m_joins += Place(target).table + " AS " + made + " ON " + made + "." + Place(target).id + "=" +
             alias + "." + Place(step).column;
  m_joined.emplace_back(name, made);
  return made;
}

QueryCompiler::Chain QueryCompiler::FollowChain(const std::vector<PathStep>& steps,
                                                std::size_t first, const std::string& alias) {
  Chain chain;
  chain.last = alias;
  for (std::size_t i = first; i < steps.size(); ++i) AddStep(chain, steps[i]);
  return chain;
}

void QueryCompiler::AddStep(Chain& chain, const PathStep& step) {
  const RelationPlace& place = Place(step);
  const EntityPlace& target =
      Place(m_model.At(step.source).relations[static_cast<std::size_t>(step.relation)].target);
  const std::string source = std::exchange(chain.last, NewAlias());
  const std::string& made = chain.last;
  const std::string id = made + "." + target.id;
  std::string inner = id;
  std::string outer = source + "." + Place(step.source).id;
  Fragment table;
  switch (place.kind) {
    case RelationPlace::Kind::Own:
      outer = source + "." + place.column;
      break;
    case RelationPlace::Kind::Other:
      inner = made + "." + place.column;
      break;
    case RelationPlace::Kind::Pairs: {
      const std::string pairs = NewAlias();
      inner = pairs + "." + place.column;
      table += place.table + " AS " + pairs + " JOIN " + target.table + " AS " + made + " ON " +
               id + "=" + pairs + "." + place.there;
      if (!place.name.empty()) {
        table += " AND " + pairs + ".REFNAME=";
        table.Value(place.name);
      }
      break;
    }
    case RelationPlace::Kind::Nowhere:
      table +=
          "(SELECT 0 AS x WHERE 0) AS nothing" + made + " JOIN " + target.table + " AS " + made;
      break;
  }
  if (table.text.empty()) table += target.table + " AS " + made;
  if (chain.from.text.empty()) {
    chain.from = std::move(table);
    chain.inner = inner;
    chain.outer = outer;
    return;
  }
  chain.from += " JOIN ";
  chain.from += std::move(table);
  if (place.kind == RelationPlace::Kind::Own || place.kind == RelationPlace::Kind::Other) {
    chain.from += " ON " + inner + "=" + outer;
  } else {
    // The pair comes first, so that its condition can name the record before it.
    chain.link += (chain.link.text.empty() ? "" : " AND ") + inner + "=" + outer;
  }
}

Fragment QueryCompiler::Through(const BoundNode& node, std::size_t firstStep,
                                const std::string& alias, bool isIn) {
  Chain chain = FollowChain(node.path.steps, firstStep, alias);
  Fragment condition = Leaf(node, chain.last);
  Fragment result;
  if (isIn) {
    result += chain.outer + " IN (SELECT " + chain.inner + " FROM ";
  } else {
    result += "EXISTS(SELECT 1 FROM ";
  }
  result += std::move(chain.from);
  result += " WHERE ";
  if (!isIn) result += chain.inner + "=" + chain.outer + " AND ";
  if (!chain.link.text.empty()) {
    result += std::move(chain.link);
    result += " AND ";
  }
  result += std::move(condition);
  result += ")";
  return result;
}

Fragment QueryCompiler::Leaf(const BoundNode& node, const std::string& alias) {
  return node.kind == BoundNode::Kind::InstanceAttribute ? InstanceLeaf(node, alias)
                                                         : CompareLeaf(node, alias);
}

// --- free text and order -------------------------------------------------------------------------

Fragment QueryCompiler::FreeText(const BoundQuery& query, const std::string& alias) const {
  const Entity& entity = m_model.At(query.entity);
  const EntityPlace& place = Place(query.entity);
  Fragment all;
  std::vector<std::string> indexed;
  for (const std::u16string& word : SearchWords(query.freeText)) {
    const std::string stored = ToStored(word);
    const auto codePoints = static_cast<std::size_t>(
        std::count_if(stored.begin(), stored.end(), [](char c) { return (c & 0xC0) != 0x80; }));
    const bool isPlain = word.find(u'\0') == word.npos;
    if (!place.texts.empty() && isPlain && codePoints >= m_dialect.ShortestIndexedWord()) {
      indexed.push_back(stored);
      continue;
    }
    Fragment any;
    for (std::size_t a = 0; a < place.attributes.size(); ++a) {
      const AttributePlace& attribute = place.attributes[a];
      if (entity.attributes[a].type != OdsType::String) continue;
      if (attribute.kind != AttributePlace::Kind::Column) continue;
      if (!any.text.empty()) any += " OR ";
      any += m_dialect.Contains(TextOf(attribute, OdsType::String, alias).key);
      any.parameters.emplace_back(ToKeyBytes(word));
    }
    if (!all.text.empty()) all += " AND ";
    all += "(";
    if (any.text.empty()) any += "0";
    all += std::move(any);
    all += ")";
  }
  if (!indexed.empty()) {
    if (!all.text.empty()) all += " AND ";
    all += alias + "." + place.id + " IN (" + m_dialect.SearchTextIndex(place.texts) + ")";
    all.parameters.emplace_back(m_dialect.TextIndexExpression(indexed));
  }
  return all;
}

Fragment QueryCompiler::OrderKey(EntityId entity, std::int32_t attribute,
                                 const std::string& alias) const {
  Fragment key;
  if (attribute == kNone) return key;
  const auto index = static_cast<std::size_t>(attribute);
  const Attribute& declared = m_model.At(entity).attributes[index];
  const AttributePlace& place = Place(entity).attributes[index];
  const bool isColumn =
      place.kind == AttributePlace::Kind::Column || place.kind == AttributePlace::Kind::Id;
  if (!isColumn || declared.sequence || PartsOf(declared.type) != 1) return key;
  const std::string column = alias + "." + place.column;
  switch (StorageKindOf(declared.type)) {
    case StorageKind::Integer:
      key += column;
      break;
    case StorageKind::Real:
      key += "CASE WHEN " + column + "<=";
      key.Value(std::numeric_limits<double>::infinity());
      key += " THEN " + column + " END";
      break;
    case StorageKind::Text: {
      const Text text = TextOf(place, declared.type, alias);
      key += text.isDate && text.isKept ? column : text.key;
      break;
    }
    case StorageKind::Bytes:
      break;
  }
  return key;
}

Fragment QueryCompiler::OrderBy(const BoundQuery& query, const std::string& alias) {
  Fragment order;
  order += " ORDER BY ";
  for (const BoundOrder& clause : query.order) {
    Fragment key;
    if (clause.path.steps.empty()) {
      key = OrderKey(query.entity, clause.path.attribute, alias);
      if (key.text.empty()) continue;
    } else {
      Chain chain = FollowChain(clause.path.steps, 0, alias);
      Fragment inner = OrderKey(clause.path.target, clause.path.attribute, chain.last);
      if (inner.text.empty()) continue;
      key += clause.descending ? "(SELECT max(" : "(SELECT min(";
      key += std::move(inner);
      key += ") FROM ";
      key += std::move(chain.from);
      key += " WHERE " + chain.inner + "=" + chain.outer;
      if (!chain.link.text.empty()) {
        key += " AND ";
        key += std::move(chain.link);
      }
      key += ")";
    }
    order += std::move(key);
    order += clause.descending ? " DESC NULLS LAST, " : " ASC NULLS LAST, ";
  }
  if (query.start && query.order.empty()) order += StartOrder(*query.start, alias);
  order += alias + "." + Place(query.entity).id;
  return order;
}

}  // namespace hv::vex::engine::sql
