// core/plugins/vex/VexReader.h - reads a document of instances into a store in memory.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "core/store/memory/MemoryStore.h"

namespace hv::vex::engine::vexdoc {

struct VexReadOptions {
  /// The URI of the model that the document is read with, whatever version it was written with;
  /// empty: the document's own.
  std::u16string targetModel;
  /// Finds a model by its URI; null if there is none.
  std::function<std::shared_ptr<const Model>(std::u16string_view uri)> models;
  MemoryPersistence persistence;
};

/// Reads a whole document. What the model doesn't know is left out, with a warning in the store.
/// Throws kBadFile with "SOURCE:LINE: reason" for anything that isn't what it should be, and
/// kUnknownName for a target model that doesn't exist. docs/formats/vex-document.md tells the
/// rules.
std::unique_ptr<MemoryStore> ReadVexFile(const std::filesystem::path& path, VexReadOptions options);
/// The same from a text in memory.
/// \param sourceName  stands for the file in messages.
std::unique_ptr<MemoryStore> ReadVexText(std::u16string_view text, std::string_view sourceName,
                                         VexReadOptions options);

}  // namespace hv::vex::engine::vexdoc
