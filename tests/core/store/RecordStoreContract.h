// tests/core/store/RecordStoreContract.h - what every record store must do: records and links.
// Include it in one source of a test program and instantiate RecordStoreContract with a factory.
#pragma once

#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ContractModel.h"
#include "store/core/Exception.h"
#include "storefabric/WString.h"

namespace hv::vex::engine::test {

/// Makes an empty store over a model that can be changed, saved and discarded.
struct StoreFactory {
  std::string name;
  std::function<std::unique_ptr<RecordStore>(std::shared_ptr<const Model>)> make;
};

inline void PrintTo(const StoreFactory& factory, std::ostream* out) { *out << factory.name; }

/// The code that an action throws; 0 if it throws nothing.
template <class Action>
std::int32_t CodeOf(Action&& action) {
  try {
    action();
  } catch (const Exception& e) {
    EXPECT_FALSE(e.message.empty()) << "an error must say what is wrong";
    return e.code;
  }
  return 0;
}

class RecordStoreContract : public ::testing::TestWithParam<StoreFactory> {
 protected:
  RecordStoreContract() : model(MakeContractModel()), m(*model), store(GetParam().make(model)) {}

  RecordRef Make(EntityId entity, RecordId id) { return {entity, store->Create(entity, id)}; }
  void Set(RecordRef record, std::u16string_view attribute, const Value& value) {
    store->Write(record, m.AttributeOf(record.entity, attribute), value);
  }
  Value Get(RecordRef record, std::u16string_view attribute) {
    return store->ReadValue(record, m.AttributeOf(record.entity, attribute));
  }
  void SetText(RecordRef record, std::u16string_view attribute, std::u16string_view text) {
    const OdsType type =
        attribute == u"When" || attribute == u"Started" ? OdsType::Date : OdsType::String;
    Set(record, attribute, Value::Text(type, std::u16string(text)));
  }
  void SetNumber(RecordRef record, std::u16string_view attribute, double number) {
    const auto index = static_cast<std::size_t>(m.AttributeOf(record.entity, attribute));
    const OdsType type = model->At(record.entity).attributes[index].type;
    Set(record, attribute,
        StorageKindOf(type) == StorageKind::Real
            ? Value::Real(type, number)
            : Value::Integer(type, static_cast<std::int64_t>(number)));
  }
  std::u16string Read(EntityId entity, std::u16string_view attribute,
                      const std::vector<RecordId>& ids) {
    const std::int32_t asked[] = {m.AttributeOf(entity, attribute)};
    return Describe(store->ReadColumns(entity, ids, asked).at(0));
  }

