// tests/browse/BrowseCopyTest.cpp - copies of configurations, longer paths, and comparisons.
#include "tests/browse/BrowseFixture.h"

namespace hv::vex {
namespace {

class BrowseCopy : public BrowseTest {
 protected:
  static Ref<CDataStoreBrowseConfigImpl> Modelled(IStore& store) {
    auto config = MakeRef<CDataStoreBrowseConfigImpl>();
    EXPECT_EQ(S_OK, config->InitModel(Ref<IModel>::Adopt(store.GetModel()).Get()));
    return config;
  }
  /// References named "Entity/reference".
  static std::vector<Ref<IRelation>> References(IStore& store, std::vector<std::u16string> names) {
    const auto model = Ref<IModel>::Adopt(store.GetModel());
    std::vector<Ref<IRelation>> found;
    for (const std::u16string& name : names) {
      const std::size_t slash = name.find(u'/');
      const auto entity = Ref<IEntity>::Adopt(model->GetEntity(name.substr(0, slash)));
      found.push_back(Ref<IRelation>::Adopt(entity->GetRelationByName(name.substr(slash + 1))));
      EXPECT_TRUE(found.back());
    }
    return found;
  }
  static std::vector<IRelation*> Plain(const std::vector<Ref<IRelation>>& references) {
    std::vector<IRelation*> plain;
    for (const auto& reference : references) plain.push_back(reference.Get());
    return plain;
  }
};

TEST_F(BrowseCopy, TakesAlongWhatWasEdited) {
  const auto store = Open("campaign");
  const auto source = Load(*store);
  EXPECT_EQ(S_OK, source->AddCustomerSymbol(MakeRef<SymbolImage>("c", "x").Get(), 5));
  Level(*source, u"Campaign")->SetSymbolKey(5);
  Level(*source, u"Column")->SetSymbolKey(-1);
  EXPECT_EQ(S_OK, Level(*source, u"Run")->Parts().AddFreeText(u"!", nullptr));
  EXPECT_EQ(S_OK, Level(*source, u"Matrix")->Parts().AddFreeText(u"?", nullptr));

  const auto copy = Load(*Open("campaign").Get());
  EXPECT_EQ(S_OK, CopyBrowseConfig(source.Get(), copy.Get()));
  EXPECT_EQ(1u, copy->GetGeneration());
  EXPECT_EQ(compare::kEqual, source->CompareWith(copy.Get()));
  EXPECT_EQ(compare::kEqual, copy->CompareWith(source.Get()));
  EXPECT_EQ(compare::kEqual, source->CompareChainWith(copy.Get()));
  EXPECT_EQ(Keys(*source), Keys(*copy));
  EXPECT_TRUE(copy->IsPathComplete());
  EXPECT_EQ(Texts(source->GetDataLevelNames()), Texts(copy->GetDataLevelNames()));

  const auto clone = MakeRef<CDataStoreBrowseConfigImpl>();
  EXPECT_EQ(S_OK, clone->CloneFrom(source.Get()));
  EXPECT_EQ(compare::kEqual, source->CompareWith(clone.Get()));
  EXPECT_EQ(Ref<IModel>::Adopt(source->GetModel()), Ref<IModel>::Adopt(clone->GetModel()));
  EXPECT_EQ(S_FALSE, clone->CloneFrom(clone.Get()));
  EXPECT_EQ(1u, clone->GetGeneration());
  EXPECT_EQ("/#Campaign>Vehicle.Runs>Runs>Channels", Chain(*clone));
  // A copy shows that a level stops being a data level as the original does.
  EXPECT_EQ(S_OK, Level(*clone, u"Sub.Test")->RemoveFirstChild());
  EXPECT_EQ(symbol::kLevel, Level(*clone, u"Sub.Test")->GetSymbolKey());
}

TEST_F(BrowseCopy, TranslatesBaseTypesByBaseName) {
  const auto source = Load("campaign");
  const auto copy = Modelled(*Open("translated").Get());
  EXPECT_EQ(S_OK, copy->CopyFrom(source.Get()));
  EXPECT_EQ("/#Campaign>Vehicle.Runs>Runs>Channels", Chain(*copy));
  EXPECT_TRUE(Level(*copy, u"Signal"));
  EXPECT_EQ(symbol::kSubmatrix, Level(*copy, u"Block")->GetSymbolKey());
  EXPECT_TRUE(Level(*copy, u"Array"));
  EXPECT_EQ(compare::kEntityMissing, source->CompareWith(copy.Get()));
}

TEST_F(BrowseCopy, RefusesWhatDoesNotFit) {
  const auto source = Load("campaign");
  struct Case {
    const char* file;
    Result code;
  };
  const Case kCases[] = {{"notest", kMissingBaseType},
                         {"selfref", kModelMismatch},
                         {"othertest", kModelMismatch},
                         {"nosubmatrix", kMissingBaseType}};
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.file);
    EXPECT_EQ(row.code, Modelled(*Open(row.file).Get())->CopyFrom(source.Get()));
  }
  EXPECT_EQ(S_FALSE, source->CopyFrom(source.Get()));
  EXPECT_EQ(0u, source->GetGeneration());
  EXPECT_EQ(E_POINTER, source->CopyFrom(nullptr));
  const auto blank = MakeRef<CDataStoreBrowseConfigImpl>();
  EXPECT_EQ(E_UNEXPECTED, blank->CopyFrom(source.Get()));
  EXPECT_EQ(E_UNEXPECTED, source->CloneFrom(blank.Get()));
  EXPECT_EQ(E_INVALIDARG, CopyBrowseConfig(nullptr, source.Get()));
  // An empty source empties the target.
  EXPECT_EQ(S_OK, source->CopyFrom(Load("notest").Get()));
  EXPECT_EQ(0, source->GetRootCount());
  EXPECT_EQ(0u, source->GetGeneration());
}

