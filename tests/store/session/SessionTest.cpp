// tests/store/session/SessionTest.cpp - a session with a store of the real engine.
#include <storefabric/IBrowseSettings.h>
#include <storefabric/IDataStore.h>
#include <storefabric/IDataStoreContext.h>
#include <storefabric/IDataStoreModel.h>
#include <storefabric/ISVEXQuery.h>
#include <storefabric/IStoreElement.h>

#include "CallByName.h"
#include "cor/Counted.h"
#include "plugins/TestConfiguration.h"
#include "store/core/Seam.h"
#include "store/session/DataStoreEnvironmentInt.h"
#include "store/session/DataStoreImpl.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

namespace hv::vex {
namespace {

using test::Call;
using test::CallByName;
using test::TestConfiguration;

class Session : public ::testing::Test {
 protected:
  Session() : m_configuration(HV_BINARY_DIR "/lib") {
    m_alive = cor::LiveObjectCount();
    m_file = std::filesystem::temp_directory_path() /
             ("storefabric-session-" + std::to_string(::getpid()) + ".atfx");
    std::filesystem::copy_file(HV_TEST_DATA_DIR "/store/bench.atfx", m_file,
                               std::filesystem::copy_options::overwrite_existing);
    m_parameter = u"<filename>" + m_file.u16string() + u"</filename>";
    Ref<IDispatch> made;
    EXPECT_EQ(S_OK, CDataStoreEnvironmentInt::Create(made.Put()));
    m_store = Open(*made.As<IDataStoreEnvironment>().Get());
  }
  ~Session() override {
    m_store.Reset();
    EXPECT_EQ(m_alive, cor::LiveObjectCount());
    EXPECT_EQ(nullptr, ::dlopen(HV_BINARY_DIR "/lib/vexex.so", RTLD_NOW | RTLD_NOLOAD))
        << "nobody needs the engine any more";
    std::filesystem::remove(m_file);
  }

  [[nodiscard]] Ref<IDataStore> Open(IDataStoreEnvironment& environment) const {
    Ref<IDataStore> store;
    EXPECT_EQ(S_OK, environment.ConnectDataStoreByParameter(u"ATFX", m_parameter, store.Put()));
    return store;
  }
  [[nodiscard]] Ref<IStore> CoreStore() const {
    Ref<IUnknown> unknown;
    EXPECT_EQ(S_OK, m_store->GetVexStore(unknown.Put()));
    return unknown.As<IStore>();
  }

  Ref<IDataStore> m_store;
  std::u16string m_parameter;

