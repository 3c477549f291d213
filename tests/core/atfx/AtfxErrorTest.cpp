// tests/core/atfx/AtfxErrorTest.cpp - files that are refused, with the words in which it is done.
#include <gtest/gtest.h>

#include "AtfxFixtures.h"
#include "core/plugins/atfx/AtfxReader.h"
#include "core/plugins/atfx/AtfxWriter.h"

namespace hv::vex::engine::test {
namespace {

struct RefusedCase {
  const char* name;
  std::string document;
  std::string_view error;  // the beginning of it
};

std::string Model(std::string_view elements) {
  return "<atfx_file>\n<base_model_version>asam36</base_model_version>\n<application_model>\n" +
         std::string(elements) + "\n</application_model>\n</atfx_file>";
}

std::vector<RefusedCase> RefusedCases() {
  const std::string good = Document("<Test><Id>1</Id></Test>\n");
  const auto line = [&](int behind) {
    const auto lines =
        std::count(good.begin(),
                   good.begin() + static_cast<std::ptrdiff_t>(good.find("<instance_data>")), '\n');
    return "-1301 x.atfx:" + std::to_string(lines + 1 + behind) + ": ";
  };
  const std::string second = line(1);  // the first line of the instances
  static std::vector<std::string> kept;
  kept.reserve(64);
  const auto at = [](const std::string& place, std::string_view reason) -> std::string_view {
    return kept.emplace_back(place + std::string(reason));
  };
  return {
      {"Empty", "", "-1301 x.atfx:1: "},
      {"NoXml",
       "\x7F"
       "ELF",
       "-1301 x.atfx:1: "},
      {"OtherRoot", "<html><body/></html>",
       "-1301 x.atfx:1: not an ATFX file: the root element is 'html'"},
      {"CutOff", good.substr(0, good.size() / 2), "-1301 x.atfx:"},
      {"Malformed", "<atfx_file>\n<a></b></atfx_file>", "-1301 x.atfx:2: "},
      {"WrongEncoding",
       "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<atfx_file>\n\xC4\xD6</atfx_file>",
       "-1301 x.atfx:"},
      {"UnknownEncoding", "<?xml version=\"1.0\" encoding=\"KLINGON\"?>\n<atfx_file/>",
       "-1301 x.atfx:1: "},
      {"EntityRecursion",
       "<!DOCTYPE a [<!ENTITY e '&f;'><!ENTITY f '&e;'>]>\n<atfx_file>&e;</atfx_file>",
       "-1301 x.atfx:"},
      {"ExternalEntity",
       "<!DOCTYPE a [<!ENTITY e SYSTEM 'file:///etc/passwd'>]>\n<atfx_file>&e;</atfx_file>",
       "-1301 x.atfx:"},
      {"NoModel", "<atfx_file>\n<instance_data/></atfx_file>",
       "-1301 x.atfx:2: the application model is missing"},
      {"NothingAtAll", "<atfx_file>\n</atfx_file>",
       "-1301 x.atfx:2: the application model is missing"},
      {"ModelBehindInstances",
       "<atfx_file><application_model/>\n<instance_data/>\n<application_model/></atfx_file>",
       "-1301 x.atfx:3: the application model stands behind the instance data"},
      {"UnknownTarget",
       Model("<application_element><name>E</name><basetype>AoAny</basetype>\n<relation_attribute>"
             "<name>r</name><ref_to>F</ref_to></relation_attribute></application_element>"),
       "-1301 x.atfx:5: relation 'r' of 'E' leads to an unknown application element 'F'"},
      {"UnknownType",
       Model("<application_element><name>E</name><basetype>AoAny</basetype>\n"
             "<application_attribute><name>a</name><datatype>DT_ODD</datatype>"
             "</application_attribute></application_element>"),
       "-1301 x.atfx:5: unknown data type 'DT_ODD'"},
      {"UnknownBase",
       Model("<application_element><name>E</name><basetype>AoOdd</basetype>"
             "</application_element>"),
       "-1301 x.atfx:6: "},
      {"TwoElements",
       Model("<application_element><name>E</name><basetype>AoAny</basetype></application_element>"
             "\n<application_element><name>E</name><basetype>AoAny</basetype>"
             "</application_element>"),
       "-1301 x.atfx:5: application element 'E' stands there twice"},
      {"NamelessElement", Model("<application_element></application_element>"),
       "-1301 x.atfx:4: application element without a name"},
      {"BadItem",
       Model("<application_enumeration><name>N</name><item><value>two</value></item>"
             "</application_enumeration>"),
       "-1301 x.atfx:4: 'two' in 'value' is not an integer"},
      {"DuplicateId", Document("<Test><Id>1</Id></Test>\n<Test><Id>1</Id></Test>"),
       at(line(2), "two instances of Test with the id 1")},
      {"NoId", Document("<Test><Name>a</Name></Test>"),
       at(second, "an instance of Test without an id")},
      {"BadId", Document("<Test><Id>one</Id></Test>"),
       at(second, "'one' in 'Id' of Test is not a value of DT_LONGLONG")},
      {"BadInteger", Document("<Matrix><Id>1</Id><Rows>1.5</Rows></Matrix>"),
       at(second, "'1.5' in 'Rows' of Matrix is not a value of DT_LONGLONG")},
      {"TooLarge", Document("<Column><Id>1</Id><GlobalFlag>32768</GlobalFlag></Column>"),
       at(second, "'32768' in 'GlobalFlag' of Column is not a value of DT_SHORT")},
      {"BadLink", Document("<Test><Id>1</Id><Measurements>1 b</Measurements></Test>"),
       at(second, "'b' in 'Measurements' of Test is not a value of DT_LONGLONG")},
      {"BadList", Document(ColumnInstances("<Values><A_INT32>1 2 x3 4</A_INT32></Values>")),
       at(second, "'x3' in 'Values' of Column is not a value of DT_LONG")},
      {"ListOutOfRange", Document(ColumnInstances("<Values><A_INT16>40000</A_INT16></Values>")),
       at(second, "'40000' in 'Values' of Column is not a value of DT_SHORT")},
      {"BadReal", Document(ColumnInstances("<Values><A_FLOAT64>1,5</A_FLOAT64></Values>")),
       at(second, "'1,5' in 'Values' of Column is not a value of DT_DOUBLE")},
      {"TooLargeReal", Document(ColumnInstances("<Values><A_FLOAT32>1e39</A_FLOAT32></Values>")),
       at(second, "'1e39' in 'Values' of Column is not a value of DT_FLOAT")},
      {"HalfComplex",
       Document(ColumnInstances("<Values><A_COMPLEX32>1 2 3</A_COMPLEX32></Values>")),
       at(second, "'Values' of Column holds a complex number with only one part")},
      {"BadByte",
       Document(ColumnInstances("<Values><A_BYTEFIELD><length>1</length><sequence>256</sequence></"
                                "A_BYTEFIELD></Values>")),
       at(second, "'256' in 'Values' of Column is not a value of DT_BYTESTR")},
      {"NegativeLength",
       Document(ColumnInstances("<Values><component><length>-1</length></component></Values>")),
       at(second, "'-1' in 'length' of a component is not a count of something")},
      {"BadInstanceAttribute",
       Document("<Test><Id>1</Id><instance_attributes><inst_attr_int32 name=\"a\">x"
                "</inst_attr_int32></instance_attributes></Test>"),
       at(second, "'x' in instance attribute 'a' is not a value of DT_LONG")},
  };
}

class AtfxRefused : public testing::TestWithParam<RefusedCase> {};

TEST_P(AtfxRefused, SaysWhereAndWhy) {
  const std::string error = ErrorOf(GetParam().document);
  EXPECT_TRUE(error.starts_with(GetParam().error)) << error << "\nwanted " << GetParam().error;
}

INSTANTIATE_TEST_SUITE_P(Files, AtfxRefused, testing::ValuesIn(RefusedCases()),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(AtfxErrors, DocumentsCutAnywhereAreRefused) {
  const std::string good = Document(ColumnInstances("<Values><A_INT16>1 2</A_INT16></Values>"));
  const std::size_t last = good.rfind("</atfx_file>");
  for (std::size_t length = 0; length < last; length += 97) {
    EXPECT_TRUE(ErrorOf(good.substr(0, length)).starts_with("-1301 x.atfx:")) << length;
  }
}

TEST(AtfxErrors, FilesThatCannotBeReadAreToldFromBadOnes) {
  const TempFolder folder;
  const auto error = [](const std::filesystem::path& path) {
    return Thrown([&] { atfx::ReadAtfxFile(path, {}); });
  };
  const std::string missing = (folder.Path() / "no.atfx").string();
  EXPECT_EQ("-1301 " + missing + ": No such file or directory", error(missing));
  EXPECT_EQ("-1301 " + folder.Path().string() + ": not a regular file", error(folder.Path()));
  const std::string bad = folder.Write("bad.atfx", "<a/>").string();
  EXPECT_EQ("-1301 " + bad + ":1: not an ATFX file: the root element is 'a'", error(bad));
  const std::string database = folder.Write("db.atfx", "SQLite format 3\t").string();
  EXPECT_EQ("-1301 " + database + ": the file is a database of SQLite", error(database));
}

}  // namespace
}  // namespace hv::vex::engine::test
