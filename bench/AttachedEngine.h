// bench/AttachedEngine.h - the engine of this build, loaded by a benchmark below the sessions.
#pragma once

#include <filesystem>

#include "Bench.h"
#include "store/core/CoreLibrary.h"
#include "store/core/Seam.h"
#include "tests/plugins/TestConfiguration.h"

inline hv::WString FileTag(const std::filesystem::path& path) {
  return u"<filename>" + hv::cor::FromUtf8(path.string()) + u"</filename>";
}

inline hv::Ref<hv::vex::IStore> OpenStore(std::u16string_view plugin,
                                          const std::filesystem::path& path) {
  return hv::Ref<hv::vex::IStore>::Adopt(
      hv::vex::GetEngineEnvironment()->OpenStoreByParameter(u"", plugin, FileTag(path), 0));
}

/// Runs a benchmark while the engine is attached.
template <class Body>
void WithEngine(const Body& body) {
  const hv::test::TestConfiguration configuration(HV_BINARY_DIR "/lib");
  hv::vex::HostInit();
  try {
    body();
  } catch (const hv::vex::Exception& error) {
    Require(false, hv::cor::ToUtf8(error.message).c_str());
  }
  hv::vex::HostCleanup();
}
