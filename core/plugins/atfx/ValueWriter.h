// core/plugins/atfx/ValueWriter.h - the value forms of the format, on the way out.
#pragma once

#include "core/model/Model.h"
#include "core/model/Value.h"
#include "core/plugins/atfx/ComponentValues.h"
#include "core/plugins/atfx/XmlOutput.h"
#include "core/store/RecordStore.h"

namespace hv::vex::engine::atfx {

/// The content of an attribute's tag.
/// \param enumeration  of Enum attributes; may be null.
void WriteValue(const Value& value, const Enumeration* enumeration, XmlOutput& xml);
/// One scalar number as the content of its tag.
void WriteNumber(OdsType type, std::int64_t integer, const Enumeration* enumeration,
                 XmlOutput& xml);
/// A typed tag with all values of a column.
void WriteInlineValues(const ValueSource& values, XmlOutput& xml);
/// All flags as the content of their tag.
void WriteInlineFlags(const ValueSource& flags, XmlOutput& xml);
/// A `component` tag.
void WriteComponent(const Component& component, XmlOutput& xml);

}  // namespace hv::vex::engine::atfx
