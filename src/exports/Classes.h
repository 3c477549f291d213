// exports/Classes.h - the classes that can be created by name.
#pragma once

#include "automation/ClassRegistry.h"

namespace hv::vex::datastore {

/// The classes of this build.
const automation::ClassRegistry& Classes();

}  // namespace hv::vex::datastore
