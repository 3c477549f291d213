// tests/core/sql/SqlCopyTest.cpp - stores of other kinds copied into databases and back.
#include <gtest/gtest.h>

#include "core/plugins/atfx/AtfxPlugin.h"
#include "core/plugins/sql/SqlPlugin.h"
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

}  // namespace
}  // namespace hv::vex::engine::test
