// xml/XmlWriterTest.cpp - documents to the byte, and calls in the wrong place.
#include "xml/XmlWriter.h"

#include "store/core/Exception.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace hv::xml {
namespace {

/// One call: its letter, then what it takes. `<` starts an element, `=` adds an attribute, `t` a
/// text, `>` ends the element, `!` asks for the document.
struct Call {
  char kind;
  std::u16string_view name = {};
  std::u16string_view value = {};
};

void Do(XmlWriter& writer, const std::vector<Call>& calls) {
  for (const Call& call : calls) {
    if (call.kind == '<') writer.StartElement(call.name);
    if (call.kind == '=') writer.AddAttribute(call.name, call.value);
    if (call.kind == 't') writer.AddText(call.name);
    if (call.kind == '>') writer.EndElement();
    if (call.kind == '!') (void)writer.GetDocument();
  }
}

TEST(XmlWriter, WritesTheDocument) {
  const struct {
    std::vector<Call> calls;
    std::string body;
  } cases[] = {
      {{}, ""},
      {{{'<', u"a"}, {'=', u"x", u"1"}}, "<a x='1'/>"},
      {{{'<', u"a"}, {'t', u"a<b>&\"c'&amp;"}}, "<a>a&lt;b&gt;&amp;&quot;c'&amp;amp;</a>"},
      {{{'<', u"a"}, {'=', u"x", u"a<b>&\"c'"}}, "<a x='a&lt;b>&amp;&quot;c''/>"},
      {{{'<', u"a"}, {'=', u"x", u"1"}, {'=', u"x", u"2"}, {'=', u"", u"3"}, {'=', u"", u"4"}},
       "<a x='1' x='2' ='3' ='4'/>"},
      {{{'<', u"a"}, {'t', u""}}, "<a></a>"},  // an empty text is content, too
      {{{'<', u"a"}, {'t', u"1"}, {'t', u"2"}}, "<a>12</a>"},
      {{{'<', u"a"}, {'<', u"b"}, {'>'}, {'<', u"c"}}, "<a><b/><c/></a>"},
      {{{'<', u"a"}, {'<', u"b"}, {'<', u"c"}, {'t', u"t"}}, "<a><b><c>t</c></b></a>"},
      // Calls outside of the root do nothing.
      {{{'t', u"x"},
        {'=', u"x y", u"1"},
        {'>'},
        {'<', u"a"},
        {'>'},
        {'t', u"x"},
        {'=', u"x"},
        {'>'}},
       "<a/>"},
      {{{'<', u""}, {'<', u"<\"&"}}, "<><<'&/></>"},  // names are not looked at
  };
  for (const auto& c : cases) {
    XmlWriter writer;
    Do(writer, c.calls);
    for (int twice = 0; twice < 2; ++twice) {
      EXPECT_EQ("<?xml version='1.0' encoding='UTF-16'?>" + c.body,
                cor::ToUtf8(writer.GetDocument()));
    }
  }
}

TEST(XmlWriter, RefusesWithoutATrace) {
  const char* const kSecondRoot =
      "(46): tried to create a second root elemenet. not allowed in XML!";
  const struct {
    std::vector<Call> before;
    Call call;
    std::int32_t code;
    const char* message;
  } cases[] = {
      {{{'<', u"r"}, {'>'}}, {'<', u"b c"}, -1001, kSecondRoot},
      {{{'<', u"r"}, {'!'}}, {'<', u"b"}, -1001, kSecondRoot},
      {{{'<', u"r"}}, {'<', u"b c"}, -1004, "(51): illegal tagName"},
      {{{'<', u"r"}, {'t', u"t"}}, {'=', u"x", u"1"}, -1004, "(75): wrong place for attribute"},
      {{{'<', u"r"}, {'<', u"c"}, {'>'}},
       {'=', u"x y", u"1"},
       -1004,
       "(75): wrong place for attribute"},
      {{{'<', u"r"}}, {'=', u"x y", u"1"}, -1004, "(78): illegal attribute name"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(&c - cases);
    XmlWriter writer;
    XmlWriter untouched;
    Do(writer, c.before);
    Do(untouched, c.before);
    try {
      Do(writer, {c.call});
      ADD_FAILURE() << "not refused";
    } catch (const vex::Exception& e) {
      EXPECT_EQ(c.code, e.code);
      EXPECT_EQ(c.message, cor::ToUtf8(e.message));
    }
    EXPECT_TRUE(writer.GetDocument().EqualsExact(untouched.GetDocument()));
  }
}

}  // namespace
}  // namespace hv::xml
