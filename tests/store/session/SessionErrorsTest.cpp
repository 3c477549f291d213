// tests/store/session/SessionErrorsTest.cpp - every message of a session and of its browse
// settings, raised by name, and a session over a store that fails, refuses and answers null.
#include <storefabric/IDataStoreContext.h>

#include "OddStore.h"
#include "store/session/DataStoreImpl.h"
#include "store/session/DataStoreInt.h"
#include "store/session/ISessionQueries.h"
#include "tests/store/CampaignFixture.h"

namespace hv::vex {
namespace {

using test::kForeign;
using test::kGone;
using test::kProtected;
using test::kUnknown;

/// Queries that are query texts, and that give the one code everywhere.
class TextQueries final : public ISessionQueries {
 public:
  Result Create(const QueryGround&, IAdvancedQueryImpl**) override { return code; }
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
    // Nobody looks behind it.
    *query = reinterpret_cast<IAdvancedQueryImpl*>(this);
    return object ? S_OK : VEX_E_NOT_STORE_QUERY;
  }

  Result code = S_OK;
  std::vector<std::int32_t> limits;
};

class SessionErrors : public test::CampaignTest {
 protected:
  SessionErrors() {
    InstallSessionQueries(&m_queries);
    EXPECT_EQ(S_OK, m_session->OpenByStore(m_odd.Get()));
    m_face = MakeRef<CDataStoreInt>(m_session);
    m_script.Set("self", Variant::Object(m_store.Get()));
    m_script.Set("odd", Variant::Object(m_face.Get()));
    m_script.Set("unconnected",
                 Variant::Object(MakeRef<CDataStoreInt>(MakeRef<CDataStoreImpl>()).Get()));
    m_script.Set("other", Variant::Object(Open("store/bench").Get()));
    m_script.Set("readOnly",
                 Variant::Object(Open("browse/campaign", "<readonly>yes</readonly>").Get()));
  }
  ~SessionErrors() override { InstallSessionQueries(nullptr); }

