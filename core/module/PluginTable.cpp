#include "core/module/PluginTable.h"

#include "core/plugins/atfx/AtfxPlugin.h"
#include "core/plugins/sql/SqlPlugin.h"

namespace hv::vex::engine {

std::span<const PluginInfo> Plugins() {
  static const PluginInfo kPlugins[] = {
      kAtfxPlugin,
      kSqlPlugin,
  };
  return kPlugins;
}

}  // namespace hv::vex::engine
