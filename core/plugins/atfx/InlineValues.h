// core/plugins/atfx/InlineValues.h - the values or flags that stand inside the XML for one column.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <variant>

#include "core/plugins/atfx/ValueSpool.h"
#include "core/store/memory/InMemoryValues.h"
#include "core/store/memory/MemoryBuilder.h"

namespace hv::vex::engine::atfx {

/// Nothing, values in memory, or values in the spool. Shared by its copies.
class InlineValues final {
 public:
  InlineValues() = default;
  explicit InlineValues(std::shared_ptr<const InMemoryValues> values) {
    if (values) m_values = std::move(values);
  }
  explicit InlineValues(std::shared_ptr<const SpooledValues> values)
      : m_values(std::move(values)) {}

  explicit operator bool() const { return !std::holds_alternative<std::monostate>(m_values); }
  /// The three below need values.
  [[nodiscard]] OdsType Type() const { return InMemory() ? InMemory()->Type() : Spooled()->Type(); }
  [[nodiscard]] std::uint64_t Count() const {
    return InMemory() ? InMemory()->Count() : Spooled()->Count();
  }
  [[nodiscard]] std::unique_ptr<ValueSource> Open() const {
    return InMemory() ? InMemoryValues::Open(InMemory()) : SpooledValues::Open(Spooled());
  }

  void GiveAsValues(MemoryBuilder& builder, EntityId entity, Row row) const {
    if (InMemory()) {
      builder.SetValues(entity, row, InMemory());
    } else if (*this) {
      builder.SetValues(entity, row, [values = *this] { return values.Open(); });
    }
  }
  void GiveAsFlags(MemoryBuilder& builder, EntityId entity, Row row) const {
    if (InMemory()) {
      builder.SetFlags(entity, row, InMemory());
    } else if (*this) {
      builder.SetFlags(entity, row, [flags = *this] { return flags.Open(); });
    }
  }

 private:
  using Memory = std::shared_ptr<const InMemoryValues>;
  using Spool = std::shared_ptr<const SpooledValues>;
  /// Null if they are elsewhere.
  [[nodiscard]] Memory InMemory() const {
    const Memory* const held = std::get_if<Memory>(&m_values);
    return held ? *held : nullptr;
  }
  [[nodiscard]] Spool Spooled() const { return std::get<Spool>(m_values); }

  std::variant<std::monostate, Memory, Spool> m_values;
};

}  // namespace hv::vex::engine::atfx
