// automation/variant/DateText.cpp - reading and writing dates in texts.
#include "automation/variant/DateText.h"

#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <span>
#include <vector>

#include "automation/variant/VariantTime.h"

namespace hv::automation {

namespace {

constexpr std::array<std::string_view, 12> kMonths = {
    "january", "february", "march",     "april",   "may",      "june",
    "july",    "august",   "september", "october", "november", "december"};
constexpr std::array<std::string_view, 7> kWeekdays = {"sunday",   "monday", "tuesday", "wednesday",
                                                       "thursday", "friday", "saturday"};
constexpr std::size_t kShortName = 3;

/// The place of a name given in full or by its first three letters, counted from 1; 0 for none.
int FindName(std::span<const std::string_view> names, std::string_view word) {
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (word == names[i] || word == names[i].substr(0, kShortName)) return static_cast<int>(i) + 1;
  }
  return 0;
}

struct Figure {
  int value = 0;
  std::size_t digits = 0;
};

struct Calendar {
  int year = 0;
  int month = 0;
  int day = 0;
};

bool Exists(const Calendar& date) {
  // Two-digit years are told apart by the calendar arithmetic; a leap year must be known here.
  const int year = date.year < 50    ? date.year + 2000
                   : date.year < 100 ? date.year + 1900
                                     : date.year;
  return date.year >= 0 && date.year <= 9999 && date.month >= 1 && date.day >= 1 &&
         std::chrono::year_month_day{std::chrono::year{year},
                                     std::chrono::month{static_cast<unsigned>(date.month)},
                                     std::chrono::day{static_cast<unsigned>(date.day)}}
             .ok();
}

std::optional<Calendar> FirstThatExists(std::initializer_list<Calendar> candidates) {
  for (const Calendar& candidate : candidates) {
    if (Exists(candidate)) return candidate;
  }
  return std::nullopt;
}

/// Takes a text apart from left to right: words, figures of a date, one time.
class Reader {
 public:
  explicit Reader(std::u16string_view text) : m_rest(text.substr(0, text.find(u'\0'))) {}

  std::optional<double> Read(int currentYear) {
    SkipBlanks();
    while (!m_rest.empty()) {
      if (!ReadItem()) return std::nullopt;
      if (!SkipSeparators()) return std::nullopt;
    }
    const bool hasDate = !m_figures.empty() || m_month != 0;
    if (!hasDate && !m_hasTime) return std::nullopt;
    SystemTime time = m_time;
    time.year = 1899;
    time.month = 12;
    time.day = 30;
    if (hasDate) {
      const std::optional<Calendar> calendar = ArrangeDate(currentYear);
      if (!calendar) return std::nullopt;
      time.year = static_cast<std::uint16_t>(calendar->year);
      time.month = static_cast<std::uint16_t>(calendar->month);
      time.day = static_cast<std::uint16_t>(calendar->day);
    }
    double date = 0;
    if (!SystemTimeToVariantTime(time, &date)) return std::nullopt;
    return date;
  }

 private:
  static bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }
  static bool IsLetter(char16_t unit) {
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
  }
  [[nodiscard]] char16_t Peek() const { return m_rest.empty() ? u'\0' : m_rest.front(); }
  bool SkipBlanks() {
    const std::size_t before = m_rest.size();
    while (Peek() == u' ' || Peek() == u'\t' || Peek() == u'\xA0') m_rest.remove_prefix(1);
    return m_rest.size() != before;
  }

  /// Goes to the next item. False if the text ends with something else than blanks.
  bool SkipSeparators() {
    bool open = false;
    while (!m_rest.empty()) {
      if (SkipBlanks()) continue;
      const char16_t unit = m_rest.front();
      if (unit != u'/' && unit != u'-' && unit != u',') break;
      open = true;
      m_rest.remove_prefix(1);
    }
    return !open || !m_rest.empty();
  }

  bool ReadItem() {
    if (IsLetter(Peek())) return ReadWord();
    const std::optional<Figure> figure = ReadFigure();
    if (!figure) return false;
    if (Peek() == u':' || Peek() == u'.') return ReadTime(figure->value);
    if (const std::optional<bool> isAfternoon = ReadHalf()) {
      return SetTime(figure->value, 0, 0, isAfternoon);
    }
    m_figures.push_back(*figure);
    // A fourth figure has no meaning; stopping here bounds what a long text can cost.
    return m_figures.size() <= 3;
  }

  std::string TakeWord() {
    std::string word;
    for (; IsLetter(Peek()); m_rest.remove_prefix(1)) {
      word += static_cast<char>(Peek() | 0x20);
    }
    return word;
  }

