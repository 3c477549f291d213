#include "core/query/TextMatch.h"

#include <unicode/unorm2.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

#include "store/core/Exception.h"

namespace hv::vex::engine {
namespace {

// One bit per element of a pattern and one for its end.
constexpr std::size_t kMaxStates = 63;
// ICU counts in 32 bits, and folding may triple a text.
constexpr std::size_t kLongestText = std::numeric_limits<std::int32_t>::max() / 4;

constexpr bool IsUpperAscii(char16_t unit) { return unit >= u'A' && unit <= u'Z'; }

// The letters up to U+00FF whose folding is one letter further up; the micro sign and the sharp s
// fold otherwise and take the long way.
constexpr char16_t FoldLatin1(char16_t unit) {
  const bool upper = IsUpperAscii(unit) || (unit >= 0xC0 && unit <= 0xDE && unit != 0xD7);
  return upper ? static_cast<char16_t>(unit + 0x20) : unit;
}

enum class Writing : std::uint8_t { Folded, Latin1, Any };

Writing WritingOf(std::u16string_view text) {
  bool changes = false;
  for (const char16_t unit : text) {
    if (unit > 0xFF || unit == 0xB5 || unit == 0xDF) return Writing::Any;
    changes |= FoldLatin1(unit) != unit;
  }
  return changes ? Writing::Latin1 : Writing::Folded;
}

// Plain ASCII is most of what is compared, so it is looked at four units at once.
constexpr std::uint64_t InEachUnit(std::uint64_t value) { return value * 0x0001000100010001; }

std::uint64_t LoadUnits(const char16_t* units) {
  std::uint64_t four;
  std::memcpy(&four, units, sizeof four);
  return four;
}

// Bit 7 of each unit from "A" to "Z"; the units must be ASCII.
constexpr std::uint64_t UpperUnits(std::uint64_t four) {
  return (four + InEachUnit(0x80 - 'A')) & ~(four + InEachUnit(0x80 - 'Z' - 1)) & InEachUnit(0x80);
}

// The same answer as `WritingOf`, at once where the text is ASCII.
Writing QuickWritingOf(std::u16string_view text) {
  std::uint64_t all = 0;
  std::uint64_t upper = 0;
  std::size_t i = 0;
  for (; i + 4 <= text.size(); i += 4) {
    const std::uint64_t four = LoadUnits(text.data() + i);
    all |= four;
    upper |= UpperUnits(four);
  }
  if ((all & ~InEachUnit(0x7F)) != 0) return WritingOf(text);
  const Writing rest = WritingOf(text.substr(i));
  if (rest == Writing::Any) return rest;
  return upper != 0 ? Writing::Latin1 : rest;
}

void FoldLatin1(std::u16string_view text, std::u16string& out) {
  out.resize(text.size());
  std::size_t i = 0;
  for (; i + 4 <= text.size(); i += 4) {
    std::uint64_t four = LoadUnits(text.data() + i);
    if ((four & ~InEachUnit(0x7F)) != 0) break;
    four |= UpperUnits(four) >> 2;  // from bit 7 to the bit that tells small letters
    std::memcpy(out.data() + i, &four, sizeof four);
  }
  for (; i < text.size(); ++i) out[i] = FoldLatin1(text[i]);
}

void ThrowOnFailure(UErrorCode code) {
  if (code == U_MEMORY_ALLOCATION_ERROR) throw std::bad_alloc();
  if (U_FAILURE(code)) {
    throw Exception(errc::kInternal, std::u16string_view(u"a text could not be case-folded"));
  }
}

// Gives `text` itself or a view of `buffer`.
std::u16string_view Compose(std::u16string_view text, std::u16string& buffer) {
  UErrorCode code = U_ZERO_ERROR;
  const UNormalizer2* nfc = unorm2_getNFCInstance(&code);
  ThrowOnFailure(code);
  const auto length = static_cast<std::int32_t>(text.size());
  const bool composed = unorm2_isNormalized(nfc, text.data(), length, &code) != 0;
  ThrowOnFailure(code);
  if (composed) return text;
  buffer.resize(text.size() + 16);
  for (;;) {
    code = U_ZERO_ERROR;
    const std::int32_t needed = unorm2_normalize(nfc, text.data(), length, buffer.data(),
                                                 static_cast<std::int32_t>(buffer.size()), &code);
    const bool tooSmall = code == U_BUFFER_OVERFLOW_ERROR;
    if (!tooSmall) ThrowOnFailure(code);
    buffer.resize(static_cast<std::size_t>(needed));
    if (!tooSmall) return buffer;
  }
}

void FoldAny(std::u16string_view text, std::u16string& out) {
  if (text.size() > kLongestText) {
    throw Exception(errc::kInvalidArgument, std::u16string_view(u"a text is too long to compare"));
  }
  std::u16string composed;
  const std::u16string_view source = Compose(text, composed);
  out.resize(source.size() + 16);
  for (;;) {
    UErrorCode code = U_ZERO_ERROR;
    const std::int32_t needed =
        u_strFoldCase(out.data(), static_cast<std::int32_t>(out.size()), source.data(),
                      static_cast<std::int32_t>(source.size()), U_FOLD_CASE_DEFAULT, &code);
    const bool tooSmall = code == U_BUFFER_OVERFLOW_ERROR;
    if (!tooSmall) ThrowOnFailure(code);
    out.resize(static_cast<std::size_t>(needed));
    if (!tooSmall) break;
  }
  // Folding takes some letters apart, which a text may hold in one piece as well.
  std::u16string again;
  if (Compose(out, again).data() != out.data()) out.swap(again);
}

char32_t NextCodePoint(std::u16string_view text, std::size_t& pos) {
  const char16_t unit = text[pos++];
  if (U16_IS_LEAD(unit) && pos < text.size() && U16_IS_TRAIL(text[pos])) {
    return static_cast<char32_t>(U16_GET_SUPPLEMENTARY(unit, text[pos++]));
  }
  return unit;
}

// A text that begins or ends in half a pair could meet the middle of a pair when compared by unit.
bool HasWholeEdges(std::u16string_view text) {
  return text.empty() || (!U16_IS_TRAIL(text.front()) && !U16_IS_LEAD(text.back()));
}

}  // namespace

std::u16string_view FoldCase(std::u16string_view text, std::u16string& buffer) {
  switch (QuickWritingOf(text)) {
    case Writing::Folded:
      return text;
    case Writing::Latin1:
      FoldLatin1(text, buffer);
      return buffer;
    case Writing::Any:
      break;
  }
  FoldAny(text, buffer);
  return buffer;
}

std::u16string FoldCase(std::u16string_view text) {
  std::u16string buffer;
  const std::u16string_view folded = FoldCase(text, buffer);
  return folded.data() == buffer.data() ? std::move(buffer) : std::u16string(folded);
}

WildcardPattern::WildcardPattern(std::u16string_view pattern) {
  const std::size_t wildcard = pattern.find_first_of(u"?*");
  m_prefix = pattern.substr(0, wildcard);
  if (wildcard == std::u16string_view::npos) return;

  const std::u16string_view rest = pattern.substr(wildcard);
  const bool onlyStars = rest.find_first_not_of(u'*') == std::u16string_view::npos;
  if (onlyStars && HasWholeEdges(m_prefix)) {
    m_shape = Shape::Prefix;
    return;
  }
  // Many stars in a row mean the same as one.
  std::u16string plain;
  for (const char16_t unit : pattern) {
    if (unit != u'*' || plain.empty() || plain.back() != u'*') plain += unit;
  }
  if (plain.size() > 2 && plain.size() <= kMaxStates && plain.front() == u'*' &&
      plain.back() == u'*') {
    const auto middle = std::u16string_view(plain).substr(1, plain.size() - 2);
    if (middle.find_first_of(u"?*") == std::u16string_view::npos && HasWholeEdges(middle)) {
      m_shape = Shape::Contains;
      m_pattern = middle;
      return;
    }
  }
  BuildStates(plain);
  if (m_shape == Shape::Long) m_pattern = std::move(plain);
}

void WildcardPattern::BuildStates(std::u16string_view pattern) {
  std::vector<char32_t> elements;
  m_shape = Shape::States;
  std::size_t pos = 0;
  while (pos < pattern.size()) {
    const char32_t codePoint = NextCodePoint(pattern, pos);
    if (codePoint == U'*') {
      m_loops |= std::uint64_t{1} << elements.size();
      continue;
    }
    if (elements.size() == kMaxStates) {
      m_shape = Shape::Long;
      return;
    }
    const std::uint64_t bit = std::uint64_t{1} << elements.size();
    elements.push_back(codePoint);
    if (codePoint == U'?') m_anyLetter |= bit;
  }
  m_accept = std::uint64_t{1} << elements.size();

  m_ascii.fill(m_anyLetter);
  for (std::size_t i = 0; i < elements.size(); ++i) {
    const char32_t codePoint = elements[i];
    const std::uint64_t bit = std::uint64_t{1} << i;
    if (codePoint == U'?') continue;
    if (codePoint < m_ascii.size()) {
      m_ascii[codePoint] |= bit;
      continue;
    }
    auto found = std::ranges::lower_bound(m_letters, codePoint, {}, &Letter::codePoint);
    if (found == m_letters.end() || found->codePoint != codePoint) {
      found = m_letters.insert(found, Letter{codePoint, m_anyLetter});
    }
    found->positions |= bit;
  }
}

std::uint64_t WildcardPattern::PositionsOf(char32_t codePoint) const {
  if (codePoint < m_ascii.size()) return m_ascii[codePoint];
  const auto found = std::ranges::lower_bound(m_letters, codePoint, {}, &Letter::codePoint);
  return found != m_letters.end() && found->codePoint == codePoint ? found->positions : m_anyLetter;
}

bool WildcardPattern::MatchesStates(std::u16string_view text) const {
  std::uint64_t reached = 1;
  std::size_t pos = 0;
  while (pos < text.size()) {
    const std::uint64_t fits = PositionsOf(NextCodePoint(text, pos));
    reached = ((reached & fits) << 1) | (reached & m_loops);
    if (reached == 0) return false;
  }
  return (reached & m_accept) != 0;
}

// Takes the first place for what follows each "*": a later place never leaves more text behind it.
bool WildcardPattern::MatchesLong(std::u16string_view text) const {
  constexpr auto kNowhere = std::u16string_view::npos;
  const std::u16string_view pattern = m_pattern;
  std::size_t t = 0;
  std::size_t p = 0;
  std::size_t behindStar = kNowhere;
  std::size_t retryAt = 0;
  while (t < text.size()) {
    if (p < pattern.size() && pattern[p] == u'*') {
      behindStar = ++p;
      retryAt = t;
      continue;
    }
    std::size_t nextT = t;
    const char32_t letter = NextCodePoint(text, nextT);
    if (p < pattern.size()) {
      std::size_t nextP = p;
      const char32_t wanted = NextCodePoint(pattern, nextP);
      if (wanted == U'?' || wanted == letter) {
        t = nextT;
        p = nextP;
        continue;
      }
    }
    if (behindStar == kNowhere) return false;
    NextCodePoint(text, retryAt);
    t = retryAt;
    p = behindStar;
  }
  while (p < pattern.size() && pattern[p] == u'*') ++p;
  return p == pattern.size();
}

bool WildcardPattern::Matches(std::u16string_view text) const {
  switch (m_shape) {
    case Shape::Literal:
      return text == m_prefix;
    case Shape::Prefix:
      return text.starts_with(m_prefix);
    case Shape::Contains:
      return text.find(m_pattern) != std::u16string_view::npos;
    case Shape::States:
      return MatchesStates(text);
    case Shape::Long:
      return MatchesLong(text);
  }
  return false;
}

std::optional<Date14> NormalizeDate14(std::u16string_view text) {
  constexpr std::size_t kShortest = 4;
  constexpr std::size_t kLongest = 23;
  Date14 date = {u'0', u'0', u'0', u'0', u'0', u'1', u'0',
                 u'1', u'0', u'0', u'0', u'0', u'0', u'0'};
  if (text.size() < kShortest || text.size() > kLongest) return std::nullopt;
  if (text.size() < date.size() && text.size() % 2 != 0) return std::nullopt;
  for (const char16_t unit : text) {
    if (unit < u'0' || unit > u'9') return std::nullopt;
  }
  std::copy_n(text.begin(), std::min(text.size(), date.size()), date.begin());
  return date;
}

std::vector<std::u16string> SearchWords(std::u16string_view text) {
  constexpr std::u16string_view kBlanks = u" \t\r\n";
  std::vector<std::u16string> words;
  for (std::size_t at = 0; at < text.size();) {
    const bool isPhrase = text[at] == u'"';
    if (isPhrase) ++at;
    std::size_t end = isPhrase ? text.find(u'"', at) : text.find_first_of(u" \t\r\n\"", at);
    end = std::min(end, text.size());
    if (end > at) words.push_back(FoldCase(text.substr(at, end - at)));
    at = isPhrase ? end + 1 : end;
    at = std::min(text.find_first_not_of(kBlanks, at), text.size());
  }
  return words;
}

}  // namespace hv::vex::engine
