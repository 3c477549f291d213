// util/conv/TimeFormat.cpp - times to and from text by a pattern.
#include "util/conv/TimeFormat.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "util/conv/Digits.h"
#include "util/conv/NumberReader.h"

namespace hv::util::conv {

namespace {

constexpr std::u16string_view kLetters = u"YMDhmsfpP";
/// A fraction is rounded to that many decimals before it is cut.
constexpr std::size_t kDecimals = 10;
constexpr std::uint64_t kDecimalUnits = 10'000'000'000;
/// The longest number that a field without zeros in front prints: all digits and a sign.
constexpr std::size_t kLongestNumber = 11;
/// The longest mark, "a.m.".
constexpr std::size_t kLongestMark = 4;

bool IsField(std::u16string_view token) {
  switch (token[0]) {
    case u'Y':
    case u'M':
    case u'D':
    case u'h':
    case u'm':
    case u's':
    case u'f':
    case u'p':
    case u'P':
      return true;
    default:
      return false;
  }
}
bool IsMark(std::u16string_view token) { return token[0] == u'p' || token[0] == u'P'; }
bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

/// The two marks are one letter when a pattern is split.
char16_t LetterOfRun(char16_t unit) { return unit == u'P' ? u'p' : unit; }

char16_t* PutText(std::u16string_view text, char16_t* out) {
  return std::copy(text.begin(), text.end(), out);
}

/// The number with zeros between sign and digits up to the width.
char16_t* PutNumber(std::int32_t value, std::size_t width, char16_t* out) {
  if (width == 2 && value >= 0 && value < 100) {
    return PutTwoDigits(out, static_cast<std::uint32_t>(value));
  }
  if (width == 4 && value >= 0 && value < 10'000) {
    return PutFourDigits(out, static_cast<std::uint32_t>(value));
  }
  std::array<char, kLongestNumber + 1> digits{};
  const char* end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  std::string_view number(digits.data(), static_cast<std::size_t>(end - digits.data()));
  const std::size_t missing = width > number.size() ? width - number.size() : 0;
  if (value < 0) {
    *out++ = u'-';
    number.remove_prefix(1);
  }
  out = std::fill_n(out, missing, u'0');
  return std::copy(number.begin(), number.end(), out);
}

/// A fraction in units of its last decimal, rounded to the nearest, ties to the even one. Up to
/// 10^10, which stands for a whole second.
std::uint64_t DecimalsOf(double fraction) {
  if (fraction == 0) return 0;
  constexpr double kTwoTo64 = 18'446'744'073'709'551'616.0;
  constexpr double kLastWhole = 1.0 / 2048;
  if (fraction >= kLastWhole) {
    // All bits of such a double lie above 2^-64, so that the product has no error.
    __extension__ using Wide = unsigned __int128;
    const Wide product =
        static_cast<Wide>(static_cast<std::uint64_t>(fraction * kTwoTo64)) * kDecimalUnits;
    const auto whole = static_cast<std::uint64_t>(product >> 64);
    const auto rest = static_cast<std::uint64_t>(product);
    constexpr std::uint64_t kHalf = std::uint64_t{1} << 63;
    return whole + (rest > kHalf || (rest == kHalf && whole % 2 == 1) ? 1 : 0);
  }
  std::array<char, 16> text{};
  char* end = std::to_chars(text.data(), text.data() + text.size(), fraction,
                            std::chars_format::fixed, kDecimals)
                  .ptr;
  std::uint64_t decimals = 0;
  std::from_chars(text.data() + 2, end, decimals);  // behind "0."
  return decimals;
}

char16_t* PutFraction(double fraction, std::size_t width, char16_t* out) {
  // What is no fraction has none; the decimals below couldn't hold it.
  fraction = std::isfinite(fraction) ? fraction - std::floor(fraction) : 0.0;
  const std::uint64_t decimals = DecimalsOf(fraction) % kDecimalUnits;
  std::array<char16_t, kDecimals> digits{};
  auto rest = static_cast<std::uint32_t>(decimals % 100'000'000);
  PutTwoDigits(digits.data(), static_cast<std::uint32_t>(decimals / 100'000'000));
  PutFourDigits(digits.data() + 2, rest / 10'000);
  PutFourDigits(digits.data() + 6, rest % 10'000);
  // One digit more than the run has is looked at, and shown unless it is zero.
  const std::size_t shown =
      width < kDecimals && digits[width] != u'0' ? width + 1 : std::min(width, kDecimals);
  out = PutText({digits.data(), shown}, out);
  return std::fill_n(out, width > shown ? width - shown : 0, u'0');
}

char16_t* PutMark(std::u16string_view token, std::int32_t hour, char16_t* out) {
  const bool isSmall = token[0] == u'p';
  const bool isMorning = hour < 12;
  *out++ = isSmall ? (isMorning ? u'a' : u'p') : (isMorning ? u'A' : u'P');
  if (token.size() == 4) return PutText(token[2] == u'p' ? u".m." : u".M.", out);
  if (token.size() == 2 || token.size() == 3) return PutText(token[1] == u'p' ? u"m" : u"M", out);
  return out;
}

/// The field that a letter prints and reads as it stands; null for all others.
std::int32_t TimeRecord::*PlainField(char16_t letter) {
  switch (letter) {
    case u'M':
      return &TimeRecord::month;
    case u'D':
      return &TimeRecord::day;
    case u'm':
      return &TimeRecord::minute;
    case u's':
      return &TimeRecord::second;
    default:
      return nullptr;
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
  if (const auto number = NumberOfDigits(piece)) return static_cast<std::int32_t>(*number);
  // Any number of zeros may stand in front of the digits that count.
  if (piece.size() > 64) {
    const std::size_t zeros = piece.find_first_not_of(u'0');
    piece.remove_prefix(std::min(zeros, piece.size() - 1));
  }
  return ReadInt32(LowBytes(piece).View());
}

double FractionOf(std::u16string_view piece) {
  // Both are doubles without an error, so that the quotient is the nearest one.
  static constexpr std::array<double, 10> kPowers = {1e0, 1e1, 1e2, 1e3, 1e4,
                                                     1e5, 1e6, 1e7, 1e8, 1e9};
  if (const auto number = NumberOfDigits(piece)) return *number / kPowers[piece.size()];
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
  PreparePrinting();
  return true;
}

void TimeFormatImp::PreparePrinting() {
  m_steps.clear();
  std::size_t longest = 0;
  std::u16string literal;
  for (std::size_t i = 0; i < m_tokens.size(); ++i) {
    if (!IsField(m_tokens[i])) {
      literal += m_tokens[i];
      continue;
    }
    // Literals belong between two fields: a pattern in brackets prints without them.
    if (m_steps.empty()) literal.clear();
    longest += literal.size() + kLongestMark + std::max(m_tokens[i].size() + 1, kLongestNumber);
    m_steps.push_back({std::move(literal), i});
    literal.clear();
  }
  m_scratch.resize(longest);
}

WString& TimeFormatImp::Format(WString* text, const TimeRecord& time) {
  char16_t* const begin = m_scratch.data();
  char16_t* out = begin;
  for (const Step& step : m_steps) {
    const std::u16string& token = m_tokens[step.token];
    const std::size_t width = token.size();
    out = PutText(step.literal, out);
    if (const auto field = PlainField(token[0])) {
      out = PutNumber(time.*field, width, out);
      continue;
    }
    switch (token[0]) {
      case u'Y':
        out = PutNumber(width == 2 ? time.year % 100 : time.year, width, out);
        break;
      case u'h':
        out = PutNumber(m_twelveHour ? HourOnDial(time.hour) : time.hour, width, out);
        break;
      case u'f':
        out = PutFraction(time.fraction, width, out);
        break;
      default:
        out = PutMark(token, time.hour, out);
        break;
    }
  }
  *text = std::u16string_view(begin, static_cast<std::size_t>(out - begin));
  return *text;
}

TimeRecord& TimeFormatImp::Parse(TimeRecord* time, const WString& text) {
  return ParseCounted(time, text.data(), text.size());
}

TimeRecord& TimeFormatImp::ParseCounted(TimeRecord* time, const char16_t* text, std::size_t count) {
  const std::u16string_view view = text ? std::u16string_view(text, count) : u"";
  if (ReadAsPrinted(view, time)) return *time;
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

bool TimeFormatImp::ReadAsPrinted(std::u16string_view text, TimeRecord* time) const {
  if (m_fixedWidth || m_twelveHour) return false;
  TimeRecord read;
  for (const std::u16string& token : m_tokens) {
    if (text.empty()) break;
    std::size_t length = 0;
    if (IsField(token)) {
      while (length < text.size() && IsDigit(text[length])) ++length;
      if (length == 0) return false;
      ReadField(token, text.substr(0, length), &read);
    } else {
      while (length < text.size() && text[length] == token[0]) ++length;
      if (length != token.size()) return false;
    }
    text.remove_prefix(length);
  }
  *time = read;
  return true;
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
    std::u16string_view literal;
    if (!text.empty()) {
      if (!number.empty() && token < m_tokens.size()) ++token;
      if (m_twelveHour && token < m_tokens.size() && IsMark(m_tokens[token])) {
        literal = take(m_tokens[token].size());
        ++token;
      } else {
        literal = take(std::min(text.find_first_not_of(text[0]), text.size()));
        // The number belongs to the field before its literal: fields that are left out are those
        // in front of it.
        StepBehind(literal, &token);
      }
    }
    if (!number.empty()) m_pieces.push_back(number);
    if (!literal.empty()) m_pieces.push_back(literal);
  }
}

void TimeFormatImp::StepBehind(std::u16string_view literal, std::size_t* token) {
  const std::size_t first = *token;
  while (*token < m_tokens.size() && m_tokens[*token] != literal) ++*token;
  if (*token == m_tokens.size()) return;
  m_pieces.resize(m_pieces.size() + (*token - first));
  ++*token;
}

void TimeFormatImp::ReadField(std::u16string_view token, std::u16string_view piece,
                              TimeRecord* time) {
  if (const auto field = PlainField(token[0])) {
    time->*field = NumberOf(piece);
    return;
  }
  switch (token[0]) {
    case u'Y':
      time->year = NumberOf(piece);
      if (token.size() == 2) time->year = YearOfTwoDigits(time->year);
      break;
    case u'h':
      time->hour = AddHours(time->hour, NumberOf(piece));
      break;
    case u'f':
      time->fraction = FractionOf(piece);
      break;
    default:
      break;
  }
}

TimeRecord TimeFormatImp::Interpret() const {
  TimeRecord time;
  char16_t mark = 0;
  const std::size_t count = std::min(m_pieces.size(), m_tokens.size());
  for (std::size_t i = 0; i < count; ++i) {
    const std::u16string_view piece = m_pieces[i];
    if (piece.empty()) continue;
    if (!IsMark(m_tokens[i])) {
      ReadField(m_tokens[i], piece, &time);
    } else if (std::u16string_view(u"aApP").find(piece[0]) != std::u16string_view::npos) {
      mark = LetterOfRun(piece[0]);
    }
  }
  if ((mark == u'a' || mark == u'A') && time.hour == 12) time.hour = 0;
  if (mark == u'p' && time.hour != 12) time.hour = AddHours(time.hour, 12);
  return time;
}

Ref<ITimeFormat> CreateTimeFormat() { return MakeRef<TimeFormatImp>(); }

}  // namespace hv::util::conv
