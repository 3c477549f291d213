// core/query/QueryBinder.h - resolves the names of a query in a model.
#pragma once

#include <vector>

#include "core/query/ParsedQuery.h"

namespace hv::vex::engine {

/// Makes what stores run: one query per application entity of the return type, which may be an
/// application name or the name of a base entity, both in any case. A base entity without
/// application entities gives an empty list.
///
/// An identifier that some entities of a base entity have and others don't counts as unset in
/// those others; an order by it is dropped there.
/// \throws Exception kBadQuery: unknown return type or identifier, an attribute that can't be
///         compared, a constant that can't be read as the attribute's type.
std::vector<BoundQuery> BindQuery(const ParsedQuery& query, const Model& model);

}  // namespace hv::vex::engine
