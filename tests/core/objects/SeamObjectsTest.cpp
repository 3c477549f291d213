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

template <class T>
Ref<T> Own(T* made) {
  return Ref<T>::Adopt(made);
}

/// What a call writes into its text.
template <class Call>
std::string Told(Call&& call) {
  WString text;
  call(text);
  return Utf8(text);
}

template <class Body>
std::int32_t Code(Body&& body) {
  try {
    body();
  } catch (const Exception& exception) {
    return exception.code;
  }
  return 0;
}

std::string Text(const Ref<IInstance>& instance, std::u16string_view attribute) {
  return Told([&](WString& to) { instance.As<IContainer>()->GetString(to, attribute); });
}

std::string Keys(const Ref<IInstList>& list) {
  std::string keys;
  for (std::uint64_t i = 0; i < list->GetCount(); ++i) {
    keys += (i > 0 ? " " : "") + Told([&](WString& to) { list->GetKey(i, to); });
  }
  return keys;
}

class SeamObjects : public ::testing::Test {
 protected:
  ~SeamObjects() override {
    m_store.Reset();
    m_environment.Reset();
    EXPECT_EQ(m_objectsBefore, cor::LiveObjectCount());
  }

  Ref<IStore> Open(std::u16string_view parameters) {
    return Own(m_environment->OpenStoreByParameter(u"", u"toy", parameters, 0));
  }
  Ref<IInstance> Get(std::u16string_view key) { return Own(m_store->GetInstance(key)); }
  Ref<IInstList> List(std::u16string_view path) { return Own(m_store->GetInstances(path)); }
  Ref<IModel> Model() { return Own(m_store->GetModel()); }
  Ref<IEntity> Entity(std::u16string_view name) { return Own(Model()->GetEntity(name)); }
  WString QueryText(std::u16string_view restriction) {
    WString text;
    m_store.As<IStoreQuery>()->BuildQueryText(text, u"Run", 1, restriction);
    return text;
  }

  std::int64_t m_objectsBefore = cor::LiveObjectCount();
  Ref<IEnvironment> m_environment =
      MakeRef<EnvironmentObject>(std::span(&test::kToyPlugin, 1), &test::FindToyModel);
  Ref<IStore> m_store = Open(u"<filename>/data/bench.toy</filename>");
};

TEST_F(SeamObjects, StoreTellsWhatItIs) {
  EXPECT_EQ("bench", Told([&](WString& to) { m_store->GetName(to); }));
  EXPECT_EQ("Toy", Told([&](WString& to) { m_store->GetPluginName(to); }));
  EXPECT_EQ("<filename>/data/bench.toy</filename>",
            Told([&](WString& to) { m_store->GetParameters(to); }));
  EXPECT_EQ("/data/bench.toy", Told([&](WString& to) { m_store->GetDisplayLocation(to); }));
  EXPECT_EQ(m_environment, Own(m_store->GetEnvironment()));
  EXPECT_EQ(0, m_store->GetState(3));
  EXPECT_EQ(0, m_store->IsReadOnly());
  EXPECT_EQ(1, Open(u"<readonly>yes</readonly>")->IsReadOnly());
}

TEST_F(SeamObjects, OpeningFailsWithTheCodeOfItsReason) {
  EXPECT_EQ(errc::kUnknownName, Code([&] { (void)m_environment->OpenStore(u"nowhere", 0); }));
  EXPECT_EQ(errc::kUnknownName,
            Code([&] { (void)m_environment->OpenStoreByParameter(u"", u"none", u"", 0); }));
  EXPECT_EQ(-3, Code([&] { Open(u"<fail>abc</fail>"); }));
}

