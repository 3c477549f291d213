// tests/store/session/WholeSessionTest.cpp - the elements of a session from its opening to its end.
#include <storefabric/IBrowseConfig.h>
#include <storefabric/IStoreElement.h>

#include <algorithm>

#include "SessionFixture.h"
#include "store/session/ISessionQueries.h"

namespace hv::vex {
namespace {

using test::Answer;
using test::Get;
using test::Index;
using test::NamesOf;
using test::Obj;
using test::Put;
using test::Txt;

class WholeSession : public test::CampaignTest {
 protected:
  static std::string NameOf(const Ref<IDispatch>& element) {
    return Get(element.Get(), u"Name").Shown();
  }
  /// The instances of the entity, read past the session's objects.
  std::size_t Stored(std::u16string_view path) {
    const auto core = CoreOf(*m_store.Get());
    return Ref<IInstList>::Adopt(core->GetInstances(path))->GetCount();
  }
};

struct AskCase {
  const char* expression;
  const char* shown;
};

TEST_P(WholeSession, AnswersAScript) {
  const AskCase kCases[] = {
      {"RootElements.Count", "2"},
      {"RootElements('Warm start').Type", "Campaign"},
      {"RootElements(0).InstanceKey", "Campaign:1"},
      {"RootElements(0).Parent", "no object"},
      {"RootElements(0).Children(0).Parent.Name", "Cold start"},
      {"RootElements('Cold start').Children('Day 1').Children('Run 2').Name", "Run 2"},
      {"GetElementByKey('Run:5').Parent.Parent.Name", "Cold start"},
      {"GetElementByKey('Run:5').Children.Count", "0"},
      {"GetElementList('Run','').Count", "2"},
      {"GetElementList('Run','r*2').Count", "1"},
      {"GetElementList('Run','Run _').Count", "2"},
      {"GetElementList('Run','Run ?',0).Count", "2"},
      {"GetElementList('Run','Run ?',null).Count", "2"},
      {"GetElementList('Run','Run ?',5).Count", "2"},
      {"GetElementList('Run','Run _',5).Count", "0"},
      {"GetElementList('Run','nothing').Count", "0"},
      {"GetElementList('Run','Version = b').Item(0).Name", "Run 2"},
      {"Results.Count", "0"},
      {"Results.MaxCount", "200"},
      {"Results.IsIncomplete", "0"},
      {"BrowseSettings.RootElements.Count", "2"},
      {"BrowseSettings.RootElements.Item(1).Name", "Warm start"},
      {"BrowseSettings.RootEntity.EntityType.Name", "Campaign"},
      {"BrowseSettings.RootEntity.ParentPath", ""},
      {"BrowseSettings.RootEntity.ParentEntity", "no object"},
      {"BrowseSettings.RootEntity.ChildPath", "Vehicle.Runs"},
      {"BrowseSettings.RootEntity.ChildEntity.ParentPath", "Campaign"},
      {"BrowseSettings.RootEntity.ChildEntity.ParentEntity.EntityType.Name", "Campaign"},
      {"BrowseSettings.RootEntity.ChildEntity.ChildEntity.ChildEntity.EntityType.Name", "Channel"},
      {"BrowseSettings.RootEntity.ChildEntity.ChildEntity.ChildEntity.ChildPath", ""},
      {"BrowseSettings.RootEntity.ChildEntity.ChildEntity.ChildEntity.ChildEntity", "no object"},
      {"GetBrowseSettingsInternal.RootEntity.EntityType.Name", "Campaign"},
      {"IsModified", "0"},
  };
  for (const AskCase& row : kCases) EXPECT_EQ(row.shown, Ask(row.expression)) << row.expression;
}

// Creating, renaming, deleting and refreshing in every order, with the root elements read before or
// not: they show what is stored, and what is held of a deleted element says so.
TEST_P(WholeSession, ElementsFollowEveryOrderOfChanges) {
  std::string order = "cdrs";
  const std::vector<std::string> before{"Cold start", "Warm start"};
  do {
    for (const bool readBefore : {false, true}) {
      SCOPED_TRACE(order + (readBefore ? ", read before" : ""));
      std::vector<std::string> expected = before;
      const Ref<IDataStore> session = Open("campaign");
      const auto Root = [&](const std::string& name) {
        const auto all = Ref<IDispatch>::Share(Get(session.Get(), u"RootElements").Object());
        return Ref<IDispatch>::Share(Index(all.Get(), Txt(cor::FromUtf8(name))).Object());
      };
      if (readBefore) {
        EXPECT_TRUE(Root("Cold start"));
      }
      std::vector<Ref<IDispatch>> gone;
      Ref<IDispatch> held;
      for (const char step : order) {
        if (step == 'c') {
          const Answer made = Get(session.Get(), u"CreateElement", Txt(u"Campaign"), Txt(u"New"));
          EXPECT_EQ("New", Get(made.Object(), u"Name").Shown());
          expected.emplace_back("New");
        } else if (step == 'd') {
          gone.push_back(Root(expected.front()));
          EXPECT_EQ("empty", Get(session.Get(), u"DeleteElement", Obj(gone.back())).Shown());
          expected.erase(expected.begin());
        } else if (step == 'r') {
          held = Root(expected.back());
          EXPECT_EQ("empty", Put(held.Get(), u"Name", Txt(u"Renamed")).Shown());
          expected.back() = "Renamed";
        } else {
          EXPECT_EQ("empty", Get(session.Get(), u"Refresh").Shown());
        }
        std::string names;
        for (const std::string& name : expected) names += (names.empty() ? "" : " ") + name;
        EXPECT_EQ(names, NamesOf(Get(session.Get(), u"RootElements").Object())) << step;
      }
      for (const Ref<IDispatch>& element : gone) {
        EXPECT_EQ("323 The object is no longer valid.", NameOf(element));
      }
      EXPECT_EQ("Renamed", NameOf(held));
      // Held longer than its session, whose unsaved work goes with it.
      if (readBefore) gone.clear();
    }
  } while (std::next_permutation(order.begin(), order.end()));
  EXPECT_EQ(2u, Stored(u"/#Campaign"));
}

TEST_P(WholeSession, SavedWorkIsSeenByOthersAndUnsavedIsNot) {
  const Ref<IDispatch> made = Ref<IDispatch>::Share(
      Get(m_store.Get(), u"CreateElement", Txt(u"Campaign"), Txt(u"Dust")).Object());
  const Ref<IDispatch> below = Ref<IDispatch>::Share(
      Get(Get(made.Get(), u"Children").Object(), u"Add", Txt(u"Day 7")).Object());
  EXPECT_EQ("1", Ask("IsModified"));
  const Ref<IDataStore> other = Open("campaign");
  EXPECT_EQ("2", test::Eval(other.Get(), "RootElements.Count").Shown());
  EXPECT_EQ("empty", Ask("Save"));
  EXPECT_EQ("0", Ask("IsModified"));
  EXPECT_EQ("empty", test::Eval(other.Get(), "Refresh").Shown());
  EXPECT_EQ("Day 7", test::Eval(other.Get(), "RootElements('Dust').Children(0).Name").Shown());
  EXPECT_EQ("Dust", test::Eval(below.Get(), "Parent.Name").Shown());
}

TEST_P(WholeSession, NewElementsGetTheirPlace) {
  // Before anybody has asked for the root elements, and after that with a name that exists.
  EXPECT_EQ("Dust", Get(Get(m_store.Get(), u"CreateElement",
                            Obj(Object("Model.Entities('Campaign')")), Txt(u"Dust"))
                            .Object(),
                        u"Name")
                        .Shown());
  EXPECT_EQ("Cold start Warm start Dust", NamesOf(Object("RootElements").Get()));
  EXPECT_EQ(
      "Dust_1",
      Get(Get(m_store.Get(), u"CreateElement", Txt(u"Campaign"), Txt(u"Dust")).Object(), u"Name")
          .Shown());
  EXPECT_EQ("4", Ask("RootElements.Count"));
  EXPECT_EQ("Campaign", Ask("RootElements('Dust_1').Type"));
  // Outside the path, and with values of its own.
  const Ref<IDispatch> column = Ref<IDispatch>::Share(
      Get(m_store.Get(), u"CreateElement", Txt(u"Column"), Txt(u"c")).Object());
  EXPECT_EQ("StoreElementWithBulk", cor::ToUtf8(column->GetClassName()));
  EXPECT_EQ("4", Ask("RootElements.Count"));
  const std::string key = test::Eval(column.Get(), "InstanceKey").Text();
  EXPECT_EQ("StoreElementWithBulk",
            cor::ToUtf8(Object("GetElementByKey('" + key + "')")->GetClassName()));
  EXPECT_EQ("1", Ask("GetElementList('Column','c').Count"));
}

TEST_P(WholeSession, OneElementPerRecordWhileSomebodyHoldsIt) {
  const Ref<IDispatch> first = Object("GetElementByKey('Run:4')");
  EXPECT_EQ(
      "empty",
      Put(Object("RootElements(0).Children(0).Children(0)").Get(), u"Name", Txt(u"One")).Shown());
  EXPECT_EQ("One", NameOf(first));
  EXPECT_EQ("One", Ask("GetElementList('Run','One').Item(0).Name"));
  // Renamed past the session: remembered until the refresh.
  {
    const auto instance = Ref<IInstance>::Adopt(CoreOf(*m_store.Get())->GetInstance(u"Run:4"));
    instance.As<IContainer>()->SetString(u"name", u"Two");
  }
  EXPECT_EQ("One", NameOf(first));
  EXPECT_EQ("empty", Get(first.Get(), u"Refresh").Shown());
  EXPECT_EQ("Two", NameOf(first));
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

TEST_P(WholeSession, ChannelsLeadToTheirElements) {
  const std::string key =
      test::Eval(Get(m_store.Get(), u"CreateElement", Txt(u"Column"), Txt(u"c")).Object(),
                 "InstanceKey")
          .Text();
  const Ref<IDispatch> channel = MakeRef<Channel>(Txt(cor::FromUtf8(key)));
  const Answer found = Get(m_store.Get(), u"GetElementByDataChannel", Obj(channel));
  ASSERT_TRUE(found.Object());
  EXPECT_EQ("StoreElement", cor::ToUtf8(found.Object()->GetClassName())) << "never with its values";
  for (const Variant& none : {Txt(u""), Txt(u"Run:4711"), Variant(), Variant::Array({})}) {
    const Ref<IDispatch> bad = MakeRef<Channel>(none);
    EXPECT_EQ(
        "222 The argument Channel<Data> of the method GetElementByDataChannel must be a Object.",
        Get(m_store.Get(), u"GetElementByDataChannel", Obj(bad)).Shown());
  }
}

TEST_P(WholeSession, ListsOfTheEngineBecomeElements) {
  const auto core = CoreOf(*m_store.Get());
  const Ref<IInstList> runs = Ref<IInstList>::Adopt(core->GetInstances(u"/#Run"));
  (void)Ref<IInstance>::Adopt(runs->Next());  // the list's own cursor doesn't count
  const Answer list = Get(m_store.Get(), u"CreateElementsByInstList", Variant::Unknown(runs.Get()));
  EXPECT_EQ("Run 1 Run 2", NamesOf(list.Object()));
}

/// Queries that are query texts.
class TextQueries final : public ISessionQueries {
 public:
  Result Create(const QueryGround&, IAdvancedQueryImpl** query) override {
    *query = reinterpret_cast<IAdvancedQueryImpl*>(this);
    return code;
  }
  Result WriteText(const QueryGround& ground, IAdvancedQueryImpl&, std::int32_t limit,
                   WString* text) override {
    EXPECT_TRUE(Ref<IBrowseConfigEntity>::Adopt(ground.config.GetFirstRoot()));
    limits.push_back(limit);
    *text = u"<query><entity name=\"Campaign\"><expression limit=\"" +
            cor::FromUtf8(std::to_string(limit + 1)).str() + u"\"></expression></entity></query>";
    return code;
  }
  Result Save(const QueryGround&, IAdvancedQueryImpl&, std::u16string_view) override {
    return code;
  }
  Result Load(const QueryGround&, std::u16string_view, IAdvancedQueryImpl**) override {
    return code;
  }
  Result Wrap(IAdvancedQueryImpl*, ISVEXQuery**) override { return code; }
  Result Unwrap(IDispatch* object, IAdvancedQueryImpl** query) override {
    *query = reinterpret_cast<IAdvancedQueryImpl*>(this);
    return object ? S_OK : VEX_E_NOT_STORE_QUERY;
  }

  Result code = S_OK;
  std::vector<std::int32_t> limits;
};

struct LimitCase {
  int limit;
  const char* count;
  const char* isIncomplete;
};

TEST_P(WholeSession, SearchKeepsAsManyHitsAsTheLimitSays) {
  TextQueries queries;
  InstallSessionQueries(&queries);
  const Variant query = Variant::Object(m_store.Get());  // any object: the queries don't look
  const Ref<IDispatch> results = Object("Results");
  const LimitCase kLimits[] = {{1, "1", "1"}, {2, "2", "0"}, {3, "2", "0"}};
  for (const LimitCase& row : kLimits) {
    SCOPED_TRACE(row.limit);
    EXPECT_EQ("empty", Put(results.Get(), u"MaxCount", Variant::I4(row.limit)).Shown());
    EXPECT_EQ("empty", Get(m_store.Get(), u"Search", query).Shown());
    EXPECT_EQ(row.count, Get(results.Get(), u"Count").Shown());
    EXPECT_EQ(row.isIncomplete, Get(results.Get(), u"IsIncomplete").Shown());
    EXPECT_EQ("Cold start", test::Eval(results.Get(), "Item(0).Name").Shown());
  }
  EXPECT_EQ((std::vector<std::int32_t>{1, 2, 3}), queries.limits);
  // What is refused leaves the hits of the search before.
  queries.code = VEX_E_EMPTY_QUERY;
  EXPECT_EQ("265 Searching with an empty query is not possible.",
            Get(m_store.Get(), u"Search", query).Shown());
  EXPECT_EQ("2", Get(results.Get(), u"Count").Shown());
  InstallSessionQueries(nullptr);
}

HV_BOTH_KINDS(WholeSession);

}  // namespace
}  // namespace hv::vex
