#include "core/plugins/vex/VexReader.h"

#include "core/plugins/vex/DocumentHandler.h"

namespace hv::vex::engine::vexdoc {

namespace {

/// `parse(parser, handler)` parses.
template <class Parse>
std::unique_ptr<MemoryStore> Read(std::u16string sourceName, VexReadOptions options, Parse parse) {
  xml::SaxParser parser;
  DocumentContext context(parser, std::move(sourceName));
  DocumentHandler handler(context, options);
  ParseGuarded(context, parser, [&](xml::SaxParser& run) { parse(run, handler); });
  return handler.Finish(std::move(options.persistence));
}

}  // namespace

std::unique_ptr<MemoryStore> ReadVexFile(const std::filesystem::path& path,
                                         VexReadOptions options) {
  return Read(
      cor::FromUtf8(path.string()).str(), std::move(options),
      [&](xml::SaxParser& parser, DocumentHandler& handler) { parser.ParseFile(path, handler); });
}

std::unique_ptr<MemoryStore> ReadVexText(std::u16string_view text, std::string_view sourceName,
                                         VexReadOptions options) {
  return Read(cor::FromUtf8(sourceName).str(), std::move(options),
              [&](xml::SaxParser& parser, DocumentHandler& handler) {
                parser.ParseMemory(text, handler, sourceName);
              });
}

}  // namespace hv::vex::engine::vexdoc
