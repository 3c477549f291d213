// core/query/BoundQuery.h - a query expression with its names resolved in one model.
// This is what stores run.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/model/Model.h"

namespace hv::vex::engine {

enum class QueryOp : std::uint8_t {
  And,
  Or,
  Equal,     ///< "="
  NotEqual,  ///< "<>" and "!="
  Less,
  LessEqual,
  Greater,
  GreaterEqual,
};

/// A constant, prepared for the type of what it is compared with.
struct BoundConstant {
  /// Text: as written, or folded (FoldCase) if `ignoreCase`. Dates: 14 digits.
  std::u16string text;
  bool wildcards = false;   ///< "?" one character, "*" any number (Text; Equal and NotEqual only)
  bool ignoreCase = false;  ///< Text only
  bool isReal = false;      ///< numbers: `real` counts, else `integer`
  /// No value of the type can equal the constant (an item that the enumeration doesn't have):
  /// NotEqual holds for every set value, all other operators for none.
  bool isNever = false;
  std::int64_t integer = 0;
  double real = 0;
  /// InstanceAttribute alone, whose type is known record by record. `text` serves values that are
  /// texts; these two say whether the same constant can be compared with numbers and dates at all.
  bool isNumber = false;  ///< `isReal`, `integer` and `real` count for values that are numbers
  std::u16string date;    ///< 14 digits for values that are dates; empty: no date equals it

  /// The constant of an InstanceAttribute for those values that are numbers, or dates.
  [[nodiscard]] BoundConstant ForNumbers() const {
    BoundConstant number = *this;
    number.isNever = isNever || !isNumber;
    return number;
  }
  [[nodiscard]] BoundConstant ForDates() const {
    BoundConstant other = *this;
    other.isNever = isNever || date.empty();
    other.text = date;
    return other;
  }
};

/// A function of the expression. A Logic node has one child or more. Meanings that every store must
/// share:
/// - a condition over to-many relations holds if one related record meets it (never multiplies
///   hits);
/// - an unset value or a missing related record meets no condition, "!=" included;
/// - texts compare by code unit, after full case folding on both sides where the constant says so
///   (FoldCase in core/query/TextMatch.h: one rule for equality, order, wildcards and indexes);
/// - dates compare on their first 14 digits, short ones padded ("2010" is 20100101000000);
/// - a NaN counts as unset, in conditions and in the order.
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
  /// InstanceAttribute: the condition on the name ("==" in the text), folded (FoldCase), to be
  /// compared with folded names; empty text: any name.
  std::u16string attributeName;
  /// InstanceAttribute: true if only the name counts: the record has a set attribute of that name.
  bool anyValue = false;
};

/// Texts are ordered by their folded form, records without a value come last in either direction.
/// Where the path leads to several records the lowest of their values counts, if descending the
/// highest. What is still equal is ordered by id.
struct BoundOrder {
  ResolvedPath path;
  bool descending = false;
};

/// A record and one of its relations, which leads to records of the entity asked for.
struct BoundStart {
  EntityId entity = kNoEntity;
  std::int32_t relation = kNone;
  std::int64_t id = 0;
};

/// A query for the records of one application entity. A question for a base entity is bound once
/// for each application entity derived from it, since names may resolve differently in each.
struct BoundQuery {
  EntityId entity = kNoEntity;
  bool hasCondition = false;
  BoundNode condition;  ///< if `hasCondition`; its paths start at `entity`
  /// Words, and phrases between double quotes, that must all occur, without regard to case, in
  /// scalar String attributes of a record, each in any of them; empty: none.
  std::u16string freeText;
  /// Only records count that it leads to, and they come in the order of those links unless `order`
  /// says another.
  std::optional<BoundStart> start;
  std::int64_t limit = 0;         ///< 0: none
  std::vector<BoundOrder> order;  ///< empty: by id, or by links from `start`
};

}  // namespace hv::vex::engine
