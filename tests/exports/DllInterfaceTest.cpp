// tests/exports/DllInterfaceTest.cpp - the library as an object.
#include <storefabric/IBrowseSettings.h>

#include "OpenBench.h"
#include "plugins/TestConfiguration.h"
#include "store/core/IInstList.h"
#include "store/core/IInstance.h"
#include "store/core/IStore.h"

namespace hv::vex {
namespace {

using datastore::DialogFont;
using datastore::IDataStoreDllInterface;
using test::TestConfiguration;

Ref<IDataStoreDllInterface> MakeDll() {
  Ref<IDataStoreDllInterface> dll;
  EXPECT_EQ(S_OK, GetDataStoreDllInterface(dll.Put()));
  return dll;
}

TEST(DllInterface, IsANewObjectAtEachCall) {
  const Ref<IDataStoreDllInterface> first = MakeDll();
  const Ref<IDataStoreDllInterface> second = MakeDll();
  EXPECT_FALSE(first == second);
  EXPECT_TRUE(first.As<IUnknown>());
  EXPECT_FALSE(first.As<IDataStore>());
  EXPECT_EQ(2U, first->AddRef()) << "the first count is 1";
  EXPECT_EQ(1U, first->Release());
  EXPECT_EQ(E_POINTER, first->QueryInterface(IUnknown::kIid, nullptr));
}

TEST(DllInterface, ConnectsAsTheExportsDo) {
  const TestConfiguration configuration;
  const Ref<IDataStoreDllInterface> dll = MakeDll();
  const char16_t* const plugin = u"ATFX";
  const WString text = test::BenchParameter();
  const char16_t* const parameter = text.c_str();
  Ref<IDataStore> store;
  ASSERT_EQ(S_OK, dll->ConnectDataStoreByParams(nullptr, &plugin, &parameter, Variant::Null(),
                                                store.Put(), nullptr));
  const Ref<IStore> core = test::CoreStoreOf<IStore>(*store.Get());
  Ref<IDataStore> second;
  EXPECT_EQ(S_OK, dll->OpenDataStoreByStore(core.Get(), Variant::Null(), second.Put()));
  EXPECT_TRUE(second);
}

class DllOverBench : public ::testing::Test {
 protected:
  const TestConfiguration m_configuration;
  const Ref<IDataStoreDllInterface> m_dll = MakeDll();
  const Ref<IDataStore> m_session = test::OpenBench();
  const Ref<IStore> m_store = test::CoreStoreOf<IStore>(*m_session.Get());
  const Ref<IBrowseConfig> m_config = test::BrowseConfigOf(*m_store.Get());
};

TEST_F(DllOverBench, MakesSettingsOverACopyOfAConfiguration) {
  Ref<IBrowseSettings> settings;
  ASSERT_EQ(S_OK,
            m_dll->CreateBrowseSettingsObject(m_config.Get(), m_session.Get(), settings.Put()));
  m_config->Clear();
  Ref<IBrowseEntity> root;
  WString path;
  ASSERT_EQ(S_OK, settings->get_RootEntity(root.Put()));
  EXPECT_EQ(S_OK, root->get_ChildPath(&path));
  EXPECT_EQ(u"Measurements", path.view()) << "the copy is whole";
  EXPECT_EQ(S_OK, m_session->SetBrowseSettings(settings.Get()));
}

TEST_F(DllOverBench, ChecksTheArgumentsOfItsOperations) {
  IDataStoreDllInterface& dll = *m_dll.Get();
  IStore* const store = m_store.Get();
  IBrowseConfig* const config = m_config.Get();
  const DialogFont font;
  Ref<IBrowseConfig> loaded;
  Ref<IBrowseSettings> settings;
  WString name;
  EXPECT_EQ(S_OK, dll.SetHelpCallback(nullptr, 7));
  EXPECT_EQ(S_OK, dll.SetDialogElementCallback(nullptr));
  EXPECT_EQ(S_OK, dll.SetDialogFont(&font));
  EXPECT_EQ(E_POINTER, dll.SetDialogFont(nullptr));
  EXPECT_EQ(E_POINTER,
            dll.ConnectDataStoreByParams(nullptr, nullptr, nullptr, {}, nullptr, nullptr));
  EXPECT_EQ(E_POINTER, dll.OpenDataStoreByStore(store, {}, nullptr));
  EXPECT_EQ(E_POINTER, dll.GetDataStoreBrowseConfig(store, nullptr));
  EXPECT_EQ(E_INVALIDARG, dll.GetDataStoreBrowseConfig(nullptr, loaded.Put()));
  EXPECT_EQ(E_POINTER, dll.GetQueryInfoSetLoader(u"q", nullptr));
  EXPECT_EQ(E_POINTER, dll.GetQueryInfoSetLoaderByStream(nullptr, nullptr));
  EXPECT_EQ(E_POINTER, dll.GetQueryInfoSetSaver(nullptr));
  EXPECT_EQ(E_POINTER, dll.CreateGUIInitializeContainer(1, nullptr));
  EXPECT_EQ(E_POINTER, dll.InitializeDataStoreGUI(nullptr));
  EXPECT_EQ(E_POINTER, dll.CreateContextParameterSet(nullptr));
  EXPECT_EQ(E_POINTER, dll.LoadBrowseConfigFile(u"f", nullptr, nullptr));
  EXPECT_EQ(E_INVALIDARG, dll.LoadBrowseConfigFile(u"", nullptr, loaded.Put()));
  EXPECT_EQ(VEX_E_BAD_FILE, dll.LoadBrowseConfigFile(u"", store, loaded.Put()));
  EXPECT_EQ(VEX_E_BAD_FILE, dll.LoadBrowseConfigFile(nullptr, store, loaded.Put()));
  EXPECT_EQ(VEX_E_BAD_FILE, dll.LoadBrowseConfigFile(u"/nowhere/at.tbs", store, loaded.Put()));
  EXPECT_EQ(E_INVALIDARG, dll.SaveBrowseConfigFile(u"", nullptr));
  EXPECT_EQ(S_OK, dll.SaveBrowseConfigFile(u"", config));
  EXPECT_EQ(E_POINTER, dll.LoadBrowseConfigStream(nullptr, store, nullptr));
  EXPECT_EQ(E_INVALIDARG, dll.LoadBrowseConfigStream(nullptr, nullptr, loaded.Put()));
  EXPECT_EQ(E_INVALIDARG, dll.SaveBrowseConfigStream(nullptr, nullptr));
  EXPECT_EQ(E_INVALIDARG, dll.EditBrowseConfig(nullptr, config));
  EXPECT_EQ(E_INVALIDARG, dll.EditBrowseConfig(store, nullptr));
  EXPECT_EQ(E_POINTER, dll.CreateBrowseSettingsObject(nullptr, m_session.Get(), nullptr));
  EXPECT_EQ(E_INVALIDARG, dll.CreateBrowseSettingsObject(nullptr, m_session.Get(), settings.Put()));
  EXPECT_EQ(E_FAIL, dll.CreateBrowseSettingsObject(config, nullptr, settings.Put()));
  EXPECT_EQ(E_INVALIDARG, dll.CopyBrowseConfig(nullptr, config));
  EXPECT_EQ(E_INVALIDARG, dll.CopyBrowseConfig(config, nullptr));
  EXPECT_EQ(S_FALSE, dll.CopyBrowseConfig(config, config));
  EXPECT_EQ(E_POINTER, dll.GetBrowseDisplayName(config, nullptr, nullptr));
  EXPECT_EQ(E_INVALIDARG, dll.GetBrowseDisplayName(config, nullptr, &name));
  EXPECT_FALSE(loaded);
  EXPECT_FALSE(settings);
}

TEST_F(DllOverBench, NamesInstancesByABrowseConfiguration) {
  WString text;
  m_config->GetFirstRootPath(text);
  EXPECT_EQ(u"/#Test", text.view());
  const auto tests = Ref<IInstList>::Adopt(m_store->GetInstances(text));
  const auto first = Ref<IInstance>::Adopt(tests->Next());
  EXPECT_EQ(S_OK, m_dll->GetBrowseDisplayName(m_config.Get(), first.Get(), &text));
  EXPECT_EQ(u"Cold start", text.view());
}

}  // namespace
}  // namespace hv::vex
