// tests/core/store/MemoryBuilderTest.cpp - filling a store in bulk: ids, links from either side.
#include "core/store/memory/MemoryBuilder.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <set>
#include <sstream>

#include "ContractModel.h"

namespace hv::vex::engine::test {
namespace {

class MemoryBuilderTest : public ::testing::Test {
 protected:
  MemoryBuilderTest() : model(MakeContractModel()), m(*model), builder(model) {}

  std::string Column(const RecordStore& store, std::u16string_view attribute) const {
    const std::int32_t asked[] = {m.AttributeOf(m.run, attribute)};
    return Describe(store.ReadColumns(m.run, store.AllOf(m.run), asked)[0]);
  }

  std::shared_ptr<const Model> model;
  ContractModel m;
  MemoryBuilder builder;
};

TEST_F(MemoryBuilderTest, FindsRecordsWhateverTheOrderOfTheirIds) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
  std::vector<std::vector<RecordId>> orders = {
      {1, 2, 3, 4},
      {7, 8, 9},
      {1, 5, 100, 101},
      {0, 1, 2},
      {4, 3, 2, 1},
      {1, 2, 9, 5, 10},
      {-3, -2, -1},
      {5, -5, 0},
      {kMost - 1, kMost},
      {kMost, -kMost},
      {3},
      {2, 4, 6, 5, 3, 1, 1000000},
      {},
  };
  std::set<RecordId> taken;
  for (RecordId i = 0; i < 5000; ++i) {
    const RecordId id = (i * 7919) % 65536 * 3;
    if (taken.insert(id).second) orders.back().push_back(id);
  }
  for (const std::vector<RecordId>& order : orders) {
    SCOPED_TRACE(Describe(order));
    MemoryBuilder some(model);
    for (const RecordId id : order) EXPECT_TRUE(some.AppendRecord(m.run, id));
    EXPECT_FALSE(some.AppendRecord(m.run, order.front())) << "an id can be there once only";
    const auto store = some.Finish({}, nullptr);
    std::vector<RecordId> sorted = order;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(sorted, store->AllOf(m.run));
    EXPECT_EQ(sorted.size(), store->CountOf(m.run));
    for (const RecordId id : order) ASSERT_TRUE(store->Exists({m.run, id}));
    std::vector<RecordId> others = {-100, 50, RecordId{1} << 40};
    if (order.size() > 100) {
      std::transform(order.begin(), order.end(), std::back_inserter(others),
                     [](RecordId id) { return id + 1; });
    }
    for (const RecordId id : others) ASSERT_FALSE(store->Exists({m.run, id}));
    sorted.resize(std::min<std::size_t>(2, sorted.size()));
    EXPECT_EQ(sorted, store->Select(All(m.run, 2)));
  }
}

TEST_F(MemoryBuilderTest, DropsARecordWhoseIdTurnsOutToBeTaken) {
  builder.AppendRecord(m.tag, 1);
  const auto add = [&](RecordId id, std::u16string_view text) {
    const Row row = builder.BeginRecord(m.run);
    EXPECT_TRUE(builder.SetText(m.run, row, m.AttributeOf(m.run, u"Note"), text));
    builder.AddLink(m.run, row, m.RelationOf(m.run, u"Tags"), 1);
    builder.SetInstanceAttribute(m.run, row, {u"a", Value::Integer(OdsType::Long, 1), 0});
    return builder.EndRecord(m.run, id);
  };
  EXPECT_TRUE(add(1, u"first"));
  EXPECT_FALSE(add(1, u"second"));
  EXPECT_TRUE(add(2, u"third"));
  builder.BeginRecord(m.run);
  EXPECT_EQ(3, builder.EndRecordWithNewId(m.run));
  const auto store = builder.Finish({}, nullptr);
  EXPECT_EQ("1, 2, 3", Column(*store, u"Id"));
  EXPECT_EQ(3u, store->CountOf(m.run));
  EXPECT_EQ("'first', 'third', -", Column(*store, u"Note"));
  EXPECT_EQ("T1.Runs=1,2", m.LinksOf(*store, "T1.Runs="));
}

TEST_F(MemoryBuilderTest, RefusesToFinishWithAnOpenRecord) {
  builder.BeginRecord(m.run);
  EXPECT_THROW((void)builder.Finish({}, nullptr), Exception);
}

TEST_F(MemoryBuilderTest, JoinsLinksToldOnEitherSide) {
  const struct {
    const char *name, *told, *expected;
    const char* dropped;  // "R1.Tags=9" no such target, "R1.Project!2" taken
  } kCases[] = {
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
  const auto sorted = [](const std::string& words) {
    std::istringstream in(words);
    return std::multiset<std::string>(std::istream_iterator<std::string>(in), {});
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    MemoryBuilder some(model);
    // Targets come after the links that name them.
    for (const LinkWord& link : m.Words(c.told)) {
      some.AddLink(link.record.entity, static_cast<Row>(link.record.id - 1), link.relation,
                   link.target.id);
    }
    for (const EntityId entity : {m.project, m.run, m.tag}) {
      for (RecordId id = 1; id <= 3; ++id) some.AppendRecord(entity, id);
    }
    std::string dropped;
    const auto store = some.Finish({}, [&](const DroppedLink& link) {
      const Entity& entity = model->At(link.record.entity);
      const auto& relation = entity.relations[static_cast<std::size_t>(link.relation)];
      dropped += cor::ToUtf8(entity.name).substr(0, 1) + std::to_string(link.record.id) + "." +
                 cor::ToUtf8(relation.name) +
                 (link.reason == DroppedLink::Reason::Taken ? "!" : "=") +
                 std::to_string(link.target) + " ";
    });
    EXPECT_EQ(c.expected, m.LinksOf(*store, c.expected));
    EXPECT_EQ(sorted(c.dropped), sorted(dropped));
  }
}

TEST_F(MemoryBuilderTest, ChangesLinksAfterBulkFilling) {
  for (RecordId id = 1; id <= 2; ++id) builder.AppendRecord(m.project, id);
  for (RecordId id = 1; id <= 4; ++id) {
    builder.AppendRecord(m.run, id);
    builder.AddLink(m.project, 0, m.RelationOf(m.project, u"Runs"), id);
  }
  const auto store = builder.Finish(KeptNowhere(), nullptr);
  m.Link(*store, "P2.Runs+R2");
  store->Delete({m.run, 1});
  EXPECT_EQ(5, store->Create(m.run));
  m.Link(*store, "P1.Runs+R5");
  EXPECT_EQ("P1.Runs=3,4,5 P2.Runs=2", m.LinksOf(*store, "P1.Runs= P2.Runs="));
}

TEST_F(MemoryBuilderTest, TellsWhichValuesDoNotFit) {
  const Row row = *builder.AppendRecord(m.run, 1);
  const auto integer = [&](std::u16string_view name, std::int64_t value) {
    return builder.SetInteger(m.run, row, m.AttributeOf(m.run, name), value);
  };
  const auto real = [&](std::u16string_view name) {
    return builder.SetReal(m.run, row, m.AttributeOf(m.run, name), 1);
  };
  const auto text = [&](std::u16string_view name, std::u16string_view value) {
    return builder.SetText(m.run, row, m.AttributeOf(m.run, name), value);
  };
  EXPECT_TRUE(integer(u"Small", 5));
  EXPECT_FALSE(integer(u"Small", 50000));
  EXPECT_FALSE(integer(u"Note", 1));
  EXPECT_FALSE(integer(u"Id", 2));
  EXPECT_TRUE(integer(u"Value", 5)) << "a real may be whole";
  EXPECT_FALSE(real(u"Small"));
  EXPECT_FALSE(real(u"Pair"));
  EXPECT_FALSE(text(u"When", u"never"));
  EXPECT_FALSE(text(u"Small", u"1"));
  EXPECT_FALSE(builder.SetValue(m.run, row, m.AttributeOf(m.run, u"Numbers"),
                                Value::Integer(OdsType::Long, 1)));
  EXPECT_TRUE(text(u"Note", u"once"));
  EXPECT_TRUE(text(u"Note", u"twice"));
  const auto store = builder.Finish({}, nullptr);
  EXPECT_EQ("5", Column(*store, u"Small"));
  EXPECT_EQ("'twice'", Column(*store, u"Note")) << "what comes last counts";
  EXPECT_EQ("5", Column(*store, u"Value"));
}

TEST_F(MemoryBuilderTest, OpensValuesWhenAskedForAndEachTimeAnew) {
  const Row row = *builder.AppendRecord(m.column, 1);
  int opened = 0;
  builder.SetValues(m.column, row, [&opened] {
    ++opened;
    return InMemoryValues::Open(InMemoryValues::FromValue(Longs({4, 5})));
  });
  const Row other = *builder.AppendRecord(m.column, 2);
  const std::int32_t attribute = m.AttributeOf(m.column, u"Values");
  EXPECT_TRUE(builder.SetValue(m.column, other, attribute, Shorts({1, 2, 3})));
  EXPECT_FALSE(builder.SetValue(m.column, other, attribute, Shorts({99999})));
  const std::int16_t flags[] = {15, 0};
  builder.SetFlags(m.column, row, InMemoryValues::FromFlags(flags));
  builder.SetContextValue(u"exporter", u"a");
  builder.SetContextValue(u"exporter", u"b");
  builder.AddWarning(u"odd");
  const auto store = builder.Finish(KeptNowhere(), nullptr);
  EXPECT_EQ(0, opened);
  EXPECT_EQ("4 5", ValuesText(store->OpenValues({m.column, 1}).get()));
  EXPECT_EQ("15 0", ValuesText(store->OpenFlags({m.column, 1}).get()));
  EXPECT_EQ(1, opened);
  EXPECT_EQ("1 2 3", ValuesText(store->OpenValues({m.column, 2}).get()));
  ASSERT_EQ(1u, store->ContextValues().size());
  EXPECT_EQ(u"b", store->ContextValues()[0].second);
  EXPECT_EQ(1u, store->Warnings().size());

  const std::int16_t more[] = {3};
  store->WriteValues({m.column, 1}, Longs({6}), more, true);
  EXPECT_EQ("4 5 6", ValuesText(store->OpenValues({m.column, 1}).get()));
  EXPECT_EQ("15 0 3", ValuesText(store->OpenFlags({m.column, 1}).get()));
}

}  // namespace
}  // namespace hv::vex::engine::test
