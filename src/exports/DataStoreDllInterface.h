// exports/DataStoreDllInterface.h - the library as an object.
#pragma once

#include <storefabric/IDataStoreDllInterface.h>

#include "cor/Counted.h"

namespace hv::vex::datastore {

/// What a host has set for the browse settings dialog.
struct BrowseDialogSettings {
  HelpCallback helpCallback = nullptr;
  std::uint32_t helpCookie = 0;
  DialogFont dialogFont;
  DialogElementCallback elementCallback = nullptr;
};

class CDataStoreDllInterface final : public cor::Counted<IDataStoreDllInterface> {
 public:
  CDataStoreDllInterface() = default;

  // IDataStoreDllInterface
  Result SetHelpCallback(HelpCallback callback, std::uint32_t cookie) override;
  Result SetDialogFont(const DialogFont* font) override;
  Result ConnectDataStoreByParams(const char16_t* const* name, const char16_t* const* pluginName,
                                  const char16_t* const* parameter, Variant ignored,
                                  IDataStore** store, IEnvironment* environment) override;
  Result OpenDataStoreByStore(IStore* coreStore, Variant ignored, IDataStore** store) override;
  Result GetDataStoreBrowseConfig(IStore* coreStore, IBrowseConfig** config) override;
  Result GetQueryInfoSetLoader(const char16_t* path, IQueryInfoSetLoader** loader) override;
  Result GetQueryInfoSetLoaderByStream(ITextStream* stream, IQueryInfoSetLoader** loader) override;
  Result GetQueryInfoSetSaver(IQueryInfoSetSaver** saver) override;
  Result CreateGUIInitializeContainer(std::uint32_t clientData,
                                      IGUIInitializeContainer** container) override;
  Result InitializeDataStoreGUI(IGUIInitializeContainer* container) override;
  Result CreateContextParameterSet(IContextParameterSet** set) override;
  Result LoadBrowseConfigFile(const char16_t* fileName, IStore* coreStore,
                              IBrowseConfig** config) override;
  Result SaveBrowseConfigFile(const char16_t* fileName, IBrowseConfig* config) override;
  Result LoadBrowseConfigStream(ITextStream* stream, IStore* coreStore,
                                IBrowseConfig** config) override;
  Result SaveBrowseConfigStream(IBrowseConfig* config, ITextStream* stream) override;
  Result EditBrowseConfig(IStore* coreStore, IBrowseConfig* config) override;
  Result CreateBrowseSettingsObject(IBrowseConfig* config, IDataStore* store,
                                    IBrowseSettings** settings) override;
  Result CopyBrowseConfig(IBrowseConfig* source, IBrowseConfig* target) override;
  Result GetBrowseDisplayName(IBrowseConfig* config, IInstance* instance, WString* name) override;
  Result SetDialogElementCallback(DialogElementCallback callback) override;

 private:
  ~CDataStoreDllInterface() override = default;

  BrowseDialogSettings m_dialog;
};

}  // namespace hv::vex::datastore
