// core/plugins/atfx/AtfxReader.cpp - runs the XML pass and turns its errors into the engine's.
#include "core/plugins/atfx/AtfxReader.h"

#include "core/plugins/atfx/AtfxDocument.h"
#include "core/plugins/atfx/OwnFiles.h"
#include "core/store/memory/Failure.h"

#include "store/core/Exception.h"
#include "xml/SaxParser.h"

#include <cerrno>
#include <system_error>

#include <unistd.h>

namespace hv::vex::engine::atfx {

namespace {

/// `run(parser, document)` parses.
template <class Run>
ReadResult Read(const std::filesystem::path& folder, std::u16string sourceName, ReadOptions options,
                std::u16string_view stem, Run run) {
  const auto files = std::make_shared<ComponentFiles>(folder, std::move(options.warnLater));
  xml::SaxParser parser;
  ReadContext context(parser, sourceName);
  AtfxDocument document(context, files);
  try {
    run(parser, document);
  } catch (const xml::XmlError& error) {
    const auto line = static_cast<std::int64_t>(std::max<std::uint64_t>(error.Where().line, 1));
    Fail(errc::kBadFile,
         {sourceName, u":", DecimalText(line), u": ", cor::FromUtf8(error.Reason())});
  }
  ReadResult result;
  result.store = document.Finish(std::move(options.persistence));
  if (IsOwnExporter(document.Exporter())) {
    for (const auto& [identifier, name] : document.Files()) {
      if (IsOwnComponentName(name, stem)) result.ownComponentFiles.push_back(files->Resolve(name));
    }
  }
  return result;
}

/// Tells a file that can't be read from one that can't be understood.
void CheckReadable(const std::filesystem::path& path) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(path, error);
  std::string reason;
  if (error || !std::filesystem::exists(status)) {
    reason = std::generic_category().message(error ? error.value() : ENOENT);
  } else if (!std::filesystem::is_regular_file(status)) {
    reason = "not a regular file";
  } else if (access(path.c_str(), R_OK) != 0) {
    reason = std::generic_category().message(errno);
  } else {
    return;
  }
  throw Exception(errc::kConnectFailed, cor::FromUtf8(path.string() + ": " + reason));
}

}  // namespace

ReadResult ReadAtfxFile(const std::filesystem::path& path, ReadOptions options) {
  CheckReadable(path);
  const std::filesystem::path absolute = std::filesystem::absolute(path).lexically_normal();
  return Read(
      absolute.parent_path(), cor::FromUtf8(path.string()).str(), std::move(options),
      cor::FromUtf8(path.stem().string()),
      [&](xml::SaxParser& parser, AtfxDocument& document) { parser.ParseFile(path, document); });
}

ReadResult ReadAtfxBytes(std::span<const std::byte> bytes, std::string_view sourceName,
                         const std::filesystem::path& folder, ReadOptions options) {
  const std::filesystem::path name(sourceName);
  return Read(folder, cor::FromUtf8(sourceName).str(), std::move(options),
              cor::FromUtf8(name.stem().string()),
              [&](xml::SaxParser& parser, AtfxDocument& document) {
                parser.ParseBytes(bytes, sourceName, document);
              });
}

}  // namespace hv::vex::engine::atfx
