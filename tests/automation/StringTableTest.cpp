// automation/StringTableTest.cpp - the string table: the embedded English texts and bad files.
#include "automation/StringTable.h"

#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <storefabric/WString.h>

namespace hv::automation {
namespace {

TEST(StringTable, EnglishTextsKeepTheirExactForm) {
  const struct {
    std::int32_t number;
    const char* text;
  } kCases[] = {
      {207, "The application is out of memory."},
      {210,
       "The DirectAccessChannel has already been added to a ChannelGroup.  Its name can now "
       "no longer be changed."},
      {212, "The text %1s is not a valid value for the argument %2s of the method %3s."},
      {325,
       "The data store %s does not support queries with a custom logical operation (e.g. "
       "with \"OR\")."},
      {341, "For at least one instance it was impossible to generate an element<DataStore>."},
      {373, "Do not change the browse settings for this data store."},
      {2006, " Option %1d of %2d "},
      {2067, " No entity selected "},
      {2128, "Technical Browse Settings (*.tbs)|*.tbs|Step Files (*.stp)|*.stp||"},
      {5000, "eng"},
      {10318, "%d Values "},
      {10366, "\"%s\" is not a valid condition name."},
      {12014, "Property \"%1s\" for level \"%2s\" is already selected."},
      {41005, "Timeout"},
  };
  for (const auto& c : kCases) EXPECT_EQ(c.text, cor::ToUtf8(LoadString(c.number))) << c.number;
}

TEST(StringTable, FindsEveryNumberOfABuiltInLanguageAndNoOther) {
  const StringTable& table = StringTable::Default();
  EXPECT_EQ(&table, StringTable::ForLanguage("en"));
  EXPECT_EQ(nullptr, StringTable::ForLanguage("xx"));
  ASSERT_GT(table.Entries().size(), 200U);
  for (const StringTable::Entry& entry : table.Entries())
    EXPECT_EQ(&entry.text, table.Find(entry.number)) << entry.number;
  for (const std::int32_t number : {-1, 0, 206, 208'000, 1'000'000}) {
    EXPECT_FALSE(TryLoadString(number).has_value()) << number;
    EXPECT_TRUE(LoadString(number).empty()) << number;
  }
}

TEST(StringTable, ReadsEscapesCommentsAndUtf8) {
  const auto table = StringTable::Parse(
      "# comment\n\n7\ta\\n\\r\\t\\\\z\n8\tGr\xC3\xB6\xC3\x9F"
      "e \xF0\x9F\x98\x80 100%%\n");
  ASSERT_TRUE(table.has_value());
  EXPECT_EQ(2U, table->Entries().size());
  EXPECT_TRUE(table->LoadString(7).EqualsExact(u"a\n\r\t\\z"));
  EXPECT_TRUE(table->LoadString(8).EqualsExact(u"Gr\u00f6\u00dfe \U0001F600 100%%"));
}

TEST(StringTable, BadFilesAreRefusedWithLineAndReason) {
  using enum StringTableFault;
  using namespace std::string_view_literals;
  const struct {
    StringTableFault fault;
    std::size_t line;
    std::vector<std::string_view> files;
  } kCases[] = {
      {NoFinalNewline, 2, {"1\ta\n2\tb"}},
      {ControlCharacter, 1, {"1\ta\r\n", "1\ta\0b\n"sv, "1\ta\tb\n"}},
      {NoNumber, 2, {"# x\ntext\n"}},
      {NoNumber, 1, {"-1\ta\n"}},
      {BadNumber, 1, {"01\ta\n", "99999999999999999999\ta\n"}},
      {NotAscending, 2, {"5\ta\n5\tb\n"}},
      {NotAscending, 3, {"5\ta\n\n4\tb\n"}},
      {NoTab, 1, {"5 a\n", "5\n"}},
      {EmptyText, 1, {"5\t\n"}},
      {BadEscape, 1, {"5\ta\\q\n", "5\ta\\\n"}},
      {BadPlaceholder, 1, {"5\t100%\n", "5\t%1\n", "5\t%12s\n", "5\t%x\n"}},
      {MixedPlaceholders, 1, {"5\t%1s %s\n", "5\t%1s%%\n"}},
      {PlaceholderGap, 1, {"5\t%1s %3s\n", "5\t%1s %1s\n"}},
      {PlaceholderTypes, 1, {"5\t%3s %1d %2s\n"}},
      {TooManyPlaceholders, 1, {"5\t%1s%2s%3s%4s%5s%6s%7s%8s%9s%1s\n"}},
      // A lone continuation, a cut sequence, an overlong one, a surrogate, beyond Unicode.
      {BadUtf8,
       1,
       {"5\t\x80\n", "5\t\xC3\n", "5\t\xC0\xAF\n", "5\t\xED\xA0\x80\n", "5\t\xF4\x90\x80\x80\n"}},
  };
  for (const auto& c : kCases) {
    for (const std::string_view file : c.files) {
      SCOPED_TRACE(file);
      StringTableCheck check;
      EXPECT_FALSE(StringTable::Parse(file, &check).has_value());
      EXPECT_EQ(c.fault, check.fault);
      EXPECT_EQ(c.line, check.line);
    }
  }
}

}  // namespace
}  // namespace hv::automation
