// tests/core/store/MemoryStoreTest.cpp - the store in memory: the contract, saving and reloading.
#include "core/store/memory/MemoryStore.h"

#include "ModelText.h"
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

const auto kStores = ::testing::Values(StoreFactory{"Memory", MakeMemoryStore});
INSTANTIATE_TEST_SUITE_P(Memory, RecordStoreContract, kStores);
INSTANTIATE_TEST_SUITE_P(Memory, RecordStoreQueryContract, kStores);
INSTANTIATE_TEST_SUITE_P(Memory, RecordStoreValuesContract, kStores);

class MemoryStoreTest : public ::testing::Test {
 protected:
  std::shared_ptr<const Model> model = MakeContractModel();
  ContractModel m{*model};
  MemoryStore store{model, KeptNowhere()};
};

TEST_F(MemoryStoreTest, RefusesEveryChangeWithoutAWayToSave) {
  for (const EntityId entity : {m.run, m.tag, m.column}) store.Create(entity, 1);
  EXPECT_EQ("", UnprotectedChanges(*store.Clone({}), m));
}

TEST_F(MemoryStoreTest, KeepsChangesWhenSavingFails) {
  MemoryStore failing(model, {[](const MemoryStore&, std::u16string_view) -> bool {
                                throw Exception(errc::kWriteFailed, u"disk full");
                              },
                              {}});
  failing.Create(m.run, 1);
  EXPECT_EQ(errc::kWriteFailed, CodeOf([&] { failing.Save(u""); }));
  EXPECT_TRUE(failing.IsModified());
  EXPECT_EQ(errc::kNotSupported, CodeOf([&] { failing.Discard(); })) << "there is no way back";
  EXPECT_TRUE(failing.Exists({m.run, 1}));
}

TEST_F(MemoryStoreTest, TakesOverWhatIsReadAgain) {
  const auto makeContents = [&](const std::shared_ptr<const Model>& of, RecordId id) {
    MemoryStore filled(of, KeptNowhere());
    filled.Create(of->Find(u"Run")->id, id);
    filled.AddWarning(u"odd");
    return filled.Clone({});
  };
  std::unique_ptr<MemoryStore> next;
  MemoryStore read(model,
                   {[](const MemoryStore&, std::u16string_view mode) { return mode == u"moved"; },
                    [&](bool) { return std::move(next); }});
  const auto runs = [&] { return Describe(read.AllOf(m.run)); };

  read.Refresh();
  EXPECT_EQ("", runs()) << "nothing new was there";
  next = makeContents(MakeContractModel(), 5);
  read.Refresh();
  EXPECT_EQ("5", runs());
  EXPECT_EQ(1u, read.Warnings().size());
  EXPECT_EQ(model, read.GetModel()) << "a model of the same shape is no change";
  EXPECT_EQ(1u, read.ModelStamp());

  next = makeContents(model, 6);
  read.Create(m.run, 9);
  read.Refresh();
  EXPECT_EQ("5, 9", runs()) << "unsaved work stays";
  read.Save(u"moved");
  EXPECT_EQ("6", runs());

  const auto grown = MakeContractModel(ModelVariant::Grown);
  next = makeContents(grown, 1);
  read.Refresh();
  EXPECT_EQ(grown, read.GetModel());
  EXPECT_EQ(2u, read.ModelStamp());
  for (const auto variant : {ModelVariant::Plain, ModelVariant::Moved}) {
    next = makeContents(MakeContractModel(variant), 2);
    EXPECT_THROW(read.Refresh(), Exception);
    EXPECT_EQ(grown, read.GetModel());
    EXPECT_EQ("1", runs());
  }
}

TEST(MemoryStore, KeepsRelationsApartThatClaimTheSameInverse) {
  ModelBuilder builder(u"asam36");
  Declare(builder, R"(element Project AoAny
      rel Runs to=Run max=Many inverse=Project
      rel MoreRuns to=Run max=Many inverse=Project
      element Run AoAny
      rel Project to=Project max=1 inverse=Runs
      element Tag AoAny
      element Column AoAny)");
  const auto model = builder.Build();
  ASSERT_NE(nullptr, model);
  const ContractModel m(*model);
  MemoryStore store(model, KeptNowhere());
  m.Link(store, "P1.Runs+R1 P1.MoreRuns+R2 P1.MoreRuns+R3");
  EXPECT_EQ("P1.Runs=1 P1.MoreRuns=2,3", m.LinksOf(store, "P1.Runs= P1.MoreRuns="));
  store.Delete({m.run, 2});
  EXPECT_EQ("P1.MoreRuns=3 R1.Project=1", m.LinksOf(store, "P1.MoreRuns= R1.Project="));
}

TEST_F(MemoryStoreTest, HasNoRecordsOfBaseEntities) {
  const EntityId base = model->Find(u"aoany")->id;
  EXPECT_FALSE(store.Exists({base, 1}));
  EXPECT_EQ(errc::kUnknownName, CodeOf([&] { store.Create(base); }));
  EXPECT_EQ(errc::kUnknownName, CodeOf([&] { (void)store.AllOf(base); }));
  EXPECT_EQ(errc::kUnknownName, CodeOf([&] { (void)store.AllOf(kNoEntity); }));
}

TEST_F(MemoryStoreTest, KeepsTextsThroughManyRewrites) {
  const auto textOf = [](RecordId id, int round) {
    return Wide(std::to_string(id * 1000 + round)) + (id % 3 == 0 ? u"ü" : u"") +
           std::u16string(static_cast<std::size_t>(id % 7) * 40, u'x');
  };
  constexpr RecordId kRecords = 100;
  constexpr int kRounds = 60;  // enough for the old texts to be thrown away several times
  for (RecordId id = 1; id <= kRecords; ++id) store.Create(m.run, id);
  for (int round = 0; round < kRounds; ++round) {
    for (RecordId id = 1; id <= kRecords; ++id) m.SetName(store, {m.run, id}, textOf(id, round));
    for (RecordId id = 1; id <= kRecords; ++id) {
      ASSERT_EQ(Word(textOf(id, round)), m.Get(store, {m.run, id}, u"Name"));
    }
  }
}

}  // namespace
}  // namespace hv::vex::engine::test
