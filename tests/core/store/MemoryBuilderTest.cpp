// tests/core/store/MemoryBuilderTest.cpp - filling a store in bulk: ids, links from either side.
#include "core/store/memory/MemoryBuilder.h"

#include <algorithm>
#include <limits>
#include <set>
#include <sstream>
#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "ContractModel.h"
#include "store/core/Exception.h"

namespace hv::vex::engine::test {
namespace {

class MemoryBuilderTest : public ::testing::Test {
 protected:
  MemoryBuilderTest() : model(MakeContractModel()), m(*model), builder(model) {}

  std::shared_ptr<const Model> model;
  ContractModel m;
  MemoryBuilder builder;
};

TEST_F(MemoryBuilderTest, FindsRecordsWhateverTheOrderOfTheirIds) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
  const std::vector<std::vector<RecordId>> kOrders = {
      {1, 2, 3, 4},    {7, 8, 9},    {1, 5, 100, 101},
      {0, 1, 2},       {4, 3, 2, 1}, {1, 2, 9, 5, 10},
      {-3, -2, -1},    {5, -5, 0},   {kMost - 1, kMost},
      {kMost, -kMost}, {3},          {2, 4, 6, 5, 3, 1, 1000000},
  };
  for (const std::vector<RecordId>& order : kOrders) {
    SCOPED_TRACE(Describe(order));
    MemoryBuilder some(model);
    for (const RecordId id : order) EXPECT_TRUE(some.AppendRecord(m.run, id));
    EXPECT_FALSE(some.AppendRecord(m.run, order.front())) << "an id can be there once only";
    const auto store = some.Finish({}, nullptr);
    std::vector<RecordId> sorted = order;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(sorted, store->AllOf(m.run));
    for (const RecordId id : order) EXPECT_TRUE(store->Exists({m.run, id}));
    for (const RecordId id : {RecordId{-100}, RecordId{50}, RecordId{1} << 40}) {
      EXPECT_FALSE(store->Exists({m.run, id}));
    }
    BoundQuery query;
    query.entity = m.run;
    query.limit = 2;
    sorted.resize(std::min<std::size_t>(2, sorted.size()));
    EXPECT_EQ(sorted, store->Select(query));
  }
}

TEST_F(MemoryBuilderTest, FindsRecordsAmongManyHashedIds) {
  std::vector<RecordId> ids;
  for (RecordId i = 0; i < 5000; ++i) ids.push_back((i * 7919) % 65536 * 3);
  std::erase_if(ids, [&](RecordId id) { return !builder.AppendRecord(m.run, id); });
  const auto store = builder.Finish({}, nullptr);
  EXPECT_EQ(ids.size(), store->CountOf(m.run));
  for (const RecordId id : ids) {
    ASSERT_TRUE(store->Exists({m.run, id}));
    ASSERT_FALSE(store->Exists({m.run, id + 1}));
  }
}

TEST_F(MemoryBuilderTest, DropsARecordWhoseIdTurnsOutToBeTaken) {
  const std::int32_t note = m.AttributeOf(m.run, u"Note");
  const std::int32_t tags = m.RelationOf(m.run, u"Tags");
  builder.AppendRecord(m.tag, 1);
  const auto add = [&](RecordId id, std::u16string_view text) {
    const Row row = builder.BeginRecord(m.run);
    EXPECT_TRUE(builder.SetText(m.run, row, note, text));
    builder.AddLink(m.run, row, tags, 1);
    builder.SetInstanceAttribute(m.run, row, {u"a", Value::Integer(OdsType::Long, 1), 0});
    return builder.EndRecord(m.run, id);
  };
  EXPECT_TRUE(add(1, u"first"));
  EXPECT_FALSE(add(1, u"second"));
  EXPECT_TRUE(add(2, u"third"));
  builder.BeginRecord(m.run);
  EXPECT_EQ(3, builder.EndRecordWithNewId(m.run));
  const auto store = builder.Finish({}, nullptr);
  EXPECT_EQ("1, 2, 3", Describe(store->AllOf(m.run)));
  EXPECT_EQ(3u, store->CountOf(m.run));
  const RecordId asked[] = {1, 2, 3};
  EXPECT_EQ(u"first, third, -", Describe(store->ReadColumns(m.run, asked, {{note}})[0]));
  EXPECT_EQ("1, 2", Describe(Targets(*store, {m.tag, 1}, m.RelationOf(m.tag, u"Runs"))));
}

TEST_F(MemoryBuilderTest, RefusesToFinishWithAnOpenRecord) {
  builder.BeginRecord(m.run);
  EXPECT_THROW((void)builder.Finish({}, nullptr), Exception);
}

/// Links told in this order, as "R1.Tags=2", and what both sides must be then.
struct BulkLinkCase {
  const char* name;
  const char* told;
  const char* expected;
  const char* dropped;  // "R1.Tags=9" no such target, "R1.Project!2" taken
};

TEST_F(MemoryBuilderTest, JoinsLinksToldOnEitherSide) {
  const BulkLinkCase kCases[] = {
      {"ManySide", "P1.Runs=3 P1.Runs=1", "P1.Runs=3,1 R1.Project=1 R3.Project=1", ""},
      {"OneSide", "R2.Project=1 R1.Project=1", "P1.Runs=2,1 R2.Project=1", ""},
      {"BothSides", "P1.Runs=2 R1.Project=1 R2.Project=1 P1.Runs=1",
       "P1.Runs=2,1 R1.Project=1 R2.Project=1", ""},
      {"Repeated", "P1.Runs=2 P1.Runs=2 R2.Project=1", "P1.Runs=2", ""},
      {"Contradicting", "R1.Project=1 P2.Runs=1 R1.Project=3",
       "R1.Project=1 P1.Runs=1 P2.Runs=", "P2.Runs!1 R1.Project!3"},
      {"Dangling", "R1.Project=9 P1.Runs=77 R1.Tags=5 P1.Runs=1",
       "P1.Runs=1 R1.Tags=", "R1.Project=9 P1.Runs=77 R1.Tags=5"},
      {"ManyToMany", "R1.Tags=2 T1.Runs=1 T2.Runs=3 R1.Tags=2 T2.Runs=1 R3.Tags=1",
       "R1.Tags=2,1 T1.Runs=1,3 T2.Runs=1,3 R3.Tags=2,1 R2.Tags=", ""},
      {"OneToOne", "R1.Next=2 R2.Previous=1 R3.Previous=2", "R1.Next=2 R2.Next=3 R3.Previous=2",
       ""},
      {"OneToOneTaken", "R1.Next=2 R3.Next=2 R1.Next=3",
       "R1.Next=2 R2.Previous=1 R3.Next= R3.Previous=", "R3.Next!2 R1.Next!3"},
      {"OwnInverse", "P1.Twins=2 P2.Twins=1 P3.Twins=3 P3.Twins=1",
       "P1.Twins=2,3 P2.Twins=1 P3.Twins=3,1", ""},
      {"OwnInverseToOne", "P1.Rival=2 P2.Rival=1 P3.Rival=2",
       "P1.Rival=2 P2.Rival=1 P3.Rival=", "P3.Rival!2"},
  };
  for (const BulkLinkCase& c : kCases) {
    SCOPED_TRACE(c.name);
    MemoryBuilder some(model);
    const auto memberOf = [&](const std::string& text) {
      const EntityId entity = text[0] == 'P' ? m.project : (text[0] == 'R' ? m.run : m.tag);
      const std::size_t dot = text.find('.');
      const std::size_t sign = text.find_first_of("=!", dot);
      const std::u16string name(text.begin() + static_cast<std::ptrdiff_t>(dot) + 1,
                                text.begin() + static_cast<std::ptrdiff_t>(sign));
      return std::tuple(RecordRef{entity, std::stoi(text.substr(1))}, m.RelationOf(entity, name),
                        sign);
    };
    // Targets come after the links that name them.
    std::istringstream told(c.told);
    for (std::string link; told >> link;) {
      const auto [record, relation, sign] = memberOf(link);
      some.AddLink(record.entity, static_cast<Row>(record.id - 1), relation,
                   std::stoi(link.substr(sign + 1)));
    }
    for (const EntityId entity : {m.project, m.run, m.tag}) {
      for (RecordId id = 1; id <= 3; ++id) some.AppendRecord(entity, id);
    }
    std::string dropped;
    const auto store = some.Finish({}, [&](const DroppedLink& link) {
      const char letter =
          link.record.entity == m.project ? 'P' : (link.record.entity == m.run ? 'R' : 'T');
      const std::u16string& name =
          model->At(link.record.entity).relations[static_cast<std::size_t>(link.relation)].name;
      dropped += dropped.empty() ? "" : " ";
      dropped +=
          letter + std::to_string(link.record.id) + "." + std::string(name.begin(), name.end()) +
          (link.reason == DroppedLink::Reason::Taken ? "!" : "=") + std::to_string(link.target);
    });
    std::istringstream expected(c.expected);
    std::string state;
    for (std::string fact; expected >> fact;) {
      const auto [record, relation, sign] = memberOf(fact);
      std::string ids;
      for (const RecordId id : Targets(*store, record, relation)) {
        ids += (ids.empty() ? "" : ",") + std::to_string(id);
      }
      state += (state.empty() ? "" : " ") + fact.substr(0, sign + 1) + ids;
    }
    EXPECT_EQ(c.expected, state);
    std::multiset<std::string> expectedDrops;
    std::multiset<std::string> drops;
    std::istringstream a(c.dropped);
    std::istringstream b(dropped);
    for (std::string drop; a >> drop;) expectedDrops.insert(drop);
    for (std::string drop; b >> drop;) drops.insert(drop);
    EXPECT_EQ(expectedDrops, drops);
  }
}

TEST_F(MemoryBuilderTest, ChangesLinksAfterBulkFilling) {
  const std::int32_t runs = m.RelationOf(m.project, u"Runs");
  for (RecordId id = 1; id <= 2; ++id) builder.AppendRecord(m.project, id);
  for (RecordId id = 1; id <= 4; ++id) builder.AppendRecord(m.run, id);
  for (RecordId id = 1; id <= 4; ++id) builder.AddLink(m.project, 0, runs, id);
  const auto store =
      builder.Finish({[](const MemoryStore&, std::u16string_view) { return false; }, {}}, nullptr);
  store->Connect({m.project, 2}, runs, {m.run, 2});
  store->Delete({m.run, 1});
  const RecordId added = store->Create(m.run);
  store->Connect({m.project, 1}, runs, {m.run, added});
  EXPECT_EQ("3, 4, 5", Describe(Targets(*store, {m.project, 1}, runs)));
  EXPECT_EQ("2", Describe(Targets(*store, {m.project, 2}, runs)));
}

TEST_F(MemoryBuilderTest, TellsWhichValuesDoNotFit) {
  const Row row = *builder.AppendRecord(m.run, 1);
  const auto attribute = [&](std::u16string_view name) { return m.AttributeOf(m.run, name); };
  EXPECT_TRUE(builder.SetInteger(m.run, row, attribute(u"Small"), 5));
  EXPECT_FALSE(builder.SetInteger(m.run, row, attribute(u"Small"), 50000));
  EXPECT_FALSE(builder.SetInteger(m.run, row, attribute(u"Note"), 1));
  EXPECT_FALSE(builder.SetInteger(m.run, row, attribute(u"Id"), 2));
  EXPECT_TRUE(builder.SetInteger(m.run, row, attribute(u"Value"), 5)) << "a real may be whole";
  EXPECT_FALSE(builder.SetReal(m.run, row, attribute(u"Small"), 1));
  EXPECT_FALSE(builder.SetReal(m.run, row, attribute(u"Pair"), 1));
  EXPECT_FALSE(builder.SetText(m.run, row, attribute(u"When"), u"never"));
  EXPECT_FALSE(builder.SetText(m.run, row, attribute(u"Small"), u"1"));
  EXPECT_FALSE(
      builder.SetValue(m.run, row, attribute(u"Numbers"), Value::Integer(OdsType::Long, 1)));
  EXPECT_TRUE(builder.SetText(m.run, row, attribute(u"Note"), u"once"));
  EXPECT_TRUE(builder.SetText(m.run, row, attribute(u"Note"), u"twice"));
  const auto store = builder.Finish({}, nullptr);
  const RecordId asked[] = {1};
  const std::int32_t attributes[] = {attribute(u"Small"), attribute(u"Note"), attribute(u"Value")};
  const auto blocks = store->ReadColumns(m.run, asked, attributes);
  EXPECT_EQ(u"5", Describe(blocks[0]));
  EXPECT_EQ(u"twice", Describe(blocks[1])) << "what comes last counts";
  EXPECT_EQ(u"5", Describe(blocks[2]));
}

TEST_F(MemoryBuilderTest, OpensValuesWhenAskedForAndEachTimeAnew) {
  const Row row = *builder.AppendRecord(m.column, 1);
  int opened = 0;
  builder.SetValues(m.column, row, [&opened] {
    ++opened;
    return InMemoryValues::Open(
        InMemoryValues::FromValue({OdsType::Long, true, Value::Integers{4, 5}}));
  });
  const Row other = *builder.AppendRecord(m.column, 2);
  EXPECT_TRUE(builder.SetValue(m.column, other, m.AttributeOf(m.column, u"Values"),
                               {OdsType::Short, true, Value::Integers{1, 2, 3}}));
  EXPECT_FALSE(builder.SetValue(m.column, other, m.AttributeOf(m.column, u"Values"),
                                {OdsType::Short, true, Value::Integers{99999}}));
  const std::int16_t flags[] = {15, 0};
  builder.SetFlags(m.column, row, InMemoryValues::FromFlags(flags));
  builder.SetContextValue(u"exporter", u"a");
  builder.SetContextValue(u"exporter", u"b");
  builder.AddWarning(u"odd");
  const auto store =
      builder.Finish({[](const MemoryStore&, std::u16string_view) { return false; }, {}}, nullptr);
  EXPECT_EQ(0, opened);
  EXPECT_EQ(2u, store->OpenValues({m.column, 1})->Count());
  EXPECT_EQ(2u, store->OpenFlags({m.column, 1})->Count());
  EXPECT_EQ(1, opened);
  EXPECT_EQ(3u, store->OpenValues({m.column, 2})->Count());
  ASSERT_EQ(1u, store->ContextValues().size());
  EXPECT_EQ(u"b", store->ContextValues()[0].second);
  EXPECT_EQ(1u, store->Warnings().size());

  const std::int16_t more[] = {3};
  store->WriteValues({m.column, 1}, {OdsType::Long, true, Value::Integers{6}}, more, true);
  std::vector<std::int64_t> values(3);
  store->OpenValues({m.column, 1})->ReadIntegers(0, values);
  EXPECT_EQ((Value::Integers{4, 5, 6}), values);
  store->OpenFlags({m.column, 1})->ReadIntegers(0, values);
  EXPECT_EQ((Value::Integers{15, 0, 3}), values);
}

}  // namespace
}  // namespace hv::vex::engine::test
