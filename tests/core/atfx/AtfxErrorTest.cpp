// tests/core/atfx/AtfxErrorTest.cpp - files that are refused, with the words in which it is done.
#include <gtest/gtest.h>

#include <algorithm>

#include "AtfxFixtures.h"

namespace hv::vex::engine::test {
namespace {

std::string ErrorOf(std::string_view document) {
  return Thrown([&] { ReadText(document); });
}

std::string Model(std::string_view elements) {
  return "<atfx_file>\n<base_model_version>asam36</base_model_version>\n<application_model>\n" +
         std::string(elements) + "\n</application_model>\n</atfx_file>";
}

TEST(AtfxErrors, SayWhereAndWhy) {
  const std::string element = "<application_element><name>E</name><basetype>AoAny</basetype>";
  const std::string end = "</application_element>";
  const std::pair<std::string, std::string_view> kCases[] = {
      // the beginning of the error
      {"", "1: "},
      {"\x7F"
       "ELF",
       "1: "},
      {"<html><body/></html>", "1: not an ATFX file: the root element is 'html'"},
      {"<atfx_file>\n<a></b></atfx_file>", "2: "},
      {"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<atfx_file>\n\xC4\xD6</atfx_file>", ""},
      {"<?xml version=\"1.0\" encoding=\"KLINGON\"?>\n<atfx_file/>", "1: "},
      {"<!DOCTYPE a [<!ENTITY e '&f;'><!ENTITY f '&e;'>]>\n<atfx_file>&e;</atfx_file>", ""},
      {"<!DOCTYPE a [<!ENTITY e SYSTEM 'file:///etc/passwd'>]>\n<atfx_file>&e;</atfx_file>", ""},
      {"<atfx_file>\n<instance_data/></atfx_file>", "2: the application model is missing"},
      {"<atfx_file>\n</atfx_file>", "2: the application model is missing"},
      {"<atfx_file><application_model/>\n<instance_data/>\n<application_model/></atfx_file>",
       "3: the application model stands behind the instance data"},
      {Model(element +
             "\n<relation_attribute><name>r</name><ref_to>F</ref_to>"
             "</relation_attribute>" +
             end),
       "5: relation 'r' of 'E' leads to an unknown application element 'F'"},
      {Model(element +
             "\n<application_attribute><name>a</name><datatype>DT_ODD</datatype>"
             "</application_attribute>" +
             end),
       "5: unknown data type 'DT_ODD'"},
      {Model("<application_element><name>E</name><basetype>AoOdd</basetype>" + end), "6: "},
      {Model(element + end + "\n" + element + end),
       "5: application element 'E' stands there twice"},
      {Model("<application_element>" + end), "4: application element without a name"},
      {Model("<application_enumeration><name>N</name><item><value>two</value></item>"
             "</application_enumeration>"),
       "4: 'two' in 'value' is not an integer"},
  };
  for (const auto& [document, error] : kCases) {
    const std::string found = ErrorOf(document);
    EXPECT_TRUE(found.starts_with("-1301 x.atfx:" + std::string(error)))
        << document << "\n"
        << found << "\nwanted " << error;
  }
}

TEST(AtfxErrors, SayWhichInstanceIsWrong) {
  const std::pair<std::string, std::string_view> kCases[] = {
      {"<Test><Id>1</Id></Test><Test><Id>1</Id></Test>", "two instances of Test with the id 1"},
      {"<Test><Name>a</Name></Test>", "an instance of Test without an id"},
      {"<Test><Id>one</Id></Test>", "'one' in 'Id' of Test is not a value of DT_LONGLONG"},
      {"<Matrix><Id>1</Id><Rows>1.5</Rows></Matrix>",
       "'1.5' in 'Rows' of Matrix is not a value of DT_LONGLONG"},
      {"<Column><Id>1</Id><GlobalFlag>32768</GlobalFlag></Column>",
       "'32768' in 'GlobalFlag' of Column is not a value of DT_SHORT"},
      {"<Test><Id>1</Id><Measurements>1 b</Measurements></Test>",
       "'b' in 'Measurements' of Test is not a value of DT_LONGLONG"},
      {ColumnInstances(Inline("A_INT32", "1 2 x3 4")),
       "'x3' in 'Values' of Column is not a value of DT_LONG"},
      {ColumnInstances(Inline("A_INT16", "40000")),
       "'40000' in 'Values' of Column is not a value of DT_SHORT"},
      {ColumnInstances(Inline("A_FLOAT64", "1,5")),
       "'1,5' in 'Values' of Column is not a value of DT_DOUBLE"},
      {ColumnInstances(Inline("A_FLOAT32", "1e39")),
       "'1e39' in 'Values' of Column is not a value of DT_FLOAT"},
      {ColumnInstances(Inline("A_COMPLEX32", "1 2 3")),
       "'Values' of Column holds a complex number with only one part"},
      {ColumnInstances(Inline("A_BYTEFIELD", Tags("length=1 sequence=256"))),
       "'256' in 'Values' of Column is not a value of DT_BYTESTR"},
      {ColumnInstances(Component("length=-1")),
       "'-1' in 'length' of a component is not a count of something"},
      {"<Test><Id>1</Id><instance_attributes><inst_attr_int32 name=\"a\">x"
       "</inst_attr_int32></instance_attributes></Test>",
       "'x' in instance attribute 'a' is not a value of DT_LONG"},
  };
  const std::string empty = Document("");
  const auto line = 1 + std::count(empty.begin(), empty.end() - 1, '\n');
  for (const auto& [instances, error] : kCases) {
    EXPECT_EQ("-1301 x.atfx:" + std::to_string(line + 1) + ": " + std::string(error),
              ErrorOf(Document("\n" + instances)));
  }
}

TEST(AtfxErrors, DocumentsCutAnywhereAreRefused) {
  const std::string good = Document(ColumnInstances(Inline("A_INT16", "1 2")));
  const std::size_t last = good.rfind("</atfx_file>");
  for (std::size_t length = 0; length < last; length += 97) {
    EXPECT_TRUE(ErrorOf(good.substr(0, length)).starts_with("-1301 x.atfx:")) << length;
  }
}

TEST(AtfxErrors, FilesThatCannotBeReadAreToldFromBadOnes) {
  const TempFolder folder;
  const std::pair<std::filesystem::path, const char*> kCases[] = {
      {folder.File("no.atfx"), ": No such file or directory"},
      {folder.Path(), ": not a regular file"},
      {folder.Write("bad.atfx", "<a/>"), ":1: not an ATFX file: the root element is 'a'"},
      {folder.Write("db.atfx", "SQLite format 3\t"), ": the file is a database of SQLite"},
  };
  for (const auto& [path, reason] : kCases) {
    EXPECT_EQ("-1301 " + path.string() + reason, Thrown([&] { atfx::ReadAtfxFile(path, {}); }));
  }
}

}  // namespace
}  // namespace hv::vex::engine::test
