// automation/rows/ContextParameters.h - the messages of `CContextParametersInt` and
// `CContextParameterInt`. Numbers, order and argument texts are frozen: scripts compare and people
// read them.
#pragma once

#include "automation/ErrorRows.h"
#include "automation/rows/Collections.h"

namespace hv::automation::rows {

inline constexpr auto kContextParametersItem = kCollectionItem;

inline constexpr auto kContextParametersAdd =
    Errors(u"Add", On(VEX_E_BAD_PROPERTY_TYPE, 346), On(VEX_E_BAD_TYPE_ARGUMENT, 346),
           On(DISP_E_TYPEMISMATCH, 359), On(VEX_E_VALUE_TYPE, 361), On(E_INVALIDARG, 345));

inline constexpr auto kContextParametersRemove =
    Errors(u"Remove", On(E_INVALIDARG, 215, CallText(0)));

inline constexpr auto kContextParameterPutValue = Errors(u"Value", On(VEX_E_VALUE_TYPE, 361));

inline constexpr auto kContextParameterPutValues = Errors(
    u"Values", On(VEX_E_VALUE_TYPE, 361), On(E_INVALIDARG, 211, CallNumber(0), Literal(u"Values")));

}  // namespace hv::automation::rows
