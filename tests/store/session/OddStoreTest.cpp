// tests/store/session/OddStoreTest.cpp - a session with a store that fails, refuses and answers
// null.
#include <storefabric/IDataStoreContext.h>

#include "CallByName.h"
#include "OddStore.h"
#include "plugins/TestConfiguration.h"
#include "store/session/DataStoreImpl.h"
#include "store/session/DataStoreInt.h"

#include <gtest/gtest.h>

namespace hv::vex {
namespace {

using test::Call;
using test::CallByName;
using test::OddStore;
using test::TestConfiguration;

class OddStoreSession : public ::testing::Test {
 protected:
  OddStoreSession() : m_configuration(HV_BINARY_DIR "/lib") {
    const Ref<CDataStoreImpl> real = MakeRef<CDataStoreImpl>();
    EXPECT_EQ(S_OK, real->Connect(
                        u"", u"ATFX",
                        cor::FromUtf8("<filename>" HV_TEST_DATA_DIR "/store/bench.atfx</filename>"),
                        nullptr));
    Ref<IStore> core;
    EXPECT_EQ(S_OK, real->GetCoreStore(core.Put()));
    m_session = MakeRef<CDataStoreImpl>();
    m_store = MakeRef<OddStore>(std::move(core));
    EXPECT_EQ(S_OK, m_session->OpenByStore(m_store.Get()));
    m_face = MakeRef<CDataStoreInt>(m_session);
  }

 private:
  TestConfiguration m_configuration;

 protected:
  Ref<CDataStoreImpl> m_session;
  Ref<OddStore> m_store;
  Ref<CDataStoreInt> m_face;
};

struct ThrownCase {
  std::int32_t code;
  Result read;
};

TEST_F(OddStoreSession, ExceptionsOfTheStoreBecomeCodes) {
  const ThrownCase kCodes[] = {
      {-800, E_OUTOFMEMORY}, {-1008, E_PENDING},    {-1302, VEX_E_WRITE_PROTECTED},
      {-1906, E_UNEXPECTED}, {-4104, E_UNEXPECTED}, {-1, E_UNEXPECTED},
  };
  for (const ThrownCase& row : kCodes) {
    SCOPED_TRACE(row.code);
    m_store->thrown = row.code;
    WString text;
    std::int32_t number = 0;
    IDataStoreContextImpl* context = nullptr;
    EXPECT_EQ(row.read, m_session->GetName(&text));
    EXPECT_EQ(row.read, m_session->GetPluginName(&text));
    EXPECT_EQ(row.read, m_session->GetParameters(&text));
    EXPECT_EQ(row.read, m_session->IsModified(&number));
    EXPECT_EQ(row.read, m_session->IsQuerySupported(&number));
    EXPECT_EQ(row.read, m_session->GetContext(1, &context));
    EXPECT_EQ(E_FAIL, m_session->Save(u"")) << "why data can't be saved makes no difference";
    EXPECT_EQ(S_OK, m_session->Refresh());
    EXPECT_FALSE(m_session->HasQmdModel());
  }
}

TEST_F(OddStoreSession, ModelThatCannotBeReadFailsTheConnect) {
  m_store->thrown = -1;
  EXPECT_TRUE(Failed(m_session->OpenByStore(m_store.Get())));
  m_store->thrown = 0;
  EXPECT_EQ(S_OK, m_session->OpenByStore(m_store.Get())) << "a session may be opened again";
}

struct SaveCase {
  const char* name;
  Variant mode;
  std::u16string_view saved;
};

TEST_F(OddStoreSession, SaveModeIsATextOrTheWholeTree) {
  const SaveCase kModes[] = {
      {"LeftOut", Variant::Missing(), u"HV_MEASUREMENT_TREE"},
      {"Empty", Variant(), u"HV_MEASUREMENT_TREE"},
      {"EmptyText", Variant::Text(u""), u"HV_MEASUREMENT_TREE"},
      {"NotConvertible", Variant::Array({}), u"HV_MEASUREMENT_TREE"},
      {"Text", Variant::Text(u"QUICK"), u"QUICK"},
      {"Number", Variant::I4(5), u"5"},
  };
  for (const SaveCase& row : kModes) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(S_OK, CallByName(*m_face.Get(), u"Save", {row.mode}).code);
    EXPECT_EQ(row.saved, m_store->savedMode);
  }
  m_store->thrown = -1303;
  const Call call = CallByName(*m_face.Get(), u"Save");
  EXPECT_EQ(344, call.error.number);
  EXPECT_EQ(-1, call.error.helpContext);
}

struct ModeCase {
  const char* name;
  std::vector<Variant> args;
  std::int32_t mode;
};

TEST_F(OddStoreSession, ContextModeIsANumberOrAHundred) {
  Variant target = Variant::Text(u"8");
  const ModeCase kModes[] = {
      {"LeftOut", {}, 100},
      {"Missing", {Variant::Missing()}, 100},
      {"NoNumber", {Variant::Text(u"x")}, 100},
      {"Number", {Variant::I2(7)}, 7},
      {"ByReference", {Variant::RefTo(&target)}, 8},
  };
  for (const ModeCase& row : kModes) {
    SCOPED_TRACE(row.name);
    const Call call = CallByName(*m_face.Get(), u"GetContext", row.args);
    EXPECT_EQ(row.mode, m_store->contextMode);
    EXPECT_EQ(372, call.error.number);
    EXPECT_TRUE(
        call.error.text.EqualsExact(u"This data store does not support context parameters."));
  }
}

struct ConformCase {
  const char* name;
  Variant value;
  Result code;
};

TEST_F(OddStoreSession, OdsConformIsATruthValueOrUnset) {
  const ConformCase kValues[] = {
      {"LeftOut", Variant::Missing(), E_NOINTERFACE},
      {"Empty", Variant(), E_NOINTERFACE},
      {"Null", Variant::Null(), E_NOINTERFACE},
      {"Zero", Variant::I4(0), E_NOINTERFACE},
      {"Number", Variant::I4(2), E_NOINTERFACE},
      {"True", Variant::Text(u"True"), E_NOINTERFACE},
      {"Text", Variant::Text(u"x"), E_INVALIDARG},
      {"Array", Variant::Array({}), E_INVALIDARG},
  };
  for (const ConformCase& row : kValues) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.code, CallByName(*m_face.Get(), u"GetElementList",
                                   {Variant::Text(u"Test"), Variant::Text(u"*"), row.value})
                            .error.code);
  }
}

TEST_F(OddStoreSession, TruthValuesAreOneAndZero) {
  std::int32_t number = 0;
  EXPECT_EQ(S_OK, m_face->IsModified(&number));
  EXPECT_EQ(1, number) << "the store says -7";
  m_store->hasEnvironment = false;
  EXPECT_EQ(S_OK, m_face->IsQuerySupported(&number));
  EXPECT_EQ(0, number) << "nobody can be asked";
}

}  // namespace
}  // namespace hv::vex
