// The engine's objects as the library above sees them: through the seam alone.
#include <gtest/gtest.h>

#include "core/objects/EnvironmentObject.h"
#include "core/objects/FreeContainer.h"
#include "core/objects/InstanceLists.h"
#include "store/core/Seam.h"
#include "tests/core/objects/ToyPlugin.h"

namespace hv::vex::engine {
namespace {

std::string Utf8(const WString& text) { return cor::ToUtf8(text); }

template <class Body>
std::int32_t CodeOfThrow(Body&& body) {
  try {
    body();
  } catch (const Exception& exception) {
    return exception.code;
  }
  return 0;
}

class SeamObjects : public ::testing::Test {
 protected:
  SeamObjects() : m_objectsBefore(cor::LiveObjectCount()) {
    m_environment =
        MakeRef<EnvironmentObject>(std::span(&test::kToyPlugin, 1), &test::FindToyModel);
    m_store = Open(u"<filename>/data/bench.toy</filename>");
  }
  ~SeamObjects() override {
    m_store.Reset();
    m_environment.Reset();
    EXPECT_EQ(m_objectsBefore, cor::LiveObjectCount());
  }

  Ref<IStore> Open(std::u16string_view parameters) {
    return Ref<IStore>::Adopt(m_environment->OpenStoreByParameter(u"", u"toy", parameters, 0));
  }
  Ref<IInstance> Get(std::u16string_view key) {
    return Ref<IInstance>::Adopt(m_store->GetInstance(key));
  }
  Ref<IModel> Model() { return Ref<IModel>::Adopt(m_store->GetModel()); }
  static std::string Text(IInstance* instance, std::u16string_view attribute) {
    WString text;
    QueryRef<IContainer>(instance)->GetString(text, attribute);
    return Utf8(text);
  }
  static std::string Keys(const Ref<IInstList>& list) {
    std::string keys;
    WString key;
    for (std::uint64_t i = 0; i < list->GetCount(); ++i) {
      list->GetKey(i, key);
      keys += (i > 0 ? " " : "") + Utf8(key);
    }
    return keys;
  }

