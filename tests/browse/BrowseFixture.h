// tests/browse/BrowseFixture.h - stores over files of tests/data/browse, opened by the engine's
// module, and configurations over them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "browse/BrowseConfigImpl.h"
#include "browse/BrowseOperations.h"
#include "browse/BrowseResults.h"
#include "cor/Counted.h"
#include "store/core/CoreLibrary.h"
#include "store/core/Seam.h"
#include "tests/plugins/TestConfiguration.h"

#include <gtest/gtest.h>

namespace hv::vex {

/// Counts objects: none may be left over.
class BrowseTest : public ::testing::Test {
 protected:
  BrowseTest() : m_configuration(HV_BINARY_DIR "/lib"), m_objects(cor::LiveObjectCount()) {
    HostInit();
  }
  ~BrowseTest() override {
    EXPECT_EQ(m_objects, cor::LiveObjectCount()) << "an object is still held";
    HostCleanup();
  }

  static Ref<IStore> Open(const std::string& name) {
    const WString parameters =
        cor::FromUtf8("<filename>" HV_TEST_DATA_DIR "/browse/" + name + ".atfx</filename>");
    return Ref<IStore>::Adopt(
        GetEngineEnvironment()->OpenStoreByParameter(u"", u"ATFX", parameters, 0));
  }
  static Ref<CDataStoreBrowseConfigImpl> Load(const std::string& name) {
    return Load(*Open(name).Get());
  }
  static Ref<CDataStoreBrowseConfigImpl> Load(IStore& store) {
    auto config = MakeRef<CDataStoreBrowseConfigImpl>();
    EXPECT_EQ(S_OK, config->Load(&store, {}));
    return config;
  }
  static Ref<CDataStoreBrowseConfigEntityImpl> Level(IBrowseConfig& config,
                                                     std::u16string_view name) {
    return OwnBrowseEntity(Ref<IBrowseConfigEntity>::Adopt(config.GetEntityByName(name)).Get());
  }
  /// What a getter of an object writes.
  template <class Object, class Face>
  static std::string Text(Object& object, void (Face::*get)(WString&)) {
    WString text = u"untouched";
    (object.*get)(text);
    return cor::ToUtf8(text);
  }
  /// The chain of first children as "path>path>...".
  static std::string Chain(IBrowseConfig& config) {
    std::string chain = Text(config, &IBrowseConfig::GetFirstRootPath);
    auto level = Ref<IBrowseConfigEntity>::Adopt(config.GetFirstRoot());
    while (level) {
      const std::string path = Text(*level, &IBrowseConfigEntity::GetFirstChildPath);
      level = Ref<IBrowseConfigEntity>::Adopt(level->GetFirstChild());
      if (level) chain += ">" + path;
    }
    return chain;
  }
  static std::string Texts(IStringList* adopted) {
    const auto list = Ref<IStringList>::Adopt(adopted);
    std::string all;
    for (std::uint64_t i = 0; i < list->GetCount(); ++i) {
      WString text;
      list->GetText(i, text);
      all += (i ? "," : "") + cor::ToUtf8(text);
    }
    return all;
  }
  static std::vector<SymbolKey> Keys(CDataStoreBrowseConfigImpl& config) {
    std::vector<SymbolKey> keys;
    SymbolKey key = 0;
    for (std::int32_t i = 0; !Failed(config.GetSymbolKey(i, &key)); ++i) keys.push_back(key);
    return keys;
  }

 private:
  test::TestConfiguration m_configuration;
  std::int64_t m_objects;
};

}  // namespace hv::vex
