// tests/store/session/SessionFixture.h - sessions on a campaign, kept in a file and in a database.
#pragma once

#include <storefabric/IDataStore.h>
#include <storefabric/IDataStoreEnvironment.h>

#include <dlfcn.h>

#include <filesystem>
#include <string>
#include <string_view>

#include "cor/Counted.h"
#include "plugins/TestConfiguration.h"
#include "store/core/Seam.h"
#include "store/session/DataStoreEnvironmentInt.h"
#include "tests/elements/Script.h"

#include <gtest/gtest.h>

namespace hv::test {

/// Opens a copy of tests/data/browse/campaign.atfx with the plug-in that the parameter names. At
/// the end no object may be left over, and the engine has to be unloaded.
class CampaignTest : public ::testing::TestWithParam<const char*> {
 protected:
  CampaignTest() : m_configuration(HV_BINARY_DIR "/lib"), m_alive(cor::LiveObjectCount()) {
    m_folder = std::filesystem::temp_directory_path() /
               ("storefabric-campaign-" + std::to_string(::getpid()));
    std::filesystem::remove_all(m_folder);
    std::filesystem::create_directories(m_folder);
    for (const char* name :
         {"browse/campaign", "browse/notest", "browse/translated", "store/bench"})
      Bring(name);
    m_store = Open("campaign");
  }
  ~CampaignTest() override {
    m_store.Reset();
    EXPECT_EQ(m_alive, cor::LiveObjectCount()) << "an object is still held";
    void* const engine = ::dlopen(HV_BINARY_DIR "/lib/vexex.so", RTLD_NOW | RTLD_NOLOAD);
    EXPECT_EQ(nullptr, engine) << "nobody needs the engine any more";
    if (engine) ::dlclose(engine);
    std::filesystem::remove_all(m_folder);
  }

  static bool IsDatabase() { return std::string_view(GetParam()) == "SQL"; }
  [[nodiscard]] std::string File(const std::string& name) const {
    return (m_folder / (name + (IsDatabase() ? ".sqlite" : ".atfx"))).string();
  }
  /// A session of its own.
  [[nodiscard]] Ref<vex::IDataStore> Open(const std::string& name,
                                          const std::string& moreTags = {}) const {
    return Connect(GetParam(), "<filename>" + File(name) + "</filename>" + moreTags);
  }
  static Ref<vex::IStore> CoreOf(vex::IDataStore& store) {
    Ref<IUnknown> unknown;
    EXPECT_EQ(S_OK, store.GetVexStore(unknown.Put()));
    return unknown.As<vex::IStore>();
  }
  /// What a script reads for an expression from the session on.
  [[nodiscard]] std::string Ask(std::string_view expression) const {
    return Eval(m_store.Get(), expression).Shown();
  }
  [[nodiscard]] Ref<IDispatch> Object(std::string_view expression) const {
    return Ref<IDispatch>::Share(Eval(m_store.Get(), expression).Object());
  }

  Ref<vex::IDataStore> m_store;

 private:
  static Ref<vex::IDataStore> Connect(const char* plugin, const std::string& tags) {
    Ref<IDispatch> made;
    Ref<vex::IDataStore> store;
    EXPECT_EQ(S_OK, vex::CDataStoreEnvironmentInt::Create(made.Put()));
    EXPECT_EQ(S_OK, made.As<vex::IDataStoreEnvironment>()->ConnectDataStoreByParameter(
                        cor::FromUtf8(plugin), cor::FromUtf8(tags), store.Put()));
    return store;
  }
  /// Puts a store of the test data into the folder.
  void Bring(const std::filesystem::path& data) const {
    const std::string source = HV_TEST_DATA_DIR "/" + data.string() + ".atfx";
    const std::string name = data.filename().string();
    if (!IsDatabase()) {
      std::filesystem::copy_file(source, File(name));
      return;
    }
    const auto file = Connect("ATFX", "<filename>" + source + "</filename>");
    const auto core = CoreOf(*file.Get());
    const auto environment = Ref<vex::IEnvironment>::Adopt(core->GetEnvironment());
    const WString target = cor::FromUtf8("<filename>" + File(name) + "</filename>");
    Ref<vex::IExporter>::Adopt(environment->CreateExporter(u"SQL", u"", target, core.Get()))->Run();
  }

  TestConfiguration m_configuration;
  std::int64_t m_alive;
  std::filesystem::path m_folder;
};

#define HV_BOTH_KINDS(Suite)                                               \
  INSTANTIATE_TEST_SUITE_P(Kinds, Suite, ::testing::Values("ATFX", "SQL"), \
                           [](const auto& kind) { return std::string(kind.param); })

inline Variant Obj(const Ref<IDispatch>& object) { return Variant::Object(object.Get()); }
inline Variant Txt(std::u16string_view text) { return Variant::Text(text); }

}  // namespace hv::test
