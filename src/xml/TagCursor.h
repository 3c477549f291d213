// xml/TagCursor.h - a small pull reader for flat texts of tags, as connection parameters are.
// Not an XML parser: no nesting, entities, comments or declarations. Nothing here fails; a text of
// another shape gives empty names, empty lists or false.
#pragma once

#include <cstdint>
#include <map>
#include <string_view>

#include <storefabric/WString.h>

namespace hv::xml {

/// Unit by unit, with the ASCII letters in lower case; a prefix comes before the longer text.
struct AttributeNameLess {
  using is_transparent = void;
  bool operator()(std::u16string_view a, std::u16string_view b) const;
};

/// The attributes of a tag; names ignore case.
using AttributeList = std::map<WString, WString, AttributeNameLess>;

/// Walks over the tags that stand side by side in a text; never goes inside one. The first matching
/// end tag closes a tag, also if a tag of the same name stands inside. A tag without an end tag,
/// such as "<a/>", ends the walk: what lies behind it stays out of reach.
class TagCursor final {
 public:
  /// \param autoStart    moves to the first tag; without one the tag name reads as empty
  /// \param trimContent  leaves blanks and tabs around the content out of it (line breaks stay)
  TagCursor(std::u16string_view text, bool autoStart, bool trimContent);

  /// Moves on. False, with the content as before, if no complete tag follows.
  bool NextTag();
  [[nodiscard]] WString GetTagName() const { return TagName(); }
  /// Values lose their quotes. An attribute without a value is entered with an empty one; of two
  /// with the same name the later counts. The first white space inside a value reads as a blank.
  [[nodiscard]] AttributeList GetTagAttributes() const;
  /// As it stands between the tags; entities aren't resolved. Empty if the content is all blank and
  /// blanks are to be left out.
  [[nodiscard]] WString GetTagContent() const;

  /// Searches the whole text from its beginning, wherever the cursor stands. Names respect case.
  /// \param content, attributes  may be null; untouched if the tag isn't found
  bool FindTag(std::u16string_view tagName, WString* content, AttributeList* attributes) const;

 private:
  [[nodiscard]] std::u16string_view TagName() const;
  [[nodiscard]] std::u16string_view AttributeText() const;
  void SetContent(std::size_t begin, std::size_t end);

  WString m_text;
  std::uint32_t m_nextPos = 0;
  std::uint32_t m_tagStart = 0;
  /// Up to the ">"; wraps around if a ">" stands before the "<", as the search for it starts where
  /// the search for the tag did.
  std::uint32_t m_tagLength = 0;
  std::uint32_t m_contentStart = 0;
  std::uint32_t m_contentLength = 0;
  bool m_trimContent = false;
};

}  // namespace hv::xml
