// tests/core/atfx/AtfxSpoolTest.cpp - inline values in a temporary file are those in memory.
#include <functional>

#include <gtest/gtest.h>

#include "core/plugins/atfx/AtfxReader.h"

#include "AtfxFixtures.h"
#include "DumpStore.h"

namespace hv::vex::engine::test {
namespace {

/// Everything that reading tells, with and without a spool.
void ExpectTheSame(const std::function<std::unique_ptr<MemoryStore>(atfx::ReadOptions)>& read) {
  const TempFolder folder;
  std::unique_ptr<MemoryStore> inMemory;
  const std::string error = Thrown([&] { inMemory = read({}); });
  std::unique_ptr<MemoryStore> spooled;
  atfx::ReadOptions options;
  options.spoolFolder = folder.Path();
  EXPECT_EQ(error, Thrown([&] { spooled = read(options); }));
  EXPECT_EQ("", folder.Listing()) << "the file has no name";
  if (!inMemory || !spooled) return;
  EXPECT_TRUE(DumpStore(*inMemory) == DumpStore(*spooled)) << "the stores differ";
  EXPECT_EQ(WarningsText(*inMemory), WarningsText(*spooled));
}

TEST(AtfxSpool, HoldsTheSameAsMemoryForEveryFile) {
  for (const char* name : {"/atfx", "/store"}) {
    for (const auto& entry :
         std::filesystem::directory_iterator(HV_TEST_DATA_DIR + std::string(name))) {
      if (entry.path().extension() != ".atfx") continue;
      SCOPED_TRACE(entry.path().string());
      ExpectTheSame([&](atfx::ReadOptions options) {
        return atfx::ReadAtfxFile(entry.path(), std::move(options));
      });
    }
  }
}

TEST(AtfxSpool, JoinsTheBlocksOfLongColumns) {
  constexpr int kValues = 300'000;  // more than two blocks of each type that takes two bytes
  struct Case {
    const char *before, *value, *behind;  // `value` is repeated
  };
  constexpr Case kCases[] = {
      {"<A_INT8>", "200 3 ", "</A_INT8>"},
      {"<A_INT8>", "100 3 ", "-1</A_INT8>"},
      {"<A_INT8>-1 ", "100 3 ", "</A_INT8>"},
      {"<A_FLOAT64>", "0.25 -1e300 NaN ", "</A_FLOAT64>"},
      {"<A_COMPLEX64>", "1.5 -2 ", "</A_COMPLEX64>"},
      {"<A_COMPLEX32>", "1.5 -2 ", "7</A_COMPLEX32>"},
      {"<A_INT32>", "1 22 ", "three</A_INT32>"},
      {"<A_UTF8STRING>", "<s>abc</s><s/><s>\xC3\xA4\xE4\xB8\xAD</s>", "</A_UTF8STRING>"},
      {"<A_TIMESTRING>", "<s>20240131120000000</s>", "</A_TIMESTRING>"},
      {"<A_BYTEFIELD>", "<length>2</length> <sequence>1 2</sequence>\n", "</A_BYTEFIELD>"},
      {"<A_INT8>1</A_INT8></Values><Flags>", "15 0 ", "</Flags><Values>"},
      {"<A_INT8>1</A_INT8></Values><Flags><A_INT32>", "15 0 ", "</A_INT32></Flags><Values>"},
      {"<A_INT8>1</A_INT8></Values><Flags><A_INT32>", "15 0 ", "40000</A_INT32></Flags><Values>"},
      {"<A_INT8>1</A_INT8></Values><Flags><A_FLOAT32>", "15 0 ", "</A_FLOAT32></Flags><Values>"},
  };
  for (const Case& c : kCases) {
    SCOPED_TRACE(std::string(c.before) + c.value + c.behind);
    std::string content = std::string("<Values>") + c.before;
    for (int i = 0; i < kValues; ++i) content += c.value;
    const std::string document = Document(ColumnInstances(content + c.behind + "</Values>"));
    ExpectTheSame([&](atfx::ReadOptions options) {
      return atfx::ReadAtfxBytes(std::as_bytes(std::span(document)), "x.atfx", "/nowhere",
                                 std::move(options));
    });
  }
}

TEST(AtfxSpool, RefusesAFolderThatIsNotThere) {
  atfx::ReadOptions options;
  options.spoolFolder = "/nowhere/at/all";
  const std::string document = Document("");
  EXPECT_EQ("-1303 a temporary file in /nowhere/at/all: No such file or directory", Thrown([&] {
              atfx::ReadAtfxBytes(std::as_bytes(std::span(document)), "x.atfx", "/", options);
            }));
}

}  // namespace
}  // namespace hv::vex::engine::test
