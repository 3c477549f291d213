// apps/cli/TextFile.h - texts that people hand to the program.
#pragma once

#include <string>

#include "storefabric/WString.h"

namespace hv::cli {

/// The whole text of a file, or of standard input ("-"). UTF-16 with a byte order mark, or UTF-8
/// with or without one. Throws Failure if it can't be read.
WString ReadTextFile(const std::string& file);

}  // namespace hv::cli
