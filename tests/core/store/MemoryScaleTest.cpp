// tests/core/store/MemoryScaleTest.cpp - many records: no operation may grow beyond its share.
#include <chrono>
#include <cstdlib>

#include <gtest/gtest.h>

#include "ContractModel.h"
#include "core/store/memory/MemoryBuilder.h"

namespace hv::vex::engine::test {
namespace {

/// HV_SCALE_RECORDS sets another number, for measuring by hand.
RecordId RecordCount() {
  const char* const text = std::getenv("HV_SCALE_RECORDS");
  return text == nullptr ? 100000 : std::atoll(text);
}

class Stopwatch {
 public:
  double Milliseconds() {
    const auto now = std::chrono::steady_clock::now();
    const std::chrono::duration<double, std::milli> passed = now - m_start;
    m_start = now;
    return passed.count();
  }

 private:
  std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

/// Runs with names, numbers, dates, a project each, and every hundredth with two tags.
std::unique_ptr<MemoryStore> MakeLargeStore(const std::shared_ptr<const Model>& model,
                                            const ContractModel& m, RecordId records) {
  MemoryBuilder builder(model);
  constexpr RecordId kProjects = 100;
  for (RecordId id = 1; id <= kProjects; ++id) {
    const Row row = *builder.AppendRecord(m.project, id);
    builder.SetInteger(m.project, row, m.AttributeOf(m.project, u"Budget"), id);
  }
  for (RecordId id = 1; id <= 2; ++id) builder.AppendRecord(m.tag, id);
  const std::int32_t name = m.AttributeOf(m.run, u"Name");
  const std::int32_t count = m.AttributeOf(m.run, u"Count");
  const std::int32_t value = m.AttributeOf(m.run, u"Value");
  const std::int32_t when = m.AttributeOf(m.run, u"When");
  const std::int32_t project = m.RelationOf(m.run, u"Project");
  const std::int32_t tags = m.RelationOf(m.run, u"Tags");
  std::u16string text;
  for (RecordId id = 1; id <= records; ++id) {
    const Row row = *builder.AppendRecord(m.run, id);
    const std::string digits = std::to_string(id);
    text = u"Run ";
    text.append(digits.begin(), digits.end());
    builder.SetText(m.run, row, name, text);
    builder.SetInteger(m.run, row, count, id % 1000);
    builder.SetReal(m.run, row, value, static_cast<double>(id) / 3);
    builder.SetText(m.run, row, when, id % 2 == 0 ? u"20100101120000" : u"20200101120000");
    builder.AddLink(m.run, row, project, id % kProjects + 1);
    if (id % 100 != 0) continue;
    builder.AddLink(m.run, row, tags, 1);
    builder.AddLink(m.run, row, tags, 2);
  }
  return builder.Finish({[](const MemoryStore&, std::u16string_view) { return false; }, {}},
                        nullptr);
}

TEST(MemoryScale, FindsAmongManyRecordsInTimeThatGrowsWithThem) {
  const auto model = MakeContractModel();
  const ContractModel m(*model);
  const RecordId records = RecordCount();
  const auto count = static_cast<std::size_t>(records);
  const RecordId third = records / 3;
  Stopwatch watch;
  const auto store = MakeLargeStore(model, m, records);
  RecordProperty("fill_ms", std::to_string(watch.Milliseconds()));

  const auto select = [&](std::u16string_view path, QueryOp op, const BoundConstant& constant,
                          std::int64_t limit = 0) {
    BoundQuery query = Where(m.run, Compare(m.Path(m.run, path), op, constant));
    query.limit = limit;
    Stopwatch inner;
    const std::size_t hits = store->Select(query).size();
    const double passed = inner.Milliseconds();
    std::printf("%-14s %10zu hits %9.3f ms\n", std::string(path.begin(), path.end()).c_str(), hits,
                passed);
    return hits;
  };
  EXPECT_EQ(1u, select(u"Id", QueryOp::Equal, IntegerConstant(records)));
  EXPECT_EQ(count / 1000, select(u"Count", QueryOp::Equal, IntegerConstant(7)));
  EXPECT_EQ(count / 3,
            select(u"Value", QueryOp::LessEqual, RealConstant(static_cast<double>(third) / 3)));
  EXPECT_EQ(1u, select(u"Name", QueryOp::Equal, TextConstant(u"rUN 77", true)));
  EXPECT_EQ(count, select(u"Name", QueryOp::Equal, TextConstant(u"run*", true, true)));
  EXPECT_EQ(count / 2, select(u"When", QueryOp::Less, TextConstant(u"20150101000000")));
  EXPECT_EQ(count / 100, select(u"Project.Budget", QueryOp::Equal, IntegerConstant(50)));
  EXPECT_EQ(count / 100, select(u"Tags.Id", QueryOp::Greater, IntegerConstant(0)));
  EXPECT_EQ(count, select(u"Project.Runs.Count", QueryOp::GreaterEqual, IntegerConstant(0)));
  EXPECT_EQ(10u, select(u"Name", QueryOp::Equal, TextConstant(u"run*", true, true), 10));

  BoundQuery first =
      Where(m.run, Compare(m.Path(m.run, u"Count"), QueryOp::Equal, IntegerConstant(7)));
  first.limit = records / 2000;  // ends in the middle of the table
  const std::vector<RecordId> half = store->Select(first);
  ASSERT_EQ(count / 2000, half.size());
  EXPECT_EQ(7 + 1000 * (records / 2000 - 1), half.back());

  BoundQuery sorted;
  sorted.entity = m.run;
  sorted.order = {{m.Path(m.run, u"Name"), true}};
  EXPECT_EQ(count, store->Select(sorted).size());
  EXPECT_EQ(1000u, store->Distinct(m.run, m.AttributeOf(m.run, u"Count"), nullptr, 0).Rows());
  EXPECT_EQ(count, store->BoundsOf(m.run, m.AttributeOf(m.run, u"Name"), nullptr).count);

  const std::vector<RecordId> ids = store->AllOf(m.run);
  const std::int32_t attributes[] = {m.AttributeOf(m.run, u"Name"), m.AttributeOf(m.run, u"Count")};
  EXPECT_EQ(count, store->ReadColumns(m.run, ids, attributes)[0].Rows());
  EXPECT_EQ(count, store->Follow(m.run, m.RelationOf(m.run, u"Project"), ids).size());
  // Most runs of one project, here and there in its list: no walk over the rest for each.
  const std::int32_t runsOf = m.RelationOf(m.project, u"Runs");
  for (const RecordId id : ids) store->Connect({m.project, 1}, runsOf, {m.run, id});
  for (std::size_t i = 0; i < count / 4; ++i) {
    store->Delete({m.run, ids[i]});
    store->Delete({m.run, ids[count - 1 - i]});
  }
  EXPECT_EQ(count - count / 4 * 2, store->CountOf(m.run));
  EXPECT_EQ(store->CountOf(m.run), Targets(*store, {m.project, 1}, runsOf).size());
  const double all = watch.Milliseconds();
  std::printf("all queries and reads %.0f ms\n", all);
  // Far above what is needed; a quadratic step takes minutes.
  EXPECT_LT(all, 20.0 * static_cast<double>(count) / 100);
}

}  // namespace
}  // namespace hv::vex::engine::test