  std::int64_t m_objectsBefore;
  Ref<IEnvironment> m_environment;
  Ref<IStore> m_store;
};

TEST_F(SeamObjects, StoreTellsWhatItIs) {
  WString text;
  m_store->GetName(text);
  EXPECT_EQ("bench", Utf8(text));
  m_store->GetPluginName(text);
  EXPECT_EQ("Toy", Utf8(text));
  m_store->GetParameters(text);
  EXPECT_EQ("<filename>/data/bench.toy</filename>", Utf8(text));
  m_store->GetDisplayLocation(text);
  EXPECT_EQ("/data/bench.toy", Utf8(text));
  EXPECT_EQ(m_environment, Ref<IEnvironment>::Adopt(m_store->GetEnvironment()));
  EXPECT_EQ(0, m_store->GetState(3));
  EXPECT_EQ(0, m_store->IsReadOnly());
  EXPECT_EQ(1, Open(u"<readonly>yes</readonly>")->IsReadOnly());
}

TEST_F(SeamObjects, OpeningFailsWithTheCodeOfItsReason) {
  EXPECT_EQ(errc::kUnknownName,
            CodeOfThrow([&] { (void)m_environment->OpenStore(u"nowhere", 0); }));
  EXPECT_EQ(errc::kUnknownName,
            CodeOfThrow([&] { (void)m_environment->OpenStoreByParameter(u"", u"none", u"", 0); }));
  EXPECT_EQ(-3, CodeOfThrow([&] { Open(u"<fail>abc</fail>"); }));
}

TEST_F(SeamObjects, NewStoresAreMadeOfAModel) {
  const auto create = [&](std::u16string_view plugin, std::u16string_view parameters,
                          CreateMode mode) {
    return Ref<IStore>::Adopt(m_environment->CreateStore(plugin, parameters, u"", 0, mode));
  };
  const Ref<IStore> made = create(u"TOY", u"<model> toy &amp; co </model>", CreateMode::Temporary);
  const auto model = Ref<IModel>::Adopt(made->GetModel());
  EXPECT_EQ(0u, Ref<IInstList>::Adopt(made->GetInstances(u"/#Run"))->GetCount());
  const auto run = Ref<IInstance>::Adopt(
      made->CreateInstance(Ref<IEntity>::Adopt(model->GetEntity(u"Run")).Get()));
  EXPECT_EQ(1, made->GetState(3));
  const Ref<IStore> opened = create(u"toy", u"<filename>a.toy</filename>", CreateMode::OpenFile);
  EXPECT_EQ(1, opened->IsReadOnly());
  EXPECT_EQ(3u, Ref<IInstList>::Adopt(opened->GetInstances(u"/#Run"))->GetCount());
  for (const auto* parameters : {u"", u"<model></model>", u"<model>other</model>"}) {
    EXPECT_EQ(errc::kUnknownName,
              CodeOfThrow([&] { create(u"toy", parameters, CreateMode::Temporary); }));
  }
  EXPECT_EQ(errc::kUnknownName, CodeOfThrow([&] { create(u"x", u"", CreateMode::Temporary); }));
}

TEST_F(SeamObjects, OneLivingObjectPerRecord) {
  const Ref<IInstance> first = Get(u"Run:10");
  EXPECT_EQ(first, Get(u"Run:10"));
  const Ref<IInstList> list = Ref<IInstList>::Adopt(m_store->GetInstances(u"/#Run"));
  EXPECT_EQ(first, Ref<IInstance>::Adopt(list->GetInstance(0)));
  for (const auto* bad :
       {u"Run:99", u"Run", u"Run:", u"Run:x", u"None:1", u"aotest:1", u":1", u""}) {
    EXPECT_FALSE(Get(bad)) << Utf8(bad);
  }
}

TEST_F(SeamObjects, PathsLeadToRecords) {
  struct Case {
    std::u16string_view path;
    const char* keys;
  };
  constexpr Case kCases[] = {
      {u"/#Run", "Run:10 Run:11 Run:12"},
      {u"/##RUN", "Run:10 Run:11 Run:12"},
      {u"/##aomeasurement", "Run:10 Run:11 Run:12"},
      {u"/#Run(Name='RUN up')", "Run:10"},
      {u"/#Run(Name='idle''s end')", "Run:12"},
      {u"/#Run(Status='passed')", "Run:10"},
      {u"/#Run(Gear='3')", "Run:11"},
      {u"/#Run(Name='none')", ""},
      {u"/#Run.bench", "Bench:1 Bench:2"},
      {u"/#Bench(Name='Bench A').runs", "Run:10 Run:11"},
      {u"/##aotest.children(Gear='2').measurement_quantities", "Channel:5"},
      {u"/#Run.sub.matrices.columns.channel", "Channel:5"},
  };
  for (const Case& c : kCases) {
    EXPECT_EQ(c.keys, Keys(Ref<IInstList>::Adopt(m_store->GetInstances(c.path)))) << Utf8(c.path);
  }
  const auto run = QueryRef<IContainer>(Get(u"Run:10").Get());
  EXPECT_EQ("Sub:6", Keys(Ref<IInstList>::Adopt(run->GetList(u"sub.matrices"))));
  EXPECT_EQ("Column:7", Keys(Ref<IInstList>::Adopt(run->GetList(u"submatrices.local_columns"))));
}

TEST_F(SeamObjects, BadPathsAreRefused) {
  struct Case {
    std::u16string_view path;
    std::int32_t code;
  };
  constexpr Case kCases[] = {
      {u"", errc::kInvalidArgument},
      {u"Run", errc::kInvalidArgument},
      {u"/#", errc::kInvalidArgument},
      {u"/#none", errc::kUnknownName},
      {u"/#run", errc::kUnknownName},
      {u"/#Run.none", errc::kUnknownName},
      {u"/#Run..bench", errc::kInvalidArgument},
      {u"/#Run.", errc::kInvalidArgument},
      {u"/#Run(Name=x)", errc::kInvalidArgument},
      {u"/#Run(Name='x", errc::kInvalidArgument},
      {u"/#Run(Name='x'", errc::kInvalidArgument},
      {u"/#Run(Name='x')bench", errc::kInvalidArgument},
      {u"/#Run(none='x')", errc::kUnknownName},
  };
  for (const Case& c : kCases) {
    EXPECT_EQ(c.code,
              CodeOfThrow([&] { Ref<IInstList>::Adopt(m_store->GetInstances(c.path)).Reset(); }))
        << Utf8(c.path);
  }
}

TEST_F(SeamObjects, ValuesAreReadByOwnNameAndBaseName) {
  const Ref<IInstance> run = Get(u"Run:10");
  EXPECT_EQ("Run up", Text(run.Get(), u"Name"));
  EXPECT_EQ("Run up", Text(run.Get(), u"name"));
  EXPECT_EQ("10", Text(run.Get(), u"id"));
  EXPECT_EQ("passed", Text(run.Get(), u"Status"));
  EXPECT_EQ("20240517101500", Text(run.Get(), u"measurement_begin"));
  EXPECT_EQ("", Text(run.Get(), u"Load"));
  const auto status = Ref<IAttribute>::Adopt(run->GetAttributeValue(u"Status"));
  EXPECT_EQ(24, status->GetDataType());
  EXPECT_EQ(2, status->GetInteger(0));
  EXPECT_EQ(2, *static_cast<const std::int32_t*>(status->GetData()));
  const auto bench = Ref<IAttribute>::Adopt(run->GetAttributeValue(u"bench"));
  EXPECT_EQ(40, bench->GetDataType());
  EXPECT_EQ(1u, bench->GetCount());
  const auto iterator = Ref<IInstIterator>::Adopt(bench->GetIterator());
  EXPECT_EQ("Bench A", Text(Ref<IInstance>::Adopt(iterator->Next()).Get(), u"name"));
  EXPECT_FALSE(Ref<IInstance>::Adopt(iterator->Next()));
  EXPECT_FALSE(Ref<IAttribute>::Adopt(run->GetAttributeValue(u"nothing")));
  EXPECT_EQ(errc::kUnknownName, CodeOfThrow([&] { Text(run.Get(), u"nothing"); }));
}

TEST_F(SeamObjects, WrittenValuesAreSeenAndCheckedAgainstTheirType) {
  const Ref<IInstance> run = Get(u"Run:11");
  const auto container = QueryRef<IContainer>(run.Get());
  container->SetString(u"Status", u"OPEN");
  EXPECT_EQ("open", Text(run.Get(), u"Status"));
  container->SetInteger(u"Status", 2);
  EXPECT_EQ("passed", Text(run.Get(), u"Status"));
  container->SetReal(u"Load", 0.1);
  EXPECT_EQ("0.1", Text(run.Get(), u"Load"));
  container->SetString(u"Gear", u" 7 ");
  EXPECT_EQ(7, container->GetInteger64(u"Gear", 0));
  EXPECT_EQ(1, m_store->GetState(3));
  Ref<IAttribute>::Adopt(run->GetAttributeValue(u"Gear"))->Clear();
  EXPECT_EQ(-5, container->GetInteger64(u"Gear", -5));
  const Ref<IContainer>& c = container;
  EXPECT_EQ(errc::kWrongType, CodeOfThrow([&] { c->SetString(u"Status", u"lost"); }));
  EXPECT_EQ(errc::kWrongType, CodeOfThrow([&] { c->SetInteger(u"Gear", 40000); }));
  EXPECT_EQ(errc::kWrongType, CodeOfThrow([&] { c->SetString(u"Gear", u"three"); }));
  EXPECT_EQ(errc::kWrongType, CodeOfThrow([&] { c->SetReal(u"Load", 1e300); }));
  EXPECT_EQ(errc::kWrongType, CodeOfThrow([&] { c->SetString(u"Begin", u"yesterday"); }));
  EXPECT_EQ(errc::kWriteProtected, CodeOfThrow([&] { c->SetInteger(u"Id", 3); }));
  m_store->Save(u"");
  EXPECT_EQ(0, m_store->GetState(3));
}

TEST_F(SeamObjects, ReadOnlyStoresRefuseChanges) {
  m_store = Open(u"<readonly>yes</readonly>");
  const Ref<IInstance> run = Get(u"Run:10");
  const auto entity = Ref<IEntity>::Adopt(Model()->GetEntity(u"Run"));
  const auto container = QueryRef<IContainer>(run.Get());
  EXPECT_EQ(errc::kWriteProtected, CodeOfThrow([&] { container->SetString(u"Name", u"x"); }));
  EXPECT_EQ(errc::kWriteProtected,
            CodeOfThrow([&] { (void)m_store->CreateInstance(entity.Get()); }));
  EXPECT_EQ(errc::kWriteProtected, CodeOfThrow([&] { run->Delete(); }));
  EXPECT_EQ(errc::kWriteProtected, CodeOfThrow([&] { run->AddInstanceAttribute(u"a", 3); }));
  EXPECT_EQ("Run up", Text(run.Get(), u"Name"));
}

TEST_F(SeamObjects, InstancesAreMadeLinkedAndDeleted) {
  const auto entity = Ref<IEntity>::Adopt(Model()->GetEntity(u"Run"));
  const auto base = Ref<IEntity>::Adopt(Model()->GetEntity(u"aomeasurement"));
  const auto run = Ref<IInstance>::Adopt(m_store->CreateInstance(entity.Get()));
  QueryRef<IContainer>(run.Get())->SetString(u"name", u"new");
  const Ref<IInstance> bench = Get(u"Bench:2");
  run->Link(u"test", bench.Get());
  EXPECT_EQ(2u, Ref<IInstList>::Adopt(bench->GetRelated(u"runs"))->GetCount());
  run->Link(u"bench", Get(u"Bench:1").Get());  // a to-one reference lets go of its earlier partner
  EXPECT_EQ("Run:12", Keys(Ref<IInstList>::Adopt(bench->GetRelated(u"runs"))));
  const auto channel = Ref<IInstance>::Adopt(run->CreateRelated(u"meq"));
  EXPECT_EQ(1, channel->IsKindOf(Ref<IEntity>::Adopt(Model()->GetEntityByName(u"Channel")).Get()));
  EXPECT_EQ(1, run->IsKindOf(base.Get()));
  EXPECT_EQ(errc::kWrongType, CodeOfThrow([&] { run->Link(u"bench", channel.Get()); }));
  EXPECT_EQ(errc::kInvalidArgument, CodeOfThrow([&] { run->Link(u"bench", nullptr); }));
  EXPECT_EQ(errc::kUnknownName, CodeOfThrow([&] { run->Link(u"none", bench.Get()); }));
  EXPECT_EQ(errc::kInvalidArgument,
            CodeOfThrow([&] { (void)m_store->CreateInstance(base.Get()); }));
  const Ref<IStore> other = Open(u"");
  const auto foreign = Ref<IInstance>::Adopt(other->GetInstance(u"Bench:1"));
  EXPECT_EQ(errc::kInvalidArgument, CodeOfThrow([&] { run->Link(u"bench", foreign.Get()); }));
  EXPECT_EQ(errc::kInvalidArgument, CodeOfThrow([&] { m_store->DeleteInstance(foreign.Get()); }));

  m_store->DeleteInstance(run.Get());
  EXPECT_EQ(0, run->IsValid());
  EXPECT_EQ(1, channel->IsValid());
  EXPECT_EQ(errc::kInstanceGone, CodeOfThrow([&] { Text(run.Get(), u"name"); }));
  EXPECT_EQ(errc::kInstanceGone, CodeOfThrow([&] { m_store->DeleteInstance(run.Get()); }));
}

TEST_F(SeamObjects, InstanceAttributesBelongToOneInstance) {
  const Ref<IInstance> run = Get(u"Run:10");
  run->AddInstanceAttribute(u"operator", 23);
  QueryRef<IContainer>(run.Get())->SetString(u"operator", u"Åsa");
  run->AddInstanceAttribute(u"count", 3);
  EXPECT_EQ("Åsa", Text(run.Get(), u"operator"));
  EXPECT_EQ(23, run->GetInstanceAttributeType(u"operator"));
  EXPECT_EQ(0, Get(u"Run:11")->GetInstanceAttributeType(u"operator"));
  const auto names = Ref<IAttribute>::Adopt(run->GetInstanceAttributeNames());
  ASSERT_EQ(2u, names->GetCount());
  EXPECT_TRUE(static_cast<const WString*>(names->GetData())[0].EqualsExact(u"operator"));
  struct Case {
    std::u16string_view name;
    std::int32_t type, code;
  };
  constexpr Case kRefused[] = {
      {u"operator", 23, errc::kNotUnique},  {u"Gear", 2, errc::kNotUnique},
      {u"name", 23, errc::kNotUnique},      {u"", 23, errc::kInvalidArgument},
      {u"1st", 23, errc::kInvalidArgument}, {u"a b", 23, errc::kInvalidArgument},
      {u"ref", 40, errc::kWrongType},       {u"none", 0, errc::kWrongType}};
  for (const Case& c : kRefused) {
    EXPECT_EQ(c.code, CodeOfThrow([&] { run->AddInstanceAttribute(c.name, c.type); }))
        << Utf8(c.name);
  }
  run->RemoveInstanceAttribute(u"count");
  EXPECT_EQ(errc::kUnknownName, CodeOfThrow([&] { run->RemoveInstanceAttribute(u"count"); }));
}

TEST_F(SeamObjects, ColumnsAreReadByRangeAndWritten) {
  const Ref<IInstance> column = Get(u"Column:7");
  auto values = Ref<IAttribute>::Adopt(column->GetAttributeValue(u"values"));
  EXPECT_EQ(10, values->GetDataType());
  ASSERT_EQ(3u, values->GetCount());
  double reals[2] = {};
  values->ReadReals(1, 2, reals);
  EXPECT_EQ(2.5, reals[0]);
  EXPECT_EQ(3.5, reals[1]);
  EXPECT_EQ(3.5, static_cast<const double*>(values->GetData())[2]);
  EXPECT_EQ(errc::kInvalidArgument, CodeOfThrow([&] { values->ReadReals(2, 2, reals); }));
  EXPECT_EQ(errc::kInvalidArgument, CodeOfThrow([&] { (void)values->GetReal(3); }));
  values->SetReal(3, 4.5);
  values->SetReal(0, -1.0);
  EXPECT_EQ(4u, values->GetCount());
  EXPECT_EQ(-1.0, values->GetReal(0));
  const std::int64_t integers[] = {1, 2};
  values->SetIntegers(2, integers);
  EXPECT_EQ(2u, Ref<IAttribute>::Adopt(column->GetAttributeValue(u"values"))->GetCount());
  EXPECT_EQ(0u, Ref<IAttribute>::Adopt(column->GetAttributeValue(u"flags"))->GetCount());
}

TEST_F(SeamObjects, QueriesGiveHitsUpToTheLimit) {
  const auto query = QueryRef<IStoreQuery>(m_store.Get());
  WString text;
  query->BuildQueryText(text, u"Run", 1, u"run*");
  EXPECT_EQ("Run:10 Run:11", Keys(Ref<IInstList>::Adopt(query->Execute(text))));
  text.ReplaceAll(u"<expression>", u"<expression limit=\"1\">");
  const auto limited = Ref<IInstList>::Adopt(query->Execute(text));
  EXPECT_EQ("Run:10", Keys(limited));
  EXPECT_EQ(errc::kBadQuery, CodeOfThrow([&] { (void)query->Execute(u"<query>"); }));
  EXPECT_EQ(errc::kBadQuery, CodeOfThrow([&] {
              query->BuildQueryText(text, u"Run", 1, u"Nothing = 'x'");
              (void)query->Execute(text);
            }));
}

TEST_F(SeamObjects, DistinctValuesAndBounds) {
  const auto query = QueryRef<IStoreQuery>(m_store.Get());
  const auto gears = Ref<IAttribute>::Adopt(query->GetDistinctValues(u"Run", u"Gear", u"", 2));
  ASSERT_EQ(2u, gears->GetCount());
  EXPECT_EQ(2, gears->GetInteger(0));
  std::uint64_t count = 0;
  WString restriction;
  query->BuildQueryText(restriction, u"Run", 1, u"run*");
  const auto bounds =
      Ref<IAttribute>::Adopt(query->GetBounds(u"Run", u"Gear", restriction, &count));
  EXPECT_EQ(2u, count);
  EXPECT_EQ(2, bounds->GetInteger(0));
  EXPECT_EQ(3, bounds->GetInteger(1));
}

TEST_F(SeamObjects, BulkReadsGiveColumnsOfRelatedInstances) {
  const auto reader = QueryRef<IBulkReader>(m_store.Get());
  const auto names = MakeRef<FreeContainer>();
  names->SetType(23);
  const auto list = Ref<IAttribute>::Adopt(names->GetAttribute(u""));
  list->SetText(0, u"HV_VEX_INSTANCE");
  list->SetText(1, u"name");
  list->SetText(2, u"bench.Name");
  list->SetText(3, u"Begin");
  const auto table =
      Ref<IValueTable>::Adopt(reader->ReadRelated(nullptr, u"/#Run", u"", names.Get()));
  ASSERT_EQ(3u, table->GetRowCount());
  ASSERT_EQ(4u, table->GetColumnCount());
  EXPECT_EQ("idle's end|Bench B", Utf8(table->GetText(2, 1)) + "|" + Utf8(table->GetText(2, 2)));
  EXPECT_EQ(0, table->IsNull(0, 3));
  EXPECT_EQ(1, table->IsNull(1, 3));
  EXPECT_EQ(Get(u"Run:11"), Ref<IInstance>::Adopt(table->GetInstance(1)));
  WString filter;
  QueryRef<IStoreQuery>(m_store.Get())->BuildQueryText(filter, u"Run", 1, u"Gear > 2");
  const auto filtered = Ref<IValueTable>::Adopt(
      reader->ReadRelated(Get(u"Bench:1").Get(), u"children", filter, names.Get()));
  ASSERT_EQ(1u, filtered->GetRowCount());
  EXPECT_EQ("Run down", Utf8(filtered->GetText(0, 1)));
  list->SetText(3, u"nothing");
  EXPECT_EQ(errc::kUnknownName,
            CodeOfThrow([&] { (void)reader->ReadRelated(nullptr, u"/#Run", u"", names.Get()); }));
}

TEST_F(SeamObjects, BulkReadsTakeHitsAndListsPutTogether) {
  const auto reader = QueryRef<IBulkReader>(m_store.Get());
  const auto names = MakeRef<FreeContainer>();
  names->SetType(23);
  Ref<IAttribute>::Adopt(names->GetAttribute(u""))->SetText(0, u"name");
  const auto hits = Ref<IInstList>::Adopt(m_store->GetInstances(u"/#Run"));
  hits->Truncate(2);
  const auto own = MakeRef<FreeInstList>();
  own->Append(Get(u"Run:10").Get());
  own->Append(Get(u"Run:11").Get());
  for (IInstList* list : {hits.Get(), static_cast<IInstList*>(own.Get())}) {
    const auto table = Ref<IValueTable>::Adopt(reader->ReadInstances(list, names.Get()));
    ASSERT_EQ(2u, table->GetRowCount());
    EXPECT_EQ("Run up|Run down", Utf8(table->GetText(0, 0)) + "|" + Utf8(table->GetText(1, 0)));
  }
  EXPECT_EQ(errc::kInvalidArgument,
            CodeOfThrow([&] { (void)reader->ReadInstances(nullptr, names.Get()); }));
}

TEST_F(SeamObjects, ModelShowsEntitiesAndDefinitions) {
  const Ref<IModel> model = Model();
  const auto run = Ref<IEntity>::Adopt(model->GetEntityByName(u"Run"));
  EXPECT_EQ(run, Ref<IEntity>::Adopt(model->GetEntityByName(u"RUN")));
  EXPECT_FALSE(Ref<IEntity>::Adopt(model->GetEntity(u"RUN")));
  WString text;
  Ref<IEntity>::Adopt(run->GetSuperType())->GetName(text);
  EXPECT_EQ("aomeasurement", Utf8(text));
  const auto names = Ref<IAttribute>::Adopt(run->GetAttributeNames());
  ASSERT_EQ(9u, names->GetCount());
  names->GetText(6, text);
  EXPECT_EQ("bench", Utf8(text));
  EXPECT_EQ(40, run->GetAttributeType(6));
  EXPECT_EQ(0, run->GetAttributeType(9));
  run->GetAttributeBaseName(text, u"Begin");
  EXPECT_EQ("measurement_begin", Utf8(text));
  const auto inverse =
      Ref<IRelation>::Adopt(Ref<IRelation>::Adopt(run->GetRelation(6))->GetInverse());
  inverse->GetName(text);
  EXPECT_EQ("runs", Utf8(text));
  const auto definition =
      QueryRef<IAttributeDefinition>(Ref<IAttribute>::Adopt(run->GetAttribute(u"Status")).Get());
  ASSERT_EQ(2u, definition->GetEnumerationCount());
  std::int64_t number = 0;
  definition->GetEnumerationItem(1, text, &number);
  EXPECT_EQ("passed", Utf8(text));
  EXPECT_EQ(2, number);
  definition->GetEnumerationName(text);
  EXPECT_EQ("Status", Utf8(text));
  EXPECT_EQ(0, definition->GetUnitId());
  const auto load =
      QueryRef<IAttributeDefinition>(Ref<IAttribute>::Adopt(run->GetAttribute(u"Load")).Get());
  EXPECT_EQ(3, load->GetUnitId());
  load->GetEnumerationName(text);
  EXPECT_EQ("", Utf8(text));
  // The base model's own enumerations aren't among those that a model declares.
  const auto enumerations = Ref<IAttribute>::Adopt(model->GetEnumerationNames());
  ASSERT_EQ(1u, enumerations->GetCount());
  EXPECT_EQ(2u, model->GetEnumerationItemCount(u"Status"));
  EXPECT_EQ(0u, model->GetEnumerationItemCount(u"none"));
  model->GetEnumerationItem(u"Status", 0, text, &number);
  EXPECT_EQ("open", Utf8(text));
  EXPECT_EQ(1, number);
  EXPECT_EQ(errc::kInvalidArgument,
            CodeOfThrow([&] { model->GetEnumerationItem(u"Status", 2, text, &number); }));
  const auto bench = Ref<IEntity>::Adopt(model->GetEntity(u"Bench"));
  const auto column = Ref<IEntity>::Adopt(model->GetEntity(u"Column"));
  ASSERT_EQ(1, model->FindPath(bench.Get(), column.Get(), text));
  EXPECT_EQ("runs.sub.matrices.columns", Utf8(text));
  // Entities outlive their store with the model.
  m_store.Reset();
  run->GetName(text);
  EXPECT_EQ("Run", Utf8(text));
  EXPECT_EQ(0u, model->GetChangeCounter());
}

TEST_F(SeamObjects, EnvironmentKeepsItsVariables) {
  auto format = Ref<IAttribute>::Adopt(m_environment->GetVariable(u"vexFormatStringTime"));
  EXPECT_EQ(0u, format->GetCount());
  format->SetText(0, u"dd.MM.yyyy");
  format = Ref<IAttribute>::Adopt(m_environment->GetVariable(u"vexFormatStringTime"));
  WString text;
  format->GetStringValue(text);
  EXPECT_EQ("dd.MM.yyyy", Utf8(text));
  EXPECT_FALSE(Ref<IAttribute>::Adopt(m_environment->GetVariable(u"other")));
  const auto plugins = Ref<IPluginList>::Adopt(m_environment->GetPlugins());
  EXPECT_EQ(1, Ref<IPluginInfo>::Adopt(plugins->GetPlugin(u"TOY"))->SupportsQueries());
  EXPECT_FALSE(Ref<IPluginInfo>::Adopt(plugins->GetPlugin(u"none")));
}

TEST_F(SeamObjects, FreeListsTakeInstancesOfSeveralStores) {
  const Ref<IStore> other = Open(u"");
  const auto list = MakeRef<FreeInstList>();
  list->Append(Get(u"Run:10").Get());
  list->Append(Ref<IInstance>::Adopt(other->GetInstance(u"Run:10")).Get());
  EXPECT_EQ(2u, list->GetCount());
  list->Truncate(1);
  EXPECT_EQ(Get(u"Run:10"), Ref<IInstance>::Adopt(list->Next()));
  EXPECT_FALSE(Ref<IInstance>::Adopt(list->Next()));
  WString text;
  const auto all = Ref<IInstList>::Adopt(m_store->GetInstances(u"/#Run"));
  all->GetAddressText(text);
  EXPECT_EQ("Run:10\nRun:11\nRun:12\n", Utf8(text));
  all->Truncate(2);
  EXPECT_EQ("Run:10 Run:11", Keys(all));
}

}  // namespace
}  // namespace hv::vex::engine
