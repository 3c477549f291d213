// tests/store/elements/CollectionsFixture.h - collections over tests/data/browse/campaign.atfx, as
// a file and as a database.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <storefabric/IStoreElement.h>

#include "cor/Counted.h"
#include "store/core/CoreLibrary.h"
#include "store/core/Seam.h"
#include "store/elements/IReferencesImpl.h"
#include "store/elements/ISimplifiedStoreImpl.h"
#include "store/elements/IStoreElementImpl.h"
#include "store/elements/IStoreElementsImpl.h"
#include "store/elements/StoreElementFactory.h"
#include "tests/elements/Script.h"
#include "tests/plugins/TestConfiguration.h"

namespace hv::test {

/// Counts objects and attachments of the engine: none may be left over.
class CampaignTest : public ::testing::TestWithParam<const char*> {
 protected:
  using Provider = vex::easyImpl::ISimplifiedStoreImpl;

  CampaignTest()
      : m_configuration(HV_BINARY_DIR "/lib"),
        m_objects(cor::LiveObjectCount()),
        m_folder(std::filesystem::temp_directory_path() /
                 ("storefabric-campaign-" + std::to_string(::getpid()))) {
    vex::HostInit();
    std::filesystem::remove_all(m_folder);
    std::filesystem::create_directories(m_folder);
    OpenAgain();
  }
  ~CampaignTest() override {
    m_provider.Reset();
    m_store.Reset();
    EXPECT_EQ(m_objects, cor::LiveObjectCount()) << "an object is still held";
    EXPECT_EQ(1U, vex::GetCoreLibrary().attachCount) << "the engine is still attached";
    vex::HostCleanup();
    std::filesystem::remove_all(m_folder);
  }

  static bool IsDatabase() { return std::string_view(GetParam()) == "SQL"; }
  /// A session of its own with a new copy of the file or database.
  Ref<vex::IStore> Open(std::u16string_view attributes = {}, const char* name = "campaign") {
    const auto environment = vex::GetEngineEnvironment();
    const auto source = (m_folder / name).replace_extension(".atfx");
    const auto original = std::filesystem::path(HV_TEST_DATA_DIR "/browse") / source.filename();
    std::filesystem::copy_file(original, source, std::filesystem::copy_options::overwrite_existing);
    const auto parameters = [&](const std::filesystem::path& path, std::u16string_view more) {
      return WString(u"<filename" + std::u16string(more) + u">") + cor::FromUtf8(path.string()) +
             u"</filename>";
    };
    if (!IsDatabase()) return OpenFile(*environment, u"ATFX", parameters(source, attributes));
    const auto database = m_folder / (std::to_string(++m_databases) + ".sqlite");
    const auto file = OpenFile(*environment, u"ATFX", parameters(source, {}));
    environment->WriteStore(file.Get(), parameters(database, {}), u"SQL", 0);
    return OpenFile(*environment, u"SQL", parameters(database, attributes));
  }
  static Ref<Provider> ProviderOf(vex::IStore& store) {
    Ref<Provider> provider;
    EXPECT_EQ(S_OK, vex::MakeSimplifiedStore(&store, nullptr, provider.Put()));
    return provider;
  }
  void OpenAgain(std::u16string_view attributes = {}, const char* name = "campaign") {
    m_provider.Reset();
    m_store = Open(attributes, name);
    m_provider = ProviderOf(*m_store);
  }

