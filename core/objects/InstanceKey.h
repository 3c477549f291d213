// core/objects/InstanceKey.h - the text by which an instance is named for good: "Measurement:17".
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/model/Model.h"
#include "core/store/RecordStore.h"

namespace hv::vex::engine {

/// Application entity, colon, id in decimal.
void AppendKey(const Model& model, RecordRef record, std::u16string& out);
/// The record that a key names; nothing if the text is no key of this model. Whether the record
/// exists is another question. The entity's name may hold colons, the id can't.
std::optional<RecordRef> ParseKey(const Model& model, std::u16string_view key);

}  // namespace hv::vex::engine