  std::shared_ptr<const Model> model;
  ContractModel m;
  std::unique_ptr<RecordStore> store;
};

TEST_P(RecordStoreContract, CreatesRecordsWithNewOrGivenIds) {
  EXPECT_EQ(1, store->Create(m.run));
  EXPECT_EQ(40, store->Create(m.run, 40));
  EXPECT_EQ(41, store->Create(m.run));
  EXPECT_EQ(7, store->Create(m.run, 7));
  EXPECT_EQ(1, store->Create(m.tag)) << "ids are counted per entity";
  EXPECT_EQ("1, 7, 40, 41", Describe(store->AllOf(m.run)));
  EXPECT_EQ(4u, store->CountOf(m.run));
  EXPECT_TRUE(store->Exists({m.run, 7}));
  EXPECT_FALSE(store->Exists({m.run, 8}));
  EXPECT_FALSE(store->Exists({m.project, 7}));
  EXPECT_EQ(errc::kNotUnique, CodeOf([&] { store->Create(m.run, 40); }));
  constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();
  EXPECT_EQ(kHighest, store->Create(m.project, kHighest));
  EXPECT_EQ(errc::kNotSupported, CodeOf([&] { store->Create(m.project); }));
  EXPECT_EQ(4u, store->CountOf(m.run));
}

TEST_P(RecordStoreContract, GivesBackValuesOfEveryType) {
  using Limits = std::numeric_limits<std::int64_t>;
  const struct {
    std::u16string_view attribute;
    Value value;
  } kCases[] = {
      {u"Flag", Value::Integer(OdsType::Boolean, 1)},
      {u"Octet", Value::Integer(OdsType::Byte, 255)},
      {u"Small", Value::Integer(OdsType::Short, -32768)},
      {u"Count", Value::Integer(OdsType::Long, 2147483647)},
      {u"Big", Value::Integer(OdsType::LongLong, Limits::min())},
      {u"Big", Value::Integer(OdsType::LongLong, Limits::max())},
      {u"Ratio", Value::Real(OdsType::Float, 0.5)},
      {u"Value", Value::Real(OdsType::Double, 0.1)},
      {u"Value", Value::Real(OdsType::Double, -std::numeric_limits<double>::infinity())},
      {u"Kind", Value::Integer(OdsType::Enum, kLoad)},
      {u"When", Value::Text(OdsType::Date, u"2010")},
      {u"When", Value::Text(OdsType::Date, u"20120714172414682610988")},
      {u"Note", Value::Text(OdsType::String, u"")},
      {u"Note", Value::Text(OdsType::String, u"Größe \U0001F600 'x'")},
      {u"Note", Value::Text(OdsType::String, std::u16string(100000, u'n'))},
      {u"Doc", Value::Text(OdsType::ExternalReference, u"plan\x1ftext/plain\x1f./a.txt")},
      {u"Raw", {OdsType::ByteStr, false, Value::ByteStrings{{std::byte{0}, std::byte{255}}}}},
      {u"Pair", {OdsType::DComplex, false, Value::Reals{1.5, -2}}},
      {u"Numbers", {OdsType::Long, true, Value::Integers{3, -1, 3}}},
      {u"Numbers", {OdsType::Long, true, Value::Integers{}}},
      {u"Words", {OdsType::String, true, Value::Texts{u"a", u"", u"Ü"}}},
  };
  const RecordRef run = Make(m.run, 1);
  for (const auto& c : kCases) {
    SCOPED_TRACE(cor::ToUtf8(c.attribute));
    EXPECT_FALSE(Get(run, c.attribute) == c.value);
    Set(run, c.attribute, c.value);
    EXPECT_TRUE(Get(run, c.attribute) == c.value);
  }
  for (const auto& c : kCases) {
    SCOPED_TRACE(cor::ToUtf8(c.attribute));
    Set(run, c.attribute, Value::Unset(c.value.type, c.value.sequence));
    EXPECT_FALSE(Get(run, c.attribute).IsSet());
    const RecordRef other = Make(m.run, 0);
    Set(other, c.attribute, c.value);
    EXPECT_FALSE(Get(run, c.attribute).IsSet()) << "nobody else's value shows up there";
  }
}

TEST_P(RecordStoreContract, RefusesValuesThatDoNotFit) {
  const struct {
    std::u16string_view attribute;
    Value value;
  } kCases[] = {
      {u"Flag", Value::Integer(OdsType::Boolean, 2)},
      {u"Octet", Value::Integer(OdsType::Byte, 256)},
      {u"Octet", Value::Integer(OdsType::Byte, -1)},
      {u"Small", Value::Integer(OdsType::Short, 32768)},
      {u"Count", Value::Integer(OdsType::Long, std::int64_t{1} << 31)},
      {u"Count", Value::Integer(OdsType::Short, 1)},
      {u"Count", Value::Text(OdsType::Long, u"1")},
      {u"Ratio", Value::Real(OdsType::Float, 1e300)},
      {u"Value", Value::Integer(OdsType::Double, 1)},
      {u"When", Value::Text(OdsType::Date, u"201")},
      {u"When", Value::Text(OdsType::Date, u"yesterday")},
      {u"Note", Value::Integer(OdsType::String, 1)},
      {u"Note", {OdsType::String, true, Value::Texts{u"a"}}},
      {u"Note", {OdsType::String, false, Value::Texts{u"a", u"b"}}},
      {u"Note", {OdsType::String, false, Value::Texts{}}},
      {u"Pair", {OdsType::DComplex, false, Value::Reals{1}}},
      {u"Numbers", Value::Integer(OdsType::Long, 1)},
      {u"Numbers", {OdsType::Long, true, Value::Integers{1, std::int64_t{1} << 40}}},
  };
  const RecordRef run = Make(m.run, 1);
  for (const auto& c : kCases) {
    SCOPED_TRACE(cor::ToUtf8(c.attribute));
    EXPECT_EQ(errc::kWrongType, CodeOf([&] { Set(run, c.attribute, c.value); }));
    EXPECT_FALSE(Get(run, c.attribute).IsSet());
  }
  EXPECT_EQ(errc::kInvalidArgument,
            CodeOf([&] { Set(run, u"Id", Value::Integer(OdsType::LongLong, 2)); }));
  EXPECT_EQ(0, CodeOf([&] { Set(run, u"Id", Value::Integer(OdsType::LongLong, 1)); }));
  EXPECT_EQ(errc::kUnknownName, CodeOf([&] { store->Write(run, 99, Value()); }));
  EXPECT_EQ(errc::kUnknownName, CodeOf([&] { (void)store->ReadValue(run, -1); }));
  EXPECT_EQ(errc::kInstanceGone, CodeOf([&] { Set({m.run, 9}, u"Note", Value()); }));
  EXPECT_EQ(errc::kInstanceGone, CodeOf([&] { (void)Get({m.run, 9}, u"Note"); }));
}

TEST_P(RecordStoreContract, ReadsColumnsOfManyRecordsAtOnce) {
  for (const RecordId id : {5, 3, 9}) {
    const RecordRef run = Make(m.run, id);
    SetText(run, u"Name", u"run " + std::u16string(1, static_cast<char16_t>(u'0' + id)));
    SetNumber(run, u"Count", static_cast<double>(id) * 10);
  }
  SetText({m.run, 3}, u"Note", u"Prüfung");
  Set({m.run, 9}, u"Pair", {OdsType::DComplex, false, Value::Reals{1, 2}});
  Set({m.run, 9}, u"Numbers", {OdsType::Long, true, Value::Integers{1, 2}});

  const std::vector<RecordId> ids{9, 4, 3, 3};
  const std::vector<std::int32_t> attributes{
      m.AttributeOf(m.run, u"Id"),    m.AttributeOf(m.run, u"Name"),
      m.AttributeOf(m.run, u"Count"), m.AttributeOf(m.run, u"Note"),
      m.AttributeOf(m.run, u"Pair"),  m.AttributeOf(m.run, u"Numbers")};
  const std::vector<ColumnBlock> blocks = store->ReadColumns(m.run, ids, attributes);
  ASSERT_EQ(6u, blocks.size());
  EXPECT_EQ(u"9, -, 3, 3", Describe(blocks[0]));
  EXPECT_EQ(u"run 9, -, run 3, run 3", Describe(blocks[1]));
  EXPECT_EQ(u"90, -, 30, 30", Describe(blocks[2]));
  EXPECT_EQ(u"-, -, Prüfung, Prüfung", Describe(blocks[3]));
  EXPECT_EQ((std::vector<std::uint8_t>{0, 1, 1, 1}), blocks[4].isNull);
  ASSERT_EQ(8u, blocks[4].reals.size());
  EXPECT_EQ(2, blocks[4].reals[1]);
  ASSERT_EQ(4u, blocks[5].others.size());
  EXPECT_EQ((Value{OdsType::Long, true, Value::Integers{1, 2}}), blocks[5].others[0]);
  EXPECT_FALSE(blocks[5].others[2].IsSet());
  EXPECT_TRUE(store->ReadColumns(m.run, {}, attributes)[0].isNull.empty());
}

// --- links -------------------------------------------------------------------------------------

/// Steps such as "P1.Runs+R2" (connect) and "R2.Project-P1" (disconnect), and what must hold then.
struct LinkCase {
  const char* name;
  const char* steps;
  const char* expected;
};

class LinkScript {
 public:
  LinkScript(RecordStore& store, const ContractModel& m) : m_store(store), m_m(m) {}

