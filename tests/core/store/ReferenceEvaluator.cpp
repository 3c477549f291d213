// tests/core/store/ReferenceEvaluator.cpp - one record, one condition, one comparison at a time.
#include "ReferenceEvaluator.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "core/query/TextMatch.h"

namespace hv::vex::engine::test {
namespace {

bool Holds(QueryOp op, int order) {
  return (op == QueryOp::Equal && order == 0) || (op == QueryOp::NotEqual && order != 0) ||
         (op == QueryOp::Less && order < 0) || (op == QueryOp::LessEqual && order <= 0) ||
         (op == QueryOp::Greater && order > 0) || (op == QueryOp::GreaterEqual && order >= 0);
}

template <class T>
int Order(const T& a, const T& b) {
  return a < b ? -1 : (b < a ? 1 : 0);
}

bool TextMeets(const std::u16string& text, QueryOp op, const BoundConstant& constant) {
  const std::u16string form = constant.ignoreCase ? FoldCase(text) : text;
  if (constant.wildcards) {
    return WildcardPattern(constant.text).Matches(form) == (op == QueryOp::Equal);
  }
  return Holds(op, Order(form, constant.text));
}

bool DateMeets(const std::u16string& text, QueryOp op, const std::u16string& constant) {
  const auto date = NormalizeDate14(text);
  return date && Holds(op, Order(std::u16string(date->begin(), date->end()), constant));
}

bool NumberMeets(const Value& value, QueryOp op, const BoundConstant& constant) {
  if (const auto* integers = std::get_if<Value::Integers>(&value.data)) {
    if (!constant.isReal) return Holds(op, Order(integers->front(), constant.integer));
    // Wider than a double, so that large integers don't meet their neighbours.
    return Holds(op, Order(static_cast<long double>(integers->front()),
                           static_cast<long double>(constant.real)));
  }
  const double real = std::get<Value::Reals>(value.data).front();
  double expected = constant.isReal ? constant.real : static_cast<double>(constant.integer);
  if (value.type == OdsType::Float) expected = static_cast<double>(static_cast<float>(expected));
  return Holds(op, Order(real, expected));
}

bool ValueMeets(const Value& value, QueryOp op, const BoundConstant& constant) {
  if (!value.IsSet()) return false;
  const auto* reals = std::get_if<Value::Reals>(&value.data);
  if (reals != nullptr && std::isnan(reals->front())) return false;
  if (constant.isNever) return op == QueryOp::NotEqual;
  const auto* texts = std::get_if<Value::Texts>(&value.data);
  if (texts == nullptr) return NumberMeets(value, op, constant);
  if (value.type == OdsType::Date) return DateMeets(texts->front(), op, constant.text);
  return TextMeets(texts->front(), op, constant);
}

bool InstanceAttributeMeets(const InstanceAttribute& attribute, const BoundNode& node) {
  if (!node.attributeName.empty() && FoldCase(attribute.name) != node.attributeName) return false;
  if (!attribute.value.IsSet()) return false;
  if (node.anyValue) return true;
  BoundConstant constant = node.constant;
  if (attribute.value.type == OdsType::Date) {
    constant.isNever = constant.date.empty();
    constant.text = constant.date;
  } else if (attribute.value.type != OdsType::String) {
    constant.isNever = !constant.isNumber;
  }
  return ValueMeets(attribute.value, node.op, constant);
}

std::vector<RecordId> Walk(const RecordStore& store, const ResolvedPath& path, RecordId id) {
  std::vector<RecordId> ids{id};
  for (const PathStep& step : path.steps) {
    std::vector<RecordId> next;
    for (const Link& link : store.Follow(step.source, step.relation, ids)) {
      next.push_back(link.target.id);
    }
    ids = std::move(next);
  }
  return ids;
}

bool Meets(const RecordStore& store, EntityId entity, RecordId id, const BoundNode& node) {
  const auto meets = [&](const BoundNode& child) { return Meets(store, entity, id, child); };
  if (node.kind == BoundNode::Kind::Logic) {
    return node.op == QueryOp::And ? std::all_of(node.children.begin(), node.children.end(), meets)
                                   : std::any_of(node.children.begin(), node.children.end(), meets);
  }
  const EntityId target = node.path.steps.empty() ? entity : node.path.target;
  for (const RecordId related : Walk(store, node.path, id)) {
    const RecordRef record{target, related};
    if (node.kind == BoundNode::Kind::Compare) {
      if (ValueMeets(store.ReadValue(record, node.path.attribute), node.op, node.constant)) {
        return true;
      }
      continue;
    }
    for (const InstanceAttribute& attribute : store.InstanceAttributesOf(record)) {
      if (InstanceAttributeMeets(attribute, node)) return true;
    }
  }
  return false;
}

using Key = std::pair<std::u16string, long double>;

std::optional<Key> KeyOf(const RecordStore& store, EntityId entity, RecordId id,
                         const BoundOrder& order) {
  const EntityId target = order.path.steps.empty() ? entity : order.path.target;
  std::optional<Key> best;
  for (const RecordId related : Walk(store, order.path, id)) {
    const Value value = store.ReadValue({target, related}, order.path.attribute);
    Key key;
    if (const auto* texts = std::get_if<Value::Texts>(&value.data)) {
      key.first = FoldCase(texts->front());
    } else if (const auto* integers = std::get_if<Value::Integers>(&value.data)) {
      key.second = static_cast<long double>(integers->front());
    } else if (const auto* reals = std::get_if<Value::Reals>(&value.data)) {
      key.second = static_cast<long double>(reals->front());
    }
    if (!value.IsSet() || std::isnan(key.second)) continue;
    if (!best || (order.descending ? *best < key : key < *best)) best = key;
  }
  return best;
}

}  // namespace

std::vector<RecordId> ReferenceSelect(const RecordStore& store, const BoundQuery& query) {
  struct Hit {
    RecordId id;
    std::vector<std::optional<Key>> keys;
  };
  std::vector<RecordId> all;
  if (query.start) {
    const RecordId source[] = {query.start->id};
    for (const Link& link : store.Follow(query.start->entity, query.start->relation, source)) {
      all.push_back(link.target.id);
    }
  } else {
    all = store.AllOf(query.entity);
  }
  std::vector<Hit> hits;
  for (const RecordId id : all) {
    if (query.hasCondition && !Meets(store, query.entity, id, query.condition)) continue;
    hits.push_back({id, {}});
    for (const BoundOrder& order : query.order) {
      hits.back().keys.push_back(KeyOf(store, query.entity, id, order));
    }
  }
  std::stable_sort(hits.begin(), hits.end(), [&](const Hit& a, const Hit& b) {
    for (std::size_t i = 0; i < query.order.size(); ++i) {
      // Absent values come last in either direction.
      if (!a.keys[i] != !b.keys[i]) return a.keys[i].has_value();
      if (a.keys[i] != b.keys[i]) return (a.keys[i] < b.keys[i]) != query.order[i].descending;
    }
    return !query.order.empty() && a.id < b.id;
  });
  std::vector<RecordId> ids;
  for (const Hit& hit : hits) {
    if (query.limit > 0 && ids.size() == static_cast<std::size_t>(query.limit)) break;
    ids.push_back(hit.id);
  }
  return ids;
}

}  // namespace hv::vex::engine::test
