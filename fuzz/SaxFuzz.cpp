// fuzz/SaxFuzz.cpp - XML from outside: events must nest, and every failure must have its place.
#include "fuzz/Fuzz.h"

#include <vector>

namespace {

/// Stops if an end doesn't belong to the last start, or text comes outside of an element.
class NestingCheck final : public hv::xml::ISaxHandler {
 public:
  void OnStart(std::u16string_view name, std::span<const hv::xml::AttributeView>) override {
    m_open.emplace_back(name);
    Require(m_open.size() <= 256);
  }
  void OnText(std::u16string_view text) override {
    m_units += text.size();
    Require(!m_open.empty() && !text.empty());
  }
  void OnEnd(std::u16string_view name) override {
    Require(!m_open.empty() && m_open.back() == name);
    m_open.pop_back();
  }
  [[nodiscard]] bool IsClosed() const { return m_open.empty(); }

 private:
  std::vector<std::u16string> m_open;
  std::size_t m_units = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  KeepXml();
  hv::xml::SaxParser parser;
  NestingCheck check;
  try {
    parser.ParseBytes(std::as_bytes(std::span(data, size)), "s", check);
    Require(check.IsClosed());
  } catch (const hv::xml::XmlError& e) {
    Require(!e.Reason().empty());
  }
  return 0;
}
