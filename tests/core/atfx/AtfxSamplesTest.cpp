// tests/core/atfx/AtfxSamplesTest.cpp - decoded values of a folder of sample files. There are such
// tests only if HV_SAMPLES_DIR names the folder; it holds golden-values.tsv: file, element, id,
// name, representation, parameters, stored form, count, first three values, last value, lowest,
// highest, flags.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "AtfxFixtures.h"
#include "DumpStore.h"
#include "core/plugins/atfx/AtfxWriter.h"

namespace hv::vex::engine::test {
namespace {

std::vector<std::string> Split(const std::string& line, char at) {
  std::vector<std::string> parts;
  std::istringstream in(line);
  for (std::string part; std::getline(in, part, at);) parts.push_back(part);
  return parts;
}

std::vector<double> Numbers(const ValueSource& source) {
  std::vector<double> numbers(static_cast<std::size_t>(source.Count()));
  source.ReadReals(0, numbers);
  return numbers;
}

bool Near(double expected, double actual) {
  return std::fabs(expected - actual) <= 1e-6 * std::max(1.0, std::fabs(expected));
}

void CheckNumbers(const std::vector<std::string>& row, const ValueSource& source) {
  const std::vector<double> numbers = Numbers(source);
  const std::vector<std::string> first = Split(row[8], ',');
  for (std::size_t i = 0; i < first.size(); ++i) {
    EXPECT_TRUE(Near(std::stod(first[i]), numbers[i])) << first[i] << " " << numbers[i];
  }
  EXPECT_TRUE(Near(std::stod(row[9]), numbers.back()));
  EXPECT_TRUE(Near(std::stod(row[10]), *std::min_element(numbers.begin(), numbers.end())));
  EXPECT_TRUE(Near(std::stod(row[11]), *std::max_element(numbers.begin(), numbers.end())));
}

class AtfxSamples : public testing::TestWithParam<std::string> {};

std::vector<std::string> SampleFolders() {
  const char* const folder = std::getenv("HV_SAMPLES_DIR");
  return folder ? std::vector<std::string>{folder} : std::vector<std::string>{};
}
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(AtfxSamples);
INSTANTIATE_TEST_SUITE_P(Folders, AtfxSamples, testing::ValuesIn(SampleFolders()));

TEST_P(AtfxSamples, GiveTheGoldenValues) {
  const std::string& folder = GetParam();
  std::ifstream table(folder + "/golden-values.tsv");
  ASSERT_TRUE(table);
  std::string line;
  std::getline(table, line);
  int checked = 0;
  while (std::getline(table, line)) {
    const std::vector<std::string> row = Split(line, '\t');
    SCOPED_TRACE(line);
    const std::filesystem::path path = std::filesystem::path(folder) / row[0];
    if (row[7] == "?" || !std::filesystem::exists(path)) continue;
    const auto store = atfx::ReadAtfxFile(path, {});
    const RecordRef column = Ref(*store, cor::FromUtf8(row[1]).view(), std::stoll(row[2]));
    const auto values = store->OpenValues(column);
    ASSERT_NE(nullptr, values);
    EXPECT_EQ(std::stoull(row[7]), values->Count());
    if (!row[10].empty()) CheckNumbers(row, *values);
    ++checked;
  }
  EXPECT_GT(checked, 0);
}

TEST_P(AtfxSamples, ComeBackFromOurOwnFiles) {
  for (const auto& entry : std::filesystem::directory_iterator(GetParam())) {
    if (entry.path().extension() != ".atfx") continue;
    SCOPED_TRACE(entry.path().string());
    const auto store = atfx::ReadAtfxFile(entry.path(), {});
    const TempFolder out;
    atfx::WriteAtfx(*store, out.Path() / "a.atfx");
    EXPECT_EQ(DumpStore(*store), DumpStore(*atfx::ReadAtfxFile(out.Path() / "a.atfx", {})));
  }
}

}  // namespace
}  // namespace hv::vex::engine::test
