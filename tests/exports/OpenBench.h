// tests/exports/OpenBench.h - opens the test store through the exported functions.
#pragma once

#include <storefabric/IBrowseConfig.h>
#include <storefabric/StoreFabric.h>

#include <gtest/gtest.h>

namespace hv::test {

inline Result Connect(std::u16string_view name, std::u16string_view pluginName,
                      std::u16string_view parameter, vex::IDataStore** store) {
  const WString texts[] = {name, pluginName, parameter};
  const char16_t* pointers[] = {texts[0].c_str(), texts[1].c_str(), texts[2].c_str()};
  return ConnectDataStoreByParams(&pointers[0], &pointers[1], &pointers[2],
                                  Variant::Text(u"no effect"), store, nullptr);
}

inline WString BenchParameter() {
  return cor::FromUtf8("<filename>" HV_TEST_DATA_DIR "/store/bench.atfx</filename>");
}

inline Ref<vex::IDataStore> OpenBench() {
  Ref<vex::IDataStore> store;
  EXPECT_EQ(S_OK, Connect(u"", u"ATFX", BenchParameter(), store.Put()));
  return store;
}

/// The engine's store behind a session.
template <class CoreStore>
Ref<CoreStore> CoreStoreOf(vex::IDataStore& store) {
  Ref<IUnknown> unknown;
  EXPECT_EQ(S_OK, store.GetVexStore(unknown.Put()));
  return unknown.As<CoreStore>();
}

inline Ref<vex::IBrowseConfig> BrowseConfigOf(vex::IStore& store) {
  Ref<vex::IBrowseConfig> config;
  EXPECT_EQ(S_OK, GetDataStoreBrowseConfig(&store, config.Put()));
  return config;
}

}  // namespace hv::test
