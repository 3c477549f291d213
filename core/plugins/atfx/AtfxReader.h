// core/plugins/atfx/AtfxReader.h - reads an ATFX file into a store in memory, in one pass.
// Values in component files stay there; the files are opened when values are asked for.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/store/memory/MemoryStore.h"

namespace hv::vex::engine::atfx {

/// What the reader needs beyond the file.
struct ReadOptions {
  MemoryPersistence persistence;
  /// Told of what turns out odd only when component files are read; may be null.
  std::function<void(std::u16string)> warnLater;
};

struct ReadResult {
  std::unique_ptr<MemoryStore> store;
  /// Component files in the folder of the file that were written by this system for this file, and
  /// may go when the file is written anew.
  std::vector<std::filesystem::path> ownComponentFiles;
};

/// Throws kConnectFailed if the file can't be read, and kBadFile with "FILE:LINE: reason" if it
/// isn't a sound ATFX file. A failure leaves nothing behind.
ReadResult ReadAtfxFile(const std::filesystem::path& path, ReadOptions options);

/// The same for a file whose bytes are in memory.
/// \param sourceName  stands for the file in messages.
/// \param folder      where relative names of component files start.
ReadResult ReadAtfxBytes(std::span<const std::byte> bytes, std::string_view sourceName,
                         const std::filesystem::path& folder, ReadOptions options);

}  // namespace hv::vex::engine::atfx
