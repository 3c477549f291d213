// fuzz/QueryFuzz.cpp - query texts from outside: reading, binding, writing and matching.
// The first byte chooses what the rest is: a query text (0 to 127), or an expression whose query
// text must be readable (128 to 255).
#include "core/query/QueryBinder.h"
#include "core/query/QueryReader.h"
#include "core/query/QueryWriter.h"
#include "core/query/TextMatch.h"
#include "fuzz/Fuzz.h"
#include "tests/core/model/ModelText.h"

namespace {

using namespace hv::vex::engine;
using hv::vex::errc::kBadQuery;

std::shared_ptr<const Model> MakeModel() {
  ModelBuilder builder(u"asam31");
  Declare(builder, R"(enum state_enum Open Done
element Bench AoSubTest
attr Id base=id
attr Name base=name
element Rig AoSubTest
attr Id base=id
attr Name base=name
element MeaResult AoMeasurement
attr Id base=id
attr Name base=name
attr Size type=DT_LONG
attr Gain type=DT_FLOAT
attr Time type=DT_DATE
attr Valid type=DT_BOOLEAN
attr State type=DT_ENUM enum=state_enum
rel Rig to=Rig base=test)");
  return builder.Build();
}

void CheckNode(const BoundNode& node, const Model& model) {
  if (node.kind == BoundNode::Kind::Logic) {
    Require(!node.children.empty());
    for (const BoundNode& child : node.children) CheckNode(child, model);
    return;
  }
  Require(node.path.target < model.Entities().size());
  const std::u16string& text = node.constant.text;
  if (node.constant.ignoreCase) Require(FoldCase(text) == text);
  if (node.constant.wildcards) {
    const WildcardPattern pattern(text);
    Require(pattern.Matches(text));  // "?" and "*" match themselves
    Require(!pattern.IsLiteral() && text.starts_with(pattern.LiteralPrefix()));
  }
}

void ReadAndBind(std::u16string_view text) {
  KeepXml();
  static const auto& model = *new std::shared_ptr<const Model>(MakeModel());
  try {
    for (const BoundQuery& query : BindQuery(ReadQuery(text), *model)) {
      Require(!model->At(query.entity).isBase);
      if (query.hasCondition) CheckNode(query.condition, *model);
    }
  } catch (const hv::vex::Exception& e) {
    Require(e.code == kBadQuery && !e.message.empty());
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
  if (!IsDone(kBadQuery, [&] { text = BuildQueryText(u"MeaResult", odsConform, expression); }))
    return;
  if (IsXmlText(expression)) {
    Require(ReadQuery(text).returnType == u"MeaResult");
    ReadAndBind(text);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const hv::WString text = hv::cor::FromUtf8(TextOf(data + 1, size - 1));
  if (data[0] < 128) {
    ReadAndBind(text);
  } else {
    WriteAndRead(text, data[0] % 2 == 0);
  }
  return 0;
}
