// util/conv/NumericFormat.h - numbers from texts, with the separators of a language or a file,
// independent of the process's locale. An object serves one thread at a time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include <storefabric/Ref.h>

#include "util/conv/FormatBase.h"

namespace hv::util::conv {

/// Reads numbers. The order of the operations is frozen. Nothing fails: a text that isn't a number
/// gives 0.
///
/// The counted operations look at `*count` characters at most, honour the separators and the
/// exponent letter, and set `*count` to the characters that they looked at. The others take the
/// token up to the next blank, tab, line feed, carriage return or the end as it stands, with "." as
/// the only decimal separator, and set `*end` (null if unwanted) behind it. A token is cut at 60
/// characters. Null counts as an empty text.
class INumericFormat {
 public:
  virtual std::uint32_t Release() = 0;
  virtual std::uint32_t AddRef() = 0;

  virtual void SetDecimalSeparator(char16_t separator) = 0;
  virtual char16_t GetDecimalSeparator() = 0;
  /// From now on the separator is left out of numbers.
  virtual void SetThousandSeparator(char16_t separator) = 0;
  /// Either case of the letter begins the exponent.
  virtual void SetExponentLetter(char16_t letter) = 0;
  virtual double ToDoubleCounted(const char16_t* text, std::int32_t* count) = 0;
  /// Knows "NaN", "INF" and "-INF" as well.
  virtual double ToDouble(const char16_t* text, const char16_t** end) = 0;
  virtual std::int32_t ToInt32Counted(const char16_t* text, std::int32_t* count) = 0;
  virtual std::int32_t ToInt32(const char16_t* text, const char16_t** end) = 0;
  virtual std::int64_t ToInt64Counted(const char16_t* text, std::int32_t* count) = 0;
  virtual std::int64_t ToInt64(const char16_t* text, const char16_t** end) = 0;
  /// The same as `ToInt64`; keeps the place of an operation that is gone.
  virtual std::int64_t ToInt64Again(const char16_t* text, const char16_t** end) = 0;
  virtual std::uint64_t ToUInt64(const char16_t* text, const char16_t** end) = 0;

 protected:
  ~INumericFormat() = default;
};

/// The numeric format.
class NumericFormatImp final : public tFormatBase<INumericFormat> {
 public:
  NumericFormatImp() = default;

  void SetDecimalSeparator(char16_t separator) override;
  char16_t GetDecimalSeparator() override;
  void SetThousandSeparator(char16_t separator) override;
  void SetExponentLetter(char16_t letter) override;
  double ToDoubleCounted(const char16_t* text, std::int32_t* count) override;
  double ToDouble(const char16_t* text, const char16_t** end) override;
  std::int32_t ToInt32Counted(const char16_t* text, std::int32_t* count) override;
  std::int32_t ToInt32(const char16_t* text, const char16_t** end) override;
  std::int64_t ToInt64Counted(const char16_t* text, std::int32_t* count) override;
  std::int64_t ToInt64(const char16_t* text, const char16_t** end) override;
  std::int64_t ToInt64Again(const char16_t* text, const char16_t** end) override;
  std::uint64_t ToUInt64(const char16_t* text, const char16_t** end) override;

 private:
  ~NumericFormatImp() override = default;

  /// Each copies a token into the buffer, by the low bytes of its characters.
  std::string_view ScanCounted(const char16_t* text, std::int32_t* count);
  std::string_view ScanDelimited(const char16_t* text, const char16_t** end);

  static constexpr std::size_t kTokenLength = 60;

  std::array<char, kTokenLength + 1> m_scratch{};
  char16_t m_decimalSeparator = u'.';
  bool m_hasThousandSeparator = false;
  char16_t m_thousandSeparator = 0;
  char16_t m_exponentUpper = u'E';
  char16_t m_exponentLower = u'e';
};

/// A format with "." and no thousand separator. Throws std::bad_alloc.
[[nodiscard]] Ref<INumericFormat> CreateNumericFormat();

}  // namespace hv::util::conv
