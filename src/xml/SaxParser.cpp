// xml/SaxParser.cpp - a thin layer between the XML library's scanner and a handler.
#include "xml/SaxParser.h"

#include "xml/TrackedMemory.h"
#include "xml/XmlSource.h"

#include <storefabric/WString.h>

#include <xercesc/framework/XMLAttr.hpp>
#include <xercesc/framework/XMLElementDecl.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/parsers/SAXParser.hpp>
#include <xercesc/sax/HandlerBase.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLEntityResolver.hpp>
#include <xercesc/util/XMLResourceIdentifier.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/validators/DTD/DTDEntityDecl.hpp>

#include <bit>
#include <new>
#include <utility>
#include <vector>

namespace hv::xml {

namespace {

std::string MakeErrorText(const std::string& source, Position position, const std::string& reason) {
  if (position.line == 0) return source + ": " + reason;
  return source + ":" + std::to_string(position.line) + ":" + std::to_string(position.column) +
         ": " + reason;
}

std::u16string_view ElementName(std::u16string_view name, NameForm form) {
  if (form == NameForm::Written) return name;
  const std::size_t colon = name.find(u':');
  if (colon == name.npos || colon + 1 == name.size()) return name;
  return name.substr(colon + 1);
}

std::u16string_view AttributeName(std::u16string_view name, NameForm form) {
  return name.starts_with(u"xmlns:") ? name : ElementName(name, form);
}

/// A base, so that the memory is there before the parser and goes after it.
struct OwnMemory {
  TrackedMemory m_memory;
};

/// Ends a parse from inside an event; never leaves this file.
struct StopRequest {};

}  // namespace

XmlError::XmlError(std::string source, Position position, std::string reason)
    : m_source(std::move(source)),
      m_position(position),
      m_reason(std::move(reason)),
      m_text(MakeErrorText(m_source, m_position, m_reason)) {}

XmlRuntime::XmlRuntime() { xercesc::XMLPlatformUtils::Initialize(); }

XmlRuntime::~XmlRuntime() { xercesc::XMLPlatformUtils::Terminate(); }

/// Overrides what the scanner calls directly, so that no event passes through a second interface.
class SaxParser::Impl final : private OwnMemory,
                              public xercesc::SAXParser,
                              public xercesc::XMLEntityResolver {
 public:
  Impl(const Limits& limits, NameForm names);

  void Run(ByteSource& bytes, std::string_view sourceName, ISaxHandler& handler, bool isUtf16);
  void Stop() { m_stopping = true; }
  [[nodiscard]] Position Here() const;
  [[nodiscard]] const std::string& SourceName() const { return m_sourceName; }
  [[nodiscard]] std::uint64_t BytesRead() const { return m_bytes ? m_bytes->BytesRead() : m_read; }
  [[nodiscard]] std::uint64_t BytesTotal() const { return m_total; }

  // XMLDocumentHandler
  void startElement(const xercesc::XMLElementDecl& declaration, const unsigned int uriId,
                    const XMLCh* const prefix, const xercesc::RefVectorOf<xercesc::XMLAttr>& list,
                    const XMLSize_t count, const bool isEmpty, const bool isRoot) override;
  void endElement(const xercesc::XMLElementDecl& declaration, const unsigned int uriId,
                  const bool isRoot, const XMLCh* const prefix) override;
  void docCharacters(const XMLCh* const text, const XMLSize_t length, const bool isCData) override;
  void ignorableWhitespace(const XMLCh* const text, const XMLSize_t length,
                           const bool isCData) override;
  // DocTypeHandler
  void entityDecl(const xercesc::DTDEntityDecl& declaration, const bool isParameter,
                  const bool isIgnored) override;
  // XMLEntityHandler and XMLEntityResolver
  xercesc::InputSource* resolveEntity(xercesc::XMLResourceIdentifier* resource) override;
  // XMLErrorReporter
  void error(const unsigned int code, const XMLCh* const domain, const ErrTypes type,
             const XMLCh* const text, const XMLCh* const systemId, const XMLCh* const publicId,
             const XMLFileLoc line, const XMLFileLoc column) override;

 private:
  [[noreturn]] void Raise(std::string reason) const {
    throw XmlError(m_sourceName, Here(), std::move(reason));
  }
  void Leave(std::u16string_view name);
  void CheckStop() const {
    if (m_stopping) throw StopRequest{};
  }

  Limits m_limits;
  NameForm m_names;
  xercesc::SecurityManager m_security;
  xercesc::HandlerBase m_inert;
  xercesc::HandlerBase m_unused;  // never called: all events are taken before they come to it
  std::string m_sourceName;
  ISaxHandler* m_handler = nullptr;
  ByteSource* m_bytes = nullptr;
  std::uint64_t m_read = 0;
  std::uint64_t m_total = 0;
  std::size_t m_depth = 0;
  std::size_t m_entityUnits = 0;
  bool m_stopping = false;
  bool m_running = false;
  std::vector<AttributeView> m_attributes;  // kept for its memory
};

SaxParser::Impl::Impl(const Limits& limits, NameForm names)
    : xercesc::SAXParser(nullptr, &m_memory), m_limits(limits), m_names(names) {
  m_security.setEntityExpansionLimit(limits.entityExpansions);
  useScanner(xercesc::XMLUni::fgDGXMLScanner);
  setSecurityManager(&m_security);
  setDoNamespaces(false);
  setDoSchema(false);
  setLoadSchema(false);
  setValidationScheme(Val_Never);
  setSkipDTDValidation(true);
  setLoadExternalDTD(false);
  setDisableDefaultEntityResolution(true);
  setExitOnFirstFatalError(true);
  // Without these two the scanner asks nobody about entities.
  setXMLEntityResolver(this);
  setDTDHandler(&m_inert);
  // The base class joins the scanner to itself only when it is given handlers.
  setDocumentHandler(&m_unused);
  setErrorHandler(&m_unused);
}

void SaxParser::Impl::Run(ByteSource& bytes, std::string_view sourceName, ISaxHandler& handler,
                          bool isUtf16) {
  // A second parse from inside an event would tear the first one down.
  if (m_running) throw cor::exception::InvalidOperation("the parser is busy");
  m_sourceName = sourceName;
  m_handler = &handler;
  m_bytes = &bytes;
  m_total = bytes.BytesTotal();
  m_depth = 0;
  m_entityUnits = 0;
  m_stopping = false;
  m_running = true;
  struct AtEnd {
    Impl& impl;
    ~AtEnd() {
      impl.m_read = impl.m_bytes->BytesRead();
      impl.m_bytes = nullptr;
      impl.m_running = false;
    }
  } atEnd{*this};

  XmlInputSource source(bytes);
  if (isUtf16) {
    source.setEncoding(std::endian::native == std::endian::little
                           ? xercesc::XMLUni::fgUTF16LEncodingString
                           : xercesc::XMLUni::fgUTF16BEncodingString);
  }
  try {
    parse(source);
  } catch (const StopRequest&) {
  } catch (const xercesc::OutOfMemoryException&) {
    throw std::bad_alloc();
  } catch (const xercesc::XMLException& e) {
    throw XmlError(m_sourceName, {e.getSrcLine() != 0 ? Here().line : 0, 0},
                   cor::ToUtf8(e.getMessage()));
  }
}

Position SaxParser::Impl::Here() const {
  const xercesc::Locator* const locator = m_running ? getScanner().getLocator() : nullptr;
  if (!locator) return {};
  return {locator->getLineNumber(), locator->getColumnNumber()};
}

void SaxParser::Impl::startElement(const xercesc::XMLElementDecl& declaration, const unsigned int,
                                   const XMLCh* const,
                                   const xercesc::RefVectorOf<xercesc::XMLAttr>& list,
                                   const XMLSize_t count, const bool isEmpty, const bool) {
  if (++m_depth > m_limits.depth) {
    Raise("more than " + std::to_string(m_limits.depth) + " elements inside each other");
  }
  m_attributes.clear();
  for (XMLSize_t i = 0; i < count; ++i) {
    const xercesc::XMLAttr& attribute = *list.elementAt(i);
    m_attributes.push_back({AttributeName(attribute.getQName(), m_names), attribute.getValue()});
  }
  const std::u16string_view name = ElementName(declaration.getFullName(), m_names);
  m_handler->OnStart(name, m_attributes);
  CheckStop();
  if (isEmpty) Leave(name);
}

void SaxParser::Impl::endElement(const xercesc::XMLElementDecl& declaration, const unsigned int,
                                 const bool, const XMLCh* const) {
  Leave(ElementName(declaration.getFullName(), m_names));
}

void SaxParser::Impl::Leave(std::u16string_view name) {
  --m_depth;
  m_handler->OnEnd(name);
  CheckStop();
}

void SaxParser::Impl::docCharacters(const XMLCh* const text, const XMLSize_t length, const bool) {
  // The scanner also reports the white space before and behind the root element.
  if (length == 0 || m_depth == 0) return;
  m_handler->OnText({text, length});
  CheckStop();
}

void SaxParser::Impl::ignorableWhitespace(const XMLCh* const text, const XMLSize_t length,
                                          const bool isCData) {
  docCharacters(text, length, isCData);
}

void SaxParser::Impl::entityDecl(const xercesc::DTDEntityDecl& declaration, const bool,
                                 const bool) {
  m_entityUnits += declaration.getValueLen();
  if (m_entityUnits > m_limits.entityTextUnits) Raise("too much text in entity declarations");
}

xercesc::InputSource* SaxParser::Impl::resolveEntity(xercesc::XMLResourceIdentifier* resource) {
  const XMLCh* const systemId = resource->getSystemId();
  Raise("external entities are not allowed: " + cor::ToUtf8(systemId ? systemId : u""));
}

void SaxParser::Impl::error(const unsigned int, const XMLCh* const, const ErrTypes type,
                            const XMLCh* const text, const XMLCh* const, const XMLCh* const,
                            const XMLFileLoc line, const XMLFileLoc column) {
  if (type == ErrType_Warning) return;
  throw XmlError(m_sourceName, {line, column}, cor::ToUtf8(text));
}

SaxParser::SaxParser(const Limits& limits, NameForm names)
    : m_impl(std::make_unique<Impl>(limits, names)) {}

SaxParser::~SaxParser() = default;

void SaxParser::ParseFile(const std::filesystem::path& path, ISaxHandler& handler) {
  FileByteSource bytes(path);
  m_impl->Run(bytes, path.string(), handler, false);
}

void SaxParser::ParseMemory(std::u16string_view text, ISaxHandler& handler,
                            std::string_view sourceName) {
  if (text.starts_with(u'\uFEFF')) text.remove_prefix(1);
  MemoryByteSource bytes(std::as_bytes(std::span(text)));
  m_impl->Run(bytes, sourceName, handler, true);
}

void SaxParser::ParseBytes(std::span<const std::byte> bytes, std::string_view sourceName,
                           ISaxHandler& handler) {
  MemoryByteSource source(bytes);
  m_impl->Run(source, sourceName, handler, false);
}

void SaxParser::Stop() { m_impl->Stop(); }

Position SaxParser::CurrentPosition() const { return m_impl->Here(); }

XmlError SaxParser::ErrorHere(std::string reason) const {
  return XmlError(m_impl->SourceName(), m_impl->Here(), std::move(reason));
}

std::uint64_t SaxParser::BytesRead() const { return m_impl->BytesRead(); }

std::uint64_t SaxParser::BytesTotal() const { return m_impl->BytesTotal(); }

}  // namespace hv::xml
