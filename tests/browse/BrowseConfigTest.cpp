// tests/browse/BrowseConfigTest.cpp - the path of a store, its levels, and who keeps them alive.
#include "tests/browse/BrowseFixture.h"

namespace hv::vex {
namespace {

class BrowseConfig : public BrowseTest {};

struct PathCase {
  const char* file;
  const char* chain;
  const char* dataLevels;
  bool isComplete;
};

TEST_F(BrowseConfig, DefaultPathFollowsTheModel) {
  const PathCase kCases[] = {
      {"campaign", "/#Campaign>Vehicle.Runs>Runs>Channels", "Sub.Test,Run,Channel", true},
      {"notest", "", "", false},
      {"nochildren", "/#Test", "", false},
      {"selfref", "/#Test>measurement_quantities", "Channel", false},
      {"loop", "/#Test>children", "", false},
      {"nosubmatrix", "/#Campaign>Vehicle.Runs>Runs>Channels", "Sub.Test,Run,Channel", false},
  };
  for (const PathCase& row : kCases) {
    SCOPED_TRACE(row.file);
    const auto config = Load(row.file);
    EXPECT_EQ(row.chain, Chain(*config));
    EXPECT_EQ(row.dataLevels, Texts(config->GetDataLevelNames()));
    EXPECT_EQ(row.isComplete, config->IsPathComplete());
    EXPECT_EQ(*row.chain ? 1 : 0, config->GetRootCount());
    EXPECT_EQ(0u, config->GetGeneration());
  }
}

struct LevelCase {
  const char16_t* name;
  const char16_t* path;
  const char16_t* parentPath;
  const char16_t* childPath;
  const char16_t* representedBy;
  SymbolKey key;
  bool isDataLevel;
  bool isInPath;
};

TEST_F(BrowseConfig, LevelsKnowTheirPlace) {
  const auto config = Load("campaign");
  const LevelCase kLevels[] = {
      {u"Campaign", u"/#Campaign", u"", u"Vehicle.Runs", u"Title", -1, false, true},
      {u"Sub.Test", u"Vehicle.Runs", u"Campaign", u"Runs", u"Name", -2, true, true},
      {u"Run", u"Runs", u"Test", u"Channels", u"Name", -3, true, true},
      {u"Channel", u"Channels", u"Owner", u"", u"Name", -4, true, true},
      {u"Matrix", u"/#Matrix", u"measurement", u"Columns", u"Name", -6, true, false},
      {u"Column", u"Columns", u"Matrix", u"", u"Name", -7, true, false},
  };
  for (const LevelCase& row : kLevels) {
    const auto level = Level(*config, row.name);
    SCOPED_TRACE(cor::ToUtf8(row.name));
    ASSERT_TRUE(level);
    WString text;
    level->GetPath(text);
    EXPECT_TRUE(text.EqualsExact(row.path)) << cor::ToUtf8(text);
    level->GetParentPath(text);
    EXPECT_TRUE(text.EqualsExact(row.parentPath)) << cor::ToUtf8(text);
    level->GetFirstChildPath(text);
    EXPECT_TRUE(text.EqualsExact(row.childPath)) << cor::ToUtf8(text);
    level->GetRepresentedBy(text);
    EXPECT_TRUE(text.EqualsExact(row.representedBy)) << cor::ToUtf8(text);
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
  EXPECT_FALSE(run->IsBaseType(u"aotest"));
  EXPECT_FALSE(run->IsBaseType(u"nonsense"));
  EXPECT_TRUE(Level(*config, u"Campaign")->IsDescendantByName(u"Channel"));
  EXPECT_FALSE(run->IsDescendantByName(u"Campaign"));
  EXPECT_FALSE(run->IsDescendantByName(u"Run"));
  EXPECT_FALSE(run->IsDescendantByName(u"Matrix"));
}

TEST_F(BrowseConfig, CursorsForPathsAndEntitiesAreIndependent) {
  const auto config = Load("campaign");
  WString path;
  config->GetFirstRootPath(path);
  EXPECT_EQ(u"/#Campaign", path.view());
  EXPECT_TRUE(Ref<IBrowseConfigEntity>::Adopt(config->GetFirstRoot()));
  config->GetNextRootPath(path);
  EXPECT_TRUE(path.empty());
  EXPECT_FALSE(config->GetNextRoot());
  EXPECT_FALSE(config->GetNextRoot());
  config->GetFirstRootPath(path);
  EXPECT_EQ(u"/#Campaign", path.view());
  EXPECT_EQ(E_NOTIMPL, config->Reserved(nullptr));
}

TEST_F(BrowseConfig, WhoeverLetsGoLastFreesEverything) {
  const auto store = Open("campaign");
  {
    // The level keeps the configuration.
    Ref<CDataStoreBrowseConfigEntityImpl> level;
    level = Level(*Load(*store), u"Run");
    EXPECT_EQ(3, level->GetSymbolIndex());
    const auto parent = Ref<IBrowseConfigEntity>::Adopt(level->GetParent());
    level.Reset();
    WString name;
    parent->GetEntityName(name);
    EXPECT_EQ(u"Sub.Test", name.view());
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
  EXPECT_EQ(S_OK, Level(*config, u"Campaign")->AddDefaultColumns(&columns));
  EXPECT_EQ("", columns.text);
  const auto campaign = Level(*config, u"Campaign");
  campaign->SetDataLevel(true);
  EXPECT_EQ("Sub.Test,Run,Channel,Campaign", Texts(config->GetDataLevelNames()));
  EXPECT_EQ(S_OK, campaign->AddDefaultColumns(&columns));
  EXPECT_EQ("Campaign.id Campaign.description ", columns.text);
  columns.code = E_OUTOFMEMORY;
  EXPECT_EQ(E_OUTOFMEMORY, campaign->AddDefaultColumns(&columns));
  columns.code = E_FAIL;
  EXPECT_EQ(E_UNEXPECTED, campaign->AddDefaultColumns(&columns));
  columns.code = S_FALSE;  // success without a column
  EXPECT_EQ(E_UNEXPECTED, campaign->AddDefaultColumns(&columns));
  EXPECT_EQ(E_POINTER, campaign->AddDefaultColumns(nullptr));
}

TEST_F(BrowseConfig, ConfigurationStoreMayTellAForest) {
  const auto config = MakeRef<CDataStoreBrowseConfigImpl>();
  config->SetConfigStore(Open("config"));
  EXPECT_EQ(S_OK, config->Load(Open("campaign").Get(), {}));
  EXPECT_EQ(2, config->GetRootCount());
  EXPECT_EQ("/#Campaign>Vehicle.Runs", Chain(*config));
  WString text;
  Level(*config, u"Campaign")->GetRepresentedBy(text);
  EXPECT_EQ(u"Note", text.view());
  Level(*config, u"Sub.Test")->GetRepresentedBy(text);
  EXPECT_EQ(u"Name", text.view());
  Level(*config, u"Channel")->GetRepresentedBy(text);
  EXPECT_EQ(u"Id", text.view());
}

}  // namespace
}  // namespace hv::vex