TEST_F(BrowseCopy, BuildsAndLengthensPathsByReferences) {
  const auto store = Open("campaign");
  const auto model = Ref<IModel>::Adopt(store->GetModel());
  const auto best = References(*store, {u"Campaign/Best"});
  const auto whole = References(*store, {u"Run/Channels", u"Sub.Test/Runs", u"Campaign/Best"});
  const auto other = References(*store, {u"Sub.Test/Runs", u"Campaign/Vehicle.Runs"});
  const auto elsewhere = References(*store, {u"Run/Channels"});

  const auto config = MakeRef<CDataStoreBrowseConfigImpl>();
  EXPECT_EQ(E_UNEXPECTED, config->InitFromReferences(model.Get(), {}));
  EXPECT_EQ(S_OK, config->InitFromReferences(model.Get(), Plain(best)));
  EXPECT_EQ("/#Campaign>Best", Chain(*config));
  EXPECT_FALSE(config->IsPathComplete());

  const auto longer = Modelled(*store);
  EXPECT_EQ(S_OK, longer->ExtendPath(config.Get(), Plain(whole)));
  EXPECT_EQ("/#Campaign>Best>Runs>Channels", Chain(*longer));
  EXPECT_TRUE(longer->IsPathComplete());
  EXPECT_EQ(symbol::kDataLevel, Level(*longer, u"Sub.Test")->GetSymbolKey());
  EXPECT_TRUE(Level(*longer, u"Matrix"));

  EXPECT_EQ(E_INVALIDARG, Modelled(*store)->ExtendPath(config.Get(), Plain(other)));
  EXPECT_EQ(E_INVALIDARG, Modelled(*store)->ExtendPath(config.Get(), Plain(elsewhere)));
  EXPECT_EQ(E_UNEXPECTED, Modelled(*store)->ExtendPath(config.Get(), {}));
  EXPECT_EQ(E_POINTER, Modelled(*store)->ExtendPath(nullptr, Plain(whole)));
  // The same entities along another reference are another path.
  EXPECT_EQ(compare::kChildPath, longer->CompareWith(Load(*store).Get()));
  EXPECT_EQ(compare::kEqual, longer->CompareChainWith(Load(*store).Get()));
}

