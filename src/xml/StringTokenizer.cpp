// xml/StringTokenizer.cpp - cuts a text into tokens by two sets of characters.
#include "xml/StringTokenizer.h"

#include <algorithm>

namespace hv::xml {

std::optional<WString> StringTokenizer::NextToken(std::u16string_view skip,
                                                  std::u16string_view stop) {
  const std::u16string_view text = m_text;
  const std::size_t start = text.find_first_not_of(skip, m_position);
  if (start == text.npos) return std::nullopt;
  m_tokenStart = static_cast<std::uint32_t>(start);
  const std::size_t end = std::min(text.find_first_of(stop, start), text.size());
  if (end == start && skip == stop) return std::nullopt;
  m_token = text.substr(start, end - start);
  m_position = static_cast<std::uint32_t>(end == text.size() ? end : end + 1);
  return m_token;
}

}  // namespace hv::xml
