// core/store/memory/Column.h - the values of one attribute for all rows of a table.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <variant>
#include <vector>

#include "core/model/Value.h"
#include "core/store/memory/RowSet.h"
#include "core/store/memory/TextArena.h"

namespace hv::vex::engine {

/// Numbers at their type's own width and a bit that tells whether a row has one. Rows beyond the
/// vector's end have none, so a column that is never filled costs nothing.
struct NumberCells {
  std::variant<std::vector<std::uint8_t>,  // Boolean, Byte
               std::vector<std::int16_t>,  // Short
               std::vector<std::int32_t>,  // Long, Enum
               std::vector<std::int64_t>,  // LongLong, Id
               std::vector<float>,         // Float
               std::vector<double>>        // Double
      numbers;
  RowSet isSet;
};

/// Texts: a handle into the arena per row.
struct TextCells {
  std::vector<std::uint64_t> handles;
  TextArena arena;
  std::size_t unused = 0;  // units of texts that no row has any more, at most
};

/// Sequences, byte strings and complex numbers, which are rare: position plus 1 in a pool per row.
struct ValueCells {
  std::vector<std::uint32_t> slots;
  std::vector<Value> pool;
  std::vector<std::uint32_t> freeSlots;
};

class Column final {
 public:
  Column(OdsType type, bool sequence);

  [[nodiscard]] OdsType Type() const { return m_type; }
  [[nodiscard]] bool IsSequence() const { return m_isSequence; }
  [[nodiscard]] const NumberCells* Numbers() const { return std::get_if<NumberCells>(&m_cells); }
  [[nodiscard]] const TextCells* Texts() const { return std::get_if<TextCells>(&m_cells); }
  [[nodiscard]] const ValueCells* Values() const { return std::get_if<ValueCells>(&m_cells); }

  [[nodiscard]] bool IsSet(Row row) const;
  /// These give false, and change nothing, if the column is of another kind or the value doesn't
  /// fit its type (numbers beyond the range, dates that aren't 4 to 23 digits).
  bool SetInteger(Row row, std::int64_t value);
  bool SetReal(Row row, double value);
  bool SetText(Row row, std::u16string_view text);
  bool SetValue(Row row, const Value& value);
  void Clear(Row row);

  [[nodiscard]] Value Read(Row row) const;
  /// Appends one row to the block for each of `rows`; kNoRow gives a null.
  void Read(std::span<const Row> rows, ColumnBlock& block) const;
  /// The value of a ValueCells row, or null.
  [[nodiscard]] const Value* ValueAt(Row row) const;

  void Reserve(std::size_t rows);
  /// Gives back memory that was set aside for growth.
  void ShrinkToFit();

 private:
  [[nodiscard]] bool Fits(const Value& value) const;
  void ReadNumbers(const NumberCells& cells, std::span<const Row> rows, ColumnBlock& block) const;
  void StoreValue(ValueCells& cells, Row row, const Value& value);
  void CompactTexts(TextCells& cells);

  OdsType m_type;
  bool m_isSequence;
  std::variant<NumberCells, TextCells, ValueCells> m_cells;
};

/// True if the number is one that the type can hold (Boolean: 0 and 1).
bool IntegerFits(OdsType type, std::int64_t value);
bool RealFits(OdsType type, double value);

}  // namespace hv::vex::engine
