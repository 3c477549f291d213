// query/files/ColumnLayout.h - column configurations as instances of query files.
#pragma once

#include <vector>

#include "query/files/IColumnCollectionImpl.h"
#include "store/core/IInstance.h"

/// Both throw what the engine throws.
namespace hv::vex::querydoc {

/// Writes a configuration below the column manager.
void SaveColumns(const std::vector<StoredReturnType>& configuration, IInstance& manager);
/// Reads an instance below it.
std::vector<StoredReturnType> LoadColumns(IInstance& stored);

}  // namespace hv::vex::querydoc
