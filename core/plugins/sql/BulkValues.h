// core/plugins/sql/BulkValues.h - values and flags of local columns, in segments of SF_BULK.
//
// A segment holds up to half a megabyte of numbers at their type's own width, little-endian, or of
// texts (UTF-8) and byte strings behind a table of their ends (32 bits each). Where some of those
// are replaced by longer ones, it may grow to twice that.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "core/model/Value.h"
#include "core/plugins/sql/Driver.h"
#include "core/store/RecordStore.h"

namespace hv::vex::engine::sql {

enum class BulkPart : std::int64_t { Values = 0, Flags = 1 };

struct BulkKey {
  std::int64_t aid;
  RecordId id;
  BulkPart part;
};

void DeleteBulk(Connection& connection, const BulkKey& key);
/// Number of elements stored; `type` receives theirs if there are any segments.
std::uint64_t CountBulk(Connection& connection, const BulkKey& key, OdsType* type);
/// Adds values behind those there are. They fit their type.
void AppendBulk(Connection& connection, const BulkKey& key, const Value& values);
/// Replaces values from `first` on. They fit the type of those there are, and lie inside them.
void OverwriteBulk(Connection& connection, const BulkKey& key, std::uint64_t first,
                   const Value& values);
/// Adds everything that `source` holds, piece by piece.
void CopyBulk(Connection& connection, const BulkKey& key, const ValueSource& source);
/// Null if nothing is stored. The source keeps the connection open.
std::unique_ptr<ValueSource> OpenBulk(std::shared_ptr<Connection> connection, const BulkKey& key);

}  // namespace hv::vex::engine::sql
