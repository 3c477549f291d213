// tests/automation/conv/AutomationDateTest.cpp - time values from and to automation dates.
#include "automation/conv/AutomationDate.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "automation/variant/VariantTime.h"

namespace hv::util::conv {
namespace {

constexpr double kMillisecond = 1.0 / 86'400'000;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::string DigitsAt(double date) { return FromAutomationDate(date).ToText(); }

struct DateCase {
  double date;
  const char* digits;
};

TEST(AutomationDate, ConvertsInBothDirections) {
  constexpr DateCase kBothWays[] = {
      {0.0, "00000101000000000000000"},       {0.5, "00000101120000000000000"},
      {0.25, "00000101060000000000000"},      {2.0, "19000101000000000000000"},
      {60.0, "19000228000000000000000"},      {61.0, "19000301000000000000000"},
      {1462.0, "19040101000000000000000"},    {36526.75, "20000101180000000000000"},
      {36585.0, "20000229000000000000000"},   {45000.5, "20230315120000000000000"},
      {2958464.0, "99991230000000000000000"}, {-2.0, "18991228000000000000000"},
      {-1.25, "18991229060000000000000"},     {-657434.0, "01000101000000000000000"},
  };
  for (const DateCase& c : kBothWays) {
    EXPECT_EQ(c.digits, DigitsAt(c.date));
    EXPECT_EQ(c.date, ToAutomationDate(TimeValue::FromText(c.digits))) << c.digits;
  }
}

TEST(AutomationDate, RoundsToTheNearestMillisecondAndSecond) {
  constexpr double kNoon = 45000.5;
  const DateCase cases[] = {
      // A bare time of day, up to one day.
      {-0.5, "00000101120000000000000"},
      {1.0, "00000102000000000000000"},
      {-1.0, "00000102000000000000000"},
      {kNoon + 0.6 * kMillisecond, "20230315120000001000000"},
      {kNoon + 0.3 * kMillisecond, "20230315120000000000000"},
      {kNoon + 999.8 * kMillisecond, "20230315120001000000000"},
      {kNoon + 999.0 * kMillisecond, "20230315120000999000000"},
      // No milliseconds before day 0.
      {-1.25 - 250 * kMillisecond, "18991229060000000000000"},
      {-1.25 - 750 * kMillisecond, "18991229060001000000000"},
      // Cut below milliseconds.
      {ToAutomationDate(TimeValue::FromText("20230315120000001999999")), "20230315120000001000000"},
  };
  for (const DateCase& c : cases) EXPECT_EQ(c.digits, DigitsAt(c.date)) << c.date;
  for (int millisecond = 0; millisecond < 1000; ++millisecond) {
    const TimeValue time = TimeValue::FromParts({2023, 3, 15, 23, 59, 59, millisecond});
    ASSERT_EQ(time.ToText(), DigitsAt(ToAutomationDate(time)));
  }
}

TEST(AutomationDate, KnowsItsBounds) {
  for (const double date : {kNan, kInfinity, -kInfinity, 1e300, -657435.0, 2958466.0}) {
    EXPECT_FALSE(FromAutomationDate(date).IsTime()) << date;
    EXPECT_FALSE(IsAutomationDate(date)) << date;
  }
  EXPECT_TRUE(IsAutomationDate(-657434.99));
  EXPECT_TRUE(IsAutomationDate(2958464.99));
  EXPECT_FALSE(IsAutomationDate(2958465.0));
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

TEST(DateOfDigits, ReadsOrRefuses) {
  const struct {
    std::u16string_view digits;
    std::optional<double> date = {};
  } cases[] = {
      {u"18991230", 0},
      {u"2001", 36892},
      {u"200102", 36923},
      {u"20010000", 36892},
      {u"18991231120000", 1.5},
      {u"18991229060000", -1.25},
      {u"18991231000000500", 1 + 500 * kMillisecond},
      {u"189912310000005", 1 + 500 * kMillisecond},
      {u"18991231000000007999999", 1 + 7 * kMillisecond},
      {u"00450701", -677341},
      {u"01000101", -657434},
      {u"99991231235959", 2958465.999988426},
      {u"00000101180000", 0.75},
      {u"1899122830", -1.25},
      {u"00010101", -693593},
      {u"200"},
      {u""},
      {u"200102030405060070080091"},
      {u"2001020x"},
      {u"20011301"},
      {u"20010132"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(cor::ToUtf8(c.digits));
    const std::optional<double> date = DateOfDigits(c.digits);
    ASSERT_EQ(c.date.has_value(), date.has_value());
    EXPECT_NEAR(c.date.value_or(0), date.value_or(0), kMillisecond / 4);
  }
}

TEST(DigitsOfDate, WritesOrRefuses) {
  constexpr DateCase kCases[] = {
      {0, "18991230000000"},
      {1.5, "18991231120000"},
      {-1.25, "18991229060000"},
      {1 - kMillisecond / 8, "18991231000000"},
      {1 + 7 * kMillisecond, "18991231000000007"},
      {-657434, "01000101000000"},
      {-657435, ""},
      {2958466, ""},
      {kNan, ""},
      {kInfinity, ""},
  };
  for (const DateCase& c : kCases) {
    const std::optional<WString> digits = DigitsOfDate(c.date);
    EXPECT_EQ(c.digits, digits ? cor::ToUtf8(*digits) : "") << c.date;
  }
  for (const std::u16string_view digits :
       {u"20240229235959", u"20010203040506007", u"18000101000001", u"01000301120000"}) {
    EXPECT_EQ(digits, DigitsOfDate(DateOfDigits(digits).value_or(0)).value_or(u"").view());
  }
}

}  // namespace
}  // namespace hv::util::conv
