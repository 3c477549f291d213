// core/plugins/atfx/AtfxReader.cpp - runs the XML pass and turns its errors into the engine's.
#include "core/plugins/atfx/AtfxReader.h"

#include "core/plugins/atfx/AtfxDocument.h"
#include "core/plugins/atfx/OwnFiles.h"
#include "core/store/memory/Failure.h"

#include "store/core/Exception.h"
#include "xml/SaxParser.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fstream>
#include <system_error>

#include <unistd.h>

namespace hv::vex::engine::atfx {

namespace {

/// Tells of the progress now and then, and hands everything on.
class WatchedHandler final : public xml::ISaxHandler {
 public:
  WatchedHandler(const xml::SaxParser& parser, xml::ISaxHandler& next, const Watch& watch)
      : m_parser(parser), m_next(next), m_watch(watch) {}

  void OnStart(std::u16string_view name, std::span<const xml::AttributeView> attributes) override {
    Tell();
    m_next.OnStart(name, attributes);
  }
  void OnText(std::u16string_view text) override {
    Tell();
    m_next.OnText(text);
  }
  void OnEnd(std::u16string_view name) override { m_next.OnEnd(name); }

 private:
  void Tell() {
    constexpr unsigned kEvents = 256;
    if (++m_events % kEvents == 0) m_watch.Tell(m_parser.BytesRead(), m_parser.BytesTotal());
  }

  const xml::SaxParser& m_parser;
  xml::ISaxHandler& m_next;
  const Watch& m_watch;
  unsigned m_events = 0;
};

/// `run(parser, handler)` parses.
template <class Run>
std::unique_ptr<MemoryStore> Read(const std::filesystem::path& folder,
                                  const std::u16string& sourceName, ReadOptions options, Run run) {
  xml::SaxParser parser;
  ReadContext context(parser, sourceName);
  std::shared_ptr<ValueSpool> spool;
  if (!options.spoolFolder.empty()) spool = std::make_shared<ValueSpool>(options.spoolFolder);
  AtfxDocument document(context,
                        std::make_shared<ComponentFiles>(folder, std::move(options.warnLater)),
                        std::move(spool));
  WatchedHandler watched(parser, document, options.watch);
  try {
    options.watch.IsAnybodyThere() ? run(parser, watched) : run(parser, document);
  } catch (const xml::XmlError& error) {
    const auto line = static_cast<std::int64_t>(std::max<std::uint64_t>(error.Where().line, 1));
    Fail(errc::kBadFile,
         {sourceName, u":", DecimalText(line), u": ", cor::FromUtf8(error.Reason())});
  }
  return document.Finish(std::move(options.persistence));
}

/// Hands on what stands before the application model and leaves the rest unread.
class HeaderHandler final : public xml::ISaxHandler {
 public:
  HeaderHandler(xml::SaxParser& parser, AtfxDocument& document)
      : m_parser(parser), m_document(document) {}

  void OnStart(std::u16string_view name, std::span<const xml::AttributeView> attributes) override {
    if (name == u"application_model" || name == u"instance_data") return m_parser.Stop();
    m_document.OnStart(name, attributes);
  }
  void OnText(std::u16string_view text) override { m_document.OnText(text); }
  void OnEnd(std::u16string_view name) override { m_document.OnEnd(name); }

 private:
  xml::SaxParser& m_parser;
  AtfxDocument& m_document;
};

/// What is wrong with the first bytes of a file, which no parser could tell as well; empty if they
/// may begin a document in any of the encodings of Unicode.
std::string DoubtAbout(const std::filesystem::path& path) {
  std::array<char, 64> buffer{};
  std::ifstream file(path, std::ios::binary);
  file.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
  const std::string_view begin(buffer.data(), static_cast<std::size_t>(file.gcount()));
  if (begin.empty()) return "the file is empty";
  if (begin.starts_with("SQLite format 3")) return "the file is a database of SQLite";
  const std::size_t first =
      begin.find_first_not_of(std::string_view("\xEF\xBB\xBF\xFE\xFF\0 \t\r\n", 10));
  const bool isXml = first == begin.npos || begin[first] == '<';
  return isXml ? "" : "the file is no XML document";
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
    reason = DoubtAbout(path);
  }
  if (reason.empty()) return;
  throw Exception(errc::kBadFile, cor::FromUtf8(path.string() + ": " + reason));
}

}  // namespace

std::unique_ptr<MemoryStore> ReadAtfxFile(const std::filesystem::path& path, ReadOptions options) {
  CheckReadable(path);
  const std::filesystem::path absolute = std::filesystem::absolute(path).lexically_normal();
  return Read(
      absolute.parent_path(), cor::FromUtf8(path.string()).str(), std::move(options),
      [&](xml::SaxParser& parser, xml::ISaxHandler& handler) { parser.ParseFile(path, handler); });
}

std::unique_ptr<MemoryStore> ReadAtfxBytes(std::span<const std::byte> bytes,
                                           std::string_view sourceName,
                                           const std::filesystem::path& folder,
                                           ReadOptions options) {
  return Read(folder, cor::FromUtf8(sourceName).str(), std::move(options),
              [&](xml::SaxParser& parser, xml::ISaxHandler& handler) {
                parser.ParseBytes(bytes, sourceName, handler);
              });
}

std::vector<std::filesystem::path> OwnComponentFilesOf(const std::filesystem::path& path) {
  std::vector<std::filesystem::path> own;
  xml::SaxParser parser;
  ReadContext context(parser, {});
  AtfxDocument document(context, nullptr);
  try {
    CheckReadable(path);
    HeaderHandler header(parser, document);
    parser.ParseFile(path, header);
  } catch (const Exception&) {
    return own;
  } catch (const xml::XmlError&) {
    return own;
  }
  if (document.Exporter() != kExporter) return own;
  const std::u16string stem = cor::FromUtf8(path.stem().string()).str();
  for (const auto& [identifier, name] : document.Files()) {
    if (NumberOfOwnComponent(name, stem) != 0)
      own.push_back(path.parent_path() / cor::ToUtf8(name));
  }
  return own;
}

}  // namespace hv::vex::engine::atfx
