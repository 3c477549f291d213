// store/elements/ElementsTest.cpp - elements and their provider: what they tell, how long they
// live, and what becomes of them when records, names and browse paths change.
#include "browse/BrowseConfigImpl.h"
#include "browse/SymbolImage.h"
#include "elements/InterfaceFactory.h"
#include "store/core/CoreLibrary.h"
#include "store/elements/DataStoreInterfaceFactory.h"
#include "tests/store/CampaignFixture.h"

namespace hv::vex {
namespace {

using test::kGone;
using test::NoMember;

class Elements : public test::CampaignTest {
 protected:
  Elements() {
    Expect({{"Set campaign = GetElementByKey('Campaign:1')", "Cold start"},
            {"Set day = GetElementByKey('Sub.Test:3')", "Day 1"},
            {"Set run = GetElementByKey('Run:4')", "Run 1"}});
  }
  Ref<CDataStoreBrowseConfigImpl> Config() {
    Ref<IBrowseConfig> config;
    EXPECT_EQ(S_OK, Provider()->GetBrowseConfig(config.Put()));
    return OwnBrowseConfig(config.Get());
  }
  /// Every member that the object of a line lists fails.
  void ExpectGone(std::string_view line) {
    const Ref<IDispatch> object = m_script.Object(line);
    ASSERT_TRUE(object);
    for (std::uint32_t i = 0; i < object->GetMemberCount(); ++i) {
      MemberInfo info;
      ASSERT_EQ(S_OK, object->GetMember(i, &info));
      SCOPED_TRACE(cor::ToUtf8(info.name));
      std::vector<Variant> args(static_cast<std::size_t>(info.argumentCount), Variant::I4(0));
      if (info.name == u"SetValues") args = {Variant::Null()};
      const bool isMethod = Intersects(info.kinds, CallKind::Method);
      const auto read = isMethod ? CallKind::Method : CallKind::Get;
      EXPECT_EQ(kGone, test::Call(object.Get(), info.name, read, args).Shown());
      if (!Intersects(info.kinds, CallKind::Put) || info.name == u"DataType") continue;
      args.push_back(Variant::I4(1));
      EXPECT_EQ(kGone, test::Call(object.Get(), info.name, CallKind::Put, args).Shown());
    }
  }
};
HV_BOTH_KINDS(Elements);

TEST_P(Elements, TellScriptsWhatTheyAre) {
  Expect({{"campaign.Name", "Cold start"},
          {"campaign.DisplayName", "Cold start"},
          {"campaign.Type", "Campaign"},
          {"campaign.DisplayType", "Campaign"},
          {"campaign.InstanceKey", "Campaign:1"},
          {"campaign.Parent", "no object"},
          {"campaign.Path", "245 Path not implemented."},
          {"campaign.TransportDataCollection", "245 TransportDataCollection not implemented."},
          {"campaign.Properties('Count').Value", "7"},
          {"campaign.Children('Day 1').InstanceKey", "Sub.Test:3"},
          {"campaign.IsKindOf('Element<DataStore>')", "1"},
          {"campaign.IsKindOf('StoreElement<WithBulk>')", "0"},
          {"campaign.IsKindOf('Campaign')", "1"},
          {"campaign.IsKindOf('aotest')", "1"},
          {"campaign.IsKindOf('Run')", "0"},
          {"campaign.IsKindOf('Nothing')", "0"},
          {"campaign.IsKindOf('')", "0"},
          {"campaign.Save", "empty"},
          {"day.Parent.Name", "Cold start"},
          {"run.Parent.Parent.InstanceKey", "Campaign:1"},
          {"run.Values(0)", "refused"}});  // no column
  Ref<IUnknown> instance;
  ASSERT_EQ(S_OK, m_script.Object("run").As<IStoreElement>()->get_Instance(instance.Put()));
  EXPECT_EQ(instance, Ref<IUnknown>(Instance(u"Run:4")));
  std::int32_t level = 0;
  WString id;
  ASSERT_EQ(S_OK, Element("run")->GetBrowseLevel(&level));
  EXPECT_EQ(2, level);
  ASSERT_EQ(S_OK, Element("run")->GetIdText(&id));
  EXPECT_EQ(u"4", id.view());
}

TEST_P(Elements, HaveReferencesByNameBaseNameAndPath) {
  Expect({{"Set all = campaign.References", "[Vehicle.Runs|Best]"},
          {"CreateElement('Column','c').References", "[Matrix|Channel]"},
          {"all.Count", "2"},
          {"all(0).Name", "Vehicle.Runs"},
          {"all(0).BaseName", "children"},
          {"all(1).BaseName", ""},
          {"all('children').Name", "Vehicle.Runs"},
          {"all('children').Elements", "[Day 1]"},
          {"all('Best').Elements.Count", "0"},
          {"all('Vehicle.Runs.Runs').Name", "Vehicle.Runs.Runs"},
          {"all('Vehicle.Runs.Runs').BaseName", "children"},
          {"all('Vehicle.Runs.Runs').Elements.Count", "2"},
          {"all('children.children').Elements('Run 2').InstanceKey", "Run:5"},
          {"run.References('test.parent_test').Elements", "[Cold start]"},
          {"all('Title')", NoMember("Title")},
          {"all('Vehicle.Nothing')", NoMember("Vehicle.Nothing")},
          {"all('')", NoMember("")},
          {"all(2)", NoMember("2")},
          {"all(null)", test::kNoKey}});
}

TEST_P(Elements, OutsideTheBrowsePathHaveNoPlace) {
  OpenAgain("browse/columns");
  Expect({{"Set person = GetElementByKey('Person:1')", "Ada"},
          {"person.DisplayName", "Ada"},
          {"person.DisplayType", ""},
          {"person.Children", "370 The element must be in the browse path."},
          {"person.Parent", "245 Parent not implemented."}});
  const auto person = Element("person");
  std::int32_t number = 0;
  Ref<easyImpl::IVEXElementsImpl> children;
  EXPECT_EQ(E_NOTIMPL, person->HasChildren(&number));
  EXPECT_EQ(E_NOTIMPL, person->GetBrowseLevel(&number));
  EXPECT_EQ(E_UNEXPECTED, person->GetChildrenFiltered({}, children.Put()));
}

TEST_P(Elements, AreOneObjectPerRecordWhileSomebodyHoldsThem) {
  Element("run")->SetCachedName(u"remembered");
  EXPECT_EQ(Element("day"), Element("run.Parent"));
  Expect({{"GetElementByKey('Run:4').Name", "remembered"}, {"Set run = null", "null"}});
  EXPECT_EQ("Run 1", Show("GetElementByKey('Run:4').Name")) << "a new object";
  // Elements go on without those who gave them out; the fixture sees to it that all of it goes.
  m_script.Set("", {});
  m_store.Reset();
  Expect({{"day.Children(1).Parent.Parent.InstanceKey", "Campaign:1"}});
}

TEST_P(Elements, FollowRenamesByWhomever) {
  struct Client final : IElementNameClient {
    void OnElementRenamed(IStoreElementImpl&, std::u16string_view oldName,
                          std::u16string_view newName) override {
      heard += cor::ToUtf8(WString(oldName)) + ">" + cor::ToUtf8(WString(newName)) + ";";
    }
    std::string heard;
  } client, other;
  const auto element = Element("run");
  element->SetNameClient(&client);
  Expect({{"run.DisplayName", "Run 1"},
          {"run.Name = ''", test::kNoName},
          {"run.Name = 'a''b'", "empty"}});
  element->DropNameClient(&other);
  EXPECT_EQ("empty", Show("run.Name = 'c'"));
  element->DropNameClient(&client);
  EXPECT_EQ("empty", Show("run.Name = 'd'"));
  EXPECT_EQ("Run 1>a'b;a'b>c;", client.heard + other.heard);
  Expect({{"run.DisplayName", "Run 1"},  // until a refresh
          {"run.Refresh", "empty"},
          {"run.DisplayName", "d"},
          {"run.Properties('Name').Value", "d"},
          {"run.Name = 'e'", "empty"}});
  RenameInstance(u"Run:4", u"f");
  Expect({{"run.Name", "e"}, {"run.Refresh", "empty"}, {"run.Name", "f"}});
  OpenAgain("browse/campaign", "<readonly>yes</readonly>");
  Expect({{"GetElementByKey('Run:4').Name = 'x'", test::kProtected}});
}

TEST_P(Elements, WhoseRecordIsGoneSaySo) {
  Core()->DeleteInstance(Instance(u"Run:4").Get());
  ExpectGone("run");
  Core()->Discard();  // the record is there again
  EXPECT_EQ("Run 1", Show("run.Name"));
  Instance(u"Run:4")->Delete();
  ExpectGone("run");
  Ref<IStoreElementImpl> none;
  EXPECT_EQ(E_INVALIDARG, Provider()->GetElementByKey(u"Run:4", none.Put()));

  OpenAgain("browse/columns");
  Expect({{"Set column = GetElementByKey('Trace.Record:1')", "explicit"}, {"column.Size", "3"}});
  Instance(u"Trace.Record:1")->Delete();
  ExpectGone("column");
}

TEST_P(Elements, SeeWhatOtherSessionsDeletedAfterARefresh) {
  if (!IsDatabase()) return;  // a file's sessions know nothing of each other
  test::Script(Open().Get())
      .Expect({{"DeleteElement(GetElementByKey('Run:4'))", "empty"}, {"Save", "empty"}});
  EXPECT_EQ("empty", Show("Refresh"));
  ExpectGone("run");
}

TEST_P(Elements, OfALevelComeWithTheirNames) {
  // A campaign's display name: its name, a text, a date and a number.
  const auto level = OwnBrowseEntity(
      Ref<IBrowseConfigEntity>::Adopt(Config()->GetEntityByName(u"Campaign")).Get());
  Ref<IRepresentedByPartsImpl> parts;
  ASSERT_EQ(S_OK, level->GetRepresentedByParts(parts.Put()));
  for (const auto name : {u"Start.Date", u"Count"}) {
    const auto attribute = FindAttributeDefinition(level->ModelEntity(), name);
    ASSERT_EQ(S_OK, parts->AddFreeText(u" - ", nullptr));
    ASSERT_EQ(S_OK, parts->AddProperty(attribute.Get(), nullptr));
  }
  const std::string campaigns =
      "Cold start - 20260102030405000000000 - 7|Warm start - 20251231235959123000000 - ";
  const auto provider = Provider();
  const struct {
    std::string_view from;
    std::u16string_view path, filter;
    Result code;
    std::string names;
  } rows[] = {
      {"", u"/#Campaign", u"", S_OK, campaigns},
      {"", u"/##aotest", u"", S_OK, campaigns},
      {"", u"/#Sub.Test", u"", S_OK, "Day 1"},
      {"", u"/#Campaign.Vehicle.Runs.Runs", u"", S_OK, "Run 1|Run 2"},
      {"", u"/#Nothing", u"", E_INVALIDARG, ""},
      {"", u"", u"", E_UNEXPECTED, ""},
      {"day", u"Runs", u"", S_OK, "Run 1|Run 2"},
      {"day", u"children", u"Run 2", S_OK, "Run 2"},
      {"campaign", u"Vehicle.Runs.Runs", u"", S_OK, "Run 1|Run 2"},
      {"day", u"Name", u"", E_INVALIDARG, ""},
      {"day", u"", u"", E_UNEXPECTED, ""},
      {"day", u"Runs", u"<nonsense", E_FAIL, ""},
  };
  const auto query = Core().As<IStoreQuery>();
  for (const auto& row : rows) {
    SCOPED_TRACE(cor::ToUtf8(row.path));
    WString filter = row.filter;
    if (row.filter.starts_with(u"Run")) {
      query->BuildQueryText(filter, u"Run", 0, u"Name='" + std::u16string(row.filter) + u"'");
    }
    Ref<IStoreElementListImpl> list;
    ASSERT_EQ(row.code,
              row.from.empty()
                  ? provider->GetChildrenPrefetched(filter, row.path, list.Put())
                  : Element(row.from)->GetChildrenPrefetched(filter, row.path, list.Put()));
    ASSERT_EQ(Failed(row.code), !list);
    std::string names[2];  // as read with the others, and alone
    std::int32_t count = 0;
    if (list) (void)list->GetCount(&count);
    for (std::int32_t i = 0; i < count; ++i) {
      Ref<easyImpl::IVEXElementImpl> element;
      ASSERT_EQ(S_OK, list->GetItem(i, element.Put()));
      for (std::string& all : names) {
        WString name;
        EXPECT_EQ(S_OK, element->GetDisplayName(&name));
        all += (i == 0 ? "" : "|") + cor::ToUtf8(name);
        EXPECT_EQ(S_OK, element->Refresh());
      }
    }
    EXPECT_EQ(row.names, names[0]);
    EXPECT_EQ(row.names, names[1]);
  }
  Ref<IStoreElementListImpl> list;
  Ref<easyImpl::IVEXElementImpl> first;
  ASSERT_EQ(S_OK, provider->GetChildrenPrefetched({}, u"/#Campaign", list.Put()));
  ASSERT_EQ(S_OK, list->GetItem(0, first.Put()));
  EXPECT_EQ(Element("campaign"), first.As<IStoreElementImpl>());
  Ref<easyImpl::IVEXElementsImpl> children;
  Ref<IStoreElements> shown;
  ASSERT_EQ(S_OK, Element("day")->GetChildrenFiltered({}, children.Put()));
  ASSERT_EQ(S_OK, WrapStoreElements(children.Get(), shown.Put()));
  m_script.Set("children", Variant::Object(shown.Get()));
  EXPECT_EQ("[Run 1|Run 2]", Show("children"));
}

TEST_P(Elements, FollowTheBrowsePathWhenTheyAreRefreshed) {
  const std::string noPlace = "370 The element must be in the browse path.";
  const auto shorter = MakeRef<CDataStoreBrowseConfigImpl>();
  const auto model = Ref<IModel>::Adopt(Core()->GetModel());
  ASSERT_EQ(S_OK, shorter->SetSingleRoot(model.Get(), u"Campaign"));
  const auto longer = MakeRef<CDataStoreBrowseConfigImpl>();
  ASSERT_EQ(S_OK, longer->Load(Core().Get(), {}));

  ASSERT_EQ(S_OK, Config()->CopyFrom(shorter.Get()));
  ASSERT_EQ(S_OK, Provider()->ResetBrowseData());
  Expect({{"day.Refresh", "empty"},
          {"day.Children", noPlace},
          {"campaign.Children", "no object"}});  // a leaf now
  ASSERT_EQ(S_OK, Config()->CopyFrom(longer.Get()));
  Expect({{"day.Children", noPlace}, {"day.Refresh", "empty"}, {"day.Children", "[Run 1|Run 2]"}});

  // Turned round, the path makes the child of before the parent. Neither holds the other for good.
  EXPECT_EQ(Element("campaign"), Element("day.Parent"));
  const auto entity = Ref<IEntity>::Adopt(model->GetEntity(u"Sub.Test"));
  const auto upward = Ref<IRelation>::Adopt(entity->GetRelationByName(u"Campaign"));
  const auto turned = MakeRef<CDataStoreBrowseConfigImpl>();
  IRelation* const references[] = {upward.Get()};
  ASSERT_EQ(S_OK, turned->InitFromReferences(model.Get(), references));
  ASSERT_EQ(S_OK, Config()->CopyFrom(turned.Get()));
  EXPECT_EQ("empty", Show("campaign.Refresh"));
  EXPECT_EQ(Element("day"), Element("campaign.Parent"));
}

TEST_P(Elements, AreMadeByAProviderThatKnowsItsStore) {
  const auto provider = Provider();
  WString text;
  WString location;
  EXPECT_EQ(S_OK, provider->GetPluginName(&text));
  EXPECT_EQ(GetParam(), cor::ToUtf8(text));
  EXPECT_EQ(S_OK, provider->GetDisplayLocation(&text, &location));
  EXPECT_EQ(Show("Name"), cor::ToUtf8(text));
  EXPECT_FALSE(location.empty());
  EXPECT_EQ(S_OK, provider->GetParameters(&text));
  EXPECT_EQ(0U, text.view().find(u"<filename>"));
  EXPECT_EQ(E_POINTER, provider->CreateRootElements(nullptr));
  EXPECT_EQ(E_POINTER, provider->GetElement(Instance(u"Run:4").Get(), nullptr));
  Ref<IStoreElementImpl> element;
  EXPECT_EQ(E_POINTER, provider->GetElement(nullptr, element.Put()));
  // There are no configured stores, so no type of store has a picture.
  Ref<ISymbolImage> icon;
  EXPECT_EQ(S_OK, provider->GetIcon(icon.Put()));
  EXPECT_FALSE(icon);

  const auto other = Open();
  m_script.Set("other", Variant::Object(other.Get()));
  const auto foreign = Ref<IInstance>::Adopt(CoreOf(*other)->GetInstance(u"Run:4"));
  EXPECT_TRUE(provider->OwnsInstance(Instance(u"Run:4").Get()));
  EXPECT_FALSE(provider->OwnsInstance(foreign.Get()));
  EXPECT_TRUE(provider->OwnsElement(Element("run").Get()));
  EXPECT_FALSE(provider->OwnsElement(Element("other.GetElementByKey('Run:4')").Get()));
  EXPECT_FALSE(provider->OwnsElement(nullptr));
}

TEST_P(Elements, GoOutInTheWrappersOfTheirKind) {
  const auto className = [](IDispatch* object) {
    return object ? cor::ToUtf8(WString(object->GetClassName())) : "none";
  };
  const auto run = Element("run");
  Ref<IStoreElementsImpl> runs;
  ASSERT_EQ(S_OK,
            MakeReferencedElements(*Provider(), *Instance(u"Sub.Test:3"), u"Runs", runs.Put()));
  Ref<IStoreElementListImpl> list;
  ASSERT_EQ(S_OK, run->CreateElementList(list.Put()));
  for (const auto& [factory, names] :
       {std::pair{Ref<easyImpl::ICvexInterfaceFactory>(MakeRef<easyImpl::CCvexInterfaceFactory>()),
                  "Element none Elements Elements"},
        {MakeRef<CDataStoreInterfaceFactory>(),
         "StoreElement none StoreElements StoreElementList"}}) {
    std::string made;
    for (IStoreElementImpl* const logic : {run.Get(), static_cast<IStoreElementImpl*>(nullptr)}) {
      Ref<IVEXElement> element;
      ASSERT_EQ(S_OK, factory->MakeElement(logic, element.Put()));
      made += className(element.Get()) + " ";
    }
    Ref<IDispatch> members;
    ASSERT_EQ(S_OK, factory->MakeElements(runs.Get(), members.Put()));
    made += className(members.Get()) + " ";
    ASSERT_EQ(S_OK, factory->MakeElements(list.Get(), members.Put()));
    EXPECT_EQ(names, made + className(members.Get()));
  }
}

}  // namespace
}  // namespace hv::vex
