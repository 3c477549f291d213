// xml/StringTokenizer.h - cuts a text into tokens by two sets of characters.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include <storefabric/WString.h>

namespace hv::xml {

/// Walks over a copy of a text. Each call has its own sets.
class StringTokenizer final {
 public:
  explicit StringTokenizer(std::u16string_view text) : m_text(text) {}

  /// Skips the characters of `skip`, then takes everything up to the first one of `stop`, which is
  /// consumed. A stop character right there gives an empty token, unless the two sets are the same.
  /// \return nothing if the rest holds only characters of `skip`; the position stays then
  std::optional<WString> NextToken(std::u16string_view skip, std::u16string_view stop);

  [[nodiscard]] const WString& Token() const { return m_token; }
  /// Where the last token began, and where the next search begins; in units of the text.
  [[nodiscard]] std::uint32_t TokenStart() const { return m_tokenStart; }
  [[nodiscard]] std::uint32_t Position() const { return m_position; }

 private:
  WString m_token;
  WString m_text;
  std::uint32_t m_tokenStart = 0;
  std::uint32_t m_position = 0;
};

}  // namespace hv::xml
