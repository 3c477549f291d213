// tests/query/files/QueryInfoSetTest.cpp - the objects with which hosts read and write query files.
#include <csignal>

#include <sys/resource.h>

#include "query/files/IColumnCollectionImpl.h"
#include "query/objects/QueryInt.h"
#include "tests/query/files/FilesFixture.h"

namespace hv::vex {
namespace {

class Columns final : public cor::Counted<IColumnCollectionImpl> {
 public:
  bool IsOfStore() override { return isOfStore; }
  Result GetStored(std::vector<StoredReturnType>* out) override {
    *out = stored;
    return answer;
  }
  Result SetStored(const std::vector<StoredReturnType>& in) override {
    stored = in;
    return answer;
  }
  std::vector<StoredReturnType> stored;
  bool isOfStore = true;
  Result answer = S_OK;
};

class QueryInfoSet : public QueryFiles {
 protected:
  static Ref<IDispatch> Automation(const Ref<CDataStoreAdvancedQueryImpl>& query) {
    return MakeRef<CDataStoreQueryInt>(query).As<IDispatch>();
  }
  WString PathOf(std::string_view name) const {
    return cor::FromUtf8(m_folder.File(name).string());
  }
};

TEST_F(QueryInfoSet, HoldsAQueryAndColumnsBesideEachOther) {
  Fill("Title|=|x");
  const auto columns = MakeRef<Columns>();
  columns->stored = {{u"measurement", 120, true, {{u"measurement", u"name", 80}, {u"", u"id", -1}}},
                     {u"measurement.test", 60, false, {}}};
  const auto saver = MakeRef<CDataStoreQueryInfoSetSaver>();
  // The automation object is as good as the body.
  EXPECT_EQ(S_OK, saver->SaveQuery(Automation(m_query).Get()));
  EXPECT_EQ(S_OK, saver->SaveColumns(columns.Get()));
  EXPECT_EQ(S_OK, saver->SaveToPath(PathOf("a.query")));

  const auto loader = MakeRef<CDataStoreQueryInfoSetLoader>();
  EXPECT_EQ(S_OK, loader->OpenByPath(PathOf("a.query"), kQueryInfoSetVersion));
  const auto query = MakeRef<CDataStoreAdvancedQueryImpl>(*m_store, nullptr);
  EXPECT_EQ(S_OK, loader->LoadQuery(Automation(query).Get()));
  EXPECT_EQ("C1 MeaResult.Title = 8:x\nC1", Described(*query));
  const auto read = MakeRef<Columns>();
  EXPECT_EQ(S_OK, loader->LoadColumns(read.Get()));
  ASSERT_EQ(2u, read->stored.size());
  EXPECT_EQ(std::u16string_view(u"measurement"), read->stored[0].returnTypeName);
  EXPECT_EQ(120, read->stored[0].firstColumnWidth);
  EXPECT_TRUE(read->stored[0].automaticColumns);
  ASSERT_EQ(2u, read->stored[0].columns.size());
  EXPECT_EQ(std::u16string_view(u"name"), read->stored[0].columns[0].property);
  EXPECT_EQ(std::u16string_view(u""), read->stored[0].columns[1].typeName);
  EXPECT_EQ(-1, read->stored[0].columns[1].width);
  EXPECT_FALSE(read->stored[1].automaticColumns);
  EXPECT_NE(std::string::npos,
            m_folder.Read("a.query").find("<asamcolumn_manager>\n  <version>6574665<"));
}

TEST_F(QueryInfoSet, TellsWhatIsWrong) {
  const auto detached = MakeRef<CDataStoreAdvancedQueryImpl>(*m_store, nullptr);
  EXPECT_EQ(S_OK, detached->Detach());
  const auto columns = MakeRef<Columns>();
  const auto foreign = MakeRef<Columns>();
  foreign->isOfStore = false;
  foreign->answer = E_ACCESSDENIED;
  const auto stream = MakeRef<TextHolder>();
  const auto failing = MakeRef<TextHolder>();
  failing->answer = E_ACCESSDENIED;

  const auto saver = MakeRef<CDataStoreQueryInfoSetSaver>();
  EXPECT_EQ(E_INVALIDARG, saver->Init(100));
  EXPECT_EQ(E_INVALIDARG, saver->SaveQuery(nullptr));
  EXPECT_EQ(VEX_E_NOT_STORE_QUERY, saver->SaveQuery(columns.Get()));
  EXPECT_EQ(E_INVALIDARG, saver->SaveColumns(nullptr));
  EXPECT_EQ(VEX_E_NOT_STORE_COLUMNS, saver->SaveColumns(m_query.Get()));
  EXPECT_EQ(VEX_E_NOT_STORE_COLUMNS, saver->SaveColumns(foreign.Get()));
  EXPECT_EQ(E_INVALIDARG, saver->SaveToStream(nullptr));
  EXPECT_EQ(E_ACCESSDENIED, saver->SaveToStream(failing.Get()));
  EXPECT_EQ(E_FAIL, saver->SaveToPath(PathOf("none/a.query")));
  EXPECT_EQ(VEX_E_NO_FILE_NAME, saver->SaveToPath(u""));
  EXPECT_EQ(S_OK, saver->SaveToPath(PathOf("nothing.query")));
  EXPECT_EQ(S_OK, saver->SaveQuery(detached.Get()));  // its names are still there
  EXPECT_EQ(S_OK, saver->SaveToPath(PathOf("query.query")));
  WString text;
  EXPECT_EQ(S_OK, saver->GetModelParameter(&text));
  EXPECT_EQ("<model>http://www.halvorn.example/DataModels/VEX/Query/1_2</model>",
            cor::ToUtf8(text));

  const auto loader = MakeRef<CDataStoreQueryInfoSetLoader>();
  EXPECT_EQ(E_UNEXPECTED, loader->CheckReady());
  EXPECT_EQ(E_UNEXPECTED, loader->LoadQuery(nullptr));
  EXPECT_EQ(E_UNEXPECTED, loader->LoadColumns(columns.Get()));
  EXPECT_EQ(E_INVALIDARG, loader->OpenByPath(u"", kQueryInfoSetVersion));
  EXPECT_EQ(E_INVALIDARG, loader->OpenByPath(PathOf("none.query"), kQueryInfoSetVersion));
  EXPECT_EQ(E_INVALIDARG, loader->OpenByPath(PathOf("query.query"), 100));
  EXPECT_EQ(E_INVALIDARG, loader->OpenByStream(nullptr, kQueryInfoSetVersion));
  EXPECT_EQ(VEX_E_NO_FILE_NAME, loader->OpenByStream(stream.Get(), kQueryInfoSetVersion));
  EXPECT_EQ(E_ACCESSDENIED, loader->OpenByStream(failing.Get(), kQueryInfoSetVersion));
  EXPECT_EQ(S_OK, loader->OpenByPath(PathOf("nothing.query"), kQueryInfoSetVersion));
  EXPECT_EQ(E_POINTER, loader->LoadQuery(nullptr));
  EXPECT_EQ(VEX_E_NO_QUERY, loader->LoadQuery(m_query.Get()));
  EXPECT_EQ(VEX_E_NO_COLUMNS, loader->LoadColumns(columns.Get()));
  EXPECT_EQ(S_OK, loader->OpenByPath(PathOf("query.query"), kQueryInfoSetVersion));
  EXPECT_EQ(E_INVALIDARG, loader->LoadQuery(columns.Get()));
  EXPECT_EQ(VEX_E_NO_STORE, loader->LoadQuery(detached.Get()));
  EXPECT_EQ(VEX_E_NO_COLUMNS, loader->LoadColumns(columns.Get()));
  EXPECT_EQ(S_OK, saver->SaveColumns(columns.Get()));
  EXPECT_EQ(S_OK, saver->SaveToPath(PathOf("query.query")));
  EXPECT_EQ(S_OK, loader->OpenByPath(PathOf("query.query"), kQueryInfoSetVersion));
  EXPECT_EQ(E_INVALIDARG, loader->LoadColumns(m_query.Get()));
  EXPECT_EQ(E_ACCESSDENIED, loader->LoadColumns(foreign.Get()));
}

TEST_F(QueryInfoSet, LeavesTheOldFileWhenWritingFails) {
  Fill("Title|=|x");
  ASSERT_EQ(S_OK, SaveQueryFile(m_query.Get(), PathOf("a.query")));
  const std::string old = m_folder.Read("a.query");
  rlimit limit{};
  ASSERT_EQ(0, getrlimit(RLIMIT_FSIZE, &limit));
  const rlimit small{old.size() / 2, limit.rlim_max};
  const auto earlier = std::signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &small);
  EXPECT_EQ(E_FAIL, SaveQueryFile(m_query.Get(), PathOf("a.query")));
  setrlimit(RLIMIT_FSIZE, &limit);
  std::signal(SIGXFSZ, earlier);
  EXPECT_EQ(VEX_E_NOT_STORE_QUERY, SaveQueryFile(nullptr, PathOf("a.query")));
  EXPECT_EQ(old, m_folder.Read("a.query"));
  EXPECT_EQ(1, std::distance(std::filesystem::directory_iterator(m_folder.Path()), {}));
}

}  // namespace
}  // namespace hv::vex
