// apps/cli/ImportCommand.cpp - the records of a store into a database, all of them or none.
#include <filesystem>

#include "apps/cli/Commands.h"
#include "apps/cli/Interruption.h"
#include "apps/cli/StoreAccess.h"
#include "apps/cli/Terminal.h"

namespace hv::cli {

using namespace hv::vex;

namespace {

void CheckDatabase(const ImportOptions& options) {
  std::error_code error;
  const std::filesystem::path path(options.target);
  if (cor::FromUtf8(path.extension().string()) != u".sqlite") {
    throw Failure("writing " + options.target + ": the name of a database ends in .sqlite");
  }
  if (std::filesystem::is_directory(path, error)) {
    throw Failure("writing " + options.target + ": it is a folder");
  }
  const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
  if (!std::filesystem::is_directory(folder, error)) {
    throw Failure("writing " + options.target + ": there is no folder " + folder.string());
  }
  if (std::filesystem::equivalent(options.store, path, error)) {
    throw Failure("importing " + options.store + ": source and target are the same file");
  }
}

}  // namespace

void RunImport(const ImportOptions& options) {
  CheckDatabase(options);
  Interruption::Watch();
  Engine engine;
  const std::filesystem::path folder = std::filesystem::absolute(options.target).parent_path();
  Ref<IStore> store;
  {
    ProgressBar bar("Reading");
    store = engine.OpenToCopy(options.store, folder.string(), bar);
  }
  WString parameters = FilenameParameter(options.target);
  if (!options.replace) parameters += u"<add>yes</add>";
  Explained("importing " + options.store + " into " + options.target, [&] {
    ProgressBar bar("Writing");
    Ref<IExporter>::Adopt(engine.Environment().CreateExporter(u"SQL", u"", parameters, store.Get()))
        ->RunWatched(bar);
  });
  TellRemarks(*store, options.warnings);
}

}  // namespace hv::cli
