#include "apps/cli/Commands.h"
#include "apps/cli/StoreAccess.h"
#include "apps/cli/Terminal.h"
#include "apps/cli/demo/Campaign.h"

namespace hv::cli {

using namespace hv::vex;

void RunDemo(const DemoOptions& options) {
  CheckTarget(options.target, options.force);
  Engine engine;
  Explained("making the demonstration store " + options.target, [&] {
    const auto store = Ref<IStore>::Adopt(engine.Environment().CreateStore(
        u"ATFX", u"<model>testbench</model>", u"", 0, CreateMode::Temporary));
    ProgressBar bar("Measuring");
    demo::WriteCampaign(*store,
                        [&](std::uint64_t done, std::uint64_t all) { bar.Show(done, all); });
    engine.Environment().WriteStore(store.Get(), FilenameParameter(options.target), u"ATFX", 0);
  });
}

}  // namespace hv::cli
