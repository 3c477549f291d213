// tests/store/session/EnvironmentErrorsTest.cpp - what a script reads when a store can't be opened.
#include <storefabric/IDataStore.h>
#include <storefabric/IDataStoreEnvironment.h>

#include "CallByName.h"
#include "plugins/StandInLog.h"
#include "plugins/TestConfiguration.h"
#include "store/session/DataStoreEnvironmentInt.h"

#include <gtest/gtest.h>

extern "C" hv::test::StandInLog HvStandInLog;

namespace hv::vex {
namespace {

using test::Call;
using test::CallByName;
using test::TestConfiguration;

Ref<IDataStoreEnvironment> MakeEnvironment() {
  Ref<IDispatch> made;
  EXPECT_EQ(S_OK, CDataStoreEnvironmentInt::Create(made.Put()));
  return made.As<IDataStoreEnvironment>();
}

struct ErrorCase {
  const char* name;
  std::int32_t engineCode;
  std::int32_t number;  ///< 0: nothing is raised
  std::u16string_view byName;
  std::u16string_view byFile;
  std::u16string_view byPlugin;
};

TEST(EnvironmentErrors, ScriptReadsNumberAndText) {
  HvStandInLog = {};
  const TestConfiguration configuration(HV_BINARY_DIR "/tests/plugins/complete");
  const Ref<IDataStoreEnvironment> environment = MakeEnvironment();
  const ErrorCase kErrors[] = {
      {"Failure", -1003, 292, u"Opening the Sifter nowhere causes an error.",
       u"Opening the Sifter a&b.atfx causes an error.",
       u"Opening the Sifter PLUGIN causes an error."},
      {"TimedOut", -1008, 241, u"The operation ConnectDataStore was timed out.",
       u"The operation ConnectDataStore was timed out.",
       u"The operation ConnectDataStore was timed out."},
      {"OutOfMemory", -800, 207, u"The application is out of memory.",
       u"The application is out of memory.", u"The application is out of memory."},
      {"Refused", -1906, 0, u"", u"", u""},
      {"Unreachable", -4104, 0, u"", u"", u""},
      {"WriteProtected", -1302, 0, u"", u"", u""},
  };
  for (const ErrorCase& row : kErrors) {
    SCOPED_TRACE(row.name);
    HvStandInLog.code = row.engineCode;
    const Call calls[] = {
        CallByName(*environment.Get(), u"connectdatastore", {Variant::Text(u"nowhere")}),
        CallByName(*environment.Get(), u"ConnectDataStoreByParameter",
                   {Variant::Text(u"PLUGIN"),
                    Variant::Text(u"<x>1</x><filename>a&amp;b.atfx</filename>")}),
        CallByName(*environment.Get(), u"ConnectDataStoreByParameter",
                   {Variant::Text(u"PLUGIN"), Variant::Text(u"<server>s</server>")}),
    };
    const std::u16string_view texts[] = {row.byName, row.byFile, row.byPlugin};
    for (std::size_t i = 0; i < std::size(calls); ++i) {
      SCOPED_TRACE(i);
      EXPECT_EQ(row.number == 0 ? S_OK : DISP_E_EXCEPTION, calls[i].code);
      EXPECT_EQ(row.number, calls[i].error.number);
      EXPECT_TRUE(calls[i].error.text.EqualsExact(texts[i])) << cor::ToUtf8(calls[i].error.text);
      if (row.number == 0) {
        ASSERT_TRUE(calls[i].result.Is(VT_DISPATCH));
        EXPECT_EQ(nullptr, calls[i].result.AsObject());
        EXPECT_TRUE(Failed(calls[i].error.code));
      }
    }
  }
}

TEST(EnvironmentErrors, MissingEngineReadsAsAStoreThatCannotBeOpened) {
  HvStandInLog = {};
  const TestConfiguration configuration(HV_BINARY_DIR "/tests/plugins/none");
  const Ref<IDataStoreEnvironment> environment = MakeEnvironment();
  const Call call = CallByName(*environment.Get(), u"ConnectDataStore", {Variant::Text(u"bench")});
  EXPECT_EQ(292, call.error.number);
}

TEST(EnvironmentErrors, ArgumentsAreCheckedBeforeTheCall) {
  HvStandInLog = {};
  const TestConfiguration configuration(HV_BINARY_DIR "/tests/plugins/complete");
  const Ref<IDataStoreEnvironment> environment = MakeEnvironment();
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, CallByName(*environment.Get(), u"ConnectDataStore", {}).code);
  const Call call = CallByName(*environment.Get(), u"ConnectDataStoreByParameter",
                               {Variant::Text(u"PLUGIN"), Variant::Missing()});
  EXPECT_EQ(DISP_E_PARAMNOTFOUND, call.code);
  EXPECT_EQ(1, call.error.argument);
  EXPECT_EQ(E_POINTER, environment->ConnectDataStore(u"bench", nullptr));
  EXPECT_EQ(E_POINTER, environment->ConnectDataStoreByParameter(u"PLUGIN", u"", nullptr));
  EXPECT_EQ(u"?", HvStandInLog.text) << "the engine wasn't asked";
}

}  // namespace
}  // namespace hv::vex
