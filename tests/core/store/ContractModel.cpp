// tests/core/store/ContractModel.cpp - builds the model and shortens the writing of queries.
#include "ContractModel.h"

#include <charconv>

#include <gtest/gtest.h>

#include "core/model/ModelBuilder.h"
#include "core/query/TextMatch.h"
#include "storefabric/WString.h"

namespace hv::vex::engine::test {
namespace {

void AddBased(ModelBuilder& builder, std::u16string_view name, std::u16string_view base) {
  AttributeSpec spec;
  spec.name = name;
  spec.baseAttribute = base;
  EXPECT_TRUE(builder.AddAttribute(std::move(spec)));
}

void AddPlain(ModelBuilder& builder, std::u16string_view name, OdsType type, bool sequence = false,
              std::u16string_view enumeration = {}) {
  AttributeSpec spec;
  spec.name = name;
  spec.type = TypeName{type, sequence};
  spec.enumeration = enumeration;
  EXPECT_TRUE(builder.AddAttribute(std::move(spec)));
}

void AddRelation(ModelBuilder& builder, std::u16string_view name, std::u16string_view to,
                 std::u16string_view inverse, std::int32_t most) {
  RelationSpec spec;
  spec.name = name;
  spec.refTo = to;
  spec.inverseName = inverse;
  spec.minOccurs = 0;
  spec.maxOccurs = most;
  EXPECT_TRUE(builder.AddRelation(std::move(spec)));
}

void BeginEntity(ModelBuilder& builder, std::u16string_view name, std::u16string_view base) {
  EXPECT_TRUE(builder.BeginEntity(name, base));
  AddBased(builder, u"Id", u"id");
  AddBased(builder, u"Name", u"name");
}

}  // namespace

std::shared_ptr<const Model> MakeContractModel(ModelVariant variant) {
  ModelBuilder builder(u"asam36");
  builder.AddEnumeration(
      {u"kind_enum", false, {{u"Rest", kRest}, {u"Idle", kIdle}, {u"Load", kLoad}}});

  BeginEntity(builder, u"Project", u"AoAny");
  if (variant == ModelVariant::Moved) AddPlain(builder, u"Mood", OdsType::String);
  AddPlain(builder, u"Started", OdsType::Date);
  AddPlain(builder, u"Budget", OdsType::Double);
  AddRelation(builder, u"Runs", u"Run", u"Project", kMany);
  AddRelation(builder, u"Twins", u"Project", u"Twins", kMany);
  AddRelation(builder, u"Rival", u"Project", u"Rival", 1);

  BeginEntity(builder, u"Run", u"AoAny");
  AddPlain(builder, u"Flag", OdsType::Boolean);
  AddPlain(builder, u"Octet", OdsType::Byte);
  AddPlain(builder, u"Small", OdsType::Short);
  AddPlain(builder, u"Count", OdsType::Long);
  AddPlain(builder, u"Big", OdsType::LongLong);
  AddPlain(builder, u"Ratio", OdsType::Float);
  AddPlain(builder, u"Value", OdsType::Double);
  AddPlain(builder, u"Kind", OdsType::Enum, false, u"kind_enum");
  AddPlain(builder, u"When", OdsType::Date);
  AddPlain(builder, u"Note", OdsType::String);
  AddPlain(builder, u"Doc", OdsType::ExternalReference);
  AddPlain(builder, u"Raw", OdsType::ByteStr);
  AddPlain(builder, u"Pair", OdsType::DComplex);
  AddPlain(builder, u"Numbers", OdsType::Long, true);
  AddPlain(builder, u"Words", OdsType::String, true);
  if (variant == ModelVariant::Grown) AddPlain(builder, u"Mood", OdsType::String);
  AddRelation(builder, u"Project", u"Project", u"Runs", 1);
  AddRelation(builder, u"Tags", u"Tag", u"Runs", kMany);
  AddRelation(builder, u"Next", u"Run", u"Previous", 1);
  AddRelation(builder, u"Previous", u"Run", u"Next", 1);

  BeginEntity(builder, u"Tag", u"AoAny");
  AddPlain(builder, u"Weight", OdsType::Long);
  AddRelation(builder, u"Runs", u"Run", u"Tags", kMany);

  BeginEntity(builder, u"Column", u"AoLocalColumn");
  AddBased(builder, u"Values", u"values");
  AddBased(builder, u"Flags", u"flags");
  AddBased(builder, u"Representation", u"sequence_representation");
  AddBased(builder, u"Parameters", u"generation_parameters");
  if (variant == ModelVariant::Grown) {
    BeginEntity(builder, u"Extra", u"AoAny");
    AddRelation(builder, u"Run", u"Run", u"Extras", 1);
  }
  std::shared_ptr<const Model> model = builder.Build();
  for (const ModelProblem& problem : builder.Problems()) {
    EXPECT_FALSE(problem.isError) << cor::ToUtf8(cor::WString(problem.text));
  }
  return model;
}

ContractModel::ContractModel(const Model& of)
    : project(of.Find(u"Project")->id),
      run(of.Find(u"Run")->id),
      tag(of.Find(u"Tag")->id),
      column(of.Find(u"Column")->id),
      model(of) {}

std::int32_t ContractModel::AttributeOf(EntityId entity, std::u16string_view name) const {
  const std::int32_t index = model.At(entity).FindAttribute(name);
  EXPECT_NE(kNone, index) << cor::ToUtf8(name);
  return index;
}

std::int32_t ContractModel::RelationOf(EntityId entity, std::u16string_view name) const {
  const std::int32_t index = model.At(entity).FindRelation(name);
  EXPECT_NE(kNone, index) << cor::ToUtf8(name);
  return index;
}

ResolvedPath ContractModel::Path(EntityId start, std::u16string_view path) const {
  const auto resolved = model.Resolve(start, path, true);
  EXPECT_TRUE(resolved) << cor::ToUtf8(path);
  return resolved.value_or(ResolvedPath());
}

BoundConstant IntegerConstant(std::int64_t value) {
  BoundConstant constant;
  constant.integer = value;
  constant.real = static_cast<double>(value);
  return constant;
}

BoundConstant RealConstant(double value) {
  BoundConstant constant;
  constant.isReal = true;
  constant.real = value;
  return constant;
}

BoundConstant TextConstant(std::u16string_view text, bool ignoreCase, bool wildcards) {
  BoundConstant constant;
  constant.text = ignoreCase ? FoldCase(text) : std::u16string(text);
  constant.ignoreCase = ignoreCase;
  constant.wildcards = wildcards;
  return constant;
}

BoundConstant NeverConstant() {
  BoundConstant constant;
  constant.isNever = true;
  return constant;
}

BoundConstant InstanceConstant(std::u16string_view text, bool ignoreCase) {
  BoundConstant constant = TextConstant(text, ignoreCase);
  const std::string ascii(text.begin(), text.end());
  const auto parsed = std::from_chars(ascii.data(), ascii.data() + ascii.size(), constant.real);
  constant.isNumber = parsed.ec == std::errc() && parsed.ptr == ascii.data() + ascii.size();
  constant.isReal = constant.isNumber;
  if (const auto date = NormalizeDate14(text)) constant.date.assign(date->begin(), date->end());
  return constant;
}

BoundNode Compare(ResolvedPath path, QueryOp op, BoundConstant constant) {
  BoundNode node;
  node.kind = BoundNode::Kind::Compare;
  node.op = op;
  node.path = std::move(path);
  node.constant = std::move(constant);
  return node;
}

BoundNode Logic(QueryOp op, std::vector<BoundNode> children) {
  BoundNode node;
  node.op = op;
  node.children = std::move(children);
  return node;
}

BoundQuery Where(EntityId entity, BoundNode condition) {
  BoundQuery query;
  query.entity = entity;
  query.hasCondition = true;
  query.condition = std::move(condition);
  return query;
}

std::string Describe(const Model& model, const BoundNode& node) {
  constexpr const char* kOps[] = {"and", "or", "=", "!=", "<", "<=", ">", ">="};
  const char* const op = kOps[static_cast<std::size_t>(node.op)];
  std::string text;
  if (node.kind == BoundNode::Kind::Logic) {
    for (const BoundNode& child : node.children) {
      text += (text.empty() ? "(" : std::string(" ") + op + " ") + Describe(model, child);
    }
    return text + ")";
  }
  for (const PathStep& step : node.path.steps) {
    const auto& relations = model.At(step.source).relations;
    text += cor::ToUtf8(relations[static_cast<std::size_t>(step.relation)].name) + ".";
  }
  if (node.kind == BoundNode::Kind::InstanceAttribute) {
    text += "{" + cor::ToUtf8(node.attributeName) + (node.anyValue ? " any" : "") + "}";
  } else {
    const auto& attributes = model.At(node.path.target).attributes;
    text += cor::ToUtf8(attributes[static_cast<std::size_t>(node.path.attribute)].name);
  }
  const BoundConstant& c = node.constant;
  text += std::string(" ") + op + " ";
  if (c.isNever) return text + "never";
  if (!c.text.empty()) text += '"' + cor::ToUtf8(c.text) + '"';
  return text + (c.ignoreCase ? " nocase " : " ") + (c.wildcards ? "wild " : "") +
         (c.isReal ? std::to_string(c.real) : std::to_string(c.integer));
}

std::u16string Describe(const ColumnBlock& block) {
  std::u16string text;
  for (std::size_t i = 0; i < block.Rows(); ++i) {
    if (i != 0) text += u", ";
    if (block.isNull[i] != 0) {
      text += u"-";
    } else if (StorageKindOf(block.type) == StorageKind::Text) {
      text += block.TextAt(i);
    } else {
      char buffer[40];
      const auto end = StorageKindOf(block.type) == StorageKind::Integer
                           ? std::to_chars(buffer, buffer + sizeof buffer, block.integers[i])
                           : std::to_chars(buffer, buffer + sizeof buffer, block.reals[i]);
      text.append(buffer, end.ptr);
    }
  }
  return text;
}

std::u16string Describe(const Value& value) {
  ColumnBlock block;
  block.type = value.type;
  block.isNull.push_back(value.IsSet() ? 0 : 1);
  if (const auto* integers = std::get_if<Value::Integers>(&value.data)) block.integers = *integers;
  if (const auto* reals = std::get_if<Value::Reals>(&value.data)) block.reals = *reals;
  if (const auto* texts = std::get_if<Value::Texts>(&value.data)) block.textArena = texts->front();
  block.textEnds.push_back(block.textArena.size());
  return Describe(block);
}

std::string Describe(const std::vector<RecordId>& ids) {
  std::string text;
  for (const RecordId id : ids) text += (text.empty() ? "" : ", ") + std::to_string(id);
  return text;
}

std::vector<RecordId> Targets(const RecordStore& store, RecordRef record, std::int32_t relation) {
  std::vector<RecordId> ids;
  const RecordId asked[] = {record.id};
  for (const Link& link : store.Follow(record.entity, relation, asked)) {
    EXPECT_EQ(0u, link.source);
    ids.push_back(link.target.id);
  }
  return ids;
}

}  // namespace hv::vex::engine::test
