// core/store/memory/ColumnOrder.cpp - sorts by keys made once per row, never by reading in a
// compare.
#include "core/store/memory/ColumnOrder.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_set>
#include <utility>

#include "core/query/TextMatch.h"
#include "core/store/memory/Failure.h"
#include "store/core/Exception.h"

namespace hv::vex::engine {
namespace {

/// Calls `visit(row, number)` for the rows that have one: integers as int64, reals as double.
template <class Visit>
void ForEachNumber(const MemoryTable& table, std::int32_t attribute, const RowSet& rows,
                   Visit&& visit) {
  if (attribute == table.IdAttribute()) {
    rows.ForEach([&](Row row) { visit(row, table.IdAt(row)); });
    return;
  }
  const NumberCells& cells = *table.At(attribute).Numbers();
  std::visit(
      [&](const auto& numbers) {
        using Number = std::decay_t<decltype(numbers[0])>;
        rows.ForEach([&](Row row) {
          if (!cells.isSet.Has(row)) return;
          if constexpr (std::is_floating_point_v<Number>) {
            const auto real = static_cast<double>(numbers[row]);
            if (!std::isnan(real)) visit(row, real);
          } else {
            visit(row, static_cast<std::int64_t>(numbers[row]));
          }
        });
      },
      cells.numbers);
}

/// A text among others to be put in order.
struct OrderedText {
  std::u16string folded;
  std::uint64_t handle;
};

/// Folded forms first; the texts themselves decide between equals.
bool IsBefore(const TextArena& arena, std::u16string_view foldedA, std::uint64_t a,
              std::u16string_view foldedB, std::uint64_t b) {
  const int order = foldedA.compare(foldedB);
  if (order != 0) return order < 0;
  std::u16string bufferA;
  std::u16string bufferB;
  return arena.At(a).Widen(bufferA) < arena.At(b).Widen(bufferB);
}

/// Calls `visit(handle)` for the rows that have a text; not twice for the same handle in a row.
template <class Visit>
void ForEachText(const TextCells& cells, const RowSet& rows, Visit&& visit) {
  std::uint64_t last = TextArena::kNone;
  rows.ForEach([&](Row row) {
    if (row >= cells.handles.size()) return;
    const std::uint64_t handle = cells.handles[row];
    if (handle == TextArena::kNone || handle == last) return;
    last = handle;
    visit(handle);
  });
}

/// The different texts of a column among `rows`, in no order.
std::vector<OrderedText> DifferentTexts(const TextCells& cells, const RowSet& rows) {
  std::unordered_set<std::string_view> seen;
  std::unordered_set<std::u16string_view> seenWide;
  std::vector<OrderedText> texts;
  std::u16string buffer;
  ForEachText(cells, rows, [&](std::uint64_t handle) {
    const StoredText text = cells.arena.At(handle);
    const bool isNew =
        text.isAscii ? seen.insert(text.ascii).second : seenWide.insert(text.wide).second;
    if (isNew) texts.push_back({std::u16string(text.Fold(buffer)), handle});
  });
  return texts;
}

[[noreturn]] void FailNoOrder(OdsType type, bool isSequence) {
  Fail(errc::kNotSupported,
       {u"values of type ", NameOfType(type, isSequence), u" can't be put in order"});
}

/// How many of the sorted values are wanted.
std::size_t Wanted(std::size_t count, std::size_t limit) {
  return limit == 0 ? count : std::min(count, limit);
}

template <class Number>
std::vector<Number> DifferentNumbers(const MemoryTable& table, std::int32_t attribute,
                                     const RowSet& rows) {
  std::vector<Number> numbers;
  ForEachNumber(table, attribute, rows, [&](Row, auto number) {
    if (numbers.empty() || static_cast<Number>(number) != numbers.back()) {
      numbers.push_back(static_cast<Number>(number));
    }
  });
  std::sort(numbers.begin(), numbers.end());
  numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
  return numbers;
}

bool IsReal(const Column& column) { return StorageKindOf(column.Type()) == StorageKind::Real; }

}  // namespace

ColumnBlock DistinctValues(const MemoryTable& table, std::int32_t attribute, const RowSet& rows,
                           std::size_t limit) {
  const Column& column = table.At(attribute);
  ColumnBlock block;
  block.type = column.Type();
  if (const TextCells* cells = column.Texts()) {
    std::vector<OrderedText> texts = DifferentTexts(*cells, rows);
    const std::size_t wanted = Wanted(texts.size(), limit);
    std::partial_sort(texts.begin(), texts.begin() + static_cast<std::ptrdiff_t>(wanted),
                      texts.end(), [&](const OrderedText& a, const OrderedText& b) {
                        return IsBefore(cells->arena, a.folded, a.handle, b.folded, b.handle);
                      });
    std::u16string buffer;
    for (std::size_t i = 0; i < wanted; ++i) {
      block.textArena += cells->arena.At(texts[i].handle).Widen(buffer);
      block.textEnds.push_back(block.textArena.size());
    }
    block.isNull.resize(wanted);
  } else if (column.Numbers() == nullptr) {
    FailNoOrder(column.Type(), column.IsSequence());
  } else if (IsReal(column)) {
    block.reals = DifferentNumbers<double>(table, attribute, rows);
    block.reals.resize(Wanted(block.reals.size(), limit));
    block.isNull.resize(block.reals.size());
  } else {
    block.integers = DifferentNumbers<std::int64_t>(table, attribute, rows);
    block.integers.resize(Wanted(block.integers.size(), limit));
    block.isNull.resize(block.integers.size());
  }
  return block;
}

namespace {

template <class Number>
void NumberBounds(const MemoryTable& table, std::int32_t attribute, const RowSet& rows,
                  Bounds& bounds) {
  std::optional<std::pair<Number, Number>> ends;
  ForEachNumber(table, attribute, rows, [&](Row, auto value) {
    const auto number = static_cast<Number>(value);
    ++bounds.count;
    if (!ends) {
      ends.emplace(number, number);
    } else {
      ends->first = std::min(ends->first, number);
      ends->second = std::max(ends->second, number);
    }
  });
  if (!ends) return;
  bounds.lowest.data = std::vector<Number>{ends->first};
  bounds.highest.data = std::vector<Number>{ends->second};
}

void TextBounds(const TextCells& cells, const RowSet& rows, Bounds& bounds) {
  rows.ForEach([&](Row row) {
    if (row < cells.handles.size() && cells.handles[row] != TextArena::kNone) ++bounds.count;
  });
  if (bounds.count == 0) return;
  OrderedText lowest{{}, TextArena::kNone};
  OrderedText highest{{}, TextArena::kNone};
  std::u16string buffer;
  ForEachText(cells, rows, [&](std::uint64_t handle) {
    const std::u16string_view folded = cells.arena.At(handle).Fold(buffer);
    if (lowest.handle == TextArena::kNone ||
        IsBefore(cells.arena, folded, handle, lowest.folded, lowest.handle)) {
      lowest = {std::u16string(folded), handle};
    }
    if (highest.handle == TextArena::kNone ||
        IsBefore(cells.arena, highest.folded, highest.handle, folded, handle)) {
      highest = {std::u16string(folded), handle};
    }
  });
  const auto textOf = [&](std::uint64_t handle) {
    return Value::Texts{std::u16string(cells.arena.At(handle).Widen(buffer))};
  };
  bounds.lowest.data = textOf(lowest.handle);
  bounds.highest.data = textOf(highest.handle);
}

}  // namespace

Bounds ColumnBounds(const MemoryTable& table, std::int32_t attribute, const RowSet& rows) {
  const Column& column = table.At(attribute);
  Bounds bounds{Value::Unset(column.Type()), Value::Unset(column.Type()), 0};
  if (const TextCells* cells = column.Texts()) {
    TextBounds(*cells, rows, bounds);
  } else if (column.Numbers() == nullptr) {
    FailNoOrder(column.Type(), column.IsSequence());
  } else if (IsReal(column)) {
    NumberBounds<double>(table, attribute, rows, bounds);
  } else {
    NumberBounds<std::int64_t>(table, attribute, rows, bounds);
  }
  return bounds;
}

namespace {

/// Sort keys of one order clause, one per row to be sorted.
class SortKeys final {
 public:
  SortKeys(const MemoryStore& store, EntityId entity, const BoundOrder& order,
           const std::vector<Row>& rows);
  /// Below 0: `a` comes first.
  [[nodiscard]] int Compare(std::size_t a, std::size_t b) const;

