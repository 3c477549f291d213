// bench/ConvBench.cpp - times and numbers to and from text beside the same done with the standard
// library's conversions, and the order of mixed values beside a sort of plain numbers.
// Usage: conv_bench [COUNT]   (1000000 unless told otherwise)
#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <numeric>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <storefabric/Variant.h>

#include "automation/conv/AutomationDate.h"
#include "automation/conv/DisplayText.h"
#include "automation/conv/ValueOrder.h"
#include "util/conv/NumberReader.h"
#include "util/conv/NumericFormat.h"
#include "util/conv/TimeFormat.h"
#include "util/conv/TimeValue.h"

namespace {

using hv::Variant;
using hv::WString;
using namespace hv::util::conv;

double ProcessorSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

struct Times {
  double ours = 0;
  double yardstick = 0;
};

/// Medians of processor seconds; the two take turns, so that both meet the same machine.
template <class Ours, class Yardstick>
Times Measure(Ours ours, Yardstick yardstick) {
  constexpr std::size_t kRounds = 7;
  std::array<double, kRounds> times{};
  std::array<double, kRounds> yardsticks{};
  for (std::size_t i = 0; i < kRounds; ++i) {
    const double start = ProcessorSeconds();
    ours();
    const double middle = ProcessorSeconds();
    yardstick();
    times[i] = middle - start;
    yardsticks[i] = ProcessorSeconds() - middle;
  }
  std::ranges::sort(times);
  std::ranges::sort(yardsticks);
  return {times[kRounds / 2], yardsticks[kRounds / 2]};
}

void Print(const char* what, std::size_t count, Times times) {
  const auto each = [count](double seconds) { return 1e9 * seconds / static_cast<double>(count); };
  std::printf("%-34s %10.1f %12.1f %7.2f\n", what, each(times.ours), each(times.yardstick),
              times.ours / times.yardstick);
}

/// Keeps the work from being left out.
volatile double g_sink = 0;

void Require(bool condition, const char* what) {
  if (condition) return;
  std::fprintf(stderr, "not the same: %s\n", what);
  std::exit(1);
}

/// Numbers to text and back.
void MeasureNumbers(const std::vector<double>& numbers) {
  const std::size_t count = numbers.size();
  std::vector<std::string> texts(count);
  std::vector<std::u16string> wide(count);
  for (std::size_t i = 0; i < count; ++i) {
    texts[i] = ShortestText(numbers[i]);
    wide[i].assign(texts[i].begin(), texts[i].end());
    Require(ReadDecimal(texts[i]) == numbers[i], "a number read");
  }
  Print("print a number", count,
        Measure(
            [&] {
              for (const double number : numbers) g_sink = ShortestText(number).back();
            },
            [&] {
              std::array<char, 64> text{};
              for (const double number : numbers)
                g_sink = *(std::to_chars(text.data(), text.data() + 64, number).ptr - 1);
            }));
  const auto fromChars = [&] {
    for (const std::string& text : texts) {
      double value = 0;
      std::from_chars(text.data(), text.data() + text.size(), value);
      g_sink = value;
    }
  };
  Print("read a number", count,
        Measure(
            [&] {
              for (const std::string& text : texts) g_sink = ReadDecimal(text);
            },
            fromChars));
  const auto format = CreateNumericFormat();
  Print("read a wide number by its format", count,
        Measure(
            [&] {
              for (const std::u16string& text : wide)
                g_sink = format->ToDouble(text.c_str(), nullptr);
            },
            fromChars));
}

/// A moment by the standard library alone.
struct Moment {
  std::chrono::year_month_day day;
  std::uint32_t second = 0;  ///< of the day
  std::uint64_t nanosecond = 0;
};

constexpr std::chrono::sys_days kOrigin = std::chrono::year{1904} / 1 / 1;

Moment MomentOf(const TimeValue& time) {
  const std::chrono::sys_seconds seconds = kOrigin + std::chrono::seconds{time.seconds};
  const auto day = std::chrono::floor<std::chrono::days>(seconds);
  return {std::chrono::year_month_day{day}, static_cast<std::uint32_t>((seconds - day).count()),
          static_cast<std::uint64_t>(static_cast<double>(time.fraction) * 0x1p-64 * 1e9)};
}

/// The digits behind a leading 1, which holds their zeros.
char* PutPadded(std::uint64_t number, std::uint64_t one, char* out) {
  std::array<char, 16> digits{};
  const char* end = std::to_chars(digits.data(), digits.data() + 16, one + number).ptr;
  return std::copy(static_cast<const char*>(digits.data()) + 1, end, out);
}

/// The fields in an order, with a literal behind each ('\0' for none) and some decimals.
char* PutMoment(const Moment& moment, std::string_view order, std::string_view literals,
                char* out) {
  for (std::size_t i = 0; i < order.size(); ++i) {
    switch (order[i]) {
      case 'Y':
        out =
            PutPadded(static_cast<std::uint64_t>(static_cast<int>(moment.day.year())), 10'000, out);
        break;
      case 'M':
        out = PutPadded(static_cast<unsigned>(moment.day.month()), 100, out);
        break;
      case 'D':
        out = PutPadded(static_cast<unsigned>(moment.day.day()), 100, out);
        break;
      case 'h':
        out = PutPadded(moment.second / 3600, 100, out);
        break;
      case 'm':
        out = PutPadded(moment.second / 60 % 60, 100, out);
        break;
      case 's':
        out = PutPadded(moment.second % 60, 100, out);
        break;
      case 'n':
        out = PutPadded(moment.nanosecond, 1'000'000'000, out);
        break;
      default:
        out = PutPadded(moment.nanosecond / 1'000'000, 1'000, out);
        break;
    }
    if (literals[i] != '\0') *out++ = literals[i];
  }
  return out;
}

/// Seconds since 1904 from the fields, whose order and widths are told.
std::int64_t ReadMoment(const char* text, std::string_view order, std::string_view widths) {
  int year = 0;
  std::array<int, 128> field{};
  for (std::size_t i = 0; i < order.size(); ++i) {
    const int width = widths[i] - '0';
    int& value = order[i] == 'Y' ? year : field[static_cast<unsigned char>(order[i])];
    std::from_chars(text, text + width, value);
    text += width + 1;
    if (order.size() == 9) --text;  // digits alone have nothing in between
  }
  const std::chrono::sys_days day = std::chrono::year{year} /
                                    std::chrono::month{static_cast<unsigned>(field['M'])} /
                                    std::chrono::day{static_cast<unsigned>(field['D'])};
  g_sink = field['f'] + field['u'] + field['n'];
  return std::chrono::seconds{day - kOrigin}.count() + field['h'] * 3600 + field['m'] * 60 +
         field['s'];
}

/// Times to text and back, beside the standard library's calendar and conversions of fields.
void MeasureTimes(const std::vector<TimeValue>& times) {
  constexpr std::string_view kNone("\0\0\0\0\0\0\0\0", 8);
  constexpr std::string_view kLiterals(".. ::.\0", 7);
  const std::size_t count = times.size();
  std::vector<std::string> texts(count);
  for (std::size_t i = 0; i < count; ++i) texts[i] = times[i].ToText();

  std::string digits;
  std::array<char, 64> bare{};
  for (const TimeValue& time : times) {
    const char* end = PutMoment(MomentOf(time), "YMDhmsn", kNone, bare.data());
    time.ToText(&digits);
    Require(digits == std::string_view(bare.data(), static_cast<std::size_t>(end - bare.data())),
            "23 digits");
    const TimeValue back = TimeValue::FromText(digits);
    Require(back.seconds == time.seconds &&
                back.seconds == ReadMoment(digits.data(), "YMDhmsfun", "422222333"),
            "23 digits read");
  }
  Print("print 23 digits", count,
        Measure(
            [&] {
              for (const TimeValue& time : times) {
                time.ToText(&digits);
                g_sink = digits[22];
              }
            },
            [&] {
              for (const TimeValue& time : times)
                g_sink = *(PutMoment(MomentOf(time), "YMDhmsn", kNone, bare.data()) - 1);
            }));
  Print("read 23 digits", count,
        Measure(
            [&] {
              for (const std::string& text : texts)
                g_sink = static_cast<double>(TimeValue::FromText(text).seconds);
            },
            [&] {
              for (const std::string& text : texts)
                g_sink = static_cast<double>(ReadMoment(text.data(), "YMDhmsfun", "422222333"));
            }));

  // Whole milliseconds, of which the pattern shows no digit more.
  std::vector<TimeRecord> records(count);
  for (std::size_t i = 0; i < count; ++i) {
    TimeParts parts = times[i].ToParts();
    parts.microsecond = parts.nanosecond = 0;
    records[i] = TimeValue::FromParts(parts).ToRecord();
  }
  const auto format = CreateTimeFormat();
  format->SetPattern(u"DD.MM.YYYY hh:mm:ss.fff");
  WString text;
  std::vector<std::string> narrow(count);
  std::vector<WString> printed(count);
  for (std::size_t i = 0; i < count; ++i) {
    format->Format(&printed[i], records[i]);
    const char* end = PutMoment(MomentOf(times[i]), "DMYhmsf", kLiterals, bare.data());
    narrow[i] = hv::cor::ToUtf8(printed[i]);
    Require(narrow[i] == std::string_view(bare.data(), static_cast<std::size_t>(end - bare.data())),
            "a time by a pattern");
    TimeRecord time;
    Require(format->Parse(&time, printed[i]) == records[i] ||
                std::fabs(time.fraction - records[i].fraction) < 1e-9,
            "a time read by a pattern");
  }
  Print("print by a pattern", count,
        Measure(
            [&] {
              for (const TimeValue& time : times) {
                format->Format(&text, time.ToRecord());
                g_sink = text[0];
              }
            },
            [&] {
              for (const TimeValue& time : times)
                g_sink = *(PutMoment(MomentOf(time), "DMYhmsf", kLiterals, bare.data()) - 1);
            }));
  Print("read by a pattern", count,
        Measure(
            [&] {
              TimeRecord time;
              for (const WString& line : printed)
                g_sink =
                    static_cast<double>(TimeValue::FromRecord(format->Parse(&time, line)).seconds);
            },
            [&] {
              for (const std::string& line : narrow)
                g_sink = static_cast<double>(ReadMoment(line.data(), "DMYhmsf", "2242223"));
            }));
  Print("to a date and back", count,
        Measure(
            [&] {
              for (const TimeValue& time : times)
                g_sink = static_cast<double>(FromAutomationDate(ToAutomationDate(time)).seconds);
            },
            [&] {
              for (const TimeValue& time : times) {
                const double date = static_cast<double>(time.seconds) / 86'400 + 1462;
                const Moment moment = MomentOf(
                    {0, static_cast<std::int64_t>(std::floor((date - 1462) * 86'400 + 0.5))});
                g_sink = static_cast<unsigned>(moment.day.day());
              }
            }));
}

/// A sort of values of all kinds beside one of plain numbers.
void MeasureOrder(const std::vector<double>& numbers, bool withTexts) {
  std::vector<Variant> values;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    switch (i % 5) {
      case 0:
        values.push_back(Variant::R8(numbers[i]));
        break;
      case 1:
        values.push_back(Variant::I4(static_cast<std::int32_t>(i * 7919 % 1000003)));
        break;
      case 2:
        values.push_back(Variant::Date(30000 + static_cast<double>(i * 7919 % 1000003) / 50));
        break;
      case 3:
        values.push_back(Variant());
        break;
      default:
        values.push_back(
            withTexts
                ? Variant::Text(u"Run " + std::u16string(1, static_cast<char16_t>(u'a' + i % 26)) +
                                std::u16string(1, static_cast<char16_t>(u'0' + i / 26 % 10)))
                : Variant::I2(static_cast<std::int16_t>(i)));
    }
  }
  Print(withTexts ? "sort mixed values, with texts" : "sort mixed values, no texts", values.size(),
        Measure([&] { g_sink = static_cast<double>(AscendingOrder(values)[0]); },
                [&] {
                  std::vector<std::size_t> order(numbers.size());
                  std::iota(order.begin(), order.end(), std::size_t{0});
                  std::ranges::stable_sort(order, {}, [&](std::size_t i) { return numbers[i]; });
                  g_sink = static_cast<double>(order[0]);
                }));
}

}  // namespace

int main(int argc, char** argv) {
  const std::size_t count = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 1'000'000;
  if (count == 0) return 2;
  std::mt19937_64 random(3);
  std::vector<double> numbers;
  std::vector<TimeValue> times;
  for (std::size_t i = 0; i < count; ++i) {
    numbers.push_back(std::uniform_real_distribution<double>(-1e6, 1e6)(random));
    times.push_back({random(), static_cast<std::int64_t>(random() % 5'000'000'000U)});
  }
  std::printf("%zu values, medians of seven runs, nanoseconds of the processor a value\n", count);
  std::printf("%-34s %10s %12s %7s\n", "", "ours", "yardstick", "ratio");
  MeasureNumbers(numbers);
  MeasureTimes(times);
  MeasureOrder(numbers, false);
  MeasureOrder(numbers, true);
  return 0;
}
