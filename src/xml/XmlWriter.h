// xml/XmlWriter.h - writes XML of the library's own in memory: user settings and stored queries.
// A plain value on its function's stack. No indentation, no line breaks, no namespaces.
#pragma once

#include <cstdint>
#include <deque>
#include <string_view>
#include <vector>

#include <storefabric/WString.h>

namespace hv::xml {

/// Writes one document in call order: a root, then any nesting of elements, attributes (only
/// straight after `StartElement` or another `AddAttribute`) and text. What is left open is closed
/// by `GetDocument`.
///
/// A failure raises `hv::vex::Exception` with the code -1001 or -1004 and the text "(number):
/// words"; nothing has been written then, and the caller may go on.
class XmlWriter final {
 public:
  XmlWriter() = default;
  XmlWriter(const XmlWriter&) = delete;
  XmlWriter& operator=(const XmlWriter&) = delete;

  /// Opens an element. The name is written as it stands; the one thing it must not hold is a blank.
  /// Raises -1001 for a second root, -1004 "illegal tagName" for a name with a blank.
  void StartElement(std::u16string_view tagName);
  /// Adds an attribute to the start tag that is open. The same name twice is written twice. Without
  /// effect outside of the root. Raises -1004 behind the start tag ("wrong place for attribute")
  /// and for a name with a blank ("illegal attribute name").
  ///
  /// The finished document encloses values in apostrophes, and an apostrophe inside a value stays
  /// bare: such a document isn't well-formed. Stored texts depend on these bytes.
  void AddAttribute(std::u16string_view attributeName, std::u16string_view value);
  /// Adds text to the content of the innermost element; an empty text still makes it one with an
  /// end tag. Without effect outside of the root.
  void AddText(std::u16string_view text);
  /// Closes the innermost element, in the short form if it got neither text nor child. Without
  /// effect if none is open.
  void EndElement();
  /// Closes everything, and gives the document with its declaration. May be called again.
  [[nodiscard]] WString GetDocument();

 private:
  enum class State : std::int32_t {
    BeforeRoot = 0,
    InStartTag = 1,  ///< the ">" of the start tag isn't written yet
    InContent = 2,
    AfterRoot = 3,
  };

  WString m_buffer;  ///< without the declaration, values still in double quotes
  std::deque<WString> m_openTags;
  std::vector<WString> m_attributeNames;  ///< always empty, see `AddAttribute` in the source
  State m_state = State::BeforeRoot;
};

}  // namespace hv::xml
