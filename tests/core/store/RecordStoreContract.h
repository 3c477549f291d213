// tests/core/store/RecordStoreContract.h - what every record store must do: records and links.
// Include it in one source of a test program and instantiate RecordStoreContract with a factory.
#pragma once

#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "ContractModel.h"

namespace hv::vex::engine::test {

/// Makes an empty store over a model that can be changed, saved and discarded.
struct StoreFactory {
  std::string name;
  std::function<std::unique_ptr<RecordStore>(std::shared_ptr<const Model>)> make;
};

inline void PrintTo(const StoreFactory& factory, std::ostream* out) { *out << factory.name; }

class RecordStoreContract : public ::testing::TestWithParam<StoreFactory> {
 protected:
  RecordStoreContract() : model(MakeContractModel()), m(*model), store(GetParam().make(model)) {}

  RecordRef Make(EntityId entity, RecordId id) { return {entity, store->Create(entity, id)}; }
  void Set(RecordRef record, std::u16string_view attribute, const Value& value) {
    m.Set(*store, record, attribute, value);
  }
  Value Get(RecordRef record, std::u16string_view attribute) {
    return m.Get(*store, record, attribute);
  }
  OdsType TypeOf(EntityId entity, std::u16string_view attribute) const {
    const auto index = static_cast<std::size_t>(m.AttributeOf(entity, attribute));
    return model->At(entity).attributes[index].type;
  }
  void SetText(RecordRef record, std::u16string_view attribute, std::u16string_view text) {
    Set(record, attribute, Value::Text(TypeOf(record.entity, attribute), std::u16string(text)));
  }
  void SetNumber(RecordRef record, std::u16string_view attribute, double number) {
    const OdsType type = TypeOf(record.entity, attribute);
    Set(record, attribute,
        StorageKindOf(type) == StorageKind::Real
            ? Value::Real(type, number)
            : Value::Integer(type, static_cast<std::int64_t>(number)));
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
  const std::pair<std::u16string_view, Value> kCases[] = {
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
      {u"Note", Word(u"")},
      {u"Note", Word(u"Größe \U0001F600 'x'")},
      {u"Note", Word(std::u16string(100000, u'n'))},
      {u"Doc", Value::Text(OdsType::ExternalReference, u"plan\x1ftext/plain\x1f./a.txt")},
      {u"Raw", {OdsType::ByteStr, false, Value::ByteStrings{{std::byte{0}, std::byte{255}}}}},
      {u"Pair", {OdsType::DComplex, false, Value::Reals{1.5, -2}}},
      {u"Numbers", Longs({3, -1, 3})},
      {u"Numbers", Longs({})},
      {u"Words", {OdsType::String, true, Value::Texts{u"a", u"", u"Ü"}}},
  };
  const RecordRef run = Make(m.run, 1);
  for (const auto& [attribute, value] : kCases) {
    SCOPED_TRACE(cor::ToUtf8(attribute));
    EXPECT_FALSE(Get(run, attribute) == value);
    Set(run, attribute, value);
    EXPECT_TRUE(Get(run, attribute) == value);
  }
  for (const auto& [attribute, value] : kCases) {
    SCOPED_TRACE(cor::ToUtf8(attribute));
    Set(run, attribute, Value::Unset(value.type, value.sequence));
    EXPECT_FALSE(Get(run, attribute).IsSet());
    Set(Make(m.run, 0), attribute, value);
    EXPECT_FALSE(Get(run, attribute).IsSet()) << "nobody else's value shows up there";
  }
}

TEST_P(RecordStoreContract, RefusesValuesThatDoNotFit) {
  const std::pair<std::u16string_view, Value> kCases[] = {
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
      {u"Numbers", Longs({1, std::int64_t{1} << 40})},
  };
  const RecordRef run = Make(m.run, 1);
  for (const auto& row : kCases) {
    SCOPED_TRACE(cor::ToUtf8(row.first));
    EXPECT_EQ(errc::kWrongType, CodeOf([&] { Set(run, row.first, row.second); }));
    EXPECT_FALSE(Get(run, row.first).IsSet());
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
  Set({m.run, 9}, u"Numbers", Longs({1, 2}));

  const std::pair<std::u16string_view, const char*> kColumns[] = {
      {u"Id", "9, -, 3, 3"},       {u"Name", "'run 9', -, 'run 3', 'run 3'"},
      {u"Count", "90, -, 30, 30"}, {u"Note", "-, -, 'Prüfung', 'Prüfung'"},
      {u"Pair", "1/2, -, -, -"},   {u"Numbers", "1 2, -, -, -"},
  };
  std::vector<std::int32_t> attributes;
  for (const auto& column : kColumns) attributes.push_back(m.AttributeOf(m.run, column.first));
  const std::vector<RecordId> ids{9, 4, 3, 3};
  const std::vector<ColumnBlock> blocks = store->ReadColumns(m.run, ids, attributes);
  ASSERT_EQ(std::size(kColumns), blocks.size());
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    EXPECT_EQ(kColumns[i].second, Describe(blocks[i]));
  }
  EXPECT_TRUE(store->ReadColumns(m.run, {}, attributes)[0].isNull.empty());
}

// --- links -------------------------------------------------------------------------------------

TEST_P(RecordStoreContract, KeepsBothDirectionsOfLinksEqual) {
  const struct {
    const char *name, *steps, *expected;
  } kCases[] = {
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
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    store = GetParam().make(model);
    m.Link(*store, c.steps);
    EXPECT_EQ(c.expected, m.LinksOf(*store, c.expected));
  }
}

TEST_P(RecordStoreContract, FollowsManyRecordsGroupedBySource) {
  m.Link(*store, "P1.Runs+R5 P1.Runs+R2 P2.Runs+R3 P3.Runs+R9 P3.Runs-R9");
  const RecordId asked[] = {3, 2, 77, 1};
  std::string links;
  for (const Link& link : store->Follow(m.project, m.RelationOf(m.project, u"Runs"), asked)) {
    EXPECT_EQ(m.run, link.target.entity);
    links += std::to_string(link.source) + ">" + std::to_string(link.target.id) + " ";
  }
  EXPECT_EQ("1>3 3>5 3>2 ", links);
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
  m.Link(*store, "P1.Runs+R1 P1.Runs+R2 R1.Tags+T1 R2.Tags+T1 R1.Next+R2 R3.Next+R1 P1.Twins+P2");
  const RecordRef run{m.run, 1};
  SetText(run, u"Note", u"old");
  Set(run, u"Numbers", Longs({1}));
  store->SetInstanceAttribute(run, {u"Oil", Value::Real(OdsType::Double, 5), 0});
  store->Delete(run);
  EXPECT_EQ("2, 3", Describe(store->AllOf(m.run)));
  EXPECT_EQ(2u, store->CountOf(m.run));
  const std::string left = "P1.Runs=2 T1.Runs=2 R2.Previous= R3.Next= R2.Project=1";
  EXPECT_EQ(left, m.LinksOf(*store, left));
  EXPECT_EQ(errc::kInstanceGone, CodeOf([&] { store->Delete(run); }));
  const RecordId asked[] = {1, 2};
  EXPECT_EQ("-, -",
            Describe(store->ReadColumns(m.run, asked, {{m.AttributeOf(m.run, u"Note")}})[0]));

  Make(m.run, 1);
  EXPECT_FALSE(Get(run, u"Note").IsSet());
  EXPECT_FALSE(Get(run, u"Numbers").IsSet());
  EXPECT_TRUE(store->InstanceAttributesOf(run).empty());
  EXPECT_EQ("R1.Tags= R1.Project=", m.LinksOf(*store, "R1.Tags= R1.Project="));

  store->Delete({m.project, 1});
  EXPECT_TRUE(store->Exists({m.run, 2})) << "children stay, without a parent";
  EXPECT_EQ("R2.Project= P2.Twins=", m.LinksOf(*store, "R2.Project= P2.Twins="));
}

// --- instance attributes -----------------------------------------------------------------------

TEST_P(RecordStoreContract, KeepsInstanceAttributesInTheirOrder) {
  const RecordRef run = Make(m.run, 1);
  const RecordRef other = Make(m.run, 2);
  const std::pair<RecordRef, InstanceAttribute> kSet[] = {
      {run, {u"Oil", Word(u"5W-30"), 0}},
      {run, {u"Öltemperatur", Value::Real(OdsType::Float, 90.5), 12}},
      {run, {u"Shift", Value::Integer(OdsType::Byte, 3), 0}},
      {run, {u"Laps", Value::Integer(OdsType::LongLong, std::int64_t{1} << 60), 0}},
      {run, {u"Late", Value::Text(OdsType::Date, u"201003"), 0}},
      {run, {u"Empty", Value::Unset(OdsType::Double), 3}},
      {other, {u"Oil", Value::Integer(OdsType::Long, 1), 0}},
      {run, {u"oil", Value::Integer(OdsType::Byte, -2), 0}},  // bytes may have a sign here
      {run, {u"Shift", Value::Real(OdsType::Double, 0.25), 7}},
  };
  for (const auto& [record, attribute] : kSet) store->SetInstanceAttribute(record, attribute);
  const auto all = [&] {
    const RecordId ids[] = {other.id, 77, run.id};  // records that don't exist have none
    std::string text;
    for (const auto& [source, a] : store->ReadInstanceAttributes(m.run, ids)) {
      text += std::to_string(source) + " " + cor::ToUtf8(a.name) + " " +
              cor::ToUtf8(NameOfType(a.value.type, false)) + " " + ValueText(a.value) + " in " +
              std::to_string(a.unit) + "\n";
    }
    return text;
  };
  const std::string laps = "2 Laps DT_LONGLONG 1152921504606846976 in 0\n";
  std::string expected =
      "0 Oil DT_LONG 1 in 0\n"
      "2 Oil DT_STRING '5W-30' in 0\n"
      "2 Öltemperatur DT_FLOAT 90.5 in 12\n"
      "2 Shift DT_DOUBLE 0.25 in 7\n" +
      laps +
      "2 Late DT_DATE '201003' in 0\n"
      "2 Empty DT_DOUBLE - in 3\n"
      "2 oil DT_BYTE -2 in 0\n";
  EXPECT_EQ(expected, all());
  EXPECT_TRUE(store->RemoveInstanceAttribute(run, u"Laps"));
  EXPECT_FALSE(store->RemoveInstanceAttribute(run, u"Laps"));
  EXPECT_EQ(expected.erase(expected.find(laps), laps.size()), all());
}

TEST_P(RecordStoreContract, RefusesInstanceAttributesOfOtherTypes) {
  const RecordRef run = Make(m.run, 1);
  const std::pair<InstanceAttribute, std::int32_t> kCases[] = {
      {{u"a", Value::Integer(OdsType::Enum, 1), 0}, errc::kWrongType},
      {{u"a", Longs({1, 2}), 0}, errc::kWrongType},
      {{u"a", Value::Integer(OdsType::Short, 40000), 0}, errc::kWrongType},
      {{u"a", Value::Text(OdsType::Date, u"soon"), 0}, errc::kWrongType},
      {{u"a", Value::Unset(OdsType::Unknown), 0}, errc::kWrongType},
      {{u"", Value::Integer(OdsType::Long, 1), 0}, errc::kInvalidArgument},
  };
  for (const auto& row : kCases) {
    EXPECT_EQ(row.second, CodeOf([&] { store->SetInstanceAttribute(run, row.first); }));
  }
  EXPECT_TRUE(store->InstanceAttributesOf(run).empty());
  EXPECT_EQ(errc::kInstanceGone, CodeOf([&] { (void)store->InstanceAttributesOf({m.run, 5}); }));
}

}  // namespace hv::vex::engine::test
