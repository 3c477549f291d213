// storefabric/StoreFabric.h - the functions that the library exports; what a C++ host includes.
//
// All of them belong to one thread, the host's; only `Init` and `Cleanup` are safe against each
// other on any thread. Nothing is thrown out of them. Texts are UTF-16, terminated and borrowed; a
// null text counts as empty. Out objects carry one reference for the caller. A null out pointer
// gives E_POINTER and nothing else happens.
#pragma once

#include <cstdint>

#include <storefabric/Dispatch.h>
#include <storefabric/Export.h>
#include <storefabric/IDataStore.h>
#include <storefabric/IDataStoreDllInterface.h>
#include <storefabric/IDataStoreEnvironment.h>
#include <storefabric/IGUIInitializeContainer.h>
#include <storefabric/IQueryInfoSet.h>
#include <storefabric/ITextStream.h>
#include <storefabric/IVexTimeDisp.h>
#include <storefabric/IVexTimeFactory.h>
#include <storefabric/Ref.h>
#include <storefabric/Result.h>
#include <storefabric/Variant.h>
#include <storefabric/WString.h>

extern "C" {

/// Optional: keeps the storage engine loaded until the matching `Cleanup`. May be called any number
/// of times. An engine that can't be loaded shows at the first connect.
/// \return how many calls have no `Cleanup` yet
HV_API std::int32_t Init();
/// Takes one `Init` back. Objects that are still alive keep the engine loaded.
HV_API void Cleanup();

/// Opens a session with a data store.
/// \param name         a configured store; if it isn't empty, the next two don't count
/// \param pluginName, parameter  describe a store that isn't configured ("ATFX" and
///                               "<filename>a.atfx</filename>"); pointers to the texts, may be null
/// \param ignored      has no effect, whatever it holds
/// \param store        unchanged on failure
/// \param environment  null: the engine's own
/// \return S_OK; VEX_E_CONNECT_REFUSED, VEX_E_CONNECT_FAILED, E_PENDING, E_OUTOFMEMORY and
///         VEX_E_WRITE_PROTECTED by what the engine reports; E_FAIL for every other failure to
///         open; a failure to read the store's model.
HV_API hv::Result ConnectDataStoreByParams(const char16_t* const* name,
                                           const char16_t* const* pluginName,
                                           const char16_t* const* parameter, hv::Variant ignored,
                                           hv::vex::IDataStore** store,
                                           hv::vex::IEnvironment* environment);

/// Opens a session with a store of the engine, which gets a reference more.
/// \param ignored  has no effect
/// \param store    null on failure
/// \return S_OK; E_UNEXPECTED for a null engine store; a failure to read the store's model.
HV_API hv::Result OpenDataStoreByStore(hv::vex::IStore* coreStore, hv::Variant ignored,
                                       hv::vex::IDataStore** store);

/// The default browse configuration of a store. `*config` is set on success only.
/// \return S_OK; E_INVALIDARG for a null store.
HV_API hv::Result GetDataStoreBrowseConfig(hv::vex::IStore* coreStore,
                                           hv::vex::IBrowseConfig** config);

/// A reader of the query file at `path`. `*loader` is set on success only.
/// \return S_OK; E_INVALIDARG for a file that can't be read as a query file.
HV_API hv::Result GetQueryInfoSetLoader(const char16_t* path,
                                        hv::vex::IQueryInfoSetLoader** loader);
/// A reader of the query file that a stream holds. `*loader` is set on success only.
/// \return S_OK; E_INVALIDARG as above and for a null stream; VEX_E_NO_FILE_NAME for an empty text;
///         what the stream says.
HV_API hv::Result GetQueryInfoSetLoaderByStream(hv::vex::ITextStream* stream,
                                                hv::vex::IQueryInfoSetLoader** loader);
/// A writer of query files, with nothing in it yet. `*saver` is set on success only.
HV_API hv::Result GetQueryInfoSetSaver(hv::vex::IQueryInfoSetSaver** saver);

/// A new empty container for `InitializeDataStoreGUI`. E_OUTOFMEMORY if there is no memory.
/// \param clientData  handed back by the container unchanged
HV_API hv::Result CreateGUIInitializeContainer(std::uint32_t clientData,
                                               hv::vex::IGUIInitializeContainer** container);

/// Wires the controls of a container with its store and with each other.
/// \return S_OK; E_POINTER for a null container; VEX_E_NO_STORE without a store; E_INVALIDARG for a
///         control of another type than the expected one; what a control says.
HV_API hv::Result InitializeDataStoreGUI(hv::vex::IGUIInitializeContainer* container);

/// The library as an object; a new one at each call. E_OUTOFMEMORY with `*dllInterface` null.
HV_API hv::Result GetDataStoreDllInterface(
    hv::vex::datastore::IDataStoreDllInterface** dllInterface);

/// What makes time objects, which properties of dates take. E_OUTOFMEMORY with `*factory` null.
HV_API hv::Result GetVexTimeFactory(hv::vex::IVexTimeFactory** factory);

/// Makes an automation object by its ProgID, without regard to case: "VEX.DataStoreEnvironment",
/// "VEX.DataStoreQuery" or "VEX.TimeFactory".
/// \return S_OK; CLASS_E_CLASSNOTAVAILABLE for a name that this build doesn't have. `*object` is
///         null on failure.
HV_API hv::Result CreateStoreFabricObject(const char16_t* progId, hv::IDispatch** object);
}
