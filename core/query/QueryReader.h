// core/query/QueryReader.h - reads the XML text of a query expression.
// The format is told in docs/formats/query-expression.md.
#pragma once

#include <string_view>

#include "core/query/ParsedQuery.h"
#include "store/core/Exception.h"

namespace hv::vex::engine {

/// Reads a query text. The encoding that its header declares is ignored, the prefix of its elements
/// needs no declaration, and an entity tag that isn't well-formed XML (a name that wasn't escaped,
/// a `uri` without quotes) is repaired.
/// \throws Exception kBadQuery, "query expression, line L, column C: reason".
ParsedQuery ReadQuery(std::u16string_view text);

/// The error of a place in a query text. Without a known place the message is
/// "query expression: reason".
Exception QueryError(QueryPosition position, std::u16string_view reason);

}  // namespace hv::vex::engine
