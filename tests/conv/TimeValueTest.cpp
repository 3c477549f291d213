// tests/conv/TimeValueTest.cpp - time values between fields, digits and seconds.
#include "util/conv/TimeValue.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "util/conv/Calendar.h"

namespace hv::util::conv {
namespace {

TEST(TimeValue, IsNoTimeUntilItIsSet) {
  const TimeValue time;
  EXPECT_EQ(0U, time.fraction);
  EXPECT_EQ(TimeValue::kNoTime, time.GetSecondsBase());
  EXPECT_FALSE(time.IsTime());
  EXPECT_TRUE(TimeValue::FromText("2001").IsTime());
  EXPECT_EQ("0000", time.ToText().substr(0, 4)) << "a year far below 0";
}

struct TextCase {
  const char* name;
  const char* text;
  const char* digits;  // read and written again
};
constexpr TextCase kTexts[] = {
    {"AllDigits", "20010203040506007008009", "20010203040506007008009"},
    {"Origin", "19040101000000000000000", "19040101000000000000000"},
    {"YearAlone", "2001", "20010101000000000000000"},
    {"ShortYear", "20", "00200101000000000000000"},
    {"Empty", "", "00000101000000000000000"},
    {"OneDigitOfMonth", "20011", "20010101000000000000000"},
    {"OneDigitOfMonthTwo", "20012", "20010201000000000000000"},
    {"MonthAndDay", "20011231", "20011231000000000000000"},
    {"ZeroMonthAndDay", "20010000", "20010101000000000000000"},
    {"MonthBeyondTheYear", "20011307", "20010107000000000000000"},
    {"DayRunsOver", "20010230", "20010302000000000000000"},
    {"HourRunsOver", "2001013125", "20010201010000000000000"},
    {"LeapDay", "20000229", "20000229000000000000000"},
    {"NoLeapDay", "19000229", "19000301000000000000000"},
    {"OneDecimal", "200102030405065", "20010203040506500000000"},
    {"TwoDecimals", "2001020304050605", "20010203040506050000000"},
    {"FiveDecimals", "2001020304050600700", "20010203040506007000000"},
    {"SevenDecimals", "200102030405060070089", "20010203040506007008900"},
    {"TooLong", "200102030405060070080091234", "20010203040506007008009"},
    {"LastOfAll", "99991231235959999999999", "99991231235959999999999"},
    {"LettersInTheYear", "A0001231", "00001231000000000000000"},
    {"LettersElsewhere", "2001ab03", "20010103000000000000000"},
    {"BlankBeforeDigit", "2001 203", "20010203000000000000000"},
    {"NegativeYear", "-0010203", "00000203000000000000000"},
    {"FirstOfYear1", "00010102", "00010102000000000000000"},
};
TEST(TimeValue, ReadsWhateverDigitsThereAre) {
  for (const TextCase& c : kTexts) {
    EXPECT_EQ(c.digits, TimeValue::FromText(c.text).ToText()) << c.name;
  }
}

TEST(TimeValue, WritesAsMuchAsIsWanted) {
  const TimeValue time = TimeValue::FromText("20010203040506007008009");
  const struct {
    int length;
    const char* text;
  } kCases[] = {{-1, "untouched"},
                {0, ""},
                {4, "2001"},
                {22, "2001020304050600700800"},
                {23, "20010203040506007008009"},
                {25, "20010203040506007008009  "}};
  for (const auto& c : kCases) {
    std::string text = "untouched";
    time.ToText(&text, c.length);
    EXPECT_EQ(c.text, text) << c.length;
  }
}

TEST(TimeValue, ShowsYearsOutsideOfFourDigitsAsTheNearest) {
  EXPECT_EQ("99990203000000000000000", TimeValue::FromParts({12345, 2, 3}).ToText());
  EXPECT_EQ("00000203000000000000000", TimeValue::FromParts({-7, 2, 3}).ToText());
}

/// Every date of 1200 years around 0, and nanoseconds of all kinds, come back as they went in.
TEST(TimeValue, GivesBackTheFieldsThatItWasMadeOf) {
  std::mt19937 random(7);
  for (std::int32_t year = -600; year <= 600; ++year) {
    for (std::int32_t month = 1; month <= 12; ++month) {
      const auto below = [&random](std::uint32_t limit) {
        return static_cast<std::int32_t>(random() % limit);
      };
      const TimeParts parts{year,      month,       below(28) + 1, below(24),  below(60),
                            below(60), below(1000), below(1000),   below(1000)};
      ASSERT_EQ(parts, TimeValue::FromParts(parts).ToParts())
          << year << '-' << month << '-' << parts.day;
    }
  }
  for (const std::int32_t year : {-2'000'000'000, -40'000, 40'000, 2'000'000'000}) {
    const TimeParts parts{year, 12, 30, 23, 59, 59, 999, 999, 999};
    EXPECT_EQ(parts, TimeValue::FromParts(parts).ToParts()) << year;
  }
}

TEST(Calendar, CountsDaysWithoutAGap) {
  EXPECT_EQ(kDayOfOrigin, DayNumber(1904, 1, 1));
  EXPECT_EQ(60'084'288'000, kSecondsOfOrigin);
  EXPECT_EQ(0, DayNumber(0, 1, 1));
  EXPECT_EQ(DayNumber(0, 12, 31), DayNumber(1, 1, 1)) << "one number for two days";
  for (std::int64_t number = -200'000; number < 800'000; ++number) {
    const CalendarDate date = DateOfDayNumber(number);
    ASSERT_EQ(number, DayNumber(date.year, date.month, date.day)) << number;
  }
}

TEST(TimeValue, HoldsABareDurationWithoutYearAndMonth) {
  const TimeValue time = TimeValue::FromParts({0, 0, 2, 3, 4, 5, 500});
  EXPECT_EQ(2 * 86400 + 3 * 3600 + 4 * 60 + 5 - kSecondsOfOrigin, time.seconds);
  EXPECT_EQ(std::uint64_t{1} << 63, time.fraction);
}

TEST(TimeValue, DropsWholeSecondsOfTheDecimals) {
  const TimeValue time = TimeValue::FromParts({2001, 2, 3, 4, 5, 6, 1500});
  EXPECT_EQ("20010203040506500000000", time.ToText());
  EXPECT_EQ("20010203040506250000000", TimeValue::FromRecord({2001, 2, 3, 4, 5, 6, 7.25}).ToText());
}

TEST(TimeValue, StaysDefinedAtTheLimits) {
  constexpr auto kMost = std::numeric_limits<std::int64_t>::max();
  const TimeValue last{std::numeric_limits<std::uint64_t>::max(), kMost};
  const TimeParts parts = last.ToParts();
  EXPECT_EQ(std::numeric_limits<std::int32_t>::max(), parts.year);
  EXPECT_EQ(999, parts.millisecond) << "a fraction that rounds to a whole second";
  EXPECT_EQ(0, parts.microsecond);
  EXPECT_EQ(last.seconds, last.AddDays(kMost).seconds);
  EXPECT_EQ(TimeValue::kNoTime, TimeValue().AddDays(-1).seconds);
  EXPECT_EQ(kMost - kSecondsOfOrigin, TimeValue::FromSeconds(1e300, NAN).seconds);
  EXPECT_EQ(TimeValue::kNoTime, TimeValue::FromSeconds(-1e300, 0).seconds);
  EXPECT_EQ(-kSecondsOfOrigin, TimeValue::FromSeconds(NAN, INFINITY).seconds);
}

TEST(TimeValue, CountsSecondsAndDays) {
  const TimeValue noon = TimeValue::FromText("1904010212000025");
  EXPECT_EQ(86400 + 43200, noon.GetSecondsBase());
  EXPECT_DOUBLE_EQ(86400 + 43200 + 0.25, noon.ToSeconds());
  EXPECT_EQ("19031231120000250000000", noon.AddDays(-2).ToText());
  EXPECT_EQ("20040229120000250000000", noon.AddDays(36'583).ToText());
  EXPECT_EQ(noon, TimeValue::FromSeconds(60'084'288'000.0 + 129'600, 0.25));
  EXPECT_EQ(0.25, noon.ToRecord().fraction);
}

TEST(TimeValue, IsOrderedBySecondsFirst) {
  const TimeValue early{5, 1};
  EXPECT_LT(early, (TimeValue{0, 2}));
  EXPECT_LT(early, (TimeValue{6, 1}));
  EXPECT_GT(early, (TimeValue{std::numeric_limits<std::uint64_t>::max(), -1}));
  EXPECT_GT(early, TimeValue());
}

}  // namespace
}  // namespace hv::util::conv
