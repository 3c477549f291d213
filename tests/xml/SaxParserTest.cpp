// xml/SaxParserTest.cpp - well-formed, broken and hostile documents.
#include "xml/SaxParser.h"

#include <storefabric/WString.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/support/TempFolder.h"

namespace hv::xml {
namespace {

/// Writes the events down: `<name attribute="value">`, the text, `</name>`.
class Recorder final : public ISaxHandler {
 public:
  void OnStart(std::u16string_view name, std::span<const AttributeView> attributes) override {
    m_log += "<" + cor::ToUtf8(name);
    for (const AttributeView& a : attributes) {
      m_log += " " + cor::ToUtf8(a.name) + "=\"" + cor::ToUtf8(a.value) + "\"";
    }
    m_log += ">";
  }
  void OnText(std::u16string_view text) override { m_log += cor::ToUtf8(text); }
  void OnEnd(std::u16string_view name) override { m_log += "</" + cor::ToUtf8(name) + ">"; }
  [[nodiscard]] const std::string& Log() const { return m_log; }

 private:
  std::string m_log;
};

std::span<const std::byte> Bytes(std::string_view text) { return std::as_bytes(std::span(text)); }

/// UTF-16 with a byte order mark.
std::string Utf16(std::u16string_view text, bool littleEndian) {
  std::string bytes;
  for (const char16_t unit : std::u16string(u"\uFEFF") + std::u16string(text)) {
    const auto low = static_cast<char>(unit & 0xFF);
    const auto high = static_cast<char>(unit >> 8);
    bytes += littleEndian ? low : high;
    bytes += littleEndian ? high : low;
  }
  return bytes;
}

std::string Repeated(std::string_view piece, int times) {
  std::string text;
  for (int i = 0; i < times; ++i) text += piece;
  return text;
}

std::string Nested(int depth) { return Repeated("<a>", depth) + Repeated("</a>", depth); }

std::string BillionLaughs() {
  std::string text = "<!DOCTYPE a [<!ENTITY e0 'ha'>";
  for (int i = 1; i < 12; ++i) {
    text += "<!ENTITY e" + std::to_string(i) + " '" +
            Repeated("&e" + std::to_string(i - 1) + ";", 10) + "'>";
  }
  return text;
}

TEST(SaxParser, GivesTheEventsOfGoodDocuments) {
  const struct {
    const char* name;
    std::string bytes;
    std::string log;
  } cases[] = {
      {"Plain", "<a x='1' y=\"&lt;2\"><b/>t&amp;u<![CDATA[<v>]]></a>",
       "<a x=\"1\" y=\"<2\"><b></b>t&u<v></a>"},
      {"UndeclaredPrefix", "<q:a q:x='1' xmlns:z='u' xmlns='n'><q:b/></q:a>",
       "<a x=\"1\" xmlns:z=\"u\" xmlns=\"n\"><b></b></a>"},
      {"CommentsAndInstructions", "<?xml version='1.0'?><!-- - --><a><?p q?>x<!--y-->z</a><!-- -->",
       "<a>xz</a>"},
      {"WhiteSpaceAround", "<?xml version='1.0'?>\n <a> </a>\n ", "<a> </a>"},
      {"Utf8Mark", "\xEF\xBB\xBF<a>\xC3\xA4</a>", "<a>\xC3\xA4</a>"},
      {"Utf8WithoutDeclaration", "<a>\xF0\x9F\x9A\x97</a>", "<a>\xF0\x9F\x9A\x97</a>"},
      {"Latin1", "<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE4</a>", "<a>\xC3\xA4</a>"},
      {"Windows1252", "<?xml version='1.0' encoding='windows-1252'?><a>\x80</a>",
       "<a>\xE2\x82\xAC</a>"},
      {"Utf16Little", Utf16(u"<a>\u00e4</a>", true), "<a>\xC3\xA4</a>"},
      {"Utf16Big", Utf16(u"<?xml version='1.0' encoding='UTF-16'?><a>\u00e4</a>", false),
       "<a>\xC3\xA4</a>"},
      {"CarriageReturns", "<a>\r1\r\n2\r</a>", "<a>\n1\n2\n</a>"},
      {"OwnEntity", "<!DOCTYPE a [<!ENTITY e 'ha'>]><a x='&e;'>&e;</a>", "<a x=\"ha\">ha</a>"},
      {"ExternalSubsetIsNotRead", "<!DOCTYPE a SYSTEM 'file:///etc/passwd'><a>x</a>", "<a>x</a>"},
      {"DeepestAllowed", Nested(256), Nested(256)},
      {"LongText", "<a>" + std::string(300000, 'x') + "</a>",
       "<a>" + std::string(300000, 'x') + "</a>"},
  };
  SaxParser parser;  // used again for every case
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Recorder recorder;
    EXPECT_NO_THROW(parser.ParseBytes(Bytes(c.bytes), "good.xml", recorder));
    EXPECT_EQ(c.log, recorder.Log());
    EXPECT_EQ(c.bytes.size(), parser.BytesRead());
    EXPECT_EQ(c.bytes.size(), parser.BytesTotal());
  }
}

TEST(SaxParser, RefusesBadDocumentsWithPlaceAndReason) {
  const std::string laughs = BillionLaughs();
  const struct {
    const char* name;
    std::string bytes;
    std::uint64_t line;
    const char* reason;  // a part of it
  } cases[] = {
      {"Empty", "", 1, "nvalid document structure"},
      {"NoXml", "hello", 1, "nvalid document structure"},
      {"Truncated", "<a>\n<b>\n", 3, ""},
      {"TruncatedInTag", "<a>\n<b c='", 2, ""},
      {"WrongEnd", "<a>\n\n</b>", 3, ""},
      {"CarriageReturnLines", "<a>\r\r\r<b></a>", 4, ""},
      {"TwoRoots", "<a/>\n<a/>", 2, ""},
      {"AttributeTwice", "<a x='1' x='2'/>", 1, ""},
      {"NotUtf8", "<a>\n\xE4\xE4</a>", 1, ""},
      {"UnknownEncoding", "<?xml version='1.0' encoding='x-none'?><a/>", 1, "X-NONE"},
      {"UndeclaredEntity", "<a>\n&nbsp;</a>", 2, "nbsp"},
      {"TooDeep", "<r>\n" + Nested(256) + "</r>", 2, "more than 256 elements"},
      {"BillionLaughs", laughs + "]><a>&e11;</a>", 1, "expansion"},
      {"BillionLaughsInAttribute", laughs + "]><a x='&e11;'/>", 1, "expansion"},
      {"BrokenContentModel", "<!DOCTYPE a [<!ELEMENT a (#PCDATA %<]><a/>", 1, ""},
      {"SelfReference", "<!DOCTYPE a [<!ENTITY e '&f;'><!ENTITY f '&e;'>]><a>&e;</a>", 1, ""},
      {"LargeEntityManyTimes",
       "<!DOCTYPE a [<!ENTITY e '" + std::string(70000, 'x') + "'>]><a>" + Repeated("&e;", 900) +
           "</a>",
       1, "too much text in entity declarations"},
      {"ExternalEntity", "<!DOCTYPE a [<!ENTITY e SYSTEM 'file:///etc/passwd'>]>\n<a>&e;</a>", 2,
       "external entities are not allowed: file:///etc/passwd"},
      {"ExternalParameterEntity",
       "<!DOCTYPE a [<!ENTITY % p SYSTEM 'file:///etc/passwd'> %p; ]>\n<a/>", 1,
       "external entities are not allowed"},
  };
  SaxParser parser;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Recorder recorder;
    try {
      parser.ParseBytes(Bytes(c.bytes), "bad.xml", recorder);
      ADD_FAILURE() << "accepted: " << recorder.Log().substr(0, 200);
    } catch (const XmlError& e) {
      EXPECT_EQ("bad.xml", e.Source());
      EXPECT_EQ(c.line, e.Where().line);
      EXPECT_GT(e.Where().column, 0u);
      EXPECT_FALSE(e.Reason().empty());
      EXPECT_NE(std::string::npos, e.Reason().find(c.reason)) << e.what();
      EXPECT_TRUE(std::string(e.what()).starts_with("bad.xml:" + std::to_string(c.line) + ":"));
      EXPECT_EQ(std::string::npos, recorder.Log().find("root:"));
    }
  }
}

