// core/plugins/sql/SqliteFunctions.h - what statements call beyond SQLite's own functions.
#pragma once

#include <span>

#include <sqlite3.h>

namespace hv::vex::engine::sql {

/// The type of pointers that `sf_ids` takes: a `const std::span<const std::int64_t>*`.
inline constexpr const char* kIdsPointer = "sf_ids";

/// Registers sf_fold(text), sf_date14(text), sf_matches(text, pattern), the collation SF_UTF16 and
/// the table function sf_ids(pointer) with the columns id and pos. Gives a result code of SQLite.
int RegisterFunctions(sqlite3* database);

}  // namespace hv::vex::engine::sql
