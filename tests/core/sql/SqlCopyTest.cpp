// tests/core/sql/SqlCopyTest.cpp - stores of other kinds copied into databases and back.
#include <algorithm>
#include <sstream>

#include <gtest/gtest.h>

#include "core/plugins/atfx/AtfxPlugin.h"
#include "core/plugins/sql/SqlPlugin.h"
#include "core/store/memory/MemoryStore.h"
#include "store/core/Exception.h"

#include "DumpStore.h"
#include "SqlFixtures.h"

namespace hv::vex::engine::test {
namespace {

TEST(SqlCopy, HoldsTheSameAsTheExchangeFileAndGivesItBack) {
  const std::filesystem::path data(HV_TEST_DATA_DIR);
  std::size_t files = 0;
  for (const char* folder : {"atfx", "store"}) {
    for (const auto& entry : std::filesystem::directory_iterator(data / folder)) {
      if (entry.path().extension() != ".atfx") continue;
      SCOPED_TRACE(entry.path().string());
      std::unique_ptr<RecordStore> source;
      try {
        source = kAtfxPlugin.open(ConnectParameters(FileTag(entry.path())));
      } catch (const Exception&) {
        continue;  // made to be refused
      }
      ++files;
      const std::string expected = DumpStore(*source);
      const TempFolder temporary;
      const auto path = temporary.File("copy.sqlite");
      kSqlPlugin.write(*source, ConnectParameters(FileTag(path)));
      const auto copy = kSqlPlugin.open(ConnectParameters(FileTag(path)));
      EXPECT_EQ(expected, DumpStore(*copy));
      const auto back = temporary.File("back.atfx");
      kAtfxPlugin.write(*copy, ConnectParameters(FileTag(back)));
      EXPECT_EQ(expected, DumpStore(*kAtfxPlugin.open(ConnectParameters(FileTag(back)))));
      // A database is a source like any other.
      const auto again = temporary.File("again.sqlite");
      kSqlPlugin.write(*copy, ConnectParameters(FileTag(again)));
      EXPECT_EQ(expected, DumpStore(*kSqlPlugin.open(ConnectParameters(FileTag(again)))));
    }
  }
  EXPECT_GT(files, 0u);
}

/// The lines of a dump that don't name a record, sorted.
std::vector<std::string> FactsWithoutIds(const std::string& dump) {
  std::vector<std::string> facts;
  std::istringstream in(dump);
  for (std::string line; std::getline(in, line);) {
    const bool isFact = line.starts_with("  values") || line.starts_with("  flags") ||
                        line.starts_with("  instance attribute");
    if (isFact) facts.push_back(line.substr(0, line.find(" unit=")));
  }
  std::sort(facts.begin(), facts.end());
  return facts;
}

TEST(SqlCopy, AddsWhatTheSourceHoldsUnderNewIds) {
  const std::filesystem::path data(HV_TEST_DATA_DIR);
  for (const char* name : {"atfx/features.atfx", "atfx/own_typespecs.atfx", "store/bench.atfx"}) {
    const auto source = kAtfxPlugin.open(ConnectParameters(FileTag(data / name)));
    const TempFolder folder;
    std::string dumps[2];
    std::shared_ptr<RecordStore> last = kAtfxPlugin.open(ConnectParameters(FileTag(data / name)));
    for (int round = 0; round < 2; ++round) {
      // Ids are 1, 2, 3 ... after the first round, and stay so in the second.
      const auto path = folder.File("round" + std::to_string(round) + ".sqlite");
      sql::WriteDatabase(MemoryStore(source->GetModel(), {}), path);
      kSqlPlugin.write(*last, ConnectParameters(FileTag(path, u"<add>yes</add>")));
      last = kSqlPlugin.open(ConnectParameters(FileTag(path)));
      dumps[round] = DumpStore(*last);
    }
    EXPECT_EQ(dumps[0], dumps[1]);
    const std::string original = DumpStore(*source);
    EXPECT_EQ(FactsWithoutIds(original), FactsWithoutIds(dumps[0]));
    EXPECT_EQ(std::count(original.begin(), original.end(), '\n'),
              std::count(dumps[0].begin(), dumps[0].end(), '\n'));
  }
}

}  // namespace
}  // namespace hv::vex::engine::test
