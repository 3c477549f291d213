#include "core/module/PluginTable.h"

#include "core/plugins/atfx/AtfxPlugin.h"

namespace hv::vex::engine {

std::span<const PluginInfo> Plugins() {
  static const PluginInfo kPlugins[] = {
      kAtfxPlugin,
  };
  return kPlugins;
}

}  // namespace hv::vex::engine
