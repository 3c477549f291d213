// core/query/TextMatch.h - how texts and dates are compared: one rule for every kind of store.
// Equality, order, wildcards and indexes all stand on the folded text, so a store that keeps the
// folded form beside a text finds the same records as one that folds while it searches.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hv::vex::engine {

/// The text without regard to case and to composed or decomposed writing: normalised to form C,
/// full case folding of Unicode (independent of any locale), and form C again. "ß" becomes "ss",
/// "İ" an "i" with a dot above. Folding a folded text changes nothing. Unpaired surrogates stay.
std::u16string FoldCase(std::u16string_view text);

/// The same without an allocation where none is needed: gives `text` itself if folding changes
/// nothing, else a view of `buffer`, whose memory is used again and again. `text` must not lie in
/// `buffer`.
std::u16string_view FoldCase(std::u16string_view text, std::u16string& buffer);

/// The words of a free text, folded: at blanks, phrases between double quotes.
std::vector<std::u16string> SearchWords(std::u16string_view text);

/// A text with wildcards: "?" is exactly one code point, "*" any number of them, none included.
/// There is no escape character. To ignore case, give a pattern and texts folded by `FoldCase`,
/// which keeps the wildcard characters; "?" then stands for one code point of the folded text.
///
/// A match reads the text once, in time proportional to its length, for patterns up to 63 code
/// points; longer ones may take the product of both lengths, never more.
class WildcardPattern final {
 public:
  explicit WildcardPattern(std::u16string_view pattern);
  [[nodiscard]] bool Matches(std::u16string_view text) const;

  /// What stands before the first wildcard: every matching text begins with it. Serves indexes.
  [[nodiscard]] std::u16string_view LiteralPrefix() const { return m_prefix; }
  /// True if there is no wildcard: the only matching text is `LiteralPrefix`.
  [[nodiscard]] bool IsLiteral() const { return m_shape == Shape::Literal; }
  /// True if the pattern is `LiteralPrefix` and "*": every text with that beginning matches.
  [[nodiscard]] bool IsPrefix() const { return m_shape == Shape::Prefix; }

 private:
  enum class Shape : std::uint8_t {
    Literal,   // abc
    Prefix,    // abc*
    Contains,  // *abc*
    States,    // up to kMaxStates elements: all ways to match are followed at once
    Long,
  };
  struct Letter {
    char32_t codePoint;
    std::uint64_t positions;
  };
  void BuildStates(std::u16string_view pattern);
  [[nodiscard]] bool MatchesStates(std::u16string_view text) const;
  [[nodiscard]] bool MatchesLong(std::u16string_view text) const;
  [[nodiscard]] std::uint64_t PositionsOf(char32_t codePoint) const;

  Shape m_shape = Shape::Literal;
  std::u16string m_prefix;
  std::u16string m_pattern;  // Contains: the middle; Long: all of it
  // States: bit i of a set stands for "the first i elements are matched".
  std::array<std::uint64_t, 128> m_ascii{};  // elements that a letter fits, the wildcard ones too
  std::vector<Letter> m_letters;             // the same beyond ASCII, by code point
  std::uint64_t m_anyLetter = 0;             // elements that are "?"
  std::uint64_t m_loops = 0;                 // a "*" stands behind that many elements
  std::uint64_t m_accept = 0;
};

/// A date as it is compared: year, month, day, hour, minute and second, 14 digits.
using Date14 = std::array<char16_t, 14>;

/// The comparable form of a date of 4 to 23 digits: cut behind the seconds, or filled up with the
/// first month, the first day and zeros. Nothing if there is anything but digits, if the length
/// is another one, or if a part before the seconds has only one digit.
std::optional<Date14> NormalizeDate14(std::u16string_view text);

}  // namespace hv::vex::engine
