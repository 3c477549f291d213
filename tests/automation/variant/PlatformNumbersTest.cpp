// tests/automation/variant/PlatformNumbersTest.cpp - the lenient readers and the 40-digit format
// against the reference tables.
#include "automation/variant/PlatformNumbers.h"

#include <gtest/gtest.h>

#include "GoldenTable.h"

namespace hv::automation {
namespace {

using golden::DecodeBytes;
using golden::DecodeDouble;
using golden::DecodeText;
using golden::ReadTable;
using golden::Row;
using golden::Tally;

bool HasOnlyBlanks(const std::string& text) {
  return !text.empty() && text.find_first_not_of(" \t\n\v\f\r") == std::string::npos;
}

/// True if the digits say more than 64 bits can hold.
bool IsBeyond64Bits(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t\n\v\f\r+-0");
  if (first == std::string::npos) return false;
  const std::size_t end = std::min(text.find_first_not_of("0123456789", first), text.size());
  const std::string digits = text.substr(first, end - first);
  const std::string most = "18446744073709551615";
  return digits.size() > most.size() || (digits.size() == most.size() && digits > most);
}

bool IsBeyond32Bits(const std::string& text) {
  const std::int64_t value = ParseInt64LikeAtoi64(text);
  return value != static_cast<std::int32_t>(value);
}

TEST(PlatformNumbers, ReadsNumbers) {
  Tally tally;
  for (const Row& row : ReadTable("wtoi.tsv")) {
    SCOPED_TRACE(row.line);
    const std::string& function = row[1];
    if (function == "_wtoi") {
      EXPECT_EQ(ParseInt32LikeWtoi(DecodeText(row[2])), std::stol(row[3]));
    } else if (function == "_atoi64") {
      EXPECT_EQ(ParseInt64LikeAtoi64(DecodeBytes(row[2])), std::stoll(row[3]));
    } else if (function == "sscanf") {
      const std::string text = DecodeBytes(row[2]);
      // The measured library answers 0 for blanks alone, where -1 is documented, and wraps beyond
      // 64 bits, where later ones stop at the limit.
      if (HasOnlyBlanks(text) || IsBeyond64Bits(text)) {
        tally.LeaveOut();
        continue;
      }
      std::uint64_t value = 12345;
      EXPECT_EQ(ScanUInt64LikeSscanf(text, &value), std::stoi(row[4]));
      EXPECT_EQ(value, std::stoull(row[3]));
    } else if (row[0] == "msvcrt.dll" && IsBeyond32Bits(DecodeBytes(row[2]))) {
      // The oldest library wraps in `atoi` and `atol`; all later ones stop at the limits.
      tally.LeaveOut();
      continue;
    } else {
      EXPECT_EQ(ParseInt32LikeAtoi(DecodeBytes(row[2])), std::stol(row[3]));
    }
    tally.Assert();
  }
  tally.Finish(1333, 70);
}

TEST(PlatformNumbers, ScanStopsAtTheLimitAndTellsTheEnd) {
  std::uint64_t value = 5;
  EXPECT_EQ(ScanUInt64LikeSscanf(" \t", &value), -1);
  EXPECT_EQ(value, 5U);
  EXPECT_EQ(ScanUInt64LikeSscanf("18446744073709551616", &value), 1);
  EXPECT_EQ(value, 18446744073709551615U);
  EXPECT_EQ(ScanUInt64LikeSscanf("-18446744073709551615", &value), 1);
  EXPECT_EQ(value, 1U);
}

TEST(PlatformNumbers, FormatsFortyDigits) {
  Tally tally;
  for (const Row& row : ReadTable("gcvt40_documented.tsv")) {
    SCOPED_TRACE(row.line);
    EXPECT_EQ(FormatGcvt40(DecodeDouble(row[0])), row[2]);
    tally.Assert();
  }
  tally.Finish(216, 0);
}

}  // namespace
}  // namespace hv::automation
