// core/model/Value.cpp - the elements of a value, and values out of blocks.
#include "core/model/Value.h"

namespace hv::vex::engine {

std::size_t Value::Count() const {
  return std::visit(
      [this](const auto& elements) -> std::size_t {
        if constexpr (std::is_same_v<std::decay_t<decltype(elements)>, std::monostate>) {
          return 0;
        } else {
          return elements.size() / PartsOf(type);
        }
      },
      data);
}

Value ValueAt(const ColumnBlock& block, std::size_t row) {
  if (!block.others.empty()) return block.others[row];
  Value value = Value::Unset(block.type);
  if (block.isNull[row] != 0) return value;
  const std::size_t parts = PartsOf(block.type);
  switch (StorageKindOf(block.type)) {
    case StorageKind::Integer:
      value.data = Value::Integers{block.integers[row]};
      break;
    case StorageKind::Real: {
      const auto first = block.reals.begin() + static_cast<std::ptrdiff_t>(row * parts);
      value.data = Value::Reals(first, first + static_cast<std::ptrdiff_t>(parts));
      break;
    }
    case StorageKind::Text:
      value.data = Value::Texts{std::u16string(block.TextAt(row))};
      break;
    case StorageKind::Bytes:
      break;
  }
  return value;
}

}  // namespace hv::vex::engine
