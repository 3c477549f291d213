// tests/core/vex/VexDocumentTest.cpp - documents over a model with everything that a model can
// have.
#include <gtest/gtest.h>

#include "core/plugins/vex/ModelDefinition.h"
#include "core/plugins/vex/VexReader.h"
#include "core/plugins/vex/VexWriter.h"
#include "store/core/Exception.h"

namespace hv::vex::engine::vexdoc {
namespace {

constexpr std::string_view kZoo = R"(<document_model path="/DataModels/Test/Zoo/1_3">
<entity name="box" kind="thing">
<attribute name="label" type="DT_STRING"/><attribute name="size" type="DT_LONG"/>
<attribute name="tiny" type="DT_BYTE"/><attribute name="weight" type="DT_DOUBLE"/>
<attribute name="share" type="DT_FLOAT"/><attribute name="open" type="DT_BOOLEAN"/>
<attribute name="day" type="DT_DATE"/><attribute name="marks" type="DS_STRING"/>
<attribute name="steps" type="DS_SHORT"/>
<reference name="inside" to="box" inverse="around"/><reference name="lid" to="lid" most="1"/>
<reference name="things" to="thing"/><reference name="best" to="thing" most="1"/>
</entity>
<entity name="lid" kind="thing"><attribute name="colour" type="DT_STRING"/></entity>
</document_model>)";

std::string Thrown(const std::function<void()>& run) {
  try {
    run();
  } catch (const Exception& error) {
    return std::to_string(error.code) + " " + cor::ToUtf8(error.message);
  }
  return "no error";
}

std::shared_ptr<const Model> Zoo(std::u16string_view uri) {
  if (!uri.ends_with(u"/DataModels/Test/Zoo/1_3")) return nullptr;
  return ReadModelDefinition(std::as_bytes(std::span(kZoo)), "zoo.xml").model;
}

std::unique_ptr<MemoryStore> Read(std::string_view text, std::u16string target = {}) {
  return ReadVexText(cor::FromUtf8(text), "x.vex", {std::move(target), Zoo, {}});
}

std::string Document(std::string_view body) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<vex_document version=\"1\" "
         "model=\"http://www.halvorn.example/DataModels/Test/Zoo/1_3\">\n" +
         std::string(body) + "</vex_document>\n";
}

struct KeptCase {
  const char* name;
  std::string_view written;    // canonical
  std::string_view read = {};  // what is read; empty: the canonical form
  std::string_view warnings = {};
};

class VexDocument : public ::testing::TestWithParam<KeptCase> {};

TEST_P(VexDocument, IsWrittenAsItsContents) {
  const KeptCase& c = GetParam();
  const auto store = Read(Document(c.read.empty() ? c.written : c.read));
  EXPECT_EQ(Document(c.written), WriteVexText(*store));
  std::string warnings;
  for (const std::u16string& text : store->Warnings()) warnings += cor::ToUtf8(text) + "\n";
  EXPECT_EQ(c.warnings, warnings);
}

