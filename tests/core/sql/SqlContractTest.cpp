// tests/core/sql/SqlContractTest.cpp - the contract of all record stores, on databases; and the
// same random queries on a store in memory and on its copy in a database.
#include "core/plugins/sql/SqlPlugin.h"
#include "core/store/memory/MemoryStore.h"

#include "QueryContract.h"
#include "RecordStoreContract.h"
#include "SqlFixtures.h"
#include "ValuesContract.h"

namespace hv::vex::engine::test {
namespace {

/// A store in a file that goes with the program's temporary folder.
std::unique_ptr<RecordStore> MakeInFile(std::shared_ptr<const Model> model) {
  static int number = 0;
  const TempFolder& folder = ProgramFolder();
  return kSqlPlugin.create(
      ConnectParameters(FileTag(folder.File(std::to_string(++number) + ".sqlite"))),
      std::move(model));
}

const StoreFactory kFactories[] = {
    {"SqliteInMemory",
     [](std::shared_ptr<const Model> model) {
       return kSqlPlugin.create(ConnectParameters(u""), std::move(model));
     }},
    {"SqliteFile", MakeInFile},
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Sql, RecordStoreContract, ::testing::ValuesIn(kFactories),
                         [](const auto& row) { return row.param.name; });
INSTANTIATE_TEST_SUITE_P(Sql, RecordStoreQueryContract, ::testing::ValuesIn(kFactories),
                         [](const auto& row) { return row.param.name; });

TEST(SqlAgainstMemory, FindsTheSameInTheSameOrder) {
  const std::shared_ptr<const Model> model = MakeContractModel();
  const ContractModel m(*model);
  constexpr std::size_t kQueries = 700;
  std::size_t hits = 0;
  for (std::uint32_t seed = 101; seed < 107; ++seed) {
    MemoryPersistence persistence;
    persistence.save = [](const MemoryStore&, std::u16string_view) { return false; };
    MemoryStore memory(model, persistence);
    RandomQueries random(memory, m, seed);
    const int scale = seed == 106 ? 10 : 1;
    random.Fill(10 * scale, 80 * scale, 15 * scale);
    const TempFolder folder;
    const std::filesystem::path path = folder.File("copy.sqlite");
    sql::WriteDatabase(memory, path);
    const auto copy = kSqlPlugin.open(ConnectParameters(FileTag(path)));
    for (std::size_t i = 0; i < kQueries; ++i) {
      BoundQuery query = random.MakeQuery();
      constexpr std::u16string_view kWords[] = {u"", u"", u"", u"", u"ab", u"ähr", u"a\"b"};
      query.freeText = kWords[i % std::size(kWords)];
      const std::string expected = Describe(memory.Select(query));
      ASSERT_EQ(expected, Describe(copy->Select(query))) << "seed " << seed << " query " << i;
      hits += expected.empty() ? 0 : 1;
      // What is read while it is found is what is read then. Lists of values stand elsewhere.
      std::vector<std::int32_t> attributes;
      const auto& declared = model->At(query.entity).attributes;
      for (std::size_t a = 0; a < declared.size(); ++a) {
        if (i % 2 == 0 || !declared[a].sequence) attributes.push_back(static_cast<std::int32_t>(a));
      }
      const SelectedColumns selected = copy->SelectColumns(query, attributes);
      ASSERT_EQ(expected, Describe(selected.ids));
      const auto blocks = copy->ReadColumns(query.entity, selected.ids, attributes);
      for (std::size_t a = 0; a < blocks.size(); ++a) {
        ASSERT_EQ(Describe(blocks[a]), Describe(selected.blocks[a])) << "attribute " << a;
      }
    }
    for (const EntityId entity : {m.project, m.run, m.tag}) {
      for (std::size_t r = 0; r < model->At(entity).relations.size(); ++r) {
        const auto ids = memory.AllOf(entity);
        const auto index = static_cast<std::int32_t>(r);
        const auto expected = memory.Follow(entity, index, ids);
        const auto got = copy->Follow(entity, index, ids);
        ASSERT_EQ(expected.size(), got.size());
        for (std::size_t i = 0; i < got.size(); ++i) {
          EXPECT_EQ(expected[i].source, got[i].source);
          EXPECT_EQ(expected[i].target, got[i].target);
        }
      }
    }
  }
  EXPECT_GT(hits, 1200u) << "the queries must find something to mean anything";
}

}  // namespace hv::vex::engine::test
