// tests/core/vex/VexDocumentTest.cpp - documents over a model with everything that a model can
// have.
#include <gtest/gtest.h>

#include "core/plugins/vex/ModelDefinition.h"
#include "core/plugins/vex/VexReader.h"
#include "core/plugins/vex/VexWriter.h"
#include "tests/support/Thrown.h"

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

/// Without the line ends and blanks before tags.
std::string Squeezed(std::string text) {
  for (std::size_t end = text.size(); (end = text.rfind('\n', end - 1)) != text.npos && end > 0;) {
    const std::size_t next = text.find_first_not_of(' ', end + 1);
    if (next != text.npos && text[next] == '<') text.erase(end, next - end);
  }
  return text;
}

TEST(VexDocuments, AreWrittenInLinesOfTheirContents) {
  const std::string document = Document(R"( <box id="1">
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
  <inside>
   <box ref="1"/>
  </inside>
  <lid>
   <lid>
   </lid>
  </lid>
 </box>
)");
  EXPECT_EQ(document, WriteVexText(*Read(document)));
}

TEST(VexDocuments, AreWrittenAsTheyWereRead) {
  struct Case {
    const char* written;
    const char* read = nullptr;  // if it isn't what is written
    const char* warnings = "";
  };
  constexpr Case kCases[] = {
      {""},
      {"<box><label></label></box><box></box>"},  // an empty text is not a missing one
      {R"(<box><inside><box><label>z</label></box><box><label>a</label><lid><lid>
<colour>red</colour></lid></lid></box></inside></box>)"},
      // A part of two, and a ring.
      {R"(<box><label>x</label><lid><lid id="1"></lid></lid></box>
<box><label>y</label><lid><lid ref="1"/></lid></box>
<box id="2"><label>ring</label><inside><box><inside><box ref="2"/></inside></box><box ref="2"/>
</inside></box>)"},
      // Parts of several entities.
      {R"(<box><things><lid id="1"></lid><box><label>a</label></box><lid><colour>red</colour></lid>
</things><best><lid ref="1"/></best></box>)"},
      // Other people's layout.
      {"<box><label>1</label><size>7</size></box>",
       "<!-- by hand --><box id='mine'><size>\n 7 </size><label>1</label></box>"},
      // What a newer model has.
      {"<box><inside><box></box></inside></box>",
       R"(<box><colour>red</colour><inside><bag id="b"><box id="in"/></bag><box/><bag/>
<lid/><box ref="b"/><box ref="in"/></inside></box>
<bag><box/></bag>)",
       "3: in 'box' the member 'colour' is unknown and was left out\n"
       "3: here the entity 'bag' is unknown and was left out\n"
       "3: here the entity 'bag' is unknown and was left out\n"
       "4: here the entity 'lid' is unknown and was left out\n"
       "5: the entity 'bag' is unknown and was left out\n"},
  };
  for (const Case& c : kCases) {
    const auto store = Read(Document(c.read ? c.read : c.written));
    const std::string text = WriteVexText(*store);
    EXPECT_EQ(Squeezed(Document(c.written)), Squeezed(text));
    EXPECT_EQ(text, WriteVexText(*Read(text)));
    std::string warnings;
    for (const std::u16string& line : store->Warnings()) warnings += cor::ToUtf8(line) + "\n";
    EXPECT_EQ(c.warnings, warnings) << c.written;
  }
}

/// A store that can be changed.
std::unique_ptr<MemoryStore> Writable(std::string_view body) {
  MemoryPersistence persistence;
  persistence.save = [](const MemoryStore&, std::u16string_view) { return false; };
  return Read(Document(body))->Clone(std::move(persistence));
}

TEST(VexDocuments, PostponeWhatLiesTooDeep) {
  constexpr int kChain = 350;
  const auto chain = Writable("<box/>");
  const Entity& box = *chain->GetModel()->Find(u"box");
  for (RecordId id = 1; id < kChain; ++id) {
    chain->Connect({box.id, id}, box.FindRelation(u"inside"), {box.id, chain->Create(box.id)});
  }
  const std::string text = WriteVexText(*chain);
  const auto again = Read(text);
  EXPECT_EQ(std::uint64_t{kChain}, again->CountOf(box.id));
  EXPECT_EQ(text, WriteVexText(*again));
  std::size_t mentions = 0;
  for (std::size_t at = 0; (at = text.find(" ref=", at)) != text.npos; ++at) ++mentions;
  EXPECT_EQ(3u, mentions);
}

