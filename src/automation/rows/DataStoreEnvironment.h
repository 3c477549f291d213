// automation/rows/DataStoreEnvironment.h - the messages of `CDataStoreEnvironmentInt`.
// Numbers, order and argument texts are frozen: scripts compare and people read them.
#pragma once

#include "automation/ErrorRows.h"

namespace hv::automation::rows {

/// Both connecting members. A code without a row raises nothing: the call gives a null object. The
/// name is the first argument; a store that is told by plug-in and parameter has none of its own
/// and is named by its plug-in.
inline constexpr auto kDataStoreEnvironmentConnect =
    OnlyErrors(u"ConnectDataStore", On(E_FAIL, 292, CallText(0)),
               On(E_INVALIDARG, 292, CallText(0)), On(E_ACCESSDENIED, 247, CallText(0)),
               On(E_PENDING, 241, Literal(u"ConnectDataStore")), On(E_OUTOFMEMORY, 207));

}  // namespace hv::automation::rows
