// core/plugins/atfx/AtfxPlugin.cpp - ties reader, writer and the store in memory together.
#include "core/plugins/atfx/AtfxPlugin.h"

#include "core/plugins/PluginCall.h"
#include "core/plugins/atfx/AtfxReader.h"
#include "core/plugins/atfx/AtfxWriter.h"
#include "core/plugins/files/FileOutput.h"
#include "core/store/memory/Failure.h"
#include "core/store/memory/MemoryStore.h"

#include "store/core/Exception.h"

#include <filesystem>
#include <tuple>

#include <sys/stat.h>

namespace hv::vex::engine {

namespace {

/// What tells one state of a file from another.
using FileStamp = std::tuple<ino_t, off_t, time_t, long>;

FileStamp StampOf(const std::filesystem::path& path) {
  struct stat facts {};
  if (stat(path.c_str(), &facts) != 0) return {};
  return {facts.st_ino, facts.st_size, facts.st_mtim.tv_sec, facts.st_mtim.tv_nsec};
}

/// Lives as long as the store that holds the functions made here; those who read values late may
/// live longer and only watch it.
struct Session {
  std::filesystem::path path;
  std::filesystem::path spoolFolder;
  const MemoryStore* store = nullptr;
  FileStamp stamp;
  std::shared_ptr<const Model> newModel;  ///< of a store that was never saved
};

std::unique_ptr<MemoryStore> ReadFor(const std::shared_ptr<Session>& session,
                                     MemoryPersistence persistence, const Watch& watch = {}) {
  session->stamp = StampOf(session->path);
  atfx::ReadOptions options;
  options.persistence = std::move(persistence);
  options.spoolFolder = session->spoolFolder;
  options.watch = watch;
  options.warnLater = [watch = std::weak_ptr<Session>(session)](std::u16string text) {
    const std::shared_ptr<Session> alive = watch.lock();
    if (alive && alive->store) alive->store->AddWarning(std::move(text));
  };
  return atfx::ReadAtfxFile(session->path, std::move(options));
}

MemoryPersistence PersistenceFor(const std::shared_ptr<Session>& session, bool isReadOnly) {
  MemoryPersistence persistence;
  persistence.reload = [session](bool onlyIfChanged) -> std::unique_ptr<MemoryStore> {
    if (session->newModel) {
      if (onlyIfChanged) return nullptr;
      return std::make_unique<MemoryStore>(session->newModel, MemoryPersistence{});
    }
    if (onlyIfChanged && StampOf(session->path) == session->stamp) return nullptr;
    return ReadFor(session, {});
  };
  if (!isReadOnly) {
    persistence.save = [session](const MemoryStore& store, std::u16string_view) {
      // Writing reads every value, so that all component files are mapped before they are replaced.
      atfx::WriteAtfx(store, session->path);
      session->stamp = StampOf(session->path);
      session->newModel.reset();
      return false;
    };
  }
  return persistence;
}

std::unique_ptr<RecordStore> Open(const ConnectParameters& parameters) {
  return Guarded([&]() -> std::unique_ptr<RecordStore> {
    const auto session = std::make_shared<Session>();
    session->path = FileNameOf(parameters);
    if (const auto folder = parameters.GetTrimmed(u"spool")) {
      session->spoolFolder = cor::ToUtf8(*folder);
    }
    auto store =
        ReadFor(session, PersistenceFor(session, parameters.IsReadOnly()), parameters.Watcher());
    session->store = store.get();
    return store;
  });
}

std::unique_ptr<RecordStore> Create(const ConnectParameters& parameters,
                                    std::shared_ptr<const Model> model) {
  return Guarded([&]() -> std::unique_ptr<RecordStore> {
    if (!model) Fail(errc::kInvalidArgument, {u"a new store needs a model"});
    const auto session = std::make_shared<Session>();
    session->newModel = model;
    MemoryPersistence persistence;
    if (parameters.GetTrimmed(u"filename")) {
      session->path = FileNameOf(parameters);
      if (NameIsTaken(session->path)) {
        Fail(errc::kNotUnique, {cor::FromUtf8(session->path.string()), u": exists already"});
      }
      persistence = PersistenceFor(session, false);
    } else {
      persistence.save = [](const MemoryStore&, std::u16string_view) { return false; };
    }
    auto store = std::make_unique<MemoryStore>(std::move(model), std::move(persistence));
    session->store = store.get();
    return store;
  });
}

void Write(const RecordStore& source, const ConnectParameters& parameters) {
  Guarded([&] {
    atfx::WriteOptions options;
    options.watch = parameters.Watcher();
    atfx::WriteAtfx(source, FileNameOf(parameters), options);
  });
}

}  // namespace

const PluginInfo kAtfxPlugin = {
    .name = u"ATFX",
    .supportsQueries = true,
    .fileExtensions = u"atfx",
    .open = Open,
    .create = Create,
    .write = Write,
};

}  // namespace hv::vex::engine
