// cor/osdep/RegFileTest.cpp - the notation of the configuration store.
#include "cor/osdep/RegFile.h"

#include "cor/osdep/OSException.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace hv::cor::osdep {
namespace {

constexpr std::string_view kGood = R"(Configuration of this machine

; a comment
[Software\Halvorn\Common\VEX]
"binDir"="C:\\Data"   ; a comment behind a value
"vexDir" = "/opt/vex"
@="the key's own"
"count"=dword:2a
"expand"=hex(2):25,00,48,00,\
  25,00,\
  00,00
"raw"=hex:01,02,ff
"empty"=hex(7):
"quote"="a\"b"
"gone"="x"
"GONE"=-

[software\\halvorn\\other]
"n"="1"
[Software\Halvorn\Old\Below]
[-Software\Halvorn\Old]
[HKEY_LOCAL_MACHINE\Software\Rooted]
"umlaut"=")"
                                   "\xC3\xA4\"\n";

TEST(RegFile, ReadsTheNotation) {
  const auto root = ParseRegFile(kGood, "good.reg");
  const RegNode* vex = root->Find(u"SOFTWARE\\Halvorn\\\\common\\vex\\");
  ASSERT_NE(nullptr, vex);
  EXPECT_EQ(8u, vex->values.size());
  EXPECT_TRUE(vex->values.at(u"BINDIR").text.EqualsExact(u"C:\\Data"));
  EXPECT_TRUE(vex->values.at(u"vexDir").text.EqualsExact(u"/opt/vex"));
  EXPECT_TRUE(vex->values.at(u"").text.EqualsExact(u"the key's own"));
  EXPECT_TRUE(vex->values.at(u"quote").text.EqualsExact(u"a\"b"));
  EXPECT_EQ((std::vector<std::uint8_t>{0x2a, 0, 0, 0}), vex->values.at(u"count").bytes);
  EXPECT_EQ(RegType::ExpandSz, vex->values.at(u"expand").type);
  EXPECT_TRUE(vex->values.at(u"expand").text.EqualsExact(u"%H%"));
  EXPECT_EQ((std::vector<std::uint8_t>{1, 2, 0xff}), vex->values.at(u"raw").bytes);
  EXPECT_EQ(RegType::MultiSz, vex->values.at(u"empty").type);
  EXPECT_NE(nullptr, root->Find(u"Software\\Halvorn\\Other"));
  EXPECT_EQ(nullptr, root->Find(u"Software\\Halvorn\\Old"));
  EXPECT_TRUE(root->Find(u"Software\\Rooted")->values.at(u"umlaut").text.EqualsExact(u"\u00e4"));
}

TEST(RegFile, TakesBothEncodingsAndLineEnds) {
  const std::u16string_view text = u"\uFEFF[k]\r\n\"v\"=\"\u00e4\"\r\n";
  std::string wide;
  for (const char16_t unit : text) {
    wide += static_cast<char>(unit & 0xFF);
    wide += static_cast<char>(unit >> 8);
  }
  for (const std::string& content : {wide, ToUtf8(text), ToUtf8(text.substr(1))}) {
    const auto root = ParseRegFile(content, "s");
    ASSERT_NE(nullptr, root->Find(u"k"));
    EXPECT_TRUE(root->Find(u"k")->values.at(u"v").text.EqualsExact(u"\u00e4"));
  }
}

TEST(RegFile, MalformedContentNamesFileAndLine) {
  std::string deep = "[]";
  for (int i = 0; i < 513; ++i) deep.insert(1, "a\\");
  using namespace std::string_view_literals;
  const struct {
    const char* error;  // begins so
    std::vector<std::string_view> contents;
  } cases[] = {
      {"s:2: neither a key", {"title\nmore"}},
      {"s:2: a key without a closing bracket", {"\n[a\n"}},
      {"s:1: a value outside of a key", {"\"a\"=\"b\""}},
      {"s:2: a value in a key that is removed", {"[-a]\n\"a\"=\"b\""}},
      {"s:2: a value without an equals sign", {"[a]\n\"a\" \"b\"", "[a]\n@"}},
      {"s:2: a text without a closing", {"[a]\n\"a", "[a]\n\"a\"=\"b"}},
      {"s:2: more than a text", {"[a]\n\"a\"=\"b\"c"}},
      {"s:2: a backslash", {"[a]\n\"a\"=\"C:\\Data\"", "[a]\n\"a\"=\"\\"}},
      {"s:2: data of no known kind", {"[a]\n\"a\"=", "[a]\n\"a\"=12"}},
      {"s:2: a number must have", {"[a]\n\"a\"=dword:", "[a]\n\"a\"=dword:123456789"}},
      {"s:2: a number with a character", {"[a]\n\"a\"=dword:-1"}},
      {"s:2: bytes without a colon", {"[a]\n\"a\"=hex"}},
      {"s:2: a type", {"[a]\n\"a\"=hex(", "[a]\n\"a\"=hex(123456789):"}},
      {"s:2: a type with", {"[a]\n\"a\"=hex(x):"}},
      {"s:2: a byte", {"[a]\n\"a\"=hex:1"}},
      {"s:2: bytes without a comma", {"[a]\n\"a\"=hex:01 02"}},
      {"s:2: bytes that go on", {"[a]\n\"a\"=hex:01,\\"}},
      {"s:3: a byte", {"[a]\n\"a\"=hex:01,\\\nzz"}},
      {"s:2: a text with half a character", {"[a]\n\"a\"=hex(1):61,00,62"}},
      {"s:1: a zero character", {"[a\0]"sv}},
      {"s:1: half of a surrogate pair", {"\xFF\xFE[\0\xDA\xDA]\0"sv}},
      {"s:1: a key too deep", {deep}},
      {"s:", {"[a]\0"sv}},
  };
  for (const auto& c : cases) {
    for (const std::string_view content : c.contents) {
      SCOPED_TRACE(content);
      try {
        (void)ParseRegFile(content, "s");
        ADD_FAILURE() << "accepted";
      } catch (const WinError& e) {
        EXPECT_EQ(kErrorCorrupt, e.Number());
        EXPECT_TRUE(std::string_view(e.what()).starts_with(c.error)) << e.what();
      }
    }
  }
}

TEST(RegFile, WritesWhatItReads) {
  RegNode root;
  RegNode& key = root.FindOrMake(u"Software\\Halvorn\\x]y");
  const auto text = [](std::u16string_view t) { return RegValue{RegType::Sz, WString(t), {}}; };
  key.values[u"plain"] = text(u"a");
  key.values[u"quo\"te\\"] = text(u"\\\"");
  key.values[u"lines"] = text(u"a\r\nb");
  key.values[u"half"] = text(u"\xD83D!");
  key.values[u""] = RegValue{RegType::ExpandSz, u"%HOME%", {}};
  key.values[u"long"] = RegValue{RegType::Binary, {}, std::vector<std::uint8_t>(60, 0xA5)};
  key.values[u"other"] = RegValue{static_cast<RegType>(0xFFFFFFFF), {}, {1}};
  key.values[u"n"] = RegValue{RegType::DWord, {}, {0x78, 0x56, 0x34, 0x12}};
  root.FindOrMake(u"-dash\\HKEY_CURRENT_USER\\empty");
  root.FindOrMake(u"HKEY_CURRENT_USER\\b");

  const std::string written = WriteRegFile(root);
  EXPECT_NE(std::string::npos, written.find("\"n\"=dword:12345678\n")) << written;
  EXPECT_NE(std::string::npos, written.find("\"quo\\\"te\\\\\"=\"\\\\\\\"\"\n")) << written;
  const auto again = ParseRegFile(written, "again");
  EXPECT_EQ(written, WriteRegFile(*again));
  const RegNode* read = again->Find(u"Software\\Halvorn\\x]y");
  ASSERT_NE(nullptr, read);
  ASSERT_EQ(key.values.size(), read->values.size());
  for (const auto& [name, value] : key.values) {
    SCOPED_TRACE(ToUtf8(name));
    EXPECT_EQ(value.type, read->values.at(name).type);
    EXPECT_TRUE(value.text.EqualsExact(read->values.at(name).text));
    EXPECT_EQ(value.bytes, read->values.at(name).bytes);
  }
  EXPECT_NE(nullptr, again->Find(u"-dash\\HKEY_CURRENT_USER\\empty"));
  EXPECT_NE(nullptr, again->Find(u"HKEY_CURRENT_USER\\b"));
}

TEST(RegFile, DamagedContentIsReadOrRefusedAsAWhole) {
  std::mt19937 random(5);
  for (int round = 0; round < 5000; ++round) {
    std::string content(kGood.substr(0, random() % (kGood.size() + 1)));
    for (int damage = 0; damage < 3 && !content.empty(); ++damage) {
      content[random() % content.size()] = static_cast<char>(random());
    }
    try {
      const std::string written = WriteRegFile(*ParseRegFile(content, "s"));
      ASSERT_EQ(written, WriteRegFile(*ParseRegFile(written, "s"))) << content;
    } catch (const WinError& e) {
      ASSERT_TRUE(std::string_view(e.what()).starts_with("s:")) << e.what();
    }
  }
}

}  // namespace
}  // namespace hv::cor::osdep
