// core/plugins/sql/StoreCopy.h - fills a new database with everything another store holds.
#pragma once

#include <functional>

#include "core/plugins/sql/Layout.h"
#include "core/store/RecordStore.h"

namespace hv::vex::engine::sql {

/// Called now and then with the records done and their number.
using CopyProgress = std::function<void(std::uint64_t done, std::uint64_t total)>;

/// Copies in batches into tables that `CreateSchema` made from the source's own model, and makes
/// the indexes. The database's references aren't checked meanwhile, so it must not be one that
/// others see.
void CopyStore(const RecordStore& source, Connection& target, const Layout& layout,
               const CopyProgress& progress = {});

}  // namespace hv::vex::engine::sql
