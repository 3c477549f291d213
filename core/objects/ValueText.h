// core/objects/ValueText.h - single elements of values as numbers and texts, and back.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/model/Model.h"
#include "core/model/Value.h"

namespace hv::vex::engine {

/// The enumeration of an attribute's values, or null. Elements of Enum values are told by their
/// item's name and taken by name or number.
using EnumPtr = const Enumeration*;

/// Element `index` converted. Beyond the end: kInvalidArgument; not convertible: kWrongType.
std::int64_t ElementAsInteger(const Value& value, std::uint64_t index);
double ElementAsReal(const Value& value, std::uint64_t index);
/// Numbers in their shortest exact form, booleans "1" and "0", complex numbers "re im".
void ElementAsText(const Value& value, std::uint64_t index, EnumPtr enumeration,
                   std::u16string& out);
/// An integer as the text of its type.
void IntegerAsText(OdsType type, std::int64_t value, EnumPtr enumeration, std::u16string& out);
void RealAsText(OdsType type, double value, std::u16string& out);

/// Replace element `index` or, at the end, add one. A value that doesn't fit throws kWrongType.
void SetElementInteger(Value& value, std::uint64_t index, std::int64_t element);
void SetElementReal(Value& value, std::uint64_t index, double element);
void SetElementText(Value& value, std::uint64_t index, std::u16string_view element,
                    EnumPtr enumeration);
/// Gives the value `count` elements; new ones are 0 or empty. A scalar has at most one.
void ResizeValue(Value& value, std::uint64_t count);

/// Throws kWrongType if an integer is out of the range of its type.
void CheckIntegerRange(OdsType type, std::int64_t value);

}  // namespace hv::vex::engine
