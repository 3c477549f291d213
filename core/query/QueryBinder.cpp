#include "core/query/QueryBinder.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "core/query/ConstantBinder.h"
#include "core/query/QueryReader.h"
#include "core/query/TextMatch.h"

namespace hv::vex::engine {
namespace {

constexpr std::u16string_view kInstance = u"hv_vex_instance";
constexpr std::u16string_view kValues = u"instance_attributes.values";
constexpr std::u16string_view kName = u"instance_attributes.name";

// What an identifier ends in. `path` is what leads there, without the dot.
struct Identifier {
  enum class Kind : std::uint8_t { Member, Instance, AttributeValue, AttributeName };
  Kind kind = Kind::Member;
  std::u16string_view path;
};

Identifier Classify(std::u16string_view text) {
  constexpr std::pair<std::u16string_view, Identifier::Kind> kEndings[] = {
      {kInstance, Identifier::Kind::Instance},
      {kValues, Identifier::Kind::AttributeValue},
      {kName, Identifier::Kind::AttributeName},
  };
  for (const auto& [ending, kind] : kEndings) {
    if (text.size() < ending.size()) continue;
    const std::size_t start = text.size() - ending.size();
    // These names are plain ASCII, so folding keeps the length of what could be equal to them.
    if (FoldCase(text.substr(start)) != ending) continue;
    if (start == 0) return {kind, {}};
    if (text[start - 1] == u'.') return {kind, text.substr(0, start - 1)};
  }
  return {Identifier::Kind::Member, text};
}

// An identifier that an entity doesn't have, told apart by where it is kept.
struct Unresolved {
  const std::u16string* identifier;
  QueryPosition position;
};

class Binder final {
 public:
  Binder(const Model& model, const Entity& entity) : m_model(model), m_entity(entity) {}

  BoundQuery Bind(const ParsedQuery& query);
  [[nodiscard]] const std::vector<Unresolved>& Missing() const { return m_missing; }

 private:
  BoundNode BindNode(const ParsedNode& node);
  BoundNode BindLogic(const ParsedNode& node);
  BoundNode BindMember(const ParsedNode& node);
  BoundNode BindInstance(const ParsedNode& node, std::u16string_view path);
  BoundNode BindInstanceAttribute(const ParsedNode* value, const ParsedNode* name);
  BoundNode BindComparisons(const ParsedNode& node, const ResolvedPath& path);
  BoundNode Missing(const ParsedNode& node);
  [[nodiscard]] std::optional<ResolvedPath> ResolveRelations(std::u16string_view path) const;
  [[nodiscard]] std::optional<ResolvedPath> ResolveOrder(std::u16string_view identifier) const;
  [[noreturn]] static void Fail(const ParsedNode& node, std::u16string_view reason) {
    throw QueryError(node.position, reason);
  }

