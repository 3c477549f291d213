// util/conv/NumericFormat.cpp - numbers from texts.
#include "util/conv/NumericFormat.h"

#include <unicode/uchar.h>

#include <limits>

#include "util/conv/NumberReader.h"

namespace hv::util::conv {

namespace {

char LowByte(char16_t unit) { return static_cast<char>(unit & 0xFF); }

bool EndsToken(char16_t unit) {
  return unit == u'\0' || unit == u' ' || unit == u'\t' || unit == u'\n' || unit == u'\r';
}

}  // namespace

void NumericFormatImp::SetDecimalSeparator(char16_t separator) { m_decimalSeparator = separator; }

char16_t NumericFormatImp::GetDecimalSeparator() { return m_decimalSeparator; }

void NumericFormatImp::SetThousandSeparator(char16_t separator) {
  m_thousandSeparator = separator;
  m_hasThousandSeparator = true;
}

void NumericFormatImp::SetExponentLetter(char16_t letter) {
  m_exponentUpper = static_cast<char16_t>(u_toupper(letter));
  m_exponentLower = static_cast<char16_t>(u_tolower(letter));
}

std::string_view NumericFormatImp::ScanCounted(const char16_t* text, std::int32_t* count) {
  const std::int32_t most = text && count ? *count : 0;
  std::size_t used = 0;
  std::int32_t walked = 0;
  for (; walked < most && used < kTokenLength && text[walked] != u'\0'; ++walked) {
    const char16_t unit = text[walked];
    if (m_hasThousandSeparator && unit == m_thousandSeparator) continue;
    if (unit == m_decimalSeparator) {
      m_scratch[used++] = '.';
    } else if (unit == m_exponentLower || unit == m_exponentUpper) {
      m_scratch[used++] = 'e';
    } else {
      m_scratch[used++] = LowByte(unit);
    }
  }
  if (count) *count = walked;
  return {m_scratch.data(), used};
}

std::string_view NumericFormatImp::ScanDelimited(const char16_t* text, const char16_t** end) {
  std::size_t used = 0;
  if (text) {
    for (; used < kTokenLength && !EndsToken(text[used]); ++used) {
      m_scratch[used] = LowByte(text[used]);
    }
  }
  if (end) *end = text ? text + used : nullptr;
  return {m_scratch.data(), used};
}

double NumericFormatImp::ToDoubleCounted(const char16_t* text, std::int32_t* count) {
  return ReadDecimal(ScanCounted(text, count));
}

double NumericFormatImp::ToDouble(const char16_t* text, const char16_t** end) {
  using Limits = std::numeric_limits<double>;
  const std::string_view token = ScanDelimited(text, end);
  if (token == "NaN") return Limits::quiet_NaN();
  if (token == "INF") return Limits::infinity();
  if (token == "-INF") return -Limits::infinity();
  return ReadDecimal(token);
}

std::int32_t NumericFormatImp::ToInt32Counted(const char16_t* text, std::int32_t* count) {
  return ReadInt32(ScanCounted(text, count));
}

std::int32_t NumericFormatImp::ToInt32(const char16_t* text, const char16_t** end) {
  return ReadInt32(ScanDelimited(text, end));
}

std::int64_t NumericFormatImp::ToInt64Counted(const char16_t* text, std::int32_t* count) {
  return ReadInt64(ScanCounted(text, count));
}

std::int64_t NumericFormatImp::ToInt64(const char16_t* text, const char16_t** end) {
  return ReadInt64(ScanDelimited(text, end));
}

std::int64_t NumericFormatImp::ToInt64Again(const char16_t* text, const char16_t** end) {
  return ToInt64(text, end);
}

std::uint64_t NumericFormatImp::ToUInt64(const char16_t* text, const char16_t** end) {
  return ReadUInt64(ScanDelimited(text, end));
}

Ref<INumericFormat> CreateNumericFormat() { return MakeRef<NumericFormatImp>(); }

}  // namespace hv::util::conv
