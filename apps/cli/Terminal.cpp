#include "apps/cli/Terminal.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdio>

#include <unistd.h>

#include "apps/cli/Interruption.h"

namespace hv::cli {

std::size_t DisplayWidth(std::string_view text) {
  std::size_t width = 0;
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  const auto length = static_cast<std::int32_t>(text.size());
  for (std::int32_t at = 0; at < length;) {
    UChar32 c = 0;
    U8_NEXT(bytes, at, length, c);
    if (c < 0) c = 0xFFFD;
    const auto type = u_charType(c);
    if (type == U_NON_SPACING_MARK || type == U_ENCLOSING_MARK || type == U_FORMAT_CHAR) continue;
    const int eastAsian = u_getIntPropertyValue(c, UCHAR_EAST_ASIAN_WIDTH);
    width += eastAsian == U_EA_WIDE || eastAsian == U_EA_FULLWIDTH ? 2 : 1;
  }
  return width;
}

std::string OneLine(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return (c >= 0 && c < ' ') || c == '\x7F'; }, ' ');
  return text;
}

ProgressBar::ProgressBar(std::string label)
    : m_label(std::move(label)), m_isTerminal(::isatty(STDERR_FILENO) == 1) {}

ProgressBar::~ProgressBar() { Clear(); }

void ProgressBar::Show(std::uint64_t done, std::uint64_t total) {
  if (!m_isTerminal || total == 0) return;
  const auto now = std::chrono::steady_clock::now();
  if (m_isDrawn && done < total && now - m_last < std::chrono::milliseconds(100)) return;
  m_last = now;
  m_isDrawn = true;
  constexpr std::uint64_t kCells = 30;
  const std::uint64_t filled = done >= total ? kCells : done * kCells / total;
  std::string bar(static_cast<std::size_t>(filled), '#');
  bar.resize(kCells, '.');
  std::fprintf(stderr, "\r%s [%s] %3llu %%", m_label.c_str(), bar.c_str(),
               static_cast<unsigned long long>(done >= total ? 100 : done * 100 / total));
  std::fflush(stderr);
}

std::int32_t ProgressBar::OnProgress(std::uint64_t done, std::uint64_t total) {
  Show(done, total);
  return Interruption::Caught() == 0 ? 1 : 0;
}

void ProgressBar::Clear() {
  if (m_isDrawn) std::fprintf(stderr, "\r\033[K");
}

}  // namespace hv::cli
