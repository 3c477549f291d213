// tests/exports/DllInterfaceTest.cpp - the library as an object.
#include <storefabric/IBrowseConfig.h>
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
  const WString text = cor::FromUtf8("<filename>" HV_TEST_DATA_DIR "/store/bench.atfx</filename>");
  const char16_t* const parameter = text.c_str();
  Ref<IDataStore> store;
  ASSERT_EQ(S_OK, dll->ConnectDataStoreByParams(nullptr, &plugin, &parameter, Variant::Null(),
                                                store.Put(), nullptr));
  const Ref<IStore> core = test::CoreStoreOf<IStore>(*store.Get());
  Ref<IDataStore> second;
  EXPECT_EQ(S_OK, dll->OpenDataStoreByStore(core.Get(), Variant::Null(), second.Put()));
  EXPECT_TRUE(second);
}

TEST(DllInterface, TakesTheDialogsSettings) {
  const Ref<IDataStoreDllInterface> dll = MakeDll();
  EXPECT_EQ(S_OK, dll->SetHelpCallback(nullptr, 7));
  EXPECT_EQ(S_OK, dll->SetDialogElementCallback(nullptr));
  const DialogFont font;
  EXPECT_EQ(S_OK, dll->SetDialogFont(&font));
  EXPECT_EQ(E_POINTER, dll->SetDialogFont(nullptr));
}

/// What the operations are called with; null where a case leaves something out.
struct Arguments {
  IDataStoreDllInterface& dll;
  IStore* store;
  IBrowseConfig* config;
  IDataStore* session;
};

TEST(DllInterface, MakesSettingsOverACopyOfAConfiguration) {
  const TestConfiguration configuration;
  const Ref<IDataStoreDllInterface> dll = MakeDll();
  const Ref<IDataStore> session = test::OpenBench();
  Ref<IBrowseConfig> config;
  ASSERT_EQ(S_OK, dll->GetDataStoreBrowseConfig(test::CoreStoreOf<IStore>(*session.Get()).Get(),
                                                config.Put()));
  Ref<IBrowseSettings> settings;
  ASSERT_EQ(S_OK, dll->CreateBrowseSettingsObject(config.Get(), session.Get(), settings.Put()));
  config->Clear();
  Ref<IBrowseEntity> root;
  WString path;
  ASSERT_EQ(S_OK, settings->get_RootEntity(root.Put()));
  EXPECT_EQ(S_OK, root->get_ChildPath(&path));
  EXPECT_TRUE(path.EqualsExact(u"Measurements")) << "the copy is whole";
  EXPECT_EQ(S_OK, session->SetBrowseSettings(settings.Get()));
}

struct ArgumentCase {
  const char* name;
  Result (*call)(const Arguments& a);
  Result code;
};

