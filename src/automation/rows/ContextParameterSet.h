// automation/rows/ContextParameterSet.h - the messages of `CContextParameterSetInt`.
// Numbers, order and argument texts are frozen: scripts compare and people read them.
#pragma once

#include "automation/ErrorRows.h"

namespace hv::automation::rows {

inline constexpr auto kContextParameterSetName = Errors(u"Name");
inline constexpr auto kContextParameterSetParameters = Errors(u"Parameters");

inline constexpr auto kContextParameterSetLoad = Errors(
    u"Load", On(E_FAIL, 273, CallText(0), Literal(u"tps")),
    On(VEX_E_BAD_FILE, 273, CallText(0), Literal(u"tps")), On(E_INVALIDARG, 229, CallText(0)));

inline constexpr auto kContextParameterSetSave =
    Errors(u"Save", On(E_FAIL, 358, CallText(0)), On(E_INVALIDARG, 358, CallText(0)));

}  // namespace hv::automation::rows
