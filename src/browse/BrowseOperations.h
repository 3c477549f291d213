// browse/BrowseOperations.h - making and copying browse configurations, and naming instances by
// them. Nothing is thrown.
#pragma once

#include <string_view>

#include <storefabric/IBrowseConfig.h>

namespace hv::vex {

/// The configuration in a file.
/// \return S_OK; E_POINTER; VEX_E_BAD_FILE for an empty name; what the configuration's `Load` says.
///         With kPartialSymbols and kPartialDisplayName, too, there is an object.
Result LoadBrowseConfigFile(std::u16string_view fileName, IStore* store, IBrowseConfig** config);
/// The store's default configuration.
/// \return S_OK; E_POINTER; what `Load` says, and then `*config` is untouched
Result LoadDefaultBrowseConfig(IStore* store, IBrowseConfig** config);
/// The configuration in a stream's text, as from a file.
Result LoadBrowseConfigStream(std::u16string_view text, IStore* store, IBrowseConfig** config);
/// Copies one configuration into another, which keeps its model. E_INVALIDARG unless both are this
/// library's own; otherwise as the target's `CopyFrom`.
Result CopyBrowseConfig(IBrowseConfig* source, IBrowseConfig* target);
/// The display text of an instance.
/// \return S_OK; S_FALSE with the instance's name if its entity isn't in the path; E_POINTER;
///         E_INVALIDARG for a null argument or a foreign configuration's level; VEX_E_OTHER_STORE
///         for an instance of another model; kPartialDisplayName; E_UNEXPECTED
Result GetBrowseDisplayName(IBrowseConfig* config, IInstance* instance, WString* name);

}  // namespace hv::vex
