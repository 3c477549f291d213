// storefabric/IGUIInitializeContainer.h - what a host hands over to have its controls wired.
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

namespace hv::vex {

class IBrowseConfig;
class IStore;

/// Hears of each control once it is wired. A host implements it.
class IGUIControlSink : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IGUIControlSink");

  virtual void OnQueryForm(IUnknown* queryForm) = 0;
  virtual void OnResultsDisplay(IUnknown* resultsDisplay) = 0;

 protected:
  ~IGUIControlSink() = default;
};

/// A bag of properties; empty when made. It holds a reference on each object set, and getters give
/// one to the caller. Objects may be null. A null out pointer gives E_POINTER.
class IGUIInitializeContainer : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::vex::IGUIInitializeContainer");

  /// The host's own value, from the making of the container.
  virtual std::uint32_t GetClientData() = 0;

  /// Must be an `IDataStoreQueryForm`, which is checked by `InitializeDataStoreGUI`.
  virtual Result GetQueryForm(IUnknown** queryForm) = 0;
  virtual Result SetQueryForm(IUnknown* queryForm) = 0;
  /// Empty: the form keeps its settings.
  virtual Result GetQueryFormUserSettings(WString* settings) = 0;
  virtual Result SetQueryFormUserSettings(std::u16string_view settings) = 0;
  virtual Result GetControlSink(IGUIControlSink** sink) = 0;
  virtual Result SetControlSink(IGUIControlSink* sink) = 0;
  /// Must be an `IDataStoreResultsDisplay`.
  virtual Result GetResultsDisplay(IUnknown** resultsDisplay) = 0;
  virtual Result SetResultsDisplay(IUnknown* resultsDisplay) = 0;
  virtual Result GetResultsDisplayUserSettings(WString* settings) = 0;
  virtual Result SetResultsDisplayUserSettings(std::u16string_view settings) = 0;
  /// Must be an `IDataStoreBrowser`.
  virtual Result GetBrowser(IUnknown** browser) = 0;
  virtual Result SetBrowser(IUnknown* browser) = 0;
  virtual Result GetBrowserUserSettings(WString* settings) = 0;
  virtual Result SetBrowserUserSettings(std::u16string_view settings) = 0;
  virtual Result GetShowSubmatrices(bool* show) = 0;
  virtual Result SetShowSubmatrices(bool show) = 0;
  /// Whether the browser's settings leave its expanded nodes alone.
  virtual Result GetIgnoreExpansionState(bool* ignore) = 0;
  virtual Result SetIgnoreExpansionState(bool ignore) = 0;
  virtual Result GetStore(IStore** store) = 0;
  virtual Result SetStore(IStore* store) = 0;
  /// An object of the host's toolkit, handed to the controls as it is.
  virtual Result GetFont(IUnknown** font) = 0;
  virtual Result SetFont(IUnknown* font) = 0;
  /// Null: the store's default configuration.
  virtual Result GetBrowseConfig(IBrowseConfig** config) = 0;
  virtual Result SetBrowseConfig(IBrowseConfig* config) = 0;

 protected:
  ~IGUIInitializeContainer() = default;
};

}  // namespace hv::vex
