// core/plugins/vex/VexPlugin.h - documents of instances as a kind of storage.
#pragma once

#include "core/plugins/Plugin.h"

namespace hv::vex::engine {

/// Tags: "filename"; "targetmodels" with the URI of the model that the document is read with,
/// whatever version it was written with.
extern const PluginInfo kVexPlugin;

}  // namespace hv::vex::engine