  void Run(const std::string& steps) {
    std::istringstream in(steps);
    for (std::string step; in >> step;) {
      const std::size_t sign = step.find_first_of("+-");
      const auto [record, relation] = Parse(step.substr(0, sign));
      const RecordRef target = Record(step.substr(sign + 1));
      if (step[sign] == '+') {
        m_store.Connect(record, relation, target);
      } else {
        m_store.Disconnect(record, relation, target);
      }
    }
  }
  /// For each "P1.Runs" of the expectation the state in the same form: "P1.Runs=1,2".
  std::string State(const std::string& expected) {
    std::istringstream in(expected);
    std::string state;
    for (std::string fact; in >> fact;) {
      const std::string member = fact.substr(0, fact.find('='));
      const auto [record, relation] = Parse(member);
      std::string ids;
      for (const RecordId id : Targets(m_store, record, relation)) {
        ids += (ids.empty() ? "" : ",") + std::to_string(id);
      }
      if (!state.empty()) state += ' ';
      state += member;
      state += '=';
      state += ids;
    }
    return state;
  }

 private:
  RecordRef Record(const std::string& text) {
    const EntityId entity = text[0] == 'P' ? m_m.project : (text[0] == 'R' ? m_m.run : m_m.tag);
    const RecordRef record{entity, std::stoi(text.substr(1))};
    if (!m_store.Exists(record)) m_store.Create(entity, record.id);
    return record;
  }
  std::pair<RecordRef, std::int32_t> Parse(const std::string& member) {
    const std::size_t dot = member.find('.');
    const RecordRef record = Record(member.substr(0, dot));
    const std::u16string relation(member.begin() + static_cast<std::ptrdiff_t>(dot) + 1,
                                  member.end());
    return {record, m_m.RelationOf(record.entity, relation)};
  }
  RecordStore& m_store;
  const ContractModel& m_m;
};

TEST_P(RecordStoreContract, KeepsBothDirectionsOfLinksEqual) {
  const LinkCase kCases[] = {
      {"FromTheManySide", "P1.Runs+R2 P1.Runs+R1", "P1.Runs=2,1 R1.Project=1 R2.Project=1"},
      {"FromTheOneSide", "R2.Project+P1 R1.Project+P1", "P1.Runs=2,1 R1.Project=1"},
      {"Again", "P1.Runs+R1 P1.Runs+R2 R1.Project+P1 P1.Runs+R1", "P1.Runs=1,2 R1.Project=1"},
      {"OneSideLetsGo", "P1.Runs+R1 P1.Runs+R2 R1.Project+P2",
       "P1.Runs=2 P2.Runs=1 R1.Project=2 R2.Project=1"},
      {"OneSideLetsGoFromMany", "P1.Runs+R1 P2.Runs+R1", "P1.Runs= P2.Runs=1 R1.Project=2"},
      {"Disconnected", "P1.Runs+R1 P1.Runs+R2 R1.Project-P1", "P1.Runs=2 R1.Project="},
      {"Reconnected", "P1.Runs+R1 P1.Runs+R2 P1.Runs-R1 R1.Project+P1", "P1.Runs=2,1 R1.Project=1"},
      {"NotLinked", "P1.Runs+R1 P2.Runs-R1", "P1.Runs=1 P2.Runs= R1.Project=1"},
      {"ManyToMany", "R1.Tags+T2 T1.Runs+R1 T2.Runs+R2 R1.Tags+T2",
       "R1.Tags=2,1 R2.Tags=2 T1.Runs=1 T2.Runs=1,2"},
      {"ManyToManyDisconnected", "R1.Tags+T1 R1.Tags+T2 R1.Tags+T3 T2.Runs-R1",
       "R1.Tags=1,3 T2.Runs= T3.Runs=1"},
      {"OneToOne", "R1.Next+R2", "R1.Next=2 R2.Previous=1 R1.Previous= R2.Next="},
      {"OneToOneFromBehind", "R2.Previous+R1", "R1.Next=2 R2.Previous=1"},
      {"OneToOneBothLetGo", "R1.Next+R2 R3.Next+R4 R1.Next+R4",
       "R1.Next=4 R4.Previous=1 R2.Previous= R3.Next="},
      {"ToItself", "R1.Next+R1", "R1.Next=1 R1.Previous=1"},
      {"OwnInverse", "P1.Twins+P2 P1.Twins+P3 P3.Twins-P1", "P1.Twins=2 P2.Twins=1 P3.Twins="},
      {"OwnInverseToItself", "P1.Twins+P1 P1.Twins+P2", "P1.Twins=1,2 P2.Twins=1"},
      {"OwnInverseToOne", "P1.Rival+P2 P3.Rival+P1", "P1.Rival=3 P3.Rival=1 P2.Rival="},
      {"OwnInverseToOneBothLetGo", "P1.Rival+P2 P3.Rival+P4 P2.Rival+P3",
       "P1.Rival= P2.Rival=3 P3.Rival=2 P4.Rival="},
  };
  for (const LinkCase& c : kCases) {
    SCOPED_TRACE(c.name);
    store = GetParam().make(model);
    LinkScript script(*store, m);
    script.Run(c.steps);
    EXPECT_EQ(c.expected, script.State(c.expected));
  }
}

TEST_P(RecordStoreContract, FollowsManyRecordsGroupedBySource) {
  LinkScript script(*store, m);
  script.Run("P1.Runs+R5 P1.Runs+R2 P2.Runs+R3 P3.Runs+R9 P3.Runs-R9");
  const RecordId asked[] = {3, 2, 77, 1};
  const std::vector<Link> links = store->Follow(m.project, m.RelationOf(m.project, u"Runs"), asked);
  ASSERT_EQ(3u, links.size());
  EXPECT_EQ(1u, links[0].source);
  EXPECT_EQ((RecordRef{m.run, 3}), links[0].target);
  EXPECT_EQ(3u, links[1].source);
  EXPECT_EQ(5, links[1].target.id);
  EXPECT_EQ(2, links[2].target.id);
}

TEST_P(RecordStoreContract, RefusesLinksThatMakeNoSense) {
  const RecordRef project = Make(m.project, 1);
  const RecordRef run = Make(m.run, 1);
  const RecordRef tag = Make(m.tag, 1);
  const std::int32_t runs = m.RelationOf(m.project, u"Runs");
  EXPECT_EQ(errc::kWrongType, CodeOf([&] { store->Connect(project, runs, tag); }));
  EXPECT_EQ(errc::kInstanceGone, CodeOf([&] { store->Connect(project, runs, {m.run, 2}); }));
  EXPECT_EQ(errc::kInstanceGone, CodeOf([&] { store->Connect({m.project, 2}, runs, run); }));
  EXPECT_EQ(errc::kUnknownName, CodeOf([&] { store->Connect(project, 50, run); }));
  EXPECT_TRUE(Targets(*store, project, runs).empty());
}

TEST_P(RecordStoreContract, DeletesARecordWithItsLinksAlone) {
  LinkScript script(*store, m);
  script.Run("P1.Runs+R1 P1.Runs+R2 R1.Tags+T1 R2.Tags+T1 R1.Next+R2 R3.Next+R1 P1.Twins+P2");
  SetText({m.run, 1}, u"Note", u"old");
  Set({m.run, 1}, u"Numbers", {OdsType::Long, true, Value::Integers{1}});
  store->SetInstanceAttribute({m.run, 1}, {u"Oil", Value::Real(OdsType::Double, 5), 0});
  store->Delete({m.run, 1});
  EXPECT_EQ("2, 3", Describe(store->AllOf(m.run)));
  EXPECT_EQ(2u, store->CountOf(m.run));
  const std::string expected = "P1.Runs=2 T1.Runs=2 R2.Previous= R3.Next= R2.Project=1";
  EXPECT_EQ(expected, script.State(expected));
  EXPECT_EQ(errc::kInstanceGone, CodeOf([&] { store->Delete({m.run, 1}); }));
  EXPECT_EQ(u"-, -", Read(m.run, u"Note", {1, 2}));

  const RecordRef again = Make(m.run, 1);
  EXPECT_FALSE(Get(again, u"Note").IsSet());
  EXPECT_FALSE(Get(again, u"Numbers").IsSet());
  EXPECT_TRUE(store->InstanceAttributesOf(again).empty());
  EXPECT_EQ("R1.Tags= R1.Project=", script.State("R1.Tags= R1.Project="));

  store->Delete({m.project, 1});
  EXPECT_TRUE(store->Exists({m.run, 2})) << "children stay, without a parent";
  EXPECT_EQ("R2.Project= P2.Twins=", script.State("R2.Project= P2.Twins="));
}

// --- instance attributes -----------------------------------------------------------------------

TEST_P(RecordStoreContract, KeepsInstanceAttributesInTheirOrder) {
  const RecordRef run = Make(m.run, 1);
  const RecordRef other = Make(m.run, 2);
  const std::vector<InstanceAttribute> set = {
      {u"Oil", Value::Text(OdsType::String, u"5W-30"), 0},
      {u"Öltemperatur", Value::Real(OdsType::Float, 90.5), 12},
      {u"Shift", Value::Integer(OdsType::Byte, 3), 0},
      {u"Laps", Value::Integer(OdsType::LongLong, std::int64_t{1} << 60), 0},
      {u"Late", Value::Text(OdsType::Date, u"201003"), 0},
      {u"Empty", Value::Unset(OdsType::Double), 3},
  };
  for (const InstanceAttribute& attribute : set) store->SetInstanceAttribute(run, attribute);
  store->SetInstanceAttribute(other, {u"Oil", Value::Integer(OdsType::Long, 1), 0});
  store->SetInstanceAttribute(run, {u"oil", Value::Integer(OdsType::Byte, -2), 0});
  store->SetInstanceAttribute(run, {u"Shift", Value::Real(OdsType::Double, 0.25), 7});
  EXPECT_TRUE(store->RemoveInstanceAttribute(run, u"Laps"));
  EXPECT_FALSE(store->RemoveInstanceAttribute(run, u"Laps"));

  const std::vector<InstanceAttribute> got = store->InstanceAttributesOf(run);
  const std::u16string_view names[] = {u"Oil",  u"Öltemperatur", u"Shift",
                                       u"Late", u"Empty",        u"oil"};
  ASSERT_EQ(std::size(names), got.size());
  for (std::size_t i = 0; i < got.size(); ++i) EXPECT_EQ(names[i], got[i].name);
  EXPECT_EQ(set[0].value, got[0].value);
  EXPECT_EQ(set[1].value, got[1].value);
  EXPECT_EQ(12, got[1].unit);
  EXPECT_EQ(Value::Real(OdsType::Double, 0.25), got[2].value);
  EXPECT_EQ(7, got[2].unit);
  EXPECT_EQ(set[5].value, got[4].value);
  EXPECT_EQ(Value::Integer(OdsType::Byte, -2), got[5].value) << "bytes may have a sign here";

  const RecordId ids[] = {other.id, 77, run.id};
  const std::vector<RecordInstanceAttribute> all = store->ReadInstanceAttributes(m.run, ids);
  ASSERT_EQ(1 + got.size(), all.size()) << "records that don't exist have none";
  EXPECT_EQ(0u, all[0].source);
  EXPECT_EQ(Value::Integer(OdsType::Long, 1), all[0].attribute.value);
  for (std::size_t i = 0; i < got.size(); ++i) {
    EXPECT_EQ(2u, all[i + 1].source);
    EXPECT_EQ(got[i].name, all[i + 1].attribute.name);
    EXPECT_EQ(got[i].value, all[i + 1].attribute.value);
    EXPECT_EQ(got[i].unit, all[i + 1].attribute.unit);
  }
}

TEST_P(RecordStoreContract, RefusesInstanceAttributesOfOtherTypes) {
  const RecordRef run = Make(m.run, 1);
  const std::pair<InstanceAttribute, std::int32_t> kCases[] = {
      {{u"a", Value::Integer(OdsType::Enum, 1), 0}, errc::kWrongType},
      {{u"a", {OdsType::Long, true, Value::Integers{1, 2}}, 0}, errc::kWrongType},
      {{u"a", Value::Integer(OdsType::Short, 40000), 0}, errc::kWrongType},
      {{u"a", Value::Text(OdsType::Date, u"soon"), 0}, errc::kWrongType},
      {{u"a", Value::Unset(OdsType::Unknown), 0}, errc::kWrongType},
      {{u"", Value::Integer(OdsType::Long, 1), 0}, errc::kInvalidArgument},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(c.second, CodeOf([&] { store->SetInstanceAttribute(run, c.first); }));
  }
  EXPECT_TRUE(store->InstanceAttributesOf(run).empty());
  EXPECT_EQ(errc::kInstanceGone, CodeOf([&] { (void)store->InstanceAttributesOf({m.run, 5}); }));
}

}  // namespace hv::vex::engine::test
