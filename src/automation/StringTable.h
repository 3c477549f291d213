// automation/StringTable.h - the texts of the library by number, one table per language.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include <storefabric/WString.h>

#include "automation/StringTableCheck.h"

namespace hv::automation {

/// The texts of one language. Immutable; a lookup is a binary search.
class StringTable {
 public:
  struct Entry {
    std::int32_t number = 0;
    WString text;
  };

  /// The English table that is part of the library. Read on first use; lives until the process
  /// ends.
  static const StringTable& Default();

  /// The built-in table of a language ("en"), or null if there is none.
  static const StringTable* ForLanguage(std::string_view language);

  /// Reads a table from the content of a file, whose form `CheckStringTable` tells.
  /// \param check  if not null, receives the first fault and its line
  /// \return nothing if there is a fault
  static std::optional<StringTable> Parse(std::string_view file, StringTableCheck* check = nullptr);

  /// The text of that number, or null.
  [[nodiscard]] const WString* Find(std::int32_t number) const;
  [[nodiscard]] std::optional<WString> TryLoadString(std::int32_t number) const;
  /// The text of that number, empty if there is none.
  [[nodiscard]] WString LoadString(std::int32_t number) const;

  /// All texts, ascending by number.
  [[nodiscard]] const std::vector<Entry>& Entries() const { return m_entries; }

 private:
  StringTable() = default;

  std::vector<Entry> m_entries;
};

/// Lookups in the default table.
[[nodiscard]] std::optional<WString> TryLoadString(std::int32_t number);
[[nodiscard]] WString LoadString(std::int32_t number);

}  // namespace hv::automation