  TextQueries m_queries;
  Ref<test::OddStore> m_odd = MakeRef<test::OddStore>(Core());
  Ref<CDataStoreImpl> m_session = MakeRef<CDataStoreImpl>();
  Ref<CDataStoreInt> m_face;
};
HV_BOTH_KINDS(SessionErrors);

TEST_P(SessionErrors, AreThoseOfThePublishedList) {
  const std::string type =
      "357 The parameter Type of the Create function must be an Entity<DataStore> or a string with "
      "the name of an Entity.";
  const auto text = [](const std::string& t, const std::string& method, const std::string& arg) {
    return "212 The text " + t + " is not a valid value for the argument " + method +
           " of the method " + arg + ".";
  };
  const auto mustBe = [](const std::string& arg, const std::string& method,
                         const std::string& kind) {
    return "222 The argument " + arg + " of the method " + method + " must be a " + kind + ".";
  };
  m_script.Set(
      "foreignList",
      Variant::Unknown(
          Ref<IInstList>::Adopt(CoreOf(*Open("store/bench"))->GetInstances(u"/#Test")).Get()));
  for (const std::string member :
       {"PluginName", "Parameters", "Model", "RootElements", "Results", "GetVexStore",
        "BrowseSettings", "IsModified", "IsQuerySupported", "Save", "GetContext"}) {
    EXPECT_EQ(kUnknown, Show("unconnected." + member)) << member;
  }
  Expect(
      {{"unconnected.Name", ""},
       {"CreateElement('Run','')", test::kNoName},
       {"readOnly.CreateElement('Run','a')", kProtected},
       {"CreateElement(array,'a')", type},
       {"CreateElement('Nothing','a')", type},
       {"CreateElement('aomeasurement','a')", type},
       {"GetElementByKey('Run:99')", text("Run:99", "GetElementByKey", "Key")},
       // Not among them: 341, as what belongs to the store always gives an element.
       {"CreateElementsByInstList(null)",
        mustBe("InstanceList", "CreateElementsByInstList", "InstList")},
       {"CreateElementsByInstList(foreignList)", kForeign},
       {"GetElementList('Nothing','a')", text("Nothing", "GetElementList", "ReturnType")},
       {"GetElementList('Run','Name =')", text("Name =", "GetElementList", "QueryExpression")},
       {"GetElementList('Run','a',self)", mustBe("Bool", "GetElementList", "OdsConform")},
       {"SaveQuery(null,'q.xml')", mustBe("Query<DataStore>", "SaveQuery", "Query")},
       {"Search(null)", mustBe("Query<DataStore>", "Search", "Query")},
       {"Set run = GetElementByKey('Run:4')", "Run 1"},
       {"DeleteElement(run)", "empty"},
       {"DeleteElement(run)", kGone},
       {"readOnly.DeleteElement(readOnly.GetElementByKey('Run:5'))", kProtected},
       {"DeleteElement(other.RootElements(0))", kForeign},
       {"DeleteElement(self)", mustBe("Element<DataStore>", "DeleteElement", "Val")},
       {"GetElementByDataChannel(self)",
        mustBe("Channel<Data>", "GetElementByDataChannel", "Object")},
       {"odd.GetContext", "372 This data store does not support context parameters."},
       {"BrowseSettings = other.BrowseSettings",
        "371 The browse path does not match the model of the data store."},
       {"BrowseSettings = self", mustBe("BrowseSettings", "SetBrowseSettings", "BrowseSettings")},
       {"Set settings = BrowseSettings", "object"},
       {"settings.GetParent(other.RootElements(0))", kForeign},
       {"settings.GetParent(self)", mustBe("Element<DataStore>", "GetParent", "Element")},
       {"settings.GetParent(run)", kGone},
       {"settings.GetParent(CreateElement('Run','alone'))", kUnknown},
       {"settings.GetChildren(other.RootElements(0))", kForeign},
       {"settings.GetChildren(null)", mustBe("Element<DataStore>", "GetChildren", "Element")},
       {"settings.GetBrowseEntity(other.RootElements(0))", kForeign},
       {"settings.GetBrowseEntity(self)",
        mustBe("Element<DataStore>", "GetBrowseEntity", "Element")},
       // RootEntity only reads what the settings hold, so that its rows can't be reached.
       {"Set oddSettings = odd.BrowseSettings", "object"}});
  m_odd->hasQmdModel = true;
  EXPECT_EQ("373 Do not change the browse settings for this data store.",
            Show("odd.BrowseSettings = oddSettings"));
  m_odd->hasQmdModel = false;

  const auto timedOut = [](const std::string& operation) {
    return "241 The operation " + operation + " was timed out.";
  };
  const std::string notSaved =
      "344 Your data cannot be saved. Maybe the data is in files that are readonly.";
  const std::pair<std::int32_t, test::Line> kThrown[] = {
      {-1, {"odd.PluginName", kUnknown}},
      {-800, {"odd.PluginName", "207 The application is out of memory."}},
      {-1008, {"odd.PluginName", timedOut("GetPluginName")}},
      {-1008, {"odd.Name", timedOut("Name")}},
      {-1008, {"odd.Parameters", timedOut("GetParameters")}},
      {-1008, {"odd.RootElements", kUnknown}},
      {-1008, {"odd.IsQuerySupported", timedOut("IsQuerySupported")}},
      {-1008, {"odd.IsModified", timedOut("IsModified")}},
      {-1008, {"odd.GetContext", timedOut("GetContext")}},
      {-1, {"odd.Refresh", "empty"}},
      {-1, {"odd.BrowseSettings = oddSettings", "empty"}},
      {-1303, {"odd.Save", notSaved}},  // why makes no difference
      {-1302, {"odd.Save", notSaved}},
      {-1008, {"odd.Save", notSaved}},
      {-800, {"odd.Save", notSaved}},
      {-1008, {"oddSettings.RootElements", timedOut("RootElements")}},
  };
  for (const auto& [code, line] : kThrown) {
    m_odd->thrown = code;
    Expect({line});
  }
  m_odd->thrown = 0;

  const std::string noQuery = mustBe("Query<DataStore>", "Search", "Query");
  const std::string path = "369 The query does not match the browse path.";
  const std::string store = "334 The query is not compatible with the connected data store.";
  const std::pair<Result, test::Line> kQueries[] = {
      {E_NOTIMPL, {"CreateQuery", "245 CreateQuery not implemented."}},
      {VEX_E_QUERY_BROWSE_PATH, {"LoadQuery('q.xml')", path}},
      {VEX_E_BAD_FILE,
       {"LoadQuery('q.xml')",
        "340 The file q.xml could not be opened or does not contain a Query<DataStore>."}},
      {VEX_E_OTHER_STORE, {"LoadQuery('q.xml')", store}},
      {E_FAIL,
       {"SaveQuery(self,'q.xml')",
        "358 Cannot write the file q.xml. Maybe the file is write protected or the path does not "
        "exist."}},
      {VEX_E_EMPTY_QUERY, {"Search(self)", "265 Searching with an empty query is not possible."}},
      {VEX_E_QUERY_BROWSE_PATH, {"Search(self)", path}},
      {VEX_E_LOGIC_UNSUPPORTED,
       {"Search(self)",
        "325 The data store campaign does not support queries with a custom logical operation "
        "(e.g. with \"OR\")."}},
      {VEX_E_OR_UNSUPPORTED,
       {"Search(self)",
        "325 The data store campaign does not support multiple values connected with OR."}},
      {VEX_E_INVALID_PROPERTY,
       {"Search(self)", "328 The query contains at least one invalid property."}},
      {VEX_E_NOT_STORE_QUERY, {"Search(self)", noQuery}},
      {E_HANDLE, {"Search(self)", noQuery}},
      {VEX_E_OTHER_STORE, {"Search(self)", store}},
  };
  for (const auto& [code, line] : kQueries) {
    m_queries.code = code;
    Expect({line});
  }
}

TEST_P(SessionErrors, SearchKeepsAsManyHitsAsTheLimitSays) {
  Expect({{"Set results = Results", "[]"},
          {"results.MaxCount = 1", "empty"},
          {"Search(self)", "empty"},
          {"results", "[Cold start]"},
          {"results.IsIncomplete", "1"},
          {"results.MaxCount = 2", "empty"},
          {"Search(self)", "empty"},
          {"results", "[Cold start|Warm start]"},
          {"results.IsIncomplete", "0"},
          {"results.MaxCount = 3", "empty"},
          {"Search(self)", "empty"},
          {"results", "[Cold start|Warm start]"}});
  EXPECT_EQ((std::vector<std::int32_t>{1, 2, 3}), m_queries.limits);
  m_queries.code = VEX_E_EMPTY_QUERY;
  Expect({{"Search(self)", "265 Searching with an empty query is not possible."},
          {"results.Count", "2"}});  // the hits of the search before
}

TEST_P(SessionErrors, HaveCodesForThoseWhoAskByFace) {
  const std::pair<std::int32_t, Result> kCodes[] = {
      {-800, E_OUTOFMEMORY}, {-1008, E_PENDING},    {-1302, VEX_E_WRITE_PROTECTED},
      {-1906, E_UNEXPECTED}, {-4104, E_UNEXPECTED}, {-1, E_UNEXPECTED},
  };
  for (const auto& [thrown, code] : kCodes) {
    m_odd->thrown = thrown;
    WString text;
    std::int32_t number = 0;
    EXPECT_EQ(code, m_face->get_Parameters(&text)) << thrown;
    EXPECT_EQ(code, m_face->IsModified(&number)) << thrown;
  }
  m_odd->thrown = 0;
}

TEST_P(SessionErrors, MayBeOpenedAgain) {
  m_odd->thrown = -1;  // a model that can't be read
  EXPECT_TRUE(Failed(m_session->OpenByStore(m_odd.Get())));
  m_odd->thrown = 0;
  EXPECT_EQ(S_OK, m_session->OpenByStore(m_odd.Get()));
  EXPECT_EQ("[Cold start|Warm start]", Show("odd.RootElements"));
}

TEST_P(SessionErrors, ArgumentsThatMayBeLeftOutHaveTheirDefaults) {
  const std::string wholeTree = "HV_MEASUREMENT_TREE";
  for (const auto& [line, saved] : {std::pair<std::string, std::string>{"odd.Save", wholeTree},
                                    {"odd.Save(missing)", wholeTree},
                                    {"odd.Save(empty)", wholeTree},
                                    {"odd.Save('')", wholeTree},
                                    {"odd.Save(array)", wholeTree},
                                    {"odd.Save('QUICK')", "QUICK"},
                                    {"odd.Save(5)", "5"}}) {
    EXPECT_EQ("empty", Show(line)) << line;
    EXPECT_EQ(saved, cor::ToUtf8(WString(m_odd->savedMode))) << line;
  }
  Variant eight = Variant::Text(u"8");
  m_script.Set("byReference", Variant::RefTo(&eight));
  for (const auto& [line, mode] : {std::pair<std::string, int>{"odd.GetContext", 100},
                                   {"odd.GetContext(missing)", 100},
                                   {"odd.GetContext('x')", 100},
                                   {"odd.GetContext(7)", 7},
                                   {"odd.GetContext(byReference)", 8}}) {
    EXPECT_EQ(372, m_script.Run(line).error.number) << line;
    EXPECT_EQ(mode, m_odd->contextMode) << line;
  }
  // A truth value, or none. This store has no queries.
  for (const std::string value : {"missing", "empty", "null", "0", "2", "'True'", "'x'", "array"}) {
    EXPECT_EQ(value == "'x'" || value == "array" ? E_INVALIDARG : E_NOINTERFACE,
              m_script.Run("odd.GetElementList('Run','*'," + value + ")").error.code)
        << value;
  }
  EXPECT_EQ("1", Show("odd.IsModified")) << "the store says another number";
  m_odd->hasEnvironment = false;
  EXPECT_EQ("0", Show("odd.IsQuerySupported")) << "nobody can be asked";
}

}  // namespace
}  // namespace hv::vex
