// tests/core/atfx/DumpStore.h - a whole store as text, for comparing stores and for expected
// tables.
#pragma once

#include <string>

#include "core/store/RecordStore.h"

namespace hv::vex::engine::test {

/// The values as one text, separated by blanks; texts and bytes in quotes, complex numbers as
/// re/im.
std::string ValuesText(const ValueSource* source);
/// The same for an attribute's value; "-" if it is unset.
std::string ValueText(const Value& value);
/// Ids that a relation of a record leads to, with blanks between them.
std::string LinksText(const RecordStore& store, RecordRef record, std::u16string_view relation);
/// Model, records, attributes, links, instance attributes, values and flags, one fact per line.
/// What a model only implies (which side declared a relation) is left out.
std::string DumpStore(const RecordStore& store);

}  // namespace hv::vex::engine::test
