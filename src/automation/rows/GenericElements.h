// automation/rows/GenericElements.h - the messages of the generic faces of elements and properties.
// Numbers, order and argument texts are frozen: scripts compare and people read them.
#pragma once

#include "automation/ErrorRows.h"

namespace hv::automation::rows {

inline constexpr auto kVexElementPutName =
    ErrorsOfChange(u"Name", On(E_POINTER, 209, Literal(u"Name"), Literal(u"NULL")),
                   On(E_ACCESSDENIED, 210), On(E_INVALIDARG, 209, CallText(0), Literal(u"Name")));

inline constexpr auto kVexElementsAdd = ErrorsOfChange(u"Add", On(E_ACCESSDENIED, 240));
inline constexpr auto kVexElementsRemove = ErrorsOfChange(u"Remove", On(E_ACCESSDENIED, 240));
inline constexpr auto kVexElementsRemoveAll = ErrorsOfChange(u"RemoveAll", On(E_ACCESSDENIED, 240));

inline constexpr auto kVexElementsSort = Errors(
    u"Sort", On(DISP_E_TYPEMISMATCH, 222, Literal(u"String"), Literal(u"Sort"), Literal(u"Path")),
    On(E_INVALIDARG, 212, CallText(0), Literal(u"Sort"), Literal(u"Path")));

inline constexpr auto kPropertiesAdd =
    Errors(u"Add", On(E_INVALIDARG, 212, Literal(u"Add"), Literal(u"Name"), Literal(u"NULL")));
inline constexpr auto kPropertiesRemove = Errors(u"Remove", On(E_ACCESSDENIED, 240));

/// The property supplies its name for 220; 218 names the type of the refused value.
inline constexpr auto kPropertyPutValue =
    ErrorsOfChange(u"Value", On(DISP_E_TYPEMISMATCH, 218, CallTypeName(0)),
                   On(E_ACCESSDENIED, 220, ObjectText(ObjectTextId::ObjectName)));

inline constexpr auto kPropertyGetValues =
    ErrorsOfChange(u"Values", On(E_INVALIDARG, 211, CallNumber(0), Literal(u"Values")));
inline constexpr auto kPropertyPutValues =
    ErrorsOfChange(u"Values", On(E_INVALIDARG, 211, CallNumber(0), Literal(u"Values")));

}  // namespace hv::automation::rows