  const Model& m_model;
  const Entity& m_entity;
  std::vector<Unresolved> m_missing;
};

BoundQuery Binder::Bind(const ParsedQuery& query) {
  BoundQuery bound;
  bound.entity = m_entity.id;
  bound.freeText = query.freeText;
  bound.limit = query.limit;
  if (!query.root.children.empty()) {
    bound.hasCondition = true;
    bound.condition = BindNode(query.root);
  }
  for (const ParsedOrder& order : query.order) {
    if (std::optional<ResolvedPath> path = ResolveOrder(order.identifier)) {
      bound.order.push_back({*std::move(path), order.descending});
    } else {
      m_missing.push_back({&order.identifier, order.position});
    }
  }
  return bound;
}

BoundNode Binder::BindNode(const ParsedNode& node) {
  if (node.IsLogic()) return BindLogic(node);
  const Identifier identifier = Classify(node.identifier);
  switch (identifier.kind) {
    case Identifier::Kind::AttributeValue:
      return BindInstanceAttribute(&node, nullptr);
    case Identifier::Kind::AttributeName:
      return BindInstanceAttribute(nullptr, &node);
    case Identifier::Kind::Instance:
      return BindInstance(node, identifier.path);
    case Identifier::Kind::Member:
      break;
  }
  return BindMember(node);
}

// Two functions that speak about the value and the name of the same instance attribute.
bool IsPair(const ParsedNode& value, const ParsedNode& name) {
  if (value.IsLogic() || name.IsLogic()) return false;
  const Identifier first = Classify(value.identifier);
  const Identifier second = Classify(name.identifier);
  return first.kind == Identifier::Kind::AttributeValue &&
         second.kind == Identifier::Kind::AttributeName && first.path == second.path;
}

BoundNode Binder::BindLogic(const ParsedNode& node) {
  BoundNode bound;
  bound.op = node.op;
  const auto& children = node.children;
  // Pairs stand bare among other conditions, value first; alone in a function either may be first.
  const bool isAnd = node.op == QueryOp::And;
  const bool turned = isAnd && children.size() == 2 && IsPair(children[1], children[0]);
  if (turned) return BindInstanceAttribute(&children[1], &children[0]);
  for (std::size_t i = 0; i < children.size(); ++i) {
    if (isAnd && i + 1 < children.size() && IsPair(children[i], children[i + 1])) {
      bound.children.push_back(BindInstanceAttribute(&children[i], &children[i + 1]));
      ++i;
    } else {
      bound.children.push_back(BindNode(children[i]));
    }
  }
  if (bound.children.size() != 1) return bound;
  BoundNode only = std::move(bound.children.front());
  return only;
}

// A condition that no record of this entity meets, kept in case other entities have the name.
BoundNode Binder::Missing(const ParsedNode& node) {
  m_missing.push_back({&node.identifier, node.position});
  BoundNode never;
  never.kind = BoundNode::Kind::Compare;
  never.op = QueryOp::Equal;
  never.constant.isNever = true;
  never.path.target = m_entity.id;
  never.path.attribute = m_entity.idAttribute;
  return never;
}

std::optional<ResolvedPath> Binder::ResolveRelations(std::u16string_view path) const {
  if (!path.empty()) return m_model.Resolve(m_entity.id, path, false);
  ResolvedPath here;
  here.target = m_entity.id;
  return here;
}

BoundNode Binder::BindMember(const ParsedNode& node) {
  if (auto path = m_model.Resolve(m_entity.id, node.identifier, true)) {
    return BindComparisons(node, *std::move(path));
  }
  auto path = m_model.Resolve(m_entity.id, node.identifier, false);
  if (!path) return Missing(node);
  // A related record is named by its name; a bare whole number is its id.
  const Entity& target = m_model.At(path->target);
  const bool isText = node.constant.wildcards || node.constant.ignoreCase;
  const std::optional<Number> number = ParseNumber(node.constant.text);
  const bool byId = !isText && number && !number->isReal && target.idAttribute != kNone;
  path->attribute = byId ? target.idAttribute : target.nameAttribute;
  if (path->attribute == kNone) Fail(node, u"the records of " + target.name + u" have no name");
  return BindComparisons(node, *std::move(path));
}

// The record itself: its id, also written as a key "Entity:id".
BoundNode Binder::BindInstance(const ParsedNode& node, std::u16string_view path) {
  auto resolved = ResolveRelations(path);
  if (!resolved) return Missing(node);
  const Entity& target = m_model.At(resolved->target);
  resolved->attribute = target.idAttribute;
  if (resolved->attribute == kNone) Fail(node, u"the records of " + target.name + u" have no id");

  const std::u16string_view text = node.constant.text;
  const std::size_t colon = text.rfind(u':');
  if (colon == std::u16string_view::npos) return BindComparisons(node, *resolved);
  ParsedNode byId = node;
  byId.constant.text = text.substr(colon + 1);
  BoundNode bound = BindComparisons(byId, *resolved);
  const Entity* const named = m_model.FindAnyCase(text.substr(0, colon));
  if (!named || !m_model.IsKindOf(target.id, named->id)) bound.constant.isNever = true;
  return bound;
}

BoundNode Binder::BindComparisons(const ParsedNode& node, const ResolvedPath& path) {
  const Attribute& attribute =
      m_model.At(path.target).attributes[static_cast<std::size_t>(path.attribute)];
  if (!IsComparable(attribute)) {
    Fail(node, u"identifier " + node.identifier + u" can't be compared, its type is " +
                   std::u16string(NameOfType(attribute.type, attribute.sequence)));
  }
  auto comparisons = BindConstant(m_model, attribute, node.op, node.constant);
  if (!comparisons) {
    Fail(node, u"constant \"" + node.constant.text + u"\" doesn't fit identifier " +
                   node.identifier + u", which is compared with " +
                   std::u16string(DescribeConstants(attribute.type)));
  }
  BoundNode bound;
  bound.op = node.op == QueryOp::NotEqual ? QueryOp::And : QueryOp::Or;
  for (BoundComparison& comparison : *comparisons) {
    BoundNode& leaf = bound.children.emplace_back();
    leaf.kind = BoundNode::Kind::Compare;
    leaf.op = comparison.op;
    leaf.path = path;
    leaf.constant = std::move(comparison.constant);
  }
  if (bound.children.size() != 1) return bound;
  BoundNode only = std::move(bound.children.front());
  return only;
}

BoundNode Binder::BindInstanceAttribute(const ParsedNode* value, const ParsedNode* name) {
  const ParsedNode& first = value ? *value : *name;
  auto path = ResolveRelations(Classify(first.identifier).path);
  if (!path) return Missing(first);
  BoundNode bound;
  bound.kind = BoundNode::Kind::InstanceAttribute;
  bound.op = value ? value->op : QueryOp::Equal;
  bound.path = *std::move(path);
  bound.anyValue = !value;
  if (value) bound.constant = BindInstanceAttributeConstant(value->op, value->constant);
  if (!name) return bound;
  if (name->op != QueryOp::Equal) {
    Fail(*name, u"the name of an instance attribute can only be compared with \"==\"");
  }
  bound.attributeName = FoldCase(name->constant.text);
  if (bound.attributeName.empty()) Fail(*name, u"the name of an instance attribute is empty");
  return bound;
}

std::optional<ResolvedPath> Binder::ResolveOrder(std::u16string_view identifier) const {
  if (auto path = m_model.Resolve(m_entity.id, identifier, true)) {
    const auto index = static_cast<std::size_t>(path->attribute);
    if (IsComparable(m_model.At(path->target).attributes[index])) return path;
    return std::nullopt;
  }
  auto path = m_model.Resolve(m_entity.id, identifier, false);
  if (!path) return std::nullopt;
  path->attribute = m_model.At(path->target).nameAttribute;
  if (path->attribute == kNone) return std::nullopt;
  return path;
}

}  // namespace

std::vector<BoundQuery> BindQuery(const ParsedQuery& query, const Model& model) {
  const Entity* const entity = model.FindAnyCase(query.returnType);
  if (!entity) throw QueryError(query.position, u"unknown entity " + query.returnType);

  std::vector<BoundQuery> queries;
  std::vector<Unresolved> missing;  // in every entity so far
  for (const EntityId id : model.ApplicationEntitiesOf(entity->id)) {
    Binder binder(model, model.At(id));
    queries.push_back(binder.Bind(query));
    if (queries.size() == 1) {
      missing = binder.Missing();
      continue;
    }
    std::erase_if(missing, [&](const Unresolved& name) {
      return std::ranges::find(binder.Missing(), name.identifier, &Unresolved::identifier) ==
             binder.Missing().end();
    });
  }
  if (!missing.empty()) {
    throw QueryError(
        missing.front().position,
        u"unknown identifier " + *missing.front().identifier + u" on entity " + entity->name);
  }
  return queries;
}

}  // namespace hv::vex::engine
