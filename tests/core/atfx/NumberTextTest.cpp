// tests/core/atfx/NumberTextTest.cpp - single numbers, and lists cut at every place.
#include "core/plugins/atfx/NumberText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include <storefabric/WString.h>

#include "DumpStore.h"

namespace hv::vex::engine::atfx {
namespace {

TEST(NumberText, TakesWholeDecimalIntegersOnly) {
  constexpr std::int64_t kLow = std::numeric_limits<std::int64_t>::min();
  constexpr std::pair<std::u16string_view, std::int64_t> kCases[] = {
      {u"0", 0},
      {u" -12\n", -12},
      {u"+7", 7},
      {u"9223372036854775807", ~kLow},
      {u"-9223372036854775808", kLow}};
  for (const auto& [text, expected] : kCases) EXPECT_EQ(expected, ParseInteger(text));
  for (const std::u16string_view text : {u"9223372036854775808", u"", u"+", u"+-1", u"--1", u"1.0",
                                         u"1 2", u"0x1", u"\uFF11", u"1\u0131"}) {
    EXPECT_EQ(std::nullopt, ParseInteger(text)) << cor::ToUtf8(text);
  }
}

TEST(NumberText, TakesEveryWritingOfAReal) {
  constexpr double kInfinite = std::numeric_limits<double>::infinity();
  constexpr std::pair<std::u16string_view, double> kCases[] = {
      {u"1", 1.0},         {u"-0.5", -0.5},       {u"+1.5E+003", 1500.0}, {u".5", 0.5},
      {u"INF", kInfinite}, {u"-inf", -kInfinite}, {u"1e-999", 0.0},       {u"5e-324", 5e-324}};
  for (const auto& [text, expected] : kCases) EXPECT_EQ(expected, ParseReal(text));
  for (const std::u16string_view text : {u"1e999", u"0x10", u"1,5", u"", u"1e", u"++1"}) {
    EXPECT_EQ(std::nullopt, ParseReal(text)) << cor::ToUtf8(text);
  }
  EXPECT_TRUE(std::isnan(*ParseReal(u"NaN")));
}

TEST(NumberText, KnowsFourWordsOfTruth) {
  EXPECT_EQ(true, ParseBoolean(u" True "));
  EXPECT_EQ(false, ParseBoolean(u"0"));
  EXPECT_EQ(std::nullopt, ParseBoolean(u"+1"));
  EXPECT_EQ(std::nullopt, ParseBoolean(u"yes"));
}

/// The values, or the number that is refused after "!".
std::string ReadList(OdsType type, std::u16string_view text, std::size_t cut) {
  const auto values = std::make_shared<InMemoryValues>(type);
  NumberList list;
  list.Begin(*values);
  const bool isGood = list.Feed(text.substr(0, cut)) && list.Feed(text.substr(cut)) && list.End();
  return isGood ? test::ValuesText(InMemoryValues::Open(values).get()) : "!" + list.BadNumber();
}

TEST(NumberList, GivesTheSameHoweverTheTextIsCut) {
  constexpr std::tuple<OdsType, std::u16string_view, const char*> kCases[] = {
      {OdsType::Short, u"  1\n-32768\t+32767 ", "1 -32768 32767"},
      {OdsType::Short, u"1 32768", "!32768"},
      {OdsType::Byte, u"255 0", "255 0"},
      {OdsType::Byte, u"-1", "!-1"},
      {OdsType::Long, u"1 2 x", "!x"},
      {OdsType::Long, u"", ""},
      {OdsType::LongLong, u"9223372036854775807", "9223372036854775807"},
      {OdsType::Boolean, u"true 0 FALSE 1", "1 0 0 1"},
      {OdsType::Boolean, u"1 +1", "!+1"},
      {OdsType::Float, u"0.1 1e-60 -INF", "0.1 0 -inf"},
      {OdsType::Float, u"1e39", "!1e39"},
      {OdsType::Double, u"1.5 +2 nan", "1.5 2 nan"},
      {OdsType::Double, u"1.5; 2", "!1.5;"},
      {OdsType::Complex, u"1 2 3 4", "1/2 3/4"},
  };
  for (const auto& [type, text, expected] : kCases) {
    for (std::size_t cut = 0; cut <= text.size(); ++cut) {
      EXPECT_EQ(expected, ReadList(type, text, cut)) << cut;
    }
  }
}

}  // namespace
}  // namespace hv::vex::engine::atfx
