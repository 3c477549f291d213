// xml/SaxStateTest.cpp - trees of tag handlers over good, unknown and broken documents.
#include "xml/SaxState.h"

#include "cor/Counted.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace hv::xml {
namespace {

/// Writes its events into a log of the test.
class LogState final : public ISAXStateImpl {
 public:
  LogState(std::string name, std::string& log) : m_name(std::move(name)), m_log(log) {}
  void OnAttributes(std::span<const AttributeView> attributes) override {
    m_log += "+" + m_name;
    for (const AttributeView& a : attributes) {
      m_log += " " + cor::ToUtf8(a.name) + "=" + cor::ToUtf8(a.value);
    }
  }
  void OnCharacters(std::u16string_view text) override {
    if (text == u"raise") throw std::runtime_error("raised by a handler");
    m_log += "'" + cor::ToUtf8(text) + "'";
  }
  void OnEnd() override { m_log += "-" + m_name; }
  Ref<ISAXState> GetChildState(std::u16string_view tagName) override {
    if (tagName == u"again") return Ref<ISAXState>::Share(this);
    return ISAXStateImpl::GetChildState(tagName);
  }

 private:
  std::string m_name;
  std::string& m_log;
};

/// root knows "list" and "value"; "list" knows "Column", which knows "value", the same object.
Ref<ISAXState> MakeTree(std::string& log) {
  auto root = MakeRef<LogState>("root", log);
  auto list = MakeRef<LogState>("list", log);
  auto column = MakeRef<LogState>("column", log);
  auto value = MakeRef<LogState>("value", log);
  column->AddChildState(u"value", value);
  list->AddChildState(u"Column", column);
  root->AddChildState(u"list", list);
  root->AddChildState(u"value", value);
  return root;
}

struct ParseCase {
  std::u16string_view text;
  Result code;
  std::string_view log;
};

TEST(SaxState, DrivesTheKnownElements) {
  const ParseCase cases[] = {
      {u"", E_FAIL, ""},
      {u"text", E_FAIL, ""},
      {u"<root/>", S_OK, "+root-root"},
      {u"<?xml version='1.0' encoding='UTF-16'?><root a='1' b='&lt;'>t</root>", S_OK,
       "+root a=1 b=<'t'-root"},
      {u"<Root><value>1</value></Root>", S_OK, ""},
      {u"<other><value>1</value></other>", S_OK, ""},
      {u"<root><value>1</value><list><column><VALUE>2</VALUE></column></list></root>", S_OK,
       "+root+value'1'-value+list+column+value'2'-value-column-list-root"},
      {u"<root><x>t<value>1</value><list/></x><value/></root>", S_OK, "+root+value-value-root"},
      {u"<q:root/>", S_OK, ""},  // a prefix makes another name
      {u"<root q:a='1'><q:value>1</q:value><value/></root>", S_OK, "+root q:a=1+value-value-root"},
      {u"<root><again><again>t</again></again></root>", S_OK, "+root+root+root't'-root-root-root"},
      {u"<root><value>1</value><list>", E_FAIL, "+root+value'1'-value+list"},
      {u"<root><value>1</list></root>", E_FAIL, "+root+value'1'"},
      {u"<root/><root/>", E_FAIL, "+root-root"},
      {u"<!DOCTYPE root [<!ENTITY e SYSTEM 'file:///etc/passwd'>]><root>&e;</root>", E_FAIL,
       "+root"},
  };
  const std::int64_t alive = cor::LiveObjectCount();
  for (const ParseCase& c : cases) {
    std::string log;
    const Ref<ISAXState> tree = MakeTree(log);
    EXPECT_EQ(c.code, ParseXmlDocument(c.text, u"root", *tree)) << cor::ToUtf8(c.text);
    EXPECT_EQ(c.log, log) << cor::ToUtf8(c.text);
  }
  EXPECT_EQ(alive, cor::LiveObjectCount());
}

TEST(SaxState, LetsGoOfEverythingWhenAHandlerRaises) {
  const std::int64_t alive = cor::LiveObjectCount();
  std::string log;
  {
    const Ref<ISAXState> tree = MakeTree(log);
    EXPECT_THROW((void)ParseXmlDocument(u"<root><value>raise</value></root>", u"root", *tree),
                 std::runtime_error);
    EXPECT_EQ(S_OK, ParseXmlDocument(u"<root/>", u"root", *tree));
  }
  EXPECT_EQ("+root+value+root-root", log);
  EXPECT_EQ(alive, cor::LiveObjectCount());
}

TEST(SaxState, ReadsBooleansExactly) {
  bool value = true;
  EXPECT_TRUE(ParseBoolText(u"false", &value));
  EXPECT_FALSE(value);
  for (const std::u16string_view text : {u"True", u"", u"1", u" true", u"FALSE"}) {
    EXPECT_FALSE(ParseBoolText(text, &value));
    EXPECT_FALSE(value);
  }
  EXPECT_TRUE(ParseBoolText(u"true", &value));
  EXPECT_TRUE(value);
}

TEST(SaxState, FindsAttributesByExactName) {
  const AttributeView attributes[] = {{u"type", u"1"}, {u"Type", u"2"}};
  EXPECT_EQ(u"2", FindAttribute(attributes, u"Type"));
  EXPECT_EQ(std::nullopt, FindAttribute(attributes, u"TYPE"));
  EXPECT_EQ(std::nullopt, FindAttribute({}, u"type"));
}

}  // namespace
}  // namespace hv::xml
