// core/plugins/atfx/AtfxPlugin.h - exchange files as a kind of store.
#pragma once

#include "core/plugins/Plugin.h"

namespace hv::vex::engine {

/// Parameters: "filename", with the mark readonly='yes' for a store that can't be changed. Values
/// in component files are read when asked for; so are those inside the XML with "spool", a folder
/// with room for a temporary file that takes them up, instead of memory. A save writes the whole
/// file anew, keeping the old one until the new one is complete.
extern const PluginInfo kAtfxPlugin;

}  // namespace hv::vex::engine
