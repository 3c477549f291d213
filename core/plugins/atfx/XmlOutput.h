// core/plugins/atfx/XmlOutput.h - writes indented XML in UTF-8.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/plugins/files/FileOutput.h"

namespace hv::vex::engine::atfx {

/// True if the text can be the name of a tag, colons excepted.
bool IsXmlName(std::u16string_view text);

/// Tags on lines of their own, texts and numbers inside them. Characters that XML 1.0 doesn't allow
/// become U+FFFD.
class XmlOutput {
 public:
  explicit XmlOutput(FileOutput& file) : m_file(file) {}
  XmlOutput(const XmlOutput&) = delete;
  XmlOutput& operator=(const XmlOutput&) = delete;

  /// Opens an element. Throws kWriteFailed if the name can't be one.
  void Start(std::u16string_view name);
  /// Of the start tag just opened, before anything else.
  void Attribute(std::string_view name, std::u16string_view value);
  /// Closes the element opened last.
  void End();
  void Text(std::u16string_view text);
  /// Text that is known to need no escapes.
  void Plain(std::string_view text);
  /// A number in a list: a blank stands before it unless it is the first.
  void Integer(std::int64_t value);
  /// With as many digits as bring the same number back: of a float if `isSingle`, else a double.
  void Real(double value, bool isSingle);
  /// An element with a text and nothing else.
  void Leaf(std::u16string_view name, std::u16string_view text);
  void Leaf(std::u16string_view name, std::int64_t value);

 private:
  void BeforeContent();
  void NewLine();
  void Escaped(std::u16string_view text, bool isAttribute);
  void ListNumber(const char* begin, const char* end);

  FileOutput& m_file;
  std::vector<std::string> m_open;
  bool m_isTagOpen = false;  // the start tag's ">" is still to come
  bool m_hasText = false;    // the end tag follows the text
  bool m_hasNumber = false;  // a number stands in the element
  std::u16string m_buffer;
};

}  // namespace hv::vex::engine::atfx
