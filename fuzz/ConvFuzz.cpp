// fuzz/ConvFuzz.cpp - times and numbers in texts. The first bytes are a pattern, up to a zero; the
// rest is the text, one byte a character.
#include <cmath>

#include "fuzz/Fuzz.h"
#include "util/conv/NumberReader.h"
#include "util/conv/NumericFormat.h"
#include "util/conv/TimeFormat.h"
#include "util/conv/TimeValue.h"

namespace {

using hv::WString;
using namespace hv::util::conv;

std::u16string Widen(std::string_view bytes) {
  std::u16string text;
  for (const char byte : bytes) text += static_cast<char16_t>(static_cast<unsigned char>(byte));
  return text;
}

/// What a text says must be said again by its own digits.
void CheckTimeText(std::string_view text) {
  const TimeValue time = TimeValue::FromText(text);
  const TimeParts parts = time.ToParts();
  Require(TimeValue::FromParts(parts).ToParts() == parts);
  const std::string digits = time.ToText();
  Require(digits.size() == 23 && digits.find_first_not_of("0123456789") == std::string::npos);
  if (parts.year >= 0 && parts.year <= 9999)
    Require(TimeValue::FromText(digits).ToText() == digits);
}

void CheckPattern(std::string_view pattern, std::string_view text) {
  const auto format = CreateTimeFormat();
  format->SetPattern(Widen(pattern));
  TimeRecord time;
  format->Parse(&time, Widen(text));
  WString printed;
  format->Format(&printed, time);
  // A number that fits its fields doesn't change by being printed and read.
  if (pattern == "YYYY-MM-DD hh:mm:ss") {
    TimeRecord again;
    Require(format->Parse(&again, printed) == time || time.year < 0 || time.month < 0 ||
            time.day < 0 || time.hour < 0 || time.minute < 0 || time.second < 0);
  }
}

void CheckNumbers(std::string_view text) {
  const auto format = CreateNumericFormat();
  format->SetDecimalSeparator(u',');
  format->SetThousandSeparator(u'.');
  const std::u16string wide = Widen(text);
  const char16_t* const behind = wide.c_str() + wide.size();
  const char16_t* end = nullptr;
  (void)format->ToDouble(wide.c_str(), &end);
  Require(end >= wide.c_str() && end <= behind && end - wide.c_str() <= 60);
  auto count = static_cast<std::int32_t>(wide.size());
  (void)format->ToDoubleCounted(wide.c_str(), &count);
  Require(count >= 0 && count <= static_cast<std::int32_t>(wide.size()));
  Require(!std::isnan(ReadDecimal(text)));
  (void)ReadUInt64(text);
  const std::int64_t integer = ReadInt64(text);
  Require(ReadInt64(std::to_string(integer)) == integer);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input = TextOf(data, size);
  const std::size_t zero = input.find('\0');
  const std::string_view pattern = input.substr(0, zero);
  const std::string_view text =
      zero == std::string_view::npos ? std::string_view() : input.substr(zero + 1);
  CheckTimeText(text);
  CheckPattern(pattern, text);
  CheckNumbers(text);
  return 0;
}
