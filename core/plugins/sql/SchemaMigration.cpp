// core/plugins/sql/SchemaMigration.cpp - one step for each version, in one transaction.
#include "core/plugins/sql/SchemaMigration.h"

#include <charconv>
#include <string>
#include <utility>

namespace hv::vex::engine::sql {
namespace {

int VersionOf(Connection& connection) {
  Run run(connection, "SELECT VALUE FROM SF_META WHERE KEY='schema_version'");
  int version = 0;
  if (!run->Step()) return version;
  const std::string_view text = run->Text(0);
  std::from_chars(text.data(), text.data() + text.size(), version);
  return version;
}

/// Version 2 has indexes over numbers.
void ToVersion2(Connection& connection, const OpenedSchema& schema) {
  CreateIndexes(connection, *schema.model, schema.layout);
  connection.Execute(connection.GetDialect().Analyze());
}

constexpr std::pair<int, void (*)(Connection&, const OpenedSchema&)> kSteps[] = {{2, ToVersion2}};

}  // namespace

bool MigrateSchema(Connection& connection, const OpenedSchema& schema) {
  if (!schema.layout.isOwn || schema.version >= kSchemaVersion || connection.IsReadOnly()) {
    return false;
  }
  connection.Begin();
  try {
    // Another session may have been faster.
    const int version = VersionOf(connection);
    for (const auto& [reached, step] : kSteps) {
      if (version < reached) step(connection, schema);
    }
    if (version < kSchemaVersion) {
      const std::string text = std::to_string(kSchemaVersion);
      Run(connection, "UPDATE SF_META SET VALUE=? WHERE KEY='schema_version'").Add(text).Finish();
    }
    connection.Commit();
  } catch (...) {
    connection.Rollback();
    throw;
  }
  return true;
}

}  // namespace hv::vex::engine::sql
