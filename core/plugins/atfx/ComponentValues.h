// core/plugins/atfx/ComponentValues.h - the values of a column that lie in component files.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/plugins/atfx/ComponentFile.h"
#include "core/plugins/atfx/Typespec.h"
#include "core/store/RecordStore.h"

namespace hv::vex::engine::atfx {

/// One piece of a column in a component file, as the ATFX file describes it. Value k lies at
/// offset + (k div valuesPerBlock) * blockSize + valueOffset + (k mod valuesPerBlock) * width.
struct Component {
  std::u16string fileName;
  const Typespec* typespec = nullptr;
  std::uint64_t length = 0;          ///< values; texts and byte strings: bytes
  std::uint64_t offset = 0;          ///< byte of the first block
  std::uint64_t blockSize = 0;       ///< bytes; 0: not told
  std::uint64_t valuesPerBlock = 0;  ///< 0: not told
  std::uint64_t valueOffset = 0;     ///< byte of the first value in a block
  std::uint32_t bitCount = 0;        ///< bit fields only
  std::uint32_t bitOffset = 0;
};

/// The elements that a component claims to hold, or nothing if its length counts bytes.
std::optional<std::uint64_t> ClaimedCount(const Component& component, OdsType type);

/// Opens one component, or several that follow each other. A file that ends early gives the values
/// it holds, with a warning.
/// \param wanted      see TypeOfStorage.
/// \param columnName  stands in messages.
/// Throws kBadFile if a file is missing, doesn't hold even one value of those told, or is laid out
/// in a way that makes no sense.
std::unique_ptr<ValueSource> OpenComponents(ComponentFiles& files,
                                            const std::vector<Component>& components,
                                            OdsType wanted, std::u16string_view columnName);

}  // namespace hv::vex::engine::atfx
