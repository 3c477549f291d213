// exports/InitializeGui.cpp - wires the controls of a container.
#include <storefabric/IDataStoreControls.h>
#include <storefabric/IGUIInitializeContainer.h>
#include <storefabric/Ref.h>

#include "automation/Guards.h"
#include "exports/Operations.h"
#include "store/core/IStore.h"

namespace hv::vex::datastore {

namespace {

/// Reads one control of the container. `*control` stays null if none is set.
/// \return S_OK; E_INVALIDARG if it isn't a `Control`.
template <class Control>
Result ReadControl(IGUIInitializeContainer& container,
                   Result (IGUIInitializeContainer::*get)(IUnknown**), Ref<Control>* control) {
  Ref<IUnknown> object;
  HV_RETURN_IF_FAILED((container.*get)(object.Put()));
  *control = object.As<Control>();
  return object && !*control ? E_INVALIDARG : S_OK;
}

}  // namespace

Result InitializeGui(IGUIInitializeContainer* container) try {
  HV_RETURN_IF_NULL(container);
  Ref<IStore> store;
  HV_RETURN_IF_FAILED(container->GetStore(store.Put()));
  HV_RETURN_CODE_IF(!store, VEX_E_NO_STORE);
  Ref<IDataStoreQueryForm> queryForm;
  Ref<IDataStoreResultsDisplay> resultsDisplay;
  Ref<IDataStoreBrowser> browser;
  HV_RETURN_IF_FAILED(ReadControl(*container, &IGUIInitializeContainer::GetQueryForm, &queryForm));
  HV_RETURN_IF_FAILED(
      ReadControl(*container, &IGUIInitializeContainer::GetResultsDisplay, &resultsDisplay));
  HV_RETURN_IF_FAILED(ReadControl(*container, &IGUIInitializeContainer::GetBrowser, &browser));
  // A results display is wired through the query form only, so that alone it asks for nothing.
  return queryForm || browser ? E_NOTIMPL : S_OK;
}
HV_CATCH_RETURN()

}  // namespace hv::vex::datastore
