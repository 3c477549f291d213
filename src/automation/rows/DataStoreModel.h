// automation/rows/DataStoreModel.h - the messages of `CDataStoreModelInt` and `CModelPropertyInt`.
// Numbers, order and argument texts are frozen: scripts compare and people read them.
#pragma once

#include "automation/ErrorRows.h"

namespace hv::automation::rows {

inline constexpr auto kDataStoreModelExport = Errors(u"Export", On(E_FAIL, 358, CallText(0)));
inline constexpr auto kDataStoreModelGetEntities = Errors(u"GetEntities");

inline constexpr auto kModelPropertyGetBaseName =
    Errors(u"GetBaseName", On(VEX_E_NOT_BASE_PROPERTY, 343));

}  // namespace hv::automation::rows
