// tests/automation/conv/AutomationDateTest.cpp - time values from and to automation dates.
#include "automation/conv/AutomationDate.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "automation/variant/VariantTime.h"

namespace hv::util::conv {
namespace {

constexpr double kMillisecond = 1.0 / 86'400'000;

struct DateCase {
  double date;
  const char* digits;
};

/// Dates and times that are the same in both directions.
constexpr DateCase kBothWays[] = {
    {0.0, "00000101000000000000000"},       {0.5, "00000101120000000000000"},
    {0.25, "00000101060000000000000"},      {2.0, "19000101000000000000000"},
    {60.0, "19000228000000000000000"},      {61.0, "19000301000000000000000"},
    {1462.0, "19040101000000000000000"},    {36526.75, "20000101180000000000000"},
    {36585.0, "20000229000000000000000"},   {45000.5, "20230315120000000000000"},
    {2958464.0, "99991230000000000000000"}, {-2.0, "18991228000000000000000"},
    {-1.25, "18991229060000000000000"},     {-657434.0, "01000101000000000000000"},
};

TEST(AutomationDate, ConvertsInBothDirections) {
  for (const DateCase& c : kBothWays) {
    SCOPED_TRACE(c.digits);
    EXPECT_EQ(c.digits, FromAutomationDate(c.date).ToText());
    EXPECT_EQ(c.date, ToAutomationDate(TimeValue::FromText(c.digits)));
  }
}

TEST(AutomationDate, IsABareTimeOfDayUpToOneDay) {
  EXPECT_EQ("00000101120000000000000", FromAutomationDate(-0.5).ToText());
  EXPECT_EQ("00000102000000000000000", FromAutomationDate(1.0).ToText());
  EXPECT_EQ("00000102000000000000000", FromAutomationDate(-1.0).ToText());
  EXPECT_EQ(0.5, ToAutomationDate(FromAutomationDate(-0.5)));
}

TEST(AutomationDate, KeepsMilliseconds) {
  for (int millisecond = 0; millisecond < 1000; ++millisecond) {
    const TimeValue time = TimeValue::FromParts({2023, 3, 15, 23, 59, 59, millisecond});
    ASSERT_EQ(time.ToText(), FromAutomationDate(ToAutomationDate(time)).ToText());
  }
}

TEST(AutomationDate, CutsBelowMilliseconds) {
  const TimeValue time = TimeValue::FromText("20230315120000001999999");
  EXPECT_EQ("20230315120000001000000", FromAutomationDate(ToAutomationDate(time)).ToText());
}

TEST(AutomationDate, RoundsToTheNearestMillisecondAndSecond) {
  const double noon = 45000.5;
  EXPECT_EQ("20230315120000001000000", FromAutomationDate(noon + 0.6 * kMillisecond).ToText());
  EXPECT_EQ("20230315120000000000000", FromAutomationDate(noon + 0.3 * kMillisecond).ToText());
  EXPECT_EQ("20230315120001000000000", FromAutomationDate(noon + 999.8 * kMillisecond).ToText());
  EXPECT_EQ("20230315120000999000000", FromAutomationDate(noon + 999.0 * kMillisecond).ToText());
}

TEST(AutomationDate, HasNoMillisecondsBeforeDay0) {
  EXPECT_EQ("18991229060000000000000", FromAutomationDate(-1.25 - 250 * kMillisecond).ToText());
  EXPECT_EQ("18991229060001000000000", FromAutomationDate(-1.25 - 750 * kMillisecond).ToText());
}

TEST(AutomationDate, GivesNoTimeForWhatIsNoDate) {
  using Limits = std::numeric_limits<double>;
  for (const double date : {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(), 1e300,
                            -657435.0, 2958466.0}) {
    EXPECT_FALSE(FromAutomationDate(date).IsTime()) << date;
  }
}

TEST(AutomationDate, KnowsItsBounds) {
  EXPECT_FALSE(IsAutomationDate(-657435.0));
  EXPECT_TRUE(IsAutomationDate(-657434.99));
  EXPECT_TRUE(IsAutomationDate(2958464.99));
  EXPECT_FALSE(IsAutomationDate(2958465.0));
  EXPECT_FALSE(IsAutomationDate(std::nan("")));
}

/// Two ways to the date of a day: the calendar of time values and that of the automation layer.
TEST(AutomationDate, AgreesWithTheCalendarOfTheAutomationLayer) {
  for (double day = -657434; day < 2958465; day += 97) {
    automation::SystemTime fields;
    ASSERT_TRUE(automation::VariantTimeToSystemTime(day, &fields));
    const TimeValue time = TimeValue::FromParts({fields.year, fields.month, fields.day});
    ASSERT_EQ(day, fields.year == 0 ? day : ToAutomationDate(time)) << time.ToText();
  }
}

struct ReadCase {
  const char* name;
  std::u16string_view digits;
  double date;  ///< NaN: refused
};
constexpr double kRefused = std::numeric_limits<double>::quiet_NaN();
constexpr ReadCase kReadCases[] = {
    {"DayZero", u"18991230", 0},
    {"YearAlone", u"2001", 36892},
    {"YearAndMonth", u"200102", 36923},
    {"ZeroMonthAndDay", u"20010000", 36892},
    {"Noon", u"18991231120000", 1.5},
    {"BeforeDayZero", u"18991229060000", -1.25},
    {"MillisecondsCount", u"18991231000000500", 1 + 500 * kMillisecond},
    {"OneDecimalIsATenth", u"189912310000005", 1 + 500 * kMillisecond},
    {"BelowMillisecondsIsDropped", u"18991231000000007999999", 1 + 7 * kMillisecond},
    {"TwoFigureYear", u"00450701", -677341},
    {"YearHundred", u"01000101", -657434},
    {"LastDay", u"99991231235959", 2958465.999988426},
    {"FirstDayOfYearZeroIsATime", u"00000101180000", 0.75},
    {"HoursRunOverBeforeDayZero", u"1899122830", -1.25},
    {"FirstDayOfYearOne", u"00010101", -693593},
    {"TooShort", u"200", kRefused},
    {"Empty", u"", kRefused},
    {"TooLong", u"200102030405060070080091", kRefused},
    {"NotADigit", u"2001020x", kRefused},
    {"MonthThirteen", u"20011301", kRefused},
    {"DayThirtyTwo", u"20010132", kRefused},
};

TEST(DateOfDigits, ReadsOrRefuses) {
  for (const ReadCase& c : kReadCases) {
    const std::optional<double> date = DateOfDigits(c.digits);
    ASSERT_EQ(!std::isnan(c.date), date.has_value()) << c.name;
    if (date) {
      EXPECT_NEAR(c.date, *date, kMillisecond / 4) << c.name;
    }
  }
}

struct WriteCase {
  const char* name;
  double date;
  const char* digits;  ///< empty: refused
};
constexpr WriteCase kWriteCases[] = {
    {"DayZero", 0, "18991230000000"},
    {"Noon", 1.5, "18991231120000"},
    {"BeforeDayZero", -1.25, "18991229060000"},
    {"AlmostMidnight", 1 - kMillisecond / 8, "18991231000000"},
    {"Milliseconds", 1 + 7 * kMillisecond, "18991231000000007"},
    {"FirstYear", -657434, "01000101000000"},
    {"BeforeFirstYear", -657435, ""},
    {"BehindLastYear", 2958466, ""},
    {"NotANumber", kRefused, ""},
    {"Infinite", std::numeric_limits<double>::infinity(), ""},
};

TEST(DigitsOfDate, WritesOrRefuses) {
  for (const WriteCase& c : kWriteCases) {
    const std::optional<WString> digits = DigitsOfDate(c.date);
    EXPECT_EQ(c.digits, digits ? cor::ToUtf8(*digits) : "") << c.name;
  }
}

TEST(DateOfDigits, GivesBackWhatIsWritten) {
  for (const std::u16string_view digits :
       {u"20240229235959", u"20010203040506007", u"18000101000001", u"01000301120000"}) {
    const std::optional<double> date = DateOfDigits(digits);
    ASSERT_TRUE(date);
    EXPECT_EQ(cor::ToUtf8(digits), cor::ToUtf8(*DigitsOfDate(*date)));
  }
}

}  // namespace
}  // namespace hv::util::conv
