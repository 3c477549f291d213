// exports/Classes.cpp - the classes that can be created by name.
#include "exports/Classes.h"

#include "automation/conv/VexTimeFactory.h"
#include "exports/SessionParts.h"
#include "query/objects/QueryInt.h"
#include "store/session/DataStoreEnvironmentInt.h"

namespace hv::vex::datastore {

namespace {

Result CreateEnvironment(IDispatch** environment) {
  InstallSessionParts();
  return CDataStoreEnvironmentInt::Create(environment);
}

// The names are published. The system's others are those of the controls and their property pages:
// "VEX.DataStoreBrowser.1", "VEX.DataStoreBrowserPropPage.1", "VEX.DataStoreQueryForm.1",
// "VEX.DataStoreQueryFormPropPage.1", "VEX.DataStoreResultsDisplay.1" and
// "VEX.DataStoreResultsDisplayPropPage.1". A class stands here once it can be made.
constexpr automation::ClassEntry kClasses[] = {
    {u"VEX.DataStoreEnvironment", &CreateEnvironment},
    {u"VEX.DataStoreQuery", &CDataStoreQueryInt::Create},
    {u"VEX.TimeFactory", &CVexTimeFactoryInt::CreateObject},
};
#ifndef __SANITIZE_ADDRESS__  // g++ can't compare addresses in constants when it sanitizes
static_assert(automation::IsSound(kClasses));
#endif

constexpr automation::ClassRegistry kRegistry(kClasses);

}  // namespace

const automation::ClassRegistry& Classes() { return kRegistry; }

}  // namespace hv::vex::datastore