TEST_F(SeamObjects, NewStoresAreMadeOfAModel) {
  const auto create = [&](std::u16string_view plugin, std::u16string_view parameters,
                          CreateMode mode = CreateMode::Temporary) {
    return Own(m_environment->CreateStore(plugin, parameters, u"", 0, mode));
  };
  const Ref<IStore> made = create(u"TOY", u"<model> toy &amp; co </model>");
  EXPECT_EQ("", Keys(Own(made->GetInstances(u"/#Run"))));
  const auto model = Own(made->GetModel());
  const auto run = Own(made->CreateInstance(Own(model->GetEntity(u"Run")).Get()));
  EXPECT_EQ(1, made->GetState(3));
  const Ref<IStore> opened = create(u"toy", u"<filename>a.toy</filename>", CreateMode::OpenFile);
  EXPECT_EQ(1, opened->IsReadOnly());
  EXPECT_EQ("Run:10 Run:11 Run:12", Keys(Own(opened->GetInstances(u"/#Run"))));
  for (const auto* parameters : {u"", u"<model></model>", u"<model>other</model>"}) {
    EXPECT_EQ(errc::kUnknownName, Code([&] { create(u"toy", parameters); }));
  }
  EXPECT_EQ(errc::kUnknownName, Code([&] { create(u"x", u""); }));
}

TEST_F(SeamObjects, OneLivingObjectPerRecord) {
  const Ref<IInstance> first = Get(u"Run:10");
  EXPECT_EQ(first, Get(u"Run:10"));
  EXPECT_EQ(first, Own(List(u"/#Run")->GetInstance(0)));
  for (const auto* bad :
       {u"Run:99", u"Run", u"Run:", u"Run:x", u"None:1", u"aotest:1", u":1", u""}) {
    EXPECT_FALSE(Get(bad)) << Utf8(bad);
  }
}

