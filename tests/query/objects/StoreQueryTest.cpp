// tests/query/objects/StoreQueryTest.cpp - how a query keeps to its store, or moves to another.
#include <storefabric/ISVEXConditions.h>

#include "browse/BrowseConfigImpl.h"
#include "browse/BrowseOperations.h"
#include "query/objects/AttributePath.h"
#include "query/objects/QueryInt.h"
#include "tests/query/objects/ChangingStore.h"
#include "tests/query/objects/QueryFixture.h"
#include "tests/support/Script.h"

namespace hv::vex {
namespace {

using test::ExpectShown;
using test::Get;

class StoreQuery : public QueryTest {
 protected:
  StoreQuery() { Use(OpenBench()); }
  static Ref<IStore> OpenOther() { return OpenFile(HV_TEST_DATA_DIR "/browse/campaign.atfx"); }
  /// "type.property <- " and the internal names of each condition.
  std::string Names() {
    WString all;
    Ref<easyImpl::IConditionImpl> c;
    for (std::int32_t i = 0; !Failed(Conditions().GetItem(i, c.Put())); ++i) {
      all += (i ? u"; " : u"") + c->GetType() + u"." + c->GetProperty() + u" <- " +
             c->GetInternalType() + u"." + c->GetInternalProperty();
    }
    return cor::ToUtf8(all);
  }
};

TEST_F(StoreQuery, ResolvesNamesBothWays) {
  const StoreNames names(Ref<IModel>::Adopt(m_store->GetModel()));
  constexpr struct {
    std::u16string_view entity, property, internal, internalProperty;
  } kCases[] = {
      {u"Channel", u"Name", u"", u"name"},
      {u"MeaResult", u"Name", u"measurement", u"Name"},
      {u"MeaResult", u"Title", u"measurement", u"name"},
      {u"Step", u"Name", u"measurement.test", u"name"},
      {u"Campaign", u"Start.Date", u"measurement.test.parent_test", u"Start.Date"},
      {u"Column", u"Values", u"local_columns", u"values"},
  };
  WString out;
  WString property;
  for (const auto& c : kCases) {
    SCOPED_TRACE(cor::ToUtf8(c.entity));
    EXPECT_EQ(S_OK, names.InternalEntity(c.entity, &out));
    EXPECT_EQ(c.internal, out.view());
    EXPECT_EQ(S_OK, names.InternalProperty(c.entity, c.property, &property));
    EXPECT_EQ(c.internalProperty, property.view());
    EXPECT_EQ(S_OK, names.ExternalNames(WString(out + u"." + property), &out, &property));
    EXPECT_EQ(cor::ToUtf8(WString(c.entity) + u"." + c.property),
              cor::ToUtf8(out + u"." + property));
    EXPECT_EQ(S_OK, names.ExternalEntity(c.internal, &out));
    EXPECT_EQ(c.entity, out.view());
  }
  EXPECT_EQ(E_INVALIDARG, names.InternalEntity(u"Nobody", &out));
  EXPECT_EQ(E_INVALIDARG, names.InternalEntity(u"Loner", &out)) << "no way from the channels";
  EXPECT_EQ(E_INVALIDARG, names.InternalProperty(u"Step", u"Nope", &out));
  EXPECT_EQ(E_INVALIDARG, names.ExternalEntity(u"measurement.nope", &out));
  EXPECT_EQ(E_INVALIDARG, names.ExternalNames(u"measurement.nope", &out, &property));
  EXPECT_EQ(S_OK, names.ExternalNames(u"Person.name", &out, &property)) << "by the entity's name";
  EXPECT_EQ(E_INVALIDARG, StoreNames().ExternalEntity(u"", &out));
}

TEST_F(StoreQuery, ChecksPathsOfProperties) {
  const StoreNames names(Ref<IModel>::Adopt(m_store->GetModel()));
  constexpr struct {
    std::u16string_view entity, property;
    std::int32_t flags, message;
    bool inBrowsePath = false;
  } kCases[] = {
      {u"MeaResult", u"Size", 0, 0},
      {u"meaRESULT", u"State", 0, 0},
      {u"aomeasurement", u"name", 0, 0},
      {u"Column", u"Values", 0, 0},
      {u"Step", u"Campaign.Start.Date", 0, 0},
      {u"Step", u"parent_test.name", 0, 0},
      {u"Step", u"Campaign.Steps.Name", 1, 12008},
      {u"MeaResult", u"Before.Name", 1, 12008},
      {u"Nobody", u"Name", 2, 12009},
      {u"MeaResult", u"Nope", 2, 12009},
      {u"MeaResult", u"Step", 2, 12009},
      {u"MeaResult", u"Step.Nope", 2, 12009},
      {u"Step", u"Results.Channels.Name", 2, 12009},
      {u"Step", u"Results.Name", 0, 0},
      {u"MeaResult", u"Good", 4, 12011},
      {u"MeaResult", u"Levels", 8, 12010},
      {u"MeaResult", u"Driver.Name", 0, 0},
      {u"Step", u"Campaign.Title", 16, 12008, true},
      {u"Step", u"Name", 0, 0, true},
  };
  Ref<IBrowseConfig> config;
  ASSERT_EQ(S_OK, LoadDefaultBrowseConfig(m_store.Get(), config.Put()));
  for (const auto& c : kCases) {
    const std::int32_t flags =
        names.CheckPath(c.entity, c.property, c.inBrowsePath ? config.Get() : nullptr);
    EXPECT_EQ(c.flags, flags) << cor::ToUtf8(c.property);
    EXPECT_EQ(c.message, PathCheckMessage(flags));
  }
  // The engine gives each reference a way back; stores of others need not.
  EXPECT_EQ(12013, PathCheckMessage(pathflag::kAmbiguous));
  EXPECT_EQ(2, StoreNames().CheckPath(u"MeaResult", u"Size", nullptr)) << "without a store";
  AttributePathInfo path;
  const auto start = names.FindEntity(u"MeaResult");
  ASSERT_EQ(S_OK, path.Parse(*start, u"Step.Campaign.Title", true));
  ASSERT_TRUE(path.Next());
  {
    const tAttributePathInfoAutoPosition keep(path);
    EXPECT_TRUE(path.Next());
    EXPECT_FALSE(path.Next());
  }
  EXPECT_EQ(1u, path.GetPosition());
}

TEST_F(StoreQuery, BeginsWithMeasurementsAndTakesValidTypesOnly) {
  EXPECT_TRUE(m_query->IsAttached());
  EXPECT_TRUE(m_query->IsEmpty());
  EXPECT_EQ(u"MeaResult", m_query->GetReturnType().view());
  EXPECT_EQ(u"measurement", m_query->GetInternalReturnType().view());
  EXPECT_EQ(u"bench", m_query->GetStoreName().view());
  EXPECT_EQ(u"Step.Campaign", m_query->PathPrefix(u"Campaign").view());
  EXPECT_EQ(u"", m_query->PathPrefix(u"MeaResult").view());
  EXPECT_EQ(E_INVALIDARG, m_query->SetReturnType(u"Nobody"));
  EXPECT_EQ(S_OK, m_query->SetReturnType(u"Channel"));
  EXPECT_EQ(u"", m_query->GetInternalReturnType().view());
  EXPECT_EQ(E_INVALIDARG, m_query->SetReturnType(u""));
  EXPECT_EQ(u"Channel", m_query->GetReturnType().view());
  const auto unbound = MakeRef<CDataStoreAdvancedQueryImpl>();
  EXPECT_EQ(u"AoMeasurement", unbound->GetReturnType().view());
  EXPECT_EQ(E_UNEXPECTED, unbound->Detach());
  Ref<IAdvancedQueryImpl> made;
  EXPECT_EQ(VEX_E_NO_STORE, unbound->MakeEmpty(made.Put()));
  EXPECT_EQ(S_OK, m_query->MakeEmpty(made.Put()));
  EXPECT_EQ(m_store.Get(), made->GetStore());
}

TEST_F(StoreQuery, MovesToAStoreWithOtherNames) {
  Fill("Title|=|Run 1;Step|Name|=|Day*;Campaign|Title|=|Cold*;Channel|Name|=|x",
       u"C1 AND C2 AND C3");
  ASSERT_EQ(S_OK, m_query->Detach());
  EXPECT_FALSE(m_query->IsAttached());
  EXPECT_EQ(0u, Names().find("MeaResult.Title <- measurement.name;")) << "stays readable";
  EXPECT_EQ(E_UNEXPECTED, m_query->Detach());
  EXPECT_EQ(E_INVALIDARG, m_query->Reattach(nullptr, true));
  m_store = OpenOther();
  ASSERT_EQ(S_OK, m_query->Reattach(m_store.Get(), true));
  EXPECT_EQ(u"Run", m_query->GetReturnType().view());
  EXPECT_EQ(u"campaign", m_query->GetStoreName().view());
  EXPECT_EQ(
      "Run.Name <- measurement.name; Sub.Test.Name <- measurement.test.name; "
      "Campaign.Title <- measurement.test.parent_test.name; Channel.Name <- .name",
      Names());
  WString text;
  ASSERT_EQ(S_OK, Build(&text));
  EXPECT_EQ("4", Hits(text));
}

TEST_F(StoreQuery, StopsMovingAtTheFirstMisfit) {
  Fill("Title|=|a;Size|=|1;Step|Name|=|x");
  const Ref<IStore> other = OpenOther();
  EXPECT_EQ(E_UNEXPECTED, m_query->Reattach(other.Get(), true)) << "there is no size";
  EXPECT_EQ(
      "Run.Name <- measurement.name; MeaResult.Size <- measurement.Size; "
      "Step.Name <- measurement.test.name",
      Names());
  Use(m_store);
  Fill("Size|=|1;Time|>=|soon");
  EXPECT_EQ(VEX_E_OTHER_STORE, m_query->Reattach(m_store.Get(), false)) << "no date";
  ASSERT_EQ(S_OK, m_query->SetReturnType(u"Person"));
  ASSERT_EQ(S_OK, Conditions().RemoveAll());
  EXPECT_EQ(VEX_E_OTHER_STORE, m_query->Reattach(other.Get(), true));
}

TEST_F(StoreQuery, CopiesWhatAnotherIs) {
  Fill("Size|=|1;Size|=|2", u"C1 OR C2");
  ASSERT_EQ(S_OK, m_query->SetReturnType(u"Step"));
  m_query->SetFilterActive(1);
  const auto copy = MakeRef<CDataStoreAdvancedQueryImpl>(*m_store, nullptr);
  EXPECT_EQ(E_INVALIDARG, copy->CopyFrom(nullptr));
  ASSERT_EQ(S_OK, copy->CopyFrom(m_query.Get()));
  EXPECT_EQ(u"Step", copy->GetReturnType().view());
  EXPECT_EQ(u"measurement.test", copy->GetInternalReturnType().view());
  EXPECT_EQ(1, copy->GetFilterActive());
  EXPECT_TRUE(Conditions().Compare(*copy->GetStoreConditions()));
  ASSERT_EQ(S_OK, Conditions().RemoveAll());
  EXPECT_FALSE(copy->IsEmpty());
}

TEST_F(StoreQuery, FollowsAModelThatChanges) {
  const auto changing = MakeRef<test::ChangingStore>(m_store);
  const Ref<IStore> other = OpenOther();
  const auto expect = [&](const char* member, const char* shown) {
    ExpectShown(MakeRef<CDataStoreQueryInt>(m_query).Get(), {{member, shown}});
  };
  const auto start = [&](std::u16string_view returnType, const char* condition) {
    Use(changing);
    changing->Model().Become(m_store = OpenBench());
    EXPECT_EQ(S_OK, m_query->Sync());
    Add(*m_query, condition);
    ASSERT_EQ(S_OK, m_query->SetReturnType(returnType));
    EXPECT_EQ(S_OK, m_query->CheckSync(u"Nobody")) << "nothing has changed";
    changing->Model().Become(other);
    EXPECT_EQ(VEX_E_QUERY_BROWSE_PATH, m_query->CheckSync(u"MeaResult"));
    EXPECT_EQ(VEX_E_QUERY_BROWSE_PATH, m_query->CheckModel(u"MeaResult"));
    EXPECT_EQ(S_OK, m_query->CheckSync(u"Run"));
  };
  const char* const kMisfit = "334 The query is not compatible with the connected data store.";

  start(u"MeaResult", "Campaign|Title|=|x");
  expect("ReturnType", "Run");
  expect("Conditions", "[C1]");
  EXPECT_EQ(S_OK, m_query->CheckSync(u"Nobody")) << "it is up to date again";
  start(u"MeaResult", "Step|Name|=|x");
  expect("Conditions", kMisfit);  // there is no step any more
  expect("Conditions", kMisfit);  // and it is said again
  start(u"Person", "Campaign|Title|=|x");
  expect("ReturnType", kMisfit);
  expect("Detach", "empty");
  expect("ReturnType", "Person");
}

TEST_F(StoreQuery, IsSeenByNameWithItsMessages) {
  const auto query = MakeRef<CDataStoreQueryInt>(m_query);
  ExpectShown(query.Get(), {{"IsEmpty", "-1"},
                            {"IsKindOf(4)", "-1"},
                            {"IsKindOf(2)", "0"},
                            {"QueryString", ""},
                            {"QueryString(null)", ""},
                            {"Conditions.Add('MeaResult','Size','=','1').Name", "C1"},
                            {"Conditions.Count", "1"},
                            {"IsEmpty", "0"},
                            {"Detach", "empty"},
                            {"Detach", "250 Unknown error."},
                            {"ReturnType", "MeaResult"},
                            {"Conditions.Item(1).Property", "Size"},
                            {"IsEmpty", "0"}});
  Use(m_store);
  Add(*m_query, "Size|>|3");
  const auto again = MakeRef<CDataStoreQueryInt>(m_query);
  ExpectShown(again.Get(),
              {{"ReturnType = 'Nobody'",
                "209 The text Nobody is not a valid value for the property ReturnType."},
               {"QueryString = '<query/>'", "245 QueryString not implemented."},
               {"put_QueryString('<query/>')", "245 QueryString not implemented."}});
  std::int32_t id = 0;
  EXPECT_EQ(S_OK, again->GetIdOfName(u"put_QueryString", &id));
  EXPECT_EQ(201, id);
  EXPECT_EQ("222 The argument Context of the method QueryString must be a DataStore.",
            Get(again.Get(), u"QueryString", Variant::Object(query.Get())).Shown());
  EXPECT_EQ("AND(&gt;(Size p'3'))", Short(Get(again.Get(), u"QueryString").value.AsText()));
}

}  // namespace
}  // namespace hv::vex
