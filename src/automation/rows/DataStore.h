// automation/rows/DataStore.h - the messages of `CDataStoreInt`.
// Numbers, order and argument texts are frozen: scripts compare and people read them.
#pragma once

#include "automation/ErrorRows.h"

namespace hv::automation::rows {

inline constexpr auto kDataStoreGetModel = Errors(u"GetModel");
inline constexpr auto kDataStoreGetRootElements = Errors(u"GetRootElements");
inline constexpr auto kDataStoreGetPluginName = Errors(u"GetPluginName");
inline constexpr auto kDataStoreGetParameters = Errors(u"GetParameters");
inline constexpr auto kDataStoreCreateQuery = Errors(u"CreateQuery");
inline constexpr auto kDataStoreGetResults = Errors(u"GetResults");
inline constexpr auto kDataStoreIsQuerySupported = Errors(u"IsQuerySupported");
inline constexpr auto kDataStoreIsModified = Errors(u"IsModified");
inline constexpr auto kDataStoreRefresh = Errors(u"Refresh");
inline constexpr auto kDataStoreGetVexStore = Errors(u"GetVexStore");

inline constexpr auto kDataStoreCreateElement =
    Errors(u"CreateElement", On(VEX_E_EMPTY_NAME, 360), On(VEX_E_WRITE_PROTECTED, 365),
           On(E_INVALIDARG, 357));

// The texts of 212 name the method where people would expect the argument; scripts know it so.
inline constexpr auto kDataStoreGetElementByKey =
    Errors(u"GetElementByKey",
           On(E_INVALIDARG, 212, CallText(0), Literal(u"GetElementByKey"), Literal(u"Key")));

inline constexpr auto kDataStoreCreateElementsByInstList =
    Errors(u"CreateElementsByInstList",
           On(E_POINTER, 222, Literal(u"InstanceList"), Literal(u"CreateElementsByInstList"),
              Literal(u"InstList")),
           On(VEX_E_FOREIGN_ELEMENT, 335), On(E_INVALIDARG, 341));

inline constexpr auto kDataStoreGetElementList = Errors(
    u"GetElementList",
    On(VEX_E_BAD_RETURN_TYPE, 212, CallText(0), Literal(u"GetElementList"), Literal(u"ReturnType")),
    On(VEX_E_BAD_QUERY_EXPRESSION, 212, CallText(1), Literal(u"GetElementList"),
       Literal(u"QueryExpression")),
    On(E_INVALIDARG, 222, Literal(u"Bool"), Literal(u"GetElementList"), Literal(u"OdsConform")));

/// The path is the first argument.
inline constexpr auto kDataStoreLoadQuery =
    Errors(u"LoadQuery", On(VEX_E_QUERY_BROWSE_PATH, 369),
           On(VEX_E_BAD_FILE, 340, CallText(0), Literal(u"DataStore")), On(VEX_E_OTHER_STORE, 334));

/// The path is the second argument.
inline constexpr auto kDataStoreSaveQuery =
    Errors(u"SaveQuery", On(E_FAIL, 358, CallText(1)),
           On(VEX_E_NOT_STORE_QUERY, 222, Literal(u"Query<DataStore>"), Literal(u"SaveQuery"),
              Literal(u"Query")));

/// A null query is refused before the call. The store supplies its name.
inline constexpr auto kDataStoreSearch = Errors(
    u"Search",
    OnNullArgument(0, 222, Literal(u"Query<DataStore>"), Literal(u"Search"), Literal(u"Query")),
    On(VEX_E_EMPTY_QUERY, 265), On(VEX_E_QUERY_BROWSE_PATH, 369),
    On(VEX_E_LOGIC_UNSUPPORTED, 325, ObjectText(ObjectTextId::StoreName)),
    OnAs(VEX_E_OR_UNSUPPORTED, 325, 326, ObjectText(ObjectTextId::StoreName)),
    On(VEX_E_INVALID_PROPERTY, 328),
    On(VEX_E_NOT_STORE_QUERY, 222, Literal(u"Query<DataStore>"), Literal(u"Search"),
       Literal(u"Query")),
    On(E_HANDLE, 222, Literal(u"Query<DataStore>"), Literal(u"Search"), Literal(u"Query")),
    On(VEX_E_OTHER_STORE, 334),
    // What the query has to say of itself.
    On(E_INVALIDARG, 265), On(VEX_E_BAD_LOGIC, 298, ArgumentText(0, ObjectTextId::QueryLogic)),
    On(VEX_E_OR_OPERATOR, 301, ArgumentText(0, ObjectTextId::QueryOperator)),
    On(VEX_E_VALUE_TYPE, 295),
    On(VEX_E_VALUE_TOO_LONG, 270, ArgumentText(0, ObjectTextId::LongestValue)));

inline constexpr auto kDataStoreSave = Errors(u"Save", On(E_FAIL, 344));

inline constexpr auto kDataStoreDeleteElement =
    Errors(u"DeleteElement", On(VEX_E_WRITE_PROTECTED, 365), On(VEX_E_FOREIGN_ELEMENT, 335),
           On(E_INVALIDARG, 222, Literal(u"Element<DataStore>"), Literal(u"DeleteElement"),
              Literal(u"Val")));

inline constexpr auto kDataStoreGetElementByDataChannel =
    Errors(u"GetElementByDataChannel", On(E_INVALIDARG, 222, Literal(u"Channel<Data>"),
                                          Literal(u"GetElementByDataChannel"), Literal(u"Object")));

inline constexpr auto kDataStoreGetContext = Errors(u"GetContext", On(VEX_E_FOREIGN_ELEMENT, 372));

inline constexpr auto kDataStoreGetBrowseSettings = Errors(u"BrowseSettings");

inline constexpr auto kDataStoreSetBrowseSettings =
    Errors(u"BrowseSettings", On(VEX_E_OTHER_STORE, 371), On(E_ACCESSDENIED, 373),
           On(E_INVALIDARG, 222, Literal(u"BrowseSettings"), Literal(u"SetBrowseSettings"),
              Literal(u"BrowseSettings")));

}  // namespace hv::automation::rows
