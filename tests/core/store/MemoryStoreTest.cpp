// tests/core/store/MemoryStoreTest.cpp - the store in memory: the contract, saving and reloading.
#include "core/store/memory/MemoryStore.h"

#include "core/model/ModelBuilder.h"

#include "QueryContract.h"
#include "ValuesContract.h"

namespace hv::vex::engine::test {
namespace {

/// A store that is saved into a copy of itself.
std::unique_ptr<RecordStore> MakeMemoryStore(std::shared_ptr<const Model> model) {
  auto saved = std::make_shared<std::unique_ptr<MemoryStore>>(
      std::make_unique<MemoryStore>(model, MemoryPersistence()));
  MemoryPersistence persistence;
  persistence.save = [saved](const MemoryStore& store, std::u16string_view) {
    *saved = store.Clone({});
    return false;
  };
  persistence.reload = [saved](bool onlyIfChanged) {
    return onlyIfChanged ? nullptr : (*saved)->Clone({});
  };
  return std::make_unique<MemoryStore>(std::move(model), std::move(persistence));
}

const StoreFactory kFactories[] = {{"Memory", MakeMemoryStore}};
const auto kNameOf = [](const auto& info) { return info.param.name; };
INSTANTIATE_TEST_SUITE_P(Stores, RecordStoreContract, ::testing::ValuesIn(kFactories), kNameOf);
INSTANTIATE_TEST_SUITE_P(Stores, RecordStoreQueryContract, ::testing::ValuesIn(kFactories),
                         kNameOf);

TEST(MemoryStore, RefusesEveryChangeWithoutAWayToSave) {
  const auto model = MakeContractModel();
  const ContractModel m(*model);
  std::unique_ptr<MemoryStore> store;
  {
    MemoryStore source(model, {[](const MemoryStore&, std::u16string_view) { return false; }, {}});
    source.Create(m.run, 1);
    source.Create(m.tag, 1);
    store = source.Clone({});
  }
  EXPECT_FALSE(store->GetCapabilities().writable);
  const RecordRef run{m.run, 1};
  const RecordRef tag{m.tag, 1};
  const std::int32_t tags = m.RelationOf(m.run, u"Tags");
  const std::pair<const char*, std::function<void()>> kChanges[] = {
      {"Create", [&] { store->Create(m.run); }},
      {"Write", [&] { store->Write(run, m.AttributeOf(m.run, u"Note"), Value()); }},
      {"Connect", [&] { store->Connect(run, tags, tag); }},
      {"Disconnect", [&] { store->Disconnect(run, tags, tag); }},
      {"Delete", [&] { store->Delete(run); }},
      {"SetInstanceAttribute",
       [&] {
         store->SetInstanceAttribute(run, {u"a", Value::Integer(OdsType::Long, 1), 0});
       }},
      {"RemoveInstanceAttribute", [&] { store->RemoveInstanceAttribute(run, u"a"); }},
      {"WriteValues", [&] { store->WriteValues(run, Value(), {}, false); }},
      {"Save", [&] { store->Save(u""); }},
  };
  for (const auto& [name, change] : kChanges) {
    SCOPED_TRACE(name);
    EXPECT_EQ(errc::kWriteProtected, CodeOf(change));
  }
  EXPECT_TRUE(store->Exists(run));
  EXPECT_FALSE(store->IsModified());
}

TEST(MemoryStore, KeepsChangesWhenSavingFails) {
  const auto model = MakeContractModel();
  const ContractModel m(*model);
  MemoryStore store(model, {[](const MemoryStore&, std::u16string_view) -> bool {
                              throw Exception(errc::kWriteFailed, u"disk full");
                            },
                            {}});
  store.Create(m.run, 1);
  EXPECT_EQ(errc::kWriteFailed, CodeOf([&] { store.Save(u""); }));
  EXPECT_TRUE(store.IsModified());
  EXPECT_TRUE(store.Exists({m.run, 1}));
  EXPECT_EQ(errc::kNotSupported, CodeOf([&] { store.Discard(); })) << "there is no way back";
  EXPECT_TRUE(store.Exists({m.run, 1}));
}

TEST(MemoryStore, TakesOverWhatIsReadAgain) {
  const auto model = MakeContractModel();
  const ContractModel m(*model);
  const auto makeContents = [&](std::shared_ptr<const Model> of, RecordId id) {
    MemoryStore filled(std::move(of),
                       {[](const MemoryStore&, std::u16string_view) { return false; }, {}});
    filled.Create(filled.GetModel()->Find(u"Run")->id, id);
    filled.AddWarning(u"odd");
    return filled.Clone({});
  };
  std::unique_ptr<MemoryStore> next;
  MemoryPersistence persistence;
  persistence.save = [](const MemoryStore&, std::u16string_view mode) { return mode == u"moved"; };
  persistence.reload = [&](bool) { return std::move(next); };
  MemoryStore store(model, std::move(persistence));

  store.Refresh();
  EXPECT_TRUE(store.AllOf(m.run).empty()) << "nothing new was there";
  next = makeContents(MakeContractModel(), 5);
  store.Refresh();
  EXPECT_EQ("5", Describe(store.AllOf(m.run)));
  EXPECT_EQ(1u, store.Warnings().size());
  EXPECT_EQ(model, store.GetModel()) << "a model of the same shape is no change";
  EXPECT_EQ(1u, store.ModelStamp());

  next = makeContents(model, 6);
  store.Create(m.run, 9);
  store.Refresh();
  EXPECT_EQ("5, 9", Describe(store.AllOf(m.run))) << "unsaved work stays";
  store.Save(u"moved");
  EXPECT_EQ("6", Describe(store.AllOf(m.run)));

  const auto grown = MakeContractModel(ModelVariant::Grown);
  next = makeContents(grown, 1);
  store.Refresh();
  EXPECT_EQ(grown, store.GetModel());
  EXPECT_EQ(2u, store.ModelStamp());
  for (const auto variant : {ModelVariant::Plain, ModelVariant::Moved}) {
    next = makeContents(MakeContractModel(variant), 2);
    EXPECT_THROW(store.Refresh(), Exception);
    EXPECT_EQ(grown, store.GetModel());
    EXPECT_EQ("1", Describe(store.AllOf(m.run)));
  }
}

TEST(MemoryStore, KeepsRelationsApartThatClaimTheSameInverse) {
  ModelBuilder builder(u"asam36");
  const auto add = [&](std::u16string name, std::u16string to, std::u16string inverse,
                       std::int32_t most) {
    RelationSpec spec;
    spec.name = std::move(name);
    spec.refTo = std::move(to);
    spec.inverseName = std::move(inverse);
    spec.maxOccurs = most;
    EXPECT_TRUE(builder.AddRelation(std::move(spec)));
  };
  builder.BeginEntity(u"Project", u"AoAny");
  add(u"Runs", u"Run", u"Project", kMany);
  add(u"MoreRuns", u"Run", u"Project", kMany);
  builder.BeginEntity(u"Run", u"AoAny");
  add(u"Project", u"Project", u"Runs", 1);
  const auto model = builder.Build();
  ASSERT_NE(nullptr, model);
  const Entity& project = *model->Find(u"Project");
  const Entity& run = *model->Find(u"Run");
  MemoryStore store(model, {[](const MemoryStore&, std::u16string_view) { return false; }, {}});
  store.Create(project.id, 1);
  for (RecordId id = 1; id <= 3; ++id) store.Create(run.id, id);
  const std::int32_t runs = project.FindRelation(u"Runs");
  const std::int32_t more = project.FindRelation(u"MoreRuns");
  store.Connect({project.id, 1}, runs, {run.id, 1});
  store.Connect({project.id, 1}, more, {run.id, 2});
  store.Connect({project.id, 1}, more, {run.id, 3});
  EXPECT_EQ("1", Describe(Targets(store, {project.id, 1}, runs)));
  EXPECT_EQ("2, 3", Describe(Targets(store, {project.id, 1}, more)));
  store.Delete({run.id, 2});
  EXPECT_EQ("3", Describe(Targets(store, {project.id, 1}, more)));
  EXPECT_EQ("1", Describe(Targets(store, {run.id, 1}, run.FindRelation(u"Project"))));
}

TEST(MemoryStore, HasNoRecordsOfBaseEntities) {
  const auto model = MakeContractModel();
  MemoryStore store(model, {[](const MemoryStore&, std::u16string_view) { return false; }, {}});
  const EntityId base = model->Find(u"aoany")->id;
  EXPECT_FALSE(store.Exists({base, 1}));
  EXPECT_EQ(errc::kUnknownName, CodeOf([&] { store.Create(base); }));
  EXPECT_EQ(errc::kUnknownName, CodeOf([&] { (void)store.AllOf(base); }));
  EXPECT_EQ(errc::kUnknownName, CodeOf([&] { (void)store.AllOf(kNoEntity); }));
}

TEST(MemoryStore, KeepsTextsThroughManyRewrites) {
  const auto model = MakeContractModel();
  const ContractModel m(*model);
  MemoryStore store(model, {[](const MemoryStore&, std::u16string_view) { return false; }, {}});
  const std::int32_t note = m.AttributeOf(m.run, u"Note");
  const auto textOf = [](RecordId id, int round) {
    const std::string digits = std::to_string(id * 1000 + round);
    std::u16string text(digits.begin(), digits.end());
    if (id % 3 == 0) text += u"ü";
    return text + std::u16string(static_cast<std::size_t>(id % 7) * 40, u'x');
  };
  constexpr RecordId kRecords = 100;
  constexpr int kRounds = 60;  // enough for the old texts to be thrown away several times
  for (RecordId id = 1; id <= kRecords; ++id) store.Create(m.run, id);
  for (int round = 0; round < kRounds; ++round) {
    for (RecordId id = 1; id <= kRecords; ++id) {
      store.Write({m.run, id}, note, Value::Text(OdsType::String, textOf(id, round)));
    }
    for (RecordId id = 1; id <= kRecords; ++id) {
      ASSERT_EQ(Value::Text(OdsType::String, textOf(id, round)),
                store.ReadValue({m.run, id}, note));
    }
  }
}

}  // namespace
}  // namespace hv::vex::engine::test
