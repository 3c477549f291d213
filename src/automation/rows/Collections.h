// automation/rows/Collections.h - the messages that collections of several classes share.
// Numbers, order and argument texts are frozen: scripts compare and people read them.
#pragma once

#include "automation/ErrorRows.h"

namespace hv::automation::rows {

/// `Item` of `CStoreElementListInt`, `CStoreElementsInt`, `CContextParametersInt` and of menu
/// points.
inline constexpr auto kCollectionItem =
    Errors(u"Item", On(E_NOTIMPL, 254), On(DISP_E_TYPEMISMATCH, 214, Literal(u"Item")),
           On(E_INVALIDARG, 215, CallText(0)));

/// `Count` of element collections.
inline constexpr auto kElementsCount = ErrorsOfLoaded(u"Count");
/// `_NewEnum` of element collections.
inline constexpr auto kElementsNewEnum = ErrorsOfLoaded(u"_NewEnum");
/// `Exists` of model references.
inline constexpr auto kModelReferencesExists = ErrorsOfLoaded(u"Exists");

}  // namespace hv::automation::rows
