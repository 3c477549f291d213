// core/objects/RecordBatch.h - records that were found together, and their values read ahead.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "cor/Counted.h"
#include "core/objects/RecordRuns.h"
#include "core/objects/StoreObject.h"

namespace hv::vex::engine {

/// The records of a list. Instances that came out of it know their place in it, so that whoever
/// walks along and reads the same attributes of one after the other has the store asked once for
/// many: the second neighbour in a row makes the values of those to come be read with it, more of
/// them each time.
///
/// What was read ahead serves until anything is changed by this process or the store is looked at
/// anew, and for `kLongestMilliseconds` at most: changes of other processes show after that.
class RecordBatch final : public cor::Counted<IUnknown> {
 public:
  static constexpr std::int64_t kLongestMilliseconds = 20;

  /// The value of one record; `block` is null if it is to be read by itself.
  struct Cell {
    const ColumnBlock* block = nullptr;
    std::size_t row = 0;
    explicit operator bool() const { return block != nullptr; }
    [[nodiscard]] bool IsNull() const { return block->isNull[row] != 0; }
  };

  explicit RecordBatch(RecordRuns records) : m_records(std::move(records)) {}

  [[nodiscard]] const RecordRuns& Records() const { return m_records; }
  /// For changes of the list. Places of records that stay must stay the same.
  [[nodiscard]] RecordRuns& Records() { return m_records; }

  /// The value of a scalar attribute, which must not be one of bytes. Good until the next call. A
  /// record that was found to be gone gives nothing, but for its id, which is null then.
  /// \param position  where the record was in the list; a batch that changed since gives nothing
  Cell Find(const StoreObject& store, std::uint64_t position, RecordRef record,
            std::int32_t attribute);

 private:
  static constexpr std::size_t kFewest = 8;
  static constexpr std::size_t kMost = 256;
  static constexpr std::uint64_t kNowhere = ~std::uint64_t{0} - 1;
  static constexpr std::size_t kNoColumn = ~std::size_t{0};

  /// An attribute that was asked for.
  struct Asked {
    EntityId entity;
    std::int32_t attribute;
    std::uint64_t position;          ///< of the record last asked
    std::size_t column = kNoColumn;  ///< of the window
  };

  ~RecordBatch() override = default;
  Asked& NoteOf(EntityId entity, std::int32_t attribute);
  [[nodiscard]] bool IsFresh(const StoreObject& store) const;
  void ReadWindow(const StoreObject& store, std::uint64_t position, RecordRef record);

  RecordRuns m_records;
  std::vector<Asked> m_asked;
  // The window: records from `m_first` on, one block for each attribute in turn, that of the ids
  // first.
  std::vector<ColumnBlock> m_blocks;
  std::uint64_t m_first = 0;
  std::uint64_t m_count = 0;
  RecordKnowledge m_readAt;
  std::uint64_t m_stamp = 0;
  std::int64_t m_readTime = 0;
};

}  // namespace hv::vex::engine
