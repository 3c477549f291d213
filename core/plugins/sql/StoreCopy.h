// core/plugins/sql/StoreCopy.h - puts everything that another store holds into a database, in
// batches.
#pragma once

#include <vector>

#include "core/plugins/sql/Layout.h"
#include "core/store/RecordStore.h"
#include "core/store/Watch.h"

namespace hv::vex::engine::sql {

/// Where the records of one element go: into which element, which members, and under which ids.
struct Counterpart {
  EntityId entity = kNoEntity;           ///< of the target; none: the element is left out
  std::vector<std::int32_t> attributes;  ///< of the target, by index in the source; may be kNone
  std::vector<std::int32_t> relations;
  bool keepsIds = true;
  RecordId firstId = 0;               ///< of the new ids, which follow each other
  std::vector<RecordId> oldIds = {};  ///< ascending, all of them, unless they are kept

  /// The id in the target of one of the records.
  [[nodiscard]] RecordId IdOf(RecordId id) const;
};

/// A database that is filled by statements of its own; inside a transaction.
struct CopyTarget {
  Connection& connection;
  const Model& model;
  const Layout& layout;
};

/// One relation of an element.
struct RelationRef {
  EntityId entity = kNoEntity;
  std::int32_t relation = kNone;
};

/// Copies records, instance attributes, values and links. The watcher is asked between records and
/// while statements run.
/// \param counterparts  by element of the source
/// \return the relations of the source whose links aren't made, since the target's model pairs its
///         relations in another way.
std::vector<RelationRef> CopyRecords(const RecordStore& source, const CopyTarget& target,
                                     const std::vector<Counterpart>& counterparts,
                                     const Watch& watch);

/// Fills a new database whose tables `CreateSchema` made from the source's own model, and makes the
/// indexes. The database's references aren't checked meanwhile, so it must not be one that others
/// see.
void CopyStore(const RecordStore& source, Connection& target, const Layout& layout,
               const Watch& watch = {});

}  // namespace hv::vex::engine::sql
