// core/query/QueryReaderTest.cpp - query texts that are read, and texts that are refused.
#include "core/query/QueryReader.h"

#include <gtest/gtest.h>

#include "storefabric/WString.h"

#include "QueryText.h"

namespace hv::vex::engine {
namespace {

using test::Describe;
using test::Function;
using test::kNoCase;
using test::kWild;
using test::Text;

std::string ErrorOf(std::u16string_view text) {
  try {
    const ParsedQuery query = ReadQuery(text);
    return "read: " + Describe(query.root);
  } catch (const Exception& e) {
    EXPECT_EQ(errc::kBadQuery, e.code);
    return cor::ToUtf8(e.message);
  }
}

TEST(QueryReader, ReadsTheFormAsItIsWritten) {
  const std::u16string text =
      u"<?xml version=\"1.0\" encoding=\"UTF-16\" standalone=\"no\" ?>\n"
      u"<query>\n"
      u"<ftsexpression>brake &amp; disc</ftsexpression>\n"
      u"<entity name=\"MeaResult\" >\n"
      u"<expression limit=\"100\">\n"
      u"<q:function name=\"OR\">\n"
      u"<q:function name=\"AND\">\n"
      u"<q:function name=\"=\">\n"
      u"<q:identifier>Name</q:identifier>\n"
      u"<q:constant wildcards=\"?*\" caseinsensitive=\"yes\">a*</q:constant>\n"
      u"</q:function>\n"
      u"<q:function name=\"&gt;\">\n"
      u"<q:identifier>Size</q:identifier>\n"
      u"<q:constant>3</q:constant>\n"
      u"</q:function>\n"
      u"</q:function>\n"
      u"<q:function name=\"AND\">\n"
      u"<q:function name=\"&gt;=\">\n"
      u"<q:identifier>Time</q:identifier>\n"
      u"<q:constant>20090517000000</q:constant>\n"
      u"</q:function>\n"
      u"<q:function name=\"&lt;=\">\n"
      u"<q:identifier>Time</q:identifier>\n"
      u"<q:constant>20090517235959</q:constant>\n"
      u"</q:function>\n"
      u"</q:function>\n"
      u"</q:function>\n"
      u"</expression></entity></query>";
  const ParsedQuery query = ReadQuery(text);
  EXPECT_TRUE(query.returnType == u"MeaResult");
  EXPECT_TRUE(query.freeText == u"brake & disc");
  EXPECT_EQ(100, query.limit);
  EXPECT_EQ(
      "OR(AND(Name = 'a*'wi, Size > '3'), "
      "AND(Time >= '20090517000000', Time <= '20090517235959'))",
      Describe(query.root));
  EXPECT_EQ(8u, query.root.children[0].children[0].position.line);
}

struct BodyRow {
  const char* name;
  std::u16string body;
  const char* root;
};

TEST(QueryReader, BringsFunctionsToOneForm) {
  const std::u16string a = Function(u"=", u"a", u"1");
  const std::u16string b = Function(u"=", u"b", u"2");
  const BodyRow rows[] = {
      {"nothing", u"", "AND()"},
      {"one condition bare", a, "AND(a = '1')"},
      {"one condition wrapped", Function(u"AND", a), "AND(a = '1')"},
      {"one condition in an or", Function(u"OR", a), "AND(a = '1')"},
      {"several at the top", a + b, "AND(a = '1', b = '2')"},
      {"or at the top", Function(u"OR", a + b), "OR(a = '1', b = '2')"},
      {"two functions at the top", Function(u"OR", a + b) + a,
       "AND(OR(a = '1', b = '2'), a = '1')"},
      {"empty functions", Function(u"AND", Function(u"OR", u"") + Function(u"AND", u"")), "AND()"},
      {"needless wrappers", Function(u"AND", Function(u"OR", Function(u"AND", a)) + b),
       "AND(a = '1', b = '2')"},
      {"case of logic", Function(u"And", Function(u"oR", a + b) + a),
       "AND(OR(a = '1', b = '2'), a = '1')"},
      {"operators",
       Function(u"==", u"a", u"") + Function(u"&lt;&gt;", u"a", u"") + Function(u"!=", u"a", u"") +
           Function(u"&lt;", u"a", u"") + Function(u">", u"a", u""),
       "AND(a = '', a != '', a != '', a < '', a > '')"},
      {"blanks are kept", Function(u"=", u" a ", u" x\ty ", kNoCase), "AND( a  = ' x\ty 'i)"},
      {"entities", Function(u"=", u"&quot;&amp;&apos;&lt;&gt;", u"&lt;a&gt; &#228;"),
       "AND(\"&'<> = '<a> \xC3\xA4')"},
      {"character data", Function(u"=", u"a", u"x<![CDATA[<&>]]>y"), "AND(a = 'x<&>y')"},
      {"comments", u"<!-- no -->" + Function(u"=", u"a", u"x<!-- no -->y"), "AND(a = 'xy')"},
      {"marks say no", Function(u"=", u"a", u"*", u" wildcards=\"\" caseinsensitive=\"NO\""),
       "AND(a = '*')"},
  };
  for (const BodyRow& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.root, Describe(ReadQuery(Text(row.body)).root));
  }
}

struct EntityRow {
  std::u16string_view tag;
  std::u16string_view name;
};

TEST(QueryReader, RepairsTheEntityTag) {
  const EntityRow rows[] = {
      {u"<entity name=\"MeaResult\">", u"MeaResult"},
      {u"<entity name=\"Mea Result\" uri=http://a.example/?b=1&c=\"x\" >", u"Mea Result"},
      {u"<entity name=\"MeaResult\" uri=\"quoted\" >", u"MeaResult"},
      {u"<entity name=\"A&B\" >", u"A&B"},
      {u"<entity name=\"A&amp;B\" >", u"A&B"},
      {u"<entity name=\"A<B> \"C\"\" >", u"A<B> \"C\""},
      {u"<entity uri=\"\" name='x'>", u"x"},
  };
  for (const EntityRow& row : rows) {
    SCOPED_TRACE(cor::ToUtf8(row.tag));
    std::u16string text = u"<query>";
    text += row.tag;
    text += u"\n<expression>" + Function(u"=", u"a", u"b") + u"</expression></entity></query>";
    const ParsedQuery query = ReadQuery(text);
    EXPECT_EQ(cor::ToUtf8(row.name), cor::ToUtf8(query.returnType));
    EXPECT_EQ("AND(a = 'b')", Describe(query.root));
  }
}

TEST(QueryReader, ReadsAnOrderAndDoesWithoutAnExpression) {
  const ParsedQuery query = ReadQuery(
      u"<query><entity name=\"x\"><order name=\"a.b\" descending=\"yes\"/><order name=\"c\"/>"
      u"</entity></query>");
  ASSERT_EQ(2u, query.order.size());
  EXPECT_TRUE(query.order[0].identifier == u"a.b" && query.order[0].descending);
  EXPECT_TRUE(query.order[1].identifier == u"c" && !query.order[1].descending);
  EXPECT_EQ(0, query.limit);
  EXPECT_TRUE(query.root.children.empty());
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
  return text;
}

TEST(QueryReader, BoundsTheDepthOfFunctions) {
  const ParsedQuery query = ReadQuery(Text(Nested(kDeepestLogic)));
  std::size_t depth = 1;
  const ParsedNode* node = &query.root;
  while (!node->children.front().children.empty()) {
    node = &node->children.front();
    ++depth;
  }
  EXPECT_EQ(kDeepestLogic, depth);
  EXPECT_NE(
      std::string::npos,
      ErrorOf(Text(Nested(kDeepestLogic + 1))).find("more than 256 functions inside each other"));
  EXPECT_NE(std::string::npos, ErrorOf(Text(Nested(5000))).find("inside each other"));
}

struct RefusedRow {
  const char* name;
  std::u16string text;
  const char* message;  // what must stand behind "query expression, "
};

TEST(QueryReader, SaysWhereAndWhyItRefuses) {
  const std::u16string id = u"<q:identifier>a</q:identifier>";
  const std::u16string constant = u"<q:constant>1</q:constant>";
  const RefusedRow rows[] = {
      {"unknown function", Text(Function(u"#", u"a", u"1")),
       "line 5, column 22: unknown function \"#\""},
      {"nameless function", Text(u"<q:function>" + id + constant + u"</q:function>"),
       "line 5, column 13: unknown function \"\""},
      {"unknown element", Text(u"\n<q:word/>"), "line 6, column 10: unexpected element \"word\""},
      {"text between", Text(u"  oops"), "line 5, column 7: unexpected text \"oops\""},
      {"no identifier", Text(Function(u"=", u"")),
       "line 6, column 14: a function has no identifier"},
      {"no constant", Text(Function(u"=", id)), "line 6, column 44: a function has no constant"},
      {"constant first", Text(Function(u"=", constant + id)),
       "line 6, column 13: a constant stands before the identifier"},
      {"two constants", Text(Function(u"=", id + constant + constant)),
       "line 6, column 69: a function has two constants"},
      {"two identifiers", Text(Function(u"=", id + id)),
       "line 6, column 45: a function has two identifiers"},
      {"empty identifier", Text(Function(u"=", u" ", u"1")),
       "line 6, column 31: an identifier is empty"},
      {"identifier in logic", Text(Function(u"AND", id)),
       "line 6, column 15: unexpected element \"identifier\""},
      {"function in a comparison", Text(Function(u"=", Function(u"=", u"a", u"1"))),
       "line 6, column 22: a function stands inside a comparison"},
      {"unknown wildcards", Text(Function(u"=", u"a", u"1", u" wildcards=\"%_\"")),
       "line 7, column 28: unknown wildcards \"%_\"; only \"?*\" are supported"},
      {"odd mark", Text(Function(u"=", u"a", u"1", u" caseinsensitive=\"maybe\"")),
       "line 7, column 37: caseinsensitive is \"maybe\" instead of \"yes\" or \"no\""},
      {"limit in words", Text(u"", u"x", u" limit=\"ten\""),
       "line 4, column 25: the limit \"ten\" is not a number"},
      {"limit below zero", Text(u"", u"x", u" limit=\"-1\""),
       "line 4, column 24: the limit \"-1\" is not a number"},
      {"limit too long", Text(u"", u"x", u" limit=\"9999999999999999999\""),
       "line 4, column 41: the limit \"9999999999999999999\" is not a number"},
      {"nameless entity", Text(u"", u""), "line 3, column 18: the entity has no name"},
      {"two entities", u"<query><entity name=\"a\"/><entity name=\"b\"/></query>",
       "line 1, column 44: a query has one entity only"},
      {"no entity", u"<query/>", "line 1, column 1: the query has no entity"},
      {"two expressions", u"<query><entity name=\"a\"><expression/><expression/></entity></query>",
       "line 1, column 51: an entity has one expression only"},
      {"nameless order", u"<query><entity name=\"a\"><order/></entity></query>",
       "line 1, column 33: an order has no name"},
      {"another document", u"<html/>", "line 1, column 8: unexpected element \"html\""},
  };
  for (const RefusedRow& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(std::string("query expression, ") + row.message, ErrorOf(row.text));
  }
}

TEST(QueryReader, RefusesWhatIsNotWellFormed) {
  const std::u16string good = Text(Function(u"AND", Function(u"=", u"Name", u"a*", kWild)));
  for (std::size_t length = 0; length < good.size(); ++length) {
    SCOPED_TRACE(length);
    const std::string error = ErrorOf(std::u16string_view(good).substr(0, length));
    ASSERT_TRUE(error.starts_with("query expression, line ") ||
                (length < 3 && error.starts_with("query expression")))
        << error;
  }
  EXPECT_TRUE(ErrorOf(good + good).starts_with("query expression, line "));
  const std::u16string bomb =
      u"<!DOCTYPE query [<!ENTITY a \"xxxxxxxxxx\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;\">]>"
      u"<query><entity name=\"x\"><expression>" +
      Function(u"=", u"a", u"&b;&b;&b;&b;&b;&b;") + u"</expression></entity></query>";
  EXPECT_TRUE(ErrorOf(bomb).starts_with("query expression, line ")) << ErrorOf(bomb);
  const std::u16string outside =
      u"<!DOCTYPE query [<!ENTITY a SYSTEM \"file:///etc/passwd\">]>"
      u"<query><entity name=\"x\"><expression>" +
      Function(u"=", u"a", u"&a;") + u"</expression></entity></query>";
  EXPECT_TRUE(ErrorOf(outside).starts_with("query expression, line ")) << ErrorOf(outside);
}

}  // namespace
}  // namespace hv::vex::engine