TEST(VexDocuments, AreRefusedWithLineAndReason) {
  struct Case {
    std::string_view document;  // in `Document` if it begins with an entity of the model
    const char* error;          // behind "-1301 x.vex:"
    const char16_t* target = u"";
  };
  constexpr Case kCases[] = {
      {"", "1: "},
      {"\x7F"
       "ELF",
       "1: "},
      {"<vex_document version='1' model='/DataModels/Test/Zoo/1_3'>\n<box>", "2: "},
      {"<html/>", "1: not a document of instances: the root element is 'html'"},
      {"<vex_document/>", "1: version '' of the format isn't known"},
      {"<vex_document version='2'/>", "1: version '2' of the format isn't known"},
      {"<vex_document version='1'/>", "1: the document names no model"},
      {"<vex_document version='1' model='/A/1_0'/>", "1: there is no model '/A/1_0'"},
      {"<vex_document version='1' model='/A/1_3'/>",
       "1: a document of the model '/A/1_3', not of '/DataModels/Test/Zoo/1_3'",
       u"/DataModels/Test/Zoo/1_3"},
      {"<box>\n\nx</box>", "5: a text where a tag is expected"},
      {"<box><label><b/></label></box>", "3: the tag 'b' has no place in a value"},
      {"<box><size>4 m</size></box>",
       "3: '4 m' is no value of 'size', which is of the type DT_LONG"},
      {"<box><tiny>256</tiny></box>", "3: '256' is no value of 'tiny'"},
      {"<box><steps>1</steps>\n<steps>32768</steps></box>",
       "4: a number of 'steps' is beyond its type"},
      {"<box><weight>0,5</weight></box>", "3: '0,5' is no value of 'weight'"},
      {"<box><open>maybe</open></box>", "3: 'maybe' is no value of 'open'"},
      {"<box><day>1 April</day></box>", "3: '1 April' is no value of 'day'"},
      {"<box><size>1</size>\n<size>1</size></box>", "4: 'size' is there already"},
      {"<box><best><lid/>\n<box/></best></box>", "4: the reference 'best' has room for one"},
      {"<box><lid><lid/></lid>\n<lid><lid/></lid></box>",
       "4: the reference 'lid' has room for one"},
      {"<box id='a'/>\n<lid id='a'/>", "4: the id 'a' is there already"},
      {"<box/>\n<box><inside>\n<box ref='a'/></inside></box>",
       "5: there is no instance with the id 'a'"},
      {"<lid id='a'/><box><inside><box ref='a'/></inside></box>",
       "3: the instance with the id 'a' is of another entity"},
      {"<box ref='a'/>", "3: 'ref' has no meaning outside of a reference"},
      {"<!DOCTYPE a [<!ENTITY e SYSTEM 'file:///etc/passwd'>]>\n<a>&e;</a>", ""},
  };
  for (const Case& c : kCases) {
    const bool isBody = c.document.starts_with("<box") || c.document.starts_with("<lid");
    const std::string error =
        Thrown([&] { Read(isBody ? Document(c.document) : std::string(c.document), c.target); });
    EXPECT_TRUE(error.starts_with(std::string("-1301 x.vex:") + c.error)) << c.document << error;
  }
}

TEST(VexDocuments, ForgetDeletedThings) {
  const auto store = Writable("<box><things><lid/><box/><lid/></things></box>");
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
  constexpr std::pair<const char*, const char*> kCases[] = {
      {"<attribute/>", "2: the tag 'attribute' has no place here"},
      {"<entity name='a'/><entity name='a'/>", "2: the entity 'a' is there already"},
      {"<entity name='a'><attribute name='b' type='DT_BLOB'/></entity>",
       "2: documents can't hold values of the type 'DT_BLOB'"},
      {"<entity name='a'><reference name='r' to='b'/></entity>",
       " Element 'a', relation 'r': refers to the element 'b', which doesn't exist."},
  };
  for (const auto& [inside, reason] : kCases) {
    const std::string text =
        std::string("<document_model path='/A/1_0'>\n") + inside + "</document_model>";
    EXPECT_EQ(std::string("-1301 m.xml:") + reason,
              Thrown([&] { ReadModelDefinition(std::as_bytes(std::span(text)), "m.xml"); }));
  }
}

}  // namespace
}  // namespace hv::vex::engine::vexdoc
