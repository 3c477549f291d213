// tests/automation/conv/GoldenConvTest.cpp - readers and dates against the reference tables.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "../variant/GoldenTable.h"
#include "automation/conv/AutomationDate.h"
#include "automation/variant/PlatformNumbers.h"
#include "util/conv/NumberReader.h"

namespace hv::util::conv {
namespace {

using golden::DecodeBytes;
using golden::DecodeDouble;
using golden::ReadTable;
using golden::Row;
using golden::Tally;

bool IsBeyond32Bits(const std::string& text) {
  const std::int64_t value = ReadInt64(text);
  return value != static_cast<std::int32_t>(value);
}

/// The two readers of the lower and the upper layer answer alike, as the tables tell.
TEST(NumberReader, ReadsAsTheReferenceDoes) {
  Tally tally;
  for (const Row& row : ReadTable("wtoi.tsv")) {
    SCOPED_TRACE(row.line);
    const std::string& function = row[1];
    if (function == "_atoi64") {
      EXPECT_EQ(std::stoll(row[3]), ReadInt64(DecodeBytes(row[2])));
    } else if (function == "atoi" || function == "atol") {
      // The oldest library wraps beyond 32 bits; all later ones stop at the limits.
      if (row[0] == "msvcrt.dll" && IsBeyond32Bits(DecodeBytes(row[2]))) continue;
      EXPECT_EQ(std::stol(row[3]), ReadInt32(DecodeBytes(row[2])));
    } else if (function == "sscanf") {
      std::uint64_t expected = 0;
      (void)automation::ScanUInt64LikeSscanf(DecodeBytes(row[2]), &expected);
      EXPECT_EQ(expected, ReadUInt64(DecodeBytes(row[2])));
    } else {
      continue;
    }
    tally.Assert();
  }
  tally.Finish(1020, 0);
}

/// A date is the reference's, but for the milliseconds that the reference rounds away.
TEST(AutomationDate, BreaksDownAsTheReferenceDoes) {
  Tally tally;
  for (const Row& row : ReadTable("varianttime.tsv")) {
    SCOPED_TRACE(row.line);
    const double date = DecodeDouble(row[0]);
    if (std::isnan(date) || (date >= -1 && date <= 1)) {
      tally.LeaveOut();  // a bare time of day has another day
      continue;
    }
    const TimeValue time = FromAutomationDate(date);
    tally.Assert();
    ASSERT_EQ(row[2] == "1", time.IsTime());
    if (!time.IsTime()) continue;
    const TimeParts expected{std::stoi(row[3]), std::stoi(row[4]), std::stoi(row[5]),
                             std::stoi(row[6]), std::stoi(row[7]), std::stoi(row[8])};
    const double seconds = time.ToSeconds() - TimeValue::FromParts(expected).ToSeconds();
    const std::int32_t milliseconds = time.ToParts().millisecond;
    if (milliseconds == 0) {
      EXPECT_EQ(0, seconds);
    } else {
      EXPECT_LE(std::fabs(seconds), 0.5011) << time.ToText();
    }
  }
  tally.Finish(673, 43);
}

}  // namespace
}  // namespace hv::util::conv
