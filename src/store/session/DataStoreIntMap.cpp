// store/session/DataStoreIntMap.cpp - the members of a session by name.
// Names and ids are frozen: scripts and hosts know them.
#include <storefabric/IBrowseSettings.h>
#include <storefabric/IDataStoreContext.h>
#include <storefabric/IDataStoreModel.h>
#include <storefabric/ISVEXQuery.h>
#include <storefabric/IStoreElement.h>

#include "automation/rows/DataStore.h"
#include "store/elements/ElementColumns.h"
#include "store/session/DataStoreInt.h"

namespace hv::vex {

namespace {

using namespace automation;  // NOLINT: the vocabulary of the table below
using S = IDataStore;

/// The message names the property, which is one of several.
Result SearchColumnsByName(CDataStoreInt& self, CallFrame& frame) {
  Ref<IDispatch> query;
  Result rc = ReadObject(frame.args[0].Dereferenced(), IDispatch::kIid, query.PutVoid());
  if (Failed(rc)) {
    frame.refusedArgument = 0;
    return rc;
  }
  std::optional<WString> unknown;
  rc = self.SearchColumns(query.Get(), frame.args[1], frame.result, &unknown);
  if (unknown) RaiseUnknownProperty(*unknown);
  if (rc == DISP_E_TYPEMISMATCH) frame.refusedArgument = 1;
  return rc;
}

constexpr auto kRows = MakeRows(
    Get<&S::get_Name>(u"Name", 1),
    Get<&S::get_PluginName>(u"PluginName", 2, rows::kDataStoreGetPluginName),
    Get<&S::get_Parameters>(u"Parameters", 3, rows::kDataStoreGetParameters),
    Get<&S::get_Model>(u"Model", 4, rows::kDataStoreGetModel),
    Get<&S::get_RootElements>(u"RootElements", 5, rows::kDataStoreGetRootElements),
    Method<&S::CreateElement>(u"CreateElement", 6, rows::kDataStoreCreateElement),
    Method<&S::GetElementByKey>(u"GetElementByKey", 7, rows::kDataStoreGetElementByKey),
    Method<&S::GetElementByDataChannel>(u"GetElementByDataChannel", 8,
                                        rows::kDataStoreGetElementByDataChannel),
    Method<&S::GetElementList>(u"GetElementList", 9, rows::kDataStoreGetElementList).Optional(1),
    Method<&S::CreateQuery>(u"CreateQuery", 10, rows::kDataStoreCreateQuery),
    Method<&S::SaveQuery>(u"SaveQuery", 11, rows::kDataStoreSaveQuery),
    Method<&S::LoadQuery>(u"LoadQuery", 12, rows::kDataStoreLoadQuery),
    Method<&S::DeleteElement>(u"DeleteElement", 13, rows::kDataStoreDeleteElement),
    Method<&S::CreateElementsByInstList>(u"CreateElementsByInstList", 14,
                                         rows::kDataStoreCreateElementsByInstList),
    Get<&S::get_Results>(u"Results", 15, rows::kDataStoreGetResults),
    Method<&S::Search>(u"Search", 16, rows::kDataStoreSearch),
    Method<&S::GetVexStore>(u"GetVexStore", 17, rows::kDataStoreGetVexStore),
    Method<&S::Save>(u"Save", 18, rows::kDataStoreSave).Optional(1),
    Method<&S::Refresh>(u"Refresh", 19, rows::kDataStoreRefresh),
    Method<&S::IsModified>(u"IsModified", 20, rows::kDataStoreIsModified),
    Method<&S::IsQuerySupported>(u"IsQuerySupported", 21, rows::kDataStoreIsQuerySupported),
    Method<&S::GetContext>(u"GetContext", 22, rows::kDataStoreGetContext).Optional(1),
    Method<&S::GetBrowseSettings>(u"GetBrowseSettings", 23, rows::kDataStoreGetBrowseSettings),
    Method<&S::GetBrowseSettingsInternal>(u"GetBrowseSettingsInternal", 24,
                                          rows::kDataStoreGetBrowseSettings),
    Method<&S::SetBrowseSettings>(u"SetBrowseSettings", 25, rows::kDataStoreSetBrowseSettings),
    Get<&S::GetBrowseSettings>(u"BrowseSettings", 26, rows::kDataStoreGetBrowseSettings),
    Put<&S::SetBrowseSettings>(u"BrowseSettings", 26, rows::kDataStoreSetBrowseSettings),
    Custom<&SearchColumnsByName>(u"SearchColumns", 27, CallKind::Method, 2,
                                 rows::kDataStoreSearch));

constexpr DispatchMap kMap =
    DispatchMap(u"DataStore", kRows).WithObjectText<&CDataStoreInt::TextForMessage>();

}  // namespace

const DispatchMap& CDataStoreInt::Map() { return kMap; }

}  // namespace hv::vex
