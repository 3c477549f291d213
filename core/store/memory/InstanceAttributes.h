// core/store/memory/InstanceAttributes.h - the instance attributes of all rows of a table.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core/store/RecordStore.h"
#include "core/store/memory/RowSet.h"
#include "core/store/memory/TextArena.h"

namespace hv::vex::engine {

/// Every attribute is one fixed-size item in a chain per row; names are kept once per table.
class InstanceAttributes final {
 public:
  struct Item {
    std::int64_t payload;  // the integer, the real's bits or the text's handle
    std::int64_t unit;
    Row row;             // kNoRow: not in use
    std::uint32_t next;  // position plus 1
    std::uint32_t name;
    OdsType type;
    bool isSet;
  };

  /// True if the standard allows the value's type here, and the value fits it.
  static bool IsAllowed(const Value& value);

  /// Adds the attribute at the end, or replaces the one of that name. False if its value isn't
  /// allowed.
  bool Set(Row row, const InstanceAttribute& attribute);
  bool Remove(Row row, std::u16string_view name);
  void Clear(Row row);
  [[nodiscard]] std::vector<InstanceAttribute> Of(Row row) const;

  // For the evaluation of queries.
  [[nodiscard]] const std::vector<Item>& Items() const { return m_items; }
  [[nodiscard]] const std::vector<std::u16string>& Names() const { return m_names; }
  [[nodiscard]] StoredText TextOf(const Item& item) const {
    return m_texts.At(static_cast<std::uint64_t>(item.payload));
  }

 private:
  static constexpr std::uint32_t kEnd = 0;
  std::uint32_t NameNumber(std::u16string_view name);
  /// The position plus 1 that points to the row's item of that name, or to the end of its chain.
  std::uint32_t* Find(Row row, std::u16string_view name);
  void Release(std::uint32_t& link);

  std::vector<std::uint32_t> m_heads;  // position plus 1 of a row's first item
  std::vector<Item> m_items;
  std::uint32_t m_free = kEnd;
  std::vector<std::u16string> m_names;
  std::map<std::u16string, std::uint32_t, std::less<>> m_nameNumbers;
  TextArena m_texts;
};

}  // namespace hv::vex::engine
