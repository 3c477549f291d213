// core/module/PluginTable.h - the kinds of storage built into this module.
#pragma once

#include <span>

#include "core/plugins/Plugin.h"

namespace hv::vex::engine {

/// One row per kind of storage; lives as long as the module.
std::span<const PluginInfo> Plugins();

}  // namespace hv::vex::engine
