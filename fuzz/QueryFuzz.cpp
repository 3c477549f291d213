// fuzz/QueryFuzz.cpp - query texts from outside: reading, binding, writing and matching.
// The first byte chooses what the rest is: a query text (0 to 127), or an expression whose query
// text must be readable (128 to 255).
#include "core/model/ModelBuilder.h"
#include "core/query/QueryBinder.h"
#include "core/query/QueryReader.h"
#include "core/query/QueryWriter.h"
#include "core/query/TextMatch.h"
#include "xml/SaxParser.h"

#include <storefabric/WString.h>

#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

using namespace hv::vex::engine;

AttributeSpec MakeAttribute(std::u16string_view name, OdsType type, std::u16string_view base = {}) {
  AttributeSpec spec;
  spec.name = name;
  spec.baseAttribute = base;
  if (base.empty()) spec.type = TypeName{type, false};
  return spec;
}

std::shared_ptr<const Model> MakeModel() {
  ModelBuilder builder(u"asam31");
  builder.AddEnumeration({u"state_enum", false, {{u"Open", 0}, {u"Done", 1}}});
  for (const std::u16string_view name : {u"Bench", u"Rig"}) {
    builder.BeginEntity(name, u"AoSubTest");
    builder.AddAttribute(MakeAttribute(u"Id", OdsType::Id, u"id"));
    builder.AddAttribute(MakeAttribute(u"Name", OdsType::String, u"name"));
  }
  builder.BeginEntity(u"MeaResult", u"AoMeasurement");
  builder.AddAttribute(MakeAttribute(u"Id", OdsType::Id, u"id"));
  builder.AddAttribute(MakeAttribute(u"Name", OdsType::String, u"name"));
  builder.AddAttribute(MakeAttribute(u"Size", OdsType::Long));
  builder.AddAttribute(MakeAttribute(u"Gain", OdsType::Float));
  builder.AddAttribute(MakeAttribute(u"Time", OdsType::Date));
  builder.AddAttribute(MakeAttribute(u"Valid", OdsType::Boolean));
  AttributeSpec state = MakeAttribute(u"State", OdsType::Enum);
  state.enumeration = u"state_enum";
  builder.AddAttribute(std::move(state));
  RelationSpec rig;
  rig.name = u"Rig";
  rig.refTo = u"Rig";
  rig.baseRelation = u"test";
  builder.AddRelation(std::move(rig));
  return builder.Build();
}

// The model and the XML library live as long as the process; both are costly to make.
struct World {
  hv::xml::XmlRuntime runtime;
  std::shared_ptr<const Model> model = MakeModel();
};

const World& TheWorld() {
  static const World* const world = new World;
  return *world;
}

void Check(bool holds) {
  if (!holds) std::abort();
}

void CheckNode(const BoundNode& node, const Model& model) {
  if (node.kind == BoundNode::Kind::Logic) {
    Check(!node.children.empty());
    for (const BoundNode& child : node.children) CheckNode(child, model);
    return;
  }
  Check(node.path.target < model.Entities().size());
  const std::u16string& text = node.constant.text;
  if (node.constant.ignoreCase) Check(FoldCase(text) == text);
  if (node.constant.wildcards) {
    const WildcardPattern pattern(text);
    Check(pattern.Matches(text));  // "?" and "*" match themselves
    Check(!pattern.IsLiteral() && text.starts_with(pattern.LiteralPrefix()));
  }
}

void ReadAndBind(std::u16string_view text) {
  const Model& model = *TheWorld().model;
  try {
    for (const BoundQuery& query : BindQuery(ReadQuery(text), model)) {
      Check(!model.At(query.entity).isBase);
      if (query.hasCondition) CheckNode(query.condition, model);
    }
  } catch (const hv::vex::Exception& e) {
    Check(e.code == hv::vex::errc::kBadQuery && !e.message.empty());
  }
}

bool IsXmlText(std::u16string_view text) {
  for (const char16_t unit : text) {
    if (unit >= 0xFFFE || (unit < 0x20 && unit != '\t' && unit != '\n' && unit != '\r')) {
      return false;
    }
  }
  return true;
}

void WriteAndRead(std::u16string_view expression, bool odsConform) {
  std::u16string text;
  try {
    text = BuildQueryText(u"MeaResult", odsConform, expression);
  } catch (const hv::vex::Exception& e) {
    Check(e.code == hv::vex::errc::kBadQuery);
    return;
  }
  if (IsXmlText(expression)) {
    Check(ReadQuery(text).returnType == u"MeaResult");
    ReadAndBind(text);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  const hv::WString text = hv::cor::FromUtf8(bytes);
  if (data[0] < 128) {
    ReadAndBind(text);
  } else {
    WriteAndRead(text, data[0] % 2 == 0);
  }
  return 0;
}
