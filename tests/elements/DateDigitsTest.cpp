// elements/DateDigitsTest.cpp - digits into automation dates and back.
#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "elements/DateDigits.h"

namespace hv::vex::easyImpl {
namespace {

constexpr double kMillisecond = 1.0 / 86'400'000;

struct ReadCase {
  const char* name;
  std::u16string_view digits;
  double date;  ///< NaN: refused
};
constexpr double kRefused = std::numeric_limits<double>::quiet_NaN();

class DateOfDigitsTest : public ::testing::TestWithParam<ReadCase> {};
TEST_P(DateOfDigitsTest, ReadsOrRefuses) {
  const std::optional<double> date = DateOfDigits(GetParam().digits);
  ASSERT_EQ(!std::isnan(GetParam().date), date.has_value());
  if (date) {
    EXPECT_NEAR(GetParam().date, *date, kMillisecond / 4);
  }
}
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
    {"TooShort", u"200", kRefused},
    {"Empty", u"", kRefused},
    {"TooLong", u"200102030405060070080091", kRefused},
    {"NotADigit", u"2001020x", kRefused},
    {"MonthThirteen", u"20011301", kRefused},
    {"DayThirtyTwo", u"20010132", kRefused},
};
INSTANTIATE_TEST_SUITE_P(Digits, DateOfDigitsTest, ::testing::ValuesIn(kReadCases),
                         [](const auto& row) { return std::string(row.param.name); });

struct WriteCase {
  const char* name;
  double date;
  const char* digits;  ///< empty: refused
};
class DigitsOfDateTest : public ::testing::TestWithParam<WriteCase> {};
TEST_P(DigitsOfDateTest, WritesOrRefuses) {
  const std::optional<WString> digits = DigitsOfDate(GetParam().date);
  EXPECT_EQ(GetParam().digits, digits ? cor::ToUtf8(*digits) : "");
}
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
INSTANTIATE_TEST_SUITE_P(Dates, DigitsOfDateTest, ::testing::ValuesIn(kWriteCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(DateDigits, RoundTrip) {
  for (const std::u16string_view digits :
       {u"20240229235959", u"20010203040506007", u"18000101000001", u"01000301120000"}) {
    const std::optional<double> date = DateOfDigits(digits);
    ASSERT_TRUE(date);
    EXPECT_EQ(cor::ToUtf8(digits), cor::ToUtf8(*DigitsOfDate(*date)));
  }
}

}  // namespace
}  // namespace hv::vex::easyImpl
