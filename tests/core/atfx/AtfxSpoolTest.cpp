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

struct LongCase {
  const char* name;
  std::string_view tag;
  std::string_view value;      ///< repeated
  std::string_view last = {};  ///< once, behind all others
  std::string_view first = {};
};

class AtfxSpoolOfLongColumns : public ::testing::TestWithParam<LongCase> {};

TEST_P(AtfxSpoolOfLongColumns, JoinsTheBlocks) {
  const LongCase& c = GetParam();
  constexpr int kValues = 300'000;  // more than two blocks of each type that takes two bytes
  std::string content(c.first);
  for (int i = 0; i < kValues; ++i) content += c.value;
  content.append(c.last);
  const bool isFlags = c.tag == "Flags";
  std::string column = isFlags ? "<Values><A_INT8>1</A_INT8></Values><Flags>" : "<Values><";
  if (isFlags) {
    column += content + "</Flags>";
  } else {
    column.append(c.tag).append(">").append(content).append("</").append(c.tag) += "></Values>";
  }
  const std::string document = Document(ColumnInstances(column));
  ExpectTheSame([&](atfx::ReadOptions options) {
    return atfx::ReadAtfxBytes(std::as_bytes(std::span(document)), "x.atfx", "/nowhere",
                               std::move(options));
  });
}

constexpr LongCase kLongCases[] = {
    {"Bytes", "A_INT8", "200 3 "},
    {"SignedAtTheEnd", "A_INT8", "100 3 ", "-1"},
    {"SignedAtTheBeginning", "A_INT8", "100 3 ", "", "-1 "},
    {"Doubles", "A_FLOAT64", "0.25 -1e300 NaN "},
    {"Complex", "A_COMPLEX64", "1.5 -2 "},
    {"HalfAComplex", "A_COMPLEX32", "1.5 -2 ", "7"},
    {"NoNumber", "A_INT32", "1 22 ", "three"},
    {"Texts", "A_UTF8STRING", "<s>abc</s><s/><s>\xC3\xA4\xE4\xB8\xAD</s>"},
    {"Dates", "A_TIMESTRING", "<s>20240131120000000</s>"},
    {"ByteStrings", "A_BYTEFIELD", "<length>2</length> <sequence>1 2</sequence>\n"},
    {"Flags", "Flags", "15 0 "},
    {"FlagsOfAnotherType", "Flags", "15 0 ", "</A_INT32>", "<A_INT32>"},
    {"FlagsOutOfRange", "Flags", "15 0 ", "40000</A_INT32>", "<A_INT32>"},
    {"FlagsOfReals", "Flags", "15 0 ", "</A_FLOAT32>", "<A_FLOAT32>"},
};
INSTANTIATE_TEST_SUITE_P(Types, AtfxSpoolOfLongColumns, ::testing::ValuesIn(kLongCases),
                         [](const auto& row) { return std::string(row.param.name); });

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
