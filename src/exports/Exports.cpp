// exports/Exports.cpp - the functions that the library exports.
#include <storefabric/StoreFabric.h>

#include "automation/conv/VexTimeFactory.h"
#include "exports/Classes.h"
#include "exports/Operations.h"
#include "store/core/CoreLibrary.h"

namespace datastore = hv::vex::datastore;

std::int32_t Init() { return hv::vex::HostInit(); }

void Cleanup() { hv::vex::HostCleanup(); }

// NOLINTBEGIN(performance-unnecessary-value-param): exported signatures stay.
hv::Result ConnectDataStoreByParams(const char16_t* const* name, const char16_t* const* pluginName,
                                    const char16_t* const* parameter, hv::Variant,
                                    hv::vex::IDataStore** store,
                                    hv::vex::IEnvironment* environment) {
  return datastore::ConnectByParams(name, pluginName, parameter, store, environment);
}

hv::Result OpenDataStoreByStore(hv::vex::IStore* coreStore, hv::Variant,
                                hv::vex::IDataStore** store) {
  return datastore::OpenByCoreStore(coreStore, store);
}
// NOLINTEND(performance-unnecessary-value-param)

hv::Result GetDataStoreBrowseConfig(hv::vex::IStore* coreStore, hv::vex::IBrowseConfig** config) {
  return datastore::MakeDefaultBrowseConfig(coreStore, config);
}

hv::Result GetQueryInfoSetLoader(const char16_t* path, hv::vex::IQueryInfoSetLoader** loader) {
  return datastore::MakeQueryInfoSetLoader(path, loader);
}

hv::Result GetQueryInfoSetLoaderByStream(hv::vex::ITextStream* stream,
                                         hv::vex::IQueryInfoSetLoader** loader) {
  return datastore::MakeQueryInfoSetLoaderByStream(stream, loader);
}

hv::Result GetQueryInfoSetSaver(hv::vex::IQueryInfoSetSaver** saver) {
  return datastore::MakeQueryInfoSetSaver(saver);
}

hv::Result CreateGUIInitializeContainer(std::uint32_t clientData,
                                        hv::vex::IGUIInitializeContainer** container) {
  return datastore::MakeGuiContainer(clientData, container);
}

hv::Result InitializeDataStoreGUI(hv::vex::IGUIInitializeContainer* container) {
  return datastore::InitializeGui(container);
}

hv::Result GetDataStoreDllInterface(datastore::IDataStoreDllInterface** dllInterface) {
  return datastore::MakeDllInterface(dllInterface);
}

hv::Result GetVexTimeFactory(hv::vex::IVexTimeFactory** factory) {
  return hv::vex::CVexTimeFactoryInt::Create(factory);
}

hv::Result CreateStoreFabricObject(const char16_t* progId, hv::IDispatch** object) {
  return datastore::Classes().CreateObject(progId ? progId : u"", object);
}
