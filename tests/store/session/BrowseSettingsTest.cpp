// tests/store/session/BrowseSettingsTest.cpp - the browse settings of a session.
#include <storefabric/IBrowseConfig.h>

#include "browse/BrowseConfigImpl.h"
#include "tests/store/CampaignFixture.h"

namespace hv::vex {
namespace {

using test::kUnknown;

class BrowseSettings : public test::CampaignTest {
 protected:
  /// The configuration behind the settings of a line.
  Ref<CDataStoreBrowseConfigImpl> ConfigOf(const std::string& settings) {
    const Variant config = m_script.Run(settings + ".GetVexBrowseConfig").value;
    EXPECT_TRUE(config.Is(VT_UNKNOWN));
    return OwnBrowseConfig(QueryRef<IBrowseConfig>(config.AsUnknown()).Get());
  }
};
HV_BOTH_KINDS(BrowseSettings);

TEST_P(BrowseSettings, LeadFromElementToElement) {
  Expect({{"Set settings = BrowseSettings", "object"},
          {"Set root = RootElements(0)", "Cold start"},
          {"Set run = GetElementByKey('Run:4')", "Run 1"},
          {"Set channel = run.Children.Add('Speed')", "Speed"},
          {"settings.GetParent(root)", "no object"},
          {"settings.GetParent(run)", "Day 1"},
          {"settings.GetChildren(root)", "[Day 1]"},
          {"settings.GetChildren(run)", "[Speed]"},
          {"settings.GetChildren(channel)", "no object"},
          {"settings.GetBrowseEntity(run).EntityType", "Run"},
          // Off the path that users see, the implicit branch still leads on; what isn't in either
          // has no place.
          {"settings.GetBrowseEntity(CreateElement('Matrix','m')).EntityType", "Matrix"}});
  const auto config = ConfigOf("settings");
  EXPECT_EQ(S_OK, config->RemoveEntity(
                      Ref<IBrowseConfigEntity>::Adopt(config->GetEntityByName(u"Run")).Get()));
  Expect({{"settings.GetBrowseEntity(run)", "no object"},
          {"settings.GetParent(run)",
           "222 The argument Element<DataStore> of the method GetParent must be a Element."},
          {"settings.GetChildren(run)",
           "222 The argument Element<DataStore> of the method GetChildren must be a Element."}});
}

TEST_P(BrowseSettings, CopiesHaveNoEffectUntilTheyAreSet) {
  Expect({{"Set first = BrowseSettings", "object"},
          {"Set second = GetBrowseSettings", "object"},
          {"Set live = GetBrowseSettingsInternal", "object"},
          {"Set held = GetElementByKey('Campaign:1')", "Cold start"}});
  const auto model = Ref<IModel>::Adopt(ConfigOf("first")->GetModel());
  ASSERT_EQ(S_OK, ConfigOf("first")->SetSingleRoot(model.Get(), u"Sub.Test"));
  EXPECT_EQ(compare::kEqual, ConfigOf("second")->CompareWith(ConfigOf("live").Get()));
  Expect({{"BrowseSettings.RootEntity.EntityType", "Campaign"},
          {"RootElements", "[Cold start|Warm start]"},
          {"BrowseSettings = first", "empty"},
          {"BrowseSettings.RootEntity.EntityType", "Sub.Test"},
          {"live.RootEntity.EntityType", "Sub.Test"},
          {"RootElements", "[Day 1]"},
          {"held.Refresh", "empty"},
          {"held.Children", "370 The element must be in the browse path."},
          // A new top element joins the collection that shows the top now.
          {"CreateElement('Sub.Test','Day 2').Type", "Sub.Test"},
          {"CreateElement('Campaign','Dust').Type", "Campaign"},
          {"RootElements", "[Day 1|Day 2]"},
          {"BrowseSettings = second", "empty"},
          {"RootElements", "[Cold start|Warm start|Dust]"},
          {"held.Refresh", "empty"},
          {"held.Children", "[Day 1]"}});
}

TEST_P(BrowseSettings, TheLiveOnesNullAndUnfitOnesChangeNothing) {
  EXPECT_EQ("object", Show("Set live = GetBrowseSettingsInternal"));
  const std::uint64_t stamp = ConfigOf("live")->GetGeneration();
  m_script.Set("other", Variant::Object(Open("store/bench").Get()));
  Expect({{"BrowseSettings = live", "empty"},
          {"BrowseSettings = null", "empty"},
          {"BrowseSettings = other.BrowseSettings",
           "371 The browse path does not match the model of the data store."},
          {"BrowseSettings.RootEntity.EntityType", "Campaign"}});
  EXPECT_EQ(S_OK, m_store->SetBrowseSettings(nullptr));
  EXPECT_EQ(stamp, ConfigOf("live")->GetGeneration());
}

TEST_P(BrowseSettings, ThoseOfAnotherStoreAreTranslated) {
  const auto other = Open("browse/translated");
  m_script.Set("other", Variant::Object(other.Get()));
  Expect({{"other.BrowseSettings = BrowseSettings", "empty"},
          {"other.BrowseSettings.RootEntity.EntityType", "Campaign"}});
  EXPECT_EQ(Ref<IModel>::Adopt(CoreOf(*other)->GetModel()),
            Ref<IModel>::Adopt(ConfigOf("other.BrowseSettings")->GetModel()));
}

TEST_P(BrowseSettings, StoreWithoutAPathHasNoTop) {
  OpenAgain("browse/notest");
  Expect({{"RootElements", kUnknown},
          {"BrowseSettings.RootEntity", "no object"},
          {"BrowseSettings.RootElements", "[]"},
          {"Set thing = CreateElement('Thing','a')", "a"},
          {"BrowseSettings.GetBrowseEntity(thing)", "no object"}});
}

TEST_P(BrowseSettings, OutliveTheirSession) {
  Expect({{"Set settings = BrowseSettings", "object"},
          {"Set level = settings.RootEntity.ChildEntity", "object"}});
  m_script.Set("", {});
  m_store.Reset();
  Expect({{"settings.RootElements", "[Cold start|Warm start]"}, {"level.EntityType", "Sub.Test"}});
}

}  // namespace
}  // namespace hv::vex
