// tests/exports/ExportsTest.cpp - the exported functions as a host calls them.
#include "OpenBench.h"
#include "plugins/TestConfiguration.h"
#include "store/core/IStore.h"

#include <dlfcn.h>

namespace hv::vex {
namespace {

using test::Connect;
using test::CoreStoreOf;
using test::OpenBench;
using test::TestConfiguration;

bool EngineIsLoaded() {
  void* const handle = ::dlopen(HV_BINARY_DIR "/lib/vexex.so", RTLD_NOW | RTLD_NOLOAD);
  if (handle) ::dlclose(handle);
  return handle != nullptr;
}

TEST(Exports, EngineIsFoundBesideTheLibraryAndUnloadedAtTheEnd) {
  const TestConfiguration configuration;
  EXPECT_FALSE(EngineIsLoaded());
  {
    const Ref<IDataStore> store = OpenBench();
    EXPECT_TRUE(EngineIsLoaded());
  }
  EXPECT_FALSE(EngineIsLoaded());
}

TEST(Exports, InitKeepsTheEngineLoaded) {
  const TestConfiguration configuration;
  EXPECT_EQ(1, Init());
  EXPECT_EQ(2, Init());
  EXPECT_TRUE(EngineIsLoaded());
  Ref<IDataStore> store = OpenBench();
  Cleanup();
  Cleanup();
  EXPECT_TRUE(EngineIsLoaded()) << "the session outlives the host's last Cleanup";
  WString name;
  EXPECT_EQ(S_OK, store->get_Name(&name));
  store.Reset();
  EXPECT_FALSE(EngineIsLoaded());
}

TEST(Exports, MissingEngineFailsAtTheConnect) {
  const TestConfiguration configuration(HV_BINARY_DIR "/no-such-folder");
  EXPECT_EQ(1, Init());
  Ref<IDataStore> store;
  EXPECT_EQ(E_FAIL, Connect(u"bench", u"", u"", store.Put()));
  Cleanup();
}

TEST(Exports, FailedConnectLeavesTheOutPointer) {
  const TestConfiguration configuration;
  char unchanged = 0;
  auto* const before = reinterpret_cast<IDataStore*>(&unchanged);
  IDataStore* store = before;
  EXPECT_EQ(E_FAIL, Connect(u"", u"NO SUCH PLUG-IN", u"", &store));
  EXPECT_EQ(before, store);
  EXPECT_EQ(E_FAIL, Connect(u"not configured", u"ATFX", test::BenchParameter(), &store))
      << "a name comes before plug-in and parameter";
  const char16_t* none = nullptr;  // counts as empty
  EXPECT_EQ(E_FAIL, ConnectDataStoreByParams(nullptr, &none, nullptr, {}, &store, nullptr));
  EXPECT_EQ(before, store);
}

TEST(Exports, StoreOfTheEngineGetsASessionOfItsOwn) {
  const TestConfiguration configuration;
  const Ref<IDataStore> first = OpenBench();
  const Ref<IStore> core = CoreStoreOf<IStore>(*first.Get());
  ASSERT_TRUE(core);
  Ref<IDataStore> second;
  EXPECT_EQ(S_OK, OpenDataStoreByStore(core.Get(), Variant::I4(7), second.Put()));
  ASSERT_TRUE(second);
  EXPECT_EQ(core, CoreStoreOf<IStore>(*second.Get()));
  char unchanged = 0;
  auto* store = reinterpret_cast<IDataStore*>(&unchanged);
  EXPECT_EQ(E_UNEXPECTED, OpenDataStoreByStore(nullptr, Variant(), &store));
  EXPECT_EQ(nullptr, store);
}

TEST(Exports, NullOutPointersAreRefused) {
  EXPECT_EQ(E_POINTER, Connect(u"", u"ATFX", u"", nullptr));
  EXPECT_EQ(E_POINTER, OpenDataStoreByStore(nullptr, Variant(), nullptr));
  EXPECT_EQ(E_POINTER, GetDataStoreBrowseConfig(nullptr, nullptr));
  EXPECT_EQ(E_POINTER, GetQueryInfoSetLoader(u"q", nullptr));
  EXPECT_EQ(E_POINTER, GetQueryInfoSetLoaderByStream(nullptr, nullptr));
  EXPECT_EQ(E_POINTER, GetQueryInfoSetSaver(nullptr));
  EXPECT_EQ(E_POINTER, CreateGUIInitializeContainer(0, nullptr));
  EXPECT_EQ(E_POINTER, GetDataStoreDllInterface(nullptr));
  EXPECT_EQ(E_POINTER, CreateStoreFabricObject(u"VEX.DataStoreEnvironment", nullptr));
}

TEST(Exports, ClassesAreMadeByName) {
  const TestConfiguration configuration;
  const struct {
    const char16_t* progId;
    Result code;
  } kClasses[] = {
      {u"VEX.DataStoreEnvironment", S_OK},
      {u"vex.datastoreenvironment", S_OK},
      {u"VEX.DataStoreEnvironment.1", CLASS_E_CLASSNOTAVAILABLE},
      {u"", CLASS_E_CLASSNOTAVAILABLE},
      {nullptr, CLASS_E_CLASSNOTAVAILABLE},
  };
  for (const auto& row : kClasses) {
    SCOPED_TRACE(row.progId ? cor::ToUtf8(row.progId) : "null");
    Ref<IDispatch> object;
    EXPECT_EQ(row.code, CreateStoreFabricObject(row.progId, object.Put()));
    EXPECT_EQ(!Failed(row.code), bool(object));
    if (object) {
      EXPECT_EQ(u"DataStoreEnvironment", object->GetClassName());
    }
  }
}

// A host's own translation units need the bodies of strings and variants.
TEST(Exports, StringsAndVariantsWorkInAHost) {
  WString text(u"abc");
  text.append(u"DEF").ReplaceAll(u"c", u"C");
  EXPECT_TRUE(text == u"ABCdef");
  EXPECT_EQ("abCDEF", cor::ToUtf8(text));
  Variant number;
  EXPECT_EQ(S_OK, Variant::Text(u"12").ChangeType(VT_I4, &number));
  VarOrder order = VarOrder::Null;
  EXPECT_EQ(S_OK, CompareVariants(number, Variant::I4(13), &order));
  EXPECT_EQ(VarOrder::Less, order);
}

}  // namespace
}  // namespace hv::vex
