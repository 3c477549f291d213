// core/plugins/atfx/AtfxWriter.h - writes a whole store of any kind as an ATFX file.
#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "core/store/RecordStore.h"
#include "core/store/Watch.h"

namespace hv::vex::engine::atfx {

struct WriteOptions {
  /// Columns of more values go into component files.
  std::uint64_t mostInlineValues = 4096;
  /// A component file that has grown beyond this size is followed by another.
  std::uint64_t largestComponentFile = 500'000'000;
  /// Told of the records written, and asked between them.
  Watch watch;
};

/// Writes the model, all records and all values in batches; the store isn't held in memory.
/// Component files get fresh names beside the target. The target is replaced at the very end, by
/// renaming: on failure it is as it was, and nothing new is left. External components are part of
/// how values are stored and aren't written as records. \return the component files that were
/// written. Throws kWriteFailed, kNotSupported for a model that isn't based on the standard's, and
/// whatever reading the store throws.
std::vector<std::filesystem::path> WriteAtfx(const RecordStore& source,
                                             const std::filesystem::path& target,
                                             const WriteOptions& options = {});

}  // namespace hv::vex::engine::atfx
