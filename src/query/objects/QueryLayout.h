// query/objects/QueryLayout.h - queries as instances of query files; src/query/files has the
// bodies.
#pragma once

#include <storefabric/Result.h>

namespace hv::vex {

class IAdvancedQueryImpl;
class IInstance;

/// Writes a store query below the manager of a query file, with all its conditions.
Result SaveQueryInto(IAdvancedQueryImpl& query, IInstance& manager);
/// Fills a store query, which should be a fresh one, from the instance of a query file.
Result LoadQueryFrom(IInstance& stored, IAdvancedQueryImpl& query);

}  // namespace hv::vex
