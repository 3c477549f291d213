#include "core/module/PluginTable.h"

#include "core/plugins/atfx/AtfxPlugin.h"
#include "core/plugins/sql/SqlPlugin.h"
#include "core/plugins/vex/VexPlugin.h"

namespace hv::vex::engine {

std::span<const PluginInfo> Plugins() {
  static const PluginInfo kPlugins[] = {
      kAtfxPlugin,
      kSqlPlugin,
      kVexPlugin,
  };
  return kPlugins;
}

}  // namespace hv::vex::engine
