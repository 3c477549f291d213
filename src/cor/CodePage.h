// cor/CodePage.h - wide to 8-bit text and back.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <storefabric/WString.h>

struct UConverter;

namespace hv::cor {

/// The code page of a character set: 0 (the platform's own, UTF-8) for an empty name, 20127 for
/// "US-ASCII", 932 for "cp932". Raises `InvalidLocale` for any other name.
std::uint32_t CodePageOfCharset(std::string_view charset);

/// Converts texts of one code page. What has no place in the other form becomes a replacement: "?"
/// in 8-bit text, U+FFFD in wide text.
class CodePage final {
 public:
  /// \param number  0 and 65001 stand for UTF-8. An unknown number shows at the first conversion.
  explicit CodePage(std::uint32_t number = 0);
  ~CodePage();
  CodePage(const CodePage&) = delete;
  CodePage& operator=(const CodePage&) = delete;

  /// Empty text gives empty text for any code page. Raises `osdep::WinError` if the code page is
  /// unknown, `OutOfRange` beyond 2^31 - 1 units or bytes.
  [[nodiscard]] std::string ToBytes(std::u16string_view text);
  [[nodiscard]] WString ToWide(std::string_view bytes);

 private:
  UConverter* Converter();
  [[nodiscard]] bool IsUtf8() const { return m_number == 0 || m_number == 65001; }

  struct Close {
    void operator()(UConverter* converter) const;
  };
  std::uint32_t m_number;
  std::unique_ptr<UConverter, Close> m_converter;
};

}  // namespace hv::cor
