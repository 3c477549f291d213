// automation/rows/DataStoreContext.h - the messages of `CDataStoreContextInt`.
// Numbers, order and argument texts are frozen: scripts compare and people read them.
#pragma once

#include "automation/ErrorRows.h"

namespace hv::automation::rows {

inline constexpr auto kDataStoreContextSetParameter =
    Errors(u"SetParameter", On(VEX_E_VALUE_TYPE, 368), On(VEX_E_BAD_PARAMETER_TYPE, 367));

inline constexpr auto kDataStoreContextGetParameter =
    Errors(u"GetParameter", On(E_INVALIDARG, 366, CallText(0)));

}  // namespace hv::automation::rows
