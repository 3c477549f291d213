// tests/automation/variant/PlatformTest.cpp - automation dates, the lenient reader of numbers and
// the 40-digit format against the reference tables.
#include "automation/variant/PlatformNumbers.h"
#include "automation/variant/VariantTime.h"

#include <gtest/gtest.h>

#include "GoldenTable.h"

namespace hv::automation {
namespace {

using namespace golden;  // NOLINT: the vocabulary of the reference tables

SystemTime FieldsFrom(const Row& row, std::size_t first) {
  SystemTime time;
  for (std::uint16_t* field : {&time.year, &time.month, &time.day, &time.hour, &time.minute,
                               &time.second, &time.millisecond}) {
    *field = static_cast<std::uint16_t>(std::stoul(row[first++]));
  }
  return time;
}

TEST(VariantTime, BreaksDatesDown) {
  CheckTable("varianttime.tsv", 716, 0, [](const Row& row) {
    SystemTime time;
    const bool ok = VariantTimeToSystemTime(DecodeDouble(row[0]), &time);
    EXPECT_EQ(ok, row[2] == "1");
    time.dayOfWeek = 0;
    EXPECT_TRUE(!ok || time == FieldsFrom(row, 3));
    return true;
  });
}

TEST(VariantTime, MakesDatesOfFields) {
  CheckTable("systemtime.tsv", 156, 0, [](const Row& row) {
    double date = 0;
    const bool ok = SystemTimeToVariantTime(FieldsFrom(row, 0), &date);
    EXPECT_EQ(ok, row[7] == "1");
    EXPECT_TRUE(!ok || date == DecodeDouble(row[8])) << date;
    return true;
  });
}

TEST(VariantTime, GivesTheWeekdayAndEndsWithTheRange) {
  SystemTime time;
  ASSERT_TRUE(VariantTimeToSystemTime(39950, &time));
  EXPECT_EQ(time.dayOfWeek, 0) << "2009-05-17 was a Sunday";
  ASSERT_TRUE(VariantTimeToSystemTime(-1, &time));
  EXPECT_EQ(time.dayOfWeek, 5) << "1899-12-29 was a Friday";
  double date = 5;
  EXPECT_FALSE(SystemTimeToVariantTime({.year = 9999, .month = 12, .day = 31, .hour = 24}, &date));
  EXPECT_EQ(date, 5);
}

TEST(PlatformNumbers, ReadsNumbers) {
  CheckTable("wtoi.tsv", 331, 1072, [](const Row& row) {
    if (row[1] != "_wtoi") return false;
    EXPECT_EQ(ParseInt32LikeWtoi(DecodeText(row[2])), std::stol(row[3]));
    return true;
  });
}

TEST(PlatformNumbers, FormatsFortyDigits) {
  CheckTable("gcvt40_documented.tsv", 216, 0, [](const Row& row) {
    EXPECT_EQ(FormatGcvt40(DecodeDouble(row[0])), row[2]);
    return true;
  });
}

}  // namespace
}  // namespace hv::automation
