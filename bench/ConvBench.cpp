// bench/ConvBench.cpp - times and numbers to and from text beside the standard library's bare
// conversions, and the order of mixed values beside a sort of plain numbers.
// Usage: conv_bench [COUNT]   (1000000 unless told otherwise)
#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
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

/// The median of five runs, in seconds. The sum keeps the work from being left out.
template <class Work>
double Median(Work work) {
  std::vector<double> times;
  for (int i = 0; i < 5; ++i) {
    const auto start = std::chrono::steady_clock::now();
    work();
    times.push_back(
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
  std::ranges::sort(times);
  return times[2];
}

void Print(const char* what, std::size_t count, double ours, double yardstick) {
  std::printf("%-34s %10.1f %12.1f %7.2f\n", what, 1e9 * ours / static_cast<double>(count),
              1e9 * yardstick / static_cast<double>(count), ours / yardstick);
}

volatile double g_sink = 0;

/// Numbers to text and back.
void MeasureNumbers(const std::vector<double>& numbers) {
  const std::size_t count = numbers.size();
  std::vector<std::string> texts(count);
  std::vector<std::u16string> wide(count);
  for (std::size_t i = 0; i < count; ++i) {
    texts[i] = ShortestText(numbers[i]);
    wide[i].assign(texts[i].begin(), texts[i].end());
  }
  const double printed = Median([&] {
    for (const double number : numbers) g_sink = static_cast<double>(ShortestText(number).size());
  });
  const double bare = Median([&] {
    char text[64];
    for (const double number : numbers)
      g_sink = static_cast<double>(*(std::to_chars(text, text + 64, number).ptr - 1));
  });
  Print("print a number", count, printed, bare);

  const double fromChars = Median([&] {
    for (const std::string& text : texts) {
      double value = 0;
      std::from_chars(text.data(), text.data() + text.size(), value);
      g_sink = value;
    }
  });
  const double read = Median([&] {
    for (const std::string& text : texts) g_sink = ReadDecimal(text);
  });
  Print("read a number", count, read, fromChars);
  const auto format = CreateNumericFormat();
  const double formatted = Median([&] {
    for (const std::u16string& text : wide) g_sink = format->ToDouble(text.c_str(), nullptr);
  });
  Print("read a number by its format", count, formatted, fromChars);
}

/// Times to text and back, beside the 14 conversions of their fields alone.
void MeasureTimes(const std::vector<TimeValue>& times) {
  const std::size_t count = times.size();
  std::vector<std::string> texts(count);
  for (std::size_t i = 0; i < count; ++i) texts[i] = times[i].ToText();

  const double bareOut = Median([&] {
    char text[8];
    for (const TimeValue& time : times) {
      const auto seconds = static_cast<std::uint64_t>(time.seconds);
      for (const std::uint64_t unit : {1U, 60U, 3600U, 86400U, 7U, 11U, 13U, 17U, 19U}) {
        g_sink = *(std::to_chars(text, text + 8, 1000 + seconds / unit % 1000).ptr - 1);
      }
    }
  });
  std::string digits;
  const double out = Median([&] {
    for (const TimeValue& time : times) {
      time.ToText(&digits);
      g_sink = digits[22];
    }
  });
  Print("print 23 digits", count, out, bareOut);

  const double bareIn = Median([&] {
    for (const std::string& text : texts) {
      int sum = 0;
      for (const std::size_t start : {0U, 4U, 6U, 8U, 10U, 12U, 14U, 17U, 20U}) {
        int field = 0;
        std::from_chars(text.data() + start, text.data() + start + 2, field);
        sum += field;
      }
      g_sink = sum;
    }
  });
  const double in = Median([&] {
    for (const std::string& text : texts)
      g_sink = static_cast<double>(TimeValue::FromText(text).seconds);
  });
  Print("read 23 digits", count, in, bareIn);

  const auto format = CreateTimeFormat();
  format->SetPattern(u"DD.MM.YYYY hh:mm:ss.fff");
  std::vector<WString> printed(count);
  const double patternOut = Median([&] {
    for (std::size_t i = 0; i < count; ++i) format->Format(&printed[i], times[i].ToRecord());
  });
  Print("print by a pattern", count, patternOut, bareOut);
  const double patternIn = Median([&] {
    TimeRecord time;
    for (const WString& text : printed) g_sink = format->Parse(&time, text).fraction;
  });
  Print("read by a pattern", count, patternIn, bareIn);
  const double dates = Median([&] {
    for (const TimeValue& time : times)
      g_sink = static_cast<double>(FromAutomationDate(ToAutomationDate(time)).seconds);
  });
  Print("to a date and back", count, dates, bareIn);
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
  const double ours = Median([&] { g_sink = static_cast<double>(AscendingOrder(values)[0]); });
  const double plain = Median([&] {
    std::vector<std::size_t> order(numbers.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    std::ranges::stable_sort(order, {}, [&](std::size_t i) { return numbers[i]; });
    g_sink = static_cast<double>(order[0]);
  });
  Print(withTexts ? "sort mixed values, with texts" : "sort mixed values, no texts", values.size(),
        ours, plain);
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
  std::printf("%zu values, medians of five runs, nanoseconds a value\n", count);
  std::printf("%-34s %10s %12s %7s\n", "", "ours", "yardstick", "ratio");
  MeasureNumbers(numbers);
  MeasureTimes(times);
  MeasureOrder(numbers, false);
  MeasureOrder(numbers, true);
  return 0;
}