  bool ReadWord() {
    const std::string word = TakeWord();
    if (const int month = FindName(kMonths, word); month != 0) {
      if (m_month != 0) return false;
      m_month = month;
      return true;
    }
    return FindName(kWeekdays, word) != 0;
  }

  std::optional<Figure> ReadFigure() {
    constexpr std::size_t kMostDigits = 5;
    Figure figure;
    for (; IsDigit(Peek()); m_rest.remove_prefix(1)) {
      if (++figure.digits > kMostDigits) return std::nullopt;
      figure.value = figure.value * 10 + (Peek() - u'0');
    }
    if (figure.digits == 0) return std::nullopt;
    return figure;
  }

  /// Takes AM or PM if that comes next; true for PM.
  std::optional<bool> ReadHalf() {
    const std::u16string_view before = m_rest;
    SkipBlanks();
    const std::string word = TakeWord();
    if (word == "am" || word == "a") return false;
    if (word == "pm" || word == "p") return true;
    m_rest = before;
    return std::nullopt;
  }

  /// Takes the rest of a time, whose hour is read already.
  bool ReadTime(int hour) {
    int parts[2] = {0, 0};
    for (int& part : parts) {
      if (Peek() != u':' && Peek() != u'.') break;
      m_rest.remove_prefix(1);
      SkipBlanks();
      const std::optional<Figure> figure = ReadFigure();
      if (!figure) return false;
      part = figure->value;
    }
    return SetTime(hour, parts[0], parts[1], ReadHalf());
  }

  bool SetTime(int hour, int minute, int second, std::optional<bool> isAfternoon) {
    if (m_hasTime || hour > 23 || minute > 59 || second > 59) return false;
    if (isAfternoon && hour == 12 && !*isAfternoon) hour = 0;
    if (isAfternoon && hour < 12 && *isAfternoon) hour += 12;
    m_hasTime = true;
    m_time.hour = static_cast<std::uint16_t>(hour);
    m_time.minute = static_cast<std::uint16_t>(minute);
    m_time.second = static_cast<std::uint16_t>(second);
    return true;
  }

  [[nodiscard]] std::optional<Calendar> ArrangeDate(int currentYear) const {
    const auto at = [this](std::size_t i) { return m_figures[i].value; };
    if (m_month != 0) {
      if (m_figures.size() == 1) {
        return FirstThatExists({{currentYear, m_month, at(0)}, {at(0), m_month, 1}});
      }
      if (m_figures.size() == 2) {
        return FirstThatExists({{at(1), m_month, at(0)}, {at(0), m_month, at(1)}});
      }
      return std::nullopt;
    }
    if (m_figures.size() == 2) {
      return FirstThatExists({{currentYear, at(0), at(1)},
                              {currentYear, at(1), at(0)},
                              {at(1), at(0), 1},
                              {at(0), at(1), 1}});
    }
    if (m_figures.size() != 3) return std::nullopt;
    if (at(0) == 0 || at(0) > 31 || m_figures[0].digits > 2) {
      return FirstThatExists({{at(0), at(1), at(2)}, {at(0), at(2), at(1)}});
    }
    return FirstThatExists({{at(2), at(0), at(1)}, {at(2), at(1), at(0)}});
  }

  std::u16string_view m_rest;
  std::vector<Figure> m_figures;
  int m_month = 0;
  bool m_hasTime = false;
  SystemTime m_time;
};

}  // namespace

std::optional<std::string> FormatDate(double date) {
  SystemTime time;
  if (std::isnan(date) || !VariantTimeToSystemTime(date, &time)) return std::nullopt;
  const double day = std::trunc(date);
  char buffer[64] = {};
  std::string text;
  if (day != 0) {
    std::snprintf(buffer, sizeof buffer, "%d/%d/%d", time.month, time.day, time.year);
    text = buffer;
  }
  if (day == 0 || date != day) {
    const int hour = time.hour % 12 == 0 ? 12 : time.hour % 12;
    std::snprintf(buffer, sizeof buffer, "%s%d:%02d:%02d %s", text.empty() ? "" : " ", hour,
                  time.minute, time.second, time.hour < 12 ? "AM" : "PM");
    text += buffer;
  }
  return text;
}

std::optional<double> ParseDateText(std::u16string_view text, int currentYear) {
  return Reader(text).Read(currentYear);
}

int CurrentYear() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return local.tm_year + 1900;
}

}  // namespace hv::automation
