// exports/GUIInitializeContainer.h - the bag of what a host wants to have wired.
#pragma once

#include <storefabric/IBrowseConfig.h>
#include <storefabric/IGUIInitializeContainer.h>
#include <storefabric/Ref.h>

#include "cor/Counted.h"
#include "store/core/IStore.h"

namespace hv::vex::datastore {

class CGUIInitializeContainer final : public cor::Counted<IGUIInitializeContainer> {
 public:
  explicit CGUIInitializeContainer(std::uint32_t clientData) : m_clientData(clientData) {}

  // IGUIInitializeContainer
  std::uint32_t GetClientData() override;
  Result GetQueryForm(IUnknown** queryForm) override;
  Result SetQueryForm(IUnknown* queryForm) override;
  Result GetQueryFormUserSettings(WString* settings) override;
  Result SetQueryFormUserSettings(std::u16string_view settings) override;
  Result GetControlSink(IGUIControlSink** sink) override;
  Result SetControlSink(IGUIControlSink* sink) override;
  Result GetResultsDisplay(IUnknown** resultsDisplay) override;
  Result SetResultsDisplay(IUnknown* resultsDisplay) override;
  Result GetResultsDisplayUserSettings(WString* settings) override;
  Result SetResultsDisplayUserSettings(std::u16string_view settings) override;
  Result GetBrowser(IUnknown** browser) override;
  Result SetBrowser(IUnknown* browser) override;
  Result GetBrowserUserSettings(WString* settings) override;
  Result SetBrowserUserSettings(std::u16string_view settings) override;
  Result GetShowSubmatrices(bool* show) override;
  Result SetShowSubmatrices(bool show) override;
  Result GetIgnoreExpansionState(bool* ignore) override;
  Result SetIgnoreExpansionState(bool ignore) override;
  Result GetStore(IStore** store) override;
  Result SetStore(IStore* store) override;
  Result GetFont(IUnknown** font) override;
  Result SetFont(IUnknown* font) override;
  Result GetBrowseConfig(IBrowseConfig** config) override;
  Result SetBrowseConfig(IBrowseConfig* config) override;

 private:
  ~CGUIInitializeContainer() override = default;

  std::uint32_t m_clientData;
  Ref<IUnknown> m_queryForm;
  WString m_queryFormUserSettings;
  Ref<IGUIControlSink> m_controlSink;
  Ref<IUnknown> m_resultsDisplay;
  WString m_resultsDisplayUserSettings;
  Ref<IUnknown> m_browser;
  WString m_browserUserSettings;
  bool m_showSubmatrices = false;
  bool m_ignoreExpansionState = false;
  Ref<IStore> m_store;
  Ref<IUnknown> m_font;
  Ref<IBrowseConfig> m_browseConfig;
};

}  // namespace hv::vex::datastore
