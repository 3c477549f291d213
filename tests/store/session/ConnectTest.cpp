// tests/store/session/ConnectTest.cpp - how a session connects, against a stand-in for the engine.
#include "cor/Counted.h"
#include "plugins/StandInLog.h"
#include "plugins/TestConfiguration.h"
#include "store/core/CoreLibrary.h"
#include "store/core/Seam.h"
#include "store/session/DataStoreImpl.h"

#include <gtest/gtest.h>

extern "C" hv::test::StandInLog HvStandInLog;

namespace hv::vex {
namespace {

using test::StandInAnswer;
using test::TestConfiguration;

const std::string kComplete = HV_BINARY_DIR "/tests/plugins/complete";

class Connect : public ::testing::Test {
 protected:
  void SetUp() override {
    HvStandInLog = {};
    m_alive = cor::LiveObjectCount();
  }
  void TearDown() override {
    EXPECT_EQ(m_alive, cor::LiveObjectCount());
    EXPECT_EQ(HvStandInLog.loads, HvStandInLog.unloads);
    EXPECT_EQ(0, HvStandInLog.liveObjects);
  }

 private:
  std::int64_t m_alive = 0;
};

struct CodeCase {
  std::int32_t code;
  Result result;
};

TEST_F(Connect, TurnsTheEnginesCodesIntoResults) {
  const TestConfiguration configuration(kComplete);
  const CodeCase kCodes[] = {
      {-4104, VEX_E_CONNECT_FAILED},
      {-1906, VEX_E_CONNECT_REFUSED},
      {-1008, E_PENDING},
      {-800, E_OUTOFMEMORY},
      {-1302, VEX_E_WRITE_PROTECTED},
      {-1908, E_FAIL},
      {-1003, E_FAIL},
      {-1, E_FAIL},
  };
  for (const CodeCase& row : kCodes) {
    SCOPED_TRACE(row.code);
    HvStandInLog.code = row.code;
    const Ref<CDataStoreImpl> session = MakeRef<CDataStoreImpl>();
    EXPECT_EQ(row.result, session->Connect(u"store", u"", u"", nullptr));
    EXPECT_EQ(row.result, session->Connect(u"", u"PLUGIN", u"<a/>", nullptr));
    Ref<IStore> store;
    EXPECT_EQ(E_UNEXPECTED, session->GetCoreStore(store.Put()))
        << "a failed connect gives no store";
  }
}

struct EngineCase {
  const char* name;
  const char* modules;
  StandInAnswer answer;
};

TEST_F(Connect, FailsWithoutCrashingOnABadEngine) {
  const EngineCase kEngines[] = {
      {"NoModule", "none", StandInAnswer::Object},
      {"EnvironmentThrows", "complete", StandInAnswer::Throw},
      {"ErrorWord", "complete", StandInAnswer::ErrorWord},
      {"NoEnvironment", "complete", StandInAnswer::Nothing},
      {"NoStore", "complete", StandInAnswer::Object},
      {"NoStoreFromALackingModule", "lacking", StandInAnswer::Object},
  };
  for (const EngineCase& row : kEngines) {
    SCOPED_TRACE(row.name);
    const TestConfiguration configuration(std::string(HV_BINARY_DIR "/tests/plugins/") +
                                          row.modules);
    HvStandInLog.answer = row.answer;
    HvStandInLog.openAnswer = StandInAnswer::Nothing;
    HvStandInLog.code = -4711;
    const Ref<CDataStoreImpl> session = MakeRef<CDataStoreImpl>();
    EXPECT_EQ(E_FAIL, session->Connect(u"store", u"", u"", nullptr));
  }
}

TEST_F(Connect, NameComesBeforePluginAndParameter) {
  const TestConfiguration configuration(kComplete);
  const Ref<CDataStoreImpl> session = MakeRef<CDataStoreImpl>();
  (void)session->Connect(u"bench", u"PLUGIN", u"<filename>a</filename>", nullptr);
  EXPECT_EQ(u"name=bench", HvStandInLog.opened);
  (void)session->Connect(u"", u"PLUGIN", u"<filename>a</filename>", nullptr);
  EXPECT_EQ(u"|PLUGIN|<filename>a</filename>", HvStandInLog.opened);
}

TEST_F(Connect, GivenEnvironmentIsUsedInsteadOfTheEngines) {
  const TestConfiguration configuration(kComplete);
  const Ref<CDataStoreImpl> session = MakeRef<CDataStoreImpl>();
  const Ref<IEnvironment> given = GetEngineEnvironment();
  ASSERT_TRUE(given);
  HvStandInLog.asked = 0;
  (void)session->Connect(u"bench", u"", u"", given.Get());
  EXPECT_EQ(u"name=bench", HvStandInLog.opened);
  EXPECT_EQ(0, HvStandInLog.asked);
}

TEST_F(Connect, NullStoreIsUnexpected) {
  const TestConfiguration configuration(kComplete);
  const Ref<CDataStoreImpl> session = MakeRef<CDataStoreImpl>();
  EXPECT_EQ(E_UNEXPECTED, session->OpenByStore(nullptr));
}

TEST_F(Connect, UnconnectedSessionRefusesEverything) {
  const TestConfiguration configuration(kComplete);
  const Ref<CDataStoreImpl> session = MakeRef<CDataStoreImpl>();
  WString text;
  std::int32_t number = 0;
  Ref<IDataStoreModelImpl> model;
  IDataStoreContextImpl* context = nullptr;
  EXPECT_EQ(E_UNEXPECTED, session->GetName(&text));
  EXPECT_EQ(E_UNEXPECTED, session->GetPluginName(&text));
  EXPECT_EQ(E_UNEXPECTED, session->GetParameters(&text));
  EXPECT_EQ(E_UNEXPECTED, session->GetModel(model.Put()));
  EXPECT_EQ(E_UNEXPECTED, session->IsModified(&number));
  EXPECT_EQ(E_UNEXPECTED, session->IsQuerySupported(&number));
  EXPECT_EQ(E_UNEXPECTED, session->Save(u""));
  EXPECT_EQ(E_FAIL, session->GetContext(100, &context));
  EXPECT_FALSE(session->HasQmdModel());
}

}  // namespace
}  // namespace hv::vex
