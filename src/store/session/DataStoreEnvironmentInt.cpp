// store/session/DataStoreEnvironmentInt.cpp - the automation face of the object that opens
// sessions.
#include "store/session/DataStoreEnvironmentInt.h"

#include "automation/DispatchError.h"
#include "automation/Guards.h"
#include "automation/MessageFormat.h"
#include "automation/rows/DataStoreEnvironment.h"
#include "store/session/CallArguments.h"
#include "store/session/DataStoreEnvironmentImpl.h"
#include "store/session/DataStoreInt.h"

namespace hv::vex {

namespace {

using namespace automation;  // NOLINT: the vocabulary of the table below
using E = IDataStoreEnvironment;

constexpr MemberErrors kConnectErrors = rows::kDataStoreEnvironmentConnect;

/// What a store that isn't configured is called in messages: its file, or else its plug-in.
WString NameForMessage(std::span<const Variant> args) {
  const WString file = FileNameOf(TextOr(args[1], u""));
  return file.empty() ? TextOr(args[0], u"") : file;
}

/// Raises the member's message with the store's name, which isn't an argument of this member.
Result ConnectByParameterByName(IDataStoreEnvironment& self, CallFrame& frame) {
  const Result rc = Bind<&E::ConnectDataStoreByParameter>::Call(self, frame);
  if (!Failed(rc) || frame.refusedArgument >= 0) return rc;
  const ErrorRow row = SelectErrorRow(kConnectErrors, rc, {});
  if (row.args[0].source == ErrorArg::Source::CallText) {
    const MessageArg name(NameForMessage(frame.args));
    ThrowDispatchError(row.number, FormatTableMessage(row.textNumber, std::span(&name, 1)));
  }
  return rc;
}

constexpr auto kRows =
    MakeRows(Method<&E::ConnectDataStore>(u"ConnectDataStore", 1, kConnectErrors),
             Custom<&ConnectByParameterByName>(u"ConnectDataStoreByParameter", 2, CallKind::Method,
                                               2, kConnectErrors));

constexpr DispatchMap kMap(u"DataStoreEnvironment", kRows);

}  // namespace

const DispatchMap& CDataStoreEnvironmentInt::Map() { return kMap; }

Result CDataStoreEnvironmentInt::Create(IDispatch** out) try {
  HV_RETURN_IF_NULL(out);
  *out = new CDataStoreEnvironmentInt(MakeRef<CDataStoreEnvironmentImpl>());
  return S_OK;
}
HV_CATCH_RETURN()

Result CDataStoreEnvironmentInt::ConnectDataStore(const WString& dataStoreName,
                                                  IDataStore** store) {
  return Connect(dataStoreName, u"", u"", store);
}

Result CDataStoreEnvironmentInt::ConnectDataStoreByParameter(const WString& pluginName,
                                                             const WString& dataStoreParameter,
                                                             IDataStore** store) {
  return Connect(u"", pluginName, dataStoreParameter, store);
}

Result CDataStoreEnvironmentInt::Connect(std::u16string_view name, std::u16string_view pluginName,
                                         std::u16string_view parameter, IDataStore** store) try {
  HV_RETURN_IF_NULL(store);
  *store = nullptr;
  Ref<IDataStoreImpl> session;
  HV_RETURN_IF_FAILED(m_environment->Connect(name, pluginName, parameter, session.Put()));
  *store = new CDataStoreInt(std::move(session));
  return S_OK;
}
HV_CATCH_RETURN()

}  // namespace hv::vex
