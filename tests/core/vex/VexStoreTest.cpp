// tests/core/vex/VexStoreTest.cpp - documents as stores, through the seam.
#include <gtest/gtest.h>

#include <csignal>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <storefabric/Ref.h>

#include "core/objects/EnvironmentObject.h"
#include "core/plugins/vex/DocumentModels.h"
#include "core/plugins/vex/VexPlugin.h"
#include "store/core/Seam.h"
#include "tests/support/TempFolder.h"
#include "tests/support/Thrown.h"
#include "xml/ConnectParams.h"

namespace hv::vex::engine {
namespace {

constexpr std::u16string_view kModel =
    u"<model>http://www.halvorn.example/DataModels/VEX/Query/1_2</model>";
constexpr std::u16string_view kTarget =
    u"<targetmodels mode=\"alwaysusetarget\">http://www.halvorn.example/DataModels/VEX/Query/1_2"
    u"</targetmodels>";

class VexStore : public ::testing::Test {
 protected:
  Ref<IStore> New(std::u16string_view parameters = kModel) {
    return Ref<IStore>::Adopt(
        m_environment->CreateStore(u"vex", parameters, u"", 0, CreateMode::Temporary));
  }
  /// A query with conditions whose values are "0", "1" ...
  Ref<IStore> WithConditions(int count, std::u16string_view logic = u"C1") {
    Ref<IStore> store = New();
    const auto model = Ref<IModel>::Adopt(store->GetModel());
    const auto entity = Ref<IEntity>::Adopt(model->GetEntityByName(u"asamquery_manager"));
    const auto manager = Ref<IInstance>::Adopt(store->CreateInstance(entity.Get()));
    const auto query = Ref<IInstance>::Adopt(manager->CreateRelated(u"queries"));
    query.As<IContainer>()->SetString(u"logic", logic);
    for (int i = 0; i < count; ++i) {
      const auto condition = Ref<IInstance>::Adopt(query->CreateRelated(u"conditions"));
      condition.As<IContainer>()->SetString(u"value", cor::FromUtf8(std::to_string(i)));
    }
    return store;
  }
  static std::uint64_t Count(const Ref<IStore>& store, std::u16string_view path) {
    return Ref<IInstList>::Adopt(store->GetInstances(path))->GetCount();
  }
  std::u16string FileTag(std::string_view name) const {
    xml::ConnectParams parameters;
    xml::AppendFilenameTag(parameters, cor::FromUtf8(m_folder.File(name).string()));
    return parameters.str();
  }
  void Write(const Ref<IStore>& store, std::string_view name) {
    m_environment->WriteStore(store.Get(), FileTag(name), u"VEX", 0);
  }
  Ref<IStore> Open(std::string_view name) {
    return Ref<IStore>::Adopt(m_environment->CreateStore(u"VEX", FileTag(name).append(kTarget), u"",
                                                         0, CreateMode::OpenFile));
  }
  const hv::test::TempFolder m_folder;
  const Ref<EnvironmentObject> m_environment =
      MakeRef<EnvironmentObject>(std::span(&kVexPlugin, 1), &FindDocumentModel);
};

TEST_F(VexStore, IsWrittenOpenedAndAnswersPaths) {
  Write(WithConditions(2), "a & <b>.vex");
  const Ref<IStore> store = Open("a & <b>.vex");
  const auto model = Ref<IModel>::Adopt(store->GetModel());
  EXPECT_NE(0, model->HasModelPart(u"/DataModels/VEX/Query/1_2"));
  EXPECT_NE(0, model->HasModelPart(u"http://www.halvorn.example/DataModels/VEX/Query/1_2"));
  EXPECT_EQ(0, model->HasModelPart(u"/DataModels/VEX/QMD/1_0"));
  EXPECT_EQ(1u, Count(store, u"/##ASAMQuery_Manager"));
  EXPECT_EQ(1u, Count(store, u"/##asamquery_manager.queries"));
  EXPECT_EQ(2u, Count(store, u"/#asamquery_manager.queries.conditions"));
  EXPECT_EQ(1u, Count(store, u"/##asamcondition(value='1').asamquery"));
  EXPECT_EQ(0u, Count(store, u"/##asamcolumn_manager.column_configs"));

  // Read-only stores refuse every kind of change.
  const auto query = Ref<IInstance>::Adopt(store->GetInstance(u"asamquery:1"));
  EXPECT_NE(0, store->IsReadOnly());
  for (const std::function<void()>& change : std::initializer_list<std::function<void()>>{
           [&] { query.As<IContainer>()->SetString(u"logic", u"x"); },
           [&] { query->CreateRelated(u"conditions"); }, [&] { query->Delete(); },
           [&] { store->Save(u""); }}) {
    EXPECT_TRUE(Thrown(change).starts_with("-1302 "));
  }
}

TEST_F(VexStore, KeepsItsTextInAHostsHands) {
  const Ref<IStore> made = WithConditions(3);
  WString text;
  m_environment->GetStoreText(text, made.Get(), u"VEX");
  Write(made, "a.vex");
  EXPECT_EQ(m_folder.Read("a.vex"), cor::ToUtf8(text));
  const auto again = Ref<IStore>::Adopt(m_environment->OpenStoreText(u"VEX", kTarget, text));
  EXPECT_EQ(3u, Count(again, u"/##asamcondition"));
  EXPECT_EQ("-1301 text:1: not a document of instances: the root element is 'a'",
            Thrown([&] { m_environment->OpenStoreText(u"VEX", kTarget, u"<a/>"); }));
}

TEST_F(VexStore, KnowsItsModelsAndPartsOfSeveralEntities) {
  for (const std::u16string_view path :
       {u"/DataModels/VEX/Query/1_2", u"/DataModels/VEX/ContextParameter/1_0"}) {
    const auto model =
        Ref<IModel>::Adopt(New(u"<model>" + std::u16string(path) + u"</model>")->GetModel());
    EXPECT_NE(0, model->HasModelPart(path));
  }
  const Ref<IStore> store = New(u"<model>/DataModels/VEX/BrowseSettings/1_0</model>");
  const auto model = Ref<IModel>::Adopt(store->GetModel());
  const auto make = [&](std::u16string_view name) {
    const auto entity = Ref<IEntity>::Adopt(model->GetEntityByName(name));
    return Ref<IInstance>::Adopt(store->CreateInstance(entity.Get()));
  };
  const Ref<IInstance> settings = make(u"browse_settings");
  const Ref<IInstance> custom = make(u"customer_icon_info");
  settings->Link(u"icon_list", make(u"icon_info").Get());
  settings->Link(u"icon_list", custom.Get());
  settings->Link(u"icon_list", make(u"icon_info").Get());
  EXPECT_EQ("-1004 the instance's entity is not the reference's",
            Thrown([&] { settings->Link(u"icon_list", make(u"level").Get()); }));
  EXPECT_TRUE(Thrown([&] { settings->CreateRelated(u"icon_list"); }).starts_with("-1001 "));
  WString text;
  m_environment->GetStoreText(text, store.Get(), u"VEX");
  const auto again = Ref<IStore>::Adopt(m_environment->OpenStoreText(u"VEX", u"", text));
  const auto icons = Ref<IInstList>::Adopt(again->GetInstances(u"/#browse_settings.icon_list"));
  WString keys;
  icons->GetAddressText(keys);
  EXPECT_EQ("icon_info:1\ncustomer_icon_info:1\nicon_info:2\n", cor::ToUtf8(keys));
}

TEST_F(VexStore, TellsWhyItCantBeMadeOrOpened) {
  EXPECT_EQ("-1003 there is no model \"/DataModels/VEX/Query/9_9\"",
            Thrown([&] { New(u"<model>/DataModels/VEX/Query/9_9</model>"); }));
  EXPECT_EQ("-1301 no file name is given", Thrown([&] {
              m_environment->CreateStore(u"VEX", kTarget, u"", 0, CreateMode::OpenFile);
            }));
  EXPECT_EQ("-1301 " + m_folder.File("none.vex").string() + ": No such file or directory",
            Thrown([&] { Open("none.vex"); }));
  EXPECT_EQ("no error",
            Thrown([&] { New(std::u16string(kModel) + FileTag("new.vex"))->Save(u""); }));
  EXPECT_EQ("-1304 " + m_folder.File("new.vex").string() + ": exists already",
            Thrown([&] { New(std::u16string(kModel) + FileTag("new.vex")); }));
}

TEST_F(VexStore, LeavesTheOldFileWhenWritingFails) {
  Write(WithConditions(1), "a.vex");
  const std::string old = m_folder.Read("a.vex");
  const auto failsWith = [&](const Ref<IStore>& store, std::string_view code) {
    EXPECT_TRUE(Thrown([&] { Write(store, "a.vex"); }).starts_with(code));
    EXPECT_EQ(old, m_folder.Read("a.vex"));
    EXPECT_EQ("a.vex ", m_folder.Listing());
  };
  failsWith(WithConditions(1, u"a\x01"), "-1303 'logic' of 'asamquery' holds a control character");
  failsWith(WithConditions(1, std::u16string(1, u'\xD800')), "-1303 'logic'");
  rlimit limit{};
  ASSERT_EQ(0, getrlimit(RLIMIT_FSIZE, &limit));
  const rlimit small{200, limit.rlim_max};
  const auto earlier = std::signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &small);
  failsWith(WithConditions(50), "-1303 ");
  setrlimit(RLIMIT_FSIZE, &limit);
  std::signal(SIGXFSZ, earlier);
  EXPECT_TRUE(Thrown([&] { Write(WithConditions(1), "none/a.vex"); }).starts_with("-1303 "));
}

TEST_F(VexStore, IsTheOldOrTheNewFileWhenItsWriterDies) {
  Write(WithConditions(1), "a.vex");
  for (int i = 0; i < 20; ++i) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      const Ref<IStore> large = WithConditions(2000);
      const Ref<IStore> small = WithConditions(1);
      for (;;) {
        Write(large, "a.vex");
        Write(small, "a.vex");
      }
    }
    usleep(static_cast<useconds_t>(20000 + 1700 * i));
    kill(child, SIGKILL);
    ASSERT_EQ(child, waitpid(child, nullptr, 0));
    const std::uint64_t count = Count(Open("a.vex"), u"/##asamcondition");
    EXPECT_TRUE(count == 1 || count == 2000) << count;
  }
}

}  // namespace
}  // namespace hv::vex::engine