TEST_F(SeamObjects, PathsLeadToRecords) {
  constexpr std::pair<std::u16string_view, const char*> kCases[] = {
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
  for (const auto& [path, keys] : kCases) EXPECT_EQ(keys, Keys(List(path))) << Utf8(path);
  const auto run = Get(u"Run:10").As<IContainer>();
  EXPECT_EQ("Sub:6", Keys(Own(run->GetList(u"sub.matrices"))));
  EXPECT_EQ("Column:7", Keys(Own(run->GetList(u"submatrices.local_columns"))));
}

TEST_F(SeamObjects, BadPathsAreRefused) {
  for (const std::u16string_view path :
       {u"", u"Run", u"/#", u"/#Run..bench", u"/#Run.", u"/#Run(Name=x)", u"/#Run(Name='x",
        u"/#Run(Name='x'", u"/#Run(Name='x')bench"}) {
    EXPECT_EQ(errc::kInvalidArgument, Code([&] { List(path); })) << Utf8(path);
  }
  for (const std::u16string_view path : {u"/#none", u"/#run", u"/#Run.none", u"/#Run(none='x')"}) {
    EXPECT_EQ(errc::kUnknownName, Code([&] { List(path); })) << Utf8(path);
  }
}

TEST_F(SeamObjects, ValuesAreReadByOwnNameAndBaseName) {
  const Ref<IInstance> run = Get(u"Run:10");
  constexpr std::pair<std::u16string_view, const char*> kCases[] = {
      {u"Name", "Run up"},   {u"name", "Run up"},
      {u"id", "10"},         {u"measurement_begin", "20240517101500"},
      {u"Status", "passed"}, {u"Load", ""}};
  for (const auto& [name, expected] : kCases) EXPECT_EQ(expected, Text(run, name)) << Utf8(name);
  const auto status = Own(run->GetAttributeValue(u"Status"));
  EXPECT_EQ(24, status->GetDataType());
  EXPECT_EQ(2, status->GetInteger(0));
  EXPECT_EQ(2, *static_cast<const std::int32_t*>(status->GetData()));
  const auto bench = Own(run->GetAttributeValue(u"bench"));
  EXPECT_EQ(40, bench->GetDataType());
  EXPECT_EQ(1u, bench->GetCount());
  const auto iterator = Own(bench->GetIterator());
  EXPECT_EQ("Bench A", Text(Own(iterator->Next()), u"name"));
  EXPECT_FALSE(Own(iterator->Next()));
  EXPECT_FALSE(Own(run->GetAttributeValue(u"nothing")));
  EXPECT_EQ(errc::kUnknownName, Code([&] { Text(run, u"nothing"); }));
  for (const std::u16string_view name : {u"Status", u"Begin", u"Load"}) {
    const auto value = Own(run->GetAttributeValue(name));
    const std::uint64_t behind = value->GetCount();
    WString text;
    EXPECT_EQ(errc::kInvalidArgument, Code([&] { (void)value->GetInteger(behind); }));
    EXPECT_EQ(errc::kInvalidArgument, Code([&] { (void)value->GetReal(behind); }));
    EXPECT_EQ(errc::kInvalidArgument, Code([&] { value->GetText(behind, text); }));
  }
}

TEST_F(SeamObjects, WrittenValuesAreSeenAndCheckedAgainstTheirType) {
  const Ref<IInstance> run = Get(u"Run:11");
  const auto c = run.As<IContainer>();
  c->SetString(u"Status", u"OPEN");
  EXPECT_EQ("open", Text(run, u"Status"));
  c->SetInteger(u"Status", 2);
  EXPECT_EQ("passed", Text(run, u"Status"));
  c->SetReal(u"Load", 0.1);
  EXPECT_EQ("0.1", Text(run, u"Load"));
  c->SetString(u"Gear", u" 7 ");
  EXPECT_EQ(7, c->GetInteger64(u"Gear", 0));
  EXPECT_EQ(1, m_store->GetState(3));
  Own(run->GetAttributeValue(u"Gear"))->Clear();
  EXPECT_EQ(-5, c->GetInteger64(u"Gear", -5));
  EXPECT_EQ(errc::kWrongType, Code([&] { c->SetString(u"Status", u"lost"); }));
  EXPECT_EQ(errc::kWrongType, Code([&] { c->SetInteger(u"Gear", 40000); }));
  EXPECT_EQ(errc::kWrongType, Code([&] { c->SetString(u"Gear", u"three"); }));
  EXPECT_EQ(errc::kWrongType, Code([&] { c->SetReal(u"Load", 1e300); }));
  EXPECT_EQ(errc::kWrongType, Code([&] { c->SetString(u"Begin", u"yesterday"); }));
  EXPECT_EQ(errc::kWriteProtected, Code([&] { c->SetInteger(u"Id", 3); }));
  m_store->Save(u"");
  EXPECT_EQ(0, m_store->GetState(3));
}

TEST_F(SeamObjects, InstancesAreMadeLinkedAndDeleted) {
  const auto base = Entity(u"aomeasurement");
  const auto run = Own(m_store->CreateInstance(Entity(u"Run").Get()));
  const Ref<IInstance> bench = Get(u"Bench:2");
  run->Link(u"test", bench.Get());
  EXPECT_EQ(2u, Own(bench->GetRelated(u"runs"))->GetCount());
  run->Link(u"bench", Get(u"Bench:1").Get());  // a to-one reference lets go of its earlier partner
  EXPECT_EQ("Run:12", Keys(Own(bench->GetRelated(u"runs"))));
  const auto channel = Own(run->CreateRelated(u"meq"));
  EXPECT_EQ(1, channel->IsKindOf(Entity(u"Channel").Get()));
  EXPECT_EQ(1, run->IsKindOf(base.Get()));
  EXPECT_EQ(errc::kWrongType, Code([&] { run->Link(u"bench", channel.Get()); }));
  EXPECT_EQ(errc::kInvalidArgument, Code([&] { run->Link(u"bench", nullptr); }));
  EXPECT_EQ(errc::kUnknownName, Code([&] { run->Link(u"none", bench.Get()); }));
  EXPECT_EQ(errc::kInvalidArgument, Code([&] { (void)m_store->CreateInstance(base.Get()); }));
  const auto foreign = Own(Open(u"")->GetInstance(u"Bench:1"));
  EXPECT_EQ(errc::kInvalidArgument, Code([&] { run->Link(u"bench", foreign.Get()); }));
  EXPECT_EQ(errc::kInvalidArgument, Code([&] { m_store->DeleteInstance(foreign.Get()); }));

  m_store->DeleteInstance(run.Get());
  EXPECT_EQ(0, run->IsValid());
  EXPECT_EQ(1, channel->IsValid());
  EXPECT_EQ(errc::kInstanceGone, Code([&] { Text(run, u"name"); }));
  EXPECT_EQ(errc::kInstanceGone, Code([&] { m_store->DeleteInstance(run.Get()); }));
}

TEST_F(SeamObjects, InstanceAttributesBelongToOneInstance) {
  const Ref<IInstance> run = Get(u"Run:10");
  run->AddInstanceAttribute(u"operator", 23);
  run.As<IContainer>()->SetString(u"operator", u"Åsa");
  run->AddInstanceAttribute(u"count", 3);
  EXPECT_EQ("Åsa", Text(run, u"operator"));
  EXPECT_EQ(23, run->GetInstanceAttributeType(u"operator"));
  EXPECT_EQ(0, Get(u"Run:11")->GetInstanceAttributeType(u"operator"));
  const auto names = Own(run->GetInstanceAttributeNames());
  ASSERT_EQ(2u, names->GetCount());
  EXPECT_TRUE(static_cast<const WString*>(names->GetData())[0].EqualsExact(u"operator"));
  constexpr std::tuple<std::u16string_view, std::int32_t, std::int32_t> kRefused[] = {
      {u"operator", 23, errc::kNotUnique},  {u"Gear", 2, errc::kNotUnique},
      {u"name", 23, errc::kNotUnique},      {u"", 23, errc::kInvalidArgument},
      {u"1st", 23, errc::kInvalidArgument}, {u"a b", 23, errc::kInvalidArgument},
      {u"ref", 40, errc::kWrongType},       {u"none", 0, errc::kWrongType}};
  for (const auto& [name, type, code] : kRefused) {
    SCOPED_TRACE(Utf8(name));
    EXPECT_EQ(code, Code([&, name = name, type = type] { run->AddInstanceAttribute(name, type); }));
  }
  run->RemoveInstanceAttribute(u"count");
  EXPECT_EQ(errc::kUnknownName, Code([&] { run->RemoveInstanceAttribute(u"count"); }));
}

TEST_F(SeamObjects, ColumnsAreReadByRangeAndWritten) {
  const Ref<IInstance> column = Get(u"Column:7");
  auto values = Own(column->GetAttributeValue(u"values"));
  EXPECT_EQ(10, values->GetDataType());
  ASSERT_EQ(3u, values->GetCount());
  double reals[2] = {};
  values->ReadReals(1, 2, reals);
  EXPECT_EQ(2.5, reals[0]);
  EXPECT_EQ(3.5, reals[1]);
  EXPECT_EQ(3.5, static_cast<const double*>(values->GetData())[2]);
  EXPECT_EQ(errc::kInvalidArgument, Code([&] { values->ReadReals(2, 2, reals); }));
  EXPECT_EQ(errc::kInvalidArgument, Code([&] { (void)values->GetReal(3); }));
  values->SetReal(3, 4.5);
  values->SetReal(0, -1.0);
  EXPECT_EQ(4u, values->GetCount());
  EXPECT_EQ(-1.0, values->GetReal(0));
  const std::int64_t integers[] = {1, 2};
  values->SetIntegers(2, integers);
  EXPECT_EQ(2u, Own(column->GetAttributeValue(u"values"))->GetCount());
  EXPECT_EQ(0u, Own(column->GetAttributeValue(u"flags"))->GetCount());
}

TEST_F(SeamObjects, QueriesGiveHitsUpToTheLimit) {
  const auto query = m_store.As<IStoreQuery>();
  WString text = QueryText(u"run*");
  EXPECT_EQ("Run:10 Run:11", Keys(Own(query->Execute(text))));
  text.ReplaceAll(u"<expression>", u"<expression limit=\"1\">");
  EXPECT_EQ("Run:10", Keys(Own(query->Execute(text))));
  for (const WString& bad : {WString(u"<query>"), QueryText(u"Nothing = 'x'")}) {
    EXPECT_EQ(errc::kBadQuery, Code([&] { (void)query->Execute(bad); })) << Utf8(bad);
  }
}

TEST_F(SeamObjects, DistinctValuesAndBounds) {
  const auto query = m_store.As<IStoreQuery>();
  const auto gears = Own(query->GetDistinctValues(u"Run", u"Gear", u"", 2));
  ASSERT_EQ(2u, gears->GetCount());
  EXPECT_EQ(2, gears->GetInteger(0));
  std::uint64_t count = 0;
  const auto bounds = Own(query->GetBounds(u"Run", u"Gear", QueryText(u"run*"), &count));
  EXPECT_EQ(2u, count);
  EXPECT_EQ(2, bounds->GetInteger(0));
  EXPECT_EQ(3, bounds->GetInteger(1));
}

/// Names of the columns of a bulk read.
Ref<FreeContainer> Names(std::initializer_list<std::u16string_view> texts) {
  const auto names = MakeRef<FreeContainer>();
  names->SetType(23);
  const auto list = Own(names->GetAttribute(u""));
  for (const std::u16string_view text : texts) list->SetText(list->GetCount(), text);
  return names;
}

TEST_F(SeamObjects, BulkReadsGiveColumnsOfRelatedInstances) {
  const auto reader = m_store.As<IBulkReader>();
  const auto names = Names({u"HV_VEX_INSTANCE", u"name", u"bench.Name", u"Begin"});
  const auto table = Own(reader->ReadRelated(nullptr, u"/#Run", u"", names.Get()));
  ASSERT_EQ(3u, table->GetRowCount());
  ASSERT_EQ(4u, table->GetColumnCount());
  EXPECT_EQ("idle's end|Bench B", Utf8(table->GetText(2, 1)) + "|" + Utf8(table->GetText(2, 2)));
  EXPECT_EQ(0, table->IsNull(0, 3));
  EXPECT_EQ(1, table->IsNull(1, 3));
  EXPECT_EQ(Get(u"Run:11"), Own(table->GetInstance(1)));
  const auto filtered = Own(
      reader->ReadRelated(Get(u"Bench:1").Get(), u"children", QueryText(u"Gear > 2"), names.Get()));
  ASSERT_EQ(1u, filtered->GetRowCount());
  EXPECT_EQ("Run down", Utf8(filtered->GetText(0, 1)));
  EXPECT_EQ(errc::kUnknownName, Code([&] {
              (void)reader->ReadRelated(nullptr, u"/#Run", u"", Names({u"nothing"}).Get());
            }));
}

TEST_F(SeamObjects, BulkReadsTakeHitsAndListsPutTogether) {
  const auto reader = m_store.As<IBulkReader>();
  const auto names = Names({u"name"});
  const auto hits = List(u"/#Run");
  hits->Truncate(2);
  const auto own = MakeRef<FreeInstList>();
  own->Append(Get(u"Run:10").Get());
  own->Append(Get(u"Run:11").Get());
  for (IInstList* list : {hits.Get(), static_cast<IInstList*>(own.Get())}) {
    const auto table = Own(reader->ReadInstances(list, names.Get()));
    ASSERT_EQ(2u, table->GetRowCount());
    EXPECT_EQ("Run up|Run down", Utf8(table->GetText(0, 0)) + "|" + Utf8(table->GetText(1, 0)));
  }
  EXPECT_EQ(errc::kInvalidArgument,
            Code([&] { (void)reader->ReadInstances(nullptr, names.Get()); }));
}

TEST_F(SeamObjects, ModelShowsEntities) {
  const Ref<IModel> model = Model();
  const auto run = Own(model->GetEntityByName(u"Run"));
  EXPECT_EQ(run, Own(model->GetEntityByName(u"RUN")));
  EXPECT_FALSE(Entity(u"RUN"));
  EXPECT_EQ("aomeasurement", Told([&](WString& to) { Own(run->GetSuperType())->GetName(to); }));
  const auto names = Own(run->GetAttributeNames());
  ASSERT_EQ(9u, names->GetCount());
  EXPECT_EQ("bench", Told([&](WString& to) { names->GetText(6, to); }));
  EXPECT_EQ(40, run->GetAttributeType(6));
  EXPECT_EQ(0, run->GetAttributeType(9));
  EXPECT_EQ("measurement_begin",
            Told([&](WString& to) { run->GetAttributeBaseName(to, u"Begin"); }));
  const auto inverse = Own(Own(run->GetRelation(6))->GetInverse());
  EXPECT_EQ("runs", Told([&](WString& to) { inverse->GetName(to); }));
  const auto bench = Entity(u"Bench"), column = Entity(u"Column");
  EXPECT_EQ("runs.sub.matrices.columns", Told([&](WString& to) {
              EXPECT_EQ(1, model->FindPath(bench.Get(), column.Get(), to));
            }));
  // Entities outlive their store with the model.
  m_store.Reset();
  EXPECT_EQ("Run", Told([&](WString& to) { run->GetName(to); }));
  EXPECT_EQ(0u, model->GetChangeCounter());
}

TEST_F(SeamObjects, ModelShowsDefinitions) {
  const auto run = Entity(u"Run");
  const auto status = Own(run->GetAttribute(u"Status")).As<IAttributeDefinition>();
  const auto load = Own(run->GetAttribute(u"Load")).As<IAttributeDefinition>();
  ASSERT_EQ(2u, status->GetEnumerationCount());
  std::int64_t number = 0;
  EXPECT_EQ("passed", Told([&](WString& to) { status->GetEnumerationItem(1, to, &number); }));
  EXPECT_EQ(2, number);
  EXPECT_EQ("Status", Told([&](WString& to) { status->GetEnumerationName(to); }));
  EXPECT_EQ("", Told([&](WString& to) { load->GetEnumerationName(to); }));
  EXPECT_EQ(0, status->GetUnitId());
  EXPECT_EQ(3, load->GetUnitId());
  // The base model's own enumerations aren't among those that a model declares.
  const Ref<IModel> model = Model();
  EXPECT_EQ(1u, Own(model->GetEnumerationNames())->GetCount());
  EXPECT_EQ(2u, model->GetEnumerationItemCount(u"Status"));
  EXPECT_EQ(0u, model->GetEnumerationItemCount(u"none"));
  EXPECT_EQ("open",
            Told([&](WString& to) { model->GetEnumerationItem(u"Status", 0, to, &number); }));
  EXPECT_EQ(1, number);
  WString text;
  EXPECT_EQ(errc::kInvalidArgument,
            Code([&] { model->GetEnumerationItem(u"Status", 2, text, &number); }));
}

TEST_F(SeamObjects, EnvironmentKeepsItsVariables) {
  const auto format = [&] { return Own(m_environment->GetVariable(u"vexFormatStringTime")); };
  EXPECT_EQ(0u, format()->GetCount());
  format()->SetText(0, u"dd.MM.yyyy");
  EXPECT_EQ("dd.MM.yyyy", Told([&](WString& to) { format()->GetStringValue(to); }));
  EXPECT_FALSE(Own(m_environment->GetVariable(u"other")));
  const auto plugins = Own(m_environment->GetPlugins());
  EXPECT_EQ(1, Own(plugins->GetPlugin(u"TOY"))->SupportsQueries());
  EXPECT_FALSE(Own(plugins->GetPlugin(u"none")));
}

TEST_F(SeamObjects, FreeListsTakeInstancesOfSeveralStores) {
  const Ref<IStore> other = Open(u"");
  const auto list = MakeRef<FreeInstList>();
  list->Append(Get(u"Run:10").Get());
  list->Append(Own(other->GetInstance(u"Run:10")).Get());
  EXPECT_EQ(2u, list->GetCount());
  list->Truncate(1);
  EXPECT_EQ(Get(u"Run:10"), Own(list->Next()));
  EXPECT_FALSE(Own(list->Next()));
  const auto all = List(u"/#Run");
  EXPECT_EQ("Run:10\nRun:11\nRun:12\n", Told([&](WString& to) { all->GetAddressText(to); }));
  all->Truncate(2);
  EXPECT_EQ("Run:10 Run:11", Keys(all));
}

}  // namespace
}  // namespace hv::vex::engine
