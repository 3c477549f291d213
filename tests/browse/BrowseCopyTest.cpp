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
  struct Way {
    Way(IStore& store, std::initializer_list<std::u16string_view> names) {
      const auto model = Ref<IModel>::Adopt(store.GetModel());
      for (const std::u16string_view name : names) {
        const std::size_t slash = name.find(u'/');
        const auto entity = Ref<IEntity>::Adopt(model->GetEntity(name.substr(0, slash)));
        held.push_back(Ref<IRelation>::Adopt(entity->GetRelationByName(name.substr(slash + 1))));
        EXPECT_TRUE(held.back());
        references.push_back(held.back().Get());
      }
    }
    std::vector<Ref<IRelation>> held;
    std::vector<IRelation*> references;
  };
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
  for (const auto& [file, code] : {std::pair{"notest", kMissingBaseType},
                                   {"selfref", kModelMismatch},
                                   {"othertest", kModelMismatch},
                                   {"nosubmatrix", kMissingBaseType}}) {
    EXPECT_EQ(code, Modelled(*Open(file).Get())->CopyFrom(source.Get())) << file;
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
  const Way best(*store, {u"Campaign/Best"});
  const Way whole(*store, {u"Run/Channels", u"Sub.Test/Runs", u"Campaign/Best"});
  const Way other(*store, {u"Sub.Test/Runs", u"Campaign/Vehicle.Runs"});
  const Way elsewhere(*store, {u"Run/Channels"});

  const auto config = MakeRef<CDataStoreBrowseConfigImpl>();
  EXPECT_EQ(E_UNEXPECTED, config->InitFromReferences(model.Get(), {}));
  EXPECT_EQ(S_OK, config->InitFromReferences(model.Get(), best.references));
  EXPECT_EQ("/#Campaign>Best", Chain(*config));
  EXPECT_FALSE(config->IsPathComplete());

  const auto longer = Modelled(*store);
  EXPECT_EQ(S_OK, longer->ExtendPath(config.Get(), whole.references));
  EXPECT_EQ("/#Campaign>Best>Runs>Channels", Chain(*longer));
  EXPECT_TRUE(longer->IsPathComplete());
  EXPECT_EQ(symbol::kDataLevel, Level(*longer, u"Sub.Test")->GetSymbolKey());
  EXPECT_TRUE(Level(*longer, u"Matrix"));

  EXPECT_EQ(E_INVALIDARG, Modelled(*store)->ExtendPath(config.Get(), other.references));
  EXPECT_EQ(E_INVALIDARG, Modelled(*store)->ExtendPath(config.Get(), elsewhere.references));
  EXPECT_EQ(E_UNEXPECTED, Modelled(*store)->ExtendPath(config.Get(), {}));
  EXPECT_EQ(E_POINTER, Modelled(*store)->ExtendPath(nullptr, whole.references));
  // The same entities along another reference are another path.
  EXPECT_EQ(compare::kChildPath, longer->CompareWith(Load(*store).Get()));
  EXPECT_EQ(compare::kEqual, longer->CompareChainWith(Load(*store).Get()));
}

TEST_F(BrowseCopy, ComparisonsNameTheFirstDifference) {
  using Config = CDataStoreBrowseConfigImpl;
  const auto store = Open("campaign");
  const auto config = Load(*store);
  const auto after = [&](void (*change)(Config & config)) {
    const auto other = Load(*store);
    change(*other);
    const std::int32_t difference = config->CompareWith(other.Get());
    EXPECT_EQ(difference, config->CompareChainWith(other.Get()));
    return difference;
  };
  EXPECT_EQ(compare::kSymbols, after([](Config& c) {
              (void)c.AddCustomerSymbolAuto(MakeRef<SymbolImage>("c", "x").Get());
            }));
  EXPECT_EQ(compare::kStandardSymbols, after([](Config& c) { c.Clear(); }));
  EXPECT_EQ(compare::kSymbol, after([](Config& c) { Level(c, u"Run")->SetSymbolKey(-1); }));
  EXPECT_EQ(compare::kParts, after([](Config& c) { (void)Level(c, u"Run")->Parts().Clear(); }));
  EXPECT_EQ(compare::kPartKind, after([](Config& c) {
              (void)Level(c, u"Run")->Parts().Clear();
              (void)Level(c, u"Run")->Parts().AddFreeText(u"Name", nullptr);
            }));
  EXPECT_EQ(compare::kChildPath,
            after([](Config& c) { (void)Level(c, u"Run")->RemoveFirstChild(); }));
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
  const auto after = [&](void (*change)(std::vector<ExpectedBrowseEntity> & records)) {
    auto changed = records;
    change(changed);
    return config->CompareWithExpected(keys, changed);
  };
  EXPECT_EQ(compare::kEntityMissing, after([](auto& r) { r[1].entityName = u"Run"; }));
  EXPECT_EQ(compare::kEntityMissing, after([](auto& r) { r.insert(r.begin() + 4, r[3]); }));
  EXPECT_EQ(compare::kParentPath, after([](auto& r) { r[2].parentPath = u"x"; }));
  EXPECT_EQ(compare::kPath, after([](auto& r) { r[2].path = u"x"; }));
  EXPECT_EQ(compare::kSymbol, after([](auto& r) { r[5].symbolKey = 1; }));
  EXPECT_EQ(compare::kParts, after([](auto& r) { r[2].parts[1] = u"t:?"; }));
  EXPECT_EQ(compare::kPartKind, after([](auto& r) { r[2].parts[1] = u"p:!"; }));
  EXPECT_EQ(compare::kParts, after([](auto& r) { r[2].parts.pop_back(); }));
  EXPECT_EQ(compare::kBranchMissing, after([](auto& r) { r[4].entityName = u"Nothing"; }));
  EXPECT_EQ(compare::kLength, after([](auto& r) { r.erase(r.begin() + 3); }));
}

}  // namespace
}  // namespace hv::vex
