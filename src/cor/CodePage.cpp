// cor/CodePage.cpp - wide to 8-bit text and back.
#include "cor/CodePage.h"

#include "cor/SafeInteger.h"
#include "cor/osdep/OSException.h"

#include <unicode/ucnv.h>

namespace hv::cor {

namespace {

constexpr const char* kSourceFile = "cor/CodePage";

/// The name of a code page in the conversion library, for those whose name isn't made of the
/// number.
struct NamedPage {
  std::uint32_t number;
  const char* name;
};
constexpr NamedPage kNamedPages[] = {
    {932, "ibm-943_P15A-2003"}, {936, "windows-936-2000"}, {949, "windows-949-2000"},
    {950, "windows-950-2000"},  {1200, "UTF-16LE"},        {1201, "UTF-16BE"},
    {20127, "US-ASCII"},        {20866, "KOI8-R"},         {51932, "EUC-JP"},
    {54936, "gb18030"},
};

std::string NameOf(std::uint32_t number) {
  for (const NamedPage& page : kNamedPages) {
    if (page.number == number) return page.name;
  }
  if (number > 28590 && number < 28606) return "ISO-8859-" + std::to_string(number - 28590);
  return (number >= 1250 && number <= 1258 ? "windows-" : "ibm-") + std::to_string(number);
}

[[noreturn]] void RaiseParameter(int line) {
  throw osdep::WinError(osdep::kErrorInvalidParameter, kSourceFile, line);
}

}  // namespace

std::uint32_t CodePageOfCharset(std::string_view charset) {
  if (charset.empty()) return 0;
  if (charset == "US-ASCII") return 20127;
  if (charset == "cp932") return 932;
  throw exception::InvalidLocale();
}

void CodePage::Close::operator()(UConverter* converter) const { ucnv_close(converter); }

CodePage::CodePage(std::uint32_t number) : m_number(number) {}

CodePage::~CodePage() = default;

UConverter* CodePage::Converter() {
  if (!m_converter) {
    UErrorCode status = U_ZERO_ERROR;
    m_converter.reset(ucnv_open(NameOf(m_number).c_str(), &status));
    if (!m_converter || U_FAILURE(status)) {
      m_converter.reset();
      RaiseParameter(__LINE__);
    }
    ucnv_setSubstString(m_converter.get(), u"?", 1, &status);
  }
  return m_converter.get();
}

std::string CodePage::ToBytes(std::u16string_view text) {
  if (text.empty()) return {};
  if (IsUtf8()) return ToUtf8(text);
  UConverter* const converter = Converter();
  const auto length = SafeInteger<std::size_t>(text.size()).As<std::int32_t>();
  UErrorCode status = U_ZERO_ERROR;
  const std::int32_t size = ucnv_fromUChars(converter, nullptr, 0, text.data(), length, &status);
  if (size <= 0) RaiseParameter(__LINE__);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  status = U_ZERO_ERROR;
  ucnv_fromUChars(converter, bytes.data(), size, text.data(), length, &status);
  if (U_FAILURE(status)) RaiseParameter(__LINE__);
  return bytes;
}

WString CodePage::ToWide(std::string_view bytes) {
  if (bytes.empty()) return {};
  if (IsUtf8()) return FromUtf8(bytes);
  UConverter* const converter = Converter();
  const auto length = SafeInteger<std::size_t>(bytes.size()).As<std::int32_t>();
  UErrorCode status = U_ZERO_ERROR;
  const std::int32_t size = ucnv_toUChars(converter, nullptr, 0, bytes.data(), length, &status);
  if (size <= 0) RaiseParameter(__LINE__);
  WString text;
  text.append(static_cast<std::size_t>(size), u'\0');
  status = U_ZERO_ERROR;
  ucnv_toUChars(converter, &text[0], size, bytes.data(), length, &status);
  if (U_FAILURE(status)) RaiseParameter(__LINE__);
  return text;
}

}  // namespace hv::cor
