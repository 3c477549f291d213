// exports/Operations.h - the bodies of the exported functions, shared with the library's object.
// The public headers say what they do; nothing is thrown out of them.
#pragma once

#include <cstdint>

#include <storefabric/Dispatch.h>
#include <storefabric/IDataStoreDllInterface.h>

namespace hv::vex::datastore {

Result ConnectByParams(const char16_t* const* name, const char16_t* const* pluginName,
                       const char16_t* const* parameter, IDataStore** store,
                       IEnvironment* environment);
Result OpenByCoreStore(IStore* coreStore, IDataStore** store);
Result MakeDefaultBrowseConfig(IStore* coreStore, IBrowseConfig** config);
Result MakeQueryInfoSetLoader(const char16_t* path, IQueryInfoSetLoader** loader);
Result MakeQueryInfoSetLoaderByStream(ITextStream* stream, IQueryInfoSetLoader** loader);
Result MakeQueryInfoSetSaver(IQueryInfoSetSaver** saver);
Result MakeGuiContainer(std::uint32_t clientData, IGUIInitializeContainer** container);
Result InitializeGui(IGUIInitializeContainer* container);
Result MakeDllInterface(IDataStoreDllInterface** dllInterface);

}  // namespace hv::vex::datastore
