// tests/automation/variant/PlatformNumbersTest.cpp - the lenient reader and the 40-digit format
// against the reference tables.
#include "automation/variant/PlatformNumbers.h"

#include <gtest/gtest.h>

#include "GoldenTable.h"

namespace hv::automation {
namespace {

using golden::DecodeDouble;
using golden::DecodeText;
using golden::ReadTable;
using golden::Row;
using golden::Tally;

TEST(PlatformNumbers, ReadsNumbers) {
  Tally tally;
  for (const Row& row : ReadTable("wtoi.tsv")) {
    if (row[1] != "_wtoi") continue;
    SCOPED_TRACE(row.line);
    EXPECT_EQ(ParseInt32LikeWtoi(DecodeText(row[2])), std::stol(row[3]));
    tally.Assert();
  }
  tally.Finish(331, 0);
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
