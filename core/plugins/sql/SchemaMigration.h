// core/plugins/sql/SchemaMigration.h - databases of older schema versions.
#pragma once

#include "core/plugins/sql/Layout.h"

namespace hv::vex::engine::sql {

/// Brings a database that `schema` was read from to the present schema version, as a whole or not
/// at all. Does nothing where that is not needed, in databases of other tools, and where the file
/// can't be written: older versions can be read as they are.
/// \return true if the schema must be read again.
/// \throws Exception kTimeout if another session is writing, or what the database says; the file is
///         then as it was.
bool MigrateSchema(Connection& connection, const OpenedSchema& schema);

}  // namespace hv::vex::engine::sql
