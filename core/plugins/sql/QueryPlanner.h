// core/plugins/sql/QueryPlanner.h - decides where the search for a query's records begins.
#pragma once

#include "core/plugins/sql/QueryCompiler.h"

namespace hv::vex::engine::sql {

/// Databases know how many rows an index leads to on average, but not for which values, and begin
/// with the related tables one inside the other where several conditions are about such. So each
/// group of conditions is asked first how many records it leads to, up to a small part of all. The
/// search begins with the group of the fewest, or, where all lead to many, reads the records in
/// their order, which a limit ends early.
///
/// Databases of other tools, whose indexes aren't known, plan for themselves.
QueryPlan PlanQuery(Connection& connection, const Model& model, const Layout& layout,
                    const BoundQuery& query);

}  // namespace hv::vex::engine::sql
