// A plug-in with a small store in memory: what the tests of the seam objects stand on.
#pragma once

#include "core/plugins/Plugin.h"
#include "core/store/memory/MemoryBuilder.h"

namespace hv::vex::engine::test {

/// Bench "A", tests 1 and 2, measurements 10 ("Run up", 3 values), 11 ("Run down"), 12 ("idle's
/// end"), one quantity and column. "<readonly>yes</readonly>" opens it read-only; "<fail>n</fail>"
/// throws the code n.
extern const PluginInfo kToyPlugin;

/// Its model goes by the name "toy & co".
std::shared_ptr<const Model> FindToyModel(std::u16string_view name);

}  // namespace hv::vex::engine::test
