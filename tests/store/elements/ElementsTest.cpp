// store/elements/ElementsTest.cpp - elements and their provider: what they tell, how long they
// live, and what becomes of them when records, names and browse paths change.
#include "browse/BrowseConfigImpl.h"
#include "browse/SymbolImage.h"
#include "elements/InterfaceFactory.h"
#include "store/elements/DataStoreInterfaceFactory.h"
#include "tests/store/elements/CollectionsFixture.h"

namespace hv::vex {
namespace {

using test::Eval;
using test::Get;
using test::Put;

class Elements : public test::CampaignTest {
 protected:
  static std::string DisplayName(easyImpl::IVEXElementImpl& element) {
    WString name;
    EXPECT_EQ(S_OK, element.GetDisplayName(&name));
    return cor::ToUtf8(name);
  }
  Ref<CDataStoreBrowseConfigImpl> Config() {
    Ref<IBrowseConfig> config;
    EXPECT_EQ(S_OK, m_provider->GetBrowseConfig(config.Put()));
    return OwnBrowseConfig(config.Get());
  }
  /// A campaign's display name: its name, a text, a date and a number.
  void ShowDates() {
    const auto level = OwnBrowseEntity(
        Ref<IBrowseConfigEntity>::Adopt(Config()->GetEntityByName(u"Campaign")).Get());
    Ref<IRepresentedByPartsImpl> parts;
    ASSERT_EQ(S_OK, level->GetRepresentedByParts(parts.Put()));
    for (const auto name : {u"Start.Date", u"Count"}) {
      ASSERT_EQ(S_OK, parts->AddFreeText(u" - ", nullptr));
      ASSERT_EQ(S_OK, parts->AddProperty(FindAttributeDefinition(level->ModelEntity(), name).Get(),
                                         nullptr));
    }
  }
  std::string Ask(std::u16string_view key, std::string_view expression) {
    return Eval(Wrap(Element(key)).Get(), expression).Shown();
  }
};
INSTANTIATE_TEST_SUITE_P(Stores, Elements, ::testing::Values("ATFX", "SQL"), test::NameOfKind);

struct MemberCase {
  std::u16string_view key;
  const char* expression;
  const char* shown;
};

TEST_P(Elements, TellScriptsWhatTheyAre) {
  constexpr MemberCase kRows[] = {
      {u"Campaign:1", "Name", "Cold start"},
      {u"Campaign:1", "DisplayName", "Cold start"},
      {u"Campaign:1", "Type", "Campaign"},
      {u"Campaign:1", "DisplayType", "Campaign"},
      {u"Campaign:1", "InstanceKey", "Campaign:1"},
      {u"Campaign:1", "Instance", "Campaign:1"},
      {u"Campaign:1", "Parent", "no object"},
      {u"Campaign:1", "Path", "245 Path not implemented."},
      {u"Campaign:1", "TransportDataCollection", "245 TransportDataCollection not implemented."},
      {u"Campaign:1", "Properties('Count').Value", "7"},
      {u"Campaign:1", "Children('Day 1').InstanceKey", "Sub.Test:3"},
      {u"Campaign:1", "References('children').Name", "Vehicle.Runs"},
      {u"Campaign:1", "IsKindOf('Element<DataStore>')", "1"},
      {u"Campaign:1", "IsKindOf('StoreElement<WithBulk>')", "0"},
      {u"Campaign:1", "IsKindOf('Campaign')", "1"},
      {u"Campaign:1", "IsKindOf('aotest')", "1"},
      {u"Campaign:1", "IsKindOf('Run')", "0"},
      {u"Campaign:1", "IsKindOf('Nothing')", "0"},
      {u"Campaign:1", "IsKindOf('')", "0"},
      {u"Campaign:1", "Save", "empty"},
      {u"Sub.Test:3", "Parent.Name", "Cold start"},
      {u"Run:4", "Parent.Parent.InstanceKey", "Campaign:1"},
      {u"Run:4", "Values(0)", "refused"},  // no column
  };
  for (const MemberCase& row : kRows) {
    if (std::string_view(row.expression) == "Instance") {
      Ref<IUnknown> instance;
      ASSERT_EQ(S_OK, Wrap(Element(row.key))->get_Instance(instance.Put()));
      EXPECT_EQ(instance, Ref<IUnknown>(Instance(row.key)));
      continue;
    }
    EXPECT_EQ(row.shown, Ask(row.key, row.expression)) << row.expression;
  }
  std::int32_t level = 0;
  WString id;
  ASSERT_EQ(S_OK, Element(u"Run:4")->GetBrowseLevel(&level));
  EXPECT_EQ(2, level);
  ASSERT_EQ(S_OK, Element(u"Run:4")->GetIdText(&id));
  EXPECT_EQ(u"4", id.view());
}

TEST_P(Elements, OutsideTheBrowsePathHaveNoPlace) {
  OpenAgain({}, "columns");
  EXPECT_EQ("Ada", Ask(u"Person:1", "DisplayName"));
  EXPECT_EQ("", Ask(u"Person:1", "DisplayType"));
  EXPECT_EQ("370 The element must be in the browse path.", Ask(u"Person:1", "Children"));
  EXPECT_EQ("245 Parent not implemented.", Ask(u"Person:1", "Parent"));
  const auto person = Element(u"Person:1");
  std::int32_t number = 0;
  Ref<easyImpl::IVEXElementsImpl> children;
  EXPECT_EQ(E_NOTIMPL, person->HasChildren(&number));
  EXPECT_EQ(E_NOTIMPL, person->GetBrowseLevel(&number));
  EXPECT_EQ(E_UNEXPECTED, person->GetChildrenFiltered({}, children.Put()));
}

TEST_P(Elements, AreOneObjectPerRecordWhileSomebodyHoldsThem) {
  auto element = Element(u"Run:4");
  Ref<easyImpl::IVEXElementImpl> parent;
  ASSERT_EQ(S_OK, element->GetParent(parent.Put()));
  EXPECT_EQ(Element(u"Run:4"), element);
  EXPECT_EQ(Element(u"Sub.Test:3"), parent.As<IStoreElementImpl>());
  element->SetCachedName(u"remembered");
  EXPECT_EQ("remembered", Ask(u"Run:4", "Name"));
  element.Reset();
  EXPECT_EQ("Run 1", Ask(u"Run:4", "Name"));  // a new object

  // Elements go on without those who gave them out; the fixture sees to it that all of it goes.
  auto outlives = Element(u"Run:5");
  m_provider.Reset();
  m_store.Reset();
  EXPECT_EQ("Sub.Test:3", Eval(Wrap(outlives).Get(), "Parent.InstanceKey").Shown());
}

TEST_P(Elements, FollowRenamesByWhomever) {
  struct Client final : IElementNameClient {
    void OnElementRenamed(IStoreElementImpl& element, std::u16string_view oldName,
                          std::u16string_view newName) override {
      heard += NameInStore(element) + ":" + cor::ToUtf8(WString(oldName)) + ">" +
               cor::ToUtf8(WString(newName)) + ";";
    }
    std::string heard;
  } client, other;
  const auto element = Element(u"Run:4");
  const auto face = Wrap(element);
  element->SetNameClient(&client);
  EXPECT_EQ("Run 1", DisplayName(*element));
  EXPECT_EQ("360 The name of an Element<DataStore> must not be an empty string.",
            Put(face.Get(), u"Name", Variant::Text(u"")).Shown());
  EXPECT_EQ("empty", Put(face.Get(), u"Name", Variant::Text(u"a'b")).Shown());
  element->DropNameClient(&other);
  ASSERT_EQ(S_OK, element->SetName(u"c"));
  element->DropNameClient(&client);
  ASSERT_EQ(S_OK, element->SetName(u"d"));
  EXPECT_EQ("a'b:Run 1>a'b;c:a'b>c;", client.heard + other.heard);
  EXPECT_EQ("Run 1", DisplayName(*element));  // until a refresh
  ASSERT_EQ(S_OK, element->Refresh());
  EXPECT_EQ("d", DisplayName(*element));
  ASSERT_EQ(S_OK, element->SetName(u"e"));
  Instance(u"Run:4").As<IContainer>()->SetString(u"name", u"f");
  EXPECT_EQ("e", Ask(u"Run:4", "Name"));
  ASSERT_EQ(S_OK, element->Refresh());
  EXPECT_EQ("f", Ask(u"Run:4", "Name"));

  OpenAgain(u" readonly='yes'");
  EXPECT_EQ("365 The data store is write protected.",
            Put(Wrap(Element(u"Run:4")).Get(), u"Name", Variant::Text(u"x")).Shown());
}

/// Calls every member that the object lists.
void ExpectGone(IDispatch& object) {
  for (std::uint32_t i = 0; i < object.GetMemberCount(); ++i) {
    MemberInfo info;
    ASSERT_EQ(S_OK, object.GetMember(i, &info));
    const std::vector<Variant> args(static_cast<std::size_t>(info.argumentCount), Variant::I4(0));
    const bool isMethod = Intersects(info.kinds, CallKind::Method);
    const auto answer =
        test::Call(&object, info.name, isMethod ? CallKind::Method : CallKind::Get,
                   info.name == u"SetValues" ? std::vector<Variant>{Variant::Null()} : args);
    EXPECT_EQ("323 The object is no longer valid.", answer.Shown()) << cor::ToUtf8(info.name);
    if (!Intersects(info.kinds, CallKind::Put) || info.name == u"DataType") continue;
    auto values = args;
    values.push_back(Variant::I4(1));
    EXPECT_EQ("323 The object is no longer valid.",
              test::Call(&object, info.name, CallKind::Put, values).Shown())
        << cor::ToUtf8(info.name);
  }
}

TEST_P(Elements, WhoseRecordIsGoneSaySo) {
  const auto run = Wrap(Element(u"Run:4"));
  const auto properties = Eval(run.Get(), "Properties");
  m_store->DeleteInstance(Instance(u"Run:4").Get());
  ExpectGone(*run);
  m_store->Discard();  // the record is there again
  EXPECT_EQ("Run 1", Eval(run.Get(), "Name").Shown());
  Instance(u"Run:4")->Delete();
  ExpectGone(*run);
  Ref<IStoreElementImpl> none;
  EXPECT_EQ(E_INVALIDARG, m_provider->GetElementByKey(u"Run:4", none.Put()));

  OpenAgain({}, "columns");
  const auto column = Wrap(Element(u"Trace.Record:1"));
  EXPECT_EQ("3", Eval(column.Get(), "Size").Shown());
  Instance(u"Trace.Record:1")->Delete();
  ExpectGone(*column);
}

TEST_P(Elements, SeeWhatOtherSessionsDeletedAfterARefresh) {
  if (!IsDatabase()) return;  // a file's sessions know nothing of each other
  const auto run = Wrap(Element(u"Run:4"));
  EXPECT_EQ("Run 1", Eval(run.Get(), "Name").Shown());
  WString parameters;
  m_store->GetParameters(parameters);
  const auto other =
      Ref<IStore>::Adopt(GetEngineEnvironment()->OpenStoreByParameter(u"", u"SQL", parameters, 0));
  Ref<IInstance>::Adopt(other->GetInstance(u"Run:4"))->Delete();
  other->Save(u"");
  ASSERT_EQ(S_OK, m_provider->Refresh());
  ExpectGone(*run);
}

TEST_P(Elements, OfALevelComeWithTheirNames) {
  ShowDates();
  const auto held = Element(u"Campaign:2");
  Ref<IStoreElementListImpl> list;
  ASSERT_EQ(S_OK, m_provider->GetChildrenPrefetched({}, u"/#Campaign", list.Put()));
  const auto names = [&](const Ref<IStoreElementListImpl>& elements) {
    std::string all;
    std::int32_t count = 0;
    (void)elements->GetCount(&count);
    for (std::int32_t i = 0; i < count; ++i) {
      Ref<easyImpl::IVEXElementImpl> element;
      (void)elements->GetItem(i, element.Put());
      all += (i == 0 ? "" : "|") + DisplayName(*element);
      const std::string prefetched = DisplayName(*element);
      EXPECT_EQ(S_OK, element->Refresh());
      EXPECT_EQ(prefetched, DisplayName(*element)) << "read alone it is another";
    }
    return all;
  };
  EXPECT_EQ("Cold start - 20260102030405000000000 - 7|Warm start - 20251231235959123000000 - ",
            names(list));
  Ref<easyImpl::IVEXElementImpl> second;
  ASSERT_EQ(S_OK, list->GetItem(1, second.Put()));
  EXPECT_EQ(held, second.As<IStoreElementImpl>());

  const struct {
    std::u16string_view key, path, filter;
    Result code;
    const char* names;
  } rows[] = {
      {u"", u"/##aotest", u"", S_OK,
       "Cold start - 20260102030405000000000 - 7|Warm start - 20251231235959123000000 - "},
      {u"", u"/#Sub.Test", u"", S_OK, "Day 1"},
      {u"", u"/#Campaign.Vehicle.Runs.Runs", u"", S_OK, "Run 1|Run 2"},
      {u"", u"/#Nothing", u"", E_INVALIDARG, ""},
      {u"", u"", u"", E_UNEXPECTED, ""},
      {u"Sub.Test:3", u"Runs", u"", S_OK, "Run 1|Run 2"},
      {u"Sub.Test:3", u"children", u"Run 2", S_OK, "Run 2"},
      {u"Campaign:1", u"Vehicle.Runs.Runs", u"", S_OK, "Run 1|Run 2"},
      {u"Sub.Test:3", u"Name", u"", E_INVALIDARG, ""},
      {u"Sub.Test:3", u"", u"", E_UNEXPECTED, ""},
      {u"Sub.Test:3", u"Runs", u"<nonsense", E_FAIL, ""},
  };
  const auto query = QueryRef<IStoreQuery>(m_store.Get());
  for (const auto& row : rows) {
    WString filter = row.filter;
    if (row.filter.starts_with(u"Run")) {
      query->BuildQueryText(filter, u"Run", 0, u"Name='" + std::u16string(row.filter) + u"'");
    }
    const Result rc = row.key.empty()
                          ? m_provider->GetChildrenPrefetched(filter, row.path, list.Put())
                          : Element(row.key)->GetChildrenPrefetched(filter, row.path, list.Put());
    ASSERT_EQ(row.code, rc) << cor::ToUtf8(WString(row.path));
    EXPECT_EQ(Failed(rc), !list);
    EXPECT_EQ(row.names, list ? names(list) : std::string()) << cor::ToUtf8(WString(row.path));
  }
  Ref<easyImpl::IVEXElementsImpl> children;
  ASSERT_EQ(S_OK, Element(u"Sub.Test:3")->GetChildrenFiltered({}, children.Put()));
  EXPECT_EQ("Run 1|Run 2", Names(*children));
}

TEST_P(Elements, FollowTheBrowsePathWhenTheyAreRefreshed) {
  const auto day = Element(u"Sub.Test:3");
  const auto shown = Wrap(day);
  const auto shorter = MakeRef<CDataStoreBrowseConfigImpl>();
  const auto model = Ref<IModel>::Adopt(m_store->GetModel());
  ASSERT_EQ(S_OK, shorter->SetSingleRoot(model.Get(), u"Campaign"));
  const auto longer = MakeRef<CDataStoreBrowseConfigImpl>();
  ASSERT_EQ(S_OK, longer->Load(m_store.Get(), {}));

  ASSERT_EQ(S_OK, Config()->CopyFrom(shorter.Get()));
  ASSERT_EQ(S_OK, m_provider->ResetBrowseData());
  ASSERT_EQ(S_OK, day->Refresh());
  EXPECT_EQ("370 The element must be in the browse path.", Eval(shown.Get(), "Children").Shown());
  EXPECT_EQ("no object", Ask(u"Campaign:1", "Children"));  // a leaf now
  ASSERT_EQ(S_OK, Config()->CopyFrom(longer.Get()));
  EXPECT_EQ("370 The element must be in the browse path.", Eval(shown.Get(), "Children").Shown());
  ASSERT_EQ(S_OK, day->Refresh());
  EXPECT_EQ("Run:4", Eval(shown.Get(), "Children.Item(0).InstanceKey").Shown());

  // Turned round, the path makes the child of before the parent. Neither holds the other for good.
  const auto campaign = Element(u"Campaign:1");
  Ref<easyImpl::IVEXElementImpl> parent;
  ASSERT_EQ(S_OK, day->GetParent(parent.Put()));
  EXPECT_EQ(campaign, parent.As<IStoreElementImpl>());
  const auto entity = Ref<IEntity>::Adopt(model->GetEntity(u"Sub.Test"));
  const auto upward = Ref<IRelation>::Adopt(entity->GetRelationByName(u"Campaign"));
  const auto turned = MakeRef<CDataStoreBrowseConfigImpl>();
  IRelation* const references[] = {upward.Get()};
  ASSERT_EQ(S_OK, turned->InitFromReferences(model.Get(), references));
  ASSERT_EQ(S_OK, Config()->CopyFrom(turned.Get()));
  ASSERT_EQ(S_OK, campaign->Refresh());
  ASSERT_EQ(S_OK, campaign->GetParent(parent.Put()));
  EXPECT_EQ(day, parent.As<IStoreElementImpl>());
}

TEST_P(Elements, AreMadeByAProviderThatKnowsItsStore) {
  WString text;
  WString location;
  EXPECT_EQ(S_OK, m_provider->GetPluginName(&text));
  EXPECT_EQ(GetParam(), cor::ToUtf8(text));
  WString name;
  m_store->GetName(name);
  EXPECT_EQ(S_OK, m_provider->GetDisplayLocation(&text, &location));
  EXPECT_EQ(name, text);
  EXPECT_FALSE(location.empty());
  EXPECT_EQ(S_OK, m_provider->GetParameters(&text));
  EXPECT_EQ(0U, text.view().find(u"<filename>"));
  EXPECT_EQ(E_NOTIMPL, m_provider->Reserved());
  EXPECT_EQ(E_POINTER, m_provider->CreateRootElements(nullptr));
  EXPECT_EQ(E_POINTER, m_provider->GetElement(Instance(u"Run:4").Get(), nullptr));
  Ref<IStoreElementImpl> element;
  EXPECT_EQ(E_POINTER, m_provider->GetElement(nullptr, element.Put()));
  // There are no configured stores, so no type of store has a picture.
  Ref<ISymbolImage> icon;
  EXPECT_EQ(S_OK, m_provider->GetIcon(icon.Put()));
  EXPECT_FALSE(icon);

  const auto otherStore = Open();
  const auto other = ProviderOf(*otherStore);
  const auto foreign = Ref<IInstance>::Adopt(otherStore->GetInstance(u"Run:4"));
  EXPECT_TRUE(m_provider->OwnsInstance(Instance(u"Run:4").Get()));
  EXPECT_FALSE(m_provider->OwnsInstance(foreign.Get()));
  EXPECT_TRUE(m_provider->OwnsElement(Element(u"Run:4").Get()));
  EXPECT_FALSE(other->OwnsElement(Element(u"Run:4").Get()));
  EXPECT_FALSE(m_provider->OwnsElement(nullptr));
}

TEST_P(Elements, GoOutInTheWrappersOfTheirKind) {
  const auto generic = MakeRef<easyImpl::CCvexInterfaceFactory>();
  const auto ofStores = MakeRef<CDataStoreInterfaceFactory>();
  const auto className = [](IDispatch* object) {
    return object ? cor::ToUtf8(WString(object->GetClassName())) : "none";
  };
  const auto run = Element(u"Run:4");
  const auto runs = Members(u"Sub.Test:3", u"Runs");
  Ref<IStoreElementListImpl> list;
  ASSERT_EQ(S_OK, run->CreateElementList(list.Put()));
  for (const auto& [factory, names] :
       {std::pair{Ref<easyImpl::ICvexInterfaceFactory>(generic), "Element Elements Elements none"},
        std::pair{Ref<easyImpl::ICvexInterfaceFactory>(ofStores),
                  "StoreElement StoreElements StoreElementList none"}}) {
    Ref<IVEXElement> element;
    Ref<IDispatch> members;
    std::string made;
    ASSERT_EQ(S_OK, factory->MakeElement(run.Get(), element.Put()));
    made = className(element.Get());
    ASSERT_EQ(S_OK, factory->MakeElements(runs.Get(), members.Put()));
    made += " " + className(members.Get());
    ASSERT_EQ(S_OK, factory->MakeElements(list.Get(), members.Put()));
    made += " " + className(members.Get());
    ASSERT_EQ(S_OK, factory->MakeElement(nullptr, element.Put()));
    EXPECT_EQ(names, made + " " + className(element.Get()));
  }
}

}  // namespace
}  // namespace hv::vex
