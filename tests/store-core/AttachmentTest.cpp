// tests/store-core/AttachmentTest.cpp - attaching an engine, against stand-ins for it.
#include <storefabric/Ref.h>

#include "plugins/StandInLog.h"
#include "plugins/TestConfiguration.h"
#include "store/core/CoreBinding.h"
#include "store/core/CoreLibrary.h"
#include "store/core/EngineModule.h"
#include "store/core/Seam.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

extern "C" hv::test::StandInLog HvStandInLog;

namespace hv::vex {
namespace {

using test::StandInAnswer;
using test::TestConfiguration;

const std::string kPlugins = HV_BINARY_DIR "/tests/plugins/";

class BoundObject final : CoreBinding {
 public:
  using CoreBinding::IsAttached;
};

class Attachment : public ::testing::Test {
 protected:
  void SetUp() override { HvStandInLog = {}; }
  void TearDown() override {
    EXPECT_EQ(0U, GetCoreLibrary().attachCount);
    EXPECT_EQ(nullptr, GetCoreLibrary().module);
    EXPECT_EQ(HvStandInLog.loads, HvStandInLog.unloads);
    EXPECT_EQ(0, HvStandInLog.liveObjects);
    EXPECT_EQ(0, HvStandInLog.neverCalled);
  }
};

bool IsLoaded(const std::string& path) {
  void* const handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
  if (handle) ::dlclose(handle);
  return handle != nullptr;
}

TEST_F(Attachment, LoadsWithTheFirstObjectAndUnloadsWithTheLast) {
  const TestConfiguration configuration(kPlugins + "complete");
  {
    const BoundObject first;
    EXPECT_TRUE(first.IsAttached());
    {
      const BoundObject second;
      EXPECT_EQ(2U, GetCoreLibrary().attachCount);
      EXPECT_EQ(1, HvStandInLog.loads);
      EXPECT_EQ(2, HvStandInLog.inits);
    }
    EXPECT_EQ(1, HvStandInLog.cleanups);
    EXPECT_TRUE(IsLoaded(kPlugins + "complete/vexex.so"));
  }
  EXPECT_EQ(2, HvStandInLog.cleanups);
  EXPECT_FALSE(IsLoaded(kPlugins + "complete/vexex.so"));
  EXPECT_EQ(nullptr, GetCoreLibrary().vexGetEnvironment);
}

TEST_F(Attachment, CountsTheHostsInitAndCleanup) {
  const TestConfiguration configuration(kPlugins + "complete");
  EXPECT_EQ(1, HostInit());
  EXPECT_EQ(2, HostInit());
  EXPECT_EQ(1, HvStandInLog.inits);
  EXPECT_EQ(1U, GetCoreLibrary().attachCount);
  {
    const BoundObject outlives;
    HostCleanup();
    EXPECT_EQ(0, HvStandInLog.cleanups);
    HostCleanup();
    EXPECT_EQ(1, HvStandInLog.cleanups);
    EXPECT_EQ(0, HvStandInLog.unloads) << "an object outlives the host's last Cleanup";
    EXPECT_TRUE(GetEngineEnvironment());
  }
}

TEST_F(Attachment, CleanupTooMuchIsForgotten) {
  const TestConfiguration configuration(kPlugins + "complete");
  HostCleanup();
  EXPECT_EQ(0, HvStandInLog.loads);
  EXPECT_EQ(0, HostInit()) << "the count was -1, so this wasn't the first call";
  EXPECT_EQ(0, HvStandInLog.loads);
  EXPECT_EQ(1, HostInit());
  EXPECT_EQ(1, HvStandInLog.inits);
  HostCleanup();
}

TEST_F(Attachment, MissingExportSkipsTheStartButKeepsTheRest) {
  const TestConfiguration configuration(kPlugins + "lacking");
  {
    const BoundObject object;
    EXPECT_FALSE(object.IsAttached());
    EXPECT_EQ(nullptr, GetCoreLibrary().vexCreateContainerList);
    EXPECT_TRUE(GetEngineEnvironment());
  }
  EXPECT_EQ(0, HvStandInLog.inits);
  EXPECT_EQ(1, HvStandInLog.cleanups);
}

/// What a call to the engine throws: the code and the message.
std::pair<std::int32_t, std::string> Thrown(void (*call)()) {
  try {
    call();
  } catch (const Exception& exception) {
    return {exception.code, cor::ToUtf8(exception.message)};
  }
  return {0, ""};
}
constexpr void (*kCalls[])() = {[] { EXPECT_FALSE(GetEngineEnvironment()); },
                                [] { EXPECT_FALSE(CreateEngineContainer()); },
                                [] { EXPECT_FALSE(CreateEngineInstList()); }};

TEST_F(Attachment, MissingModuleShowsAtTheFirstCall) {
  const TestConfiguration configuration(kPlugins + "none");
  EXPECT_EQ(1, HostInit());
  {
    const BoundObject object;
    EXPECT_FALSE(object.IsAttached());
    EXPECT_EQ(2U, GetCoreLibrary().attachCount);
    for (const auto call : kCalls) {
      EXPECT_EQ(std::pair(errc::kNotBound, std::string("vex not correctly initialized")),
                Thrown(call));
    }
  }
  HostCleanup();
}

TEST_F(Attachment, EnvironmentIsAskedForWithVersionAndStamp) {
  const TestConfiguration configuration(kPlugins + "complete");
  const BoundObject object;
  const Ref<IEnvironment> environment = GetEngineEnvironment();
  EXPECT_EQ(101, HvStandInLog.version);
  EXPECT_EQ(0x645249, HvStandInLog.stamp);
  EXPECT_EQ(u"", HvStandInLog.text);
  EXPECT_EQ(1, HvStandInLog.liveObjects);
}

TEST_F(Attachment, PassesOnWhatTheEngineReports) {
  const TestConfiguration configuration(kPlugins + "complete");
  const BoundObject object;
  HvStandInLog.code = -4711;
  const struct {
    const char* name;
    StandInAnswer answer;
    std::pair<std::int32_t, std::string> thrown;
  } rows[] = {
      {"Thrown", StandInAnswer::Throw, {-4711, "thrown by the stand-in"}},
      {"ErrorWord", StandInAnswer::ErrorWord, {-4711, ""}},
      {"ObjectBesideTheErrorWord", StandInAnswer::ObjectAndErrorWord, {-4711, ""}},
      {"Nothing", StandInAnswer::Nothing, {0, ""}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    HvStandInLog.answer = row.answer;
    for (const auto call : kCalls) EXPECT_EQ(row.thrown, Thrown(call));
    EXPECT_EQ(0, HvStandInLog.liveObjects);
  }
}

TEST_F(Attachment, ModulePathComesFromBinDir) {
  const std::pair<std::string, std::string> kPaths[] = {
      {"/opt/engine/", "/opt/engine/vexex.so"},
      {"/opt/engine", "/opt/engine/vexex.so"},
      {"C:\\engine\\", "C:\\engine\\vexex.so"},
      {"C:\\engine", "C:\\engine\\vexex.so"},
      {"/" + std::string(1200, 'd'), "/" + std::string(999, 'd') + "/vexex.so"},
  };
  for (const auto& [binDir, path] : kPaths) {
    const TestConfiguration configuration(binDir);
    EXPECT_EQ(path, cor::ToUtf8(EngineModulePath(u"vexex")));
  }
}

TEST_F(Attachment, WithoutBinDirTheSystemFindsTheModule) {
  const TestConfiguration configuration;
  EXPECT_EQ(u"no-such-module.so", EngineModulePath(u"no-such-module").view());
  configuration.WriteMachine("this is no configuration\n[");
  EXPECT_EQ(u"no-such-module.so", EngineModulePath(u"no-such-module").view());
}

}  // namespace
}  // namespace hv::vex
