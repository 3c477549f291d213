// xml/SaxParser.h - the one pass over XML from outside that the whole project uses.
// Made for hostile input: no namespaces, schema or validation; the external subset of a document
// type isn't loaded, external entities are refused, internal ones are bounded, and so is the depth.
// One thread. No header of the XML library is seen by whoever includes this one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "cor/Exceptions.h"

namespace hv::xml {

/// A place in the source; both count from 1, and 0 means unknown.
struct Position {
  std::uint64_t line = 0;
  std::uint64_t column = 0;
};

/// How a handler gets the names of elements and attributes. A prefix needs no declaration.
enum class NameForm : std::uint8_t {
  /// Without prefixes. A declaration of a prefix keeps its whole name ("xmlns:q"), so that it isn't
  /// taken for an attribute "q".
  Local,
  Written,  ///< as they stand in the source, prefixes included
};

/// An attribute of a start tag.
struct AttributeView {
  std::u16string_view name;
  std::u16string_view value;
};

/// Receives the events of a parse. All views are valid during the call only. A handler may raise
/// whatever it likes; the exception leaves the parse call unchanged and the parser stays usable.
class ISaxHandler {
 public:
  /// \param name  the element's name, in the parser's form of names
  virtual void OnStart(std::u16string_view name, std::span<const AttributeView> attributes) = 0;
  /// Text inside the root element, white space included. One run of text may come in pieces.
  virtual void OnText(std::u16string_view text) = 0;
  /// Follows every `OnStart`, also that of an element written as an empty tag.
  virtual void OnEnd(std::u16string_view name) = 0;

 protected:
  ~ISaxHandler() = default;
};

/// A source that can't be read, isn't well-formed, or goes beyond a limit.
class XmlError final : public cor::exception::Exception {
 public:
  XmlError(std::string source, Position position, std::string reason);
  /// "source:line:column: reason" in UTF-8; without the numbers if the place is unknown.
  [[nodiscard]] const char* what() const noexcept override { return m_text.c_str(); }
  [[nodiscard]] const std::string& Source() const { return m_source; }
  [[nodiscard]] Position Where() const { return m_position; }
  /// Why, in English, without the place.
  [[nodiscard]] const std::string& Reason() const { return m_reason; }

 private:
  std::string m_source;
  Position m_position;
  std::string m_reason;
  std::string m_text;
};

/// What a source may ask for at most; beyond it the parse ends with an `XmlError`.
struct Limits {
  std::size_t depth = 256;              ///< elements inside each other
  std::size_t entityExpansions = 1000;  ///< references to entities of the document's own
  std::size_t entityTextUnits = std::size_t{1} << 16;  ///< text of all entity declarations together
};

/// Keeps the XML library started while it lives. Counted by the library itself: any number may live
/// at once, in any module of the process. A parser holds one; whoever makes many parsers holds one
/// beside them, so that the library isn't started for each anew.
class XmlRuntime final {
 public:
  XmlRuntime();
  ~XmlRuntime();
  XmlRuntime(const XmlRuntime&) = delete;
  XmlRuntime& operator=(const XmlRuntime&) = delete;
};

/// Parses one source at a time; may be used again and again.
class SaxParser final {
 public:
  explicit SaxParser(const Limits& limits = {}, NameForm names = NameForm::Local);
  ~SaxParser();
  SaxParser(const SaxParser&) = delete;
  SaxParser& operator=(const SaxParser&) = delete;

  /// Parses a file, read in pieces. The encoding comes from the byte order mark or the declaration,
  /// else it is UTF-8. Raises `XmlError`, and what the handler raises.
  void ParseFile(const std::filesystem::path& path, ISaxHandler& handler);
  /// Parses text in memory. Whatever encoding it declares is ignored.
  /// \param sourceName  stands for the file in errors.
  void ParseMemory(std::u16string_view text, ISaxHandler& handler,
                   std::string_view sourceName = "text");
  /// Parses the bytes of a file that is in memory already.
  void ParseBytes(std::span<const std::byte> bytes, std::string_view sourceName,
                  ISaxHandler& handler);

  /// Called from inside an event: the parse ends after it without an error and without further
  /// events.
  void Stop();
  /// Inside an event: the place just behind the tag or text of the event.
  [[nodiscard]] Position CurrentPosition() const;
  /// An error at the current place, for the handler's own complaints.
  [[nodiscard]] XmlError ErrorHere(std::string reason) const;

  /// How many bytes of the source have been taken in; somewhat ahead of the events.
  [[nodiscard]] std::uint64_t BytesRead() const;
  /// The size of the source in bytes, or 0 if it is unknown (a pipe).
  [[nodiscard]] std::uint64_t BytesTotal() const;

 private:
  class Impl;
  XmlRuntime m_runtime;
  std::unique_ptr<Impl> m_impl;
};

}  // namespace hv::xml
