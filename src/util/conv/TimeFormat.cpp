// util/conv/TimeFormat.cpp - times to and from text by a pattern.
#include "util/conv/TimeFormat.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "util/conv/NumberReader.h"

namespace hv::util::conv {

namespace {

constexpr std::u16string_view kLetters = u"YMDhmsfpP";
constexpr std::size_t kLongestFraction = 29;
constexpr int kFractionDigits = 10;
/// Room for a date with its time, so that printing one allocates once at most.
constexpr std::size_t kUsualLength = 32;

bool IsField(std::u16string_view token) { return kLetters.find(token[0]) != kLetters.npos; }
bool IsMark(std::u16string_view token) { return token[0] == u'p' || token[0] == u'P'; }
bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

/// The two marks are one letter when a pattern is split.
char16_t LetterOfRun(char16_t unit) { return unit == u'P' ? u'p' : unit; }

void AppendAscii(std::string_view ascii, WString* text) {
  std::array<char16_t, 32> units{};
  for (; !ascii.empty(); ascii.remove_prefix(std::min(ascii.size(), units.size()))) {
    const std::string_view part = ascii.substr(0, units.size());
    std::copy(part.begin(), part.end(), units.begin());
    text->append({units.data(), part.size()});
  }
}

/// The number with zeros between sign and digits up to the width.
void AppendPadded(std::int32_t value, std::size_t width, WString* text) {
  std::array<char, 12> digits{};
  const char* end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  std::string_view number(digits.data(), static_cast<std::size_t>(end - digits.data()));
  const std::size_t missing = width > number.size() ? width - number.size() : 0;
  if (value < 0) {
    text->append(1, u'-');
    number.remove_prefix(1);
  }
  text->append(missing, u'0');
  AppendAscii(number, text);
}

void AppendFraction(double fraction, std::size_t width, WString* text) {
  // Not a fraction at all; the text would have no point where the rule below counts from it.
  fraction = std::isfinite(fraction) ? fraction - std::floor(fraction) : 0.0;
  std::array<char, 16> buffer{};
  const char* end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), fraction,
                                  std::chars_format::fixed, kFractionDigits)
                        .ptr;
  std::string_view printed(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
  printed = printed.substr(0, std::min(width + 3, kLongestFraction));
  const std::size_t last = std::max<std::size_t>(printed.find_last_not_of('0'), 1);
  const std::size_t digits = std::max(last, width + 1) - 1;
  printed.remove_prefix(2);
  printed = printed.substr(0, digits);
  AppendAscii(printed, text);
  text->append(digits - printed.size(), u'0');
}

void AppendMark(std::u16string_view token, std::int32_t hour, WString* text) {
  const bool isSmall = token[0] == u'p';
  const bool isMorning = hour < 12;
  text->append(1, isSmall ? (isMorning ? u'a' : u'p') : (isMorning ? u'A' : u'P'));
  if (token.size() == 4) {
    text->append(token[2] == u'p' ? u".m." : u".M.");
  } else if (token.size() == 2 || token.size() == 3) {
    text->append(token[1] == u'p' ? u"m" : u"M");
  }
}

std::int32_t HourOnDial(std::int32_t hour) {
  if (hour == 0) return 12;
  return hour > 12 ? hour % 12 : hour;
}

/// A piece as the 8-bit text that the number readers take.
class LowBytes {
 public:
  explicit LowBytes(std::u16string_view piece) {
    m_size = std::min(piece.size(), m_bytes.size());
    std::transform(piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(m_size),
                   m_bytes.begin(), [](char16_t unit) { return static_cast<char>(unit & 0xFF); });
  }
  [[nodiscard]] std::string_view View() const { return {m_bytes.data(), m_size}; }

