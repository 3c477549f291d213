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

#include "core/store/Watch.h"
#include "core/store/memory/MemoryStore.h"

namespace hv::vex::engine::atfx {

/// What the reader needs beyond the file.
struct ReadOptions {
  MemoryPersistence persistence;
  /// Told of what turns out odd only when component files are read; may be null.
  std::function<void(std::u16string)> warnLater;
  /// A folder for a temporary file that takes up the values written inside the XML; empty: they
  /// stay in memory, where they are read again faster.
  std::filesystem::path spoolFolder;
  /// Told of the bytes read, and of their number.
  Watch watch;
};

/// Throws kBadFile: with the reason if the file can't be read, with "FILE:LINE: reason" if it
/// isn't a sound ATFX file. A failure leaves nothing behind.
std::unique_ptr<MemoryStore> ReadAtfxFile(const std::filesystem::path& path, ReadOptions options);

/// The same for a file whose bytes are in memory.
/// \param sourceName  stands for the file in messages.
/// \param folder      where relative names of component files start.
std::unique_ptr<MemoryStore> ReadAtfxBytes(std::span<const std::byte> bytes,
                                           std::string_view sourceName,
                                           const std::filesystem::path& folder,
                                           ReadOptions options);

/// Component files beside an ATFX file that this system wrote for it, and that may go when the file
/// is written anew. Reads no further than the file section; a file that can't be read has none.
std::vector<std::filesystem::path> OwnComponentFilesOf(const std::filesystem::path& path);

}  // namespace hv::vex::engine::atfx
