// core/plugins/sql/SqlPlugin.h - databases as a kind of store.
#pragma once

#include <filesystem>

#include "core/plugins/Plugin.h"
#include "core/plugins/sql/NewDatabaseFile.h"

namespace hv::vex::engine {

/// Parameters: "filename" (with the mark readonly='yes' for a store that can't be changed),
/// "timeout" in seconds (10), how long a change waits for another session that writes. Writing a
/// store with a tag "add" adds its records to those of a database that is there already.
extern const PluginInfo kSqlPlugin;

namespace sql {

/// Writes everything that `source` holds into a new database that takes the place of `path` when it
/// is complete. Stopped at any moment, what stood there stays as it was.
void WriteDatabase(const RecordStore& source, const std::filesystem::path& path,
                   const Watch& watch = {},
                   NewDatabaseFile::IfTaken ifTaken = NewDatabaseFile::IfTaken::Replace);

}  // namespace sql
}  // namespace hv::vex::engine
