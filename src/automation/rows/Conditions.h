// automation/rows/Conditions.h - the messages of the conditions of queries, of `CConditionCollInt`,
// `CConditionInt` and their kinds for data stores. Numbers, order and argument texts are frozen:
// scripts compare and people read them.
#pragma once

#include "automation/ErrorRows.h"

namespace hv::automation::rows {

/// The codes of the value check come as the check gives them.
inline constexpr auto kConditionsAdd =
    Errors(u"Add", On(VEX_E_BAD_TYPE_ARGUMENT, 212, CallText(0), Literal(u"Type"), Literal(u"Add")),
           On(VEX_E_INVALID_PROPERTY, 212, CallText(1), Literal(u"Property"), Literal(u"Add")),
           On(VEX_E_BAD_OPERATOR, 212, CallText(2), Literal(u"Operator"), Literal(u"Add")),
           On(E_INVALIDARG, 214, Literal(u"Value")), On(VEX_E_OR_OPERATOR, 301, CallText(2)),
           On(VEX_E_VALUE_TYPE, 303, Literal(u"Value"), Literal(u"Add")),
           On(VEX_E_VALUE_DIMENSIONS, 303, Literal(u"Value"), Literal(u"Add")),
           On(VEX_E_BAD_VALUE, 303, Literal(u"Value"), Literal(u"Add")),
           On(VEX_E_VALUE_NOT_DATE, 297, Literal(u"Value"), Literal(u"Add")),
           On(VEX_E_VALUE_WAS_TEXT, 297, Literal(u"Value"), Literal(u"Add")),
           On(VEX_E_OR_UNSUPPORTED, 326, ObjectText(ObjectTextId::StoreName)),
           On(VEX_E_PARENT_GONE, 322), On(VEX_E_QUERY_BROWSE_PATH, 369));

inline constexpr auto kConditionsItem =
    Errors(u"Item", On(E_INVALIDARG, 215, CallText(0)), On(VEX_E_PARENT_GONE, 322));
inline constexpr auto kConditionsRemove =
    Errors(u"Remove", On(E_INVALIDARG, 215, CallText(0)), On(VEX_E_PARENT_GONE, 322));
/// For the other members, with their own names.
inline constexpr auto kConditionsOther =
    Errors(u"", On(VEX_E_PARENT_GONE, 322), On(VEX_E_QUERY_BROWSE_PATH, 369));

inline constexpr auto kConditionsPutLogic =
    Errors(u"Logic", On(VEX_E_BAD_LOGIC, 298, CallText(0)),
           On(VEX_E_LOGIC_UNSUPPORTED, 325, ObjectText(ObjectTextId::StoreName)),
           On(VEX_E_PARENT_GONE, 322));

inline constexpr auto kConditionsAddOrderBy = Errors(
    u"AddOrderBy",
    On(VEX_E_BAD_TYPE_ARGUMENT, 212, CallText(0), Literal(u"Type"), Literal(u"AddOrderBy")),
    On(VEX_E_INVALID_PROPERTY, 212, CallText(1), Literal(u"Property"), Literal(u"AddOrderBy")),
    On(VEX_E_PARENT_GONE, 322));

inline constexpr auto kConditionValues =
    Errors(u"Values", On(E_INVALIDARG, 211, CallNumber(0), Literal(u"Values")),
           On(VEX_E_PARENT_GONE, 322), On(VEX_E_QUERY_BROWSE_PATH, 369));

}  // namespace hv::automation::rows
