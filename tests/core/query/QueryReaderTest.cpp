// core/query/QueryReaderTest.cpp - query texts that are read, and texts that are refused.
#include "core/query/QueryReader.h"

#include <gtest/gtest.h>

#include "QueryText.h"

namespace hv::vex::engine::test {
namespace {

std::string ErrorOf(const std::u16string& text) {
  return Thrown([&] { ADD_FAILURE() << "read: " << Describe(ReadQuery(text).root); });
}

const std::string kError = std::to_string(errc::kBadQuery) + " query expression, line ";

TEST(QueryReader, ReadsWhatStandsBesideTheConditions) {
  const ParsedQuery query = ReadQuery(
      u"<query>\n<ftsexpression>brake &amp; disc</ftsexpression><entity name=\"MeaResult\" >"
      u"<expression limit=\"100\"></expression>\n<order name=\"a.b\" descending=\"yes\"/>"
      u"<order name=\"c\"/></entity></query>");
  EXPECT_EQ(u"MeaResult", query.returnType);
  EXPECT_EQ(u"brake & disc", query.freeText);
  EXPECT_EQ(100, query.limit);
  EXPECT_TRUE(query.root.children.empty());
  ASSERT_EQ(2u, query.order.size());
  EXPECT_TRUE(query.order[0].identifier == u"a.b" && query.order[0].descending);
  EXPECT_TRUE(query.order[1].identifier == u"c" && !query.order[1].descending);
  EXPECT_EQ(0, ReadQuery(u"<query><entity name=\"x\"></entity></query>").limit);
}

TEST(QueryReader, BringsFunctionsToOneForm) {
  const std::u16string a = Function(u"=", u"a", u"1");
  const std::u16string b = Function(u"=", u"b", u"2");
  const std::pair<std::u16string, const char*> kRows[] = {
      {u"", "AND()"},
      {a, "AND(a = '1')"},
      {Function(u"AND", a), "AND(a = '1')"},
      {Function(u"OR", a), "AND(a = '1')"},
      {a + b, "AND(a = '1', b = '2')"},
      {Function(u"OR", a + b), "OR(a = '1', b = '2')"},
      {Function(u"OR", a + b) + a, "AND(OR(a = '1', b = '2'), a = '1')"},
      {Function(u"AND", Function(u"OR", u"") + Function(u"AND", u"")), "AND()"},
      {Function(u"AND", Function(u"OR", Function(u"AND", a)) + b), "AND(a = '1', b = '2')"},
      {Function(u"And", Function(u"oR", a + b) + a), "AND(OR(a = '1', b = '2'), a = '1')"},
      {Function(u"==", u"a", u"") + Function(u"&lt;&gt;", u"a", u"") + Function(u"!=", u"a", u"") +
           Function(u"&lt;", u"a", u"") + Function(u">", u"a", u""),
       "AND(a = '', a != '', a != '', a < '', a > '')"},
      {Function(u"=", u" a ", u" x\ty ", kNoCase), "AND( a  = ' x\ty 'i)"},
      {Function(u"=", u"&quot;&amp;&apos;&lt;&gt;", u"&lt;a&gt; &#228;"), "AND(\"&'<> = '<a> ä')"},
      {Function(u"=", u"a", u"x<![CDATA[<&>]]>y"), "AND(a = 'x<&>y')"},
      {u"<!-- no -->" + Function(u"=", u"a", u"x<!-- no -->y"), "AND(a = 'xy')"},
      {Function(u"=", u"a", u"*", u" wildcards=\"\" caseinsensitive=\"NO\""), "AND(a = '*')"},
  };
  for (const auto& [body, root] : kRows) {
    SCOPED_TRACE(cor::ToUtf8(body));
    EXPECT_EQ(root, Describe(ReadQuery(Text(body)).root));
  }
}

TEST(QueryReader, RepairsTheEntityTag) {
  const std::pair<const char16_t*, std::u16string_view> kRows[] = {
      {u"<entity name=\"MeaResult\">", u"MeaResult"},
      {u"<entity name=\"Mea Result\" uri=http://a.example/?b=1&c=\"x\" >", u"Mea Result"},
      {u"<entity name=\"MeaResult\" uri=\"quoted\" >", u"MeaResult"},
      {u"<entity name=\"A&B\" >", u"A&B"},
      {u"<entity name=\"A&amp;B\" >", u"A&B"},
      {u"<entity name=\"A<B> \"C\"\" >", u"A<B> \"C\""},
      {u"<entity uri=\"\" name='x'>", u"x"},
  };
  for (const auto& [tag, name] : kRows) {
    SCOPED_TRACE(cor::ToUtf8(tag));
    const ParsedQuery query =
        ReadQuery(std::u16string(u"<query>") + tag + u"\n<expression>" +
                  Function(u"=", u"a", u"b") + u"</expression></entity></query>");
    EXPECT_EQ(name, query.returnType);
    EXPECT_EQ("AND(a = 'b')", Describe(query.root));
  }
}

TEST(QueryReader, ReadsManyReferencesToCharacters) {
  std::u16string text;
  for (int i = 0; i < 20000; ++i) text += u"&amp;&#65;";
  EXPECT_EQ(40000u,
            ReadQuery(Text(Function(u"=", u"a", text))).root.children[0].constant.text.size());
}

std::u16string Nested(std::size_t depth) {
  std::u16string text = Function(u"=", u"a", u"1") + Function(u"=", u"b", u"2");
  for (std::size_t i = 1; i < depth; ++i) {
    text = Function(i % 2 == 0 ? u"AND" : u"OR", text) + Function(u"=", u"c", u"3");
  }
  return Text(text);
}

TEST(QueryReader, BoundsTheDepthOfFunctions) {
  const ParsedQuery query = ReadQuery(Nested(kDeepestLogic));
  std::size_t depth = 0;
  for (const ParsedNode* node = &query.root; node->IsLogic(); node = &node->children.front()) {
    ++depth;
  }
  EXPECT_EQ(kDeepestLogic, depth);
  for (const std::size_t tooDeep : {kDeepestLogic + 1, std::size_t{5000}}) {
    EXPECT_NE(std::string::npos,
              ErrorOf(Nested(tooDeep)).find("more than 256 functions inside each other"));
  }
}

TEST(QueryReader, SaysWhereAndWhyItRefuses) {
  const std::u16string id = u"<q:identifier>a</q:identifier>";
  const std::u16string constant = u"<q:constant>1</q:constant>";
  const std::pair<std::u16string, const char*> kRows[] = {
      {Text(Function(u"#", u"a", u"1")), "5, column 22: unknown function \"#\""},
      {Text(u"<q:function>" + id + constant + u"</q:function>"),
       "5, column 13: unknown function \"\""},
      {Text(u"\n<q:word/>"), "6, column 10: unexpected element \"word\""},
      {Text(u"  oops"), "5, column 7: unexpected text \"oops\""},
      {Text(Function(u"=", u"")), "6, column 14: a function has no identifier"},
      {Text(Function(u"=", id)), "6, column 44: a function has no constant"},
      {Text(Function(u"=", constant + id)),
       "6, column 13: a constant stands before the identifier"},
      {Text(Function(u"=", id + constant + constant)),
       "6, column 69: a function has two constants"},
      {Text(Function(u"=", id + id)), "6, column 45: a function has two identifiers"},
      {Text(Function(u"=", u" ", u"1")), "6, column 31: an identifier is empty"},
      {Text(Function(u"AND", id)), "6, column 15: unexpected element \"identifier\""},
      {Text(Function(u"=", Function(u"=", u"a", u"1"))),
       "6, column 22: a function stands inside a comparison"},
      {Text(Function(u"=", u"a", u"1", u" wildcards=\"%_\"")),
       "7, column 28: unknown wildcards \"%_\"; only \"?*\" are supported"},
      {Text(Function(u"=", u"a", u"1", u" caseinsensitive=\"maybe\"")),
       "7, column 37: caseinsensitive is \"maybe\" instead of \"yes\" or \"no\""},
      {Text(u"", u"x", u" limit=\"ten\""), "4, column 25: the limit \"ten\" is not a number"},
      {Text(u"", u"x", u" limit=\"-1\""), "4, column 24: the limit \"-1\" is not a number"},
      {Text(u"", u"x", u" limit=\"9999999999999999999\""),
       "4, column 41: the limit \"9999999999999999999\" is not a number"},
      {Text(u"", u""), "3, column 18: the entity has no name"},
      {u"<query><entity name=\"a\"/><entity name=\"b\"/></query>",
       "1, column 44: a query has one entity only"},
      {u"<query/>", "1, column 1: the query has no entity"},
      {u"<query><entity name=\"a\"><expression/><expression/></entity></query>",
       "1, column 51: an entity has one expression only"},
      {u"<query><entity name=\"a\"><order/></entity></query>",
       "1, column 33: an order has no name"},
      {u"<html/>", "1, column 8: unexpected element \"html\""},
  };
  for (const auto& [text, message] : kRows) EXPECT_EQ(kError + message, ErrorOf(text));
}

TEST(QueryReader, RefusesWhatIsNotWellFormed) {
  const std::u16string good = Text(Function(u"AND", Function(u"=", u"Name", u"a*", kWild)));
  std::vector<std::u16string> texts = {
      good + good,
      u"<!DOCTYPE query [<!ENTITY a \"xxxxxxxxxx\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;\">]>" +
          Text(Function(u"=", u"a", u"&b;&b;&b;&b;&b;&b;")).substr(56),
      u"<!DOCTYPE query [<!ENTITY a SYSTEM \"file:///etc/passwd\">]>" +
          Text(Function(u"=", u"a", u"&a;")).substr(56)};
  for (std::size_t length = 0; length < good.size(); ++length) {
    texts.push_back(good.substr(0, length));
  }
  for (const std::u16string& text : texts) {
    const std::string error = ErrorOf(text);
    // What is too short for an encoding to be seen has no line.
    const std::size_t sure = text.size() < 3 ? kError.size() - 7 : kError.size();
    ASSERT_EQ(kError.substr(0, sure), error.substr(0, sure)) << cor::ToUtf8(text);
  }
}

}  // namespace
}  // namespace hv::vex::engine::test
