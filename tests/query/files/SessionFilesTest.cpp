// tests/query/files/SessionFilesTest.cpp - query files by name, as a script works with them.
#include "query/objects/SessionQueries.h"
#include "store/session/DataStoreImpl.h"
#include "store/session/DataStoreInt.h"
#include "tests/query/files/FilesFixture.h"
#include "tests/store/session/CallByName.h"

namespace hv::vex {
namespace {

using test::Call;
using test::CallByName;

class SessionFiles : public QueryFiles {
 protected:
  SessionFiles() { InstallSessionQueries(&StoreQueries()); }
  ~SessionFiles() override { InstallSessionQueries(nullptr); }

  static Ref<IDispatch> Session(IStore& store) {
    const auto session = MakeRef<CDataStoreImpl>();
    EXPECT_EQ(S_OK, session->OpenByStore(&store));
    return MakeRef<CDataStoreInt>(session).As<IDispatch>();
  }
  static Ref<IDispatch> ObjectOf(const Call& call) {
    EXPECT_EQ(S_OK, call.code) << cor::ToUtf8(call.error.text);
    return call.result.Is(VT_DISPATCH) ? Ref<IDispatch>::Share(call.result.AsObject()) : nullptr;
  }
  Variant Path(std::string_view name) const {
    return Variant::Text(cor::FromUtf8((m_folder / name).string()));
  }
};

TEST_F(SessionFiles, SaveAndLoadByName) {
  const Ref<IDispatch> session = Session(*m_store);
  const Ref<IDispatch> query = ObjectOf(CallByName(*session, u"CreateQuery"));
  ASSERT_TRUE(query);
  const Ref<IDispatch> conditions = ObjectOf(CallByName(*query, u"Conditions"));
  ObjectOf(CallByName(*conditions, u"Add",
                      {Variant::Text(u"MeaResult"), Variant::Text(u"Title"), Variant::Text(u"="),
                       Variant::Text(u"a OR b")}));
  const Variant object = Variant::Object(query.Get());
  EXPECT_EQ(S_OK, CallByName(*session, u"SaveQuery", {object, Path("q & <a>.vex")}).code);

  const Ref<IStore> other = OpenFile(HV_TEST_DATA_DIR "/browse/campaign.atfx");
  const Ref<IDispatch> there = Session(*other);
  const Ref<IDispatch> loaded = ObjectOf(CallByName(*there, u"LoadQuery", {Path("q & <a>.vex")}));
  ASSERT_TRUE(loaded);
  EXPECT_TRUE(CallByName(*loaded, u"ReturnType").result.AsText().EqualsExact(u"Run"));
  const Ref<IDispatch> found = ObjectOf(CallByName(*loaded, u"Conditions"));
  const Ref<IDispatch> first = ObjectOf(CallByName(*found, u"Item", {Variant::I4(1)}));
  EXPECT_TRUE(CallByName(*first, u"Type").result.AsText().EqualsExact(u"Run"));
  EXPECT_EQ(2, CallByName(*first, u"Size").result.AsInt64());

  std::ofstream(m_folder / "bad.vex") << Document("<returntype_name>wheel</returntype_name>");
  const std::string folder = m_folder.string() + "/";
  const struct {
    const char* name;
    std::u16string_view member;
    std::vector<Variant> arguments;
    std::int32_t number;
    std::string text;
  } kErrors[] = {
      {"NoFile",
       u"LoadQuery",
       {Path("none.vex")},
       340,
       "The file " + folder +
           "none.vex could not be opened or does not contain a Query<DataStore>."},
      {"OtherNames",
       u"LoadQuery",
       {Path("bad.vex")},
       340,
       "The file " + folder +
           "bad.vex could not be opened or does not contain a Query<DataStore>."},
      {"NoFolder",
       u"SaveQuery",
       {object, Path("none/q.vex")},
       358,
       "Cannot write the file " + folder +
           "none/q.vex. Maybe the file is write protected or the path does not exist."},
      {"NoQuery",
       u"SaveQuery",
       {Variant::Object(session.Get()), Path("q.vex")},
       222,
       "The argument Query<DataStore> of the method SaveQuery must be a Query."},
  };
  for (const auto& row : kErrors) {
    SCOPED_TRACE(row.name);
    const Call call = CallByName(*session, row.member, row.arguments);
    EXPECT_EQ(row.number, call.error.number);
    EXPECT_EQ(row.text, cor::ToUtf8(call.error.text));
  }
}

}  // namespace
}  // namespace hv::vex
