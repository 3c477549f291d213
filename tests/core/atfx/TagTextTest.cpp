// tests/core/atfx/TagTextTest.cpp - parameter texts of stores.
#include <gtest/gtest.h>

#include <storefabric/WString.h>

#include "core/plugins/Plugin.h"

namespace hv::vex::engine {
namespace {

TEST(ConnectParameters, FindsTagsSideBySide) {
  const std::tuple<std::u16string_view, std::u16string_view, std::optional<std::u16string>>
      kCases[] = {
          {u"<a>x</a><b>y</b>", u"b", u"y"},
          {u"<a>x</a><b>y</b>", u"B", std::nullopt},
          {u"<a><b>inner</b></a>", u"b", std::nullopt},
          {u"<a>1</a><a>2</a>", u"a", u"1"},
          {u"<a k='v' >x</a>", u"a", u"x"},
          {u"<a>p &amp; q &lt;r&gt; &quot;</a>", u"a", u"p & q <r> &quot;"},
          {u"<a>&amp;lt;</a>", u"a", u"&lt;"},
          {u"<a>open", u"a", std::nullopt},
          {u"no tags", u"a", std::nullopt},
          {u"", u"a", std::nullopt},
          {u"<", u"a", std::nullopt},
          {u"<a></a>", u"a", u""},
      };
  for (const auto& [text, tag, expected] : kCases) {
    EXPECT_EQ(expected, ConnectParameters(text).Get(tag)) << cor::ToUtf8(text);
  }
}

TEST(ConnectParameters, KnowsTheReadOnlyMark) {
  constexpr std::pair<std::u16string_view, bool> kCases[] = {
      {u"<filename readonly='yes'>a</filename>", true},
      {u"<filename readonly=\"YES\">a</filename>", true},
      {u"<filename x='1' readonly='yes'>a</filename>", true},
      {u"<filename readonly='no'>a</filename>", false},
      {u"<filename>a</filename>", false},
      {u"<filename>a</filename><readonly>true</readonly>", true},
      {u"<filename readonly>a</filename>", false},
      {u"", false},
  };
  for (const auto& [text, expected] : kCases) {
    EXPECT_EQ(expected, ConnectParameters(text).IsReadOnly()) << cor::ToUtf8(text);
  }
}

}  // namespace
}  // namespace hv::vex::engine
