// tests/core/atfx/AtfxReaderTest.cpp - what the reader makes of models, instances and their values.
#include "core/plugins/atfx/AtfxReader.h"

#include <gtest/gtest.h>

#include "AtfxFixtures.h"
#include "DumpStore.h"

namespace hv::vex::engine::test {
namespace {

std::unique_ptr<MemoryStore> ReadFeatures() {
  return atfx::ReadAtfxFile(HV_TEST_DATA_DIR "/atfx/features.atfx", {});
}

struct AttributeCase {
  RecordId id;
  std::u16string_view attribute;
  std::string_view expected;
};

TEST(AtfxReader, DecodesEveryAttributeForm) {
  constexpr AttributeCase kCases[] = {
      {1, u"s", "' kept as it <stands> \u4E2D '"},
      {1, u"i16", "-32768"},
      {1, u"f32", "150"},
      {1, u"b", "1"},
      {1, u"u8", "255"},
      {1, u"i32", "42"},
      {1, u"f64", "-inf"},
      {1, u"i64", "9223372036854775807"},
      {1, u"d", "'201403040802'"},
      {1, u"bytes", "x007FFF"},
      {1, u"blob", "x68656164000102"},
      {1, u"c", "1.5/-2.5"},
      {1, u"dc", "0.1/1e+300"},
      {1, u"e", "7"},
      {1, u"x", "'d|text/plain|a.txt'"},
      {1, u"id2", "5"},
      {1, u"ss", "'one two' '' 'three'"},
      {1, u"si16", "1 2 -3"},
      {1, u"sf32", "nan inf -inf 0.1"},
      {1, u"sb", "1 0 1 0"},
      {1, u"su8", "0 255"},
      {1, u"si32", "7"},
      {1, u"sf64", "0 0.1"},
      {1, u"si64", "-9223372036854775808 1"},
      {1, u"sd", "'2010' '201112' '20120714172414682610988'"},
      {1, u"sbytes", "x09 x"},
      {1, u"sc", "1/2 3/4"},
      {1, u"sdc", "5/6"},
      {1, u"se", "0 7"},
      {1, u"sx", "'||1' '2||'"},
      // Deviations: the id's tag in other letters, a repeated tag, an empty one, an item by number,
      // bytes without a length, an unknown item, a text without "s".
      {2, u"Name", "'other letters'"},
      {2, u"i32", "2"},
      {2, u"s", "-"},
      {2, u"e", "7"},
      {2, u"bytes", "x010203"},
      {3, u"e", "-"},
      {3, u"ss", "'alone'"},
      {3, u"sbytes", "x0405"},
      {3, u"i16", "-"},
  };
  const auto store = ReadFeatures();
  for (const AttributeCase& c : kCases) {
    SCOPED_TRACE(cor::ToUtf8(c.attribute));
    EXPECT_EQ(c.expected, AttributeText(*store, Ref(*store, u"Thing", c.id), c.attribute));
  }
}

TEST(AtfxReader, MergesLinksOfBothSidesAndDropsDanglingOnes) {
  const auto store = ReadFeatures();
  EXPECT_EQ("10 11", LinksText(*store, Ref(*store, u"Thing", 1), u"others"));
  EXPECT_EQ("1", LinksText(*store, Ref(*store, u"Part", 11), u"owner"));
  EXPECT_EQ("1 3", LinksText(*store, Ref(*store, u"Thing", 2), u"back-rel"));
  EXPECT_EQ("2", LinksText(*store, Ref(*store, u"Thing", 3), u"first.rel"));
  const std::string warnings = WarningsText(*store);
  EXPECT_NE(warnings.npos, warnings.find("Thing 1: 'others' dropped, Part 99 doesn't exist\n"));
}

TEST(AtfxReader, WarnsAboutWhatItSkips) {
  const std::string warnings = WarningsText(*ReadFeatures());
  for (const char* line : {"line 83: unknown tag 'novelty' in an instance of Thing\n",
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
  const Model& model = *store->GetModel();
  const Entity& thing = *model.Find(u"Thing");
  EXPECT_EQ(OdsType::Long, thing.attributes[0].type);  // the file overrides the base type
  EXPECT_TRUE(thing.members[0].isRelation);            // mixed order is kept
  EXPECT_EQ(50, thing.attributes[1].length);
  EXPECT_FALSE(thing.attributes[1].autogenerate);
  EXPECT_EQ(2, thing.attributes[static_cast<std::size_t>(thing.FindAttribute(u"i32"))].unit);
  const auto relation = [&](std::u16string_view name) -> const Relation& {
    return thing.relations[static_cast<std::size_t>(thing.FindRelation(name))];
  };
  EXPECT_EQ(1, relation(u"first.rel").maxOccurs);
  EXPECT_EQ(kMany, relation(u"back-rel").maxOccurs);
  EXPECT_EQ(kMany, relation(u"others").maxOccurs);  // "100"
  EXPECT_EQ(u"aounit", model.BaseNameOf(model.Find(u"Unit")->id));
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
  const auto store = ReadText(
      Document(ColumnInstances("<Values><A_INT32>" + numbers + "</A_INT32></Values>", "DT_LONG")));
  EXPECT_EQ(expected, ValuesText(store->OpenValues(Ref(*store, u"Column", 1)).get()));
}

struct InlineCase {
  const char* name;
  std::string_view content;
  std::string_view type;
  std::string_view values;
};

class AtfxInline : public testing::TestWithParam<InlineCase> {};

TEST_P(AtfxInline, GivesTheTypeOfTheTag) {
  const InlineCase& c = GetParam();
  const auto store = ReadText(Document(ColumnInstances(c.content)));
  const auto values = store->OpenValues(Ref(*store, u"Column", 1));
  ASSERT_EQ(c.type.empty(), values == nullptr);
  if (!values) return;
  EXPECT_EQ(c.type, cor::ToUtf8(NameOfType(values->Type(), false)));
  EXPECT_EQ(c.values, ValuesText(values.get()));
}

constexpr InlineCase kInline[] = {
    {"Utf8", "<Values><A_UTF8STRING><s> a </s><s/></A_UTF8STRING></Values>", "DT_STRING",
     "' a ' ''"},
    {"Ascii", "<Values><A_ASCIISTRING><s>a</s></A_ASCIISTRING></Values>", "DT_STRING", "'a'"},
    {"TimeItems", "<Values><A_TIMESTRING><s>2010</s><s>201112</s></A_TIMESTRING></Values>",
     "DT_DATE", "'2010' '201112'"},
    {"TimeWords", "<Values><A_TIMESTRING>2010\n201112</A_TIMESTRING></Values>", "DT_DATE",
     "'2010' '201112'"},
    {"Bytes", "<Values><A_INT8>0 255</A_INT8></Values>", "DT_BYTE", "0 255"},
    {"SignedBytes", "<Values><A_INT8>-1 127</A_INT8></Values>", "DT_SHORT", "-1 127"},
    {"Int16", "<Values><A_INT16>-5</A_INT16></Values>", "DT_SHORT", "-5"},
    {"UInt16", "<Values><A_UINT16>65535</A_UINT16></Values>", "DT_LONG", "65535"},
    {"Int32", "<Values><A_INT32>1 2</A_INT32></Values>", "DT_LONG", "1 2"},
    {"UInt32", "<Values><A_UINT32>4294967295</A_UINT32></Values>", "DT_LONGLONG", "4294967295"},
    {"Int64", "<Values><A_INT64>1</A_INT64></Values>", "DT_LONGLONG", "1"},
    {"Float", "<Values><A_FLOAT32>0.1 nan</A_FLOAT32></Values>", "DT_FLOAT", "0.1 nan"},
    {"Double", "<Values><A_FLOAT64>0.1 1E5</A_FLOAT64></Values>", "DT_DOUBLE", "0.1 1e+05"},
    {"Complex", "<Values><A_COMPLEX32>1 2 3 4</A_COMPLEX32></Values>", "DT_COMPLEX", "1/2 3/4"},
    {"DComplex", "<Values><A_COMPLEX64>1 2</A_COMPLEX64></Values>", "DT_DCOMPLEX", "1/2"},
    {"Boolean", "<Values><A_BOOLEAN>1 0 true</A_BOOLEAN></Values>", "DT_BOOLEAN", "1 0 1"},
    {"ByteField",
     "<Values><A_BYTEFIELD><length>2</length><sequence>1 2</sequence></A_BYTEFIELD></Values>",
     "DT_BYTESTR", "x0102"},
    {"PlainByteField", "<Values><A_BYTEFIELD>1 2</A_BYTEFIELD></Values>", "DT_BYTE", "1 2"},
    {"OtherSpelling",
     "<Values><Bytestream><length>1</length><sequence>7</sequence></Bytestream></Values>",
     "DT_BYTESTR", "x07"},
    {"Blob",
     "<Values><A_BLOB><text>h</text><bytefield><length>1</length><sequence>7</sequence>"
     "</bytefield></A_BLOB></Values>",
     "DT_BLOB", "x680007"},
    {"Reference",
     "<Values><A_EXTERNALREFERENCE><external_reference><location>l</location>"
     "</external_reference></A_EXTERNALREFERENCE></Values>",
     "DT_EXTERNALREFERENCE", "'||l'"},
    {"Enum", "<Values><A_ENUM>3 4</A_ENUM></Values>", "DT_ENUM", "3 4"},
    {"ClaimedLength",
     "<Values><A_BYTEFIELD><length>1000000000000</length><sequence>1</sequence></A_BYTEFIELD>"
     "</Values>",
     "DT_BYTESTR", "x01"},
    {"LastListCounts", "<Values><A_INT16>1</A_INT16></Values><Values><A_INT32>2</A_INT32></Values>",
     "DT_LONG", "2"},
    {"Empty", "<Values><A_INT16/></Values>", "", ""},
    {"None", "", "", ""},
    {"Parameters", "<Representation>implicit_linear</Representation><Parameters>0.5 2</Parameters>",
     "DT_DOUBLE", "0.5 2"},
    {"ValuesBeforeParameters",
     "<Representation>implicit_linear</Representation><Parameters>0.5 2</Parameters>"
     "<Values><A_FLOAT32>1 2</A_FLOAT32></Values>",
     "DT_FLOAT", "1 2"},
    {"NoParametersForExplicit",
     "<Representation>explicit</Representation><Parameters>1</Parameters>", "", ""},
};
INSTANTIATE_TEST_SUITE_P(Tags, AtfxInline, testing::ValuesIn(kInline),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(AtfxReader, ReadsFlagsAndWarnsWhenTheyContradict) {
  const auto plain = ReadText(
      Document(ColumnInstances("<Flags>15 0 7</Flags><Values><A_INT16>1 2 3</A_INT16></Values>")));
  EXPECT_EQ("15 0 7", ValuesText(plain->OpenFlags(Ref(*plain, u"Column", 1)).get()));
  const auto both = ReadText(
      Document(ColumnInstances("<Flags><A_INT16>15 0</A_INT16></Flags><GlobalFlag>15</GlobalFlag>"
                               "<Values><A_INT16>1 2</A_INT16></Values>")));
  EXPECT_EQ("15 0", ValuesText(both->OpenFlags(Ref(*both, u"Column", 1)).get()));
  EXPECT_NE(std::string::npos, WarningsText(*both).find("has a global flag and single flags"));
}

TEST(AtfxReader, WarnsWhenRowsAndValuesDiffer) {
  const auto store = ReadText(Document(
      ColumnInstances("<Values><A_FLOAT32>1 2 3 4</A_FLOAT32></Values>", "DT_COMPLEX", 2)));
  EXPECT_EQ("1 2 3 4", ValuesText(store->OpenValues(Ref(*store, u"Column", 1)).get()));
  EXPECT_EQ("column 1 of Column has 4 values, its sub matrix tells 2 rows\n", WarningsText(*store));
}

TEST(AtfxReader, ReadsOtherLayoutsOfTheSameFileAlike) {
  const std::string plain = Document(ColumnInstances("<Values><A_INT16>1 2</A_INT16></Values>"));
  const std::string expected = DumpStore(*ReadText(plain));
  std::string carriageReturns = plain;
  for (char& c : carriageReturns) c = c == '\n' ? '\r' : c;
  std::string utf16 = "\xFF\xFE";
  for (const char c : plain.substr(plain.find("?>") + 2)) utf16 += std::string{c, '\0'};
  EXPECT_EQ(expected, DumpStore(*ReadText("\xEF\xBB\xBF" + plain)));
  EXPECT_EQ(expected, DumpStore(*ReadText(carriageReturns)));
  EXPECT_EQ(expected, DumpStore(*ReadText(utf16)));
}

TEST(AtfxReader, TakesSectionsInAnyOrderAndOldVersions) {
  const auto store = ReadText(
      "<atfx_file><foreign><deep/></foreign><application_model><application_element>"
      "<name>E</name><basetype>AoSubMatrix</basetype><application_attribute><name>Rows</name>"
      "<base_attribute>number_of_rows</base_attribute></application_attribute>"
      "</application_element></application_model><base_model_version>31</base_model_version>"
      "<instance_data><E><Rows>3</Rows></E><E><Rows>4</Rows></E></instance_data></atfx_file>");
  // Without an id attribute the records are numbered; the type is the one of that version.
  EXPECT_EQ("4", AttributeText(*store, Ref(*store, u"E", 2), u"Rows"));
  EXPECT_EQ(OdsType::Long, store->GetModel()->Find(u"E")->attributes[0].type);
}

TEST(AtfxReader, LeavesOutWhatHasNoType) {
  const auto store = ReadText(
      "<atfx_file><application_model><application_element><name>E</name><basetype>AoAny</basetype>"
      "<application_attribute><name>u</name><datatype>DT_UNKNOWN</datatype>"
      "</application_attribute></application_element></application_model>"
      "<instance_data>\n<E><u>5<deep/></u></E></instance_data></atfx_file>");
  EXPECT_EQ("-", AttributeText(*store, Ref(*store, u"E", 1), u"u"));
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
