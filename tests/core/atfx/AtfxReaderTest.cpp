// tests/core/atfx/AtfxReaderTest.cpp - what the reader makes of models, instances and their values.
#include "core/plugins/atfx/AtfxReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "AtfxFixtures.h"
#include "DumpStore.h"

namespace hv::vex::engine::test {
namespace {

std::unique_ptr<MemoryStore> ReadFeatures() {
  return atfx::ReadAtfxFile(HV_TEST_DATA_DIR "/atfx/features.atfx", {});
}

TEST(AtfxReader, DecodesEveryAttributeForm) {
  constexpr std::tuple<RecordId, const char*, const char*> kCases[] = {
      {1, "s", "' kept as it <stands> \u4E2D '"},
      {1, "i16 f32 b u8 i32 f64", "-32768 | 150 | 1 | 255 | 42 | -inf"},
      {1, "i64 d bytes blob", "9223372036854775807 | '201403040802' | x007FFF | x68656164000102"},
      {1, "c dc e x id2", "1.5/-2.5 | 0.1/1e+300 | 7 | 'd|text/plain|a.txt' | 5"},
      {1, "ss si16 sf32", "'one two' '' 'three' | 1 2 -3 | nan inf -inf 0.1"},
      {1, "sb su8 si32 sf64 si64", "1 0 1 0 | 0 255 | 7 | 0 0.1 | -9223372036854775808 1"},
      {1, "sd sbytes", "'2010' '201112' '20120714172414682610988' | x09 x"},
      {1, "sc sdc se sx", "1/2 3/4 | 5/6 | 0 7 | '||1' '2||'"},
      // Deviations: the id's tag in other letters, a repeated tag, an empty one, an item by number,
      // bytes without a length, an unknown item, a text without "s".
      {2, "Name i32 s e bytes", "'other letters' | 2 | - | 7 | x010203"},
      {3, "e ss sbytes i16", "- | 'alone' | x0405 | -"},
  };
  const auto store = ReadFeatures();
  for (const auto& [id, attributes, expected] : kCases) {
    std::istringstream names(attributes);
    std::string text;
    for (std::string name; names >> name;) {
      text += text.empty() ? "" : " | ";
      text += AttributeText(*store, Ref(*store, u"Thing", id), cor::FromUtf8(name));
    }
    EXPECT_EQ(expected, text) << attributes;
  }
}

TEST(AtfxReader, MergesLinksOfBothSidesAndWarnsAboutWhatItSkips) {
  const auto store = ReadFeatures();
  EXPECT_EQ("10 11", LinksText(*store, Ref(*store, u"Thing", 1), u"others"));
  EXPECT_EQ("1", LinksText(*store, Ref(*store, u"Part", 11), u"owner"));
  EXPECT_EQ("1 3", LinksText(*store, Ref(*store, u"Thing", 2), u"back-rel"));
  EXPECT_EQ("2", LinksText(*store, Ref(*store, u"Thing", 3), u"first.rel"));
  const std::string warnings = WarningsText(*store);
  for (const char* line : {"Thing 1: 'others' dropped, Part 99 doesn't exist\n",
                           "line 83: unknown tag 'novelty' in an instance of Thing\n",
                           "line 84: unknown item 'green' in 'e' of Thing\n",
                           "line 86: unknown tag 'Unknown' in the instance data\n"}) {
    EXPECT_NE(warnings.npos, warnings.find(line)) << line << " not in\n" << warnings;
  }
  EXPECT_EQ(warnings.npos, warnings.find("ACLA"));
}

TEST(AtfxReader, KeepsInstanceAttributesWithTheirUnits) {
  const auto store = ReadFeatures();
  std::string text;
  for (const InstanceAttribute& a : store->InstanceAttributesOf(Ref(*store, u"Thing", 1))) {
    text += cor::ToUtf8(a.name) + ":" + cor::ToUtf8(NameOfType(a.value.type, false)) + ":" +
            ValueText(a.value) + ":" + std::to_string(a.unit) + "\n";
  }
  EXPECT_EQ(
      "text:DT_STRING:'a \"quoted\" one':0\ni8:DT_SHORT:-5:0\nu8:DT_BYTE:200:0\n"
      "i16:DT_SHORT:3:2\ni32:DT_LONG:4:2\ni64:DT_LONGLONG:5:0\nf32:DT_FLOAT:0.1:0\n"
      "f64:DT_DOUBLE:0.1:0\nt:DT_DATE:'2010':0\nunset:DT_DOUBLE:-:0\n",
      text);
}

TEST(AtfxReader, ReadsTheModelTolerantly) {
  const auto store = ReadFeatures();
  EXPECT_TRUE(store->GetModel()->Find(u"Thing")->members[0].isRelation) << "mixed order is kept";
  const std::string dump = DumpStore(*store);
  for (const char* line : {
           "element Unit : aounit\n",
           "  attribute Id base=id DT_LONG obligatory unique auto length=0 unit=0\n",
           "  attribute Name base=name DT_STRING obligatory length=50 unit=0\n",
           "  attribute i32 base= DT_LONG length=0 unit=2\n",
           "  relation first.rel base= -> Thing 0..1 inverse=back-rel\n",
           "  relation back-rel base= -> Thing 0..-1 inverse=first.rel\n",
           "  relation others base= -> Part 0..-1 inverse=owner\n",  // "100"
       }) {
    EXPECT_NE(dump.npos, dump.find(line)) << line << dump;
  }
}

TEST(AtfxReader, KeepsFactsAboutTheWholeFile) {
  std::string text;
  for (const auto& [name, value] : ReadFeatures()->ContextValues()) {
    text += cor::ToUtf8(name) + "=" + cor::ToUtf8(value) + "\n";
  }
  EXPECT_EQ(
      "documentation_exporter=hand\ndocumentation_short_description=all features\n"
      "locale=US-EN\n",
      text);
}

TEST(AtfxReader, TakesTextsWholeHoweverTheParserCutsThem) {
  std::string numbers, expected;
  for (int i = 0; i < 60000; ++i) {
    numbers += std::to_string(i * 7) + (i % 11 == 0 ? "\n" : " ");
    expected += (i == 0 ? "" : " ") + std::to_string(i * 7);
  }
  EXPECT_EQ(expected, ColumnText(*ReadColumn(Inline("A_INT32", numbers), "DT_LONG")));
}

TEST(AtfxReader, GivesInlineValuesTheTypeOfTheirTag) {
  const std::string implicit =
      Tags("Representation=implicit_linear") + "<Parameters>0.5 2</Parameters>";
  struct Case {
    std::string content, expected;  // type and values
  };
  const Case kCases[] = {
      {Inline("A_UTF8STRING", "<s> a </s><s/>"), "DT_STRING ' a ' ''"},
      {Inline("A_ASCIISTRING", "<s>a</s>"), "DT_STRING 'a'"},
      {Inline("A_TIMESTRING", "<s>2010</s><s>201112</s>"), "DT_DATE '2010' '201112'"},
      {Inline("A_TIMESTRING", "2010\n201112"), "DT_DATE '2010' '201112'"},
      {Inline("A_INT8", "0 255"), "DT_BYTE 0 255"},
      {Inline("A_INT8", "-1 127"), "DT_SHORT -1 127"},
      {Inline("A_INT16", "-5"), "DT_SHORT -5"},
      {Inline("A_UINT16", "65535"), "DT_LONG 65535"},
      {Inline("A_INT32", "1 2"), "DT_LONG 1 2"},
      {Inline("A_UINT32", "4294967295"), "DT_LONGLONG 4294967295"},
      {Inline("A_INT64", "1"), "DT_LONGLONG 1"},
      {Inline("A_FLOAT32", "0.1 nan"), "DT_FLOAT 0.1 nan"},
      {Inline("A_FLOAT64", "0.1 1E5"), "DT_DOUBLE 0.1 1e+05"},
      {Inline("A_COMPLEX32", "1 2 3 4"), "DT_COMPLEX 1/2 3/4"},
      {Inline("A_COMPLEX64", "1 2"), "DT_DCOMPLEX 1/2"},
      {Inline("A_BOOLEAN", "1 0 true"), "DT_BOOLEAN 1 0 1"},
      {Inline("A_BYTEFIELD", "<length>2</length><sequence>1 2</sequence>"), "DT_BYTESTR x0102"},
      {Inline("A_BYTEFIELD", "1 2"), "DT_BYTE 1 2"},
      {Inline("A_BYTEFIELD", Tags("length=1000000000000 sequence=1")), "DT_BYTESTR x01"},
      {Inline("Bytestream", Tags("length=1 sequence=7")), "DT_BYTESTR x07"},
      {Inline("A_BLOB", "<text>h</text><bytefield>" + Tags("length=1 sequence=7") + "</bytefield>"),
       "DT_BLOB x680007"},
      {Inline("A_EXTERNALREFERENCE",
              "<external_reference><location>l</location></external_reference>"),
       "DT_EXTERNALREFERENCE '||l'"},
      {Inline("A_ENUM", "3 4"), "DT_ENUM 3 4"},
      {Inline("A_INT16", "1") + Inline("A_INT32", "2"), "DT_LONG 2"},  // the last list counts
      {"<Values><A_INT16/></Values>", "none"},
      {"", "none"},
      {implicit, "DT_DOUBLE 0.5 2"},
      {implicit + Inline("A_FLOAT32", "1 2"), "DT_FLOAT 1 2"},
      {Tags("Representation=explicit Parameters=1"), "none"},
  };
  for (const Case& c : kCases) {
    const auto store = ReadColumn(c.content);
    const auto values = store->OpenValues(Ref(*store, u"Column"));
    EXPECT_EQ(c.expected, values ? cor::ToUtf8(NameOfType(values->Type(), false)) + " " +
                                       ValuesText(values.get())
                                 : "none")
        << c.content;
  }
}

TEST(AtfxReader, ReadsFlagsAndWarnsWhenTheyContradict) {
  EXPECT_EQ("15 0 7", FlagsText(*ReadColumn("<Flags>15 0 7</Flags>" + Inline("A_INT16", "1 2 3"))));
  const auto both = ReadColumn("<Flags><A_INT16>15 0</A_INT16></Flags><GlobalFlag>15</GlobalFlag>" +
                               Inline("A_INT16", "1 2"));
  EXPECT_EQ("15 0", FlagsText(*both));
  EXPECT_NE(std::string::npos, WarningsText(*both).find("has a global flag and single flags"));
}

TEST(AtfxReader, WarnsWhenRowsAndValuesDiffer) {
  const auto store = ReadColumn(Inline("A_FLOAT32", "1 2 3 4"), "DT_COMPLEX", 2);
  EXPECT_EQ("1 2 3 4", ColumnText(*store));
  EXPECT_EQ("column 1 of Column has 4 values, its sub matrix tells 2 rows\n", WarningsText(*store));
}

TEST(AtfxReader, ReadsOtherLayoutsOfTheSameFileAlike) {
  const std::string plain = Document(ColumnInstances(Inline("A_INT16", "1 2")));
  std::string carriageReturns = plain;
  std::ranges::replace(carriageReturns, '\n', '\r');
  std::string utf16 = "\xFF\xFE";
  for (const char c : plain.substr(plain.find("?>") + 2)) utf16 += std::string{c, '\0'};
  const std::string expected = DumpStore(*ReadText(plain));
  for (const std::string& other : {"\xEF\xBB\xBF" + plain, carriageReturns, utf16}) {
    EXPECT_EQ(expected, DumpStore(*ReadText(other)));
  }
}

TEST(AtfxReader, TakesSectionsInAnyOrderAndOldVersions) {
  const auto store = ReadText(
      "<atfx_file><foreign><deep/></foreign><application_model><application_element>" +
      Tags("name=E basetype=AoSubMatrix") + "<application_attribute>" +
      Tags("name=Rows base_attribute=number_of_rows") +
      "</application_attribute></application_element></application_model><base_model_version>31"
      "</base_model_version><instance_data><E><Rows>3</Rows></E><E><Rows>4</Rows></E>"
      "</instance_data></atfx_file>");
  // Without an id attribute the records are numbered; the type is the one of that version.
  EXPECT_EQ("4", AttributeText(*store, Ref(*store, u"E", 2), u"Rows"));
  EXPECT_EQ(OdsType::Long, store->GetModel()->Find(u"E")->attributes[0].type);
}

TEST(AtfxReader, LeavesOutWhatHasNoType) {
  const auto store = ReadText(
      "<atfx_file><application_model><application_element>" + Tags("name=E basetype=AoAny") +
      "<application_attribute>" + Tags("name=u datatype=DT_UNKNOWN") +
      "</application_attribute></application_element></application_model>"
      "<instance_data>\n<E><u>5<deep/></u></E></instance_data></atfx_file>");
  EXPECT_EQ("-", AttributeText(*store, Ref(*store, u"E"), u"u"));
  EXPECT_NE(std::string::npos,
            WarningsText(*store).find("line 2: 'u' of E has no data type; left out\n"));
}

TEST(AtfxReader, LimitsItsWarnings) {
  std::string instances;
  for (int i = 0; i < 5000; ++i) instances += "<Odd" + std::to_string(i) + "/>";
  EXPECT_EQ(201u, ReadText(Document(instances))->Warnings().size());
}

}  // namespace
}  // namespace hv::vex::engine::test
