// tests/store/session/SessionTest.cpp - a session and its elements from its opening to its end.
#include <storefabric/IBrowseSettings.h>
#include <storefabric/IDataStoreContext.h>
#include <storefabric/IDataStoreModel.h>
#include <storefabric/ISVEXQuery.h>

#include <algorithm>

#include "store/session/DataStoreImpl.h"
#include "tests/store/CampaignFixture.h"

namespace hv::vex {
namespace {

using WholeSession = test::CampaignTest;
HV_BOTH_KINDS(WholeSession);

TEST_P(WholeSession, AnswersAScript) {
  Expect({{"NAME", "campaign"},
          {"PluginName", GetParam()},
          {"Parameters", "<filename>" + File("campaign") + "</filename>"},
          {"IsQuerySupported", "1"},
          {"IsModified", "0"},
          {"Model.Entities", "[Campaign|Sub.Test|Run|Channel|Matrix|Column]"},
          {"RootElements", "[Cold start|Warm start]"},
          {"RootElements('Warm start').Type", "Campaign"},
          {"RootElements(0).InstanceKey", "Campaign:1"},
          {"RootElements(0).Parent", "no object"},
          {"RootElements(0).Children(0).Parent", "Cold start"},
          {"RootElements('Cold start').Children('Day 1').Children('Run 2')", "Run 2"},
          {"GetElementByKey('Run:5').Parent.Parent", "Cold start"},
          {"GetElementByKey('Run:5').Children", "[]"},
          {"GetElementList('Run','')", "[Run 1|Run 2]"},
          {"GetElementList('Run','r*2')", "[Run 2]"},
          {"GetElementList('Run','Run _').Count", "2"},
          {"GetElementList('Run','Run ?',0).Count", "2"},
          {"GetElementList('Run','Run ?',null).Count", "2"},
          {"GetElementList('Run','Run ?',5).Count", "2"},
          {"GetElementList('Run','Run _',5).Count", "0"},
          {"GetElementList('Run','nothing').Count", "0"},
          {"GetElementList('Run','Version = b')", "[Run 2]"},
          {"Results.Count", "0"},
          {"Results.MaxCount", "200"},
          {"Results.IsIncomplete", "0"},
          {"BrowseSettings.RootElements", "[Cold start|Warm start]"},
          {"Set level = BrowseSettings.RootEntity", "object"},
          {"level.EntityType", "Campaign"},
          {"level.ParentPath", ""},
          {"level.ParentEntity", "no object"},
          {"level.ChildPath", "Vehicle.Runs"},
          {"level.ChildEntity.ParentPath", "Campaign"},
          {"level.ChildEntity.ParentEntity.EntityType", "Campaign"},
          {"Set leaf = level.ChildEntity.ChildEntity.ChildEntity", "object"},
          {"leaf.EntityType", "Channel"},
          {"leaf.ChildPath", ""},
          {"leaf.ChildEntity", "no object"},
          {"GetBrowseSettingsInternal.RootEntity.EntityType", "Campaign"}});
  const auto second = MakeRef<CDataStoreImpl>();
  Ref<IStore> shared;
  EXPECT_EQ(S_OK, second->OpenByStore(Core().Get()));
  EXPECT_EQ(S_OK, second->GetCoreStore(shared.Put()));
  EXPECT_EQ(Core(), shared) << "the engine's store itself";
}

TEST_P(WholeSession, ModelOutlivesIt) {
  Expect({{"Set model = Model", "object"}});
  m_script.Set("", {});
  m_store.Reset();
  Expect({{"model.Entities.Count", "6"}});
}

// Creating, renaming, deleting and refreshing in every order, with the root elements read before or
// not: they show what is stored, and what is held of a deleted element says so.
TEST_P(WholeSession, ElementsFollowEveryOrderOfChanges) {
  std::string order = "cdrs";
  do {
    for (const bool readBefore : {false, true}) {
      SCOPED_TRACE(order + (readBefore ? ", read before" : ""));
      std::vector<std::string> expected{"Cold start", "Warm start"};
      test::Script script(Open().Get());
      if (readBefore) (void)script.Run("RootElements");
      for (const char step : order) {
        const std::string first = expected.empty() ? "" : expected.front();
        const std::string last = expected.empty() ? "" : expected.back();
        if (step == 'c') {
          script.Expect({{"CreateElement('Campaign','New')", "New"}});
          expected.emplace_back("New");
        } else if (step == 'd') {
          script.Expect({{"Set gone = RootElements('" + first + "')", first},
                         {"DeleteElement(gone)", "empty"}});
          expected.erase(expected.begin());
        } else if (step == 'r') {
          script.Expect({{"Set held = RootElements('" + last + "')", last},
                         {"held.Name = 'Renamed'", "empty"}});
          expected.back() = "Renamed";
        } else {
          script.Expect({{"Refresh", "empty"}});
        }
        std::string names;
        for (const std::string& name : expected) names += (names.empty() ? "" : "|") + name;
        script.Expect({{"RootElements", "[" + names + "]"}});
      }
      script.Expect({{"gone.Name", test::kGone}, {"held.Name", "Renamed"}});
    }
  } while (std::next_permutation(order.begin(), order.end()));
  const auto left = Ref<IInstList>::Adopt(Core()->GetInstances(u"/#Campaign"));
  EXPECT_EQ(2U, left->GetCount()) << "unsaved work goes with its session";
}

TEST_P(WholeSession, SavedWorkIsSeenByOthersAndUnsavedIsNot) {
  const auto other = Open();
  m_script.Set("other", Variant::Object(other.Get()));
  Expect({{"Set day = CreateElement('Campaign','Dust').Children.Add('Day 7')", "Day 7"},
          {"IsModified", "1"},
          {"other.RootElements.Count", "2"},
          {"Save", "empty"},
          {"IsModified", "0"},
          {"other.Refresh", "empty"},
          {"other.RootElements('Dust').Children(0)", "Day 7"},
          {"day.Parent", "Dust"}});
}

TEST_P(WholeSession, NewElementsGetTheirPlace) {
  const auto className = [this](std::string_view line) {
    return cor::ToUtf8(WString(m_script.Object(line)->GetClassName()));
  };
  // Before anybody has asked for the root elements, and after that with a name that exists.
  Expect({{"CreateElement(Model.Entities('Campaign'),'Dust')", "Dust"},
          {"RootElements", "[Cold start|Warm start|Dust]"},
          {"CreateElement('Campaign','Dust')", "Dust_1"},
          {"RootElements('Dust_1').Type", "Campaign"},
          // Outside the path, and with values of its own.
          {"Set column = CreateElement('Column','c')", "c"},
          {"RootElements.Count", "4"},
          {"column.InstanceKey", "Column:1"},
          {"GetElementList('Column','c')", "[c]"}});
  EXPECT_EQ("StoreElementWithBulk", className("column"));
  EXPECT_EQ("StoreElementWithBulk", className("GetElementByKey('Column:1')"));
}

TEST_P(WholeSession, OneElementPerRecordWhileSomebodyHoldsIt) {
  Expect({{"Set first = GetElementByKey('Run:4')", "Run 1"},
          {"RootElements(0).Children(0).Children(0).Name = 'One'", "empty"},
          {"first.Name", "One"},
          {"GetElementList('Run','One')", "[One]"}});
  RenameInstance(u"Run:4", u"Two");  // past the session: remembered until the refresh
  Expect({{"first.Name", "One"}, {"first.Refresh", "empty"}, {"first.Name", "Two"}});
}

/// A data channel as far as a session looks at it.
class Channel final : public cor::Counted<IDispatch> {
 public:
  explicit Channel(Variant key) : m_key(std::move(key)) {}

