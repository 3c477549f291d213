// apps/cli/HitTable.h - hits of a search with their columns.
#pragma once

#include <string>
#include <vector>

#include "apps/cli/Commands.h"
#include "store/core/Seam.h"

namespace hv::cli {

/// Writes key, name and the columns asked for of each hit. They are read with one call.
/// \param columns  attributes, or paths along references to one
void WriteHits(vex::IStore& store, vex::IInstList& hits, const std::vector<std::string>& columns,
               Format format);

}  // namespace hv::cli
