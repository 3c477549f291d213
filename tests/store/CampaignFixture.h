// tests/store/CampaignFixture.h - sessions on stores of the test data, kept in a file and in a
// database.
#pragma once

#include <storefabric/IDataStore.h>
#include <storefabric/IDataStoreEnvironment.h>
#include <storefabric/IStoreElement.h>

#include <dlfcn.h>

#include <filesystem>
#include <string>
#include <string_view>

#include "cor/Counted.h"
#include "store/core/Seam.h"
#include "store/elements/ISimplifiedStoreImpl.h"
#include "store/elements/IStoreElementImpl.h"
#include "store/elements/IStoreElementsImpl.h"
#include "store/elements/StoreElementFactory.h"
#include "store/session/DataStoreEnvironmentInt.h"
#include "tests/plugins/TestConfiguration.h"
#include "tests/support/Script.h"
#include "tests/support/TempFolder.h"

namespace hv::test {

/// Opens a copy of tests/data/browse/campaign.atfx with the plug-in that the parameter names. At
/// the end no object may be left over, and the engine has to be unloaded.
class CampaignTest : public ::testing::TestWithParam<const char*> {
 protected:
  CampaignTest() : m_configuration(HV_BINARY_DIR "/lib"), m_alive(cor::LiveObjectCount()) {
    OpenAgain();
  }
  ~CampaignTest() override {
    LetGo();
    EXPECT_EQ(m_alive, cor::LiveObjectCount()) << "an object is still held";
    void* const engine = ::dlopen(HV_BINARY_DIR "/lib/vexex.so", RTLD_NOW | RTLD_NOLOAD);
    EXPECT_EQ(nullptr, engine) << "nobody needs the engine any more";
    if (engine) ::dlclose(engine);
  }

  static bool IsDatabase() { return std::string_view(GetParam()) == "SQL"; }
  [[nodiscard]] std::string File(const std::string& data) const {
    const std::string name = std::filesystem::path(data).filename().string();
    return m_folder.File(name + (IsDatabase() ? ".sqlite" : ".atfx")).string();
  }
  /// A session of its own with this test's copy of a store of the test data.
  [[nodiscard]] Ref<vex::IDataStore> Open(const std::string& data = "browse/campaign",
                                          const std::string& moreTags = {}) const {
    if (!std::filesystem::exists(File(data))) Bring(data);
    return Connect(GetParam(), "<filename>" + File(data) + "</filename>" + moreTags);
  }
  /// Takes the place of the session so far, without what it hasn't saved.
  void OpenAgain(const std::string& data = "browse/campaign", const std::string& moreTags = {}) {
    LetGo();
    m_store = Open(data, moreTags);
    m_script = Script(m_store.Get());
  }
  void LetGo() {
    m_script = Script();
    m_store.Reset();
  }

  static Ref<vex::IStore> CoreOf(vex::IDataStore& store) {
    Ref<IUnknown> unknown;
    EXPECT_EQ(S_OK, store.GetVexStore(unknown.Put()));
    return unknown.As<vex::IStore>();
  }
  [[nodiscard]] Ref<vex::IStore> Core() const { return CoreOf(*m_store); }
  /// A record, past the session.
  [[nodiscard]] Ref<vex::IInstance> Instance(std::u16string_view key) const {
    return Ref<vex::IInstance>::Adopt(Core()->GetInstance(key));
  }
  void RenameInstance(std::u16string_view key, std::u16string_view name) const {
    Instance(key).As<vex::IContainer>()->SetString(u"name", name);
  }
  /// A record that no collection has made.
  Ref<vex::IInstance> MakeRecord(std::u16string_view entity, std::u16string_view name) const {
    const auto model = Ref<vex::IModel>::Adopt(Core()->GetModel());
    const auto type = Ref<vex::IEntity>::Adopt(model->GetEntity(entity));
    auto instance = Ref<vex::IInstance>::Adopt(Core()->CreateInstance(type.Get()));
    instance.As<vex::IContainer>()->SetString(u"name", name);
    return instance;
  }
  /// The logic behind an element that a script has.
  Ref<vex::IStoreElementImpl> Element(std::string_view line) {
    Ref<vex::IStoreElementImpl> element;
    EXPECT_EQ(S_OK, vex::StoreElementOf(m_script.Object(line).Get(), &element)) << line;
    return element;
  }
  /// The provider of the session's elements.
  Ref<vex::easyImpl::ISimplifiedStoreImpl> Provider() {
    Ref<vex::easyImpl::ISimplifiedStoreImpl> provider;
    EXPECT_EQ(S_OK, Element("RootElements(0)")->GetProvider(provider.Put()));
    return provider;
  }

  std::string Show(std::string_view line) { return m_script.Show(line); }
  void Expect(const std::vector<Line>& lines) { m_script.Expect(lines); }

  Ref<vex::IDataStore> m_store;
  Script m_script;

 private:
  static Ref<vex::IDataStore> Connect(const char* plugin, const std::string& tags) {
    Ref<IDispatch> made;
    Ref<vex::IDataStore> store;
    EXPECT_EQ(S_OK, vex::CDataStoreEnvironmentInt::Create(made.Put()));
    EXPECT_EQ(S_OK, made.As<vex::IDataStoreEnvironment>()->ConnectDataStoreByParameter(
                        cor::FromUtf8(plugin), cor::FromUtf8(tags), store.Put()));
    return store;
  }
  void Bring(const std::string& data) const {
    const std::string source = HV_TEST_DATA_DIR "/" + data + ".atfx";
    if (!IsDatabase()) {
      std::filesystem::copy_file(source, File(data));
      return;
    }
    const auto file = Connect("ATFX", "<filename>" + source + "</filename>");
    const auto core = CoreOf(*file);
    const auto environment = Ref<vex::IEnvironment>::Adopt(core->GetEnvironment());
    const WString target = cor::FromUtf8("<filename>" + File(data) + "</filename>");
    environment->WriteStore(core.Get(), target, u"SQL", 0);
  }

  TestConfiguration m_configuration;
  std::int64_t m_alive;
  TempFolder m_folder;
};

#define HV_BOTH_KINDS(Suite)                                               \
  INSTANTIATE_TEST_SUITE_P(Kinds, Suite, ::testing::Values("ATFX", "SQL"), \
                           [](const auto& kind) { return std::string(kind.param); })

}  // namespace hv::test