TEST(DllInterface, OperationsCheckTheirArguments) {
  const TestConfiguration configuration;
  const Ref<IDataStoreDllInterface> dll = MakeDll();
  const Ref<IDataStore> session = test::OpenBench();
  const Ref<IStore> store = test::CoreStoreOf<IStore>(*session.Get());
  Ref<IBrowseConfig> config;
  ASSERT_EQ(S_OK, dll->GetDataStoreBrowseConfig(store.Get(), config.Put()));
  const Arguments arguments{*dll.Get(), store.Get(), config.Get(), session.Get()};
  using A = const Arguments&;
  const ArgumentCase kCases[] = {
      {"ConnectWithoutOut",
       [](A a) {
         return a.dll.ConnectDataStoreByParams(nullptr, nullptr, nullptr, {}, nullptr, nullptr);
       },
       E_POINTER},
      {"OpenWithoutOut", [](A a) { return a.dll.OpenDataStoreByStore(a.store, {}, nullptr); },
       E_POINTER},
      {"BrowseConfigWithoutOut",
       [](A a) { return a.dll.GetDataStoreBrowseConfig(a.store, nullptr); }, E_POINTER},
      {"BrowseConfigWithoutStore",
       [](A a) {
         Ref<IBrowseConfig> out;
         return a.dll.GetDataStoreBrowseConfig(nullptr, out.Put());
       },
       E_INVALIDARG},
      {"LoaderWithoutOut", [](A a) { return a.dll.GetQueryInfoSetLoader(u"q", nullptr); },
       E_POINTER},
      {"StreamLoaderWithoutOut",
       [](A a) { return a.dll.GetQueryInfoSetLoaderByStream(nullptr, nullptr); }, E_POINTER},
      {"SaverWithoutOut", [](A a) { return a.dll.GetQueryInfoSetSaver(nullptr); }, E_POINTER},
      {"ContainerWithoutOut", [](A a) { return a.dll.CreateGUIInitializeContainer(1, nullptr); },
       E_POINTER},
      {"GuiWithoutContainer", [](A a) { return a.dll.InitializeDataStoreGUI(nullptr); }, E_POINTER},
      {"ContextSetWithoutOut", [](A a) { return a.dll.CreateContextParameterSet(nullptr); },
       E_POINTER},
      {"LoadFileWithoutOut", [](A a) { return a.dll.LoadBrowseConfigFile(u"f", nullptr, nullptr); },
       E_POINTER},
      {"LoadFileWithoutStore",
       [](A a) {
         Ref<IBrowseConfig> out;
         return a.dll.LoadBrowseConfigFile(u"", nullptr, out.Put());
       },
       E_INVALIDARG},
      {"LoadFileWithoutName",
       [](A a) {
         Ref<IBrowseConfig> out;
         return a.dll.LoadBrowseConfigFile(u"", a.store, out.Put());
       },
       VEX_E_BAD_FILE},
      {"LoadFileWithNullName",
       [](A a) {
         Ref<IBrowseConfig> out;
         return a.dll.LoadBrowseConfigFile(nullptr, a.store, out.Put());
       },
       VEX_E_BAD_FILE},
      {"SaveFileWithoutConfig", [](A a) { return a.dll.SaveBrowseConfigFile(u"", nullptr); },
       E_INVALIDARG},
      {"SaveFileWithoutName", [](A a) { return a.dll.SaveBrowseConfigFile(u"", a.config); }, S_OK},
      {"LoadStreamWithoutOut",
       [](A a) { return a.dll.LoadBrowseConfigStream(nullptr, a.store, nullptr); }, E_POINTER},
      {"LoadStreamWithoutStore",
       [](A a) {
         Ref<IBrowseConfig> out;
         return a.dll.LoadBrowseConfigStream(nullptr, nullptr, out.Put());
       },
       E_INVALIDARG},
      {"SaveStreamWithoutConfig",
       [](A a) { return a.dll.SaveBrowseConfigStream(nullptr, nullptr); }, E_INVALIDARG},
      {"EditWithoutStore", [](A a) { return a.dll.EditBrowseConfig(nullptr, a.config); },
       E_INVALIDARG},
      {"EditWithoutConfig", [](A a) { return a.dll.EditBrowseConfig(a.store, nullptr); },
       E_INVALIDARG},
      {"SettingsWithoutOut",
       [](A a) { return a.dll.CreateBrowseSettingsObject(nullptr, a.session, nullptr); },
       E_POINTER},
      {"SettingsWithoutConfig",
       [](A a) {
         IBrowseSettings* out = nullptr;
         return a.dll.CreateBrowseSettingsObject(nullptr, a.session, &out);
       },
       E_INVALIDARG},
      {"SettingsWithoutSession",
       [](A a) {
         IBrowseSettings* out = nullptr;
         return a.dll.CreateBrowseSettingsObject(a.config, nullptr, &out);
       },
       E_FAIL},
      {"CopyFromNothing", [](A a) { return a.dll.CopyBrowseConfig(nullptr, a.config); },
       E_INVALIDARG},
      {"CopyToNothing", [](A a) { return a.dll.CopyBrowseConfig(a.config, nullptr); },
       E_INVALIDARG},
      {"DisplayNameWithoutOut",
       [](A a) { return a.dll.GetBrowseDisplayName(a.config, nullptr, nullptr); }, E_POINTER},
      {"DisplayNameWithoutInstance",
       [](A a) {
         WString out;
         return a.dll.GetBrowseDisplayName(a.config, nullptr, &out);
       },
       E_INVALIDARG},
  };
  for (const ArgumentCase& row : kCases) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.code, row.call(arguments));
  }
}

TEST(DllInterface, NamesInstancesByABrowseConfiguration) {
  const TestConfiguration configuration;
  const Ref<IDataStoreDllInterface> dll = MakeDll();
  const Ref<IDataStore> session = test::OpenBench();
  const Ref<IStore> store = test::CoreStoreOf<IStore>(*session.Get());
  Ref<IBrowseConfig> config;
  ASSERT_EQ(S_OK, dll->GetDataStoreBrowseConfig(store.Get(), config.Put()));
  WString path;
  config->GetFirstRootPath(path);
  EXPECT_EQ(u"/#Test", path.view());
  const auto tests = Ref<IInstList>::Adopt(store->GetInstances(path));
  const auto first = Ref<IInstance>::Adopt(tests->Next());
  WString name;
  EXPECT_EQ(S_OK, dll->GetBrowseDisplayName(config.Get(), first.Get(), &name));
  EXPECT_EQ(u"Cold start", name.view());
  EXPECT_EQ(S_FALSE, dll->CopyBrowseConfig(config.Get(), config.Get()));
  Ref<IBrowseConfig> none;
  EXPECT_EQ(VEX_E_BAD_FILE, dll->LoadBrowseConfigFile(u"/nowhere/at.tbs", store.Get(), none.Put()));
  EXPECT_FALSE(none);
}

}  // namespace
}  // namespace hv::vex
