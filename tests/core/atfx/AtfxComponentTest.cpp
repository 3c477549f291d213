// tests/core/atfx/AtfxComponentTest.cpp - values in component files: layouts, types, and bad files.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "AtfxFixtures.h"
#include "DumpStore.h"

namespace hv::vex::engine::test {
namespace {

using namespace std::string_literals;

struct TypespecCase {
  RecordId column;
  std::string_view type;
  std::string_view values;
};

TEST(AtfxTypespecs, AreDecodedAsTheirWriterMeant) {
  constexpr TypespecCase kCases[] = {
      {1, "DT_BYTE", "0 1 127 128 255"},
      {2, "DT_SHORT", "0 1 -1 127 -128"},
      {3, "DT_SHORT", "10 20 30 -32768 32767"},
      {4, "DT_SHORT", "10 20 30 -32768 32767"},
      {5, "DT_LONG", "0 1 256 32768 65535"},
      {6, "DT_LONG", "0 1 256 32768 65535"},
      {7, "DT_LONG", "100 200 300 -2147483648 2147483647"},
      {8, "DT_LONG", "100 200 300 -2147483648 2147483647"},
      {9, "DT_LONGLONG", "0 1 65536 2147483648 4294967295"},
      {10, "DT_LONGLONG", "0 1 65536 2147483648 4294967295"},
      {11, "DT_LONGLONG", "1 2 3 -9223372036854775808 9223372036854775807"},
      {12, "DT_LONGLONG", "1 2 3 -9223372036854775808 9223372036854775807"},
      {13, "DT_FLOAT", "1.5 -2.25 0 inf 3.4028235e+38"},
      {14, "DT_FLOAT", "1.5 -2.25 0 inf 3.4028235e+38"},
      {15, "DT_DOUBLE", "1.1 -2.2 0 nan 1.7976931348623157e+308"},
      {16, "DT_DOUBLE", "1.1 -2.2 0 nan 1.7976931348623157e+308"},
      {17, "DT_BOOLEAN", "1 0 1 0 1 1 0 1 1"},
      {18, "DT_STRING", "'alpha' '' '\u00C4 beta'"},
      {19, "DT_STRING", "'alpha' '' '\u4E2D beta'"},
      {20, "DT_DATE", "'20050130121532123789' '2010' '201112' '20120714172414682610988'"},
      {21, "DT_BYTESTR", "x0102 x x0001020304"},
      {22, "DT_BYTESTR", "x0102 x x0001020304"},
      {23, "DT_COMPLEX", "1.5/0.5 -2.25/-1"},
      {24, "DT_DOUBLE", "0 1 2 10 11 12 20 21 22 30 31 32"},
      {25, "DT_SHORT", "0 1 2 3"},
      {26, "DT_BYTE", "0 1 2 3"},
      {27, "DT_LONG", "16182"},
      {28, "DT_LONG", "12087"},
      {29, "DT_LONG", "-202"},
      {30, "DT_LONG", "-4297"},
      {31, "DT_DOUBLE", "42"},
      {34, "DT_SHORT", "1 2 3 4"},
      {38, "DT_LONG", "7 8 9 10"},
  };
  const auto store = atfx::ReadAtfxFile(HV_TEST_DATA_DIR "/atfx/own_typespecs.atfx", {});
  for (const TypespecCase& c : kCases) {
    SCOPED_TRACE(c.column);
    const auto values = store->OpenValues(Ref(*store, u"LocalColumn", c.column));
    ASSERT_NE(nullptr, values);
    EXPECT_EQ(c.type, cor::ToUtf8(NameOfType(values->Type(), false)));
    EXPECT_EQ(c.values, ValuesText(values.get()));
  }
}

/// One column whose values lie in "data.bin" with these contents.
struct ComponentCase {
  const char* name;
  std::string contents;
  std::string_view quantity;
  std::string_view component;  // everything but the identifier
  std::string_view values;     // or the error
};

std::string ComponentColumn(std::string_view component, std::string_view file = "data.bin") {
  return "<Representation>external_component</Representation><Values><component><identifier>" +
         std::string(file) + "</identifier>" + std::string(component) + "</component></Values>";
}

std::string OpenText(const RecordStore& store) {
  std::string result;
  const std::string error =
      Thrown([&] { result = ValuesText(store.OpenValues(Ref(store, u"Column", 1)).get()); });
  return error == "no error" ? result : error;
}

std::vector<ComponentCase> ComponentCases() {
  const std::string shorts("\1\0\2\0\3\0\4\0", 8);
  return {
      {"Plain", shorts, "DT_SHORT", "<datatype>dt_short</datatype><length>4</length>", "1 2 3 4"},
      {"UpperCase", shorts, "DT_SHORT", "<datatype>DT_SHORT</datatype><length>4</length>",
       "1 2 3 4"},
      {"ValueOffset", shorts, "DT_SHORT",
       "<datatype>dt_short</datatype><length>2</length><blocksize>4</blocksize>"
       "<valoffsets>2</valoffsets>",
       "2 4"},
      {"ScaleIsValuesPerBlock", "xx"s + shorts, "DT_SHORT",
       "<datatype>dt_short</datatype><length>3</length><inioffset>2</inioffset>"
       "<blocksize>6</blocksize><valperblock>1</valperblock><valscale>2</valscale>",
       "1 2 4"},
      {"Empty", "", "DT_SHORT", "<datatype>dt_short</datatype><length>0</length>", ""},
      {"Truncated", shorts, "DT_SHORT", "<datatype>dt_short</datatype><length>174</length>",
       "1 2 3 4"},
      {"TruncatedBlocks", shorts, "DT_SHORT",
       "<datatype>dt_short</datatype><length>9</length><blocksize>5</blocksize>"
       "<valperblock>2</valperblock>",
       "1 2 1024"},
      {"ClaimsMillions", shorts, "DT_SHORT",
       "<datatype>dt_short</datatype><length>9223372036854775807</length>"
       "<blocksize>9223372036854775807</blocksize><valperblock>2</valperblock>",
       "1 2"},
      {"ClaimsMillionsOfBits", "\x80", "DT_BOOLEAN",
       "<datatype>dt_boolean</datatype><length>9223372036854775807</length>", "1 0 0 0 0 0 0 0"},
      {"ClaimsMillionsOfBytes", "\1\0\0\0x\xFF\xFF\xFF\x7F"s.substr(0, 9), "DT_BYTESTR",
       "<datatype>dt_bytestr</datatype><length>9223372036854775807</length>", "x78"},
      {"BehindTheEnd", shorts, "DT_SHORT",
       "<datatype>dt_short</datatype><length>1</length><inioffset>8</inioffset>",
       "-1301 data.bin: values of column 'col': the file is too short"},
      {"OffsetOverflow", shorts, "DT_SHORT",
       "<datatype>dt_short</datatype><length>1</length><inioffset>9223372036854775807</inioffset>"
       "<valoffsets>9223372036854775807</valoffsets>",
       "-1301 data.bin: values of column 'col': the file is too short"},
      {"BlocksOverlap", shorts, "DT_SHORT",
       "<datatype>dt_short</datatype><length>4</length><blocksize>3</blocksize>"
       "<valperblock>2</valperblock>",
       "-1301 data.bin: values of column 'col': blocks smaller than the values in them"},
      {"UnknownTypespec", shorts, "DT_SHORT", "<datatype>dt_odd</datatype><length>1</length>",
       "-1301 data.bin: values of column 'col': unknown storage type"},
      {"NoBits", shorts, "DT_LONG", "<datatype>dt_bit_int</datatype><length>1</length>",
       "-1301 data.bin: values of column 'col': a number of bits that can't be"},
      {"BitFloat", "\0\0\x80\x3F"s, "DT_FLOAT",
       "<datatype>dt_bit_ieeefloat</datatype><length>1</length><bitcount>32</bitcount>", "1"},
      {"WholeWord", "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\1", "DT_LONGLONG",
       "<datatype>dt_bit_int</datatype><length>1</length><bitcount>64</bitcount>"
       "<bitoffset>1</bitoffset>",
       "-1"},
      {"BooleansInBlocks", "\x80\0\x80"s, "DT_BOOLEAN",
       "<datatype>dt_boolean</datatype><length>3</length><blocksize>1</blocksize>"
       "<valperblock>1</valperblock>",
       "1 0 0"},
      {"UnendedText", "a\0b"s, "DT_STRING", "<datatype>dt_string</datatype><length>3</length>",
       "'a' 'b'"},
      {"BadUtf8", "\xFFz\0"s, "DT_STRING", "<datatype>dt_string_utf8</datatype><length>3</length>",
       "'\uFFFDz'"},
      {"LengthsOfTheOtherOrder", "\0\0\0\1x"s, "DT_BYTESTR",
       "<datatype>dt_bytestr_leo</datatype><length>5</length>", "x78"},
  };
}

class AtfxComponent : public testing::TestWithParam<ComponentCase> {};

TEST_P(AtfxComponent, GivesWhatTheFileHolds) {
  const ComponentCase& c = GetParam();
  const TempFolder folder;
  folder.Write("data.bin", c.contents);
  const auto store =
      ReadText(Document(ColumnInstances(ComponentColumn(c.component), c.quantity)), folder.Path());
  EXPECT_EQ(c.values, OpenText(*store));
}

INSTANTIATE_TEST_SUITE_P(Layouts, AtfxComponent, testing::ValuesIn(ComponentCases()),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(AtfxComponents, AreShownAsValuesOfTheColumnItself) {
  constexpr std::pair<const char*, const char*> kShown[] = {
      {"explicit", "0"},
      {"external_component", "0"},
      {"raw_linear_external", "4"},
      {"raw_polynomial_external", "5"},
      {"raw_linear_calibrated_external", "10"},
      {"raw_rational_external", "12"},
      {"raw_linear", "4"},
  };
  for (const auto& [name, shown] : kShown) {
    const auto store = ReadText(Document(ColumnInstances(
        "<Values><component><identifier>a</identifier></component></Values><Representation>" +
        std::string(name) + "</Representation>")));
    EXPECT_EQ(shown, AttributeText(*store, Ref(*store, u"Column", 1), u"Representation")) << name;
  }
  // Without any values there is nothing to show.
  const auto bare =
      ReadText(Document(ColumnInstances("<Representation>external_component</Representation>")));
  EXPECT_EQ("7", AttributeText(*bare, Ref(*bare, u"Column", 1), u"Representation"));
}

TEST(AtfxComponents, RawTypeDecidesForRawColumns) {
  const TempFolder folder;
  folder.Write("data.bin", std::string("\0\0\x80\x3F\0\0\0\x40", 8));
  const auto store = ReadText(
      Document(ColumnInstances(
          "<Representation>raw_linear_external</Representation><RawType>DT_COMPLEX</RawType>"
          "<Values><component><identifier>data.bin</identifier><datatype>ieeefloat4</datatype>"
          "<length>2</length></component></Values>")),
      folder.Path());
  EXPECT_EQ("1/2", OpenText(*store));
}

TEST(AtfxComponents, FileNamesComeFromTheFileSectionAndFromAnySystem) {
  const TempFolder folder;
  std::filesystem::create_directory(folder.Path() / "sub");
  folder.Write("sub/data.bin", "\5");
  const std::string columns =
      ColumnInstances(ComponentColumn("<datatype>dt_byte</datatype><length>1</length>", "key"));
  for (const std::string& name :
       {"sub/data.bin"s, "sub\\data.bin"s, ".\\sub\\data.bin"s, "file://sub/data.bin"s,
        (folder.Path() / "sub/data.bin").string()}) {
    const std::string files =
        "<component><identifier>key</identifier><filename>" + name + "</filename></component>";
    const auto store = ReadText(Document(columns, files), folder.Path());
    EXPECT_EQ("5", OpenText(*store)) << name;
  }
}

TEST(AtfxComponents, MissingFilesAreTroubleOnlyWhenAskedFor) {
  const TempFolder folder;
  const auto store = ReadText(
      Document(ColumnInstances(ComponentColumn("<datatype>dt_byte</datatype><length>4</length>"))),
      folder.Path());
  EXPECT_EQ("", WarningsText(*store));
  const std::string path = (folder.Path() / "data.bin").string();
  EXPECT_EQ("-1301 " + path + ": No such file or directory", OpenText(*store));
  std::filesystem::create_directory(path);
  EXPECT_EQ("-1301 " + path + ": not a regular file", OpenText(*store));
}

TEST(AtfxComponents, GaplessNativeValuesAreGivenAsTheyLie) {
  const TempFolder folder;
  folder.Write("data.bin", std::string("\1\0\2\0\3\0", 6));
  const auto contiguous = [&](std::string_view component) {
    const auto store =
        ReadText(Document(ColumnInstances(ComponentColumn(component))), folder.Path());
    return store->OpenValues(Ref(*store, u"Column", 1))->Contiguous().size();
  };
  EXPECT_EQ(6u, contiguous("<datatype>dt_short</datatype><length>3</length>"));
  EXPECT_EQ(4u, contiguous("<datatype>dt_short</datatype><length>2</length>"
                           "<inioffset>2</inioffset><blocksize>2</blocksize>"));
  EXPECT_EQ(0u, contiguous("<datatype>dt_short</datatype><length>2</length>"
                           "<blocksize>3</blocksize>"));
  EXPECT_EQ(0u, contiguous("<datatype>dt_short_beo</datatype><length>3</length>"));
  EXPECT_EQ(0u, contiguous("<datatype>dt_ushort</datatype><length>3</length>"));
  EXPECT_EQ(6u, contiguous("<datatype>dt_byte</datatype><length>6</length>"));
}

TEST(AtfxComponents, FlagsMayLieBetweenTheValues) {
  const TempFolder folder;
  folder.Write("data.bin", std::string("\1\x0F\0\2\0\0\3\x0F\0", 9));
  const auto component = [](std::string_view type, int at) {
    return "<component><identifier>data.bin</identifier><datatype>" + std::string(type) +
           "</datatype><length>3</length><blocksize>3</blocksize><valoffsets>" +
           std::to_string(at) + "</valoffsets></component>";
  };
  const auto store =
      ReadText(Document(ColumnInstances("<Values>" + component("dt_byte", 0) + "</Values><Flags>" +
                                        component("dt_short", 1) + "</Flags>")),
               folder.Path());
  EXPECT_EQ("1 2 3", OpenText(*store));
  EXPECT_EQ("15 0 15", ValuesText(store->OpenFlags(Ref(*store, u"Column", 1)).get()));
}

std::string Extern(int id, int ordinal, std::string_view more) {
  return "<Extern><Id>" + std::to_string(id) + "</Id><Ordinal>" + std::to_string(ordinal) +
         "</Ordinal>" + std::string(more) + "</Extern>\n";
}

TEST(AtfxExternalComponents, OfOneColumnAreJoinedByTheirNumbers) {
  const TempFolder folder;
  folder.Write("a.bin", std::string("\1\0\2\0", 4));
  folder.Write("b.bin", std::string("\0\3\0\4\0\5", 6));
  folder.Write("flags.bin", std::string("\x0F\0\0\0\0\0\0\0\x0F\0", 10));
  folder.Write("flags_beo.bin", std::string("\0\1\0\2\0\3", 6));
  const std::string instances =
      Extern(7, 2,
             "<ValuesFile>3</ValuesFile><Type>dt_short_beo</Type><Length>3</Length>"
             "<Column>1</Column><FlagsFile>flags_beo.bin</FlagsFile>") +
      Extern(9, 1,
             "<File>a.bin</File><Type>2</Type><Length>2</Length><FlagsFile>flags.bin</FlagsFile>"
             "<FlagsOffset>0</FlagsOffset>") +
      ColumnInstances("<Representation>external_component</Representation><Externs>9 7</Externs>",
                      "DT_SHORT", 5) +
      "<File><Id>3</Id><Location>b.bin</Location></File>";
  const auto store = ReadText(Document(instances), folder.Path());
  EXPECT_EQ("", WarningsText(*store));
  EXPECT_EQ("1 2 3 4 5", OpenText(*store));
  EXPECT_EQ("15 0 1 2 3", ValuesText(store->OpenFlags(Ref(*store, u"Column", 1)).get()));
  EXPECT_EQ("0", AttributeText(*store, Ref(*store, u"Column", 1), u"Representation"));
  // They describe storage and are no records.
  EXPECT_EQ(0u, store->CountOf(store->GetModel()->Find(u"Extern")->id));
  // A range across the border of the components.
  std::int64_t middle[3] = {};
  store->OpenValues(Ref(*store, u"Column", 1))->ReadIntegers(1, middle);
  EXPECT_EQ(2, middle[0]);
  EXPECT_EQ(4, middle[2]);
}

TEST(AtfxExternalComponents, MayBeNamedByTheirFiles) {
  const TempFolder folder;
  folder.Write("v.bin", std::string("\1\0", 2));
  folder.Write("f.bin", std::string("\7\0", 2));
  const auto store =
      ReadText(Document("<File><Id>1</Id><Location>v.bin</Location><ValuesOf>4</ValuesOf></File>"
                        "<File><Id>2</Id><Location>f.bin</Location><FlagsOf>4</FlagsOf></File>" +
                        Extern(4, 1, "<Type>dt_short</Type><Length>1</Length><Column>1</Column>") +
                        ColumnInstances("", "DT_SHORT", 1)),
               folder.Path());
  EXPECT_EQ("1", OpenText(*store));
  EXPECT_EQ("7", ValuesText(store->OpenFlags(Ref(*store, u"Column", 1)).get()));
}

TEST(AtfxExternalComponents, GiveWayToTheColumnsOwnValues) {
  const auto store = ReadText(Document(
      Extern(1, 1, "<File>none</File><Type>dt_short</Type><Length>1</Length><Column>1</Column>") +
      ColumnInstances("<Values><A_INT16>8</A_INT16></Values>", "DT_SHORT", 1)));
  EXPECT_EQ("8", OpenText(*store));
}

TEST(AtfxExternalComponents, FlagsBeyondTheirFileAreRefused) {
  const TempFolder folder;
  folder.Write("a.bin", std::string("\1\0", 2));
  const auto store =
      ReadText(Document(Extern(1, 1,
                               "<File>a.bin</File><Type>dt_short</Type><Length>1</Length>"
                               "<Column>1</Column><FlagsFile>a.bin</FlagsFile>"
                               "<FlagsOffset>300004</FlagsOffset>") +
                        ColumnInstances("", "DT_SHORT", 1)),
               folder.Path());
  EXPECT_EQ("-1301 a.bin: values of column '1': the file is too short",
            Thrown([&] { (void)store->OpenFlags(Ref(*store, u"Column", 1)); }));
}

}  // namespace
}  // namespace hv::vex::engine::test
