// core/model/NameFold.h - names of a model without regard to case: equality, hash and index.
// Folding is simple case folding by code point: no locale, no change of length, no allocation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace hv::vex::engine {

[[nodiscard]] bool EqualFolded(std::u16string_view a, std::u16string_view b);
/// The folded form; for ASCII the lower-case text.
[[nodiscard]] std::u16string Folded(std::u16string_view text);

struct FoldedHash {
  using is_transparent = void;
  std::size_t operator()(std::u16string_view text) const;
};
struct FoldedEqual {
  using is_transparent = void;
  bool operator()(std::u16string_view a, std::u16string_view b) const { return EqualFolded(a, b); }
};
struct ExactHash {
  using is_transparent = void;
  std::size_t operator()(std::u16string_view text) const {
    return std::hash<std::u16string_view>()(text);
  }
};

/// Maps that are asked with a view without making a string of it.
template <class T>
using ExactNameMap = std::unordered_map<std::u16string, T, ExactHash, std::equal_to<>>;
template <class T>
using FoldedNameMap = std::unordered_map<std::u16string, T, FoldedHash, FoldedEqual>;

/// Positions by name and by base name. Fill it with `Add` in the order of declaration, then `Seal`.
class NameIndex {
 public:
  void Add(std::u16string_view name, std::u16string_view baseName, std::int32_t position);
  /// Lets base names stand in where no member has that very name.
  void Seal();
  /// Exact name, then base name, then either without regard to case; or -1.
  [[nodiscard]] std::int32_t Find(std::u16string_view name) const;
  /// First member with that base name (lower case); or -1.
  [[nodiscard]] std::int32_t FindBase(std::u16string_view baseName) const;
  /// Code units of the longest name or base name.
  [[nodiscard]] std::size_t LongestName() const { return m_longest; }

 private:
  // Every store builds some sixty of these when it is opened, so all names share one text and one
  // table instead of having nodes of their own.
  enum Kind : std::uint8_t { kName = 1, kBaseName = 2 };
  struct Entry {
    std::uint32_t begin;  // in m_text
    std::uint32_t size;
    std::uint32_t hash;  // of the folded name
    std::uint32_t next;  // the one before it in its bucket, plus 1
    std::int32_t position;
    std::uint8_t kinds;
  };
  void Append(std::u16string_view name, std::int32_t position, std::uint8_t kinds);
  void Chain(std::uint32_t entry);
  [[nodiscard]] std::uint32_t FirstOf(std::uint32_t hash) const;
  [[nodiscard]] std::u16string_view NameOf(const Entry& entry) const {
    return std::u16string_view(m_text).substr(entry.begin, entry.size);
  }

  std::u16string m_text;
  std::vector<Entry> m_entries;
  std::vector<std::uint32_t> m_buckets;  // the last entry of each, plus 1; 0: none
  std::size_t m_longest = 0;
  bool m_isSealed = false;
};

}  // namespace hv::vex::engine
