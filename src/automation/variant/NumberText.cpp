// automation/variant/NumberText.cpp - reading and writing numbers in texts.
#include "automation/variant/NumberText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace hv::automation {

namespace {

/// An exponent beyond this is beyond every type, with any number of digits that memory can hold.
constexpr std::int64_t kExponentLimit = std::int64_t{1} << 40;

bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

bool IsBlank(char16_t unit) {
  return unit == u' ' || unit == 0xA0 || (unit >= u'\t' && unit <= u'\r');
}

char16_t Upper(char16_t unit) {
  return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - u'a' + u'A') : unit;
}

/// The state of reading one text from left to right.
class Reader {
 public:
  explicit Reader(std::u16string_view text) : m_rest(text.substr(0, text.find(u'\0'))) {}

  std::optional<ParsedNumber> Read() {
    ReadMarks();
    if (Peek() == u'&') return m_seen.Any() ? std::nullopt : ReadPattern();
    if (!ReadDigits() || !ReadExponent() || !ReadTrailer()) return std::nullopt;
    Normalise();
    return std::move(m_number);
  }

 private:
  struct Marks {
    bool plus = false, minus = false, open = false, currency = false;
    [[nodiscard]] bool Any() const { return plus || minus || open || currency; }
  };

  [[nodiscard]] char16_t Peek() const { return m_rest.empty() ? u'\0' : m_rest.front(); }
  bool Accept(char16_t unit) {
    if (Peek() != unit || m_rest.empty()) return false;
    m_rest.remove_prefix(1);
    return true;
  }
  void SkipBlanks() {
    while (!m_rest.empty() && IsBlank(m_rest.front())) m_rest.remove_prefix(1);
  }

  /// Takes what may stand in front: each mark once, in any order.
  void ReadMarks() {
    for (;;) {
      SkipBlanks();
      if (!m_seen.plus && Accept(u'+')) {
        m_seen.plus = true;
      } else if (!m_seen.minus && Accept(u'-')) {
        m_seen.minus = true;
      } else if (!m_seen.open && Accept(u'(')) {
        m_seen.open = true;
      } else if (!m_seen.currency && Accept(u'$')) {
        m_seen.currency = true;
      } else {
        return;
      }
    }
  }

  std::optional<ParsedNumber> ReadPattern() {
    m_rest.remove_prefix(1);
    const char16_t kind = Upper(Peek());
    if (kind != u'H' && kind != u'O') return std::nullopt;
    m_rest.remove_prefix(1);
    const int bits = kind == u'H' ? 4 : 3;
    m_number.isPattern = true;
    bool any = false;
    for (; !m_rest.empty(); m_rest.remove_prefix(1), any = true) {
      const char16_t unit = Upper(m_rest.front());
      const int digit =
          IsDigit(unit) ? unit - u'0' : (unit >= u'A' && unit <= u'F' ? unit - u'A' + 10 : 16);
      if (digit >= 1 << bits) break;
      if (m_number.pattern >> (64 - bits) != 0) m_number.patternBeyond = true;
      m_number.pattern = (m_number.pattern << bits) | static_cast<std::uint64_t>(digit);
    }
    SkipBlanks();
    if (!any || !m_rest.empty()) return std::nullopt;
    return std::move(m_number);
  }

  bool ReadDigits() {
    bool any = false;
    bool behindPoint = false;
    for (; !m_rest.empty(); m_rest.remove_prefix(1)) {
      const char16_t unit = m_rest.front();
      if (IsDigit(unit)) {
        any = true;
        m_number.digits += static_cast<char>(unit);
        if (behindPoint) --m_number.exponent;
      } else if (unit == u'.' && !behindPoint) {
        behindPoint = true;
      } else if (unit != u',' || !any) {
        break;
      }
    }
    return any;
  }

  bool ReadExponent() {
    if (Upper(Peek()) != u'E') return true;
    m_rest.remove_prefix(1);
    const bool negative = Accept(u'-');
    if (!negative) Accept(u'+');
    if (!IsDigit(Peek())) return false;
    std::int64_t exponent = 0;
    for (; IsDigit(Peek()); m_rest.remove_prefix(1)) {
      exponent = std::min(exponent * 10 + (m_rest.front() - u'0'), kExponentLimit);
    }
    m_number.exponent += negative ? -exponent : exponent;
    return true;
  }

