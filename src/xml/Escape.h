// xml/Escape.h - texts inside XML: marks replaced by their entities.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace hv::xml {

/// The five marks that have an entity of their own.
inline constexpr std::u16string_view kMarks = u"\"&'<>";

/// The entity of one of `kMarks`.
constexpr std::u16string_view EntityOf(char16_t mark) {
  switch (mark) {
    case u'<':
      return u"&lt;";
    case u'>':
      return u"&gt;";
    case u'&':
      return u"&amp;";
    case u'\'':
      return u"&apos;";
    default:
      return u"&quot;";
  }
}

/// Adds a text in which every unit of `marks` is replaced by its entity, in one pass; all others go
/// through unchanged. \param marks  some of `kMarks`
template <class String>
void AppendEscaped(String& to, std::u16string_view text, std::u16string_view marks = kMarks) {
  while (!text.empty()) {
    const std::size_t plain = std::min(text.find_first_of(marks), text.size());
    to += text.substr(0, plain);
    text.remove_prefix(plain);
    if (text.empty()) return;
    to += EntityOf(text.front());
    text.remove_prefix(1);
  }
}

/// True for a unit that XML 1.0 has a place for, by itself or in a surrogate pair.
constexpr bool IsXmlUnit(char16_t unit) {
  return unit >= 0x20 ? unit < 0xFFFE : unit == u'\t' || unit == u'\n' || unit == u'\r';
}

/// Adds a text so that a reader of the document gets back what was written: marks as entities, as
/// numbers the white space that a reader would turn into another. Units that aren't `IsXmlUnit`
/// become U+FFFD; so do halves of surrogate pairs, once the document becomes UTF-8.
/// \param inAttribute  for a value in double quotes, not for content
inline void AppendReadable(std::u16string& to, std::u16string_view text, bool inAttribute) {
  const auto isPlain = [inAttribute](char16_t unit) {
    if (unit < 0x20) return !inAttribute && (unit == u'\t' || unit == u'\n');
    if (unit == u'"') return !inAttribute;
    return unit != u'&' && unit != u'<' && unit != u'>' && unit < 0xFFFE;
  };
  for (;;) {
    const auto plainEnd = std::find_if_not(text.begin(), text.end(), isPlain);
    to.append(text.begin(), plainEnd);
    if (plainEnd == text.end()) return;
    const char16_t unit = *plainEnd;
    if (!IsXmlUnit(unit)) {
      to += u'\uFFFD';
    } else if (unit >= 0x20) {
      to += EntityOf(unit);
    } else {
      to += unit == u'\t' ? u"&#9;" : unit == u'\n' ? u"&#10;" : u"&#13;";
    }
    text.remove_prefix(static_cast<std::size_t>(plainEnd - text.begin()) + 1);
  }
}

}  // namespace hv::xml
