// store/settings/CopyBrowseSettings.h - copies of browse configurations for a session.
#pragma once

#include <storefabric/Ref.h>

#include "browse/BrowseConfigImpl.h"

namespace hv::vex {

/// A copy of its own. Of a configuration of the same model it is exact; one of another model is
/// translated by the names of its entities and references.
/// \return S_OK; E_INVALIDARG for a configuration that isn't this library's own; the codes of
///         `CloneFrom` and, for another model, of `CopyFrom`
Result CopyForModel(IModel& model, IBrowseConfig& source, Ref<CDataStoreBrowseConfigImpl>* copy);

}  // namespace hv::vex
