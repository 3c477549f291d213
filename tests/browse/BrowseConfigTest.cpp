// tests/browse/BrowseConfigTest.cpp - the path of a store, its levels, and who keeps them alive.
#include "tests/browse/BrowseFixture.h"

namespace hv::vex {
namespace {

class BrowseConfig : public BrowseTest {};

TEST_F(BrowseConfig, DefaultPathFollowsTheModel) {
  constexpr struct {
    const char *file, *chain, *dataLevels;
    bool isComplete;
  } kCases[] = {
      {"campaign", "/#Campaign>Vehicle.Runs>Runs>Channels", "Sub.Test,Run,Channel", true},
      {"notest", "", "", false},
      {"nochildren", "/#Test", "", false},
      {"selfref", "/#Test>measurement_quantities", "Channel", false},
      {"loop", "/#Test>children", "", false},
      {"nosubmatrix", "/#Campaign>Vehicle.Runs>Runs>Channels", "Sub.Test,Run,Channel", false},
  };
  for (const auto& row : kCases) {
    SCOPED_TRACE(row.file);
    const auto config = Load(row.file);
    EXPECT_EQ(row.chain, Chain(*config));
    EXPECT_EQ(row.dataLevels, Texts(config->GetDataLevelNames()));
    EXPECT_EQ(row.isComplete, config->IsPathComplete());
    EXPECT_EQ(*row.chain ? 1 : 0, config->GetRootCount());
    EXPECT_EQ(0u, config->GetGeneration());
  }
}

TEST_F(BrowseConfig, LevelsKnowTheirPlace) {
  const auto config = Load("campaign");
  constexpr struct {
    const char16_t* name;
    const char* place;  ///< path, path of the parent, of the child, and what stands for the level
    SymbolKey key;
    bool isDataLevel, isInPath;
  } kLevels[] = {
      {u"Campaign", "/#Campaign||Vehicle.Runs|Title", -1, false, true},
      {u"Sub.Test", "Vehicle.Runs|Campaign|Runs|Name", -2, true, true},
      {u"Run", "Runs|Test|Channels|Name", -3, true, true},
      {u"Channel", "Channels|Owner||Name", -4, true, true},
      {u"Matrix", "/#Matrix|measurement|Columns|Name", -6, true, false},
      {u"Column", "Columns|Matrix||Name", -7, true, false},
  };
  for (const auto& row : kLevels) {
    SCOPED_TRACE(row.place);
    const auto level = Level(*config, row.name);
    ASSERT_TRUE(level);
    EXPECT_EQ(row.place, Text(*level, &IBrowseConfigEntity::GetPath) + "|" +
                             Text(*level, &IBrowseConfigEntity::GetParentPath) + "|" +
                             Text(*level, &IBrowseConfigEntity::GetFirstChildPath) + "|" +
                             Text(*level, &IBrowseConfigEntity::GetRepresentedBy));
    EXPECT_EQ(row.key, level->GetSymbolKey());
    EXPECT_EQ(-row.key, level->GetSymbolIndex());
    EXPECT_EQ(row.isDataLevel, level->IsDataLevel());
    EXPECT_EQ(row.isDataLevel, config->IsDataLevelByName(row.name));
    EXPECT_EQ(row.isInPath, config->IsEntityInPathByName(row.name));
  }
  EXPECT_FALSE(config->IsEntityInPathByName(u"aomeasurement"));
  EXPECT_FALSE(config->IsEntityInPathByName(u"run"));
  EXPECT_FALSE(config->GetEntityByName(u"Nothing"));
  const auto run = Level(*config, u"Run");
  EXPECT_TRUE(run->IsBaseType(u"aomeasurement"));
  for (const auto* other : {u"aotest", u"nonsense"}) EXPECT_FALSE(run->IsBaseType(other));
  EXPECT_TRUE(Level(*config, u"Campaign")->IsDescendantByName(u"Channel"));
  for (const auto* other : {u"Campaign", u"Run", u"Matrix"}) {
    EXPECT_FALSE(run->IsDescendantByName(other));
  }
}

TEST_F(BrowseConfig, CursorsForPathsAndEntitiesAreIndependent) {
  const auto config = Load("campaign");
  EXPECT_EQ("/#Campaign", Text(*config, &IBrowseConfig::GetFirstRootPath));
  EXPECT_TRUE(Ref<IBrowseConfigEntity>::Adopt(config->GetFirstRoot()));
  EXPECT_EQ("", Text(*config, &IBrowseConfig::GetNextRootPath));
  EXPECT_FALSE(config->GetNextRoot());
  EXPECT_FALSE(config->GetNextRoot());
  EXPECT_EQ("/#Campaign", Text(*config, &IBrowseConfig::GetFirstRootPath));
  EXPECT_EQ(E_NOTIMPL, config->Reserved(nullptr));
}

TEST_F(BrowseConfig, WhoeverLetsGoLastFreesEverything) {
  const auto store = Open("campaign");
  {
    // The level keeps the configuration.
    auto level = Level(*Load(*store), u"Run");
    EXPECT_EQ(3, level->GetSymbolIndex());
    const auto parent = Ref<IBrowseConfigEntity>::Adopt(level->GetParent());
    level.Reset();
    EXPECT_EQ("Sub.Test", Text(*parent, &IBrowseConfigEntity::GetEntityName));
    EXPECT_EQ(2, parent->GetSymbolIndex());
  }
  {
    // A level let go first leaves the configuration alone.
    const auto config = Load(*store);
    Level(*config, u"Run").Reset();
    EXPECT_TRUE(config->IsUnreferenced());
    const auto run = Level(*config, u"Run");
    EXPECT_FALSE(config->IsUnreferenced());
    config->ReleaseIfUnreferenced();
    EXPECT_EQ(1, config->GetRootCount());
    // A level that outlives its place knows nothing any more.
    config->Clear();
    EXPECT_EQ(0, run->GetSymbolIndex());
    EXPECT_FALSE(run->GetParent());
    EXPECT_EQ(E_POINTER, run->RemoveFirstChild());
    std::int32_t count = -1;
    EXPECT_EQ(S_OK, config->GetSymbolCount(&count));
    EXPECT_EQ(0, count);
    EXPECT_TRUE(Ref<IModel>::Adopt(config->GetModel()));
  }
}

TEST_F(BrowseConfig, RemovingShortensThePathFromItsEnd) {
  const auto config = Load("campaign");
  const auto test = Level(*config, u"Sub.Test");
  EXPECT_EQ(S_OK, test->RemoveFirstChild());
  EXPECT_EQ("/#Campaign>Vehicle.Runs", Chain(*config));
  EXPECT_FALSE(config->IsPathComplete());
  EXPECT_FALSE(config->GetEntityByName(u"Matrix"));
  EXPECT_EQ("", Texts(config->GetDataLevelNames()));
  EXPECT_EQ(symbol::kLevel, test->GetSymbolKey());

  Ref<IBrowseConfigEntity> child;
  EXPECT_EQ(E_INVALIDARG, test->AddChild(u"Nothing", child.Put()));
  EXPECT_EQ(S_OK, test->AddChild(u"Runs", child.Put()));
  EXPECT_EQ("/#Campaign>Vehicle.Runs>Runs>Channels", Chain(*config));
  EXPECT_TRUE(config->IsPathComplete());
  EXPECT_EQ(symbol::kDataLevel, test->GetSymbolKey());
  EXPECT_TRUE(Level(*config, u"Column"));
  EXPECT_EQ(E_POINTER, config->RemoveEntity(nullptr));

  const auto customer = MakeRef<SymbolImage>("c", "x");
  EXPECT_EQ(S_OK, config->AddCustomerSymbolAuto(customer.Get()));
  test->SetSymbolKey(1);
  EXPECT_TRUE(config->IsSymbolUsed(8, nullptr));
  EXPECT_FALSE(config->IsSymbolUsed(8, test.Get()));
  EXPECT_EQ(S_OK, test->RemoveFirstChild());
  EXPECT_EQ(1, test->GetSymbolKey());
}

TEST_F(BrowseConfig, ALevelAloneCanBeTakenOutOfItsPath) {
  auto config = Load("campaign");
  const auto root = Level(*config, u"Campaign");
  CDataStoreBrowseConfigImpl& plain = *config;
  config.Reset();
  // The configuration lives by this level alone, and goes with the call.
  EXPECT_EQ(S_OK, plain.RemoveEntity(root.Get()));
  EXPECT_EQ(0, root->GetSymbolIndex());
}

TEST_F(BrowseConfig, SymbolsOfLevelsAreCheckedAndRepaired) {
  const auto config = Load("campaign");
  EXPECT_FALSE(config->HasInvalidSymbols());
  const auto run = Level(*config, u"Run");
  run->SetSymbolKey(77);
  EXPECT_EQ(0, run->GetSymbolIndex());
  EXPECT_TRUE(config->HasInvalidSymbols());
  EXPECT_EQ(S_OK, config->ReplaceInvalidSymbols());
  EXPECT_EQ(symbol::kMeasurement, run->GetSymbolKey());
  EXPECT_TRUE(run->IsDefaultSymbol());
  Level(*config, u"Column")->SetSymbolKey(-1);
  EXPECT_EQ(S_OK, config->ResetSymbols());
  EXPECT_EQ(symbol::kLocalColumn, Level(*config, u"Column")->GetSymbolKey());
}

TEST_F(BrowseConfig, LoadChecksItsArguments) {
  const auto store = Open("campaign");
  const auto config = MakeRef<CDataStoreBrowseConfigImpl>();
  EXPECT_EQ(E_POINTER, config->Load(nullptr, {}));
  EXPECT_EQ(VEX_E_BAD_FILE, config->Load(store.Get(), u"/nowhere/at.tbs"));
  EXPECT_EQ(E_INVALIDARG, config->LoadFromStream(store.Get(), {}));
  EXPECT_EQ(E_POINTER, config->InitModel(nullptr));
  const auto model = Ref<IModel>::Adopt(store->GetModel());
  EXPECT_EQ(E_POINTER, config->SetSingleRoot(nullptr, u"Run"));
  EXPECT_EQ(E_INVALIDARG, config->SetSingleRoot(model.Get(), u"Nothing"));
  EXPECT_EQ(S_OK, config->SetSingleRoot(model.Get(), u"Run"));
  EXPECT_EQ("/#Run", Chain(*config));
  EXPECT_EQ(S_OK, config->SetSingleRoot(model.Get(), u"Campaign"));
  EXPECT_EQ("/#Campaign", Chain(*config));
  Ref<IBrowseConfig> out;
  EXPECT_EQ(E_POINTER, LoadDefaultBrowseConfig(store.Get(), nullptr));
  EXPECT_EQ(E_POINTER, LoadDefaultBrowseConfig(nullptr, out.Put()));
  EXPECT_EQ(VEX_E_BAD_FILE, LoadBrowseConfigFile({}, store.Get(), out.Put()));
  EXPECT_FALSE(out);
}

class Columns final : public IDefaultColumns {
 public:
  Result Add(std::u16string_view entity, std::u16string_view property, IUnknown** column) override {
    text += cor::ToUtf8(entity) + "." + cor::ToUtf8(property) + " ";
    if (code == S_OK) *column = MakeRef<StringList>().Detach();
    return code;
  }
  std::string text;
  Result code = S_OK;
};

TEST_F(BrowseConfig, DataLevelsSuggestColumns) {
  const auto config = Load("campaign");
  Columns columns;
  const auto campaign = Level(*config, u"Campaign");
  EXPECT_EQ(S_OK, campaign->AddDefaultColumns(&columns));
  EXPECT_EQ("", columns.text);
  campaign->SetDataLevel(true);
  EXPECT_EQ("Sub.Test,Run,Channel,Campaign", Texts(config->GetDataLevelNames()));
  EXPECT_EQ(S_OK, campaign->AddDefaultColumns(&columns));
  EXPECT_EQ("Campaign.id Campaign.description ", columns.text);
  for (const Result code : {E_OUTOFMEMORY, E_FAIL, S_FALSE}) {  // S_FALSE: but no column
    columns.code = code;
    EXPECT_EQ(code == E_OUTOFMEMORY ? code : E_UNEXPECTED, campaign->AddDefaultColumns(&columns));
  }
  EXPECT_EQ(E_POINTER, campaign->AddDefaultColumns(nullptr));
}

TEST_F(BrowseConfig, ConfigurationStoreMayTellAForest) {
  const auto config = MakeRef<CDataStoreBrowseConfigImpl>();
  config->SetConfigStore(Open("config"));
  EXPECT_EQ(S_OK, config->Load(Open("campaign").Get(), {}));
  EXPECT_EQ(2, config->GetRootCount());
  EXPECT_EQ("/#Campaign>Vehicle.Runs", Chain(*config));
  for (const auto& [level, shown] :
       {std::pair{u"Campaign", "Note"}, {u"Sub.Test", "Name"}, {u"Channel", "Id"}}) {
    EXPECT_EQ(shown, Text(*Level(*config, level), &IBrowseConfigEntity::GetRepresentedBy));
  }
}

}  // namespace
}  // namespace hv::vex
