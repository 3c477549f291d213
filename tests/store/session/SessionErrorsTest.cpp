// tests/store/session/SessionErrorsTest.cpp - every message of a session and of its browse
// settings, raised by name: the table of the published list.
#include <storefabric/IBrowseSettings.h>
#include <storefabric/IStoreElement.h>

#include "OddStore.h"
#include "SessionFixture.h"
#include "store/session/DataStoreImpl.h"
#include "store/session/DataStoreInt.h"
#include "store/session/ISessionQueries.h"

namespace hv::vex {
namespace {

using test::Eval;
using test::Get;
using test::Obj;
using test::Put;
using test::Txt;

/// Queries whose every step fails with one code.
class FailingQueries final : public ISessionQueries {
 public:
  Result Create(const QueryGround&, IAdvancedQueryImpl**) override { return code; }
  Result WriteText(const QueryGround&, IAdvancedQueryImpl&, std::int32_t, WString*) override {
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
    // Nobody looks behind it.
    *query = reinterpret_cast<IAdvancedQueryImpl*>(this);
    return object ? S_OK : VEX_E_NOT_STORE_QUERY;
  }

  Result code = S_OK;
};

class SessionErrors : public test::CampaignTest {
 public:
  using CampaignTest::CoreOf;
  using CampaignTest::m_store;

  SessionErrors() {
    InstallSessionQueries(&m_queries);
    m_oddCore = MakeRef<test::OddStore>(CoreOf(*m_store.Get()));
    const auto session = MakeRef<CDataStoreImpl>();
    EXPECT_EQ(S_OK, session->OpenByStore(m_oddCore.Get()));
    m_odd = MakeRef<CDataStoreInt>(session);
    m_oddSettings = Of(m_odd.Get(), "BrowseSettings");
    m_unconnected = MakeRef<CDataStoreInt>(MakeRef<CDataStoreImpl>());
    m_other = Open("bench");
    m_readOnly = Open("campaign", "<readonly>yes</readonly>");
    m_deleted = Object("GetElementByKey('Run:4')");
    EXPECT_EQ("empty", Get(m_store.Get(), u"DeleteElement", Obj(m_deleted)).Shown());
  }
  ~SessionErrors() override { InstallSessionQueries(nullptr); }

  static Ref<IDispatch> Of(IDispatch* object, std::string_view expression) {
    return Ref<IDispatch>::Share(Eval(object, expression).Object());
  }
  template <class... Args>
  std::string Session(std::u16string_view member, Args... args) {
    return Get(m_store.Get(), member, std::move(args)...).Shown();
  }
  template <class... Args>
  std::string Settings(std::u16string_view member, Args... args) {
    return Get(Object("BrowseSettings").Get(), member, std::move(args)...).Shown();
  }
  /// A member of an object over a store that throws.
  std::string Throwing(std::int32_t code, const Ref<IDispatch>& object,
                       std::u16string_view member) {
    m_oddCore->thrown = code;
    const std::string shown = Get(object.Get(), member).Shown();
    m_oddCore->thrown = 0;
    return shown;
  }
  std::string Unconnected(std::u16string_view member) {
    return Get(m_unconnected.Get(), member).Shown();
  }
  /// A member that takes a query and a path, while the queries fail.
  std::string Query(Result code, std::u16string_view member, std::vector<Variant> args) {
    m_queries.code = code;
    return test::Call(m_store.Get(), member, CallKind::Method, std::move(args)).Shown();
  }
  [[nodiscard]] Variant Self() const { return Variant::Object(m_store.Get()); }
  [[nodiscard]] Variant Foreign() const { return Obj(Of(m_other.Get(), "RootElements(0)")); }

