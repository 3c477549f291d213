// core/store/memory/Column.cpp - typed cells: setting, clearing and reading in batches.
#include "core/store/memory/Column.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

#include "core/query/TextMatch.h"

namespace hv::vex::engine {
namespace {

template <class Number>
bool InRange(std::int64_t value) {
  return value >= std::numeric_limits<Number>::min() && value <= std::numeric_limits<Number>::max();
}

std::variant<NumberCells, TextCells, ValueCells> CellsFor(OdsType type, bool sequence) {
  if (sequence) return ValueCells();
  switch (type) {
    case OdsType::Boolean:
    case OdsType::Byte:
      return NumberCells{std::vector<std::uint8_t>(), {}};
    case OdsType::Short:
      return NumberCells{std::vector<std::int16_t>(), {}};
    case OdsType::Long:
    case OdsType::Enum:
      return NumberCells{std::vector<std::int32_t>(), {}};
    case OdsType::LongLong:
    case OdsType::Id:
      return NumberCells{std::vector<std::int64_t>(), {}};
    case OdsType::Float:
      return NumberCells{std::vector<float>(), {}};
    case OdsType::Double:
      return NumberCells{std::vector<double>(), {}};
    case OdsType::String:
    case OdsType::Date:
    case OdsType::ExternalReference:
      return TextCells();
    default:
      return ValueCells();
  }
}

bool IsDate(std::u16string_view text) { return NormalizeDate14(text).has_value(); }

/// True if all elements of a value fit `type`.
bool ElementsFit(OdsType type, const Value& value) {
  if (const auto* integers = std::get_if<Value::Integers>(&value.data)) {
    return StorageKindOf(type) == StorageKind::Integer &&
           std::all_of(integers->begin(), integers->end(),
                       [type](std::int64_t v) { return IntegerFits(type, v); });
  }
  if (const auto* reals = std::get_if<Value::Reals>(&value.data)) {
    return StorageKindOf(type) == StorageKind::Real && reals->size() % PartsOf(type) == 0 &&
           std::all_of(reals->begin(), reals->end(),
                       [type](double v) { return RealFits(type, v); });
  }
  if (const auto* texts = std::get_if<Value::Texts>(&value.data)) {
    return StorageKindOf(type) == StorageKind::Text &&
           (type != OdsType::Date || std::all_of(texts->begin(), texts->end(), IsDate));
  }
  return StorageKindOf(type) == StorageKind::Bytes;
}

template <class Number>
void SetCell(NumberCells& cells, Row row, Number value) {
  std::visit(
      [row, value](auto& numbers) {
        if (row >= numbers.size()) numbers.resize(std::size_t{row} + 1);
        numbers[row] = static_cast<std::decay_t<decltype(numbers[row])>>(value);
      },
      cells.numbers);
  cells.isSet.Add(row);
}

}  // namespace

bool IntegerFits(OdsType type, std::int64_t value) {
  switch (type) {
    case OdsType::Boolean:
      return value == 0 || value == 1;
    case OdsType::Byte:
      return InRange<std::uint8_t>(value);
    case OdsType::Short:
      return InRange<std::int16_t>(value);
    case OdsType::Long:
    case OdsType::Enum:
      return InRange<std::int32_t>(value);
    default:
      return true;
  }
}

bool RealFits(OdsType type, double value) {
  const bool isNarrow = type == OdsType::Float || type == OdsType::Complex;
  return !isNarrow || !std::isfinite(value) ||
         std::abs(value) <= static_cast<double>(std::numeric_limits<float>::max());
}

Column::Column(OdsType type, bool sequence)
    : m_type(type), m_isSequence(sequence), m_cells(CellsFor(type, sequence)) {}

bool Column::IsSet(Row row) const {
  if (const NumberCells* numbers = Numbers()) return numbers->isSet.Has(row);
  if (const TextCells* texts = Texts()) {
    return row < texts->handles.size() && texts->handles[row] != TextArena::kNone;
  }
  return ValueAt(row) != nullptr;
}

bool Column::SetInteger(Row row, std::int64_t value) {
  auto* cells = std::get_if<NumberCells>(&m_cells);
  if (cells == nullptr || !IntegerFits(m_type, value)) return false;
  SetCell(*cells, row, value);
  return true;
}

bool Column::SetReal(Row row, double value) {
  auto* cells = std::get_if<NumberCells>(&m_cells);
  if (cells == nullptr || StorageKindOf(m_type) != StorageKind::Real || !RealFits(m_type, value)) {
    return false;
  }
  SetCell(*cells, row, value);
  return true;
}

bool Column::SetText(Row row, std::u16string_view text) {
  auto* cells = std::get_if<TextCells>(&m_cells);
  if (cells == nullptr || (m_type == OdsType::Date && !IsDate(text))) return false;
  Clear(row);
  if (row >= cells->handles.size()) cells->handles.resize(std::size_t{row} + 1);
  cells->handles[row] = cells->arena.Add(text);
  constexpr std::size_t kWorthwhile = 1 << 16;
  if (cells->unused > kWorthwhile && cells->unused > cells->arena.Size() / 2) CompactTexts(*cells);
  return true;
}

bool Column::Fits(const Value& value) const {
  if (m_type == OdsType::Unknown) return true;
  if (value.type != m_type || value.sequence != m_isSequence) return false;
  return ElementsFit(m_type, value) && (m_isSequence || value.Count() == 1);
}

bool Column::SetValue(Row row, const Value& value) {
  if (!value.IsSet()) {
    Clear(row);
    return true;
  }
  if (!Fits(value)) return false;
  if (auto* cells = std::get_if<ValueCells>(&m_cells)) {
    StoreValue(*cells, row, value);
    return true;
  }
  if (const auto* integers = std::get_if<Value::Integers>(&value.data)) {
    return SetInteger(row, integers->front());
  }
  if (const auto* reals = std::get_if<Value::Reals>(&value.data)) {
    return SetReal(row, reals->front());
  }
  return SetText(row, std::get<Value::Texts>(value.data).front());
}

void Column::StoreValue(ValueCells& cells, Row row, const Value& value) {
  if (row >= cells.slots.size()) cells.slots.resize(std::size_t{row} + 1);
  if (cells.slots[row] != 0) {
    cells.pool[cells.slots[row] - 1] = value;
  } else if (!cells.freeSlots.empty()) {
    cells.pool[cells.freeSlots.back() - 1] = value;
    cells.slots[row] = cells.freeSlots.back();
    cells.freeSlots.pop_back();
  } else {
    cells.pool.push_back(value);
    cells.slots[row] = static_cast<std::uint32_t>(cells.pool.size());
  }
}

void Column::Clear(Row row) {
  if (auto* numbers = std::get_if<NumberCells>(&m_cells)) {
    numbers->isSet.Remove(row);
  } else if (auto* texts = std::get_if<TextCells>(&m_cells)) {
    if (!IsSet(row)) return;
    texts->unused += texts->arena.At(texts->handles[row]).Size();
    texts->handles[row] = TextArena::kNone;
  } else if (auto* values = std::get_if<ValueCells>(&m_cells)) {
    if (ValueAt(row) == nullptr) return;
    values->pool[values->slots[row] - 1] = Value();
    values->freeSlots.push_back(values->slots[row]);
    values->slots[row] = 0;
  }
}

void Column::CompactTexts(TextCells& cells) {
  TextArena arena;
  for (std::uint64_t& handle : cells.handles) {
    if (handle != TextArena::kNone) handle = arena.AddFrom(cells.arena, handle);
  }
  cells.arena = std::move(arena);
  cells.unused = 0;
}

const Value* Column::ValueAt(Row row) const {
  const ValueCells* cells = Values();
  if (cells == nullptr || row >= cells->slots.size() || cells->slots[row] == 0) return nullptr;
  return &cells->pool[cells->slots[row] - 1];
}

Value Column::Read(Row row) const {
  Value value = Value::Unset(m_type, m_isSequence);
  if (!IsSet(row)) return value;
  if (const NumberCells* cells = Numbers()) {
    std::visit(
        [&](const auto& numbers) {
          if constexpr (std::is_floating_point_v<std::decay_t<decltype(numbers[0])>>) {
            value.data = Value::Reals{static_cast<double>(numbers[row])};
          } else {
            value.data = Value::Integers{static_cast<std::int64_t>(numbers[row])};
          }
        },
        cells->numbers);
  } else if (const TextCells* texts = Texts()) {
    std::u16string buffer;
    value.data = Value::Texts{std::u16string(texts->arena.At(texts->handles[row]).Widen(buffer))};
  } else {
    value = *ValueAt(row);
  }
  return value;
}

void Column::ReadNumbers(const NumberCells& cells, std::span<const Row> rows,
                         ColumnBlock& block) const {
  std::visit(
      [&](const auto& numbers) {
        using Number = std::decay_t<decltype(numbers[0])>;
        for (const Row row : rows) {
          const bool isSet = row != kNoRow && cells.isSet.Has(row);
          block.isNull.push_back(isSet ? 0 : 1);
          if constexpr (std::is_floating_point_v<Number>) {
            block.reals.push_back(isSet ? static_cast<double>(numbers[row]) : 0);
          } else {
            block.integers.push_back(isSet ? static_cast<std::int64_t>(numbers[row]) : 0);
          }
        }
      },
      cells.numbers);
}

void Column::Read(std::span<const Row> rows, ColumnBlock& block) const {
  block.type = m_type;
  block.isNull.reserve(block.isNull.size() + rows.size());
  if (const NumberCells* cells = Numbers()) {
    ReadNumbers(*cells, rows, block);
    return;
  }
  if (const TextCells* texts = Texts()) {
    for (const Row row : rows) {
      const bool isSet = row != kNoRow && IsSet(row);
      block.isNull.push_back(isSet ? 0 : 1);
      if (isSet) {
        const StoredText text = texts->arena.At(texts->handles[row]);
        if (text.isAscii) {
          block.textArena.append(text.ascii.begin(), text.ascii.end());
        } else {
          block.textArena.append(text.wide);
        }
      }
      block.textEnds.push_back(block.textArena.size());
    }
    return;
  }
  const bool isComplex = !m_isSequence && PartsOf(m_type) == 2;
  for (const Row row : rows) {
    const Value* value = row == kNoRow ? nullptr : ValueAt(row);
    block.isNull.push_back(value == nullptr ? 1 : 0);
    if (isComplex) {
      const auto* parts = value == nullptr ? nullptr : std::get_if<Value::Reals>(&value->data);
      block.reals.push_back(parts == nullptr ? 0 : parts->at(0));
      block.reals.push_back(parts == nullptr ? 0 : parts->at(1));
    } else {
      block.others.push_back(value == nullptr ? Value::Unset(m_type, m_isSequence) : *value);
    }
  }
}

void Column::Reserve(std::size_t rows) {
  if (auto* numbers = std::get_if<NumberCells>(&m_cells)) {
    std::visit([rows](auto& cells) { cells.reserve(rows); }, numbers->numbers);
    numbers->isSet.Reserve(rows);
  } else if (auto* texts = std::get_if<TextCells>(&m_cells)) {
    texts->handles.reserve(rows);
  }
}

void Column::ShrinkToFit() {
  if (auto* numbers = std::get_if<NumberCells>(&m_cells)) {
    std::visit([](auto& cells) { cells.shrink_to_fit(); }, numbers->numbers);
  } else if (auto* texts = std::get_if<TextCells>(&m_cells)) {
    texts->handles.shrink_to_fit();
    texts->arena.ShrinkToFit();
  } else if (auto* values = std::get_if<ValueCells>(&m_cells)) {
    values->slots.shrink_to_fit();
    values->pool.shrink_to_fit();
  }
}

}  // namespace hv::vex::engine
