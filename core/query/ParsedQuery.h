// core/query/ParsedQuery.h - a query expression as it was written: names not yet looked up.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/query/BoundQuery.h"

namespace hv::vex::engine {

/// A place in the query text, both from 1; a line of 0 means that it isn't known.
struct QueryPosition {
  std::uint64_t line = 0;
  std::uint64_t column = 0;
};

struct ParsedConstant {
  std::u16string text;
  bool wildcards = false;  ///< "?" and "*" in the text are wildcards
  bool ignoreCase = false;
};

/// A function: a logic function over `children` (AND, OR), or a comparison of an identifier with a
/// constant. Logic functions that say nothing are gone: one without a child is left out, and one
/// with a single child is that child, unless the child stands alone in the whole query.
struct ParsedNode {
  QueryOp op = QueryOp::And;
  std::vector<ParsedNode> children;
  std::u16string identifier;
  ParsedConstant constant;
  QueryPosition position;
  [[nodiscard]] bool IsLogic() const { return op == QueryOp::And || op == QueryOp::Or; }
};

struct ParsedOrder {
  std::u16string identifier;
  bool descending = false;
  QueryPosition position;
};

struct ParsedQuery {
  std::u16string returnType;
  std::u16string freeText;
  std::int64_t limit = 0;  ///< 0: none
  ParsedNode root;         ///< an And; without children if the query has no condition
  std::vector<ParsedOrder> order;
  QueryPosition position;  ///< of the return type
};

/// Logic functions inside each other beyond which a query is refused: every part of the engine that
/// walks a query does it by recursion.
inline constexpr std::size_t kDeepestLogic = 256;

}  // namespace hv::vex::engine
