// automation/rows/StoreElementList.h - the messages of `CStoreElementListInt`.
// Numbers, order and argument texts are frozen: scripts compare and people read them.
#pragma once

#include "automation/ErrorRows.h"
#include "automation/rows/Collections.h"

namespace hv::automation::rows {

inline constexpr auto kStoreElementListItem = kCollectionItem;
inline constexpr auto kStoreElementListGetMaxCount = Errors(u"GetMaxCount");
inline constexpr auto kStoreElementListPutMaxCount =
    Errors(u"GetMaxCount", On(E_INVALIDARG, 362, Literal(u"MaxCount")));

}  // namespace hv::automation::rows
