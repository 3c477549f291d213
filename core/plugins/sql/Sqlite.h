// core/plugins/sql/Sqlite.h - SQLite as the database behind a store: one file, one connection.
#pragma once

#include <chrono>
#include <filesystem>
#include <memory>

#include "core/plugins/sql/Driver.h"

namespace hv::vex::engine::sql {

struct SqliteOptions {
  bool isReadOnly = false;
  bool mayCreate = false;
  std::chrono::milliseconds timeout{10000};  ///< how long to wait for another writer
};

/// Opens a database file, or with `mayCreate` makes it. An empty path is a database in memory.
/// \throws Exception kBadFile for a file that isn't there or isn't a database.
std::shared_ptr<Connection> OpenSqlite(const std::filesystem::path& path,
                                       const SqliteOptions& options);

}  // namespace hv::vex::engine::sql
