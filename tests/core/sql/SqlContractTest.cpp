// tests/core/sql/SqlContractTest.cpp - the contract of all record stores, on databases; and the
// same random queries on a store in memory and on its copy in a database.
#include "QueryContract.h"
#include "SqlFixtures.h"
#include "ValuesContract.h"

namespace hv::vex::engine::test {

const auto kStores = ::testing::Values(
    StoreFactory{"InMemory",
                 [](std::shared_ptr<const Model> model) {
                   return kSqlPlugin.create(ConnectParameters(u""), std::move(model));
                 }},
    StoreFactory{"File", [](std::shared_ptr<const Model> model) {
                   static const TempFolder kFolder;
                   static int number = 0;
                   return kSqlPlugin.create(
                       FileParameters(kFolder.File(std::to_string(++number) + ".sqlite")),
                       std::move(model));
                 }});
const auto kNameOf = [](const auto& row) { return row.param.name; };
INSTANTIATE_TEST_SUITE_P(Sql, RecordStoreContract, kStores, kNameOf);
INSTANTIATE_TEST_SUITE_P(Sql, RecordStoreQueryContract, kStores, kNameOf);
INSTANTIATE_TEST_SUITE_P(Sql, RecordStoreValuesContract, kStores, kNameOf);

TEST(SqlAgainstMemory, FindsTheSameInTheSameOrder) {
  const std::shared_ptr<const Model> model = MakeContractModel();
  const ContractModel m(*model);
  std::size_t hits = 0;
  for (std::uint32_t seed = 101; seed < 107; ++seed) {
    MemoryStore memory(model, KeptNowhere());
    RandomQueries random(memory, m, seed);
    const int scale = seed == 106 ? 10 : 1;
    random.Fill(10 * scale, 80 * scale, 15 * scale);
    const TempFolder folder;
    const std::filesystem::path path = folder.File("copy.sqlite");
    sql::WriteDatabase(memory, path);
    const auto copy = OpenDatabase(path);
    EXPECT_EQ(DumpStore(memory), DumpStore(*copy));
    for (std::size_t i = 0; i < 700; ++i) {
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
  }
  EXPECT_GT(hits, 1200u) << "the queries must find something to mean anything";
}

}  // namespace hv::vex::engine::test
