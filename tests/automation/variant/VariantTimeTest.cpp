// tests/automation/variant/VariantTimeTest.cpp - automation dates against the reference tables.
#include "automation/variant/VariantTime.h"

#include <gtest/gtest.h>

#include "GoldenTable.h"

namespace hv::automation {
namespace {

using golden::DecodeDouble;
using golden::ReadTable;
using golden::Row;
using golden::Tally;

std::uint16_t Number(const std::string& cell) {
  return static_cast<std::uint16_t>(std::stoul(cell));
}

SystemTime FieldsFrom(const Row& row, std::size_t first) {
  SystemTime time;
  std::uint16_t* const fields[] = {&time.year,   &time.month,  &time.day,        &time.hour,
                                   &time.minute, &time.second, &time.millisecond};
  for (std::uint16_t* field : fields) *field = Number(row[first++]);
  return time;
}

TEST(VariantTime, BreaksDatesDown) {
  Tally tally;
  for (const Row& row : ReadTable("varianttime.tsv")) {
    SCOPED_TRACE(row.line);
    SystemTime time;
    const bool ok = VariantTimeToSystemTime(DecodeDouble(row[0]), &time);
    EXPECT_EQ(ok, row[2] == "1");
    if (ok && row[2] == "1") {
      time.dayOfWeek = 0;
      EXPECT_EQ(time, FieldsFrom(row, 3));
    }
    tally.Assert();
  }
  tally.Finish(716, 0);
}

TEST(VariantTime, MakesDatesOfFields) {
  Tally tally;
  for (const Row& row : ReadTable("systemtime.tsv")) {
    SCOPED_TRACE(row.line);
    double date = 0;
    const bool ok = SystemTimeToVariantTime(FieldsFrom(row, 0), &date);
    EXPECT_EQ(ok, row[7] == "1");
    if (ok && row[7] == "1") {
      EXPECT_EQ(date, DecodeDouble(row[8]));
    }
    tally.Assert();
  }
  tally.Finish(156, 0);
}

TEST(VariantTime, GivesTheWeekday) {
  SystemTime time;
  ASSERT_TRUE(VariantTimeToSystemTime(39950, &time));
  EXPECT_EQ(time.dayOfWeek, 0) << "2009-05-17 was a Sunday";
  ASSERT_TRUE(VariantTimeToSystemTime(-1, &time));
  EXPECT_EQ(time.dayOfWeek, 5) << "1899-12-29 was a Friday";
}

TEST(VariantTime, RefusesMomentsThatRunOutOfTheRange) {
  SystemTime time;
  time.year = 9999;
  time.month = 12;
  time.day = 31;
  time.hour = 24;
  double date = 5;
  EXPECT_FALSE(SystemTimeToVariantTime(time, &date));
  EXPECT_EQ(date, 5);
}

}  // namespace
}  // namespace hv::automation
