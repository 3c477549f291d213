// tests/core/store/QueryContract.h - what every record store must find: conditions, order, bounds.
#pragma once

#include <random>

#include "core/query/TextMatch.h"

#include "RecordStoreContract.h"
#include "ReferenceEvaluator.h"

namespace hv::vex::engine::test {

/// Five runs with hard values, and a sixth without any.
class RecordStoreQueryContract : public RecordStoreContract {
 protected:
  RecordStoreQueryContract() {
    constexpr std::u16string_view kNumbers[] = {u"Flag", u"Octet", u"Small", u"Count",
                                                u"Big",  u"Ratio", u"Value", u"Kind"};
    constexpr std::u16string_view kTexts[] = {u"When", u"Name", u"Note"};
    const struct {
      double numbers[8];
      std::u16string_view texts[3];
    } kRuns[] = {
        {{1, 0, -32768, -2147483648.0, -9007199254740992.0, 0.1F, 0.1, kRest},
         {u"2010", u"Bremse", u"ÄRGER im Prüfstand"}},
        {{0, 255, 32767, 2147483647.0, 9007199254740992.0, -0.0F, 0, kIdle},
         {u"20100101000001", u"bremse 2", u"cold start"}},
        {{1, 7, 0, 0, 0, 1e10F, -1.5, kLoad}, {u"20100615123000123", u"Straße", u""}},
        {{0, 7, 3, 3, 3, 2.5F, 2.5, kLoad}, {u"20100615123000999", u"STRASSE", u"a*b?c"}},
        {{1, 8, 4, 4, 4, 3, std::nan(""), kIdle}, {u"1999", u"ärger", u"100% \U0001F600 done"}},
    };
    for (const auto& run : kRuns) {
      const RecordRef record = Make(m.run, 0);
      for (std::size_t i = 0; i < 8; ++i) SetNumber(record, kNumbers[i], run.numbers[i]);
      for (std::size_t i = 0; i < 3; ++i) SetText(record, kTexts[i], run.texts[i]);
    }
    Make(m.run, 6);
    Set({m.run, 2}, u"Big", Value::Integer(OdsType::LongLong, 9007199254740993));
    Set({m.run, 3}, u"Doc", Value::Text(OdsType::ExternalReference, u"plan\x1f\x1f./a"));
    m.Link(
        *store,
        "P1.Runs+R1 P1.Runs+R2 P2.Runs+R3 R1.Tags+T1 R1.Tags+T2 R2.Tags+T1 R4.Tags+T3 R1.Next+R2 "
        "R2.Next+R3 P3.Twins+P1");
    SetText({m.project, 1}, u"Name", u"Alpha");
    SetText({m.project, 2}, u"Name", u"Beta");
    SetNumber({m.project, 1}, u"Budget", 100);
    for (RecordId id = 1; id <= 3; ++id) SetNumber({m.tag, id}, u"Weight", static_cast<double>(id));
  }
  BoundNode Condition(std::u16string_view path, QueryOp op, const BoundConstant& constant) const {
    return Compare(m.Path(m.run, path), op, constant);
  }
  std::string Find(BoundNode condition) const {
    return Describe(store->Select(Where(m.run, std::move(condition))));
  }
};

TEST_P(RecordStoreQueryContract, ComparesEveryTypeByEveryOperator) {
  using enum QueryOp;
  const auto i = IntegerConstant;
  const auto r = RealConstant;
  const auto t = [](std::u16string_view text) { return TextConstant(text); };
  const auto fold = [](std::u16string_view text) { return TextConstant(text, true); };
  const auto wild = [](std::u16string_view text) { return TextConstant(text, true, true); };
  const auto exactWild = [](std::u16string_view text) { return TextConstant(text, false, true); };
  constexpr double kHuge = 1e300;
  const struct {
    std::u16string_view path;
    QueryOp op;
    BoundConstant constant;
    const char* expected;
  } kCases[] = {
      {u"Id", Equal, i(3), "3"},
      {u"Id", Equal, i(99), ""},
      {u"Id", NotEqual, i(3), "1, 2, 4, 5, 6"},
      {u"Id", GreaterEqual, r(4.5), "5, 6"},
      {u"Flag", Equal, i(1), "1, 3, 5"},
      {u"Flag", NotEqual, i(1), "2, 4"},
      {u"Octet", Greater, i(7), "2, 5"},
      {u"Octet", Less, i(-1), ""},
      {u"Octet", GreaterEqual, i(-1), "1, 2, 3, 4, 5"},
      {u"Octet", Equal, i(256 + 7), ""},
      {u"Small", Less, i(-32767), "1"},
      {u"Small", LessEqual, i(100000), "1, 2, 3, 4, 5"},
      {u"Small", Equal, r(3.5), ""},
      {u"Small", NotEqual, r(3.5), "1, 2, 3, 4, 5"},
      {u"Small", Less, r(3.5), "1, 3, 4"},
      {u"Small", GreaterEqual, r(-0.5), "2, 3, 4, 5"},
      {u"Small", Greater, r(kHuge), ""},
      {u"Small", LessEqual, r(kHuge), "1, 2, 3, 4, 5"},
      {u"Small", Greater, r(-kHuge), "1, 2, 3, 4, 5"},
      {u"Small", Equal, NeverConstant(), ""},
      {u"Small", NotEqual, NeverConstant(), "1, 2, 3, 4, 5"},
      {u"Small", LessEqual, NeverConstant(), ""},
      {u"Count", Equal, i(-2147483648), "1"},
      {u"Count", GreaterEqual, r(2147483646.5), "2"},
      {u"Big", Equal, i(9007199254740993), "2"},
      {u"Big", Equal, i(9007199254740992), ""},
      {u"Big", Greater, r(9007199254740992.0), "2"},
      {u"Big", LessEqual, i(std::numeric_limits<std::int64_t>::max()), "1, 2, 3, 4, 5"},
      {u"Big", Greater, i(std::numeric_limits<std::int64_t>::max()), ""},
      {u"Big", Less, i(std::numeric_limits<std::int64_t>::min()), ""},
      {u"Ratio", Equal, r(0.1), "1"},
      {u"Ratio", Equal, i(0), "2"},
      {u"Ratio", Less, r(0.1), "2"},
      {u"Ratio", Greater, r(2.5), "3, 5"},
      {u"Value", Equal, r(0.1), "1"},
      {u"Value", NotEqual, r(0.1), "2, 3, 4"},
      {u"Value", Less, i(1), "1, 2, 3"},
      {u"Value", NotEqual, NeverConstant(), "1, 2, 3, 4"},
      {u"Kind", Equal, i(kLoad), "3, 4"},
      {u"Kind", NotEqual, NeverConstant(), "1, 2, 3, 4, 5"},
      {u"When", Equal, t(u"20100101000000"), "1"},
      {u"When", Less, t(u"20100101000001"), "1, 5"},
      {u"When", Equal, t(u"20100615123000"), "3, 4"},
      {u"When", Greater, t(u"20100615123000"), ""},
      {u"When", GreaterEqual, t(u"20100101000001"), "2, 3, 4"},
      {u"When", NotEqual, t(u"20100615123000"), "1, 2, 5"},
      {u"Name", Equal, t(u"Bremse"), "1"},
      {u"Name", Equal, fold(u"BREMSE"), "1"},
      {u"Name", Equal, t(u"STRASSE"), "4"},
      {u"Name", Equal, fold(u"strasse"), "3, 4"},
      {u"Name", NotEqual, fold(u"straße"), "1, 2, 5"},
      {u"Name", Equal, fold(u"A\u0308RGER"), "5"},
      {u"Name", Less, t(u"a"), "1, 3, 4"},
      {u"Name", Greater, fold(u"STRASS"), "3, 4, 5"},
      {u"Name", LessEqual, fold(u"Bremse 2"), "1, 2"},
      {u"Name", Equal, wild(u"bremse*"), "1, 2"},
      {u"Name", Equal, wild(u"stra??e"), "3, 4"},
      {u"Name", Equal, exactWild(u"STRA*"), "4"},
      {u"Name", NotEqual, wild(u"*s*"), "5"},
      {u"Name", Equal, wild(u"*"), "1, 2, 3, 4, 5"},
      {u"Note", Equal, t(u""), "3"},
      {u"Note", Equal, t(u"a*b?c"), "4"},
      {u"Note", Equal, wild(u"100% ? done"), "5"},
      {u"Note", NotEqual, wild(u"*"), ""},
      {u"Doc", Equal, wild(u"plan*"), "3"},
      {u"Project.Name", Equal, fold(u"alpha"), "1, 2"},
      {u"Project.Name", NotEqual, fold(u"alpha"), "3"},
      {u"Project.Budget", NotEqual, i(5), "1, 2"},
      {u"Project.Id", GreaterEqual, i(2), "3"},
      {u"Tags.Weight", GreaterEqual, i(1), "1, 2, 4"},
      {u"Tags.Weight", NotEqual, i(1), "1, 4"},
      {u"Tags.Runs.Name", Equal, fold(u"bremse 2"), "1, 2"},
      {u"Project.Runs.Tags.Weight", Equal, i(2), "1, 2"},
      {u"Next.Next.Name", Equal, fold(u"strasse"), "1"},
      {u"Previous.Id", Greater, i(0), "2, 3"},
      {u"Project.Twins.Id", Equal, i(3), "1, 2"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(cor::ToUtf8(c.path) + " operator " + std::to_string(static_cast<int>(c.op)) + " " +
                 cor::ToUtf8(c.constant.text) + " " + std::to_string(c.constant.integer) + " " +
                 std::to_string(c.constant.real));
    EXPECT_EQ(c.expected, Find(Condition(c.path, c.op, c.constant)));
  }
}

TEST_P(RecordStoreQueryContract, ComparesTheOutermostIntegersExactly) {
  using enum QueryOp;
  using Limits = std::numeric_limits<std::int64_t>;
  constexpr double kEdge = 9223372036854775808.0;  // one above the highest, and minus the lowest
  const struct {
    std::int64_t value;
    double constant;
    QueryOp op;
    bool isFound;
  } kCases[] = {
      {Limits::min(), -1e300, Greater, true},      {Limits::min(), -1e300, LessEqual, false},
      {Limits::min(), -1e300, Equal, false},       {Limits::min(), -kEdge, Equal, true},
      {Limits::min(), -kEdge, Less, false},        {Limits::max(), kEdge, Less, true},
      {Limits::max(), kEdge, GreaterEqual, false}, {Limits::max(), kEdge, Equal, false},
      {Limits::max(), 1e300, NotEqual, true},      {Limits::max(), -kEdge, Greater, true},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(std::to_string(c.value) + " operator " + std::to_string(static_cast<int>(c.op)) +
                 " " + std::to_string(c.constant));
    Set({m.run, 6}, u"Big", Value::Integer(OdsType::LongLong, c.value));
    const BoundNode six = Condition(u"Id", Equal, IntegerConstant(6));
    const BoundNode big = Condition(u"Big", c.op, RealConstant(c.constant));
    EXPECT_EQ(c.isFound ? "6" : "", Find(Logic(And, {six, big})));
  }
}

TEST_P(RecordStoreQueryContract, JoinsConditionsAndNeverRepeatsHits) {
  using enum QueryOp;
  const auto tag = [&](std::int64_t id) {
    return Condition(u"Tags.Id", Equal, IntegerConstant(id));
  };
  const auto any = [&] { return Condition(u"Tags.Id", Greater, IntegerConstant(0)); };
  EXPECT_EQ("1, 2, 4", Find(any())) << "two tags, one hit";
  EXPECT_EQ("1", Find(Logic(And, {tag(1), tag(2)})))
      << "two different tags meet one condition each";
  EXPECT_EQ("1, 2, 4", Find(Logic(Or, {tag(1), tag(2), tag(3)})));
  EXPECT_EQ("1, 2", Find(Logic(And, {any(), Logic(Or, {tag(1), tag(2)})})));
  EXPECT_EQ("", Find(Logic(And, {tag(3), tag(1)})));
  EXPECT_EQ("2, 4", Find(Logic(And, {Logic(Or, {tag(1), tag(3)}),
                                     Condition(u"Flag", Equal, IntegerConstant(0))})));
}

TEST_P(RecordStoreQueryContract, LimitsAndOrders) {
  BoundQuery query = All(m.run);
  const auto select = [&](std::int64_t limit, std::vector<BoundOrder> order) {
    query.limit = limit;
    query.order = std::move(order);
    return Describe(store->Select(query));
  };
  const auto by = [&](std::u16string_view path, bool descending = false) {
    return BoundOrder{m.Path(m.run, path), descending};
  };
  EXPECT_EQ("1, 2, 3, 4, 5, 6", select(0, {}));
  EXPECT_EQ("1, 2", select(2, {}));
  EXPECT_EQ("1, 2, 3, 4, 5, 6", select(100, {}));
  EXPECT_EQ("6, 5, 4, 3, 2, 1", select(0, {by(u"Id", true)}));
  EXPECT_EQ("1, 3, 4, 5, 2, 6", select(0, {by(u"Small")}));
  EXPECT_EQ("2, 5, 4, 3, 1, 6", select(0, {by(u"Small", true)})) << "unset comes last both ways";
  EXPECT_EQ("3, 2, 1", select(3, {by(u"Value")})) << "NaN counts as unset";
  EXPECT_EQ("1, 2, 3, 4, 5, 6", select(0, {by(u"Name")})) << "ä behind z, ß as ss";
  EXPECT_EQ("5, 3, 4, 2, 1, 6", select(0, {by(u"Name", true)}));
  EXPECT_EQ("5, 1, 2, 3, 4, 6", select(0, {by(u"When")}));
  EXPECT_EQ("4, 3, 2, 5, 1, 6", select(0, {by(u"Kind", true), by(u"Flag")}));
  EXPECT_EQ("3, 1, 2, 4, 5, 6", select(0, {by(u"Project.Name", true)}));
  EXPECT_EQ("4, 1, 2, 3, 5, 6", select(0, {by(u"Tags.Weight", true)})) << "the highest tag counts";
  EXPECT_EQ("1, 2, 4, 3, 5, 6", select(0, {by(u"Tags.Weight")})) << "the lowest tag counts";
}

TEST_P(RecordStoreQueryContract, FindsAmongWhatARecordLeadsTo) {
  m.Link(*store, "P1.Runs+R6 P1.Runs-R1 P1.Runs+R1 T2.Runs+R4 P1.Runs+R5");
  const BoundNode conditions[] = {
      Condition(u"Name", QueryOp::Equal, TextConstant(u"br*", true, true)),
      Condition(u"Project.Name", QueryOp::Equal, TextConstant(u"alpha", true)),
      Condition(u"Tags.Weight", QueryOp::Greater, IntegerConstant(1))};
  int hits = 0;
  for (const BoundNode& condition : conditions) {
    const std::vector<RecordId> all = store->Select(Where(m.run, condition));
    for (const EntityId entity : {m.project, m.run, m.tag}) {
      const auto& relations = m.model.At(entity).relations;
      for (std::size_t r = 0; r < relations.size(); ++r) {
        if (relations[r].target != m.run) continue;
        const auto relation = static_cast<std::int32_t>(r);
        std::vector<RecordId> sources = store->AllOf(entity);
        sources.push_back(77);
        for (const RecordId source : sources) {
          std::vector<RecordId> expected;
          for (const Link& link : store->Follow(entity, relation, {&source, 1})) {
            if (std::count(all.begin(), all.end(), link.target.id) != 0) {
              expected.push_back(link.target.id);
            }
          }
          BoundQuery query = Where(m.run, condition);
          query.start = BoundStart{entity, relation, source};
          EXPECT_EQ(Describe(expected), Describe(store->Select(query)))
              << cor::ToUtf8(relations[r].name) << " of " << source;
          query.limit = 1;
          expected.resize(std::min<std::size_t>(expected.size(), 1));
          EXPECT_EQ(Describe(expected), Describe(store->Select(query)));
          hits += static_cast<int>(expected.size());
        }
      }
    }
  }
  EXPECT_GT(hits, 8);
}

TEST_P(RecordStoreQueryContract, FindsInstanceAttributes) {
  const std::pair<RecordId, InstanceAttribute> kSet[] = {
      {1, {u"Oil", Word(u"5W-30"), 0}},
      {1, {u"Temp", Value::Real(OdsType::Float, 0.1), 0}},
      {2, {u"OIL", Value::Integer(OdsType::Long, 5), 0}},
      {2, {u"Day", Value::Text(OdsType::Date, u"2010"), 0}},
      {3, {u"Oil", Value::Unset(OdsType::String), 0}},
      {4, {u"Temp", Value::Integer(OdsType::Byte, 5), 0}},
      {4, {u"Oil", Value::Real(OdsType::Double, std::nan("")), 0}},
  };
  for (const auto& [id, attribute] : kSet) store->SetInstanceAttribute({m.run, id}, attribute);
  using enum QueryOp;
  const struct {
    std::u16string_view name;
    QueryOp op;
    BoundConstant constant;
    const char* expected;
  } kCases[] = {
      {u"oil", Equal, TextConstant(u"5w-*", true, true), "1"},
      {u"oil", NotEqual, InstanceConstant(u"5"), "1"},
      {u"oil", NotEqual, InstanceConstant(u"six"), "1, 2"},
      {u"oil", Equal, {}, "1, 2, 4"},
      {u"", Equal, InstanceConstant(u"5"), "2, 4"},
      {u"", GreaterEqual, InstanceConstant(u"0.1"), "1, 2, 4"},
      {u"temp", Equal, InstanceConstant(u"0.1"), "1"},
      {u"temp", Less, InstanceConstant(u"5.5"), "1, 4"},
      {u"day", Less, InstanceConstant(u"20100101000001"), "2"},
      {u"day", Equal, InstanceConstant(u"20100101"), "2"},
      {u"day", Equal, InstanceConstant(u"new year"), ""},
      {u"fuel", NotEqual, InstanceConstant(u"x"), ""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(cor::ToUtf8(c.name) + " " + cor::ToUtf8(c.constant.text) + " " + c.expected);
    ResolvedPath here;
    here.target = m.run;
    EXPECT_EQ(c.expected, Find(CompareInstance(here, c.name, c.op, c.constant)));
  }
  const BoundNode related = CompareInstance(m.Path(m.run, u"Next.Name"), u"day", Equal, {});
  EXPECT_EQ("1", Find(related));
  EXPECT_TRUE(store->RemoveInstanceAttribute({m.run, 2}, u"Day"));
  EXPECT_EQ("", Find(related));
}

TEST_P(RecordStoreQueryContract, SearchesFreeText) {
  ASSERT_TRUE(store->GetCapabilities().freeText);
  BoundQuery query = All(m.run);
  const std::pair<std::u16string_view, const char*> kCases[] = {
      {u"bremse", "1, 2"},
      {u"BREMSE prüf", "1"},
      {u"bremse cold start", "2"},
      {u"start cold", "2"},
      {u"\"cold start\"", "2"},
      {u"\"start cold\"", ""},
      {u"  ärger\t", "1, 5"},
      {u"strasse", "3, 4"},
      {u"*", "4"},
      {u"\"cold start\" brems", "2"},
      {u"\"cold start", "2"},
      {u"\U0001F600", "5"},
      {u"bremse nothing", ""},
      {u"\"\" ", "1, 2, 3, 4, 5, 6"},
  };
  for (const auto& [text, expected] : kCases) {
    SCOPED_TRACE(cor::ToUtf8(text));
    query.freeText = text;
    EXPECT_EQ(expected, Describe(store->Select(query)));
  }
  query = Where(m.run, Condition(u"Flag", QueryOp::Equal, IntegerConstant(0)));
  query.freeText = u"bremse";
  EXPECT_EQ("2", Describe(store->Select(query)));
}

TEST_P(RecordStoreQueryContract, GivesDistinctValuesAndBounds) {
  SetText({m.run, 6}, u"Name", u"Bremse");
  const BoundQuery load = Where(m.run, Condition(u"Kind", QueryOp::Equal, IntegerConstant(kLoad)));
  const BoundQuery none = Where(m.run, Condition(u"Id", QueryOp::Equal, IntegerConstant(77)));
  const BoundQuery firstTwo = All(m.run, 2);
  const struct {
    std::u16string_view attribute;
    const BoundQuery* restriction;
    std::size_t limit;
    const char *distinct, *lowest, *highest;
    std::uint64_t count;
  } kCases[] = {
      {u"Id", nullptr, 0, "1, 2, 3, 4, 5, 6", "1", "6", 6},
      {u"Flag", nullptr, 0, "0, 1", "0", "1", 5},
      {u"Octet", nullptr, 2, "0, 7", "0", "255", 5},
      {u"Octet", &load, 0, "7", "7", "7", 2},
      {u"Octet", &firstTwo, 0, "0, 255", "0", "255", 2},
      {u"Octet", &none, 0, "", "-", "-", 0},
      {u"Value", nullptr, 0, "-1.5, 0, 0.1, 2.5", "-1.5", "2.5", 4},
      {u"Kind", nullptr, 0, "0, 1, 7", "0", "7", 5},
      {u"When", &load, 0, "'20100615123000123', '20100615123000999'", "'20100615123000123'",
       "'20100615123000999'", 2},
      {u"Name", nullptr, 0, "'Bremse', 'bremse 2', 'STRASSE', 'Straße', 'ärger'", "'Bremse'",
       "'ärger'", 6},
      {u"Name", nullptr, 1, "'Bremse'", "'Bremse'", "'ärger'", 6},
      {u"Note", &load, 0, "'', 'a*b?c'", "''", "'a*b?c'", 2},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(cor::ToUtf8(c.attribute));
    const std::int32_t attribute = m.AttributeOf(m.run, c.attribute);
    EXPECT_EQ(c.distinct, Describe(store->Distinct(m.run, attribute, c.restriction, c.limit)));
    const Bounds bounds = store->BoundsOf(m.run, attribute, c.restriction);
    EXPECT_EQ(c.count, bounds.count);
    EXPECT_EQ(c.lowest, ValueText(bounds.lowest));
    EXPECT_EQ(c.highest, ValueText(bounds.highest));
  }
  const BoundQuery projects = All(m.project);
  EXPECT_EQ(errc::kInvalidArgument, CodeOf([&] { (void)store->Distinct(m.run, 0, &projects, 0); }));
  for (const std::u16string_view name : {u"Numbers", u"Pair", u"Raw"}) {
    SCOPED_TRACE(cor::ToUtf8(name));
    const std::int32_t attribute = m.AttributeOf(m.run, name);
    EXPECT_EQ(errc::kNotSupported,
              CodeOf([&] { (void)store->Distinct(m.run, attribute, nullptr, 0); }));
    EXPECT_EQ(errc::kNotSupported,
              CodeOf([&] { (void)store->BoundsOf(m.run, attribute, nullptr); }));
  }
}

TEST_P(RecordStoreQueryContract, SeesUnsavedChanges) {
  const BoundNode load = Condition(u"Kind", QueryOp::Equal, IntegerConstant(kLoad));
  const BoundNode alpha = Condition(u"Project.Name", QueryOp::Equal, TextConstant(u"Alpha"));
  store->Delete({m.run, 3});
  EXPECT_EQ("4", Find(load));
  SetNumber({m.run, 6}, u"Kind", kLoad);
  EXPECT_EQ("4, 6", Find(load));
  m.Link(*store, "P1.Runs+R6 P2.Runs+R1");
  EXPECT_EQ("2, 6", Find(alpha));
  SetText({m.project, 2}, u"Name", u"Alpha");
  EXPECT_EQ("1, 2, 6", Find(alpha));
  store->Delete({m.project, 1});
  EXPECT_EQ("1", Find(alpha));
  Set({m.run, 6}, u"Kind", Value::Unset(OdsType::Enum));
  EXPECT_EQ("4", Find(load));
}

// --- random queries against the reference ------------------------------------------------------

/// Random records and random queries over them; every choice comes from one seeded generator.
class RandomQueries {
 public:
  RandomQueries(RecordStore& store, const ContractModel& m, std::uint32_t seed)
      : m_store(store), m_m(m), m_random(seed) {}

  void Fill(int projects, int runs, int tags) {
    const EntityId entities[] = {m_m.project, m_m.run, m_m.tag};
    const int counts[] = {projects, runs, tags};
    for (int e = 0; e < 3; ++e) {
      for (int i = 0; i < counts[e]; ++i) {
        // Ids with gaps, and some out of order.
        FillRecord(
            {entities[e], m_store.Create(entities[e], Chance(10) ? 2000 - i * 2 : i * 2 + 1)});
      }
    }
    const auto link = [&](EntityId from, std::u16string_view relation, EntityId to) {
      const auto sources = m_store.AllOf(from);
      const auto targets = m_store.AllOf(to);
      m_store.Connect({from, sources[Below(sources.size())]}, m_m.RelationOf(from, relation),
                      {to, targets[Below(targets.size())]});
    };
    for (int i = 0; i < runs; ++i) {
      link(m_m.run, u"Project", m_m.project);
      link(m_m.tag, u"Runs", m_m.run);
      if (Chance(2)) link(m_m.run, u"Next", m_m.run);
      if (Chance(4)) link(m_m.project, u"Twins", m_m.project);
    }
    for (int i = 0; i < runs / 10; ++i) {
      const auto all = m_store.AllOf(m_m.run);
      m_store.Delete({m_m.run, all[Below(all.size())]});
    }
  }

  BoundQuery MakeQuery() {
    const EntityId entities[] = {m_m.run, m_m.run, m_m.project, m_m.tag};
    BoundQuery query = All(OneOf(entities));
    query.hasCondition = !Chance(10);
    if (query.hasCondition) query.condition = MakeNode(query.entity, 3);
    if (Chance(3)) query.limit = static_cast<std::int64_t>(Below(12));
    while (Chance(3)) query.order.push_back({MakePath(query.entity, true), Chance(2)});
    return query;
  }

 private:
  std::size_t Below(std::size_t n) { return m_random() % n; }
  bool Chance(std::size_t oneOf) { return Below(oneOf) == 0; }

  template <class T, std::size_t n>
  T OneOf(const T (&all)[n]) {
    return all[Below(n)];
  }

  std::u16string MakeText() {
    constexpr std::u16string_view kTexts[] = {u"",   u"a",    u"A",  u"b",   u"ab", u"aB", u"ß",
                                              u"ss", u"Ähre", u"äb", u"a b", u"*",  u"a*b"};
    return std::u16string(OneOf(kTexts));
  }
  std::u16string MakeDate() {
    constexpr std::u16string_view kDates[] = {u"2010", u"20100101000000123", u"201006",
                                              u"20100601120000", u"19991231235959"};
    return std::u16string(OneOf(kDates));
  }
  std::int64_t MakeInteger() { return static_cast<std::int64_t>(Below(8)) - 2; }
  double MakeReal() { return static_cast<double>(MakeInteger()) / 2 + (Chance(4) ? 0.1 : 0); }

  void FillRecord(RecordRef record) {
    const Entity& entity = m_m.model.At(record.entity);
    for (std::int32_t a = 0; a < static_cast<std::int32_t>(entity.attributes.size()); ++a) {
      const Attribute& attribute = entity.attributes[static_cast<std::size_t>(a)];
      if (a == entity.idAttribute || attribute.sequence || Chance(4)) continue;
      const StorageKind kind = StorageKindOf(attribute.type);
      Value value = Value::Unset(attribute.type);
      if (kind == StorageKind::Integer) {
        const bool isNarrow = attribute.type == OdsType::Boolean || attribute.type == OdsType::Byte;
        const std::int64_t mask = attribute.type == OdsType::Boolean ? 1 : 3;
        value = Value::Integer(attribute.type, MakeInteger() & (isNarrow ? mask : -1));
      } else if (kind == StorageKind::Real && PartsOf(attribute.type) == 1) {
        value = Value::Real(attribute.type, Chance(9) ? NAN : MakeReal());
      } else if (kind == StorageKind::Text) {
        value =
            Value::Text(attribute.type, attribute.type == OdsType::Date ? MakeDate() : MakeText());
      }
      m_store.Write(record, a, value);
    }
    if (Chance(2))
      m_store.SetInstanceAttribute(record, {MakeText() + u"n", MakeInstanceValue(), 0});
    if (Chance(3)) m_store.SetInstanceAttribute(record, {u"n", MakeInstanceValue(), 0});
  }
  Value MakeInstanceValue() {
    const Value values[] = {Value::Integer(OdsType::Long, MakeInteger()),
                            Value::Real(OdsType::Float, MakeReal()),
                            Value::Text(OdsType::Date, MakeDate()), Word(MakeText())};
    return OneOf(values);
  }

  /// Up to three steps, and with `wantAttribute` an attribute that can be compared.
  ResolvedPath MakePath(EntityId entity, bool wantAttribute) {
    ResolvedPath path;
    path.target = entity;
    while (path.steps.size() < 3 && Chance(2)) {
      const auto& relations = m_m.model.At(path.target).relations;
      const auto relation = Below(relations.size());
      path.steps.push_back({path.target, static_cast<std::int32_t>(relation)});
      path.target = relations[relation].target;
    }
    const auto& attributes = m_m.model.At(path.target).attributes;
    while (wantAttribute && path.attribute == kNone) {
      const std::size_t a = Below(attributes.size());
      const bool isComparable = !attributes[a].sequence &&
                                StorageKindOf(attributes[a].type) != StorageKind::Bytes &&
                                PartsOf(attributes[a].type) == 1;
      if (isComparable) path.attribute = static_cast<std::int32_t>(a);
    }
    return path;
  }

  QueryOp MakeOp() {
    using enum QueryOp;
    constexpr QueryOp kOps[] = {Equal, NotEqual, Less, LessEqual, Greater, GreaterEqual};
    return OneOf(kOps);
  }

  BoundNode MakeNode(EntityId entity, int depth) {
    if (depth > 0 && Chance(2)) {
      std::vector<BoundNode> children;
      for (std::size_t n = Below(3) + 1; n > 0; --n)
        children.push_back(MakeNode(entity, depth - 1));
      return Logic(Chance(2) ? QueryOp::And : QueryOp::Or, std::move(children));
    }
    if (Chance(8)) return MakeInstanceNode(entity);
    const ResolvedPath path = MakePath(entity, true);
    const Attribute& attribute =
        m_m.model.At(path.target).attributes[static_cast<std::size_t>(path.attribute)];
    BoundConstant constant = Chance(3) ? RealConstant(MakeReal()) : IntegerConstant(MakeInteger());
    const QueryOp op = MakeOp();
    if (attribute.type == OdsType::Date) {
      const auto date = NormalizeDate14(MakeDate());
      constant = TextConstant(std::u16string(date->begin(), date->end()));
    } else if (StorageKindOf(attribute.type) == StorageKind::Text) {
      const bool isEquality = op == QueryOp::Equal || op == QueryOp::NotEqual;
      const bool isWild = isEquality && Chance(3);
      constant = TextConstant(MakeText() + (isWild ? u"*" : u""), Chance(2), isWild);
    }
    if (Chance(20)) constant.isNever = true;
    return Compare(path, op, constant);
  }
  BoundNode MakeInstanceNode(EntityId entity) {
    constexpr std::u16string_view kConstants[] = {u"1", u"0.5", u"a", u"2010", u"-1"};
    const std::u16string name = Chance(2) ? FoldCase(MakeText() + u"n") : u"";
    return CompareInstance(
        MakePath(entity, false), name, MakeOp(),
        Chance(4) ? BoundConstant() : InstanceConstant(OneOf(kConstants), Chance(2)));
  }

  RecordStore& m_store;
  const ContractModel& m_m;
  std::mt19937 m_random;
};

TEST_P(RecordStoreContract, FindsWhatAReferenceFinds) {
  constexpr int kQueriesPerStore = 1000;
  std::size_t hits = 0;
  for (const std::uint32_t seed : {1u, 2u, 3u, 4u, 5u, 6u, 7u, 8u}) {
    store = GetParam().make(model);
    RandomQueries random(*store, m, seed);
    // The last store has more records than fit into a few words of a bitmap.
    const int scale = seed == 8 ? 6 : 1;
    random.Fill(8 * scale, 60 * scale, 12 * scale);
    for (int i = 0; i < kQueriesPerStore / scale; ++i) {
      const BoundQuery query = random.MakeQuery();
      const std::string expected = Describe(ReferenceSelect(*store, query));
      ASSERT_EQ(expected, Describe(store->Select(query)))
          << "seed " << seed << " query " << i << " " << Describe(query.condition, *model);
      hits += expected.empty() ? 0 : 1;
    }
  }
  EXPECT_GT(hits, 3000u) << "the queries must find something to mean anything";
}

}  // namespace hv::vex::engine::test
