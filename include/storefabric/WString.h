// storefabric/WString.h - the wide string of all interfaces: UTF-16 code units.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include <storefabric/Export.h>

namespace hv::cor {

/// -1, 0 or 1, without regard to case: the root collation at the strength that tells letters and
/// accents apart but not case, with a fast path of the same order for plain ASCII. Control
/// characters other than white space don't count. A text with embedded zeros is compared unit by
/// unit, so that a zero doesn't end it; then the shorter comes first.
HV_API int CompareNoCase(std::u16string_view a, std::u16string_view b);

/// A wide string: UTF-16 code units between three pointers, always terminated by a zero unit, which
/// isn't counted. A plain value; memory comes from malloc, so that a string filled in one module
/// may be freed in another.
///
/// `==`, `!=` and the order operators ignore case (see `CompareNoCase`); `CompareExact`,
/// `EqualsExact` and the functor `ExactLess` tell upper and lower case apart. A map keyed by
/// strings names the one it uses.
class HV_API WString {
 public:
  static constexpr std::size_t npos = static_cast<std::size_t>(-1);

  WString() noexcept = default;
  WString(const char16_t* text);  ///< Null counts as empty.
  WString(std::u16string_view text);
  WString(const std::u16string& text) : WString(std::u16string_view(text)) {}
  WString(const WString& other);
  WString(WString&& other) noexcept;
  ~WString();
  WString& operator=(const WString& other);
  WString& operator=(WString&& other) noexcept;
  WString& operator=(std::u16string_view text);
  WString& operator=(const char16_t* text);
  WString& operator=(const std::u16string& text) { return *this = std::u16string_view(text); }

  /// The text; terminated, never null.
  [[nodiscard]] const char16_t* c_str() const { return m_begin ? m_begin : u""; }
  [[nodiscard]] const char16_t* data() const { return c_str(); }
  [[nodiscard]] std::size_t size() const { return static_cast<std::size_t>(m_end - m_begin); }
  [[nodiscard]] std::size_t length() const { return size(); }
  [[nodiscard]] bool empty() const { return m_begin == m_end; }
  [[nodiscard]] std::size_t capacity() const {
    return static_cast<std::size_t>(m_capacityEnd - m_begin);
  }
  [[nodiscard]] std::u16string_view view() const { return {c_str(), size()}; }
  operator std::u16string_view() const { return view(); }
  [[nodiscard]] std::u16string str() const { return std::u16string(view()); }
  [[nodiscard]] const char16_t* begin() const { return c_str(); }
  [[nodiscard]] const char16_t* end() const { return c_str() + size(); }
  /// The unit at `pos`, which must be below `size()`.
  char16_t operator[](std::size_t pos) const { return m_begin[pos]; }
  char16_t& operator[](std::size_t pos) { return m_begin[pos]; }

  void clear() noexcept;
  /// Room for `units` units without another allocation. Raises `BoundExceeded` beyond the size
  /// limit, as everything does that makes a string longer.
  void reserve(std::size_t units);
  WString& append(std::u16string_view text);
  WString& append(std::size_t count, char16_t unit);
  WString& operator+=(std::u16string_view text) { return append(text); }
  WString& operator+=(char16_t unit) { return append(1, unit); }
  void swap(WString& other) noexcept;

  /// Position of the first match at or behind `start`, or -1; a start at or beyond the end gives
  /// -1.
  [[nodiscard]] std::int64_t Find(std::u16string_view text, std::size_t start = 0) const;
  [[nodiscard]] std::int64_t FindFirstOf(std::u16string_view set, std::size_t start = 0) const;
  [[nodiscard]] std::int64_t FindFirstNotOf(std::u16string_view set, std::size_t start = 0) const;
  /// Position of the last unit that isn't in `set`, or -1.
  [[nodiscard]] std::int64_t FindLastNotOf(std::u16string_view set) const;
  /// Puts `text` in the place of `count` units at `pos` (fewer if the string ends before).
  /// Raises OutOfRange2 "String offset out of range" for a position beyond the end, BoundExceeded2
  /// "Resulting string too large" beyond the size limit.
  WString& Replace(std::size_t pos, std::size_t count, std::u16string_view text);
  /// `count` units from `pos` (fewer if the string ends before). At the length: empty. Beyond it:
  /// raises OutOfRange2 "String offset out of range".
  [[nodiscard]] WString Substr(std::size_t pos, std::size_t count = npos) const;
  /// Every occurrence of `what` replaced by `with`, from the start on, in one pass.
  WString& ReplaceAll(std::u16string_view what, std::u16string_view with);

  /// Code unit by code unit: below 0, 0, above 0.
  [[nodiscard]] int CompareExact(std::u16string_view other) const;
  [[nodiscard]] bool EqualsExact(std::u16string_view other) const { return view() == other; }

  // Found only for an argument that is a WString, so that views compare as they always do.
  friend bool operator==(const WString& a, const WString& b) { return CompareNoCase(a, b) == 0; }
  friend bool operator==(const WString& a, std::u16string_view b) {
    return CompareNoCase(a, b) == 0;
  }
  friend bool operator==(const WString& a, const std::u16string& b) {
    return CompareNoCase(a, b) == 0;
  }
  /// Null counts as empty, as it does in the constructor.
  friend bool operator==(const WString& a, const char16_t* b) {
    return CompareNoCase(a, b ? b : u"") == 0;
  }
  friend std::weak_ordering operator<=>(const WString& a, const WString& b) {
    return CompareNoCase(a, b) <=> 0;
  }
  friend std::weak_ordering operator<=>(const WString& a, std::u16string_view b) {
    return CompareNoCase(a, b) <=> 0;
  }
  friend std::weak_ordering operator<=>(const WString& a, const std::u16string& b) {
    return CompareNoCase(a, b) <=> 0;
  }
  friend std::weak_ordering operator<=>(const WString& a, const char16_t* b) {
    return CompareNoCase(a, b ? b : u"") <=> 0;
  }

 private:
  friend WString FromUtf8(std::string_view text);

  void Assign(std::u16string_view text);
  /// Writes the terminator behind `units` units, which becomes the length; there must be room.
  void SetLength(std::size_t units) noexcept;

  char16_t* m_begin = nullptr;
  char16_t* m_end = nullptr;
  char16_t* m_capacityEnd = nullptr;
};

inline WString operator+(WString a, std::u16string_view b) {
  a.append(b);
  return a;
}

/// Ordering functors for maps. Both accept views, so a lookup needs no temporary string.
struct NoCaseLess {
  using is_transparent = void;
  bool operator()(std::u16string_view a, std::u16string_view b) const {
    return CompareNoCase(a, b) < 0;
  }
};
struct ExactLess {
  using is_transparent = void;
  bool operator()(std::u16string_view a, std::u16string_view b) const { return a < b; }
};
/// For hash tables that tell upper and lower case apart; pairs with `ExactEqual`.
struct ExactHash {
  using is_transparent = void;
  std::size_t operator()(std::u16string_view text) const {
    return std::hash<std::u16string_view>()(text);
  }
};
struct ExactEqual {
  using is_transparent = void;
  bool operator()(std::u16string_view a, std::u16string_view b) const { return a == b; }
};

/// UTF-8 and back, for the edges (files, terminal, scripts). A surrogate without its partner, and
/// each longest piece of a malformed sequence, becomes U+FFFD.
[[nodiscard]] HV_API std::string ToUtf8(std::u16string_view text);
[[nodiscard]] HV_API WString FromUtf8(std::string_view text);

}  // namespace hv::cor

namespace hv {
using cor::WString;
}