 private:
  TestConfiguration m_configuration;
  std::int64_t m_alive = 0;
  std::filesystem::path m_file;
};

TEST_F(Session, TellsWhatItIsConnectedTo) {
  ASSERT_TRUE(m_store);
  WString plugin;
  WString parameters;
  WString name;
  EXPECT_EQ(S_OK, m_store->get_PluginName(&plugin));
  EXPECT_EQ(S_OK, m_store->get_Parameters(&parameters));
  EXPECT_EQ(S_OK, m_store->get_Name(&name));
  EXPECT_TRUE(plugin.EqualsExact(u"ATFX"));
  EXPECT_TRUE(parameters.EqualsExact(m_parameter));
  WString coreName;
  CoreStore()->GetName(coreName);
  EXPECT_TRUE(name.EqualsExact(coreName));
  EXPECT_FALSE(name.empty());
  EXPECT_TRUE(CallByName(*m_store.Get(), u"NAME").result.AsText().EqualsExact(name));
}

TEST_F(Session, GivesTheEnginesStoreItself) {
  const Ref<IStore> first = CoreStore();
  ASSERT_TRUE(first);
  EXPECT_EQ(first, CoreStore());
  EXPECT_TRUE(CallByName(*m_store.Get(), u"GetVexStore").result.Is(VT_UNKNOWN));
  const Ref<CDataStoreImpl> second = MakeRef<CDataStoreImpl>();
  EXPECT_EQ(S_OK, second->OpenByStore(first.Get()));
  Ref<IStore> shared;
  EXPECT_EQ(S_OK, second->GetCoreStore(shared.Put()));
  EXPECT_EQ(first, shared);
}

TEST_F(Session, GivesAModelWithTheStoresEntities) {
  Ref<IDataStoreModel> model;
  ASSERT_EQ(S_OK, m_store->get_Model(model.Put()));
  Ref<IModelEntities> entities;
  ASSERT_EQ(S_OK, model->get_Entities(entities.Put()));
  std::int32_t count = 0;
  EXPECT_EQ(S_OK, entities->get_Count(&count));
  EXPECT_EQ(2, count);
  Ref<IDataStoreModel> again;
  ASSERT_EQ(S_OK, m_store->get_Model(again.Put()));
  EXPECT_FALSE(model == again) << "a wrapper is made for each call";
}

TEST_F(Session, ModelOutlivesItsSession) {
  Ref<IDataStoreModel> model;
  ASSERT_EQ(S_OK, m_store->get_Model(model.Put()));
  m_store.Reset();
  Ref<IModelEntities> entities;
  EXPECT_EQ(S_OK, model->get_Entities(entities.Put()));
}

TEST_F(Session, KnowsUnsavedChangesAndSavesThem) {
  std::int32_t modified = -1;
  EXPECT_EQ(S_OK, m_store->IsModified(&modified));
  EXPECT_EQ(0, modified);
  const Ref<IStore> core = CoreStore();
  {
    const auto instance = Ref<IInstance>::Adopt(core->GetInstance(u"Test:1"));
    ASSERT_TRUE(instance);
    instance.As<IContainer>()->SetString(u"name", u"Renamed");
  }
  EXPECT_EQ(S_OK, m_store->IsModified(&modified));
  EXPECT_EQ(1, modified);
  EXPECT_EQ(S_OK, m_store->Save(Variant::Missing()));
  EXPECT_EQ(S_OK, m_store->IsModified(&modified));
  EXPECT_EQ(0, modified);
  EXPECT_EQ(S_OK, m_store->Refresh());
}

TEST_F(Session, KnowsWhetherQueriesRun) {
  std::int32_t supported = -1;
  EXPECT_EQ(S_OK, m_store->IsQuerySupported(&supported));
  EXPECT_EQ(1, supported);
}

/// One member of a session by the code-returning face, with an argument that it must refuse or an
/// object that it doesn't have.
struct MemberCase {
  const char* name;
  Result (*call)(IDataStore& store);
  Result code;
};

template <class Object>
Result WithOut(Result (*call)(IDataStore&, Object**), IDataStore& store) {
  Object* out = reinterpret_cast<Object*>(&store);
  const Result rc = call(store, &out);
  EXPECT_EQ(nullptr, out);
  return rc;
}

TEST_F(Session, MembersCheckTheirArguments) {
  const MemberCase kMembers[] = {
      {"Name", [](IDataStore& s) { return s.get_Name(nullptr); }, E_POINTER},
      {"PluginName", [](IDataStore& s) { return s.get_PluginName(nullptr); }, E_POINTER},
      {"Parameters", [](IDataStore& s) { return s.get_Parameters(nullptr); }, E_POINTER},
      {"Model", [](IDataStore& s) { return s.get_Model(nullptr); }, E_POINTER},
      {"RootElements", [](IDataStore& s) { return s.get_RootElements(nullptr); }, E_POINTER},
      {"CreateElement",
       [](IDataStore& s) { return s.CreateElement(Variant::Text(u"Test"), u"a", nullptr); },
       E_POINTER},
      {"CreateElementWithoutName",
       [](IDataStore& s) {
         return WithOut<IStoreElement>(
             [](IDataStore& store, IStoreElement** out) {
               return store.CreateElement(Variant::Text(u"Test"), u"", out);
             },
             s);
       },
       VEX_E_EMPTY_NAME},
      {"GetElementByKey", [](IDataStore& s) { return s.GetElementByKey(u"Test:1", nullptr); },
       E_POINTER},
      {"GetElementByNoChannel",
       [](IDataStore& s) {
         return WithOut<IStoreElement>(
             [](IDataStore& store, IStoreElement** out) {
               return store.GetElementByDataChannel(nullptr, out);
             },
             s);
       },
       E_INVALIDARG},
      {"CreateQuery", [](IDataStore& s) { return s.CreateQuery(nullptr); }, E_POINTER},
      {"SearchNothing", [](IDataStore& s) { return s.Search(nullptr); }, VEX_E_NOT_STORE_QUERY},
      {"DeleteNothing", [](IDataStore& s) { return s.DeleteElement(nullptr); }, E_UNEXPECTED},
      {"GetContext", [](IDataStore& s) { return s.GetContext(Variant::I4(1), nullptr); },
       E_POINTER},
      {"SetNoBrowseSettings", [](IDataStore& s) { return s.SetBrowseSettings(nullptr); }, S_OK},
      {"IsModified", [](IDataStore& s) { return s.IsModified(nullptr); }, E_POINTER},
      {"IsQuerySupported", [](IDataStore& s) { return s.IsQuerySupported(nullptr); }, E_POINTER},
      {"GetVexStore", [](IDataStore& s) { return s.GetVexStore(nullptr); }, E_POINTER},
  };
  for (const MemberCase& row : kMembers) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.code, row.call(*m_store.Get()));
  }
}

}  // namespace
}  // namespace hv::vex