const KeptCase kKept[] = {
    {"Nothing", ""},
    {"EveryType", R"( <box>
  <label> a &amp; b &lt;c&gt; "d" 'e'&#13;
 ü 𝄞 </label>
  <size>-2147483648</size>
  <tiny>255</tiny>
  <weight>0.1</weight>
  <share>0.1</share>
  <open>true</open>
  <day>20260401123000</day>
  <marks>one</marks>
  <marks></marks>
  <marks> </marks>
  <steps>-1</steps>
  <steps>32767</steps>
 </box>
)"},
    {"EmptyTextIsNoMissingOne", " <box>\n  <label></label>\n </box>\n <box>\n </box>\n"},
    {"PartsKeepTheirOrder", R"( <box>
  <inside>
   <box>
    <label>z</label>
   </box>
   <box>
    <label>a</label>
    <lid>
     <lid>
      <colour>red</colour>
     </lid>
    </lid>
   </box>
  </inside>
 </box>
)"},
    {"APartOfTwoAndARing", R"( <box>
  <label>x</label>
  <lid>
   <lid id="1">
   </lid>
  </lid>
 </box>
 <box>
  <label>y</label>
  <lid>
   <lid ref="1"/>
  </lid>
 </box>
 <box id="2">
  <label>ring</label>
  <inside>
   <box>
    <inside>
     <box ref="2"/>
    </inside>
   </box>
   <box ref="2"/>
  </inside>
 </box>
)"},
    {"PartsOfSeveralEntities", R"( <box>
  <things>
   <lid id="1">
   </lid>
   <box>
    <label>a</label>
   </box>
   <lid>
    <colour>red</colour>
   </lid>
  </things>
  <best>
   <lid ref="1"/>
  </best>
 </box>
)"},
    {"OtherPeoplesLayout", " <box>\n  <label>1</label>\n  <size>7</size>\n </box>\n",
     "<!-- by hand --><box id='mine'><size>\n 7 </size><label>1</label></box>"},
    {"WhatANewerModelHas", " <box>\n  <inside>\n   <box>\n   </box>\n  </inside>\n </box>\n",
     R"(<box><colour>red</colour><inside><bag id="b"><box id="in"/></bag><box/><bag/>
<lid/><box ref="b"/><box ref="in"/></inside></box>
<bag><box/></bag>)",
     "3: in 'box' the member 'colour' is unknown and was left out\n"
     "3: here the entity 'bag' is unknown and was left out\n"
     "3: here the entity 'bag' is unknown and was left out\n"
     "4: here the entity 'lid' is unknown and was left out\n"
     "5: the entity 'bag' is unknown and was left out\n"},
};
INSTANTIATE_TEST_SUITE_P(Kept, VexDocument, ::testing::ValuesIn(kKept),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(VexDocuments, PostponeWhatLiesTooDeep) {
  constexpr int kChain = 350;
  const auto store = Read(Document("<box><label>0</label></box>"));
  MemoryPersistence writable;
  writable.save = [](const MemoryStore&, std::u16string_view) { return false; };
  const auto chain = store->Clone(writable);
  const EntityId box = chain->GetModel()->Find(u"box")->id;
  const std::int32_t inside = chain->GetModel()->At(box).FindRelation(u"inside");
  for (RecordId id = 1; id < kChain; ++id) {
    chain->Connect({box, id}, inside, {box, chain->Create(box)});
  }
  const std::string text = WriteVexText(*chain);
  const auto again = Read(text);
  EXPECT_EQ(std::uint64_t{kChain}, again->CountOf(box));
  EXPECT_EQ(text, WriteVexText(*again));
  std::size_t mentions = 0;
  for (std::size_t at = 0; (at = text.find(" ref=", at)) != text.npos; ++at) ++mentions;
  EXPECT_EQ(3u, mentions);
}

struct RefusedCase {
  const char* name;
  std::string_view document;  // in `Document` unless it begins with "<?" or isn't XML
  std::string_view error;     // behind "-1301 x.vex:"
  std::u16string_view target = {};
};

class VexDocumentRefused : public ::testing::TestWithParam<RefusedCase> {};

TEST_P(VexDocumentRefused, WithLineAndReason) {
  const RefusedCase& c = GetParam();
  const bool isWhole = !c.document.starts_with("<box") && !c.document.starts_with("<lid");
  const std::string text = isWhole ? std::string(c.document) : Document(c.document);
  const std::string error = Thrown([&] { Read(text, std::u16string(c.target)); });
  EXPECT_TRUE(error.starts_with("-1301 x.vex:" + std::string(c.error))) << error;
}

const RefusedCase kRefused[] = {
    {"Empty", "", "1: "},
    {"NoXml",
     "\x7F"
     "ELF",
     "1: "},
    {"CutOff", "<vex_document version='1' model='/DataModels/Test/Zoo/1_3'>\n<box>", "2: "},
    {"OtherRoot", "<html/>", "1: not a document of instances: the root element is 'html'"},
    {"NoVersion", "<vex_document/>", "1: version '' of the format isn't known"},
    {"NewerFormat", "<vex_document version='2'/>", "1: version '2' of the format isn't known"},
    {"NoModel", "<vex_document version='1'/>", "1: the document names no model"},
    {"UnknownModel", "<vex_document version='1' model='/A/1_0'/>", "1: there is no model '/A/1_0'"},
    {"OtherModel", "<vex_document version='1' model='/A/1_3'/>",
     "1: a document of the model '/A/1_3', not of '/DataModels/Test/Zoo/1_3'",
     u"/DataModels/Test/Zoo/1_3"},
    {"TextForATag", "<box>\n\nx</box>", "5: a text where a tag is expected"},
    {"TagForAText", "<box><label><b/></label></box>", "3: the tag 'b' has no place in a value"},
    {"NoNumber", "<box><size>4 m</size></box>",
     "3: '4 m' is no value of 'size', which is of the type DT_LONG"},
    {"NumberTooLarge", "<box><tiny>256</tiny></box>", "3: '256' is no value of 'tiny'"},
    {"ElementTooLarge", "<box><steps>1</steps>\n<steps>32768</steps></box>",
     "4: a number of 'steps' is beyond its type"},
    {"NoReal", "<box><weight>0,5</weight></box>", "3: '0,5' is no value of 'weight'"},
    {"NoTruth", "<box><open>maybe</open></box>", "3: 'maybe' is no value of 'open'"},
    {"NoDate", "<box><day>1 April</day></box>", "3: '1 April' is no value of 'day'"},
    {"AttributeTwice", "<box><size>1</size>\n<size>1</size></box>", "4: 'size' is there already"},
    {"TwoBest", "<box><best><lid/>\n<box/></best></box>",
     "4: the reference 'best' has room for one"},
    {"TwoLids", "<box><lid><lid/></lid>\n<lid><lid/></lid></box>",
     "4: the reference 'lid' has room for one"},
    {"IdTwice", "<box id='a'/>\n<lid id='a'/>", "4: the id 'a' is there already"},
    {"RefToNothing", "<box/>\n<box><inside>\n<box ref='a'/></inside></box>",
     "5: there is no instance with the id 'a'"},
    {"RefToAnother", "<lid id='a'/><box><inside><box ref='a'/></inside></box>",
     "3: the instance with the id 'a' is of another entity"},
    {"RefAtTheTop", "<box ref='a'/>", "3: 'ref' has no meaning outside of a reference"},
    {"ExternalEntity", "<!DOCTYPE a [<!ENTITY e SYSTEM 'file:///etc/passwd'>]>\n<a>&e;</a>", ""},
};
INSTANTIATE_TEST_SUITE_P(Refused, VexDocumentRefused, ::testing::ValuesIn(kRefused),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(VexDocuments, ForgetDeletedThings) {
  MemoryPersistence writable;
  writable.save = [](const MemoryStore&, std::u16string_view) { return false; };
  const auto store =
      Read(Document("<box><things><lid/><box/><lid/></things></box>"))->Clone(std::move(writable));
  const Entity& box = *store->GetModel()->Find(u"box");
  const Entity& lid = *store->GetModel()->Find(u"lid");
  const std::int32_t things = box.FindRelation(u"things");
  const auto targets = [&] {
    std::string text;
    for (const Link& link : store->Follow(box.id, things, std::vector<RecordId>{1})) {
      text += (link.target.entity == box.id ? "b" : "l") + std::to_string(link.target.id);
    }
    return text;
  };
  EXPECT_EQ("l1b2l2", targets());
  store->Delete({lid.id, 1});
  store->Connect({box.id, 1}, things, {box.id, 1});
  store->Connect({box.id, 1}, things, {box.id, 2});  // has no effect
  EXPECT_EQ("b2l2b1", targets());
  store->Disconnect({box.id, 1}, things, {lid.id, 2});
  EXPECT_EQ("b2b1", targets());
  store->Delete({box.id, 1});
  EXPECT_EQ("", targets());
}

TEST(VexDocuments, ReadWithTheTargetModelWhateverTheirVersion) {
  const std::string_view older = "<vex_document version='1' model='/DataModels/Test/Zoo/0_9'/>";
  EXPECT_EQ("-1301 x.vex:1: there is no model '/DataModels/Test/Zoo/0_9'",
            Thrown([&] { Read(older); }));
  EXPECT_EQ(Document(""), WriteVexText(*Read(older, u"/DataModels/Test/Zoo/1_3")));
  EXPECT_EQ("-1003 there is no model \"/DataModels/Test/Zoo/2_0\"",
            Thrown([&] { Read(older, u"/DataModels/Test/Zoo/2_0"); }));
}

TEST(VexDocuments, RefuseDefinitionsThatDontHold) {
  const auto error = [](std::string_view inside) {
    const std::string text =
        "<document_model path='/A/1_0'>\n" + std::string(inside) + "</document_model>";
    return Thrown([&] { ReadModelDefinition(std::as_bytes(std::span(text)), "m.xml"); });
  };
  EXPECT_EQ("-1301 m.xml:2: the tag 'attribute' has no place here", error("<attribute/>"));
  EXPECT_EQ("-1301 m.xml:2: the entity 'a' is there already",
            error("<entity name='a'/><entity name='a'/>"));
  EXPECT_EQ("-1301 m.xml:2: documents can't hold values of the type 'DT_BLOB'",
            error("<entity name='a'><attribute name='b' type='DT_BLOB'/></entity>"));
  EXPECT_EQ(
      "-1301 m.xml: Element 'a', relation 'r': refers to the element 'b', which doesn't exist.",
      error("<entity name='a'><reference name='r' to='b'/></entity>"));
}

}  // namespace
}  // namespace hv::vex::engine::vexdoc
