#include <filesystem>

#include "apps/cli/Commands.h"
#include "apps/cli/Interruption.h"
#include "apps/cli/StoreAccess.h"
#include "apps/cli/Terminal.h"

namespace hv::cli {

using namespace hv::vex;

namespace {

void CheckIsAnother(const ExportOptions& options, const std::string& source) {
  std::error_code unused;
  if (std::filesystem::equivalent(source, options.target, unused)) {
    throw Failure("exporting " + options.store + ": source and target are the same file");
  }
}

}  // namespace

void RunExport(const ExportOptions& options) {
  CheckIsAnother(options, options.store);
  CheckTarget(options.target, options.force);
  Interruption::Watch();
  Engine engine;
  const Ref<IStore> store = [&] {
    ProgressBar bar("Reading");
    return engine.Open(options.store, &bar);
  }();
  // A configured store tells only now which file it is.
  WString location;
  store->GetDisplayLocation(location);
  CheckIsAnother(options, cor::ToUtf8(location));
  Explained("exporting " + options.store + " to " + options.target, [&] {
    ProgressBar bar("Writing");
    Ref<IExporter>::Adopt(engine.Environment().CreateExporter(
                              u"ATFX", u"", FilenameParameter(options.target), store.Get()))
        ->RunWatched(bar);
  });
  TellRemarks(*store, options.warnings);
}

}  // namespace hv::cli
