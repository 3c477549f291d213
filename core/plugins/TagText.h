// core/plugins/TagText.h - finds tags in the parameter texts of stores.
// Parameter texts are flat: "<filename readonly='yes'>a.atfx</filename><user>x</user>". They aren't
// XML: there are no comments, declarations or empty tags, and nothing that can't be read is an
// error.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace hv::vex::engine {

/// The content of the first tag of this name, as it stands between its tags.
struct TagView {
  std::u16string_view attributes;  ///< the text between the name and ">"
  std::u16string_view content;
};

namespace detail {

inline bool IsTagBlank(char16_t c) { return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n'; }

inline std::u16string_view TrimTagText(std::u16string_view text) {
  while (!text.empty() && IsTagBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsTagBlank(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace detail

/// Searches the tags that stand side by side in `text`; never looks inside one. Nothing if the tag
/// or its end is missing. Names are told apart by case.
inline std::optional<TagView> FindTag(std::u16string_view text, std::u16string_view name) {
  std::size_t at = 0;
  while ((at = text.find(u'<', at)) != text.npos) {
    const std::size_t close = text.find(u'>', at);
    if (close == text.npos) return std::nullopt;
    const std::u16string_view inside = text.substr(at + 1, close - at - 1);
    const std::u16string_view found = inside.substr(0, inside.find_first_of(u" \t\r\n"));
    std::u16string end = u"</";
    end.append(found).append(u">");
    const std::size_t endAt = text.find(end, close + 1);
    if (endAt == text.npos) return std::nullopt;
    if (found == name) {
      return TagView{detail::TrimTagText(inside.substr(found.size())),
                     text.substr(close + 1, endAt - close - 1)};
    }
    at = endAt + end.size();
  }
  return std::nullopt;
}

/// The value of `name='value'` or `name="value"` in a tag's attribute text.
inline std::optional<std::u16string_view> FindTagAttribute(std::u16string_view attributes,
                                                           std::u16string_view name) {
  while (!(attributes = detail::TrimTagText(attributes)).empty()) {
    const std::size_t equals = attributes.find(u'=');
    if (equals == attributes.npos) return std::nullopt;
    const std::u16string_view key = detail::TrimTagText(attributes.substr(0, equals));
    attributes = detail::TrimTagText(attributes.substr(equals + 1));
    if (attributes.empty() || (attributes[0] != u'\'' && attributes[0] != u'"')) {
      return std::nullopt;
    }
    const std::size_t end = attributes.find(attributes[0], 1);
    if (end == attributes.npos) return std::nullopt;
    if (key == name) return attributes.substr(1, end - 1);
    attributes.remove_prefix(end + 1);
  }
  return std::nullopt;
}

/// Turns "&amp;", "&lt;" and "&gt;" back into their characters; leaves everything else as it
/// stands.
inline std::u16string UnescapeTagText(std::u16string_view text) {
  struct Escape {
    std::u16string_view text;
    char16_t character;
  };
  constexpr Escape kEscapes[] = {{u"&amp;", u'&'}, {u"&lt;", u'<'}, {u"&gt;", u'>'}};
  std::u16string result;
  result.reserve(text.size());
  while (!text.empty()) {
    char16_t character = text[0];
    std::size_t length = 1;
    for (const Escape& escape : kEscapes) {
      if (text.starts_with(escape.text)) {
        character = escape.character;
        length = escape.text.size();
        break;
      }
    }
    result += character;
    text.remove_prefix(length);
  }
  return result;
}

}  // namespace hv::vex::engine