TEST(SaxParser, LimitsAreThoseOfTheCaller) {
  Limits limits;
  limits.depth = 3;
  limits.entityExpansions = 2;
  SaxParser parser(limits);
  Recorder recorder;
  EXPECT_NO_THROW(parser.ParseBytes(Bytes(Nested(3)), "s", recorder));
  EXPECT_THROW(parser.ParseBytes(Bytes(Nested(4)), "s", recorder), XmlError);
  const std::string head = "<!DOCTYPE a [<!ENTITY e 'ha'>]><a>";
  EXPECT_NO_THROW(parser.ParseBytes(Bytes(head + "&e;&e;</a>"), "s", recorder));
  EXPECT_THROW(parser.ParseBytes(Bytes(head + "&e;&e;&e;</a>"), "s", recorder), XmlError);
}

TEST(SaxParser, TextInMemoryIgnoresTheDeclaredEncoding) {
  SaxParser parser;
  for (const std::u16string prolog :
       {u"<?xml version='1.0' encoding='UTF-8'?>",
        u"\uFEFF<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>", u""}) {
    SCOPED_TRACE(cor::ToUtf8(prolog));
    Recorder recorder;
    EXPECT_NO_THROW(parser.ParseMemory(prolog + u"<a>\u00e4\u20ac</a>", recorder));
    EXPECT_EQ("<a>\xC3\xA4\xE2\x82\xAC</a>", recorder.Log());
  }
}

