// core/plugins/sql/SqlPlugin.cpp - opening, making and writing database files.
#include "core/plugins/sql/SqlPlugin.h"

#include <charconv>

#include "core/plugins/PluginCall.h"
#include "core/plugins/sql/SqlStore.h"
#include "core/plugins/sql/Sqlite.h"
#include "core/plugins/sql/StoreCopy.h"
#include "core/plugins/sql/StoreMerge.h"
#include "core/store/memory/Failure.h"
#include "core/store/memory/MemoryStore.h"
#include "storefabric/WString.h"

namespace hv::vex::engine {
namespace sql {
namespace {

std::u16string NameOf(const std::filesystem::path& path) {
  return cor::FromUtf8(path.string()).str();
}

SqliteOptions OptionsOf(const ConnectParameters& parameters) {
  SqliteOptions options;
  options.isReadOnly = parameters.IsReadOnly();
  if (const auto text = parameters.GetTrimmed(u"timeout")) {
    const std::string digits = cor::ToUtf8(*text);
    double seconds = 0;
    const auto end = std::from_chars(digits.data(), digits.data() + digits.size(), seconds);
    constexpr double kLongest = 86400;
    if (end.ec != std::errc() || end.ptr != digits.data() + digits.size() || seconds < 0 ||
        seconds > kLongest) {
      Fail(errc::kInvalidArgument, {u"the time limit \"", *text, u"\" is no number of seconds"});
    }
    options.timeout = std::chrono::milliseconds(static_cast<std::int64_t>(seconds * 1000));
  }
  return options;
}

}  // namespace

void WriteDatabase(const RecordStore& source, const std::filesystem::path& path, const Watch& watch,
                   NewDatabaseFile::IfTaken ifTaken) {
  NewDatabaseFile file(path);
  {
    SqliteOptions options;
    options.mayCreate = true;
    const std::shared_ptr<Connection> connection = OpenSqlite(file.Path(), options);
    // Nobody needs the unfinished file, so its safety costs nothing yet.
    connection->Execute(
        "PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF; PRAGMA foreign_keys=OFF;"
        "PRAGMA cache_size=-32768; BEGIN");
    const Layout layout = MakeLayout(*source.GetModel(), connection->GetDialect());
    CreateSchema(*connection, *source.GetModel(), layout);
    CopyStore(source, *connection, layout, watch);
    connection->Execute("COMMIT");
    // What the planner knows of the tables; a sample is enough.
    connection->Execute("PRAGMA analysis_limit=1000; ANALYZE; PRAGMA journal_mode=WAL");
  }
  file.TakePlace(ifTaken);
}

namespace {

std::unique_ptr<RecordStore> Open(const ConnectParameters& parameters) {
  return Guarded([&]() -> std::unique_ptr<RecordStore> {
    const std::filesystem::path path = FileNameOf(parameters);
    return std::make_unique<SqlStore>(OpenSqlite(path, OptionsOf(parameters)), NameOf(path));
  });
}

std::unique_ptr<RecordStore> Create(const ConnectParameters& parameters,
                                    std::shared_ptr<const Model> model) {
  return Guarded([&]() -> std::unique_ptr<RecordStore> {
    if (!model) Fail(errc::kInvalidArgument, {u"a new store needs a model"});
    SqliteOptions options = OptionsOf(parameters);
    if (parameters.GetTrimmed(u"filename")) {
      const std::filesystem::path path = FileNameOf(parameters);
      if (std::filesystem::exists(path)) {
        Fail(errc::kNotUnique, {NameOf(path), u": exists already"});
      }
      WriteDatabase(MemoryStore(std::move(model), {}), path, {}, NewDatabaseFile::IfTaken::Refuse);
      return std::make_unique<SqlStore>(OpenSqlite(path, options), NameOf(path));
    }
    options.mayCreate = true;
    const std::shared_ptr<Connection> connection = OpenSqlite({}, options);
    const Layout layout = MakeLayout(*model, connection->GetDialect());
    CreateSchema(*connection, *model, layout);
    CreateIndexes(*connection, *model, layout);
    return std::make_unique<SqlStore>(connection, u"database in memory");
  });
}

void Write(const RecordStore& source, const ConnectParameters& parameters) {
  Guarded([&] {
    const std::filesystem::path path = FileNameOf(parameters);
    const bool isAdding = parameters.Get(u"add").has_value();
    if (!isAdding || !std::filesystem::exists(path)) {
      WriteDatabase(
          source, path, parameters.Watcher(),
          isAdding ? NewDatabaseFile::IfTaken::Refuse : NewDatabaseFile::IfTaken::Replace);
      return;
    }
    SqlStore target(OpenSqlite(path, OptionsOf(parameters)), NameOf(path));
    MergeStore(source, target, parameters.Watcher());
  });
}

}  // namespace
}  // namespace sql

const PluginInfo kSqlPlugin = {
    .name = u"SQL",
    .supportsQueries = true,
    .fileExtensions = u"sqlite",
    .open = sql::Open,
    .create = sql::Create,
    .write = sql::Write,
};

}  // namespace hv::vex::engine