  Ref<vex::IInstance> Instance(std::u16string_view key) {
    return Ref<vex::IInstance>::Adopt(m_store->GetInstance(key));
  }
  /// A record that no collection has made.
  Ref<vex::IInstance> MakeRecord(std::u16string_view entity, std::u16string_view name) {
    const auto model = Ref<vex::IModel>::Adopt(m_store->GetModel());
    const auto type = Ref<vex::IEntity>::Adopt(model->GetEntity(entity));
    auto instance = Ref<vex::IInstance>::Adopt(m_store->CreateInstance(type.Get()));
    instance.As<vex::IContainer>()->SetString(u"name", name);
    return instance;
  }
  Ref<vex::IStoreElementImpl> Element(std::u16string_view key) {
    Ref<vex::IStoreElementImpl> element;
    EXPECT_EQ(S_OK, m_provider->GetElementByKey(key, element.Put()));
    return element;
  }
  Ref<vex::IRootElementsImpl> Roots() {
    Ref<vex::IRootElementsImpl> roots;
    EXPECT_EQ(S_OK, m_provider->CreateRootElements(roots.Put()));
    return roots;
  }
  Ref<vex::IStoreElementsImpl> Members(std::u16string_view key, std::u16string_view path) {
    Ref<vex::IStoreElementsImpl> members;
    EXPECT_EQ(S_OK, vex::MakeReferencedElements(*m_provider, *Instance(key), path, members.Put()));
    return members;
  }

  /// \name As hosts see them
  /// @{
  static Ref<vex::IStoreElement> Wrap(Ref<vex::IStoreElementImpl> element) {
    Ref<vex::IStoreElement> out;
    EXPECT_EQ(S_OK, vex::WrapStoreElement(element.Get(), out.Put()));
    return out;
  }
  static Ref<vex::IStoreElements> Wrap(Ref<vex::IStoreElementsImpl> elements) {
    Ref<vex::IStoreElements> out;
    EXPECT_EQ(S_OK, vex::WrapStoreElements(elements.Get(), out.Put()));
    return out;
  }
  static Ref<vex::IStoreElementList> Wrap(Ref<vex::IStoreElementListImpl> list) {
    Ref<vex::IStoreElementList> out;
    EXPECT_EQ(S_OK, vex::WrapStoreElementList(list.Get(), out.Put()));
    return out;
  }
  /// @}

  /// The names of a collection's members with "|" between them, which no name holds.
  static std::string Names(vex::easyImpl::IVEXElementsImpl& elements) {
    std::string names;
    Ref<vex::easyImpl::tIIteratorImpl<vex::easyImpl::IVEXElementImpl>> iterator;
    EXPECT_EQ(S_OK, elements.GetIterator(iterator.Put()));
    Ref<vex::easyImpl::IVEXElementImpl> element;
    while (iterator->Next(element.Put()) == S_OK) {
      WString name;
      EXPECT_EQ(S_OK, element->GetName(&name));
      names += (names.empty() ? "" : "|") + cor::ToUtf8(name);
    }
    return names;
  }
  /// The name that a record has in the store.
  static std::string NameInStore(vex::IStoreElementImpl& element) {
    WString name;
    QueryRef<vex::IContainer>(element.GetCoreInstance())->GetString(name, u"name");
    return cor::ToUtf8(name);
  }
  static std::string KeyOf(vex::IStoreElementImpl& element) {
    WString key;
    EXPECT_EQ(S_OK, element.GetInstanceKey(&key));
    return cor::ToUtf8(key);
  }
  /// The key of the member of a name, "" if there is none.
  static std::string KeyOfMember(vex::IStoreElementsImpl& elements, std::u16string_view name) {
    Ref<vex::easyImpl::IVEXElementImpl> element;
    const Result rc = elements.GetItemByName(name, element.Put());
    EXPECT_EQ(!element, Failed(rc));
    EXPECT_TRUE(element || rc == E_INVALIDARG);
    return element ? KeyOf(*element.As<vex::IStoreElementImpl>()) : std::string();
  }

  Ref<vex::IStore> m_store;
  Ref<Provider> m_provider;

 private:
  static Ref<vex::IStore> OpenFile(vex::IEnvironment& environment, std::u16string_view plugin,
                                   const WString& parameters) {
    return Ref<vex::IStore>::Adopt(environment.OpenStoreByParameter(u"", plugin, parameters, 0));
  }

  TestConfiguration m_configuration;
  std::int64_t m_objects;
  std::filesystem::path m_folder;
  int m_databases = 0;
};

inline std::string NameOfKind(const ::testing::TestParamInfo<const char*>& info) {
  return info.param;
}

}  // namespace hv::test
