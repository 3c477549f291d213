// core/query/ConstantBinder.h - turns the constants of a query into what an attribute is compared
// with.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "core/query/ParsedQuery.h"

namespace hv::vex::engine {

/// A comparison with its constant in the attribute's type.
struct BoundComparison {
  QueryOp op = QueryOp::Equal;
  BoundConstant constant;
};

/// What a condition on a scalar attribute means. More than one comparison comes from an enumeration
/// compared with a pattern, one for each item that fits it; for NotEqual all of them must hold,
/// else one of them. Nothing if the constant can't be read as the attribute's type.
std::optional<std::vector<BoundComparison>> BindConstant(const Model& model,
                                                         const Attribute& attribute, QueryOp op,
                                                         const ParsedConstant& constant);

/// The constant of a condition on instance attributes, whose types differ by record.
BoundConstant BindInstanceAttributeConstant(QueryOp op, const ParsedConstant& constant);

/// True if values of the attribute can be compared at all.
bool IsComparable(const Attribute& attribute);

/// What the constants of a comparable type look like, for messages: "a number", "a date" ...
std::u16string_view DescribeConstants(OdsType type);

/// A number as people and programs write it: a whole number, or one with a point or an exponent,
/// blanks around it. `isReal` tells which of the two members counts; a whole number within 64 bits
/// is never real, however it was written ("3.0", "1e3").
struct Number {
  bool isReal = false;
  std::int64_t integer = 0;
  double real = 0;  ///< always set
};
std::optional<Number> ParseNumber(std::u16string_view text);

}  // namespace hv::vex::engine
