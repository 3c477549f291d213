// tests/core/store/ReferenceEvaluator.h - answers queries record by record, in the simplest way.
#pragma once

#include <vector>

#include "core/query/BoundQuery.h"
#include "core/store/RecordStore.h"

namespace hv::vex::engine::test {

/// The ids that Select must give, found by looking at every record on its own through the store's
/// reading operations; shares no code with a store's own evaluation but the rules of TextMatch.
std::vector<RecordId> ReferenceSelect(const RecordStore& store, const BoundQuery& query);

}  // namespace hv::vex::engine::test
