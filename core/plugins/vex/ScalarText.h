// core/plugins/vex/ScalarText.h - values of a document's attributes as text and back.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/model/Value.h"

namespace hv::vex::engine::vexdoc {

/// True for the types that a document can hold: texts, dates, truth values, whole numbers, reals.
bool HasText(OdsType type);

/// Appends element `index` of a value. Reals have as many digits as bring the same number back.
void AppendElement(const Value& value, std::size_t index, std::u16string& to);

/// Adds the element that the text tells to `value`, whose type says how to read it. Numbers and
/// truth values may have white space around them. False if the text tells no such value.
bool ReadElement(std::u16string_view text, Value& value);

}  // namespace hv::vex::engine::vexdoc