  Result GetIdOfName(std::u16string_view name, std::int32_t* id) override {
    *id = name == u"InstKey" ? 1 : kDispIdUnknown;
    return *id == 1 ? S_OK : DISP_E_UNKNOWNNAME;
  }
  Result Invoke(std::int32_t, CallKind, std::span<const Variant>, Variant* result,
                ErrorInfo*) override {
    *result = m_key;
    return S_OK;
  }
  std::uint32_t GetMemberCount() override { return 0; }
  Result GetMember(std::uint32_t, MemberInfo*) override { return E_INVALIDARG; }
  std::u16string_view GetClassName() override { return u"Channel"; }

 private:
  Variant m_key;
};

TEST_P(WholeSession, ChannelsAndListsOfTheEngineLeadToElements) {
  EXPECT_EQ("c", Show("CreateElement('Column','c')"));
  const auto find = [this](const Variant& key) {
    m_script.Set("channel", Variant::Object(MakeRef<Channel>(key).Get()));
    return m_script.Run("GetElementByDataChannel(channel)");
  };
  const test::Answer found = find(Variant::Text(u"Column:1"));
  ASSERT_TRUE(found.Object());
  EXPECT_EQ(u"StoreElement", found.Object()->GetClassName()) << "never with its values";
  for (const Variant& none :
       {Variant::Text(u""), Variant::Text(u"Run:4711"), Variant(), Variant::Array({})}) {
    EXPECT_EQ(
        "222 The argument Channel<Data> of the method GetElementByDataChannel must be a Object.",
        find(none).Shown());
  }
  const auto runs = Ref<IInstList>::Adopt(Core()->GetInstances(u"/#Run"));
  (void)Ref<IInstance>::Adopt(runs->Next());  // the list's own cursor doesn't count
  m_script.Set("runs", Variant::Unknown(runs.Get()));
  EXPECT_EQ("[Run 1|Run 2]", Show("CreateElementsByInstList(runs)"));
}

TEST_P(WholeSession, MembersCheckTheirArguments) {
  IDataStore& store = *m_store;
  EXPECT_EQ(E_POINTER, store.get_Name(nullptr));
  EXPECT_EQ(E_POINTER, store.get_PluginName(nullptr));
  EXPECT_EQ(E_POINTER, store.get_Parameters(nullptr));
  EXPECT_EQ(E_POINTER, store.get_Model(nullptr));
  EXPECT_EQ(E_POINTER, store.get_RootElements(nullptr));
  EXPECT_EQ(E_POINTER, store.CreateElement(Variant::Text(u"Run"), u"a", nullptr));
  EXPECT_EQ(E_POINTER, store.GetElementByKey(u"Run:4", nullptr));
  EXPECT_EQ(E_POINTER, store.CreateQuery(nullptr));
  EXPECT_EQ(VEX_E_NOT_STORE_QUERY, store.Search(nullptr));
  EXPECT_EQ(E_UNEXPECTED, store.DeleteElement(nullptr));
  EXPECT_EQ(E_POINTER, store.GetContext(Variant::I4(1), nullptr));
  EXPECT_EQ(E_POINTER, store.IsModified(nullptr));
  EXPECT_EQ(E_POINTER, store.IsQuerySupported(nullptr));
  EXPECT_EQ(E_POINTER, store.GetVexStore(nullptr));
  IStoreElement* element = reinterpret_cast<IStoreElement*>(&store);
  EXPECT_EQ(VEX_E_EMPTY_NAME, store.CreateElement(Variant::Text(u"Run"), u"", &element));
  EXPECT_EQ(nullptr, element);
  element = reinterpret_cast<IStoreElement*>(&store);
  EXPECT_EQ(E_INVALIDARG, store.GetElementByDataChannel(nullptr, &element));
  EXPECT_EQ(nullptr, element);
}

}  // namespace
}  // namespace hv::vex
