// tests/elements/EngineFixture.h - a store of the engine, linked into the test, over a file of
// ours.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <storefabric/Ref.h>

#include "cor/Counted.h"
#include "core/objects/EnvironmentObject.h"
#include "core/plugins/atfx/AtfxPlugin.h"
#include "store/core/Seam.h"
#include "tests/support/TempFolder.h"

namespace hv::test {

/// Opens a copy of tests/data/store/model/fleet.atfx and counts objects: none may be left over.
class FleetTest : public ::testing::Test {
 protected:
  FleetTest() : m_objectsBefore(cor::LiveObjectCount()) {
    std::filesystem::copy_file(std::string(HV_TEST_DATA_DIR) + "/store/model/fleet.atfx",
                               m_folder.File("fleet.atfx"));
    m_environment = MakeRef<vex::engine::EnvironmentObject>(
        std::span<const vex::engine::PluginInfo>(&vex::engine::kAtfxPlugin, 1));
    m_store = Open(u"<filename>");
  }
  ~FleetTest() override {
    m_store.Reset();
    m_environment.Reset();
    EXPECT_EQ(m_objectsBefore, cor::LiveObjectCount()) << "an object is still held";
  }

  /// The file again, in a session of its own. The tag may have an attribute.
  Ref<vex::IStore> Open(std::u16string_view tag) {
    const WString parameters =
        WString(tag) + cor::FromUtf8(m_folder.File("fleet.atfx").string()) + u"</filename>";
    return Ref<vex::IStore>::Adopt(
        m_environment->OpenStoreByParameter(u"", u"ATFX", parameters, 0));
  }
  Ref<vex::IInstance> Instance(std::u16string_view key) {
    return Ref<vex::IInstance>::Adopt(m_store->GetInstance(key));
  }

  std::int64_t m_objectsBefore;
  TempFolder m_folder;
  Ref<vex::IEnvironment> m_environment;
  Ref<vex::IStore> m_store;
};

}  // namespace hv::test
