// tests/core/store/ContractModel.cpp - builds the model and shortens the writing of queries.
#include "ContractModel.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <sstream>

#include "core/query/TextMatch.h"

#include "ModelText.h"

namespace hv::vex::engine::test {
namespace {

void DeclareEntity(ModelBuilder& builder, const std::string& entity, std::string members) {
  std::replace(members.begin(), members.end(), ';', '\n');
  Declare(builder, "element " + entity + "\nattr Id base=id\nattr Name base=name\n" + members);
}

}  // namespace

std::shared_ptr<const Model> MakeContractModel(ModelVariant variant) {
  const bool isGrown = variant == ModelVariant::Grown;
  const std::string mood = "attr Mood type=DT_STRING; ";
  ModelBuilder builder(u"asam36");
  builder.AddEnumeration(
      {u"kind_enum", false, {{u"Rest", kRest}, {u"Idle", kIdle}, {u"Load", kLoad}}});
  DeclareEntity(builder, "Project AoAny",
                (variant == ModelVariant::Moved ? mood : "") +
                    "attr Started type=DT_DATE; attr Budget type=DT_DOUBLE;"
                    "rel Runs to=Run inverse=Project min=0 max=Many;"
                    "rel Twins to=Project inverse=Twins min=0 max=Many;"
                    "rel Rival to=Project inverse=Rival min=0 max=1");
  DeclareEntity(
      builder, "Run AoAny",
      "attr Flag type=DT_BOOLEAN; attr Octet type=DT_BYTE; attr Small type=DT_SHORT;"
      "attr Count type=DT_LONG; attr Big type=DT_LONGLONG; attr Ratio type=DT_FLOAT;"
      "attr Value type=DT_DOUBLE; attr Kind type=DT_ENUM enum=kind_enum;"
      "attr When type=DT_DATE; attr Note type=DT_STRING;"
      "attr Doc type=DT_EXTERNALREFERENCE; attr Raw type=DT_BYTESTR;"
      "attr Pair type=DT_DCOMPLEX; attr Numbers type=DS_LONG; attr Words type=DS_STRING;" +
          (isGrown ? mood : "") +
          "rel Project to=Project inverse=Runs min=0 max=1;"
          "rel Tags to=Tag inverse=Runs min=0 max=Many;"
          "rel Next to=Run inverse=Previous min=0 max=1;"
          "rel Previous to=Run inverse=Next min=0 max=1");
  DeclareEntity(builder, "Tag AoAny",
                "attr Weight type=DT_LONG; rel Runs to=Run inverse=Tags min=0 max=Many");
  DeclareEntity(builder, "Column AoLocalColumn",
                "attr Values base=values; attr Flags base=flags;"
                "attr Representation base=sequence_representation;"
                "attr Parameters base=generation_parameters");
  if (isGrown) {
    DeclareEntity(builder, "Extra AoAny", "rel Run to=Run inverse=Extras min=0 max=1");
  }
  std::shared_ptr<const Model> model = builder.Build();
  EXPECT_EQ(std::string::npos, DescribeProblems(builder).find('!')) << DescribeProblems(builder);
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

void ContractModel::SetName(RecordStore& store, RecordRef record, std::u16string_view name) const {
  Set(store, record, u"Name", Word(name));
}

std::vector<LinkWord> ContractModel::Words(const std::string& text) const {
  std::vector<LinkWord> words;
  std::istringstream in(text);
  for (std::string word; in >> word;) {
    const EntityId entity = word[0] == 'P' ? project : (word[0] == 'R' ? run : tag);
    const std::size_t dot = word.find('.');
    const std::size_t sign = word.find_first_of("+-=!", dot);
    const std::int32_t relation = RelationOf(entity, Wide(word.substr(dot + 1, sign - dot - 1)));
    const RecordId target = std::atoll(word.c_str() + word.find_first_not_of("PRT", sign + 1));
    words.push_back(
        {word.substr(0, sign),
         {entity, std::stoi(word.substr(1))},
         relation,
         word[sign],
         {model.At(entity).relations[static_cast<std::size_t>(relation)].target, target}});
  }
  return words;
}

void ContractModel::Link(RecordStore& store, const std::string& steps) const {
  for (const LinkWord& step : Words(steps)) {
    for (const RecordRef record : {step.record, step.target}) {
      if (!store.Exists(record)) store.Create(record.entity, record.id);
    }
    if (step.sign == '+') {
      store.Connect(step.record, step.relation, step.target);
    } else {
      store.Disconnect(step.record, step.relation, step.target);
    }
  }
}

std::string ContractModel::LinksOf(const RecordStore& store, const std::string& expected) const {
  std::string state;
  for (const LinkWord& fact : Words(expected)) {
    std::string ids = Describe(Targets(store, fact.record, fact.relation));
    std::erase(ids, ' ');
    state += (state.empty() ? "" : " ") + fact.member + "=" + ids;
  }
  return state;
}

std::string UnprotectedChanges(RecordStore& store, const ContractModel& m) {
  const RecordRef run{m.run, 1}, tag{m.tag, 1}, column{m.column, 1};
  const std::int32_t tags = m.RelationOf(m.run, u"Tags");
  const std::pair<const char*, std::function<void()>> kChanges[] = {
      {"create", [&] { store.Create(m.run); }},
      {"write", [&] { m.SetName(store, run, u"x"); }},
      {"connect", [&] { store.Connect(run, tags, tag); }},
      {"disconnect", [&] { store.Disconnect(run, tags, tag); }},
      {"delete", [&] { store.Delete(run); }},
      {"set",
       [&] {
         store.SetInstanceAttribute(run, {u"a", Word(u"b"), 0});
       }},
      {"remove", [&] { store.RemoveInstanceAttribute(run, u"a"); }},
      {"values", [&] { store.WriteValues(column, Longs({1}), {}, false); }},
      {"save", [&] { store.Save(u""); }},
  };
  const std::string before = DumpStore(store);
  std::string wrong = store.GetCapabilities().writable ? "writable" : "";
  for (const auto& [name, change] : kChanges) {
    const std::int32_t code = CodeOf(change);
    if (code != errc::kWriteProtected) wrong += std::string(" ") + name + std::to_string(code);
  }
  return wrong + (store.IsModified() || before != DumpStore(store) ? " changed" : "");
}

MemoryPersistence KeptNowhere() {
  return {[](const MemoryStore&, std::u16string_view) { return false; }, {}};
}

BoundConstant ConstantOf(std::u16string_view text) {
  BoundConstant constant;
  constant.isNever = text == u"never";
  constant.isReal = text[0] == u'r';
  if (text[0] == u'\'') {
    const std::size_t end = text.rfind(u'\'');
    constant.wildcards = text.find(u'w', end) != text.npos;
    constant.ignoreCase = text.find(u'i', end) != text.npos;
    text = text.substr(1, end - 1);
    constant.text = constant.ignoreCase ? FoldCase(text) : std::u16string(text);
  } else if (!constant.isNever) {
    const std::string number = cor::ToUtf8(text.substr(constant.isReal ? 1 : 0));
    constant.real = std::strtod(number.c_str(), nullptr);
    if (!constant.isReal) constant.integer = std::strtoll(number.c_str(), nullptr, 10);
  }
  return constant;
}

BoundConstant InstanceConstant(std::u16string_view text, bool ignoreCase) {
  BoundConstant constant;
  constant.text = ignoreCase ? FoldCase(text) : std::u16string(text);
  constant.ignoreCase = ignoreCase;
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

BoundNode CompareInstance(ResolvedPath path, std::u16string_view name, QueryOp op,
                          const BoundConstant& constant) {
  BoundNode node = Compare(std::move(path), op, constant);
  node.kind = BoundNode::Kind::InstanceAttribute;
  node.attributeName = name;
  node.anyValue = constant.text.empty();
  return node;
}

BoundNode Logic(QueryOp op, std::vector<BoundNode> children) {
  BoundNode node;
  node.op = op;
  node.children = std::move(children);
  return node;
}

BoundNode Condition(const Model& model, EntityId start, std::u16string_view text) {
  constexpr std::u16string_view kOps[] = {u"=", u"!=", u"<", u"<=", u">", u">="};
  const std::size_t name = text.find(u' ');
  const std::size_t op = text.find(u' ', name + 1);
  const auto found = std::find(kOps, std::end(kOps), text.substr(name + 1, op - name - 1));
  const auto path = model.Resolve(start, text.substr(0, name), true);
  EXPECT_TRUE(path && found != std::end(kOps)) << cor::ToUtf8(text);
  return Compare(path.value_or(ResolvedPath()),
                 static_cast<QueryOp>(static_cast<int>(QueryOp::Equal) + (found - kOps)),
                 ConstantOf(text.substr(op + 1)));
}

BoundQuery Where(const Model& model, EntityId entity, std::u16string_view condition) {
  return Where(entity, Condition(model, entity, condition));
}

BoundQuery Where(EntityId entity, BoundNode condition) {
  BoundQuery query = All(entity);
  query.hasCondition = true;
  query.condition = std::move(condition);
  return query;
}

BoundQuery All(EntityId entity, std::int64_t limit) {
  BoundQuery query;
  query.entity = entity;
  query.limit = limit;
  return query;
}

std::string Describe(const ColumnBlock& block) {
  std::string text;
  for (std::size_t i = 0; i < block.Rows(); ++i) {
    text += (i == 0 ? "" : ", ") + ValueText(ValueAt(block, i));
  }
  return text;
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
