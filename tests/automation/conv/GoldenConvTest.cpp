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
  CheckTable("wtoi.tsv", 1006, 397, [](const Row& row) {
    const std::string& function = row[1];
    if (function == "_wtoi") return false;
    const std::string text = DecodeBytes(row[2]);
    if (function == "_atoi64") {
      EXPECT_EQ(std::stoll(row[3]), ReadInt64(text));
    } else if (function == "sscanf") {
      // The measured library wraps beyond 64 bits, where later ones stop at the limit.
      if (IsBeyond64Bits(text)) return false;
      EXPECT_EQ(row[4] == "1" ? std::stoull(row[3]) : 0, ReadUInt64(text));
    } else {
      // The oldest library wraps in `atoi` and `atol`; all later ones stop at the limits.
      if (row[0] == "msvcrt.dll" && ReadInt64(text) != ReadInt32(text)) return false;
      EXPECT_EQ(std::stol(row[3]), ReadInt32(text));
    }
    return true;
  });
  EXPECT_EQ(18446744073709551615U, ReadUInt64("18446744073709551616"));
  EXPECT_EQ(1U, ReadUInt64("-18446744073709551615"));
}

/// A date is the reference's, but for the milliseconds that the reference rounds away.
TEST(AutomationDate, BreaksDownAsTheReferenceDoes) {
  CheckTable("varianttime.tsv", 673, 43, [](const Row& row) {
    const double date = DecodeDouble(row[0]);
    if (std::isnan(date) || (date >= -1 && date <= 1)) return false;  // a time of day: another day
    const TimeValue time = FromAutomationDate(date);
    EXPECT_EQ(row[2] == "1", time.IsTime());
    if (row[2] != "1") return true;
    const TimeParts expected{std::stoi(row[3]), std::stoi(row[4]), std::stoi(row[5]),
                             std::stoi(row[6]), std::stoi(row[7]), std::stoi(row[8])};
    const double seconds = time.ToSeconds() - TimeValue::FromParts(expected).ToSeconds();
    EXPECT_LE(std::fabs(seconds), time.ToParts().millisecond == 0 ? 0 : 0.5011) << time.ToText();
    return true;
  });
}

}  // namespace
}  // namespace hv::util::conv
