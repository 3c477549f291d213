// tests/store/session/ConnectTest.cpp - how a session connects, against a stand-in for the engine,
// and what a script reads when it can't.
#include <storefabric/IDataStore.h>

#include <memory>

#include "cor/Counted.h"
#include "plugins/StandInLog.h"
#include "plugins/TestConfiguration.h"
#include "store/core/CoreLibrary.h"
#include "store/core/Seam.h"
#include "store/session/DataStoreEnvironmentInt.h"
#include "store/session/DataStoreImpl.h"
#include "tests/support/Script.h"

extern "C" hv::test::StandInLog HvStandInLog;

namespace hv::vex {
namespace {

using test::StandInAnswer;
using test::TestConfiguration;

const std::string kPlugins = HV_BINARY_DIR "/tests/plugins/";

class Connect : public ::testing::Test {
 protected:
  Connect() : m_configuration(std::make_unique<TestConfiguration>(kPlugins + "complete")) {
    HvStandInLog = {};
    Ref<IDispatch> made;
    EXPECT_EQ(S_OK, CDataStoreEnvironmentInt::Create(made.Put()));
    m_environment = made.As<IDataStoreEnvironment>();
  }
  ~Connect() override {
    m_environment.Reset();
    EXPECT_EQ(m_alive, cor::LiveObjectCount());
    EXPECT_EQ(HvStandInLog.loads, HvStandInLog.unloads);
    EXPECT_EQ(0, HvStandInLog.liveObjects);
  }

  const std::int64_t m_alive = cor::LiveObjectCount();
  std::unique_ptr<TestConfiguration> m_configuration;
  Ref<IDataStoreEnvironment> m_environment;
};

TEST_F(Connect, TurnsTheEnginesCodesIntoResultsAndMessages) {
  const std::string opening = "292 Opening the Sifter NAME causes an error.";
  const struct {
    std::int32_t engineCode;
    Result result;
    std::string shown;
  } rows[] = {
      {-4104, VEX_E_CONNECT_FAILED, "no object"},  // nothing is raised
      {-1906, VEX_E_CONNECT_REFUSED, "no object"},
      {-1302, VEX_E_WRITE_PROTECTED, "no object"},
      {-1008, E_PENDING, "241 The operation ConnectDataStore was timed out."},
      {-800, E_OUTOFMEMORY, "207 The application is out of memory."},
      {-1908, E_FAIL, opening},
      {-1003, E_FAIL, opening},
      {-1, E_FAIL, opening},
  };
  const struct {
    const char* line;
    const char* opened;
    const char* name;  ///< in the message
  } calls[] = {
      {"connectdatastore('nowhere')", "name=nowhere", "nowhere"},
      {"ConnectDataStoreByParameter('PLUGIN','<x>1</x><filename>a&amp;b.atfx</filename>')",
       "|PLUGIN|<x>1</x><filename>a&amp;b.atfx</filename>", "a&b.atfx"},
      {"ConnectDataStoreByParameter('PLUGIN','<server>s</server>')", "|PLUGIN|<server>s</server>",
       "PLUGIN"},
  };
  test::Script script(m_environment.Get());
  for (const auto& row : rows) {
    HvStandInLog.code = row.engineCode;
    Ref<IDataStore> store;
    EXPECT_EQ(row.result, m_environment->ConnectDataStore(u"store", store.Put()));
    EXPECT_EQ(row.result, m_environment->ConnectDataStoreByParameter(u"P", u"", store.Put()));
    for (const auto& call : calls) {
      SCOPED_TRACE(std::to_string(row.engineCode) + " " + call.line);
      std::string shown = row.shown;
      if (const auto at = shown.find("NAME"); at != shown.npos) shown.replace(at, 4, call.name);
      EXPECT_EQ(shown, script.Show(call.line));
      EXPECT_EQ(call.opened, cor::ToUtf8(HvStandInLog.opened));
    }
  }
}

TEST_F(Connect, FailsWithoutCrashingOnABadEngine) {
  const struct {
    const char* name;
    const char* modules;
    StandInAnswer answer;
  } rows[] = {
      {"NoModule", "none", StandInAnswer::Object},
      {"EnvironmentThrows", "complete", StandInAnswer::Throw},
      {"ErrorWord", "complete", StandInAnswer::ErrorWord},
      {"NoEnvironment", "complete", StandInAnswer::Nothing},
      {"NoStore", "complete", StandInAnswer::Object},
      {"NoStoreFromALackingModule", "lacking", StandInAnswer::Object},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    m_configuration.reset();
    m_configuration = std::make_unique<TestConfiguration>(kPlugins + row.modules);
    HvStandInLog.answer = row.answer;
    HvStandInLog.openAnswer = StandInAnswer::Nothing;
    HvStandInLog.code = -4711;
    Ref<IDataStore> store;
    EXPECT_EQ(E_FAIL, m_environment->ConnectDataStore(u"store", store.Put()));
    EXPECT_EQ("292 Opening the Sifter x causes an error.",
              test::Script(m_environment.Get()).Show("ConnectDataStore('x')"));
  }
}

TEST_F(Connect, ChecksArgumentsBeforeItAsksTheEngine) {
  test::Script script(m_environment.Get());
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, script.Run("ConnectDataStore").rc);
  const test::Answer missing = script.Run("ConnectDataStoreByParameter('PLUGIN',missing)");
  EXPECT_EQ(DISP_E_PARAMNOTFOUND, missing.rc);
  EXPECT_EQ(1, missing.error.argument);
  EXPECT_EQ(E_POINTER, m_environment->ConnectDataStore(u"bench", nullptr));
  EXPECT_EQ(E_POINTER, m_environment->ConnectDataStoreByParameter(u"PLUGIN", u"", nullptr));
  EXPECT_EQ(u"?", HvStandInLog.text);
}

TEST_F(Connect, GivenEnvironmentIsUsedInsteadOfTheEngines) {
  const Ref<CDataStoreImpl> session = MakeRef<CDataStoreImpl>();
  const Ref<IEnvironment> given = GetEngineEnvironment();
  ASSERT_TRUE(given);
  HvStandInLog.asked = 0;
  // A name comes before plug-in and parameter.
  (void)session->Connect(u"bench", u"PLUGIN", u"<filename>a</filename>", given.Get());
  EXPECT_EQ(u"name=bench", HvStandInLog.opened);
  EXPECT_EQ(0, HvStandInLog.asked);
}

TEST_F(Connect, SessionWithoutAStoreHasNone) {
  const Ref<CDataStoreImpl> session = MakeRef<CDataStoreImpl>();
  Ref<IStore> store;
  EXPECT_EQ(E_FAIL, session->Connect(u"store", u"", u"", nullptr));
  EXPECT_EQ(E_UNEXPECTED, session->GetCoreStore(store.Put()));
  EXPECT_EQ(E_UNEXPECTED, session->OpenByStore(nullptr));
  EXPECT_FALSE(session->HasQmdModel());
}

}  // namespace
}  // namespace hv::vex
