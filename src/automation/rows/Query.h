// automation/rows/Query.h - the messages of `CQueryInt` and `CDataStoreQueryInt`.
// Numbers, order and argument texts are frozen: scripts compare and people read them.
#pragma once

#include "automation/ErrorRows.h"

namespace hv::automation::rows {

inline constexpr auto kQueryIsKindOf = Errors(u"IsKindOf");
inline constexpr auto kQueryIsEmpty = Errors(u"IsEmpty");
inline constexpr auto kQueryQueryString = Errors(
    u"QueryString",
    On(E_INVALIDARG, 222, Literal(u"Context"), Literal(u"QueryString"), Literal(u"DataStore")));

inline constexpr auto kStoreQueryReturnType =
    Errors(u"ReturnType", On(E_INVALIDARG, 209, CallText(0), Literal(u"ReturnType")),
           On(VEX_E_QUERY_BROWSE_PATH, 369), On(VEX_E_OTHER_STORE, 334));
inline constexpr auto kStoreQueryConditions =
    Errors(u"Conditions", On(VEX_E_QUERY_BROWSE_PATH, 369), On(VEX_E_OTHER_STORE, 334));
inline constexpr auto kStoreQueryDetach = Errors(u"Detach");

}  // namespace hv::automation::rows