 private:
  void AddNumber(const Column* column, const MemoryTable& table, std::span<const Row> rows);
  void AddText(const TextCells& cells, std::span<const Row> rows);
  [[nodiscard]] std::u16string_view TextAt(std::size_t i) const {
    return std::u16string_view(m_texts).substr(m_ends[i], m_ends[i + 1] - m_ends[i]);
  }

  bool m_isDescending;
  std::vector<std::uint8_t> m_isSet;
  std::vector<std::int64_t> m_integers;
  std::vector<double> m_reals;
  std::u16string m_texts;
  std::vector<std::size_t> m_ends;
};

/// The rows that a path leads to from one row, each once.
void Walk(const MemoryStore& store, const ResolvedPath& path, Row start, std::vector<Row>& found,
          std::vector<Row>& buffer) {
  found.assign(1, start);
  for (const PathStep& step : path.steps) {
    buffer.clear();
    for (const Row row : found) {
      const std::span<const Row> targets = store.Table(step.source).Links(step.relation).Of(row);
      buffer.insert(buffer.end(), targets.begin(), targets.end());
    }
    if (buffer.size() > 1) {
      std::sort(buffer.begin(), buffer.end());
      buffer.erase(std::unique(buffer.begin(), buffer.end()), buffer.end());
    }
    found.swap(buffer);
  }
}

SortKeys::SortKeys(const MemoryStore& store, EntityId entity, const BoundOrder& order,
                   const std::vector<Row>& rows)
    : m_isDescending(order.descending), m_ends(1, 0) {
  const EntityId target = order.path.steps.empty() ? entity : order.path.target;
  const MemoryTable& table = store.Table(target);
  const bool isId = order.path.attribute == table.IdAttribute();
  const Column* const column =
      order.path.attribute == kNone || isId ? nullptr : &table.At(order.path.attribute);
  std::vector<Row> found;
  std::vector<Row> buffer;
  for (const Row row : rows) {
    Walk(store, order.path, row, found, buffer);
    if (column != nullptr && column->Texts() != nullptr) {
      AddText(*column->Texts(), found);
    } else if (isId || (column != nullptr && column->Numbers() != nullptr)) {
      AddNumber(column, table, found);
    } else {
      m_isSet.push_back(0);
      m_integers.push_back(0);
    }
  }
}

void SortKeys::AddNumber(const Column* column, const MemoryTable& table,
                         std::span<const Row> rows) {
  const bool isReal = column != nullptr && IsReal(*column);
  bool isSet = false;
  std::int64_t bestInteger = 0;
  double bestReal = 0;
  const auto take = [&](auto value, auto& best) {
    if (!isSet || (m_isDescending ? value > best : value < best)) best = value;
    isSet = true;
  };
  for (const Row row : rows) {
    if (column == nullptr) {
      take(table.IdAt(row), bestInteger);
    } else if (column->IsSet(row)) {
      std::visit(
          [&](const auto& numbers) {
            using Number = std::decay_t<decltype(numbers[0])>;
            if constexpr (!std::is_floating_point_v<Number>) {
              take(static_cast<std::int64_t>(numbers[row]), bestInteger);
            } else if (!std::isnan(numbers[row])) {
              take(static_cast<double>(numbers[row]), bestReal);
            }
          },
          column->Numbers()->numbers);
    }
  }
  m_isSet.push_back(isSet ? 1 : 0);
  if (isReal) {
    m_reals.push_back(bestReal);
  } else {
    m_integers.push_back(bestInteger);
  }
}

void SortKeys::AddText(const TextCells& cells, std::span<const Row> rows) {
  std::u16string buffer;
  bool isSet = false;
  std::u16string best;
  for (const Row row : rows) {
    if (row >= cells.handles.size() || cells.handles[row] == TextArena::kNone) continue;
    const std::u16string_view text = cells.arena.At(cells.handles[row]).Fold(buffer);
    if (!isSet || (m_isDescending ? text > best : text < best)) best = text;
    isSet = true;
  }
  m_isSet.push_back(isSet ? 1 : 0);
  m_texts += best;
  m_ends.push_back(m_texts.size());
}

int SortKeys::Compare(std::size_t a, std::size_t b) const {
  if (m_isSet[a] != m_isSet[b]) return m_isSet[a] != 0 ? -1 : 1;
  if (m_isSet[a] == 0) return 0;
  int order = 0;
  if (m_ends.size() > 1) {
    order = TextAt(a).compare(TextAt(b));
  } else if (!m_reals.empty()) {
    order = m_reals[a] < m_reals[b] ? -1 : (m_reals[a] > m_reals[b] ? 1 : 0);
  } else {
    order = m_integers[a] < m_integers[b] ? -1 : (m_integers[a] > m_integers[b] ? 1 : 0);
  }
  if (order == 0) return 0;
  return (order < 0) != m_isDescending ? -1 : 1;
}

}  // namespace

std::vector<Row> SortedRows(const MemoryStore& store, EntityId entity,
                            std::span<const BoundOrder> order, const RowSet& rows,
                            std::size_t limit) {
  std::vector<Row> unsorted;
  unsorted.reserve(rows.Count());
  rows.ForEach([&](Row row) { unsorted.push_back(row); });
  std::vector<SortKeys> keys;
  keys.reserve(order.size());
  for (const BoundOrder& clause : order) keys.emplace_back(store, entity, clause, unsorted);

  const MemoryTable& table = store.Table(entity);
  std::vector<std::uint32_t> places(unsorted.size());
  std::iota(places.begin(), places.end(), 0u);
  const std::size_t wanted = Wanted(places.size(), limit);
  const auto isBefore = [&](std::uint32_t a, std::uint32_t b) {
    for (const SortKeys& key : keys) {
      const int result = key.Compare(a, b);
      if (result != 0) return result < 0;
    }
    return table.IdAt(unsorted[a]) < table.IdAt(unsorted[b]);
  };
  if (wanted == places.size()) {
    std::sort(places.begin(), places.end(), isBefore);
  } else {
    std::partial_sort(places.begin(), places.begin() + static_cast<std::ptrdiff_t>(wanted),
                      places.end(), isBefore);
  }
  std::vector<Row> sorted(wanted);
  for (std::size_t i = 0; i < wanted; ++i) sorted[i] = unsorted[places[i]];
  return sorted;
}

}  // namespace hv::vex::engine
