// tests/store/session/BrowseSettingsTest.cpp - the browse settings of a session.
#include <storefabric/IBrowseConfig.h>
#include <storefabric/IBrowseSettings.h>

#include "SessionFixture.h"
#include "browse/BrowseConfigImpl.h"

namespace hv::vex {
namespace {

using test::Eval;
using test::Get;
using test::NamesOf;
using test::Obj;
using test::Put;
using test::Txt;

class BrowseSettings : public test::CampaignTest {
 protected:
  static Ref<CDataStoreBrowseConfigImpl> ConfigOf(const Ref<IDispatch>& settings) {
    const auto config = Get(settings.Get(), u"GetVexBrowseConfig").value;
    EXPECT_TRUE(config.Is(VT_UNKNOWN));
    return OwnBrowseConfig(QueryRef<IBrowseConfig>(config.AsUnknown()).Get());
  }
  static std::string Root(IDispatch* session) {
    return Eval(session, "BrowseSettings.RootEntity.EntityType.Name").Shown();
  }
};

TEST_P(BrowseSettings, LeadFromElementToElement) {
  const Ref<IDispatch> settings = Object("BrowseSettings");
  const Ref<IDispatch> root = Object("RootElements(0)");
  const Ref<IDispatch> run = Object("GetElementByKey('Run:4')");
  const Ref<IDispatch> channel = Ref<IDispatch>::Share(
      Get(Get(run.Get(), u"Children").Object(), u"Add", Txt(u"Speed")).Object());
  const Ref<IDispatch> matrix = Object("CreateElement('Matrix','m')");
  EXPECT_EQ("no object", Get(settings.Get(), u"GetParent", Obj(root)).Shown());
  EXPECT_EQ("Day 1", Eval(Get(settings.Get(), u"GetParent", Obj(run)).Object(), "Name").Shown());
  EXPECT_EQ("Day 1", NamesOf(Get(settings.Get(), u"GetChildren", Obj(root)).Object()));
  EXPECT_EQ("Speed", NamesOf(Get(settings.Get(), u"GetChildren", Obj(run)).Object()));
  EXPECT_EQ("no object", Get(settings.Get(), u"GetChildren", Obj(channel)).Shown());
  EXPECT_EQ(
      "Run",
      Eval(Get(settings.Get(), u"GetBrowseEntity", Obj(run)).Object(), "EntityType.Name").Shown());
  // Off the path that users see, the implicit branch still leads on; what isn't in either has no
  // place.
  EXPECT_EQ("object", Get(settings.Get(), u"GetBrowseEntity", Obj(matrix)).Shown());
  EXPECT_EQ(
      S_OK,
      ConfigOf(settings)->RemoveEntity(
          Ref<IBrowseConfigEntity>::Adopt(ConfigOf(settings)->GetEntityByName(u"Run")).Get()));
  EXPECT_EQ("no object", Get(settings.Get(), u"GetBrowseEntity", Obj(run)).Shown());
  EXPECT_EQ("222", Get(settings.Get(), u"GetParent", Obj(run)).Shown().substr(0, 3));
  EXPECT_EQ("222", Get(settings.Get(), u"GetChildren", Obj(run)).Shown().substr(0, 3));
}

TEST_P(BrowseSettings, CopiesHaveNoEffectUntilTheyAreSet) {
  const Ref<IDispatch> first = Object("BrowseSettings");
  const Ref<IDispatch> second = Object("GetBrowseSettings");
  const Ref<IDispatch> live = Object("GetBrowseSettingsInternal");
  const Ref<IDispatch> held = Object("GetElementByKey('Campaign:1')");
  const Ref<IModel> model = Ref<IModel>::Adopt(ConfigOf(first)->GetModel());
  ASSERT_EQ(S_OK, ConfigOf(first)->SetSingleRoot(model.Get(), u"Sub.Test"));
  EXPECT_EQ("Campaign", Root(m_store.Get()));
  EXPECT_EQ("Cold start Warm start", NamesOf(Object("RootElements").Get()));
  EXPECT_EQ(compare::kEqual, ConfigOf(second)->CompareWith(ConfigOf(live).Get()));

  EXPECT_EQ("empty", Put(m_store.Get(), u"BrowseSettings", Obj(first)).Shown());
  EXPECT_EQ("Sub.Test", Root(m_store.Get()));
  EXPECT_EQ("Sub.Test", Eval(live.Get(), "RootEntity.EntityType.Name").Shown());
  EXPECT_EQ("Day 1", NamesOf(Object("RootElements").Get()));
  EXPECT_EQ("empty", Get(held.Get(), u"Refresh").Shown());
  EXPECT_EQ("370 The element must be in the browse path.", Get(held.Get(), u"Children").Shown());
  // A new top element joins the collection that shows the top now.
  EXPECT_EQ("Sub.Test", Eval(m_store.Get(), "CreateElement('Sub.Test','Day 2').Type").Shown());
  EXPECT_EQ("Campaign", Eval(m_store.Get(), "CreateElement('Campaign','Dust').Type").Shown());
  EXPECT_EQ("Day 1 Day 2", NamesOf(Object("RootElements").Get()));

  EXPECT_EQ("empty", Put(m_store.Get(), u"BrowseSettings", Obj(second)).Shown());
  EXPECT_EQ("Cold start Warm start Dust", NamesOf(Object("RootElements").Get()));
  EXPECT_EQ("empty", Get(held.Get(), u"Refresh").Shown());
  EXPECT_EQ("Day 1", NamesOf(Get(held.Get(), u"Children").Object()));
}

TEST_P(BrowseSettings, TheLiveOnesNullAndUnfitOnesChangeNothing) {
  const Ref<IDispatch> live = Object("GetBrowseSettingsInternal");
  const std::uint64_t stamp = ConfigOf(live)->GetGeneration();
  EXPECT_EQ("empty", Put(m_store.Get(), u"BrowseSettings", Obj(live)).Shown());
  EXPECT_EQ("empty", Put(m_store.Get(), u"BrowseSettings", Variant::Null()).Shown());
  const Ref<IDataStore> other = Open("bench");
  EXPECT_EQ("371", Put(m_store.Get(), u"BrowseSettings",
                       Obj(Ref<IDispatch>::Share(Eval(other.Get(), "BrowseSettings").Object())))
                       .Shown()
                       .substr(0, 3));
  EXPECT_EQ(stamp, ConfigOf(live)->GetGeneration());
  EXPECT_EQ("Campaign", Root(m_store.Get()));
}

TEST_P(BrowseSettings, ThoseOfAnotherStoreAreTranslated) {
  const Ref<IDataStore> other = Open("translated");
  EXPECT_EQ("empty", Put(other.Get(), u"BrowseSettings", Obj(Object("BrowseSettings"))).Shown());
  EXPECT_EQ("Campaign", Root(other.Get()));
  const auto taken = Ref<IDispatch>::Share(Eval(other.Get(), "BrowseSettings").Object());
  EXPECT_EQ(Ref<IModel>::Adopt(CoreOf(*other.Get())->GetModel()),
            Ref<IModel>::Adopt(ConfigOf(taken)->GetModel()));
}

TEST_P(BrowseSettings, StoreWithoutAPathHasNoTop) {
  m_store = Open("notest");
  EXPECT_EQ("250 Unknown error.", Ask("RootElements"));
  EXPECT_EQ("no object", Ask("BrowseSettings.RootEntity"));
  EXPECT_EQ("0", Ask("BrowseSettings.RootElements.Count"));
  EXPECT_EQ("a", Ask("CreateElement('Thing','a').Name"));
  EXPECT_EQ("no object", Get(Object("BrowseSettings").Get(), u"GetBrowseEntity",
                             Obj(Object("GetElementList('Thing','a').Item(0)")))
                             .Shown());
}

TEST_P(BrowseSettings, OutliveTheirSession) {
  const Ref<IDispatch> settings = Object("BrowseSettings");
  const Ref<IDispatch> level = Object("BrowseSettings.RootEntity.ChildEntity");
  m_store.Reset();
  EXPECT_EQ("Cold start Warm start", NamesOf(Get(settings.Get(), u"RootElements").Object()));
  EXPECT_EQ("Sub.Test", Eval(level.Get(), "EntityType.Name").Shown());
}

HV_BOTH_KINDS(BrowseSettings);

}  // namespace
}  // namespace hv::vex