 private:
  std::array<char, 64> m_bytes;  // only what `m_size` tells is set
  std::size_t m_size = 0;
};

std::int32_t NumberOf(std::u16string_view piece) {
  // Any number of zeros may stand in front of the digits that count.
  if (piece.size() > 64) {
    const std::size_t zeros = piece.find_first_not_of(u'0');
    piece.remove_prefix(std::min(zeros, piece.size() - 1));
  }
  return ReadInt32(LowBytes(piece).View());
}

double FractionOf(std::u16string_view piece) {
  std::array<char, 66> text{'0', '.'};
  const LowBytes digits(piece);
  const std::string_view view = digits.View();
  std::copy(view.begin(), view.end(), text.begin() + 2);
  return ReadDecimal({text.data(), view.size() + 2});
}

std::int32_t YearOfTwoDigits(std::int32_t value) {
  if (value < 0 || value > 100) return value;
  return value < 60 ? 2000 + value : 1900 + value;
}

/// Hours add up; a sum that no text means seriously stops at the limits of the type.
std::int32_t AddHours(std::int32_t hour, std::int32_t more) {
  std::int32_t sum = 0;
  if (!__builtin_add_overflow(hour, more, &sum)) return sum;
  using Limits = std::numeric_limits<std::int32_t>;
  return more < 0 ? Limits::min() : Limits::max();
}

}  // namespace

void TimeFormatImp::FormatTo(WString* text, const TimeRecord& time) { Format(text, time); }

void TimeFormatImp::ParseFrom(TimeRecord* time, const WString& text) { Parse(time, text); }

bool TimeFormatImp::SetPatternMapped(std::u16string_view pattern, std::u16string_view letters) {
  if (letters.size() != kLetters.size()) return false;
  std::u16string mapped(pattern);
  for (char16_t& unit : mapped) {
    const std::size_t at = letters.find(unit);
    if (at != letters.npos) unit = kLetters[at];
  }
  return SetPattern(mapped);
}

bool TimeFormatImp::SetPattern(std::u16string_view pattern) {
  m_tokens.clear();
  m_twelveHour = pattern.find_first_of(u"pP") != pattern.npos;
  while (!pattern.empty()) {
    const char16_t letter = LetterOfRun(pattern[0]);
    const auto* end = std::ranges::find_if_not(
        pattern, [letter](char16_t unit) { return LetterOfRun(unit) == letter; });
    const auto length = static_cast<std::size_t>(end - pattern.begin());
    m_tokens.emplace_back(pattern.substr(0, length));
    pattern.remove_prefix(length);
  }
  m_fixedWidth = false;
  for (std::size_t i = 1; i < m_tokens.size(); ++i) {
    if (!IsField(m_tokens[i - 1]) || !IsField(m_tokens[i])) continue;
    if (!IsMark(m_tokens[i])) m_fixedWidth = true;
  }
  return true;
}

WString& TimeFormatImp::Format(WString* text, const TimeRecord& time) {
  text->clear();
  text->reserve(kUsualLength);
  std::size_t pending = 0;  // the first literal that isn't decided on
  for (std::size_t i = 0; i < m_tokens.size(); ++i) {
    const std::u16string& token = m_tokens[i];
    if (!IsField(token)) continue;
    // Literals belong between two fields: a pattern in brackets prints without them.
    for (; pending < i; ++pending) {
      if (!text->empty()) text->append(m_tokens[pending]);
    }
    pending = i + 1;
    const std::size_t width = token.size();
    switch (token[0]) {
      case u'Y':
        AppendPadded(width == 2 ? time.year % 100 : time.year, width, text);
        break;
      case u'M':
        AppendPadded(time.month, width, text);
        break;
      case u'D':
        AppendPadded(time.day, width, text);
        break;
      case u'h':
        AppendPadded(m_twelveHour ? HourOnDial(time.hour) : time.hour, width, text);
        break;
      case u'm':
        AppendPadded(time.minute, width, text);
        break;
      case u's':
        AppendPadded(time.second, width, text);
        break;
      case u'f':
        AppendFraction(time.fraction, width, text);
        break;
      default:
        AppendMark(token, time.hour, text);
        break;
    }
  }
  return *text;
}

