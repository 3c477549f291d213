// exports/GUIInitializeContainer.cpp - the bag of what a host wants to have wired.
#include "exports/GUIInitializeContainer.h"

#include "automation/Guards.h"

namespace hv::vex::datastore {

namespace {

template <class Object>
Result SetObject(Ref<Object>& member, Object* object) {
  member = Ref<Object>::Share(object);
  return S_OK;
}

Result SetText(WString& member, std::u16string_view text) try {
  member = text;
  return S_OK;
}
HV_CATCH_RETURN()

template <class Value>
Result GetValue(const Value& member, Value* out) try {
  HV_RETURN_IF_NULL(out);
  *out = member;
  return S_OK;
}
HV_CATCH_RETURN()

}  // namespace

std::uint32_t CGUIInitializeContainer::GetClientData() { return m_clientData; }

Result CGUIInitializeContainer::GetQueryForm(IUnknown** queryForm) {
  return m_queryForm.CopyTo(queryForm);
}
Result CGUIInitializeContainer::SetQueryForm(IUnknown* queryForm) {
  return SetObject(m_queryForm, queryForm);
}

Result CGUIInitializeContainer::GetQueryFormUserSettings(WString* settings) {
  return GetValue(m_queryFormUserSettings, settings);
}
Result CGUIInitializeContainer::SetQueryFormUserSettings(std::u16string_view settings) {
  return SetText(m_queryFormUserSettings, settings);
}

Result CGUIInitializeContainer::GetControlSink(IGUIControlSink** sink) {
  return m_controlSink.CopyTo(sink);
}
Result CGUIInitializeContainer::SetControlSink(IGUIControlSink* sink) {
  return SetObject(m_controlSink, sink);
}

Result CGUIInitializeContainer::GetResultsDisplay(IUnknown** resultsDisplay) {
  return m_resultsDisplay.CopyTo(resultsDisplay);
}
Result CGUIInitializeContainer::SetResultsDisplay(IUnknown* resultsDisplay) {
  return SetObject(m_resultsDisplay, resultsDisplay);
}

Result CGUIInitializeContainer::GetResultsDisplayUserSettings(WString* settings) {
  return GetValue(m_resultsDisplayUserSettings, settings);
}
Result CGUIInitializeContainer::SetResultsDisplayUserSettings(std::u16string_view settings) {
  return SetText(m_resultsDisplayUserSettings, settings);
}

Result CGUIInitializeContainer::GetBrowser(IUnknown** browser) { return m_browser.CopyTo(browser); }
Result CGUIInitializeContainer::SetBrowser(IUnknown* browser) {
  return SetObject(m_browser, browser);
}

Result CGUIInitializeContainer::GetBrowserUserSettings(WString* settings) {
  return GetValue(m_browserUserSettings, settings);
}
Result CGUIInitializeContainer::SetBrowserUserSettings(std::u16string_view settings) {
  return SetText(m_browserUserSettings, settings);
}

Result CGUIInitializeContainer::GetShowSubmatrices(bool* show) {
  return GetValue(m_showSubmatrices, show);
}
Result CGUIInitializeContainer::SetShowSubmatrices(bool show) {
  m_showSubmatrices = show;
  return S_OK;
}

Result CGUIInitializeContainer::GetIgnoreExpansionState(bool* ignore) {
  return GetValue(m_ignoreExpansionState, ignore);
}
Result CGUIInitializeContainer::SetIgnoreExpansionState(bool ignore) {
  m_ignoreExpansionState = ignore;
  return S_OK;
}

Result CGUIInitializeContainer::GetStore(IStore** store) { return m_store.CopyTo(store); }
Result CGUIInitializeContainer::SetStore(IStore* store) { return SetObject(m_store, store); }

Result CGUIInitializeContainer::GetFont(IUnknown** font) { return m_font.CopyTo(font); }
Result CGUIInitializeContainer::SetFont(IUnknown* font) { return SetObject(m_font, font); }

Result CGUIInitializeContainer::GetBrowseConfig(IBrowseConfig** config) {
  return m_browseConfig.CopyTo(config);
}
Result CGUIInitializeContainer::SetBrowseConfig(IBrowseConfig* config) {
  return SetObject(m_browseConfig, config);
}

}  // namespace hv::vex::datastore
