// storefabric/IDataStoreDllInterface.h - the library as an object: every exported function, and
// what only a privileged host needs.
#pragma once

#include <cstdint>

#include <storefabric/Unknown.h>
#include <storefabric/Variant.h>
#include <storefabric/WString.h>

namespace hv::vex {

class IBrowseConfig;
class IBrowseSettings;
class IContextParameterSet;
class IDataStore;
class IEnvironment;
class IGUIInitializeContainer;
class IInstance;
class IQueryInfoSetLoader;
class IQueryInfoSetSaver;
class IStore;
class ITextStream;

}  // namespace hv::vex

namespace hv::vex::datastore {

/// Called by dialogs with a help topic's name and the host's cookie.
using HelpCallback = void (*)(const char16_t* topic, std::uint32_t cookie);
/// Handed to the browse settings dialog unchanged.
using DialogElementCallback = void (*)(IUnknown* element);

/// The font of dialogs. Sizes in the units of the host's toolkit; a negative height is the height
/// of the characters without their leading.
struct DialogFont {
  std::int32_t height = 0;
  std::int32_t width = 0;
  std::int32_t escapement = 0;   ///< tenths of a degree
  std::int32_t orientation = 0;  ///< tenths of a degree
  std::int32_t weight = 0;       ///< 0 to 1000; 400 is regular, 0 the default
  std::uint8_t italic = 0;
  std::uint8_t underline = 0;
  std::uint8_t strikeOut = 0;
  std::uint8_t charSet = 0;
  std::uint8_t outPrecision = 0;
  std::uint8_t clipPrecision = 0;
  std::uint8_t quality = 0;
  std::uint8_t pitchAndFamily = 0;
  char16_t faceName[32] = {};
};

/// The library as an object, from `GetDataStoreDllInterface`. Texts are borrowed; a null text
/// counts as empty. Out objects carry one reference for the caller; a null out pointer gives
/// E_POINTER and nothing else happens. E_NOTIMPL: this build of the library doesn't have what is
/// asked for.
class IDataStoreDllInterface : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::datastore::IDataStoreDllInterface");

  /// The help of dialogs; null for none.
  virtual Result SetHelpCallback(HelpCallback callback, std::uint32_t cookie) = 0;
  /// The font of dialogs, copied. E_POINTER for null.
  virtual Result SetDialogFont(const DialogFont* font) = 0;

  // As the exported functions of these names, see StoreFabric.h.
  virtual Result ConnectDataStoreByParams(const char16_t* const* name,
                                          const char16_t* const* pluginName,
                                          const char16_t* const* parameter, Variant ignored,
                                          IDataStore** store, IEnvironment* environment) = 0;
  virtual Result OpenDataStoreByStore(IStore* coreStore, Variant ignored, IDataStore** store) = 0;
  virtual Result GetDataStoreBrowseConfig(IStore* coreStore, IBrowseConfig** config) = 0;
  virtual Result GetQueryInfoSetLoader(const char16_t* path, IQueryInfoSetLoader** loader) = 0;
  virtual Result GetQueryInfoSetLoaderByStream(ITextStream* stream,
                                               IQueryInfoSetLoader** loader) = 0;
  virtual Result GetQueryInfoSetSaver(IQueryInfoSetSaver** saver) = 0;
  virtual Result CreateGUIInitializeContainer(std::uint32_t clientData,
                                              IGUIInitializeContainer** container) = 0;
  virtual Result InitializeDataStoreGUI(IGUIInitializeContainer* container) = 0;

  /// A new empty set.
  virtual Result CreateContextParameterSet(IContextParameterSet** set) = 0;
  /// Reads a browse settings file.
  /// \return S_OK; E_INVALIDARG for a null store; VEX_E_BAD_FILE for an empty file name.
  virtual Result LoadBrowseConfigFile(const char16_t* fileName, IStore* coreStore,
                                      IBrowseConfig** config) = 0;
  /// Writes a browse settings file. An empty file name does nothing and succeeds.
  /// \return S_OK; E_INVALIDARG for a null configuration.
  virtual Result SaveBrowseConfigFile(const char16_t* fileName, IBrowseConfig* config) = 0;
  /// As `LoadBrowseConfigFile`, from a stream.
  virtual Result LoadBrowseConfigStream(ITextStream* stream, IStore* coreStore,
                                        IBrowseConfig** config) = 0;
  /// As `SaveBrowseConfigFile`, into a stream.
  virtual Result SaveBrowseConfigStream(IBrowseConfig* config, ITextStream* stream) = 0;
  /// Opens the browse settings dialog.
  /// \return S_OK if the user accepted; S_FALSE if not; E_INVALIDARG for a null argument;
  ///         VEX_E_BROWSE_MODEL for a dialog that couldn't start.
  virtual Result EditBrowseConfig(IStore* coreStore, IBrowseConfig* config) = 0;
  /// An automation object over a copy of the configuration, bound to the session.
  /// \return S_OK; E_INVALIDARG for a null configuration; E_FAIL for any failed step.
  virtual Result CreateBrowseSettingsObject(IBrowseConfig* config, IDataStore* store,
                                            IBrowseSettings** settings) = 0;
  /// Copies one configuration into another. E_INVALIDARG unless both are the library's own.
  virtual Result CopyBrowseConfig(IBrowseConfig* source, IBrowseConfig* target) = 0;
  /// The display text of an instance under a configuration.
  /// \return S_OK; S_FALSE with the instance's name if the configuration doesn't have its entity;
  ///         E_INVALIDARG for a null argument; VEX_E_OTHER_STORE for an instance of another model.
  virtual Result GetBrowseDisplayName(IBrowseConfig* config, IInstance* instance,
                                      WString* name) = 0;
  /// Null for none.
  virtual Result SetDialogElementCallback(DialogElementCallback callback) = 0;

 protected:
  ~IDataStoreDllInterface() = default;
};

}  // namespace hv::vex::datastore
