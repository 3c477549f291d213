// tests/core/store/MemoryScaleTest.cpp - many records: no operation may grow beyond its share.
#include <chrono>

#include "ContractModel.h"
#include "ModelText.h"
#include "core/store/memory/MemoryBuilder.h"

namespace hv::vex::engine::test {
namespace {

constexpr RecordId kRecords = 100000;
constexpr std::size_t kCount = kRecords;

/// Runs with names, numbers, dates, a project each, and every hundredth with two tags.
std::unique_ptr<MemoryStore> MakeLargeStore(const std::shared_ptr<const Model>& model,
                                            const ContractModel& m) {
  MemoryBuilder builder(model);
  constexpr RecordId kProjects = 100;
  for (RecordId id = 1; id <= kProjects; ++id) {
    const Row row = *builder.AppendRecord(m.project, id);
    builder.SetInteger(m.project, row, m.AttributeOf(m.project, u"Budget"), id);
  }
  for (RecordId id = 1; id <= 2; ++id) builder.AppendRecord(m.tag, id);
  const auto attribute = [&](std::u16string_view name) { return m.AttributeOf(m.run, name); };
  for (RecordId id = 1; id <= kRecords; ++id) {
    const Row row = *builder.AppendRecord(m.run, id);
    builder.SetText(m.run, row, attribute(u"Name"), u"Run " + Wide(std::to_string(id)));
    builder.SetInteger(m.run, row, attribute(u"Count"), id % 1000);
    builder.SetReal(m.run, row, attribute(u"Value"), static_cast<double>(id) / 3);
    builder.SetText(m.run, row, attribute(u"When"),
                    id % 2 == 0 ? u"20100101120000" : u"20200101120000");
    builder.AddLink(m.run, row, m.RelationOf(m.run, u"Project"), id % kProjects + 1);
    for (RecordId tag = 1; tag <= 2 && id % 100 == 0; ++tag) {
      builder.AddLink(m.run, row, m.RelationOf(m.run, u"Tags"), tag);
    }
  }
  return builder.Finish(KeptNowhere(), nullptr);
}

TEST(MemoryScale, FindsAmongManyRecordsInTimeThatGrowsWithThem) {
  const auto begin = std::chrono::steady_clock::now();
  const auto model = MakeContractModel();
  const ContractModel m(*model);
  const auto store = MakeLargeStore(model, m);
  const struct {
    std::u16string_view condition;
    std::int64_t limit;
    std::size_t hits;
    RecordId last;
  } kQueries[] = {
      {u"Id = 100000", 0, 1, kRecords},
      {u"Count = 7", 0, kCount / 1000, kRecords - 993},
      {u"Count = 7", kRecords / 2000, kCount / 2000, kRecords / 2 - 993},  // ends in the middle
      {u"Value <= r11111", 0, kCount / 3, kRecords / 3},
      {u"Name = 'rUN 77'i", 0, 1, 77},
      {u"Name = 'run*'wi", 0, kCount, kRecords},
      {u"Name = 'run*'wi", 10, 10, 10},
      {u"When < '20150101000000'", 0, kCount / 2, kRecords},
      {u"Project.Budget = 50", 0, kCount / 100, kRecords - 51},
      {u"Tags.Id > 0", 0, kCount / 100, kRecords},
      {u"Project.Runs.Count >= 0", 0, kCount, kRecords},
  };
  for (const auto& c : kQueries) {
    SCOPED_TRACE(cor::ToUtf8(c.condition));
    BoundQuery query = Where(*model, m.run, c.condition);
    query.limit = c.limit;
    const std::vector<RecordId> hits = store->Select(query);
    ASSERT_EQ(c.hits, hits.size());
    EXPECT_EQ(c.last, hits.back());
  }
  BoundQuery sorted = All(m.run);
  sorted.order = {{m.Path(m.run, u"Name"), true}};
  EXPECT_EQ(kCount, store->Select(sorted).size());
  EXPECT_EQ(1000u, store->Distinct(m.run, m.AttributeOf(m.run, u"Count"), nullptr, 0).Rows());
  EXPECT_EQ(kCount, store->BoundsOf(m.run, m.AttributeOf(m.run, u"Name"), nullptr).count);

  const std::vector<RecordId> ids = store->AllOf(m.run);
  const std::int32_t attributes[] = {m.AttributeOf(m.run, u"Name"), m.AttributeOf(m.run, u"Count")};
  EXPECT_EQ(kCount, store->ReadColumns(m.run, ids, attributes)[0].Rows());
  EXPECT_EQ(kCount, store->Follow(m.run, m.RelationOf(m.run, u"Project"), ids).size());
  // Most runs of one project, here and there in its list: no walk over the rest for each.
  const std::int32_t runsOf = m.RelationOf(m.project, u"Runs");
  for (const RecordId id : ids) store->Connect({m.project, 1}, runsOf, {m.run, id});
  for (std::size_t i = 0; i < kCount / 4; ++i) {
    store->Delete({m.run, ids[i]});
    store->Delete({m.run, ids[kCount - 1 - i]});
  }
  EXPECT_EQ(kCount / 2, store->CountOf(m.run));
  EXPECT_EQ(kCount / 2, Targets(*store, {m.project, 1}, runsOf).size());
  // Far above what is needed; a quadratic step takes minutes.
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}

}  // namespace
}  // namespace hv::vex::engine::test
