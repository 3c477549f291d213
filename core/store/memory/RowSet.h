// core/store/memory/RowSet.h - a set of table rows as a bitmap.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace hv::vex::engine {

/// Row of a record in the table of its entity. Rows stay what they are: a deleted record leaves a
/// gap.
using Row = std::uint32_t;
inline constexpr Row kNoRow = 0xFFFFFFFFu;

/// Words `begin` up to, not including, `end` of a RowSet: 64 rows each.
struct WordRange {
  std::size_t begin;
  std::size_t end;
};

/// Rows beyond the size count as not in the set.
class RowSet final {
 public:
  static constexpr std::size_t kBits = 64;

  RowSet() = default;
  explicit RowSet(std::size_t rows) : m_words((rows + kBits - 1) / kBits), m_rows(rows) {}

  [[nodiscard]] std::size_t Size() const { return m_rows; }
  [[nodiscard]] std::size_t WordCount() const { return m_words.size(); }
  [[nodiscard]] WordRange All() const { return {0, m_words.size()}; }
  [[nodiscard]] std::uint64_t Word(std::size_t index) const {
    return index < m_words.size() ? m_words[index] : 0;
  }
  std::uint64_t& WordAt(std::size_t index) { return m_words[index]; }

  [[nodiscard]] bool Has(Row row) const { return (Word(row / kBits) >> (row % kBits) & 1) != 0; }
  /// Makes room as needed.
  void Add(Row row) {
    if (row >= m_rows) Resize(std::size_t{row} + 1);
    m_words[row / kBits] |= std::uint64_t{1} << (row % kBits);
  }
  void Remove(Row row) {
    if (row < m_rows) m_words[row / kBits] &= ~(std::uint64_t{1} << (row % kBits));
  }
  void Resize(std::size_t rows) {
    m_words.resize((rows + kBits - 1) / kBits);
    m_rows = rows;
  }
  void Reserve(std::size_t rows) { m_words.reserve((rows + kBits - 1) / kBits); }

  [[nodiscard]] std::size_t Count(WordRange range) const {
    std::size_t count = 0;
    for (std::size_t i = range.begin; i < range.end; ++i) {
      count += static_cast<std::size_t>(std::popcount(m_words[i]));
    }
    return count;
  }
  [[nodiscard]] std::size_t Count() const { return Count(All()); }
  [[nodiscard]] bool IsEmpty(WordRange range) const {
    return std::all_of(m_words.begin() + static_cast<std::ptrdiff_t>(range.begin),
                       m_words.begin() + static_cast<std::ptrdiff_t>(range.end),
                       [](std::uint64_t word) { return word == 0; });
  }

  void Clear(WordRange range) {
    std::fill(m_words.begin() + static_cast<std::ptrdiff_t>(range.begin),
              m_words.begin() + static_cast<std::ptrdiff_t>(range.end), 0);
  }
  void Intersect(const RowSet& other, WordRange range) {
    for (std::size_t i = range.begin; i < range.end; ++i) m_words[i] &= other.Word(i);
  }
  void Unite(const RowSet& other, WordRange range) {
    for (std::size_t i = range.begin; i < range.end; ++i) m_words[i] |= other.Word(i);
  }
  void Subtract(const RowSet& other, WordRange range) {
    for (std::size_t i = range.begin; i < range.end; ++i) m_words[i] &= ~other.Word(i);
  }

  /// Calls `visit(row)` for each row of the range, ascending.
  template <class Visit>
  void ForEach(WordRange range, Visit&& visit) const {
    for (std::size_t i = range.begin; i < range.end; ++i) {
      for (std::uint64_t word = m_words[i]; word != 0; word &= word - 1) {
        visit(static_cast<Row>(i * kBits + static_cast<std::size_t>(std::countr_zero(word))));
      }
    }
  }
  template <class Visit>
  void ForEach(Visit&& visit) const {
    ForEach(All(), visit);
  }
  /// Keeps the rows of the range for which `test(row)` is true.
  template <class Test>
  void Keep(WordRange range, Test&& test) {
    for (std::size_t i = range.begin; i < range.end; ++i) {
      std::uint64_t kept = 0;
      for (std::uint64_t word = m_words[i]; word != 0; word &= word - 1) {
        const auto bit = static_cast<std::size_t>(std::countr_zero(word));
        if (test(static_cast<Row>(i * kBits + bit))) kept |= std::uint64_t{1} << bit;
      }
      m_words[i] = kept;
    }
  }

 private:
  std::vector<std::uint64_t> m_words;
  std::size_t m_rows = 0;
};

}  // namespace hv::vex::engine
