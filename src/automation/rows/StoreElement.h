// automation/rows/StoreElement.h - the messages of `CStoreElementInt`.
// Numbers, order and argument texts are frozen: scripts compare and people read them.
#pragma once

#include "automation/ErrorRows.h"

namespace hv::automation::rows {

inline constexpr auto kStoreElementPutName =
    ErrorsOfChange(u"PutName", On(E_POINTER, 209, Literal(u"Name"), Literal(u"NULL")),
                   On(VEX_E_EMPTY_NAME, 360), On(VEX_E_WRITE_PROTECTED, 365));

inline constexpr auto kStoreElementGetChildren = Errors(u"GetChildren", On(E_FAIL, 370));

}  // namespace hv::automation::rows
