// core/plugins/atfx/NumberText.cpp - numbers are narrowed to bytes once and read by
// std::from_chars.
#include "core/plugins/atfx/NumberText.h"

#include "core/plugins/atfx/AsciiText.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <system_error>
#include <type_traits>

namespace hv::vex::engine::atfx {

namespace {

bool IsByteBlank(char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; }

/// Appends `text` as bytes. What isn't ASCII becomes a character that no number holds.
void AppendNarrowed(std::u16string_view text, std::string* to) {
  static_assert(std::endian::native == std::endian::little);
  constexpr std::uint64_t kNotAscii = 0xFF80FF80FF80FF80;
  const std::size_t old = to->size();
  to->resize(old + text.size());
  char* out = to->data() + old;
  std::size_t i = 0;
  for (; i + 4 <= text.size(); i += 4) {
    std::uint64_t four = 0;
    std::memcpy(&four, text.data() + i, sizeof four);
    if ((four & kNotAscii) != 0) break;
    four = (four | four >> 8) & 0x0000FFFF0000FFFF;
    const auto packed = static_cast<std::uint32_t>(four | four >> 16);
    std::memcpy(out + i, &packed, sizeof packed);
  }
  for (; i < text.size(); ++i) {
    out[i] = static_cast<char>(text[i] < 0x80 ? text[i] : char16_t{0x7F});
  }
}

/// Room for any number that is written in earnest; longer ones take the slow way.
constexpr std::size_t kShortNumber = 64;

/// Reads one number that fills [begin, end). Out of line: the way for "+1", "1e-999" and mistakes.
bool ReadOddReal(const char* begin, const char* end, double* value) {
  if (begin != end && *begin == '+') ++begin;
  if (begin == end || *begin == '+') return false;
  const auto [stop, code] = std::from_chars(begin, end, *value);
  if (stop != end) return false;
  if (code == std::errc::result_out_of_range) {
    // The library doesn't tell too large from too small; the exponent does.
    const std::string_view text(begin, static_cast<std::size_t>(end - begin));
    const bool isTiny = text.find("e-") != text.npos || text.find("E-") != text.npos ||
                        text.starts_with("0.") || text.starts_with("-0.");
    *value = 0;
    return isTiny;
  }
  return code == std::errc();
}

bool ReadOdd(const char* begin, const char* end, double* value) {
  return ReadOddReal(begin, end, value);
}

bool ReadOdd(const char* begin, const char* end, float* value) {
  double wide = 0;
  if (!ReadOddReal(begin, end, &wide)) return false;
  if (std::isfinite(wide) && std::fabs(wide) > double{std::numeric_limits<float>::max()}) {
    return false;
  }
  *value = static_cast<float>(wide);
  return true;
}

template <class T>
bool ReadOdd([[maybe_unused]] const char* begin, [[maybe_unused]] const char* end,
             [[maybe_unused]] T* value) {
  if constexpr (!std::is_same_v<T, bool>) {
    // NOLINTNEXTLINE(clang-analyzer-core.UndefinedBinaryOperatorResult): all up to `end` is set.
    if (begin == end || *begin != '+' || begin + 1 == end || begin[1] == '-') return false;
    const auto [stop, code] = std::from_chars(begin + 1, end, *value);
    return stop == end && code == std::errc();
  }
  return false;
}

std::optional<bool> ReadBoolean(std::string_view text) {
  if (text == "1" || text == "true") return true;
  if (text == "0" || text == "false") return false;
  std::string folded(text);
  for (char& c : folded) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + ('a' - 'A'));
  }
  if (folded == "true") return true;
  if (folded == "false") return false;
  return std::nullopt;
}

