// tests/core/atfx/AtfxSamplesTest.cpp - decoded values of a folder of sample files. There are such
// tests only if HV_SAMPLES_DIR names the folder; it holds golden-values.tsv: file, element, id,
// name, representation, parameters, stored form, count, first three values, last value, lowest,
// highest, flags.
#include <gtest/gtest.h>

#include <algorithm>
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

class AtfxSamples : public testing::TestWithParam<std::string> {};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(AtfxSamples);
INSTANTIATE_TEST_SUITE_P(
    Folders, AtfxSamples,
    testing::ValuesIn(std::getenv("HV_SAMPLES_DIR")
                          ? std::vector{std::string(std::getenv("HV_SAMPLES_DIR"))}
                          : std::vector<std::string>{}));

TEST_P(AtfxSamples, GiveTheGoldenValues) {
  std::ifstream table(GetParam() + "/golden-values.tsv");
  std::string line;
  ASSERT_TRUE(std::getline(table, line));
  int checked = 0;
  while (std::getline(table, line)) {
    const std::vector<std::string> row = Split(line, '\t');
    SCOPED_TRACE(line);
    const std::filesystem::path path = std::filesystem::path(GetParam()) / row[0];
    if (row[7] == "?" || !std::filesystem::exists(path)) continue;
    const auto store = atfx::ReadAtfxFile(path, {});
    const auto values = store->OpenValues(Ref(*store, cor::FromUtf8(row[1]), std::stoll(row[2])));
    ASSERT_NE(nullptr, values);
    EXPECT_EQ(std::stoull(row[7]), values->Count());
    ++checked;
    if (row[10].empty()) continue;
    std::vector<double> numbers(static_cast<std::size_t>(values->Count()));
    values->ReadReals(0, numbers);
    std::vector<std::string> expected = Split(row[8], ',');
    std::vector<double> found(numbers.begin(), numbers.begin() + std::ssize(expected));
    expected.insert(expected.end(), {row[9], row[10], row[11]});
    found.insert(found.end(),
                 {numbers.back(), std::ranges::min(numbers), std::ranges::max(numbers)});
    for (std::size_t i = 0; i < found.size(); ++i) {
      const double wanted = std::stod(expected[i]);
      EXPECT_NEAR(wanted, found[i], 1e-6 * std::max(1.0, std::abs(wanted)));
    }
  }
  EXPECT_GT(checked, 0);
}

TEST_P(AtfxSamples, ComeBackFromOurOwnFiles) {
  for (const auto& entry : std::filesystem::directory_iterator(GetParam())) {
    if (entry.path().extension() != ".atfx") continue;
    SCOPED_TRACE(entry.path().string());
    const auto store = atfx::ReadAtfxFile(entry.path(), {});
    const TempFolder out;
    atfx::WriteAtfx(*store, out.File("a.atfx"));
    EXPECT_EQ(DumpStore(*store), DumpStore(*atfx::ReadAtfxFile(out.File("a.atfx"), {})));
  }
}

}  // namespace
}  // namespace hv::vex::engine::test
