// automation/variant/TextCompare.cpp - word sort: a table for ASCII, a tailored collation for the
// rest.
#include "automation/variant/TextCompare.h"

#include <unicode/ucol.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <string>

namespace hv::automation {

namespace {

/// The weight of a unit that counts only when all else is equal; 0 for all others.
constexpr std::uint8_t MinorWeight(char16_t unit) {
  switch (unit) {
    case 0x7F:
      return 0x20;
    case u'\'':
      return 0x80;
    case 0xFF07:
      return 0x81;
    case u'-':
      return 0x82;
    case 0xFF0D:
      return 0x83;
    case 0x2010:
    case 0x2011:
    case 0x2012:
    case 0x2013:
    case 0x2014:
    case 0x2015:
      return static_cast<std::uint8_t>(0x84 + (unit - 0x2010));
    default:
      // Control characters, but not the ones that are blanks.
      return unit < 0x20 && !(unit >= u'\t' && unit <= u'\r') ? static_cast<std::uint8_t>(unit) : 0;
  }
}

/// True if the unit has no weight of any kind.
constexpr bool IsWeightless(char16_t unit) {
  return unit == 0 || unit == 0xAD || unit == 0xFEFF || unit == 0x200C || unit == 0x200D;
}

using Ranks = std::array<std::uint8_t, 128>;

/// The places of the ASCII characters; 0 for those that have none.
constexpr Ranks kRanks = [] {
  constexpr std::string_view kOrder =
      " \t\n\v\f\r!\"#$%&()*,./:;?@[\\]^_`{|}~+<=>0123456789abcdefghijklmnopqrstuvwxyz";
  Ranks ranks{};
  std::uint8_t rank = 0;
  for (const char c : kOrder) {
    ranks[static_cast<unsigned char>(c)] = ++rank;
    if (c >= 'a' && c <= 'z') ranks[static_cast<unsigned char>(c - 'a' + 'A')] = rank;
  }
  return ranks;
}();

bool IsAscii(std::u16string_view text) {
  return std::ranges::all_of(text, [](char16_t unit) { return unit < 128; });
}

int CompareAscii(std::u16string_view a, std::u16string_view b) {
  std::size_t i = 0;
  std::size_t j = 0;
  for (;; ++i, ++j) {
    while (i < a.size() && kRanks[a[i]] == 0) ++i;
    while (j < b.size() && kRanks[b[j]] == 0) ++j;
    if (i == a.size() || j == b.size()) break;
    if (const int difference = kRanks[a[i]] - kRanks[b[j]]; difference != 0) return difference;
  }
  return static_cast<int>(i < a.size()) - static_cast<int>(j < b.size());
}

/// Walks both texts by a weight for each unit, weightless units left out; the first difference
/// decides. Behind the end of a text all weights are 0.
template <class Weight>
int CompareByWeight(std::u16string_view a, std::u16string_view b, Weight weight) {
  const auto next = [&weight](std::u16string_view text, std::size_t* at) {
    while (*at < text.size() && IsWeightless(text[*at])) ++*at;
    return *at < text.size() ? weight(text[(*at)++]) : 0;
  };
  std::size_t i = 0;
  std::size_t j = 0;
  while (i < a.size() || j < b.size()) {
    const int weightA = next(a, &i);
    const int weightB = next(b, &j);
    if (weightA != weightB) return weightA - weightB;
  }
  return 0;
}

constexpr bool IsFullwidth(char16_t unit) { return unit >= 0xFF01 && unit <= 0xFF5E; }

/// A kana of any form as what it says (the hiragana of normal size) and how it is written.
struct Kana {
  char16_t hiragana = 0;  ///< 0 if the unit is no kana
  bool isSmall = false;
  bool isKatakana = false;
  bool isHalfwidth = false;
};

Kana KanaOf(char16_t unit) {
  // The halfwidth block has an order of its own.
  constexpr std::u16string_view kHalfwidth =
      u"をぁぃぅぇぉゃゅょっーあいうえおかきくけこさしすせそたちつてとなにぬねのはひふへほまみむめ"
      u"もやゆよ"
      u"らりるれろわん";
  constexpr char16_t kFirstHalfwidth = 0xFF66;
  constexpr std::u16string_view kSmall = u"ぁぃぅぇぉっゃゅょゎゕゖ";
  constexpr std::u16string_view kNormal = u"あいうえおつやゆよわかけ";
  Kana kana;
  if (unit >= 0x3041 && unit <= 0x3096) {
    kana.hiragana = unit;
  } else if (unit >= 0x30A1 && unit <= 0x30F6) {
    kana.hiragana = static_cast<char16_t>(unit - 0x30A1 + 0x3041);
    kana.isKatakana = true;
  } else if (unit >= kFirstHalfwidth && unit < kFirstHalfwidth + kHalfwidth.size()) {
    kana.hiragana = kHalfwidth[static_cast<std::size_t>(unit - kFirstHalfwidth)];
    kana.isKatakana = true;
    kana.isHalfwidth = true;
  }
  if (const std::size_t small = kSmall.find(kana.hiragana); small != kSmall.npos) {
    kana.hiragana = kNormal[small];
    kana.isSmall = true;
  }
  return kana;
}

/// The collation starts from the root order and moves punctuation and symbols to the places of word
/// sort, and the accents into its order. Quotes keep the rules' own marks from being read as such.
constexpr std::u16string_view kTailoring =
    u"&' ' < '\u00A0' < '\t' < '\n' < '\v' < '\f' < '\r' < '\u200B'"
    u" < '!' < '\"' < '#' < '$' < '%' < '&' < '(' < ')' < '*' < ',' < '\u3001' < '.' = '\u2024' < "
    u"'/' < ':' < ';' < '?'"
    u" < '@' < '[' < '\\' < ']' < '^' < '_' < '`' < '{' < '|' < '}' < '~'"
    u" < '\u00A1' < '\u00A6' < '\u00A8' < '\u00AF' < '\u00B4' < '\u00B8' < '\u00BF' < '\u2016'"
    u" < '\u2017' < '\u2018' < '\u2019' < '\u201A' < '\u201B' < '\u201C' < '\u201D' < '\u201E'"
    u" < '\u201F' < '\u00A2' < '\u00A3' < '\u00A4' < '\u00A5' < '\u20AC' < '\u3003'"
    u" < '+' < '<' < '=' < '>' < '\u00B1' < '\u00AB' < '\u00BB' < '\u00D7' < '\u00F7'"
    u" < '\u00A7' < '\u00A9' < '\u00AC' < '\u00AE' < '\u00B0' < '\u00B6' < '\u00B7' < '\u30FB'"
    u" < '\u2025' < '\u2026' < '\u2020' < '\u2021' < '\u2022' <* \u0080-\u009F"
    u"&\u0301 << \u0300 << \u0307 << \u0302 << \u0308 << \u030C << \u0306 << \u0304"
    u" << \u0303 << \u030A << \u0328 << \u0327 << \u030B"
    u"&i << \u0131";

/// One collator for the life of the module, or null if it can't be made. It is never closed:
/// nothing may run at unloading.
UCollator* WordCollator() {
  static UCollator* const collator = [] {
    UErrorCode status = U_ZERO_ERROR;
    UCollator* opened =
        ucol_openRules(kTailoring.data(), static_cast<std::int32_t>(kTailoring.size()),
                       UCOL_DEFAULT, UCOL_TERTIARY, nullptr, &status);
    return U_SUCCESS(status) ? opened : nullptr;
  }();
  return collator;
}

void AppendUnfoldedLetter(char16_t unit, std::u16string* text) {
  switch (unit) {
    case 0xE6:
      *text += u"ae";
      break;
    case 0x153:
      *text += u"oe";
      break;
    case 0x133:
      *text += u"ij";
      break;
    case 0xFE:
      *text += u"th";
      break;
    default:
      *text += unit;
  }
}

/// What the collation sees: case folded, wide forms narrowed, kana as hiragana, ligatures as
/// letters, and nothing of what counts only when all else is equal.
std::u16string Fold(std::u16string_view text) {
  // Folding a letter gives three at most; the count is held in 32 bits.
  constexpr std::size_t kMost = std::numeric_limits<std::int32_t>::max() / 4;
  text = text.substr(0, kMost);
  std::u16string kept;
  kept.reserve(text.size());
  for (const char16_t unit : text) {
    if (IsWeightless(unit) || MinorWeight(unit) != 0) continue;
    if (IsFullwidth(unit)) {
      kept += static_cast<char16_t>(unit - 0xFF01 + u'!');
    } else if (const Kana kana = KanaOf(unit); kana.hiragana != 0) {
      kept += kana.hiragana;
    } else {
      kept += unit;
    }
  }
  std::u16string folded(kept.size() * 3, u'\0');
  UErrorCode status = U_ZERO_ERROR;
  const std::int32_t size =
      u_strFoldCase(folded.data(), static_cast<std::int32_t>(folded.size()), kept.data(),
                    static_cast<std::int32_t>(kept.size()), U_FOLD_CASE_DEFAULT, &status);
  folded.resize(static_cast<std::size_t>(size));
  std::u16string letters;
  letters.reserve(folded.size());
  for (const char16_t unit : folded) AppendUnfoldedLetter(unit, &letters);
  return letters;
}

/// The order of texts that differ in the width of letters and the forms of kana alone. Narrow comes
/// before wide; small kana before normal ones, katakana before hiragana, halfwidth before normal.
int CompareForms(std::u16string_view a, std::u16string_view b) {
  const auto width = [](char16_t unit) { return static_cast<int>(IsFullwidth(unit)); };
  const auto small = [](char16_t unit) { return KanaOf(unit).isSmall ? -1 : 0; };
  const auto katakana = [](char16_t unit) { return KanaOf(unit).isKatakana ? -1 : 0; };
  const auto halfwidth = [](char16_t unit) { return KanaOf(unit).isHalfwidth ? -1 : 0; };
  if (const int order = CompareByWeight(a, b, width); order != 0) return order;
  if (const int order = CompareByWeight(a, b, small); order != 0) return order;
  if (const int order = CompareByWeight(a, b, katakana); order != 0) return order;
  return CompareByWeight(a, b, halfwidth);
}

int Collate(std::u16string_view a, std::u16string_view b) {
  const std::u16string foldedA = Fold(a);
  const std::u16string foldedB = Fold(b);
  UCollator* collator = WordCollator();
  if (!collator) return foldedA.compare(foldedB);
  return static_cast<int>(ucol_strcoll(collator, foldedA.data(),
                                       static_cast<std::int32_t>(foldedA.size()), foldedB.data(),
                                       static_cast<std::int32_t>(foldedB.size())));
}

}  // namespace

int CompareTextPlatform(std::u16string_view a, std::u16string_view b) {
  if (a == b) return 0;
  const bool isAscii = IsAscii(a) && IsAscii(b);
  if (const int order = isAscii ? CompareAscii(a, b) : Collate(a, b); order != 0) return order;
  if (!isAscii) {
    if (const int order = CompareForms(a, b); order != 0) return order;
  }
  return CompareByWeight(a, b, [](char16_t unit) { return static_cast<int>(MinorWeight(unit)); });
}

std::optional<std::uint64_t> WordSortPrefix(std::u16string_view text) {
  std::uint64_t prefix = 0;
  int missing = 8;
  for (const char16_t unit : text) {
    if (unit >= 128) return std::nullopt;
    if (missing == 0 || kRanks[unit] == 0) continue;
    prefix = prefix << 8 | kRanks[unit];
    --missing;
  }
  // The end of a text comes before every character.
  return missing == 8 ? 0 : prefix << (8 * missing);
}

}  // namespace hv::automation
