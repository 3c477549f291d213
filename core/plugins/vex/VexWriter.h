// core/plugins/vex/VexWriter.h - writes a store as a document of instances.
#pragma once

#include <string>

#include "core/store/RecordStore.h"

namespace hv::vex::engine::vexdoc {

/// The whole document in UTF-8. The same contents give the same bytes. Throws kNotSupported for a
/// store whose model isn't a document's, kWriteFailed for a text with characters that XML has no
/// place for.
std::string WriteVexText(const RecordStore& source);

}  // namespace hv::vex::engine::vexdoc
