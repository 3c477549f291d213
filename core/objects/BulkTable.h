// core/objects/BulkTable.h - the answer of a bulk read.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cor/Counted.h"
#include "core/model/Value.h"
#include "core/objects/RecordBatch.h"
#include "core/objects/StoreObject.h"
#include "core/objects/ValueText.h"
#include "store/core/IBulkReader.h"

namespace hv::vex::engine {

/// Columns as the record store gave them, one block for each run of records of one entity.
class BulkTable final : public cor::Counted<IValueTable> {
 public:
  /// Reads the attributes, each a name or a path along references to one; with a path along
  /// references to many the first related record counts. An unknown name throws kUnknownName,
  /// unless another entity among the records has it.
  BulkTable(Ref<StoreObject> store, RecordRuns rows, const std::vector<std::u16string>& attributes);
  /// The same for records that were selected with their own attributes: `blocksOf` gives those of
  /// an entity, as `OwnAttributes` tells them.
  using Blocks = std::vector<ColumnBlock>;
  BulkTable(Ref<StoreObject> store, RecordRuns rows, const std::vector<std::u16string>& attributes,
            const std::function<Blocks(EntityId)>& blocksOf);
  /// Those of the attributes that are the entity's own, in their order.
  static std::vector<std::int32_t> OwnAttributes(const Model& model, EntityId entity,
                                                 const std::vector<std::u16string>& attributes);

  std::uint64_t GetRowCount() override { return Rows().Size(); }
  std::uint64_t GetColumnCount() override { return m_columns.size(); }
  std::int32_t GetColumnType(std::uint64_t column) override;
  IInstance* GetInstance(std::uint64_t row) override;
  IInstList* GetInstances() override;
  void GetKey(std::uint64_t row, WString& key) override;
  std::int32_t IsNull(std::uint64_t row, std::uint64_t column) override;
  std::u16string_view GetText(std::uint64_t row, std::uint64_t column) override;
  std::int64_t GetInteger(std::uint64_t row, std::uint64_t column) override;
  double GetReal(std::uint64_t row, std::uint64_t column) override;
  void ReadScalar(std::uint64_t row, std::uint64_t column, ScalarValue* value) override;

 private:
  ~BulkTable() override = default;
  static constexpr std::uint32_t kNoRow = 0xFFFFFFFFu;
  /// The values of one attribute for one run.
  struct Piece {
    ColumnBlock block;                 ///< no rows: the entity has no such attribute
    std::vector<std::uint32_t> rowOf;  ///< row of the block by row of the run; empty: the same
    EnumPtr enumeration = nullptr;
  };
  struct Column {
    OdsType type = OdsType::Unknown;
    std::vector<Piece> pieces;  ///< one per run
  };
  struct Cell {
    const Piece* piece;
    std::size_t row;
  };
  [[nodiscard]] const RecordRuns& Rows() const { return m_batch->Records(); }
  Piece ReadPiece(const RecordRuns::Run& run, const ResolvedPath& path);
  void TakeOwnColumns(const RecordRuns::Run& run, const std::vector<std::int32_t>& attributes,
                      const std::vector<std::size_t>& columns, Blocks blocks);
  /// The cell, or nothing if it is unset.
  [[nodiscard]] bool Find(std::uint64_t row, std::uint64_t column, Cell& cell) const;

  Ref<StoreObject> m_store;
  RecordKnowledge m_readAt;
  Ref<RecordBatch> m_batch;
  std::vector<Column> m_columns;
  std::u16string m_text;
};

}  // namespace hv::vex::engine