  /// Takes what may stand behind: a sign or a `$` that didn't stand in front, the parenthesis that
  /// did.
  bool ReadTrailer() {
    bool closed = false;
    for (;;) {
      SkipBlanks();
      const bool isSigned = m_seen.plus || m_seen.minus;
      if (!isSigned && Accept(u'-')) {
        m_seen.minus = true;
      } else if (!isSigned && Accept(u'+')) {
        m_seen.plus = true;
      } else if (!m_seen.currency && Accept(u'$')) {
        m_seen.currency = true;
      } else if (m_seen.open && !closed && Accept(u')')) {
        closed = true;
      } else {
        break;
      }
    }
    m_number.negative = m_seen.minus || m_seen.open;
    return m_rest.empty() && closed == m_seen.open;
  }

  void Normalise() {
    std::string& digits = m_number.digits;
    const std::size_t last = digits.find_last_not_of('0');
    if (last == std::string::npos) {
      digits.clear();
      m_number.exponent = 0;
      return;
    }
    m_number.exponent += static_cast<std::int64_t>(digits.size() - 1 - last);
    digits.erase(last + 1);
    digits.erase(0, digits.find_first_not_of('0'));
  }

  std::u16string_view m_rest;
  Marks m_seen;
  ParsedNumber m_number;
};

}  // namespace

std::optional<ParsedNumber> ParseNumberText(std::u16string_view text) {
  return Reader(text).Read();
}

std::optional<double> ParsedToDouble(const ParsedNumber& number) {
  // Patterns count as 32-bit numbers here; one that isn't has no place among the real numbers.
  constexpr std::uint64_t kGreatestPattern = 0x7FFFFFFF;
  if (number.isPattern) {
    if (number.patternBeyond || number.pattern > kGreatestPattern) return std::nullopt;
    return static_cast<double>(number.pattern);
  }
  if (number.digits.empty()) return 0.0;
  // The place of the first digit tells what can't be a double, before an exponent that the reader
  // may not be able to count.
  const std::int64_t place = number.exponent + static_cast<std::int64_t>(number.digits.size());
  if (place > 400) return std::nullopt;
  double value = 0;
  if (place > -400) {
    const std::string text = number.digits + "e" + std::to_string(number.exponent);
    const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
    if (read.ec == std::errc::result_out_of_range) {
      if (place > 0) return std::nullopt;
      value = 0;
    }
  }
  return number.negative ? -value : value;
}

std::optional<SignedMagnitude> ParsedToInteger(const ParsedNumber& number, int shift) {
  constexpr std::int64_t kMostDigits = 20;
  const std::string& digits = number.digits;
  const std::int64_t whole = number.exponent + static_cast<std::int64_t>(digits.size()) + shift;
  if (digits.empty() || whole < 0) return SignedMagnitude{};
  if (whole > kMostDigits) return std::nullopt;
  std::string front = digits.substr(0, static_cast<std::size_t>(whole));
  front.append(static_cast<std::size_t>(whole) - front.size(), '0');
  std::uint64_t value = 0;
  if (!front.empty()) {
    const auto read = std::from_chars(front.data(), front.data() + front.size(), value);
    if (read.ec != std::errc{}) return std::nullopt;
  }
  if (static_cast<std::size_t>(whole) < digits.size()) {
    // No zeros stand at the end, so a lone 5 is the exact half.
    const std::string_view rest = std::string_view(digits).substr(static_cast<std::size_t>(whole));
    const bool up = rest == "5" ? value % 2 == 1 : rest.front() >= '5';
    if (up && __builtin_add_overflow(value, std::uint64_t{1}, &value)) return std::nullopt;
  }
  return SignedMagnitude{number.negative && value != 0, value};
}

std::string FormatReal(double value, int digits) {
  if (std::isnan(value)) return "1.#QNAN";
  if (std::isinf(value)) return value < 0 ? "-1.#INF" : "1.#INF";
  if (value == 0) return "0";
  char buffer[64] = {};
  const auto written =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, digits);
  std::replace(buffer, written.ptr, 'e', 'E');
  return std::string(buffer, written.ptr);
}

std::optional<Decimal> RealToDecimal(double value, int digits) {
  if (!std::isfinite(value)) return std::nullopt;
  char buffer[64] = {};
  const auto written = std::to_chars(buffer, buffer + sizeof buffer, std::fabs(value),
                                     std::chars_format::scientific, digits - 1);
  const std::string_view text(buffer, static_cast<std::size_t>(written.ptr - buffer));
  const std::size_t mark = text.find('e');
  std::string significant(1, text.front());
  significant += text.substr(2, mark - 2);
  const int exponent = std::atoi(text.data() + mark + 1) - (digits - 1);
  const std::size_t kept = significant.find_last_not_of('0') + 1;
  const auto dropped = static_cast<int>(significant.size() - kept);
  significant.erase(kept);
  return DecimalFromDigits(value < 0, significant, exponent + dropped);
}

}  // namespace hv::automation
