// query/OrListTest.cpp - lists of values: cutting, escapes, appending, bullets.
#include "query/values/OrList.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace hv::vex {
namespace {

std::string Show(const auto& values) {
  std::string text;
  for (const WString& value : values) text += "[" + cor::ToUtf8(value) + "]";
  return text;
}

TEST(OrList, SplitsAtTheKeyword) {
  constexpr struct {
    std::u16string_view text;
    bool unescape, trim;
    std::string_view values;
  } kCases[] = {
      {u"", true, true, "[]"},
      {u"a", true, true, "[a]"},
      {u"a OR b OR c", true, false, "[a][b][c]"},
      {u"a or b", true, false, "[a or b]"},
      {u"a OR  OR b", true, false, "[a][][b]"},
      {u" OR ", true, false, "[][]"},
      {u"a OR", true, false, "[a OR]"},
      {u" a  OR \tb\n", true, true, "[a][b]"},
      {u" a  OR \tb\n", true, false, "[ a ][\tb\n]"},
      {u"  OR  ", true, true, "[][]"},
      {u"salt \\OR pepper", true, false, "[salt OR pepper]"},
      {u"salt \\OR pepper", false, false, "[salt \\OR pepper]"},
      {u"a \\or b OR c \\oR d", true, false, "[a or b][c oR d]"},
      {u"a OR OR b", true, false, "[a][OR b]"},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(c.values, Show(SplitValues(c.text, c.unescape, c.trim))) << cor::ToUtf8(c.text);
  }
  EXPECT_EQ("[a][b]", Show(SplitUniqueValues(u"b OR a OR B OR  a", true, true)));
}

TEST(OrList, EscapesTheWordInsideValues) {
  constexpr std::pair<std::u16string_view, std::string_view> kCases[] = {
      {u"", ""},
      {u"salt OR pepper", "salt \\OR pepper"},
      {u"a or b Or c oR d", "a \\or b \\Or c \\oR d"},
      {u"a OR OR b", "a \\OR \\OR b"},
      {u" OR ", " \\OR "},
      {u"OR", "OR"},
      {u"a OR", "a OR"},
      {u"a\tOR b", "a\tOR b"},
      {u"FOR ORE", "FOR ORE"},
      {u"a AND b", "a AND b"},
  };
  for (const auto& [plain, shown] : kCases) {
    SCOPED_TRACE(cor::ToUtf8(plain));
    const WString escaped = EscapeValue(plain);
    EXPECT_EQ(shown, cor::ToUtf8(escaped));
    EXPECT_EQ(plain, UnescapeValue(escaped).view());
    EXPECT_EQ(1u, SplitValues(escaped, true, false).size());
    EXPECT_EQ(cor::ToUtf8(plain) != shown, HasOr(plain));
    EXPECT_FALSE(HasOr(escaped));
  }
}

TEST(OrList, AppendsEscapedValues) {
  constexpr struct {
    std::u16string_view list, value;
    std::string_view result;
  } kCases[] = {
      {u"", u"a", "a"},
      {u"", u"a OR b", "a \\OR b"},
      {u"a", u"b", "a OR b"},
      {u"a", u"", "a OR "},
      {u"a OR", u"b", "a OR b"},
      {u"a OR ", u"b", "a OR  b"},
      {u"aOR", u"b", "aOR OR b"},
      {u"a or", u"b", "a or OR b"},
      {u"a OR b", u"salt OR pepper", "a OR b OR salt \\OR pepper"},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(c.result, cor::ToUtf8(AppendValue(c.list, c.value))) << cor::ToUtf8(c.list);
  }
}

TEST(OrList, ShowsBlanksAtTheEndsOfValues) {
  constexpr std::pair<std::u16string_view, std::u16string_view> kCases[] = {
      {u"", u""},
      {u"a OR b", u"a OR b"},
      {u"a OR b ", u"a OR b\u2022"},
      {u"  a b  OR c", u"\u2022\u2022a b\u2022 OR c"},
      {u"   ", u"\u2022\u2022\u2022"},
      {u"a OR  OR b", u"a OR b"},
      {u" OR ", u""},
      {u"a \\OR b ", u"a \\OR b\u2022"},
  };
  for (const auto& [text, shown] : kCases) {
    SCOPED_TRACE(cor::ToUtf8(text));
    bool changed = text == shown;
    EXPECT_EQ(shown, ShowEndBlanks(text, &changed).view());
    EXPECT_EQ(text != shown, changed);
  }
  EXPECT_EQ("  a OR b ", cor::ToUtf8(HideEndBlanks(u"\u2022\u2022a OR b\u2022")));
}

}  // namespace
}  // namespace hv::vex
