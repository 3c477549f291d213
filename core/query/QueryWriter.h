// core/query/QueryWriter.h - writes the XML text of a query from a short expression.
// Grammar and format are told in docs/formats/query-expression.md.
#pragma once

#include <string>
#include <string_view>

namespace hv::vex::engine {

/// The query text for all records of `returnType` that `expression` describes: an empty text (all),
/// a name with wildcards, or conditions such as `Name = 'a*' AND (Size > 3 OR Size < 1)`.
/// \param odsConform  the wildcards of texts are "?" and "*"; else they are "_" and "%". Either way
///                    the query text has "?" and "*".
/// \throws Exception kBadQuery, "expression, column C: reason".
std::u16string BuildQueryText(std::u16string_view returnType, bool odsConform,
                              std::u16string_view expression);

}  // namespace hv::vex::engine
