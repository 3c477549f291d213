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
  BoundNode If(std::u16string_view condition) const { return Condition(*model, m.run, condition); }
  std::string Find(std::u16string_view condition) const { return Find(If(condition)); }
  std::string Find(BoundNode condition) const {
    return Describe(store->Select(Where(m.run, std::move(condition))));
  }
};

TEST_P(RecordStoreQueryContract, ComparesEveryTypeByEveryOperator) {
  // What each of these conditions finds.
  const std::pair<const char*, std::u16string_view> kCases[] = {
      {"3", u"Id = 3; Note = ''; Doc = 'plan*'wi; Project.Name != 'alpha'i; Project.Id >= 2"},
      {"",
       u"Id = 99; Octet < -1; Octet = 263; Small = r3.5; Small > r1e300; Small = never; "
       u"Small <= never; Big = 9007199254740992; Big > 9223372036854775807; "
       u"Big < -9223372036854775808; When > '20100615123000'; Note != '*'wi"},
      {"1, 2, 4, 5, 6", u"Id != 3"},
      {"5, 6", u"Id >= r4.5"},
      {"1, 3, 5", u"Flag = 1"},
      {"2, 4", u"Flag != 1"},
      {"2, 5", u"Octet > 7"},
      {"1, 2, 3, 4, 5",
       u"Octet >= -1; Small <= 100000; Small != r3.5; Small <= r1e300; Small > r-1e300; "
       u"Small != never; Big <= 9223372036854775807; Kind != never; Name = '*'wi"},
      {"1",
       u"Small < -32767; Count = -2147483648; Ratio = r0.1; Value = r0.1; "
       u"When = '20100101000000'; Name = 'Bremse'; Name = 'BREMSE'i; Next.Next.Name = 'strasse'i"},
      {"1, 3, 4", u"Small < r3.5; Name < 'a'"},
      {"2, 3, 4, 5", u"Small >= r-0.5"},
      {"2",
       u"Count >= r2147483646.5; Big = 9007199254740993; Big > r9007199254740992; Ratio = 0; "
       u"Ratio < r0.1"},
      {"3, 5", u"Ratio > r2.5"},
      {"2, 3, 4", u"Value != r0.1; When >= '20100101000001'"},
      {"1, 2, 3", u"Value < 1"},
      {"1, 2, 3, 4", u"Value != never"},
      {"3, 4", u"Kind = 7; When = '20100615123000'; Name = 'strasse'i; Name = 'stra??e'wi"},
      {"1, 5", u"When < '20100101000001'"},
      {"1, 2, 5", u"When != '20100615123000'; Name != 'straße'i"},
      {"4", u"Name = 'STRASSE'; Name = 'STRA*'w; Note = 'a*b?c'"},
      {"5", u"Name = 'A\u0308RGER'i; Name != '*s*'wi; Note = '100% ? done'wi"},
      {"3, 4, 5", u"Name > 'STRASS'i"},
      {"1, 2",
       u"Name <= 'Bremse 2'i; Name = 'bremse*'wi; Project.Name = 'alpha'i; Project.Budget != 5; "
       u"Tags.Runs.Name = 'bremse 2'i; Project.Runs.Tags.Weight = 2; Project.Twins.Id = 3"},
      {"1, 2, 4", u"Tags.Weight >= 1"},
      {"1, 4", u"Tags.Weight != 1"},
      {"2, 3", u"Previous.Id > 0"},
  };
  for (const auto& [expected, conditions] : kCases) {
    for (std::size_t begin = 0, end = 0; end != conditions.npos; begin = end + 2) {
      end = conditions.find(u"; ", begin);
      const std::u16string_view condition = conditions.substr(begin, end - begin);
      EXPECT_EQ(expected, Find(condition)) << cor::ToUtf8(condition);
    }
  }
}

