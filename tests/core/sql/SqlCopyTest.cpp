// tests/core/sql/SqlCopyTest.cpp - stores of other kinds copied into databases and back.
#include <algorithm>
#include <sstream>

#include "core/plugins/atfx/AtfxPlugin.h"

#include "SqlFixtures.h"

namespace hv::vex::engine::test {
namespace {

const std::filesystem::path kData(HV_TEST_DATA_DIR);

TEST(SqlCopy, HoldsTheSameAsTheExchangeFileAndGivesItBack) {
  std::size_t files = 0;
  for (const char* folder : {"atfx", "store"}) {
    for (const auto& entry : std::filesystem::directory_iterator(kData / folder)) {
      if (entry.path().extension() != ".atfx") continue;
      SCOPED_TRACE(entry.path().string());
      std::unique_ptr<RecordStore> store;
      try {
        store = kAtfxPlugin.open(FileParameters(entry.path()));
      } catch (const Exception&) {
        continue;  // made to be refused
      }
      ++files;
      const std::string expected = DumpStore(*store);
      const TempFolder temporary;
      // A database is a source like any other.
      for (const char* name : {"copy.sqlite", "again.sqlite", "back.atfx"}) {
        const PluginInfo& kind = name[0] == 'b' ? kAtfxPlugin : kSqlPlugin;
        kind.write(*store, FileParameters(temporary.File(name)));
        store = kind.open(FileParameters(temporary.File(name)));
        EXPECT_EQ(expected, DumpStore(*store)) << name;
      }
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
  for (const char* name : {"atfx/features.atfx", "atfx/own_typespecs.atfx", "store/bench.atfx"}) {
    const TempFolder folder;
    std::unique_ptr<RecordStore> last = kAtfxPlugin.open(FileParameters(kData / name));
    const std::string original = DumpStore(*last);
    std::string dumps[2];
    for (std::string& dump : dumps) {
      // Ids are 1, 2, 3 ... after the first round, and stay so in the second.
      const auto path = folder.File(&dump == dumps ? "first" : "second");
      sql::WriteDatabase(MemoryStore(last->GetModel(), {}), path);
      kSqlPlugin.write(*last, FileParameters(path, u"<add>yes</add>"));
      last = OpenDatabase(path);
      dump = DumpStore(*last);
    }
    EXPECT_EQ(dumps[0], dumps[1]);
    EXPECT_EQ(FactsWithoutIds(original), FactsWithoutIds(dumps[0]));
    EXPECT_EQ(std::count(original.begin(), original.end(), '\n'),
              std::count(dumps[0].begin(), dumps[0].end(), '\n'));
  }
}

}  // namespace
}  // namespace hv::vex::engine::test