  FailingQueries m_queries;
  Ref<test::OddStore> m_oddCore;
  Ref<IDispatch> m_odd;
  Ref<IDispatch> m_oddSettings;
  Ref<IDispatch> m_unconnected;
  Ref<IDataStore> m_other;
  Ref<IDataStore> m_readOnly;
  Ref<IDispatch> m_deleted;
};

struct ErrorCase {
  const char* name;
  std::string (*raise)(SessionErrors& t);
  const char* shown;
};

using T = SessionErrors;

constexpr const char* kForeign =
    "335 The specified element is not an element of the connected data store.";
constexpr const char* kUnknown = "250 Unknown error.";
constexpr const char* kNoMemory = "207 The application is out of memory.";
constexpr const char* kProtected = "365 The data store is write protected.";
constexpr const char* kGone = "323 The object is no longer valid.";
constexpr const char* kOtherStore =
    "334 The query is not compatible with the connected data store.";
constexpr const char* kPath = "369 The query does not match the browse path.";

const ErrorCase kErrors[] = {
    // The standard rows, for the members that have no others. Refresh never fails, and a timeout
    // comes only from members that ask the store.
    {"GetModel", [](T& t) { return t.Unconnected(u"Model"); }, kUnknown},
    {"GetRootElements", [](T& t) { return t.Unconnected(u"RootElements"); }, kUnknown},
    {"GetRootElements_Throws", [](T& t) { return t.Throwing(-1008, t.m_odd, u"RootElements"); },
     kUnknown},
    {"GetPluginName", [](T& t) { return t.Throwing(-1, t.m_odd, u"PluginName"); }, kUnknown},
    {"GetPluginName_Time", [](T& t) { return t.Throwing(-1008, t.m_odd, u"PluginName"); },
     "241 The operation GetPluginName was timed out."},
    {"GetPluginName_Memory", [](T& t) { return t.Throwing(-800, t.m_odd, u"PluginName"); },
     kNoMemory},
    {"GetParameters", [](T& t) { return t.Throwing(-1008, t.m_odd, u"Parameters"); },
     "241 The operation GetParameters was timed out."},
    {"CreateQuery", [](T& t) { return t.Query(E_NOTIMPL, u"CreateQuery", {}); },
     "245 CreateQuery not implemented."},
    {"GetResults", [](T& t) { return t.Unconnected(u"Results"); }, kUnknown},
    {"IsQuerySupported", [](T& t) { return t.Throwing(-1008, t.m_odd, u"IsQuerySupported"); },
     "241 The operation IsQuerySupported was timed out."},
    {"IsModified", [](T& t) { return t.Throwing(-1008, t.m_odd, u"IsModified"); },
     "241 The operation IsModified was timed out."},
    {"GetVexStore", [](T& t) { return t.Unconnected(u"GetVexStore"); }, kUnknown},
    {"GetBrowseSettings", [](T& t) { return t.Unconnected(u"BrowseSettings"); }, kUnknown},

    {"CreateElement_Empty", [](T& t) { return t.Session(u"CreateElement", Txt(u"Run"), Txt(u"")); },
     "360 The name of an Element<DataStore> must not be an empty string."},
    {"CreateElement_Protected",
     [](T& t) { return Get(t.m_readOnly.Get(), u"CreateElement", Txt(u"Run"), Txt(u"a")).Shown(); },
     kProtected},
    {"CreateElement_Array",
     [](T& t) { return t.Session(u"CreateElement", Variant::Array({}), Txt(u"a")); },
     "357 The parameter Type of the Create function must be an Entity<DataStore> or a string with "
     "the name of an Entity."},
    {"CreateElement_Unknown",
     [](T& t) { return t.Session(u"CreateElement", Txt(u"Nothing"), Txt(u"a")).substr(0, 3); },
     "357"},
    {"CreateElement_BaseEntity",
     [](T& t) {
       return t.Session(u"CreateElement", Txt(u"aomeasurement"), Txt(u"a")).substr(0, 3);
     },
     "357"},
    {"GetElementByKey", [](T& t) { return t.Session(u"GetElementByKey", Txt(u"Run:99")); },
     "212 The text Run:99 is not a valid value for the argument GetElementByKey of the method "
     "Key."},
    {"CreateElementsByInstList",
     [](T& t) { return t.Session(u"CreateElementsByInstList", Variant::Null()); },
     "222 The argument InstanceList of the method CreateElementsByInstList must be a InstList."},
    // 341: what belongs to the store always gives an element.
    {"CreateElementsByInstList_Foreign",
     [](T& t) {
       const auto list =
           Ref<IInstList>::Adopt(T::CoreOf(*t.m_readOnly.Get())->GetInstances(u"/#Campaign"));
       return t.Session(u"CreateElementsByInstList", Variant::Unknown(list.Get()));
     },
     kForeign},
    {"GetElementList_Type",
     [](T& t) { return t.Session(u"GetElementList", Txt(u"Nothing"), Txt(u"a")); },
     "212 The text Nothing is not a valid value for the argument GetElementList of the method "
     "ReturnType."},
    {"GetElementList_Expression",
     [](T& t) { return t.Session(u"GetElementList", Txt(u"Run"), Txt(u"Name =")); },
     "212 The text Name = is not a valid value for the argument GetElementList of the method "
     "QueryExpression."},
    {"GetElementList_OdsConform",
     [](T& t) { return t.Session(u"GetElementList", Txt(u"Run"), Txt(u"a"), t.Self()); },
     "222 The argument Bool of the method GetElementList must be a OdsConform."},

    {"LoadQuery_Path",
     [](T& t) { return t.Query(VEX_E_QUERY_BROWSE_PATH, u"LoadQuery", {Txt(u"q.xml")}); }, kPath},
    {"LoadQuery_File", [](T& t) { return t.Query(VEX_E_BAD_FILE, u"LoadQuery", {Txt(u"q.xml")}); },
     "340 The file q.xml could not be opened or does not contain a Query<DataStore>."},
    {"LoadQuery_Store",
     [](T& t) { return t.Query(VEX_E_OTHER_STORE, u"LoadQuery", {Txt(u"q.xml")}); }, kOtherStore},
    {"SaveQuery_File",
     [](T& t) {
       return t.Query(E_FAIL, u"SaveQuery", {t.Self(), Txt(u"q.xml")});
     },
     "358 Cannot write the file q.xml. Maybe the file is write protected or the path does not "
     "exist."},
    {"SaveQuery_Kind",
     [](T& t) {
       return t.Query(S_OK, u"SaveQuery", {Variant::Null(), Txt(u"q.xml")});
     },
     "222 The argument Query<DataStore> of the method SaveQuery must be a Query."},
    {"Search_Null", [](T& t) { return t.Query(S_OK, u"Search", {Variant::Null()}); },
     "222 The argument Query<DataStore> of the method Search must be a Query."},
    {"Search_Empty", [](T& t) { return t.Query(VEX_E_EMPTY_QUERY, u"Search", {t.Self()}); },
     "265 Searching with an empty query is not possible."},
    {"Search_Path", [](T& t) { return t.Query(VEX_E_QUERY_BROWSE_PATH, u"Search", {t.Self()}); },
     kPath},
    {"Search_Logic", [](T& t) { return t.Query(VEX_E_LOGIC_UNSUPPORTED, u"Search", {t.Self()}); },
     "325 The data store campaign does not support queries with a custom logical operation (e.g. "
     "with \"OR\")."},
    {"Search_Or", [](T& t) { return t.Query(VEX_E_OR_UNSUPPORTED, u"Search", {t.Self()}); },
     "325 The data store campaign does not support multiple values connected with OR."},
    {"Search_Property", [](T& t) { return t.Query(VEX_E_INVALID_PROPERTY, u"Search", {t.Self()}); },
     "328 The query contains at least one invalid property."},
    {"Search_Kind", [](T& t) { return t.Query(VEX_E_NOT_STORE_QUERY, u"Search", {t.Self()}); },
     "222 The argument Query<DataStore> of the method Search must be a Query."},
    {"Search_Handle", [](T& t) { return t.Query(E_HANDLE, u"Search", {t.Self()}); },
     "222 The argument Query<DataStore> of the method Search must be a Query."},
    {"Search_Store", [](T& t) { return t.Query(VEX_E_OTHER_STORE, u"Search", {t.Self()}); },
     kOtherStore},

    {"Save", [](T& t) { return t.Throwing(-1303, t.m_odd, u"Save"); },
     "344 Your data cannot be saved. Maybe the data is in files that are readonly."},
    {"DeleteElement_Protected",
     [](T& t) {
       return Get(t.m_readOnly.Get(), u"DeleteElement",
                  Obj(T::Of(t.m_readOnly.Get(), "GetElementByKey('Run:5')")))
           .Shown();
     },
     kProtected},
    {"DeleteElement_Foreign", [](T& t) { return t.Session(u"DeleteElement", t.Foreign()); },
     kForeign},
    {"DeleteElement_Kind", [](T& t) { return t.Session(u"DeleteElement", t.Self()); },
     "222 The argument Element<DataStore> of the method DeleteElement must be a Val."},
    {"DeleteElement_Gone", [](T& t) { return t.Session(u"DeleteElement", Obj(t.m_deleted)); },
     kGone},
    {"GetElementByDataChannel",
     [](T& t) { return t.Session(u"GetElementByDataChannel", t.Self()); },
     "222 The argument Channel<Data> of the method GetElementByDataChannel must be a Object."},
    {"GetContext", [](T& t) { return t.Throwing(0, t.m_odd, u"GetContext"); },
     "372 This data store does not support context parameters."},
    {"SetBrowseSettings_Other",
     [](T& t) {
       return Put(t.m_store.Get(), u"BrowseSettings", Obj(T::Of(t.m_other.Get(), "BrowseSettings")))
           .Shown();
     },
     "371 The browse path does not match the model of the data store."},
    {"SetBrowseSettings_Fixed",
     [](T& t) {
       t.m_oddCore->hasQmdModel = true;
       const std::string shown =
           Put(t.m_odd.Get(), u"BrowseSettings", Obj(t.m_oddSettings)).Shown();
       t.m_oddCore->hasQmdModel = false;
       return shown;
     },
     "373 Do not change the browse settings for this data store."},
    {"SetBrowseSettings_Kind",
     [](T& t) { return Put(t.m_store.Get(), u"BrowseSettings", t.Self()).Shown(); },
     "222 The argument BrowseSettings of the method SetBrowseSettings must be a BrowseSettings."},

    {"Settings_RootElements",
     [](T& t) { return t.Throwing(-1008, t.m_oddSettings, u"RootElements"); },
     "241 The operation RootElements was timed out."},
    // RootEntity only reads what the settings hold, so that its rows can't be reached.
    {"Settings_GetParent_Foreign", [](T& t) { return t.Settings(u"GetParent", t.Foreign()); },
     kForeign},
    {"Settings_GetParent_Kind", [](T& t) { return t.Settings(u"GetParent", t.Self()); },
     "222 The argument Element<DataStore> of the method GetParent must be a Element."},
    {"Settings_GetParent_Gone", [](T& t) { return t.Settings(u"GetParent", Obj(t.m_deleted)); },
     kGone},
    {"Settings_GetParent_None",
     [](T& t) {
       return t.Settings(u"GetParent", Obj(T::Of(t.m_store.Get(), "CreateElement('Run','alone')")));
     },
     kUnknown},
    {"Settings_GetChildren_Foreign", [](T& t) { return t.Settings(u"GetChildren", t.Foreign()); },
     kForeign},
    {"Settings_GetChildren_Null", [](T& t) { return t.Settings(u"GetChildren", Variant::Null()); },
     "222 The argument Element<DataStore> of the method GetChildren must be a Element."},
    {"Settings_GetBrowseEntity_Foreign",
     [](T& t) { return t.Settings(u"GetBrowseEntity", t.Foreign()); }, kForeign},
    {"Settings_GetBrowseEntity_Kind", [](T& t) { return t.Settings(u"GetBrowseEntity", t.Self()); },
     "222 The argument Element<DataStore> of the method GetBrowseEntity must be a Element."},
};

TEST_P(SessionErrors, AreThoseOfThePublishedList) {
  for (const ErrorCase& row : kErrors) {
    m_queries.code = S_OK;
    EXPECT_EQ(row.shown, row.raise(*this)) << row.name;
  }
}

HV_BOTH_KINDS(SessionErrors);

}  // namespace
}  // namespace hv::vex
