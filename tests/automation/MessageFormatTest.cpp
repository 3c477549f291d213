// automation/MessageFormatTest.cpp - the two message formatters and the choice between them.
#include "automation/MessageFormat.h"

#include <algorithm>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

namespace hv::automation {
namespace {

struct FormatCase {
  const char* name;
  std::u16string_view format;
  std::vector<MessageArg> args;
  std::u16string_view expected;
};

const std::vector<MessageArg> kNine{u"1", u"2", u"3", u"4", u"5", u"6", u"7", u"8", u"9", u"10"};

const FormatCase kNumberedCases[] = {
    {"InOrder", u"<%1s|%2s>", {u"a", u"b"}, u"<a|b>"},
    {"Swapped", u"%2s and %1s", {u"a", u"b"}, u"b and a"},
    // The arguments are taken in the order of the text and laid down under their number.
    {"Rotated", u"%2s %3s %1s", {u"a", u"b", u"c"}, u"c a b"},
    {"NoPlaceholder", u"plain text", {u"a"}, u"plain text"},
    {"EmptyFormat", u"", {}, u""},
    {"Integer", u"is %1d.", {-12}, u"is -12."},
    {"AnyOtherLetterIsAnInteger", u"is %1x.", {255}, u"is 255."},
    {"LowestInteger", u"%1d", {std::numeric_limits<std::int32_t>::min()}, u"-2147483648"},
    {"PercentInArgumentStays", u"%1s%2s", {u"%1s", u"50%"}, u"%1s50%"},
    {"UnnumberedGivesOneBlank", u"not %s here", {u"a"}, u" "},
    {"DoublePercentGivesOneBlank", u"100%% of %1s", {u"a"}, u" "},
    {"PercentAtEndGivesOneBlank", u"100%", {}, u" "},
    {"LonePercentGivesOneBlank", u"%", {}, u" "},
    {"BlankWinsOverEarlierText", u"%1s costs 5%", {u"It"}, u" "},
    {"NumberZeroGivesOneBlank", u"%0s", {u"a"}, u" "},
    {"NumberElevenGivesOneBlank", u"%11s", {u"a"}, u" "},
    {"HugeNumberGivesOneBlank", u"%99999999999999999999s", {u"a"}, u" "},
    {"NumberTwiceKeepsTheLast", u"%1s %1s", {u"a", u"b"}, u"b "},
    {"GapLosesTheArgument", u"[%3s]", {u"a"}, u"[]"},
    {"MissingArgumentIsEmpty", u"%1s-%2s-%3d", {u"a"}, u"a--"},
    {"DigitAtTheEnd", u"x%1", {7}, u"x7"},
    {"AdjoiningPercent", u"%1%2s", {u"a", u"b"}, u"02s"},
    {"TenPlaceholders", u"%1s%2s%3s%4s%5s%6s%7s%8s%9s%10s", kNine, u"12345678910s"},
    {"ElevenPlaceholders", u"%1s%2s%3s%4s%5s%6s%7s%8s%9s%1s%2s", kNine, u""},
    {"ElevenUnnumbered", u"%ss%ss%ss%ss%ss%ss%ss%ss%ss%ss%ss", kNine, u""},
    {"IntegerForText", u"%1s", {5}, u"5"},
    {"TextForInteger", u"%1d", {u" -17 apples"}, u"-17"},
    {"WordForInteger", u"%1d", {u"apples"}, u"0"},
    // The letter at the place of the number decides, not the placeholder's own: the first argument
    // goes to number 2, whose place holds a "d".
    {"TypeIsLookedUpByNumber", u"%2s:%1d", {u"7x", 3}, u"3:7"},
};
const FormatCase kPlainCases[] = {
    {"TextAndNumbers", u"%d of %s, %i", {3, u"x", -4}, u"3 of x, -4"},
    {"NoPlaceholder", u"plain", {u"a"}, u"plain"},
    {"Empty", u"", {}, u""},
    {"PercentSign", u"%d%% done", {40}, u"40% done"},
    {"PercentAtEnd", u"%s is 100%", {u"It"}, u"It is 100%"},
    {"LonePercent", u"%", {}, u"%"},
    {"UnknownLetterStays", u"%q %s", {u"a"}, u"%q a"},
    {"MissingArgumentIsEmpty", u"%s-%d-", {u"a"}, u"a--"},
    {"PercentInArgumentStays", u"%s %s", {u"%s", u"b"}, u"%s b"},
    {"IntegerForText", u"%s", {5}, u"5"},
    {"TextForInteger", u"%d", {u"x"}, u"0"},
    {"NonAsciiText", u"\u00b5%s\u2022", {u"\u65e5\u672c"}, u"\u00b5\u65e5\u672c\u2022"},
};

TEST(FormatMessage, FillsPlaceholders) {
  for (const FormatCase& c : kNumberedCases)
    EXPECT_EQ(cor::ToUtf8(c.expected), cor::ToUtf8(FormatMessage(c.format, c.args))) << c.name;
  for (const FormatCase& c : kPlainCases)
    EXPECT_EQ(cor::ToUtf8(c.expected), cor::ToUtf8(FormatPlain(c.format, c.args))) << c.name;
}

TEST(FormatTableMessage, PicksTheFormatterThatTheTextCallsFor) {
  const auto table = StringTable::Parse("209\t%2s: %1s\n");
  ASSERT_TRUE(table.has_value());
  const std::vector<MessageArg> args{u"x", u"Name"};
  const struct {
    WString text;
    const char* expected;
  } cases[] = {
      {FormatTableMessage(208, -1, u"Month"),
       "The value -1 is out of the valid range of arguments for the property Month."},
      {FormatTableMessage(245, u"Inverse"), "Inverse not implemented."},
      {FormatTableMessage(364, 99), "The value 99 is not a valid data type."},
      {FormatTableMessage(250), "Unknown error."},
      {FormatTableMessage(1, u"a"), ""},
      // The texts of another language.
      {FormatTableMessage(*table, 209, args), "Name: x"},
      {FormatTableMessage(*table, 212, args), ""},
      // The numbered form, whatever the text calls for.
      {LoadFormattedMessage(366, u"P"), "The ContextParameter P does not exist."},
      {LoadFormattedMessage(241, u"Search"), " "},
      {LoadFormattedMessage(2, u"Search"), ""},
  };
  for (const auto& c : cases) EXPECT_EQ(c.expected, cor::ToUtf8(c.text));
}

// Every text of the table can be shown: with all its arguments at hand none is lost, and none comes
// out as the blank of a wrong format.
TEST(FormatTableMessage, EveryTextTakesItsArguments) {
  const std::vector<MessageArg> args{11, 22, 33};
  for (const StringTable::Entry& entry : StringTable::Default().Entries()) {
    const std::u16string format = entry.text.str();
    const auto percents = std::count(format.begin(), format.end(), u'%');
    const WString shown = FormatTableMessage(entry.number, args);
    EXPECT_EQ(-1, shown.Find(u"%")) << entry.number;
    for (int i = 1; i <= percents; ++i)
      EXPECT_NE(-1, shown.Find(i == 1 ? u"11" : i == 2 ? u"22" : u"33")) << entry.number;
    EXPECT_GT(shown.size(), 1U) << entry.number;
  }
}

}  // namespace
}  // namespace hv::automation
