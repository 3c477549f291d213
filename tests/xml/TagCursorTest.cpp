// xml/TagCursorTest.cpp - the lenient readers of parameter texts, and the writers beside them.
#include "xml/TagCursor.h"

#include "xml/ConnectParams.h"
#include "xml/StringTokenizer.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace hv::xml {
namespace {

std::string Show(const AttributeList& attributes) {
  std::string text;
  for (const auto& [name, value] : attributes) {
    text += "[" + cor::ToUtf8(name) + "=" + cor::ToUtf8(value) + "]";
  }
  return text;
}

/// All tags of the walk as "name:content;".
std::string Walk(std::u16string_view text, bool trim) {
  std::string shown;
  TagCursor cursor(text, false, trim);
  while (cursor.NextTag()) {
    shown += cor::ToUtf8(cursor.GetTagName()) + ":" + cor::ToUtf8(cursor.GetTagContent()) + ";";
  }
  return shown;
}

struct WalkCase {
  std::u16string_view text;
  bool trim;
  std::string_view tags;
};

TEST(TagCursor, WalksOverSiblings) {
  constexpr WalkCase kCases[] = {
      {u"<a>x</a><b>y</b>", true, "a:x;b:y;"},
      {u"  <a>x</a>, <b>y</b> rest", true, "a:x;b:y;"},
      {u"<a>  x  </a>", true, "a:x;"},
      {u"<a>  x  </a>", false, "a:  x  ;"},
      {u"<a>\t \nx\n </a>", true, "a:\nx\n;"},
      {u"<a></a>", true, "a:;"},
      {u"<a>  </a><b> </b>", true, "a:;b:;"},
      {u"<a>  </a>", false, "a:  ;"},
      {u"<a><b>y</b></a><c>z</c>", true, "a:<b>y</b>;c:z;"},
      {u"<a>1<a>2</a>3</a>", true, "a:1<a>2;"},  // the first end tag closes; its rest breaks off
      {u"<a>x</a><b/><c>z</c>", true, "a:x;"},
      {u"<a x='>'>y</a>", true, "a:'>y;"},  // quotes don't shield a bracket
      {u"<a\nx=1>y</a>", true, "a:y;"},
      {u"<a>&amp;</a>", true, "a:&amp;;"},
      {u"> <a>x</a>", false, "a: <a>x;"},  // the search for the bracket starts before the tag
  };
  for (const WalkCase& c : kCases) {
    EXPECT_EQ(c.tags, Walk(c.text, c.trim)) << cor::ToUtf8(c.text);
  }
  for (const std::u16string_view text :
       {u"", u"no tag", u"<a", u"<a>x", u"<a>x</b>", u"<a>x</A>", u"<a/><b>y</b>"}) {
    EXPECT_EQ("", Walk(text, true)) << cor::ToUtf8(text);
  }
}

TEST(TagCursor, StartsByItselfIfTold) {
  EXPECT_EQ("a", cor::ToUtf8(TagCursor(u"<a>x</a>", true, true).GetTagName()));
  EXPECT_EQ("x", cor::ToUtf8(TagCursor(u"<a>x</a>", true, true).GetTagContent()));
  for (const std::u16string_view text : {u"", u"text", u"<a>x", u"<a"}) {
    TagCursor cursor(text, true, true);
    EXPECT_TRUE(cursor.GetTagName().empty()) << cor::ToUtf8(text);
    EXPECT_TRUE(cursor.GetTagContent().empty());
    EXPECT_TRUE(cursor.GetTagAttributes().empty());
    EXPECT_FALSE(cursor.NextTag());
  }
}

struct AttributeCase {
  std::u16string_view tag;
  std::string_view attributes;
};

TEST(TagCursor, ReadsAttributesLeniently) {
  constexpr AttributeCase kCases[] = {
      {u"<a>", ""},
      {u"<a >", ""},
      {u"<a x=1>", "[x=1]"},
      {u"<a x=\"1 2\" y='3'>", "[x=1 2][y=3]"},
      {u"<a x='1\t2'>", "[x=1 2]"},     // the white space that cut the value is a blank now
      {u"<a x=\"1  2\">", "[x=1  2]"},  // the second blank stays
      {u"<a x=\" 1\">", "[x= 1]"},      // a lone quote takes the rest as well
      {u"<a x='1 \"2\" 3'>", "[x=1 \"2\" 3]"},
      {u"<a x=\"open y=2>", "[x=open y=2]"},
      {u"<a x = 1 y\t=\n2>", "[x=1][y=2]"},
      {u"<a x=\"\">", "[x=]"},
      {u"<a x=>", "[x=]"},
      {u"<a x>", "[x=]"},
      {u"<a x y=1>", "[x y=1]"},  // only an equals sign or a line break ends a name
      {u"<a X=1 x=2>", "[X=2]"},
      {u"<a b=1 ab=2 a=3>", "[a=3][ab=2][b=1]"},
      {u"<a ==1>", "[=1]"},
      {u"<a x=''1''>", "[x=1]"},
  };
  for (const AttributeCase& c : kCases) {
    const TagCursor cursor(std::u16string(c.tag) + u"t</a>", true, true);
    EXPECT_EQ(c.attributes, Show(cursor.GetTagAttributes())) << cor::ToUtf8(c.tag);
  }
}

TEST(TagCursor, FindsTagsOfTheTopLevelFromAnywhere) {
  TagCursor cursor(u"<a s='1'> x </a><b>y<c>z</c></b>", true, true);
  ASSERT_TRUE(cursor.NextTag());
  WString content(u"untouched");
  AttributeList attributes;
  ASSERT_TRUE(cursor.FindTag(u"a", &content, &attributes));
  EXPECT_EQ("x", cor::ToUtf8(content));
  EXPECT_EQ(1u, attributes.count(u"S"));
  EXPECT_EQ("b", cor::ToUtf8(cursor.GetTagName()));  // the cursor itself didn't move
  for (const std::u16string_view absent : {u"B", u"c", u"", u"a s='1'"}) {
    EXPECT_FALSE(cursor.FindTag(absent, &content, &attributes)) << cor::ToUtf8(absent);
  }
  EXPECT_EQ("x", cor::ToUtf8(content));
  EXPECT_TRUE(cursor.FindTag(u"b", nullptr, nullptr));
  EXPECT_FALSE(TagCursor(u"no tags", false, false).FindTag(u"a", nullptr, nullptr));
}

TEST(StringTokenizer, CutsByTwoSets) {
  const struct {
    std::u16string_view text;
    std::u16string_view skip;
    std::u16string_view stop;
    std::string tokens;  // each with the place behind it, up to the first that isn't there
  } cases[] = {
      {u"", u" ", u",", "- 0"},
      {u"   ", u" ", u",", "- 0"},
      {u" a,b", u" ", u",", "a 3, b 4, - 4"},
      {u"a,,b,", u"", u",", "a 2,  3, b 5, - 5"},
      {u",,a", u",", u",", "a 3, - 3"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(cor::ToUtf8(c.text));
    StringTokenizer tokens(c.text);
    std::string shown;
    for (std::size_t round = 0; round <= c.text.size(); ++round) {
      const std::optional<WString> token = tokens.NextToken(c.skip, c.stop);
      if (!token) break;
      EXPECT_EQ(token->view(), tokens.Token().view());
      shown += cor::ToUtf8(*token) + " " + std::to_string(tokens.Position()) + ", ";
    }
    EXPECT_EQ(c.tokens, shown + "- " + std::to_string(tokens.Position()));
  }
  StringTokenizer tokens(u"\t\"path x\" rest");
  EXPECT_EQ(u"path x", tokens.NextToken(u"\t \"", u"\"").value_or(u"").view());
  EXPECT_EQ(9u, tokens.Position());
  EXPECT_EQ(u"rest", tokens.NextToken(u" ", u" ").value_or(u"").view());
}

TEST(ConnectParams, AppendsTags) {
  ConnectParams parameters;
  AppendTag(parameters, u"model", u"a&b");
  AppendFilenameTag(parameters, u"a&b.txt");
  AppendFilenameTag(parameters, u"<x>\"'&amp;");
  AppendTag(parameters, u"pwd", u"geheim", u"s=\"1\" e=\"1\"");
  EXPECT_EQ(
      "<model>a&b</model><filename>a&amp;b.txt</filename>"
      "<filename>&lt;x&gt;\"'&amp;amp;</filename><pwd s=\"1\" e=\"1\">geheim</pwd>",
      cor::ToUtf8(parameters));
}

struct PasswordCase {
  std::u16string_view before;
  std::string_view after;
};

TEST(ConnectParams, ForgetsPasswordsThatAreNotToBeKept) {
  constexpr PasswordCase kCases[] = {
      {u"", ""},
      {u"<filename>a</filename>", "<filename>a</filename>"},
      {u"<pwd e=\"1\">abc</pwd>", "<pwd></pwd>"},
      {u"<pwd>abc</pwd>", "<pwd></pwd>"},
      {u"<pwd s=\"1\" e=\"1\">abc</pwd>", "<pwd s=\"1\" e=\"1\">abc</pwd>"},
      {u"<pwd S='-7x'>abc</pwd>", "<pwd S='-7x'>abc</pwd>"},
      {u"<pwd s='99999999999999'>abc</pwd>", "<pwd s='99999999999999'>abc</pwd>"},
      {u"<pwd s=\"0\" e=\"1\">abc</pwd>", "<pwd s=\"0\"></pwd>"},
      {u"<pwd s='x1'>abc</pwd>", "<pwd s='x1'></pwd>"},
      {u"<pwd e='1' s='0'>abc</pwd><user>u</user>", "<pwd s='0'></pwd><user>u</user>"},
      {u"<pwd></pwd><x e='1'>y</x>", "<pwd></pwd><x e='1'>y</x>"},  // another tag's attribute stays
      {u"<pwd e='1'>abc", "<pwd e='1'>abc"},
      {u"<pwd e='1'", "<pwd e='1'"},
      {u"<broken><pwd e='1'>abc</pwd>", "<broken><pwd></pwd>"},
      {u"<a><pwd s='1'>abc</pwd></a>", "<a><pwd s='1'></pwd></a>"},  // inside: not seen as kept
  };
  for (const PasswordCase& c : kCases) {
    EXPECT_EQ(c.after, cor::ToUtf8(StripPassword(c.before))) << cor::ToUtf8(c.before);
  }
}

}  // namespace
}  // namespace hv::xml
