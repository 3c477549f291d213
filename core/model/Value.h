// core/model/Value.h - the value of one attribute of one record, and columns of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/model/OdsType.h"

namespace hv::vex::engine {

using Bytes = std::vector<std::byte>;

/// The value of one attribute: unset, one value, or the values of a sequence. Integers, reals and
/// texts as `StorageKindOf` tells; complex numbers are pairs of reals, one after the other. An
/// external reference is one text: description, mime type and location joined by U+001F. A blob is
/// its header text in UTF-8, a zero byte, and its contents.
struct Value {
  using Integers = std::vector<std::int64_t>;
  using Reals = std::vector<double>;
  using Texts = std::vector<std::u16string>;
  using ByteStrings = std::vector<Bytes>;

  OdsType type = OdsType::Unknown;
  bool sequence = false;
  std::variant<std::monostate, Integers, Reals, Texts, ByteStrings> data;

  [[nodiscard]] bool IsSet() const { return data.index() != 0; }
  /// Number of elements (a complex pair is one element); 0 if unset.
  [[nodiscard]] std::size_t Count() const;

  static Value Unset(OdsType type, bool sequence = false) { return {type, sequence, {}}; }
  static Value Integer(OdsType type, std::int64_t value) { return {type, false, Integers{value}}; }
  static Value Real(OdsType type, double value) { return {type, false, Reals{value}}; }
  static Value Text(OdsType type, std::u16string value) {
    return {type, false, Texts{std::move(value)}};
  }
  friend bool operator==(const Value&, const Value&) = default;
};

/// Separates the three texts of an external reference.
inline constexpr char16_t kReferenceSeparator = u'\x1f';

/// The values of one scalar attribute for many records, row by row: the form in which values leave
/// a record store in batches. Only the vector of the attribute's storage kind is used.
struct ColumnBlock {
  OdsType type = OdsType::Unknown;
  std::vector<std::uint8_t> isNull;    ///< one per row
  std::vector<std::int64_t> integers;  ///< Integer: one per row
  std::vector<double> reals;           ///< Real: one per row (two for complex)
  std::u16string textArena;            ///< Text: all texts in a row, one after the other
  std::vector<std::size_t> textEnds;   ///< Text: end of row i's text in the arena
  std::vector<Value> others;           ///< sequences and bytes: one per row

  [[nodiscard]] std::size_t Rows() const { return isNull.size(); }
  [[nodiscard]] std::u16string_view TextAt(std::size_t row) const {
    const std::size_t begin = row == 0 ? 0 : textEnds[row - 1];
    return std::u16string_view(textArena).substr(begin, textEnds[row] - begin);
  }
};

/// Row of a block as a value.
Value ValueAt(const ColumnBlock& block, std::size_t row);

}  // namespace hv::vex::engine
