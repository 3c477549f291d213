// automation/rows/StoreProperties.h - the messages of `CStorePropertiesInt` and
// `CStorePropertyInt`. Numbers, order and argument texts are frozen: scripts compare and people
// read them.
#pragma once

#include "automation/ErrorRows.h"

namespace hv::automation::rows {

inline constexpr auto kStorePropertiesAdd =
    Errors(u"Add", On(VEX_E_BAD_PROPERTY_TYPE, 346), On(VEX_E_INSTANCE_PROPERTIES_OFF, 347),
           On(DISP_E_TYPEMISMATCH, 359), On(VEX_E_VALUE_TYPE, 361), On(E_INVALIDARG, 345));

inline constexpr auto kStorePropertiesRemove =
    Errors(u"Remove", On(VEX_E_INSTANCE_PROPERTIES_OFF, 347), On(VEX_E_APPLICATION_PROPERTY, 351),
           On(E_INVALIDARG, 215, CallText(0)));

inline constexpr auto kStorePropertiesRemoveAll =
    Errors(u"RemoveAll", On(VEX_E_INSTANCE_PROPERTIES_OFF, 347));

inline constexpr auto kStorePropertyGetBaseName =
    Errors(u"GetBaseName", On(VEX_E_NOT_BASE_PROPERTY, 343));

inline constexpr auto kStorePropertyPutValue =
    ErrorsOfChange(u"PutValue", On(VEX_E_VALUE_TYPE, 361), On(E_ACCESSDENIED, 365));

inline constexpr auto kStorePropertyGetValues =
    ErrorsOfChange(u"GetValues", On(E_ACCESSDENIED, 365),
                   On(E_INVALIDARG, 211, CallNumber(0), Literal(u"Values")));

inline constexpr auto kStorePropertyPutValues =
    ErrorsOfChange(u"PutValues", On(VEX_E_WRITE_PROTECTED, 365), On(E_ACCESSDENIED, 365),
                   On(DISP_E_TYPEMISMATCH, 361), On(VEX_E_VALUE_TYPE, 361),
                   On(E_INVALIDARG, 211, CallNumber(0), Literal(u"Values")));

}  // namespace hv::automation::rows
