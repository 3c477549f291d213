// xml/XmlWriterTest.cpp - documents to the byte, and calls in the wrong place.
#include "xml/XmlWriter.h"

#include "store/core/Exception.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>

namespace hv::xml {
namespace {

constexpr std::string_view kDeclaration = "<?xml version='1.0' encoding='UTF-16'?>";

struct DocumentCase {
  const char* name;
  std::function<void(XmlWriter&)> write;
  std::string_view body;
};

const DocumentCase kDocuments[] = {
    {"Nothing", [](XmlWriter&) {}, ""},
    {"RootWithAttribute",
     [](XmlWriter& w) {
       w.StartElement(u"a");
       w.AddAttribute(u"x", u"1");
     },
     "<a x='1'/>"},
    {"ContentEscapes",
     [](XmlWriter& w) {
       w.StartElement(u"a");
       w.AddText(u"a<b>&\"c'&amp;");
     },
     "<a>a&lt;b&gt;&amp;&quot;c'&amp;amp;</a>"},
    {"AttributeKeepsGreaterAndApostrophe",
     [](XmlWriter& w) {
       w.StartElement(u"a");
       w.AddAttribute(u"x", u"a<b>&\"c'");
     },
     "<a x='a&lt;b>&amp;&quot;c''/>"},
    {"SameAttributeTwice",
     [](XmlWriter& w) {
       w.StartElement(u"a");
       w.AddAttribute(u"x", u"1");
       w.AddAttribute(u"x", u"2");
       w.AddAttribute(u"", u"3");
       w.AddAttribute(u"", u"4");
     },
     "<a x='1' x='2' ='3' ='4'/>"},
    {"EmptyTextStillMakesContent",
     [](XmlWriter& w) {
       w.StartElement(u"a");
       w.AddText(u"");
     },
     "<a></a>"},
    {"TextsAreJoined",
     [](XmlWriter& w) {
       w.StartElement(u"a");
       w.AddText(u"1");
       w.AddText(u"2");
     },
     "<a>12</a>"},
    {"ParentOfEmptyChildHasEndTag",
     [](XmlWriter& w) {
       w.StartElement(u"a");
       w.StartElement(u"b");
       w.EndElement();
       w.StartElement(u"c");
     },
     "<a><b/><c/></a>"},
    {"ThreeOpen",
     [](XmlWriter& w) {
       w.StartElement(u"a");
       w.StartElement(u"b");
       w.StartElement(u"c");
       w.AddText(u"t");
     },
     "<a><b><c>t</c></b></a>"},
    {"CallsOutsideOfTheRootDoNothing",
     [](XmlWriter& w) {
       w.AddText(u"x");
       w.AddAttribute(u"x y", u"1");
       w.EndElement();
       w.StartElement(u"a");
       w.EndElement();
       w.AddText(u"x");
       w.AddAttribute(u"x", u"1");
       w.EndElement();
     },
     "<a/>"},
    {"NamesAreNotLookedAt",
     [](XmlWriter& w) {
       w.StartElement(u"");
       w.StartElement(u"<\"&");
     },
     "<><<'&/></>"},
};

TEST(XmlWriter, WritesTheDocument) {
  for (const DocumentCase& c : kDocuments) {
    SCOPED_TRACE(c.name);
    XmlWriter writer;
    c.write(writer);
    const std::string expected = std::string(kDeclaration) + std::string(c.body);
    EXPECT_EQ(expected, cor::ToUtf8(writer.GetDocument()));
    EXPECT_EQ(expected, cor::ToUtf8(writer.GetDocument()));
  }
}

struct MisuseCase {
  const char* name;
  std::function<void(XmlWriter&)> before;
  std::function<void(XmlWriter&)> call;
  std::int32_t code;
  std::string_view message;
};

void OpenRoot(XmlWriter& w) { w.StartElement(u"r"); }

const MisuseCase kMisuses[] = {
    {"SecondRoot",
     [](XmlWriter& w) {
       OpenRoot(w);
       w.EndElement();
     },
     [](XmlWriter& w) { w.StartElement(u"b c"); }, -1001,
     "(46): tried to create a second root elemenet. not allowed in XML!"},
    {"SecondRootBehindDocument",
     [](XmlWriter& w) {
       OpenRoot(w);
       (void)w.GetDocument();
     },
     [](XmlWriter& w) { w.StartElement(u"b"); }, -1001,
     "(46): tried to create a second root elemenet. not allowed in XML!"},
    {"BlankInTag", OpenRoot, [](XmlWriter& w) { w.StartElement(u"b c"); }, -1004,
     "(51): illegal tagName"},
    {"AttributeBehindText",
     [](XmlWriter& w) {
       OpenRoot(w);
       w.AddText(u"t");
     },
     [](XmlWriter& w) { w.AddAttribute(u"x", u"1"); }, -1004, "(75): wrong place for attribute"},
    {"AttributeBehindChild",
     [](XmlWriter& w) {
       OpenRoot(w);
       w.StartElement(u"c");
       w.EndElement();
     },
     [](XmlWriter& w) { w.AddAttribute(u"x y", u"1"); }, -1004, "(75): wrong place for attribute"},
    {"BlankInAttribute", OpenRoot, [](XmlWriter& w) { w.AddAttribute(u"x y", u"1"); }, -1004,
     "(78): illegal attribute name"},
};

TEST(XmlWriter, RefusesWithoutATrace) {
  for (const MisuseCase& c : kMisuses) {
    SCOPED_TRACE(c.name);
    XmlWriter writer;
    XmlWriter untouched;
    c.before(writer);
    c.before(untouched);
    try {
      c.call(writer);
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
