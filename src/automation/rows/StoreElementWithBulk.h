// automation/rows/StoreElementWithBulk.h - the messages of `CStoreElementWithBulkInt`.
// Numbers, order and argument texts are frozen: scripts compare and people read them.
#pragma once

#include "automation/ErrorRows.h"

namespace hv::automation::rows {

inline constexpr auto kStoreElementWithBulkGetValues =
    Errors(u"Values", On(E_INVALIDARG, 211, CallNumber(0), Literal(u"Values")));
inline constexpr auto kStoreElementWithBulkPutValues = Errors(
    u"Values", On(E_INVALIDARG, 211, CallNumber(0), Literal(u"Values")), On(E_ACCESSDENIED, 365));

inline constexpr auto kStoreElementWithBulkGetFlags =
    Errors(u"Flags", On(E_INVALIDARG, 211, CallNumber(0), Literal(u"Flags")));
inline constexpr auto kStoreElementWithBulkPutFlags =
    Errors(u"PutFlags", On(E_INVALIDARG, 211, CallNumber(0), Literal(u"Flags")));

inline constexpr auto kStoreElementWithBulkGetDataType =
    Errors(u"DataType", On(VEX_E_BAD_QUANTITY_TYPE, 352));
inline constexpr auto kStoreElementWithBulkPutDataType =
    Errors(u"PutDataType", On(VEX_E_TYPE_ALREADY_SET, 355), On(E_INVALIDARG, 364, CallNumber(0)));

inline constexpr auto kStoreElementWithBulkSetValues = Errors(
    u"SetValues", On(E_FAIL, 353), On(VEX_E_BAD_QUANTITY_TYPE, 352),
    On(VEX_E_NOT_LOCAL_COLUMN, 354),
    On(E_INVALIDARG, 222, Literal(u"Channel<Data>"), Literal(u"SetValues"), Literal(u"Object")));

}  // namespace hv::automation::rows