/// Notes the place of each start tag, and does something at the element "stop".
class PlaceHandler final : public ISaxHandler {
 public:
  explicit PlaceHandler(SaxParser& parser) : m_parser(parser) {}
  void OnStart(std::u16string_view name, std::span<const AttributeView>) override {
    const Position here = m_parser.CurrentPosition();
    m_places += std::to_string(here.line) + ":" + std::to_string(here.column) + " ";
    if (name == u"stop") m_parser.Stop();
    if (name == u"throw") throw 42;
    if (name == u"complain") throw m_parser.ErrorHere("bad element");
    if (name == u"again") m_parser.ParseMemory(u"<a/>", *this);
  }
  void OnText(std::u16string_view) override {}
  void OnEnd(std::u16string_view) override { m_places += "/ "; }
  std::string m_places;

 private:
  SaxParser& m_parser;
};

TEST(SaxParser, HandlersSeeThePlaceAndEndTheParseTheirOwnWay) {
  SaxParser parser;
  for (int round = 0; round < 3; ++round) {
    PlaceHandler stopped(parser);
    parser.ParseMemory(u"<a>\n  <b/>\r\n<stop/><c>", stopped);
    EXPECT_EQ("1:4 2:7 / 3:8 ", stopped.m_places);

    PlaceHandler throwing(parser);
    EXPECT_THROW(parser.ParseMemory(u"<a><b x='1'>t</b><throw y='2'/></a>", throwing), int);

    PlaceHandler complaining(parser);
    try {
      parser.ParseMemory(u"<a>\n<complain/></a>", complaining, "m.xml");
      ADD_FAILURE() << "accepted";
    } catch (const XmlError& e) {
      EXPECT_STREQ("m.xml:2:12: bad element", e.what());
    }

    PlaceHandler nested(parser);
    EXPECT_THROW(parser.ParseMemory(u"<a><again/></a>", nested), cor::exception::InvalidOperation);
  }
  EXPECT_EQ(0u, parser.CurrentPosition().line);
}

TEST(SaxParser, ReadsFilesAndNamesThoseItCannotRead) {
  const test::TempFolder folder;
  const std::string text = "<a>" + Repeated("<b x='1'>text</b>\n", 20000) + "</a>";
  const std::filesystem::path path = folder.Write("a.xml", text);
  SaxParser parser;
  Recorder recorder;
  parser.ParseFile(path, recorder);
  EXPECT_EQ("<a>" + Repeated("<b x=\"1\">text</b>\n", 20000) + "</a>", recorder.Log());
  EXPECT_EQ(text.size(), parser.BytesRead());
  EXPECT_EQ(text.size(), parser.BytesTotal());
  std::filesystem::remove(path);

  for (const std::filesystem::path& unreadable : {path, path.parent_path()}) {
    try {
      parser.ParseFile(unreadable, recorder);
      ADD_FAILURE() << "read " << unreadable;
    } catch (const XmlError& e) {
      EXPECT_TRUE(std::string(e.what()).starts_with(unreadable.string() + ": ")) << e.what();
    }
  }
}

}  // namespace
}  // namespace hv::xml