TEST_P(RecordStoreQueryContract, ComparesTheOutermostIntegersExactly) {
  using Limits = std::numeric_limits<std::int64_t>;
  // The number is one above the highest, and minus the lowest.
  const std::tuple<std::int64_t, const char*, std::u16string_view> kCases[] = {
      {Limits::min(), "6", u"Big > r-1e300"},
      {Limits::min(), "", u"Big <= r-1e300"},
      {Limits::min(), "", u"Big = r-1e300"},
      {Limits::min(), "6", u"Big = r-9223372036854775808"},
      {Limits::min(), "", u"Big < r-9223372036854775808"},
      {Limits::max(), "6", u"Big < r9223372036854775808"},
      {Limits::max(), "", u"Big >= r9223372036854775808"},
      {Limits::max(), "", u"Big = r9223372036854775808"},
      {Limits::max(), "6", u"Big != r1e300"},
      {Limits::max(), "6", u"Big > r-9223372036854775808"},
  };
  for (const auto& [value, expected, condition] : kCases) {
    Set({m.run, 6}, u"Big", Value::Integer(OdsType::LongLong, value));
    EXPECT_EQ(expected, Find(Logic(QueryOp::And, {If(u"Id = 6"), If(condition)})))
        << value << " " << cor::ToUtf8(condition);
  }
}

TEST_P(RecordStoreQueryContract, JoinsConditionsAndNeverRepeatsHits) {
  using enum QueryOp;
  const BoundNode any = If(u"Tags.Id > 0"), one = If(u"Tags.Id = 1"), two = If(u"Tags.Id = 2"),
                  three = If(u"Tags.Id = 3");
  EXPECT_EQ("1, 2, 4", Find(any)) << "two tags, one hit";
  EXPECT_EQ("1", Find(Logic(And, {one, two}))) << "two different tags meet one condition each";
  EXPECT_EQ("1, 2, 4", Find(Logic(Or, {one, two, three})));
  EXPECT_EQ("1, 2", Find(Logic(And, {any, Logic(Or, {one, two})})));
  EXPECT_EQ("", Find(Logic(And, {three, one})));
  EXPECT_EQ("2, 4", Find(Logic(And, {Logic(Or, {one, three}), If(u"Flag = 0")})));
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
      {u"oil", Equal, ConstantOf(u"'5w-*'wi"), "1"},
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
  query = Where(*model, m.run, u"Flag = 0");
  query.freeText = u"bremse";
  EXPECT_EQ("2", Describe(store->Select(query)));
}

TEST_P(RecordStoreQueryContract, GivesDistinctValuesAndBounds) {
  SetText({m.run, 6}, u"Name", u"Bremse");
  const BoundQuery load = Where(*model, m.run, u"Kind = 7");
  const BoundQuery none = Where(*model, m.run, u"Id = 77");
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
  const std::u16string_view load = u"Kind = 7", alpha = u"Project.Name = 'Alpha'";
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
    if (Chance(5)) query.start = MakeStart(query.entity);
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

  /// Any record, or none, with a relation that leads to records of the entity.
  BoundStart MakeStart(EntityId to) {
    const EntityId entities[] = {m_m.project, m_m.run, m_m.tag};
    for (;;) {
      const EntityId entity = OneOf(entities);
      const auto& relations = m_m.model.At(entity).relations;
      const std::size_t relation = Below(relations.size());
      const std::vector<RecordId> ids = m_store.AllOf(entity);
      if (relations[relation].target != to) continue;
      return {entity, static_cast<std::int32_t>(relation),
              Chance(10) ? 7777 : ids[Below(ids.size())]};
    }
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
    BoundConstant constant;
    constant.isReal = Chance(3);
    constant.integer = MakeInteger();
    constant.real = constant.isReal ? MakeReal() : static_cast<double>(constant.integer);
    const QueryOp op = MakeOp();
    if (attribute.type == OdsType::Date) {
      const auto date = NormalizeDate14(MakeDate());
      constant.text.assign(date->begin(), date->end());
    } else if (StorageKindOf(attribute.type) == StorageKind::Text) {
      constant.wildcards = (op == QueryOp::Equal || op == QueryOp::NotEqual) && Chance(3);
      constant.ignoreCase = Chance(2);
      constant.text = MakeText() + (constant.wildcards ? u"*" : u"");
      if (constant.ignoreCase) constant.text = FoldCase(constant.text);
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
