// core/store/memory/ColumnMatcher.cpp - typed scans over columns, 64 rows at a time.
#include "core/store/memory/ColumnMatcher.h"

#include <bit>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include "core/query/TextMatch.h"
#include "core/store/memory/ValueTest.h"

namespace hv::vex::engine {
namespace {

constexpr int kNumberCost = 10;

/// Keeps rows whose number passes. `isSet` may be null: all rows of `rows` have one.
template <class Number, class Test>
void KeepNumbers(const std::vector<Number>& numbers, const RowSet* isSet, WordRange range,
                 RowSet& rows, const Test& test) {
  constexpr std::size_t kBits = RowSet::kBits;
  constexpr int kDense = 12;  // from here on testing all 64 is faster than finding the single bits
  for (std::size_t i = range.begin; i < range.end; ++i) {
    std::uint64_t asked = rows.Word(i);
    if (isSet != nullptr) asked &= isSet->Word(i);
    std::uint64_t kept = 0;
    if (std::popcount(asked) >= kDense && (i + 1) * kBits <= numbers.size()) {
      const Number* const word = numbers.data() + i * kBits;
      for (std::size_t bit = 0; bit < kBits; ++bit) {
        kept |= static_cast<std::uint64_t>(test(word[bit]) ? 1 : 0) << bit;
      }
      kept &= asked;
    } else {
      for (; asked != 0; asked &= asked - 1) {
        const auto bit = static_cast<std::size_t>(std::countr_zero(asked));
        if (test(numbers[i * kBits + bit])) kept |= std::uint64_t{1} << bit;
      }
    }
    rows.WordAt(i) = kept;
  }
}

class NothingMatcher final : public ColumnMatcher {
 public:
  void Keep(WordRange range, RowSet& rows) const override { rows.Clear(range); }
  bool Matches(Row) const override { return false; }
  int Cost() const override { return 0; }
};

class IdMatcher final : public ColumnMatcher {
 public:
  IdMatcher(const IdIndex& ids, const IntegerTest& test)
      : m_ids(ids),
        m_test(test),
        m_isSingle(!test.isOutside && test.lowest == test.highest),
        m_single(m_isSingle ? ids.Find(test.lowest) : kNoRow) {}

  void Keep(WordRange range, RowSet& rows) const override {
    if (!m_isSingle) {
      KeepNumbers(m_ids.Ids(), nullptr, range, rows, m_test);
      return;
    }
    const std::size_t word = m_single / RowSet::kBits;
    const bool keep = word >= range.begin && word < range.end && rows.Has(m_single);
    rows.Clear(range);
    if (keep) rows.Add(m_single);
  }
  bool Matches(Row row) const override {
    return m_isSingle ? row == m_single : m_test(m_ids.At(row));
  }
  int Cost() const override { return m_isSingle ? 1 : kNumberCost; }

 private:
  const IdIndex& m_ids;
  IntegerTest m_test;
  bool m_isSingle;
  Row m_single;
};

template <class Test>
class NumberMatcher final : public ColumnMatcher {
 public:
  NumberMatcher(const NumberCells& cells, Test test) : m_cells(cells), m_test(std::move(test)) {}

  void Keep(WordRange range, RowSet& rows) const override {
    std::visit(
        [&](const auto& numbers) {
          KeepNumbers(numbers, &m_cells.isSet, range, rows,
                      [this](auto number) { return m_test(static_cast<Wide>(number)); });
        },
        m_cells.numbers);
  }
  bool Matches(Row row) const override {
    if (!m_cells.isSet.Has(row)) return false;
    return std::visit([&](const auto& numbers) { return m_test(static_cast<Wide>(numbers[row])); },
                      m_cells.numbers);
  }
  int Cost() const override { return kNumberCost; }

 private:
  using Wide = std::conditional_t<std::is_same_v<Test, IntegerTest>, std::int64_t, double>;
  const NumberCells& m_cells;
  Test m_test;
};

class TextMatcher final : public ColumnMatcher {
 public:
  TextMatcher(const TextCells& cells, TextTest test) : m_cells(cells), m_test(std::move(test)) {}

  void Keep(WordRange range, RowSet& rows) const override {
    std::uint64_t last = TextArena::kNone;  // rows one after the other often share their text
    bool lastPassed = false;
    rows.Keep(range, [&](Row row) {
      if (row >= m_cells.handles.size()) return false;
      const std::uint64_t handle = m_cells.handles[row];
      if (handle == last) return lastPassed;
      last = handle;
      return lastPassed = handle != TextArena::kNone && m_test(m_cells.arena.At(handle));
    });
  }
  bool Matches(Row row) const override {
    return row < m_cells.handles.size() && m_cells.handles[row] != TextArena::kNone &&
           m_test(m_cells.arena.At(m_cells.handles[row]));
  }
  int Cost() const override { return m_test.Cost(); }

 private:
  const TextCells& m_cells;
  TextTest m_test;
};

class InstanceAttributeMatcher final : public ColumnMatcher {
 public:
  InstanceAttributeMatcher(const MemoryTable& table, const BoundNode& node)
      : m_table(table), m_node(node) {}

