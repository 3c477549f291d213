// store/session/MakeBrowseSettings.h - browse settings of a session's elements.
#pragma once

#include <storefabric/Result.h>

namespace hv::vex {

class IBrowseConfig;
class IBrowseSettingsImpl;
class IDataStoreImpl;

/// Settings over a copy of a configuration, which is translated if it is one of another model.
/// Changes to them have no effect on the session.
/// \return S_OK; E_UNEXPECTED for a session without a store; the codes of `CopyForModel`
Result MakeBrowseSettings(IDataStoreImpl& session, IBrowseConfig& config,
                          IBrowseSettingsImpl** settings);

}  // namespace hv::vex