TimeRecord& TimeFormatImp::Parse(TimeRecord* time, const WString& text) {
  return ParseCounted(time, text.data(), text.size());
}

TimeRecord& TimeFormatImp::ParseCounted(TimeRecord* time, const char16_t* text, std::size_t count) {
  const std::u16string_view view = text ? std::u16string_view(text, count) : u"";
  m_pieces.clear();
  if (m_fixedWidth) {
    CutFixed(view);
  } else {
    CutFree(view);
  }
  *time = Interpret();
  m_pieces.clear();
  return *time;
}

void TimeFormatImp::CutFixed(std::u16string_view text) {
  for (const std::u16string& token : m_tokens) {
    m_pieces.push_back(text.substr(0, token.size()));
    text.remove_prefix(m_pieces.back().size());
  }
}

void TimeFormatImp::CutFree(std::u16string_view text) {
  std::size_t token = 0;
  while (!text.empty()) {
    const auto take = [&text](std::size_t length) {
      const std::u16string_view piece = text.substr(0, length);
      text.remove_prefix(piece.size());
      return piece;
    };
    const auto* end = std::ranges::find_if_not(text, IsDigit);
    const std::u16string_view number = take(static_cast<std::size_t>(end - text.begin()));
    if (!number.empty()) m_pieces.push_back(number);
    if (text.empty()) break;
    if (!number.empty() && token < m_tokens.size()) ++token;
    if (m_twelveHour && token < m_tokens.size() && IsMark(m_tokens[token])) {
      m_pieces.push_back(take(m_tokens[token].size()));
      ++token;
      continue;
    }
    const std::size_t run = std::min(text.find_first_not_of(text[0]), text.size());
    const std::u16string_view literal = take(run);
    StepBehind(literal, &token);
    m_pieces.push_back(literal);
  }
}

void TimeFormatImp::StepBehind(std::u16string_view literal, std::size_t* token) {
  const std::size_t first = *token;
  while (*token < m_tokens.size() && m_tokens[*token] != literal) ++*token;
  if (*token == m_tokens.size()) return;
  if (*token > first) m_pieces.resize(*token);
  ++*token;
}

TimeRecord TimeFormatImp::Interpret() const {
  TimeRecord time;
  char16_t mark = 0;
  const std::size_t count = std::min(m_pieces.size(), m_tokens.size());
  for (std::size_t i = 0; i < count; ++i) {
    const std::u16string_view piece = m_pieces[i];
    const std::u16string& token = m_tokens[i];
    if (piece.empty()) continue;
    switch (token[0]) {
      case u'Y':
        time.year = NumberOf(piece);
        if (token.size() == 2) time.year = YearOfTwoDigits(time.year);
        break;
      case u'M':
        time.month = NumberOf(piece);
        break;
      case u'D':
        time.day = NumberOf(piece);
        break;
      case u'h':
        time.hour = AddHours(time.hour, NumberOf(piece));
        break;
      case u'm':
        time.minute = NumberOf(piece);
        break;
      case u's':
        time.second = NumberOf(piece);
        break;
      case u'f':
        time.fraction = FractionOf(piece);
        break;
      case u'p':
      case u'P':
        if (std::u16string_view(u"aApP").find(piece[0]) != std::u16string_view::npos) {
          mark = LetterOfRun(piece[0]);
        }
        break;
      default:
        break;
    }
  }
  if ((mark == u'a' || mark == u'A') && time.hour == 12) time.hour = 0;
  if (mark == u'p' && time.hour != 12) time.hour = AddHours(time.hour, 12);
  return time;
}

Ref<ITimeFormat> CreateTimeFormat() { return MakeRef<TimeFormatImp>(); }

}  // namespace hv::util::conv
