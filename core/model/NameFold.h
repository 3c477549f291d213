// core/model/NameFold.h - names of a model without regard to case: equality, hash and index.
// Folding is simple case folding by code point: no locale, no change of length, no allocation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

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
  ExactNameMap<std::int32_t> m_exact;
  ExactNameMap<std::int32_t> m_base;
  FoldedNameMap<std::int32_t> m_folded;
  std::size_t m_longest = 0;
};

}  // namespace hv::vex::engine
