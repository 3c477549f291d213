// bench/ConvBench.cpp - times and numbers to and from text beside the same done with the standard
// library's conversions, and the order of mixed values beside a sort of plain numbers.
// Usage: conv_bench [COUNT]   (1000000 unless told otherwise)
#include <charconv>
#include <chrono>
#include <cmath>
#include <numeric>
#include <random>
#include <string>
#include <string_view>

#include <storefabric/Variant.h>

#include "Bench.h"
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

/// Keeps the work from being left out.
volatile double g_sink = 0;

/// Work that does the same with each of many values.
template <class Values, class One>
auto Each(const Values& values, One one) {
  return [&values, one] {
    for (const auto& value : values) g_sink = static_cast<double>(one(value));
  };
}

/// Takes the medians of both and prints the nanoseconds a value.
template <class Ours, class Yardstick>
void Measure(const char* what, std::size_t count, const Ours& ours, const Yardstick& yardstick) {
  const auto times = InTurns(7, ours, yardstick);
  const double each = 1e6 / static_cast<double>(count);
  std::printf("%-34s %10.1f %12.1f %7.2f\n", what, each * Median(times[0]), each * Median(times[1]),
              Median(times[0]) / Median(times[1]));
}

using Buffer = std::array<char, 64>;

/// Numbers to text and back.
void MeasureNumbers(const std::vector<double>& numbers) {
  const std::size_t count = numbers.size();
  std::vector<std::string> texts(count);
  std::vector<std::u16string> wide(count);
  for (std::size_t i = 0; i < count; ++i) {
    texts[i] = ShortestText(numbers[i]);
    wide[i].assign(texts[i].begin(), texts[i].end());
    Require(ReadDecimal(texts[i]) == numbers[i], "a number read isn't the same");
  }
  Buffer bare{};
  Measure("print a number", count, Each(numbers, [](double n) { return ShortestText(n).back(); }),
          Each(numbers,
               [&](double n) { return *(std::to_chars(bare.data(), &bare.back(), n).ptr - 1); }));
  const auto fromChars = Each(texts, [](const std::string& text) {
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
  });
  Measure("read a number", count,
          Each(texts, [](const std::string& text) { return ReadDecimal(text); }), fromChars);
  const auto format = CreateNumericFormat();
  Measure("read a wide number by its format", count,
          Each(wide,
               [&](const std::u16string& text) { return format->ToDouble(text.c_str(), nullptr); }),
          fromChars);
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
/// \return the texts' end
char* PutMoment(const TimeValue& time, std::string_view order, std::string_view literals,
                char* out) {
  const Moment moment = MomentOf(time);
  const auto put = [&](char field) {
    switch (field) {
      case 'Y':
        return PutPadded(static_cast<unsigned>(static_cast<int>(moment.day.year())), 10'000, out);
      case 'M':
        return PutPadded(static_cast<unsigned>(moment.day.month()), 100, out);
      case 'D':
        return PutPadded(static_cast<unsigned>(moment.day.day()), 100, out);
      case 'h':
        return PutPadded(moment.second / 3600, 100, out);
      case 'm':
        return PutPadded(moment.second / 60 % 60, 100, out);
      case 's':
        return PutPadded(moment.second % 60, 100, out);
      case 'n':
        return PutPadded(moment.nanosecond, 1'000'000'000, out);
      default:
        return PutPadded(moment.nanosecond / 1'000'000, 1'000, out);
    }
  };
  for (std::size_t i = 0; i < order.size(); ++i) {
    out = put(order[i]);
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
  Buffer bare{};
  const auto putDigits = [&](const TimeValue& time) {
    return PutMoment(time, "YMDhmsn", {"\0\0\0\0\0\0\0", 7}, bare.data());
  };
  const auto putPattern = [&](const TimeValue& time) {
    return PutMoment(time, "DMYhmsf", {".. ::.\0", 7}, bare.data());
  };
  const auto readDigits = [](const std::string& text) {
    return ReadMoment(text.data(), "YMDhmsfun", "422222333");
  };
  const std::size_t count = times.size();
  std::string digits;
  std::vector<std::string> texts(count), narrow(count);
  std::vector<TimeRecord> records(count);
  std::vector<WString> printed(count);
  const auto format = CreateTimeFormat();
  format->SetPattern(u"DD.MM.YYYY hh:mm:ss.fff");
  for (std::size_t i = 0; i < count; ++i) {
    const TimeValue& time = times[i];
    texts[i] = time.ToText();
    Require(texts[i] == std::string(bare.data(), putDigits(time)), "23 digits differ");
    const TimeValue back = TimeValue::FromText(texts[i]);
    Require(back.seconds == time.seconds && back.seconds == readDigits(texts[i]),
            "23 digits read differ");
    // Whole milliseconds, of which the pattern shows no digit more.
    TimeParts parts = time.ToParts();
    parts.microsecond = parts.nanosecond = 0;
    records[i] = TimeValue::FromParts(parts).ToRecord();
    format->Format(&printed[i], records[i]);
    narrow[i] = hv::cor::ToUtf8(printed[i]);
    Require(narrow[i] == std::string(bare.data(), putPattern(time)), "times by a pattern differ");
    TimeRecord read;
    Require(format->Parse(&read, printed[i]) == records[i] ||
                std::fabs(read.fraction - records[i].fraction) < 1e-9,
            "a time read by a pattern differs");
  }
  Measure("print 23 digits", count,
          Each(times,
               [&](const TimeValue& time) {
                 time.ToText(&digits);
                 return digits[22];
               }),
          Each(times, [&](const TimeValue& time) { return *(putDigits(time) - 1); }));
  Measure("read 23 digits", count,
          Each(texts, [](const std::string& text) { return TimeValue::FromText(text).seconds; }),
          Each(texts, readDigits));
  WString text;
  Measure("print by a pattern", count,
          Each(times,
               [&](const TimeValue& time) {
                 format->Format(&text, time.ToRecord());
                 return text[0];
               }),
          Each(times, [&](const TimeValue& time) { return *(putPattern(time) - 1); }));
  TimeRecord time;
  Measure("read by a pattern", count,
          Each(printed,
               [&](const WString& line) {
                 return TimeValue::FromRecord(format->Parse(&time, line)).seconds;
               }),
          Each(narrow, [](const std::string& line) {
            return ReadMoment(line.data(), "DMYhmsf", "2242223");
          }));
  Measure(
      "to a date and back", count,
      Each(times,
           [](const TimeValue& one) { return FromAutomationDate(ToAutomationDate(one)).seconds; }),
      Each(times, [](const TimeValue& one) {
        const double date = static_cast<double>(one.seconds) / 86'400 + 1462;
        const Moment moment =
            MomentOf({0, static_cast<std::int64_t>(std::floor((date - 1462) * 86'400 + 0.5))});
        return static_cast<unsigned>(moment.day.day());
      }));
}

/// A sort of values of all kinds beside one of plain numbers.
void MeasureOrder(const std::vector<double>& numbers, bool withTexts) {
  std::vector<Variant> values;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const auto mixed = static_cast<std::int32_t>(i * 7919 % 1000003);
    const char16_t text[] = {u'R',
                             u'u',
                             u'n',
                             u' ',
                             static_cast<char16_t>(u'a' + i % 26),
                             static_cast<char16_t>(u'0' + i / 26 % 10),
                             u'\0'};
    const Variant kinds[] = {
        Variant::R8(numbers[i]), Variant::I4(mixed),
        Variant::Date(30000 + static_cast<double>(mixed) / 50), Variant(),
        withTexts ? Variant::Text(text) : Variant::I2(static_cast<std::int16_t>(i))};
    values.push_back(kinds[i % 5]);
  }
  Measure(
      withTexts ? "sort mixed values, with texts" : "sort mixed values, no texts", values.size(),
      [&] { g_sink = static_cast<double>(AscendingOrder(values)[0]); },
      [&] {
        std::vector<std::size_t> order(numbers.size());
        std::iota(order.begin(), order.end(), std::size_t{0});
        std::ranges::stable_sort(order, {}, [&](std::size_t i) { return numbers[i]; });
        g_sink = static_cast<double>(order[0]);
      });
}

}  // namespace

int main(int argc, char** argv) {
  const auto count = static_cast<std::size_t>(Argument(argc, argv, 1, 1'000'000));
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
