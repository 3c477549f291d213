// exports/SessionParts.h - what sessions need of layers above them.
#pragma once

#include "query/objects/SessionQueries.h"

namespace hv::vex::datastore {

/// Gives sessions their queries. Called before one is made, as often as it happens.
inline void InstallSessionParts() { InstallSessionQueries(&StoreQueries()); }

}  // namespace hv::vex::datastore
