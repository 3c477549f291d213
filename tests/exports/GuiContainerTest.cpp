// tests/exports/GuiContainerTest.cpp - the container of a host's controls, and their wiring.
#include <storefabric/IDataStoreControls.h>

#include "HostObject.h"
#include "OpenBench.h"
#include "plugins/TestConfiguration.h"
#include "store/core/IStore.h"

namespace hv::vex {
namespace {

using test::HostControl;
using test::HostObject;
using test::TestConfiguration;
using Container = IGUIInitializeContainer;

Ref<Container> MakeContainer(std::uint32_t clientData = 0) {
  Ref<Container> container;
  EXPECT_EQ(S_OK, CreateGUIInitializeContainer(clientData, container.Put()));
  return container;
}

/// A host's object of no use here.
class Blank final : public HostObject<IUnknown> {};
class Sink final : public HostObject<IGUIControlSink> {
 public:
  void OnQueryForm(IUnknown*) override {}
  void OnResultsDisplay(IUnknown*) override {}
};

template <class Object>
void ExpectKeeps(Container& container, Result (Container::*get)(Object**),
                 Result (Container::*set)(Object*), Ref<Object> object) {
  Ref<Object> got;
  EXPECT_EQ(E_POINTER, (container.*get)(nullptr));
  EXPECT_EQ(S_OK, (container.*get)(got.Put()));
  EXPECT_FALSE(got) << "empty when made";
  EXPECT_EQ(S_OK, (container.*set)(object.Get()));
  EXPECT_EQ(S_OK, (container.*get)(got.Put()));
  EXPECT_EQ(object, got);
  EXPECT_EQ(S_OK, (container.*set)(nullptr));
  EXPECT_EQ(S_OK, (container.*get)(got.Put()));
  EXPECT_FALSE(got);
  EXPECT_EQ(2U, object->AddRef()) << "the container has let go";
  object->Release();
}

TEST(GuiContainer, KeepsWhatIsSet) {
  const TestConfiguration configuration;
  const Ref<IDataStore> session = test::OpenBench();
  const Ref<IStore> store = test::CoreStoreOf<IStore>(*session.Get());
  const Ref<Container> container = MakeContainer(0xfedcba98);
  EXPECT_EQ(0xfedcba98, container->GetClientData());
  const auto blank = [] { return Ref<IUnknown>(MakeRef<Blank>()); };
  Container& c = *container.Get();
  ExpectKeeps(c, &Container::GetQueryForm, &Container::SetQueryForm, blank());
  ExpectKeeps(c, &Container::GetResultsDisplay, &Container::SetResultsDisplay, blank());
  ExpectKeeps(c, &Container::GetBrowser, &Container::SetBrowser, blank());
  ExpectKeeps(c, &Container::GetFont, &Container::SetFont, blank());
  ExpectKeeps(c, &Container::GetControlSink, &Container::SetControlSink,
              Ref<IGUIControlSink>(MakeRef<Sink>()));
  ExpectKeeps(c, &Container::GetBrowseConfig, &Container::SetBrowseConfig,
              test::BrowseConfigOf(*store.Get()));
}

TEST(GuiContainer, KeepsTextsAndSwitchesApart) {
  const Ref<Container> container = MakeContainer();
  const struct {
    Result (Container::*set)(std::u16string_view);
    Result (Container::*get)(WString*);
    std::u16string_view text;
  } texts[] = {
      {&Container::SetQueryFormUserSettings, &Container::GetQueryFormUserSettings, u"query form"},
      {&Container::SetResultsDisplayUserSettings, &Container::GetResultsDisplayUserSettings,
       u"results"},
      {&Container::SetBrowserUserSettings, &Container::GetBrowserUserSettings, u"browser"}};
  for (const auto& t : texts) EXPECT_EQ(S_OK, (container.Get()->*t.set)(t.text));
  for (const auto& t : texts) {
    WString text;
    EXPECT_EQ(S_OK, (container.Get()->*t.get)(&text));
    EXPECT_EQ(t.text, text.view());
    EXPECT_EQ(E_POINTER, (container.Get()->*t.get)(nullptr));
  }
  bool flag = false;
  EXPECT_EQ(S_OK, container->SetShowSubmatrices(true));
  EXPECT_EQ(S_OK, container->GetShowSubmatrices(&flag));
  EXPECT_TRUE(flag);
  EXPECT_EQ(S_OK, container->GetIgnoreExpansionState(&flag));
  EXPECT_FALSE(flag);
  EXPECT_EQ(E_POINTER, container->GetShowSubmatrices(nullptr));
}

TEST(GuiContainer, WiringChecksStoreAndControls) {
  const TestConfiguration configuration;
  const Ref<IDataStore> session = test::OpenBench();
  const Ref<IStore> store = test::CoreStoreOf<IStore>(*session.Get());
  const Ref<IUnknown> blank = MakeRef<Blank>();
  const Ref<IUnknown> form = MakeRef<HostControl<IDataStoreQueryForm>>();
  const Ref<IUnknown> display = MakeRef<HostControl<IDataStoreResultsDisplay>>();
  const Ref<IUnknown> browser = MakeRef<HostControl<IDataStoreBrowser>>();
  const struct {
    const char* name;
    bool store;
    Ref<IUnknown> queryForm, resultsDisplay, browser;
    Result code;
  } kCases[] = {
      {"Nothing", false, {}, {}, {}, VEX_E_NO_STORE},
      {"ControlsWithoutStore", false, form, display, browser, VEX_E_NO_STORE},
      {"WrongControlsWithoutStore", false, blank, blank, blank, VEX_E_NO_STORE},
      {"StoreAlone", true, {}, {}, {}, S_OK},
      {"WrongQueryForm", true, blank, {}, {}, E_INVALIDARG},
      {"WrongResultsDisplay", true, {}, blank, {}, E_INVALIDARG},
      {"WrongBrowser", true, {}, {}, blank, E_INVALIDARG},
      {"ControlsInEachOthersPlace", true, display, form, {}, E_INVALIDARG},
      {"ResultsDisplayAlone", true, {}, display, {}, S_OK},
  };
  for (const auto& row : kCases) {
    SCOPED_TRACE(row.name);
    const Ref<Container> container = MakeContainer();
    (void)container->SetStore(row.store ? store.Get() : nullptr);
    (void)container->SetQueryForm(row.queryForm.Get());
    (void)container->SetResultsDisplay(row.resultsDisplay.Get());
    (void)container->SetBrowser(row.browser.Get());
    EXPECT_EQ(row.code, InitializeDataStoreGUI(container.Get()));
  }
  EXPECT_EQ(E_POINTER, InitializeDataStoreGUI(nullptr));
}

}  // namespace
}  // namespace hv::vex
