// automation/rows/StoreElements.h - the messages of `CStoreElementsInt`.
// Numbers, order and argument texts are frozen: scripts compare and people read them.
#pragma once

#include "automation/ErrorRows.h"
#include "automation/rows/Collections.h"

namespace hv::automation::rows {

inline constexpr auto kStoreElementsItem = kCollectionItem;

inline constexpr auto kStoreElementsRemove =
    ErrorsOfChange(u"Remove", On(VEX_E_WRITE_PROTECTED, 365), On(E_INVALIDARG, 215, CallText(0)));

inline constexpr auto kStoreElementsRemoveAll =
    ErrorsOfChange(u"RemoveAll", On(VEX_E_WRITE_PROTECTED, 365));

inline constexpr auto kStoreElementsRemoveAllReferences = Errors(
    u"RemoveAllReferences", On(VEX_E_ROOT_IS_AUTOMATIC, 356), On(VEX_E_WRITE_PROTECTED, 365));

inline constexpr auto kStoreElementsAdd =
    ErrorsOfChange(u"Add", On(VEX_E_EMPTY_NAME, 360), On(VEX_E_WRITE_PROTECTED, 365));

inline constexpr auto kStoreElementsAddReference =
    Errors(u"AddReference", On(E_POINTER, 339), On(VEX_E_BAD_TYPE_ARGUMENT, 339),
           On(VEX_E_ADD_REFERENCE, 349), On(VEX_E_REFERENCE_TYPE, 348),
           On(VEX_E_ROOT_IS_AUTOMATIC, 356), On(VEX_E_FOREIGN_ELEMENT, 335));

inline constexpr auto kStoreElementsRemoveReference =
    Errors(u"RemoveReference", On(E_POINTER, 339), On(VEX_E_BAD_TYPE_ARGUMENT, 339),
           On(VEX_E_REFERENCE_TYPE, 348), On(VEX_E_REMOVE_REFERENCE, 350),
           On(VEX_E_ROOT_IS_AUTOMATIC, 356), On(VEX_E_WRITE_PROTECTED, 365),
           On(VEX_E_FOREIGN_ELEMENT, 335));

}  // namespace hv::automation::rows
