// core/plugins/sql/Cells.cpp - one cell at a time, by the kind of its type.
#include "core/plugins/sql/Cells.h"

#include <cstring>
#include <optional>

#include "core/plugins/sql/TextKey.h"

namespace hv::vex::engine::sql {

void BindCell(Statement& statement, int index, const ColumnBlock& block, std::size_t row,
              std::string& buffer) {
  if (block.isNull[row] != 0) {
    statement.BindNull(index);
    return;
  }
  switch (StorageKindOf(block.type)) {
    case StorageKind::Integer:
      statement.BindInteger(index, block.integers[row]);
      return;
    case StorageKind::Real:
      if (PartsOf(block.type) == 1) {
        statement.BindReal(index, block.reals[row]);
      } else {
        buffer.resize(2 * sizeof(double));
        std::memcpy(buffer.data(), &block.reals[row * 2], buffer.size());
        statement.BindBytes(index, std::as_bytes(std::span(buffer)));
      }
      return;
    case StorageKind::Text:
      buffer.clear();
      AppendStored(block.TextAt(row), buffer);
      statement.BindText(index, buffer);
      return;
    case StorageKind::Bytes: {
      const auto* strings = std::get_if<Value::ByteStrings>(&block.others[row].data);
      strings == nullptr || strings->empty() ? statement.BindNull(index)
                                             : statement.BindBytes(index, strings->front());
      return;
    }
  }
}

void BindKey(Statement& statement, int index, const ColumnBlock& block, std::size_t row,
             const std::string& stored, std::string& buffer) {
  std::optional<std::string> key;
  if (block.isNull[row] == 0) key = KeyOf(block.type, block.TextAt(row), stored);
  if (!key) {
    statement.BindNull(index);
    return;
  }
  buffer = std::move(*key);
  statement.BindText(index, buffer);
}

void AppendCell(const Statement& statement, int column, bool isForeign, ColumnBlock& block) {
  const bool isNull = statement.IsNull(column);
  block.isNull.push_back(isNull ? 1 : 0);
  switch (StorageKindOf(block.type)) {
    case StorageKind::Integer:
      block.integers.push_back(isNull ? 0 : statement.Integer(column));
      return;
    case StorageKind::Real:
      if (PartsOf(block.type) == 1) {
        block.reals.push_back(isNull ? 0 : statement.Real(column));
      } else {
        double parts[2] = {};
        const std::span<const std::byte> bytes =
            isNull ? std::span<const std::byte>() : statement.Bytes(column);
        if (bytes.size() == sizeof parts) {
          std::memcpy(parts, bytes.data(), sizeof parts);
        } else {
          block.isNull.back() = 1;
        }
        block.reals.insert(block.reals.end(), parts, parts + 2);
      }
      return;
    case StorageKind::Text:
      if (!isNull && isForeign && block.type == OdsType::Date) {
        block.textArena += DateDigits(FromStored(statement.Text(column)));
      } else if (!isNull) {
        AppendUtf16(statement.Text(column), block.textArena);
      }
      block.textEnds.push_back(block.textArena.size());
      return;
    case StorageKind::Bytes: {
      Value value = Value::Unset(block.type);
      if (!isNull) {
        const std::span<const std::byte> bytes = statement.Bytes(column);
        value.data = Value::ByteStrings{Bytes(bytes.begin(), bytes.end())};
      }
      block.others.push_back(std::move(value));
      return;
    }
  }
}

ColumnBlock BlockOf(const Value& value) {
  ColumnBlock block;
  block.type = value.type;
  block.isNull.push_back(value.IsSet() ? 0 : 1);
  if (const auto* integers = std::get_if<Value::Integers>(&value.data)) block.integers = *integers;
  if (const auto* reals = std::get_if<Value::Reals>(&value.data)) {
    block.reals = *reals;
    const bool isNarrow = value.type == OdsType::Float;
    if (isNarrow) block.reals[0] = static_cast<double>(static_cast<float>(block.reals[0]));
  }
  if (const auto* texts = std::get_if<Value::Texts>(&value.data)) block.textArena = texts->front();
  block.textEnds.push_back(block.textArena.size());
  if (StorageKindOf(value.type) == StorageKind::Bytes) block.others.push_back(value);
  return block;
}

}  // namespace hv::vex::engine::sql