TEST_F(BrowseCopy, ComparisonsNameTheFirstDifference) {
  const auto store = Open("campaign");
  struct Case {
    const char* name;
    void (*change)(CDataStoreBrowseConfigImpl& config);
    std::int32_t difference;
    std::int32_t inChain;
  };
  const Case kCases[] = {
      {"Customer",
       [](CDataStoreBrowseConfigImpl& c) {
         (void)c.AddCustomerSymbolAuto(MakeRef<SymbolImage>("c", "x").Get());
       },
       compare::kSymbols, compare::kSymbols},
      {"Cleared", [](CDataStoreBrowseConfigImpl& c) { c.Clear(); }, compare::kStandardSymbols,
       compare::kStandardSymbols},
      {"Symbol", [](CDataStoreBrowseConfigImpl& c) { Level(c, u"Run")->SetSymbolKey(-1); },
       compare::kSymbol, compare::kSymbol},
      {"Parts", [](CDataStoreBrowseConfigImpl& c) { (void)Level(c, u"Run")->Parts().Clear(); },
       compare::kParts, compare::kParts},
      {"PartKind",
       [](CDataStoreBrowseConfigImpl& c) {
         (void)Level(c, u"Run")->Parts().Clear();
         (void)Level(c, u"Run")->Parts().AddFreeText(u"Name", nullptr);
       },
       compare::kPartKind, compare::kPartKind},
      {"Shorter", [](CDataStoreBrowseConfigImpl& c) { (void)Level(c, u"Run")->RemoveFirstChild(); },
       compare::kChildPath, compare::kChildPath},
  };
  const auto config = Load(*store);
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.name);
    const auto other = Load(*store);
    row.change(*other);
    EXPECT_EQ(row.difference, config->CompareWith(other.Get()));
    EXPECT_EQ(row.inChain, config->CompareChainWith(other.Get()));
  }
  EXPECT_EQ(compare::kNull, config->CompareWith(nullptr));
  const auto empty = Load("notest");
  EXPECT_EQ(compare::kNoRoot, empty->CompareWith(config.Get()));
  EXPECT_EQ(compare::kEntityMissing, config->CompareWith(empty.Get()));
  EXPECT_EQ(compare::kLength, config->CompareChainWith(empty.Get()));
}

TEST_F(BrowseCopy, ComparisonsWithRecords) {
  const auto config = Load("campaign");
  EXPECT_EQ(S_OK, Level(*config, u"Run")->Parts().AddFreeText(u"!", nullptr));
  const std::vector<SymbolKey> keys{0, -1, -2, -3, -4, -5, -6, -7};
  const std::vector<ExpectedBrowseEntity> records{
      {u"Campaign", u"/#Campaign", u"", -1, {u"p:Title"}},
      {u"Sub.Test", u"Vehicle.Runs", u"Campaign", -2, {u"p:Name"}},
      {u"Run", u"Runs", u"Test", -3, {u"p:Name", u"t:!"}},
      {u"Channel", u"Channels", u"Owner", -4, {u"p:Name"}},
      {u"Matrix", u"/#Matrix", u"measurement", -6, {u"p:Name"}},
      {u"Column", u"Columns", u"Matrix", -7, {u"p:Name"}}};
  EXPECT_EQ(compare::kEqual, config->CompareWithExpected(keys, records));
  EXPECT_EQ(compare::kSymbols, config->CompareWithExpected({}, records));
  struct Case {
    void (*change)(std::vector<ExpectedBrowseEntity>& records);
    std::int32_t difference;
  };
  const Case kCases[] = {
      {[](auto& r) { r[1].entityName = u"Run"; }, compare::kEntityMissing},
      {[](auto& r) { r.insert(r.begin() + 4, r[3]); }, compare::kEntityMissing},
      {[](auto& r) { r[2].parentPath = u"x"; }, compare::kParentPath},
      {[](auto& r) { r[2].path = u"x"; }, compare::kPath},
      {[](auto& r) { r[5].symbolKey = 1; }, compare::kSymbol},
      {[](auto& r) { r[2].parts[1] = u"t:?"; }, compare::kParts},
      {[](auto& r) { r[2].parts[1] = u"p:!"; }, compare::kPartKind},
      {[](auto& r) { r[2].parts.pop_back(); }, compare::kParts},
      {[](auto& r) { r[4].entityName = u"Nothing"; }, compare::kBranchMissing},
      {[](auto& r) { r.erase(r.begin() + 3); }, compare::kLength},
  };
  for (const Case& row : kCases) {
    SCOPED_TRACE(row.difference);
    auto changed = records;
    row.change(changed);
    EXPECT_EQ(row.difference, config->CompareWithExpected(keys, changed));
  }
}

}  // namespace
}  // namespace hv::vex