template <class T>
std::optional<T> ParseOne(std::u16string_view text) {
  text = Trim(text);
  char small[kShortNumber];
  std::string large;
  const char* begin = small;
  if (text.size() > kShortNumber) {
    AppendNarrowed(text, &large);
    begin = large.data();
  } else {
    for (std::size_t i = 0; i < text.size(); ++i) {
      small[i] = static_cast<char>(text[i] < 0x80 ? text[i] : char16_t{0x7F});
    }
  }
  const char* const end = begin + text.size();
  T value{};
  const auto [stop, code] = std::from_chars(begin, end, value);
  if (stop == end && code == std::errc()) return value;
  if (ReadOdd(begin, end, &value)) return value;
  return std::nullopt;
}

}  // namespace

std::optional<std::int64_t> ParseInteger(std::u16string_view text) {
  return ParseOne<std::int64_t>(text);
}

std::optional<double> ParseReal(std::u16string_view text) { return ParseOne<double>(text); }

std::optional<bool> ParseBoolean(std::u16string_view text) {
  text = Trim(text);
  if (text.size() > 5) return std::nullopt;
  std::string narrow;
  AppendNarrowed(text, &narrow);
  return ReadBoolean(narrow);
}

void NumberList::Begin(InMemoryValues& target) {
  m_target = &target;
  m_buffer.clear();
  m_bad.clear();
  m_count = 0;
}

bool NumberList::Feed(std::u16string_view piece) {
  AppendNarrowed(piece, &m_buffer);
  const char* const begin = m_buffer.data();
  const char* whole = begin + m_buffer.size();
  while (whole != begin && !IsByteBlank(whole[-1])) --whole;
  if (!Parse(begin, whole)) return false;
  m_buffer.erase(0, static_cast<std::size_t>(whole - begin));
  return true;
}

bool NumberList::End() {
  const bool isGood = Parse(m_buffer.data(), m_buffer.data() + m_buffer.size());
  m_buffer.clear();
  return isGood;
}

template <class T, class Reader>
bool NumberList::ParseAs(const char* begin, const char* end, Reader read) {
  T chunk[512];
  std::size_t used = 0;
  const char* at = begin;
  while (true) {
    while (at != end && IsByteBlank(*at)) ++at;
    if (at == end) break;
    const char* stop = read(at, end, &chunk[used]);
    if (!stop || (stop != end && !IsByteBlank(*stop))) {
      for (stop = at; stop != end && !IsByteBlank(*stop);) ++stop;
      if (!ReadOdd(at, stop, &chunk[used])) {
        m_bad.assign(at, std::min<std::size_t>(static_cast<std::size_t>(stop - at), 40));
        return false;
      }
    }
    at = stop;
    ++m_count;
    if (++used == std::size(chunk)) {
      m_target->AddPacked(chunk, used);
      used = 0;
    }
  }
  if (used != 0) m_target->AddPacked(chunk, used);
  return true;
}

bool NumberList::Parse(const char* begin, const char* end) {
  const auto number = [](const char* at, const char* to, auto* value) -> const char* {
    const auto [stop, code] = std::from_chars(at, to, *value);
    return code == std::errc() ? stop : nullptr;
  };
  const auto boolean = [](const char* at, const char* to, bool* value) -> const char* {
    const char* stop = at;
    while (stop != to && !IsByteBlank(*stop)) ++stop;
    const auto read = ReadBoolean({at, static_cast<std::size_t>(stop - at)});
    if (!read) return nullptr;
    *value = *read;
    return stop;
  };
  switch (m_target->Type()) {
    case OdsType::Boolean:
      return ParseAs<bool>(begin, end, boolean);
    case OdsType::Byte:
      return ParseAs<std::uint8_t>(begin, end, number);
    case OdsType::Short:
      return ParseAs<std::int16_t>(begin, end, number);
    case OdsType::Long:
    case OdsType::Enum:
      return ParseAs<std::int32_t>(begin, end, number);
    case OdsType::LongLong:
    case OdsType::Id:
      return ParseAs<std::int64_t>(begin, end, number);
    case OdsType::Float:
    case OdsType::Complex:
      return ParseAs<float>(begin, end, number);
    case OdsType::Double:
    case OdsType::DComplex:
      return ParseAs<double>(begin, end, number);
    default:
      return false;
  }
}

}  // namespace hv::vex::engine::atfx
