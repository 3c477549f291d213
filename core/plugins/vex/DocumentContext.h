// core/plugins/vex/DocumentContext.h - reports errors and remarks with their place in a document.
#pragma once

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/store/memory/Failure.h"
#include "xml/SaxParser.h"

namespace hv::vex::engine::vexdoc {

class DocumentContext final {
 public:
  /// \param sourceName  as it shall stand in messages.
  DocumentContext(const xml::SaxParser& parser, std::u16string sourceName)
      : m_parser(parser), m_sourceName(std::move(sourceName)) {}
  DocumentContext(const DocumentContext&) = delete;
  DocumentContext& operator=(const DocumentContext&) = delete;

  [[nodiscard]] std::uint64_t Line() const { return m_parser.CurrentPosition().line; }
  /// Throws kBadFile with "SOURCE:LINE: reason"; without the line if it is 0.
  [[noreturn]] void RefuseAt(std::uint64_t line,
                             std::initializer_list<std::u16string_view> reason) const;
  [[noreturn]] void Refuse(std::initializer_list<std::u16string_view> reason) const {
    RefuseAt(Line(), reason);
  }
  /// Notes "LINE: text". Beyond a hundred remarks a document says nothing new.
  void Warn(std::initializer_list<std::u16string_view> text);
  [[nodiscard]] std::vector<std::u16string>& Warnings() { return m_warnings; }

 private:
  const xml::SaxParser& m_parser;
  std::u16string m_sourceName;
  std::vector<std::u16string> m_warnings;
};

/// Runs `parse(parser)` and turns what the XML reader complains about into the engine's exception.
template <class Parse>
void ParseGuarded(const DocumentContext& context, xml::SaxParser& parser, Parse parse) {
  try {
    parse(parser);
  } catch (const xml::XmlError& error) {
    context.RefuseAt(error.Where().line, {cor::FromUtf8(error.Reason())});
  }
}

/// The value of a start tag's attribute; null if it has none of that name.
const std::u16string_view* FindTagValue(std::span<const xml::AttributeView> attributes,
                                        std::u16string_view name);
/// True if there is nothing but white space.
bool IsBlank(std::u16string_view text);

}  // namespace hv::vex::engine::vexdoc
