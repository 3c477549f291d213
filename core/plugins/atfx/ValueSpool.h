// core/plugins/atfx/ValueSpool.h - values that stand inside the XML, kept in a nameless file while
// somebody passes through the store who has no room for all of them in memory.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "core/store/RecordStore.h"
#include "core/store/memory/InMemoryValues.h"

namespace hv::vex::engine::atfx {

/// A file without a name: it is gone with this object, and with the process whatever ends that.
/// What is added goes to the disk in large pieces.
class ValueSpool final {
 public:
  /// Throws kWriteFailed with the folder and the reason.
  explicit ValueSpool(const std::filesystem::path& folder);
  ~ValueSpool();
  ValueSpool(const ValueSpool&) = delete;
  ValueSpool& operator=(const ValueSpool&) = delete;

  /// Adds bytes and gives their place. Throws kWriteFailed, as for a full disk.
  std::uint64_t Add(std::span<const std::byte> bytes);
  void Read(std::uint64_t at, std::span<std::byte> out) const;

 private:
  [[noreturn]] void FailNow(int error) const;
  void Flush();

  std::filesystem::path m_folder;
  int m_file = -1;
  std::uint64_t m_written = 0;
  Bytes m_pending;  // behind what is written
};

/// The values of one column in a spool, filled once in blocks, then opened any number of times.
class SpooledValues final {
 public:
  explicit SpooledValues(std::shared_ptr<ValueSpool> spool) : m_spool(std::move(spool)) {}

  /// Adds values behind those there are. Blocks may be of different types as long as all are
  /// integers.
  void Add(const InMemoryValues& block);
  /// Tells which type all of them have, whatever they are stored as; every one must fit it.
  void ShowAs(OdsType type) { m_type = type; }

  [[nodiscard]] OdsType Type() const { return m_type; }
  [[nodiscard]] std::uint64_t Count() const { return m_count; }
  /// One block as it was added.
  [[nodiscard]] std::size_t BlockCount() const { return m_blocks.size(); }
  [[nodiscard]] std::uint64_t FirstOf(std::size_t block) const { return m_blocks[block].first; }
  [[nodiscard]] std::size_t BlockOf(std::uint64_t value) const;
  [[nodiscard]] InMemoryValues Load(std::size_t block) const;

  /// A source that reads `values` block by block and keeps them alive.
  static std::unique_ptr<ValueSource> Open(std::shared_ptr<const SpooledValues> values);

 private:
  struct Block {
    std::uint64_t at;     // in the spool
    std::uint64_t first;  // value
    std::uint64_t size;   // bytes
    std::uint64_t count;
    OdsType type;
  };

  std::shared_ptr<ValueSpool> m_spool;
  std::vector<Block> m_blocks;
  std::uint64_t m_count = 0;
  OdsType m_type = OdsType::Unknown;
};

}  // namespace hv::vex::engine::atfx
