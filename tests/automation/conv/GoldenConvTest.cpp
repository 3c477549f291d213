// tests/automation/conv/GoldenConvTest.cpp - readers and dates against the reference tables.
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "../variant/GoldenTable.h"
#include "automation/conv/AutomationDate.h"
#include "util/conv/NumberReader.h"

namespace hv::util::conv {
namespace {

using namespace golden;  // NOLINT: the vocabulary of the reference tables

/// True if the digits say more than 64 bits can hold.
bool IsBeyond64Bits(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t\n\v\f\r+-0");
  if (first == std::string::npos) return false;
  const std::size_t end = std::min(text.find_first_not_of("0123456789", first), text.size());
  const std::string digits = text.substr(first, end - first);
  const std::string most = "18446744073709551615";
  return digits.size() > most.size() || (digits.size() == most.size() && digits > most);
}

TEST(NumberReader, ReadsAsTheReferenceDoes) {
  Tally tally;
  for (const Row& row : ReadTable("wtoi.tsv")) {
    SCOPED_TRACE(row.line);
    const std::string& function = row[1];
    const std::string text = DecodeBytes(row[2]);
    if (function == "_wtoi") continue;
    if (function == "_atoi64") {
      EXPECT_EQ(std::stoll(row[3]), ReadInt64(text));
    } else if (function == "sscanf") {
      // The measured library wraps beyond 64 bits, where later ones stop at the limit.
      if (IsBeyond64Bits(text)) {
        tally.LeaveOut();
        continue;
      }
      EXPECT_EQ(row[4] == "1" ? std::stoull(row[3]) : 0, ReadUInt64(text));
    } else if (row[0] == "msvcrt.dll" && ReadInt64(text) != ReadInt32(text)) {
      // The oldest library wraps in `atoi` and `atol`; all later ones stop at the limits.
      tally.LeaveOut();
      continue;
    } else {
      EXPECT_EQ(std::stol(row[3]), ReadInt32(text));
    }
    tally.Assert();
  }
  tally.Finish(1006, 66);
  EXPECT_EQ(18446744073709551615U, ReadUInt64("18446744073709551616"));
  EXPECT_EQ(1U, ReadUInt64("-18446744073709551615"));
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
