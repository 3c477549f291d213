// core/module/ModelResources.h - the application models built into this module.
#pragma once

#include <memory>
#include <string_view>

#include "core/model/Model.h"

namespace hv::vex::engine {

/// The model of that name ("testbench") or URI ("/DataModels/VEX/Query/1_2"); null if there is
/// none. Made anew by each call.
std::shared_ptr<const Model> FindModelResource(std::u16string_view name);

}  // namespace hv::vex::engine
