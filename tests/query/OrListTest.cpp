// query/OrListTest.cpp - lists of values: cutting, escapes, appending, bullets.
#include "query/values/OrList.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace hv::vex {
namespace {

template <class Values>
std::string Show(const Values& values) {
  std::string text;
  for (const WString& value : values) text += "[" + cor::ToUtf8(value) + "]";
  return text;
}

struct SplitCase {
  std::u16string_view text;
  bool unescape;
  bool trim;
  std::string_view values;
};

TEST(OrList, SplitsAtTheKeyword) {
  constexpr SplitCase kCases[] = {
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
  for (const SplitCase& c : kCases) {
    EXPECT_EQ(c.values, Show(SplitValues(c.text, c.unescape, c.trim))) << cor::ToUtf8(c.text);
  }
  EXPECT_EQ("[a][b]", Show(SplitUniqueValues(u"b OR a OR B OR  a", true, true)));
}

struct EscapeCase {
  std::u16string_view plain;
  std::string_view escaped;
};

TEST(OrList, EscapesTheWordInsideValues) {
  constexpr EscapeCase kCases[] = {
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
  for (const EscapeCase& c : kCases) {
    SCOPED_TRACE(cor::ToUtf8(c.plain));
    const WString escaped = EscapeValue(c.plain);
    EXPECT_EQ(c.escaped, cor::ToUtf8(escaped));
    EXPECT_EQ(c.plain, UnescapeValue(escaped).view());
    EXPECT_EQ(1u, SplitValues(escaped, true, false).size());
    EXPECT_EQ(c.plain != cor::FromUtf8(c.escaped).view(), HasOr(c.plain));
    EXPECT_FALSE(HasOr(escaped));
  }
}

struct AppendCase {
  std::u16string_view list;
  std::u16string_view value;
  std::string_view result;
};

TEST(OrList, AppendsEscapedValues) {
  constexpr AppendCase kCases[] = {
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
  for (const AppendCase& c : kCases) {
    EXPECT_EQ(c.result, cor::ToUtf8(AppendValue(c.list, c.value))) << cor::ToUtf8(c.list);
  }
}

struct BulletCase {
  std::u16string_view text;
  std::u16string_view shown;
};

TEST(OrList, ShowsBlanksAtTheEndsOfValues) {
  constexpr BulletCase kCases[] = {
      {u"", u""},
      {u"a OR b", u"a OR b"},
      {u"a OR b ", u"a OR b\u2022"},
      {u"  a b  OR c", u"\u2022\u2022a b\u2022 OR c"},
      {u"   ", u"\u2022\u2022\u2022"},
      {u"a OR  OR b", u"a OR b"},
      {u" OR ", u""},
      {u"a \\OR b ", u"a \\OR b\u2022"},
  };
  for (const BulletCase& c : kCases) {
    SCOPED_TRACE(cor::ToUtf8(c.text));
    bool changed = c.text == c.shown;
    EXPECT_EQ(c.shown, ShowEndBlanks(c.text, &changed).view());
    EXPECT_EQ(c.text != c.shown, changed);
  }
  EXPECT_EQ("  a OR b ", cor::ToUtf8(HideEndBlanks(u"\u2022\u2022a OR b\u2022")));
}

}  // namespace
}  // namespace hv::vex