  void Keep(WordRange range, RowSet& rows) const override { rows.Intersect(Found(), range); }
  bool Matches(Row row) const override { return Found().Has(row); }
  int Cost() const override { return 15; }

 private:
  // All items are looked at once, whatever rows are asked for, since they are few as a rule.
  const RowSet& Found() const {
    if (!m_found) m_found = Search();
    return *m_found;
  }

  RowSet Search() const {
    const InstanceAttributes& attributes = m_table.InstanceValues();
    std::vector<bool> isNamed;
    std::u16string buffer;
    for (const std::u16string& name : attributes.Names()) {
      isNamed.push_back(m_node.attributeName.empty() ||
                        FoldCase(name, buffer) == m_node.attributeName);
    }
    const BoundConstant& constant = m_node.constant;
    const BoundConstant number = constant.ForNumbers();
    const IntegerTest integerTest = IntegerTest::Make(m_node.op, number);
    const RealTest floatTest = RealTest::Make(m_node.op, number, true);
    const RealTest doubleTest = RealTest::Make(m_node.op, number, false);
    const TextTest textTest(m_node.op, constant, false);
    const TextTest dateTest(m_node.op, constant.ForDates(), true);

    const auto passes = [&](const InstanceAttributes::Item& item) {
      if (!item.isSet || !isNamed[item.name]) return false;
      if (m_node.anyValue) return true;
      switch (item.type) {
        case OdsType::Float:
          return floatTest(std::bit_cast<double>(item.payload));
        case OdsType::Double:
          return doubleTest(std::bit_cast<double>(item.payload));
        case OdsType::Date:
          return dateTest(attributes.TextOf(item));
        case OdsType::String:
          return textTest(attributes.TextOf(item));
        default:
          return !integerTest.IsNever() && integerTest(item.payload);
      }
    };
    RowSet found(m_table.Rows());
    for (const InstanceAttributes::Item& item : attributes.Items()) {
      if (item.row != kNoRow && !found.Has(item.row) && passes(item)) found.Add(item.row);
    }
    return found;
  }

  const MemoryTable& m_table;
  const BoundNode& m_node;
  mutable std::optional<RowSet> m_found;
};

class TextSearchMatcher final : public ColumnMatcher {
 public:
  TextSearchMatcher(std::vector<const TextCells*> columns, std::u16string_view word)
      : m_columns(std::move(columns)), m_word(word) {}

  void Keep(WordRange range, RowSet& rows) const override {
    rows.Keep(range, [this](Row row) { return Matches(row); });
  }
  bool Matches(Row row) const override {
    for (const TextCells* cells : m_columns) {
      if (row >= cells->handles.size() || cells->handles[row] == TextArena::kNone) continue;
      const StoredText text = cells->arena.At(cells->handles[row]);
      if (text.Fold(m_buffer).find(m_word) != std::u16string_view::npos) return true;
    }
    return false;
  }
  int Cost() const override { return static_cast<int>(60 * m_columns.size()); }

 private:
  std::vector<const TextCells*> m_columns;
  std::u16string m_word;
  mutable std::u16string m_buffer;
};

}  // namespace

std::unique_ptr<ColumnMatcher> MakeCompareMatcher(const MemoryTable& table, std::int32_t attribute,
                                                  QueryOp op, const BoundConstant& constant) {
  // A query that misses an attribute is bound to a constant that nothing equals.
  if (attribute == kNone) return std::make_unique<NothingMatcher>();
  if (attribute == table.IdAttribute()) {
    const IntegerTest test = IntegerTest::Make(op, constant);
    if (test.IsNever()) return std::make_unique<NothingMatcher>();
    return std::make_unique<IdMatcher>(table.Ids(), test);
  }
  const Column& column = table.At(attribute);
  if (const TextCells* texts = column.Texts()) {
    return std::make_unique<TextMatcher>(*texts,
                                         TextTest(op, constant, column.Type() == OdsType::Date));
  }
  const NumberCells* numbers = column.Numbers();
  if (numbers == nullptr) return std::make_unique<NothingMatcher>();
  if (StorageKindOf(column.Type()) == StorageKind::Real) {
    return std::make_unique<NumberMatcher<RealTest>>(
        *numbers, RealTest::Make(op, constant, column.Type() == OdsType::Float));
  }
  const IntegerTest test = IntegerTest::Make(op, constant);
  if (test.IsNever()) return std::make_unique<NothingMatcher>();
  return std::make_unique<NumberMatcher<IntegerTest>>(*numbers, test);
}

std::unique_ptr<ColumnMatcher> MakeInstanceAttributeMatcher(const MemoryTable& table,
                                                            const BoundNode& node) {
  return std::make_unique<InstanceAttributeMatcher>(table, node);
}

std::unique_ptr<ColumnMatcher> MakeTextSearchMatcher(const MemoryTable& table,
                                                     std::u16string_view word) {
  std::vector<const TextCells*> columns;
  for (std::int32_t i = 0; i < table.AttributeCount(); ++i) {
    const Column& column = table.At(i);
    if (column.Type() == OdsType::String && column.Texts() != nullptr) {
      columns.push_back(column.Texts());
    }
  }
  return std::make_unique<TextSearchMatcher>(std::move(columns), word);
}

}  // namespace hv::vex::engine
