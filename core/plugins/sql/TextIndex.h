// core/plugins/sql/TextIndex.h - keeps the index for words up with the texts of records.
#pragma once

#include <span>

#include "core/plugins/sql/Layout.h"
#include "core/store/RecordStore.h"

namespace hv::vex::engine::sql {

/// True if changes of the attribute change what words find the record.
bool IsSearchedForWords(const Attribute& attribute, const AttributePlace& place);

/// Reads the texts of the records and puts them into the index, in the place of what was there.
void IndexTextsOf(Connection& connection, const Model& model, const Layout& layout, EntityId entity,
                  std::span<const RecordId> ids);

}  // namespace hv::vex::engine::sql
