// tests/core/atfx/AtfxComponentTest.cpp - values in component files: layouts, types, and bad files.
#include <gtest/gtest.h>

#include "AtfxFixtures.h"
#include "DumpStore.h"

namespace hv::vex::engine::test {
namespace {

using namespace std::string_literals;

TEST(AtfxTypespecs, AreDecodedAsTheirWriterMeant) {
  struct Case {
    RecordId column, last;
    const char *type, *values;
  };
  constexpr Case kCases[] = {
      {1, 1, "DT_BYTE", "0 1 127 128 255"},
      {2, 2, "DT_SHORT", "0 1 -1 127 -128"},
      {3, 4, "DT_SHORT", "10 20 30 -32768 32767"},
      {5, 6, "DT_LONG", "0 1 256 32768 65535"},
      {7, 8, "DT_LONG", "100 200 300 -2147483648 2147483647"},
      {9, 10, "DT_LONGLONG", "0 1 65536 2147483648 4294967295"},
      {11, 12, "DT_LONGLONG", "1 2 3 -9223372036854775808 9223372036854775807"},
      {13, 14, "DT_FLOAT", "1.5 -2.25 0 inf 3.4028235e+38"},
      {15, 16, "DT_DOUBLE", "1.1 -2.2 0 nan 1.7976931348623157e+308"},
      {17, 17, "DT_BOOLEAN", "1 0 1 0 1 1 0 1 1"},
      {18, 18, "DT_STRING", "'alpha' '' '\u00C4 beta'"},
      {19, 19, "DT_STRING", "'alpha' '' '\u4E2D beta'"},
      {20, 20, "DT_DATE", "'20050130121532123789' '2010' '201112' '20120714172414682610988'"},
      {21, 22, "DT_BYTESTR", "x0102 x x0001020304"},
      {23, 23, "DT_COMPLEX", "1.5/0.5 -2.25/-1"},
      {24, 24, "DT_DOUBLE", "0 1 2 10 11 12 20 21 22 30 31 32"},
      {25, 25, "DT_SHORT", "0 1 2 3"},
      {26, 26, "DT_BYTE", "0 1 2 3"},
      {27, 27, "DT_LONG", "16182"},
      {28, 28, "DT_LONG", "12087"},
      {29, 29, "DT_LONG", "-202"},
      {30, 30, "DT_LONG", "-4297"},
      {31, 31, "DT_DOUBLE", "42"},
      {34, 34, "DT_SHORT", "1 2 3 4"},
      {38, 38, "DT_LONG", "7 8 9 10"},
  };
  const auto store = atfx::ReadAtfxFile(HV_TEST_DATA_DIR "/atfx/own_typespecs.atfx", {});
  for (const Case& c : kCases) {
    for (RecordId column = c.column; column <= c.last; ++column) {
      SCOPED_TRACE(column);
      const auto values = store->OpenValues(Ref(*store, u"LocalColumn", column));
      ASSERT_NE(nullptr, values);
      EXPECT_EQ(c.type, cor::ToUtf8(NameOfType(values->Type(), false)));
      EXPECT_EQ(c.values, ValuesText(values.get()));
    }
  }
}

std::string InFile(const std::string& words) { return Component("identifier=data.bin " + words); }

TEST(AtfxComponents, GiveWhatTheFileHolds) {
  struct Case {
    std::string contents;
    const char* quantity;
    const char* component;  // everything but the identifier
    const char* values;     // or the error
  };
  const std::string shorts("\1\0\2\0\3\0\4\0", 8);
  const Case kCases[] = {
      {shorts, "DT_SHORT", "datatype=dt_short length=4", "1 2 3 4"},
      {shorts, "DT_SHORT", "datatype=DT_SHORT length=4", "1 2 3 4"},
      {shorts, "DT_SHORT", "datatype=dt_short length=2 blocksize=4 valoffsets=2", "2 4"},
      // The scale stands for the values per block.
      {"xx" + shorts, "DT_SHORT",
       "datatype=dt_short length=3 inioffset=2 blocksize=6 valperblock=1 valscale=2", "1 2 4"},
      {"", "DT_SHORT", "datatype=dt_short length=0", ""},
      // Claims beyond the end of the file.
      {shorts, "DT_SHORT", "datatype=dt_short length=174", "1 2 3 4"},
      {shorts, "DT_SHORT", "datatype=dt_short length=9 blocksize=5 valperblock=2", "1 2 1024"},
      {shorts, "DT_SHORT",
       "datatype=dt_short length=9223372036854775807 blocksize=9223372036854775807 valperblock=2",
       "1 2"},
      {"\x80", "DT_BOOLEAN", "datatype=dt_boolean length=9223372036854775807", "1 0 0 0 0 0 0 0"},
      {"\1\0\0\0x\xFF\xFF\xFF\x7F"s, "DT_BYTESTR", "datatype=dt_bytestr length=9223372036854775807",
       "x78"},
      {shorts, "DT_SHORT", "datatype=dt_short length=1 inioffset=8",
       "-1301 data.bin: values of column 'col': the file is too short"},
      {shorts, "DT_SHORT",
       "datatype=dt_short length=1 inioffset=9223372036854775807 valoffsets=9223372036854775807",
       "-1301 data.bin: values of column 'col': the file is too short"},
      {shorts, "DT_SHORT", "datatype=dt_short length=4 blocksize=3 valperblock=2",
       "-1301 data.bin: values of column 'col': blocks smaller than the values in them"},
      {shorts, "DT_SHORT", "datatype=dt_odd length=1",
       "-1301 data.bin: values of column 'col': unknown storage type"},
      {shorts, "DT_LONG", "datatype=dt_bit_int length=1",
       "-1301 data.bin: values of column 'col': a number of bits that can't be"},
      {"\0\0\x80\x3F"s, "DT_FLOAT", "datatype=dt_bit_ieeefloat length=1 bitcount=32", "1"},
      {"\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\1", "DT_LONGLONG",
       "datatype=dt_bit_int length=1 bitcount=64 bitoffset=1", "-1"},
      {"\x80\0\x80"s, "DT_BOOLEAN", "datatype=dt_boolean length=3 blocksize=1 valperblock=1",
       "1 0 0"},
      // Texts without an end, and not in UTF-8; lengths of the other byte order.
      {"a\0b"s, "DT_STRING", "datatype=dt_string length=3", "'a' 'b'"},
      {"\xFFz\0"s, "DT_STRING", "datatype=dt_string_utf8 length=3", "'\uFFFDz'"},
      {"\0\0\0\1x"s, "DT_BYTESTR", "datatype=dt_bytestr_leo length=5", "x78"},
  };
  for (const Case& c : kCases) {
    const TempFolder folder;
    folder.Write("data.bin", c.contents);
    EXPECT_EQ(c.values, ColumnText(*ReadColumn(InFile(c.component), c.quantity, 4, folder.Path())))
        << c.component;
  }
}

TEST(AtfxComponents, AreShownAsValuesOfTheColumnItself) {
  const auto shown = [](const std::string& name, const std::string& values) {
    const auto store = ReadColumn(values + Tags("Representation=" + name));
    return AttributeText(*store, Ref(*store, u"Column"), u"Representation");
  };
  constexpr std::pair<const char*, const char*> kCases[] = {
      {"explicit", "0"},
      {"external_component", "0"},
      {"raw_linear_external", "4"},
      {"raw_polynomial_external", "5"},
      {"raw_linear_calibrated_external", "10"},
      {"raw_rational_external", "12"},
      {"raw_linear", "4"}};
  for (const auto& [name, expected] : kCases) EXPECT_EQ(expected, shown(name, InFile(""))) << name;
  EXPECT_EQ("7", shown("external_component", "")) << "there are no values to show";
}

TEST(AtfxComponents, RawTypeDecidesForRawColumns) {
  const TempFolder folder;
  folder.Write("data.bin", std::string("\0\0\x80\x3F\0\0\0\x40", 8));
  const auto store = ReadColumn(Tags("Representation=raw_linear_external RawType=DT_COMPLEX") +
                                    InFile("datatype=ieeefloat4 length=2"),
                                "DT_DOUBLE", 4, folder.Path());
  EXPECT_EQ("1/2", ColumnText(*store));
}

TEST(AtfxComponents, FileNamesComeFromTheFileSectionAndFromAnySystem) {
  const TempFolder folder;
  std::filesystem::create_directory(folder.File("sub"));
  const std::string absolute = folder.Write("sub/data.bin", "\5").string();
  const std::string columns =
      ColumnInstances(Component("identifier=key datatype=dt_byte length=1"));
  for (const std::string& name :
       {"sub/data.bin"s, "sub\\data.bin"s, ".\\sub\\data.bin"s, "file://sub/data.bin"s, absolute}) {
    const std::string files =
        "<component>" + Tags("identifier=key filename=" + name) + "</component>";
    EXPECT_EQ("5", ColumnText(*ReadText(Document(columns, files), folder.Path()))) << name;
  }
}

TEST(AtfxComponents, MissingFilesAreTroubleOnlyWhenAskedFor) {
  const TempFolder folder;
  const auto store = ReadColumn(InFile("datatype=dt_byte length=4"), "DT_DOUBLE", 4, folder.Path());
  EXPECT_EQ("", WarningsText(*store));
  const std::string path = folder.File("data.bin").string();
  EXPECT_EQ("-1301 " + path + ": No such file or directory", ColumnText(*store));
  std::filesystem::create_directory(path);
  EXPECT_EQ("-1301 " + path + ": not a regular file", ColumnText(*store));
}

TEST(AtfxComponents, GaplessNativeValuesAreGivenAsTheyLie) {
  const TempFolder folder;
  folder.Write("data.bin", std::string("\1\0\2\0\3\0", 6));
  constexpr std::pair<const char*, std::size_t> kCases[] = {
      {"datatype=dt_short length=3", 6},
      {"datatype=dt_short length=2 inioffset=2 blocksize=2", 4},
      {"datatype=dt_short length=2 blocksize=3", 0},
      {"datatype=dt_short_beo length=3", 0},
      {"datatype=dt_ushort length=3", 0},
      {"datatype=dt_byte length=6", 6},
  };
  for (const auto& [component, size] : kCases) {
    const auto store = ReadColumn(InFile(component), "DT_DOUBLE", 4, folder.Path());
    EXPECT_EQ(size, store->OpenValues(Ref(*store, u"Column"))->Contiguous().size()) << component;
  }
}

TEST(AtfxComponents, FlagsMayLieBetweenTheValues) {
  const TempFolder folder;
  folder.Write("data.bin", std::string("\1\x0F\0\2\0\0\3\x0F\0", 9));
  const auto store = ReadColumn(
      InFile("datatype=dt_byte length=3 blocksize=3 valoffsets=0") + "<Flags><component>" +
          Tags("identifier=data.bin datatype=dt_short length=3 blocksize=3 valoffsets=1") +
          "</component></Flags>",
      "DT_DOUBLE", 4, folder.Path());
  EXPECT_EQ("1 2 3", ColumnText(*store));
  EXPECT_EQ("15 0 15", FlagsText(*store));
}

std::string Extern(const std::string& words) { return "<Extern>" + Tags(words) + "</Extern>"; }

TEST(AtfxExternalComponents, OfOneColumnAreJoinedByTheirNumbers) {
  const TempFolder folder;
  folder.Write("a.bin", std::string("\1\0\2\0", 4));
  folder.Write("b.bin", std::string("\0\3\0\4\0\5", 6));
  folder.Write("flags.bin", std::string("\x0F\0\0\0\0\0\0\0\x0F\0", 10));
  folder.Write("flags_beo.bin", std::string("\0\1\0\2\0\3", 6));
  const std::string instances =
      Extern(
          "Id=7 Ordinal=2 ValuesFile=3 Type=dt_short_beo Length=3 Column=1 "
          "FlagsFile=flags_beo.bin") +
      Extern("Id=9 Ordinal=1 File=a.bin Type=2 Length=2 FlagsFile=flags.bin FlagsOffset=0") +
      ColumnInstances("<Representation>external_component</Representation><Externs>9 7</Externs>",
                      "DT_SHORT", 5) +
      "<File><Id>3</Id><Location>b.bin</Location></File>";
  const auto store = ReadText(Document(instances), folder.Path());
  EXPECT_EQ("", WarningsText(*store));
  EXPECT_EQ("1 2 3 4 5", ColumnText(*store));
  EXPECT_EQ("15 0 1 2 3", FlagsText(*store));
  EXPECT_EQ("0", AttributeText(*store, Ref(*store, u"Column"), u"Representation"));
  // They describe storage and are no records.
  EXPECT_EQ(0u, store->CountOf(Ref(*store, u"Extern").entity));
  // A range across the border of the components.
  std::vector<std::int64_t> middle(3);
  store->OpenValues(Ref(*store, u"Column"))->ReadIntegers(1, middle);
  EXPECT_EQ((std::vector<std::int64_t>{2, 3, 4}), middle);
}

TEST(AtfxExternalComponents, MayBeNamedByTheirFiles) {
  const TempFolder folder;
  folder.Write("v.bin", std::string("\1\0", 2));
  folder.Write("f.bin", std::string("\7\0", 2));
  const auto store =
      ReadText(Document("<File><Id>1</Id><Location>v.bin</Location><ValuesOf>4</ValuesOf></File>"
                        "<File><Id>2</Id><Location>f.bin</Location><FlagsOf>4</FlagsOf></File>" +
                        Extern("Id=4 Ordinal=1 Type=dt_short Length=1 Column=1") +
                        ColumnInstances("", "DT_SHORT", 1)),
               folder.Path());
  EXPECT_EQ("1", ColumnText(*store));
  EXPECT_EQ("7", FlagsText(*store));
}

TEST(AtfxExternalComponents, GiveWayToTheColumnsOwnValues) {
  const auto store =
      ReadText(Document(Extern("Id=1 Ordinal=1 File=none Type=dt_short Length=1 Column=1") +
                        ColumnInstances(Inline("A_INT16", "8"), "DT_SHORT", 1)));
  EXPECT_EQ("8", ColumnText(*store));
}

TEST(AtfxExternalComponents, FlagsBeyondTheirFileAreRefused) {
  const TempFolder folder;
  folder.Write("a.bin", std::string("\1\0", 2));
  const auto store =
      ReadText(Document(Extern("Id=1 Ordinal=1 File=a.bin Type=dt_short Length=1 Column=1 "
                               "FlagsFile=a.bin FlagsOffset=300004") +
                        ColumnInstances("", "DT_SHORT", 1)),
               folder.Path());
  EXPECT_EQ("-1301 a.bin: values of column '1': the file is too short", FlagsText(*store));
}

}  // namespace
}  // namespace hv::vex::engine::test
