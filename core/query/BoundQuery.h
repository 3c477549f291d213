// core/query/BoundQuery.h - a query expression with its names resolved in one model: what stores run.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/model/Model.h"

namespace hv::vex::engine {

enum class QueryOp : std::uint8_t {
  And,
  Or,
  Equal,         ///< "="
  NotEqual,      ///< "<>" and "!="
  Less,
  LessEqual,
  Greater,
  GreaterEqual,
};

/// A constant, prepared for the type of what it is compared with.
struct BoundConstant {
  std::u16string text;      ///< Text: as written, or folded (FoldCase) if `ignoreCase`; dates: 14 digits
  bool wildcards = false;   ///< "?" one character, "*" any number (Text only)
  bool ignoreCase = false;  ///< Text only
  bool isReal = false;      ///< numbers: `real` counts, else `integer`
  bool isNever = false;     ///< a constant that no value of that type can equal (an unknown enumeration item)
  std::int64_t integer = 0;
  double real = 0;
};

/// A function of the expression. Meanings that every store must share:
/// - a condition over to-many relations holds if one related record meets it (never multiplies hits);
/// - an unset value or a missing related record meets no condition, "!=" included;
/// - texts compare by code unit, after full case folding on both sides where the constant says so
///   (FoldCase in core/query/TextMatch.h: one rule for equality, order, wildcards and indexes);
/// - dates compare on their first 14 digits, short ones padded ("2010" is 20100101000000).
struct BoundNode {
  enum class Kind : std::uint8_t {
    Logic,              ///< And, Or over `children`
    Compare,            ///< `path` op `constant`
    InstanceAttribute,  ///< one instance attribute of the record at `path` is named and compares so
  };
  Kind kind = Kind::Logic;
  QueryOp op = QueryOp::And;
  std::vector<BoundNode> children;
  ResolvedPath path;
  BoundConstant constant;
  /// InstanceAttribute: the condition on the name ("==" in the text); empty text: any name.
  std::u16string attributeName;
};

struct BoundOrder {
  ResolvedPath path;
  bool descending = false;
};

/// A query for the records of one application entity. A question for a base entity is bound once for
/// each application entity derived from it, since names may resolve differently in each.
struct BoundQuery {
  EntityId entity = kNoEntity;
  bool hasCondition = false;
  BoundNode condition;             ///< if `hasCondition`; its paths start at `entity`
  std::u16string freeText;         ///< words that must all occur in texts of a record; empty: none
  std::int64_t limit = 0;          ///< 0: none
  std::vector<BoundOrder> order;   ///< empty: by id
};

}  // namespace hv::vex::engine
