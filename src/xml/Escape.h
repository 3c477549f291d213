// xml/Escape.h - texts inside XML: marks replaced by their entities.
#pragma once

#include <algorithm>
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

}  // namespace hv::xml
