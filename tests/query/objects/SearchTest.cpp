// tests/query/objects/SearchTest.cpp - what a search raises by name, and that it says so in words.
#include "query/objects/QueryInt.h"
#include "query/objects/SessionQueries.h"
#include "store/session/DataStoreImpl.h"
#include "store/session/DataStoreInt.h"
#include "tests/query/objects/QueryFixture.h"
#include "tests/support/Script.h"

namespace hv::vex {
namespace {

using test::Get;

/// The queries of the library, with an answer to searches that a test can choose.
class ChosenAnswer final : public ISessionQueries {
 public:
  Result m_code = S_OK;

  Result Create(const QueryGround& ground, IAdvancedQueryImpl** query) override {
    return StoreQueries().Create(ground, query);
  }
  Result WriteText(const QueryGround& ground, IAdvancedQueryImpl& query, std::int32_t limit,
                   WString* text) override {
    return Failed(m_code) ? m_code : StoreQueries().WriteText(ground, query, limit, text);
  }
  Result Save(const QueryGround&, IAdvancedQueryImpl&, std::u16string_view) override {
    return E_NOTIMPL;
  }
  Result Load(const QueryGround&, std::u16string_view, IAdvancedQueryImpl**) override {
    return E_NOTIMPL;
  }
  Result Wrap(IAdvancedQueryImpl* query, ISVEXQuery** object) override {
    return StoreQueries().Wrap(query, object);
  }
  Result Unwrap(IDispatch* object, IAdvancedQueryImpl** query) override {
    return StoreQueries().Unwrap(object, query);
  }
};

class Search : public QueryTest {
 protected:
  Search() {
    InstallSessionQueries(&m_queries);
    m_store = OpenBench();
    const auto session = MakeRef<CDataStoreImpl>();
    EXPECT_EQ(S_OK, session->OpenByStore(m_store.Get()));
    m_session = MakeRef<CDataStoreInt>(session);
  }
  ~Search() override {
    m_session.Reset();
    InstallSessionQueries(nullptr);
  }
  /// Searches with conditions that nobody has checked.
  std::string Raised(std::string_view conditions, std::u16string_view logic = {}) {
    const Ref<IDispatch> query =
        Ref<IDispatch>::Share(Get(m_session.Get(), u"CreateQuery").Object());
    IAdvancedQueryImpl* logicObject = nullptr;
    EXPECT_EQ(S_OK, StoreQueries().Unwrap(query.Get(), &logicObject));
    m_query = OwnStoreQuery(logicObject);
    Fill(conditions, logic);
    return Get(m_session.Get(), u"Search", Variant::Object(query.Get())).Shown();
  }

  ChosenAnswer m_queries;
  Ref<CDataStoreInt> m_session;
};

TEST_F(Search, TellsWhatIsWrongWithAQuery) {
  constexpr struct {
    std::string_view conditions;
    std::u16string_view logic;
    const char* message;
  } kCases[] = {
      {"Size|=|1", u"", "empty"},
      {"", u"", "265 Searching with an empty query is not possible."},
      {"Name|=|", u"", "265 Searching with an empty query is not possible."},
      {"Size|=|1;Size|=|1", u"C1 AND C3",
       "298 The provided logical operation: C1 AND C3 is not valid."},
      {"Size|=|1;Size|>|1 OR 2", u"",
       "301 The operator > does not support multiple values connected with OR."},
      {"Size|=|1;Nope|=|1", u"", "328 The query contains at least one invalid property."},
      {"Time|>=|soon", u"",
       "295 Cannot execute the query, because it contains at least one condition inputted as the "
       "wrong datatype."},
      {"Size|=|many", u"", "250 Unknown error."},
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(c.message, Raised(c.conditions, c.logic)) << c.conditions;
  }
}

TEST_F(Search, HasWordsForStoresThatCanDoLess) {
  // The engine's own stores can do everything, and a path that changes is followed before it could
  // be reported: these codes come from stores and queries of others.
  const std::pair<Result, const char*> cases[] = {
      {VEX_E_LOGIC_UNSUPPORTED,
       "325 The data store bench does not support queries with a custom logical operation (e.g. "
       "with \"OR\")."},
      {VEX_E_OR_UNSUPPORTED,
       "325 The data store bench does not support multiple values connected with OR."},
      {VEX_E_VALUE_TOO_LONG,
       "270 At least one value exceeds the maximum allowed length of 0 characters."},
      {VEX_E_QUERY_BROWSE_PATH, "369 The query does not match the browse path."},
      {VEX_E_OTHER_STORE, "334 The query is not compatible with the connected data store."},
      {VEX_E_NOT_STORE_QUERY,
       "222 The argument Query<DataStore> of the method Search must be a Query."},
      {E_HANDLE, "222 The argument Query<DataStore> of the method Search must be a Query."},
      {E_PENDING, "241 The operation Search was timed out."},
  };
  for (const auto& [code, message] : cases) {
    m_queries.m_code = code;
    EXPECT_EQ(message, Raised("Size|=|1"));
  }
}

}  // namespace
}  // namespace hv::vex
