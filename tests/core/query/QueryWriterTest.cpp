// core/query/QueryWriterTest.cpp - query texts written from short expressions, byte for byte.
#include "core/query/QueryWriter.h"

#include <gtest/gtest.h>

#include "core/query/QueryReader.h"

#include "QueryText.h"

namespace hv::vex::engine::test {
namespace {

TEST(QueryWriter, WritesTheFormByteForByte) {
  const std::u16string_view expected =
      u"<?xml version=\"1.0\" encoding=\"UTF-16\" standalone=\"no\" ?>\n"
      u"<query>\n"
      u"<entity name=\"MeaResult\" >\n"
      u"<expression>\n"
      u"<q:function name=\"OR\">\n"
      u"<q:function name=\"AND\">\n"
      u"<q:function name=\"=\">\n"
      u"<q:identifier>Rig.Name</q:identifier>\n"
      u"<q:constant wildcards=\"?*\" caseinsensitive=\"yes\">&quot;&amp;&apos;&lt;a*&gt;"
      u"</q:constant>\n"
      u"</q:function>\n"
      u"<q:function name=\"&lt;&gt;\">\n"
      u"<q:identifier>Size &gt; 2</q:identifier>\n"
      u"<q:constant>-3.5</q:constant>\n"
      u"</q:function>\n"
      u"</q:function>\n"
      u"<q:function name=\"!=\">\n"
      u"<q:identifier>State</q:identifier>\n"
      u"<q:constant wildcards=\"?*\" caseinsensitive=\"yes\">done</q:constant>\n"
      u"</q:function>\n"
      u"</q:function>\n"
      u"</expression></entity></query>";
  const std::u16string text = BuildQueryText(
      u"MeaResult", true, u"Rig.Name LIKE '\"&''<a*>' AND \"Size > 2\" <> -3.5 or State != done");
  EXPECT_EQ(cor::ToUtf8(expected), cor::ToUtf8(text));
  EXPECT_EQ("OR(AND(Rig.Name = '\"&'<a*>'wi, Size > 2 != '-3.5'), State != 'done'wi)",
            Describe(ReadQuery(text).root));
}

TEST(QueryWriter, WritesAllForAnEmptyExpression) {
  for (const std::u16string_view empty : {u"", u" \t\n"}) {
    const std::u16string text = BuildQueryText(u"Rig & Roll", true, empty);
    EXPECT_EQ(cor::ToUtf8(Text(u"", u"Rig & Roll")), cor::ToUtf8(text));
    EXPECT_EQ(u"Rig & Roll", ReadQuery(text).returnType);
  }
}

TEST(QueryWriter, UnderstandsExpressions) {
  const struct {
    bool odsConform;
    std::u16string_view expression;
    const char* root;
  } kRows[] = {
      {true, u"a*?", "AND(name = 'a*?'wi)"},
      {false, u"a%_", "AND(name = 'a*?'wi)"},
      {true, u"a%_", "AND(name = 'a%_'wi)"},
      {true, u"  Run 3 (cold)  ", "AND(name = 'Run 3 (cold)'wi)"},
      {true, u"driver's log", "AND(name = 'driver's log'wi)"},
      {true, u"'a = b'", "AND(name = 'a = b'wi)"},
      {true, u"'it''s'", "AND(name = 'it's'wi)"},
      {true, u"'a' and 'b'", "AND(name = ''a' and 'b''wi)"},
      {true, u"Runs unlike others!", "AND(name = 'Runs unlike others!'wi)"},
      {true, u"a=1", "AND(a = '1')"},
      {true, u"a==1", "AND(a = '1')"},
      {true, u"a like 1*", "AND(a = '1*'wi)"},
      {false, u"a_b Like 'x_y%'", "AND(a_b = 'x?y*'wi)"},
      {true, u"a = '1'", "AND(a = '1'wi)"},
      {true, u"a<=1e3 AND b>=x AND c<1 AND d>1 AND e<>x",
       "AND(a <= '1e3', b >= 'x'wi, c < '1', d > '1', e != 'x'wi)"},
      {true, u"a=1 or b=2 and c=3", "OR(a = '1', AND(b = '2', c = '3'))"},
      {true, u"(a=1 or b=2) and c=3", "AND(OR(a = '1', b = '2'), c = '3')"},
      {true, u"((a=1))", "AND(a = '1')"},
      {true, u"((a=1 OR b=2))", "OR(a = '1', b = '2')"},
      {true, u"AND = 'or' AND or = and", "AND(AND = 'or'wi, or = 'and'wi)"},
      {true, u"\"Odd \"\"name\"\".x\"='y'", "AND(Odd \"name\".x = 'y'wi)"},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(cor::ToUtf8(row.expression));
    const ParsedQuery query = ReadQuery(BuildQueryText(u"Rig", row.odsConform, row.expression));
    EXPECT_EQ(row.root, Describe(query.root));
  }
}

TEST(QueryWriter, WritesNothingThatTheReaderRefuses) {
  std::u16string deepest = u"a=1";
  for (std::size_t i = 0; i < kDeepestLogic / 2 - 2; ++i) {
    deepest = u"(b=2 and " + deepest + u" or c=3)";
  }
  EXPECT_FALSE(ReadQuery(BuildQueryText(u"x", true, deepest)).root.children.empty());
  EXPECT_THROW(BuildQueryText(u"x", true, u"(b=2 and " + deepest + u" or c=3)"), Exception);
  EXPECT_THROW(BuildQueryText(u"x", true, std::u16string(100000, u'(') + u"a=1"), Exception);
}

TEST(QueryWriter, SaysWhereAndWhyItRefuses) {
  const std::pair<std::u16string_view, const char*> kRows[] = {
      {u"a =", "4: a value is missing behind \"=\""},
      {u"a = (b)", "5: a value is missing behind \"=\""},
      {u"a = \"b\"", "5: a value is missing behind \"=\""},
      {u"= 1", "1: a property is missing"},
      {u"'a' = 1", "1: a property is missing"},
      {u"\"\" = 1", "1: a property is missing"},
      {u"a => 1", "3: an operator is missing behind \"a\""},
      {u"a b = 1", "3: an operator is missing behind \"a\""},
      {u"a = 1 b = 2", "7: expected AND, OR or the end instead of \"b\""},
      {u"a = 1)", "6: expected AND, OR or the end instead of \")\""},
      {u"a = 1 and", "10: a property is missing"},
      {u"(a = 1", "7: a closing parenthesis is missing"},
      {u"a = 'b", "5: a quote is not closed"},
  };
  for (const auto& [expression, message] : kRows) {
    SCOPED_TRACE(cor::ToUtf8(expression));
    EXPECT_EQ(std::string("-1201 expression, column ") + message,
              Thrown([&] { BuildQueryText(u"Rig", true, expression); }));
  }
  EXPECT_THROW(BuildQueryText(u"", true, u"a"), Exception);
}

}  // namespace
}  // namespace hv::vex::engine::test
