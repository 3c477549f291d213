// tests/query/files/SessionFilesTest.cpp - query files by name, as a script works with them.
#include "query/objects/SessionQueries.h"
#include "store/session/DataStoreImpl.h"
#include "store/session/DataStoreInt.h"
#include "tests/query/files/FilesFixture.h"
#include "tests/support/Script.h"

namespace hv::vex {
namespace {

using test::Eval;
using test::ExpectShown;
using test::Get;

class SessionFiles : public QueryFiles {
 protected:
  SessionFiles() { InstallSessionQueries(&StoreQueries()); }
  ~SessionFiles() override { InstallSessionQueries(nullptr); }

  static Ref<IDispatch> Session(IStore& store) {
    const auto session = MakeRef<CDataStoreImpl>();
    EXPECT_EQ(S_OK, session->OpenByStore(&store));
    return MakeRef<CDataStoreInt>(session).As<IDispatch>();
  }
  /// `session.SaveQuery(query, path)`
  std::string Saved(const Ref<IDispatch>& session, const Ref<IDispatch>& query, const char* name) {
    return Get(session.Get(), u"SaveQuery", Variant::Object(query.Get()),
               Variant::Text(cor::FromUtf8(m_folder.File(name).string())))
        .Shown();
  }
};

TEST_F(SessionFiles, SaveAndLoadByName) {
  const Ref<IDispatch> session = Session(*m_store);
  const Ref<IDispatch> query = Ref<IDispatch>::Share(Eval(session.Get(), "CreateQuery").Object());
  ExpectShown(query.Get(), {{"Conditions.Add('MeaResult','Title','=','a OR b').Name", "C1"}});
  EXPECT_EQ("empty", Saved(session, query, "q & <a>.vex"));

  const std::string folder = m_folder.Path().string() + "/";
  const Ref<IStore> other = OpenFile(HV_TEST_DATA_DIR "/browse/campaign.atfx");
  const Ref<IDispatch> there = Session(*other);
  const auto loaded = Eval(there.Get(), "LoadQuery('" + folder + "q & <a>.vex')");
  ExpectShown(loaded.Object(), {{"ReturnType", "Run"},
                                {"Conditions.Item(1).Type", "Run"},
                                {"Conditions.Item(1).Size", "2"}});

  for (const std::string& text :
       {std::string("no document"), Whole("<asamquery_manager/>"),
        Document("<returntype_name>wheel</returntype_name>"), std::string()}) {
    m_folder.Write("bad.vex", text);
    if (text.empty()) std::filesystem::remove(m_folder.File("bad.vex"));
    ExpectShown(session.Get(),
                {{"LoadQuery('" + folder + "bad.vex')",
                  "340 The file " + folder +
                      "bad.vex could not be opened or does not contain a Query<DataStore>."}});
  }
  EXPECT_EQ("358 Cannot write the file " + folder +
                "none/q.vex. Maybe the file is write protected or the path does not exist.",
            Saved(session, query, "none/q.vex"));
  EXPECT_EQ("222 The argument Query<DataStore> of the method SaveQuery must be a Query.",
            Saved(session, session, "q.vex"));
}

}  // namespace
}  // namespace hv::vex
