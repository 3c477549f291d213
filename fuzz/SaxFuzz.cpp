// fuzz/SaxFuzz.cpp - XML from outside: events must nest, and every failure must have its place.
#include "xml/SaxParser.h"

#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>
#include <vector>

namespace {

/// Stops if an end doesn't belong to the last start, or text comes outside of an element.
class NestingCheck final : public hv::xml::ISaxHandler {
 public:
  void OnStart(std::u16string_view name, std::span<const hv::xml::AttributeView>) override {
    m_open.emplace_back(name);
    if (m_open.size() > 256) std::abort();
  }
  void OnText(std::u16string_view text) override {
    m_units += text.size();
    if (m_open.empty() || text.empty()) std::abort();
  }
  void OnEnd(std::u16string_view name) override {
    if (m_open.empty() || m_open.back() != name) std::abort();
    m_open.pop_back();
  }
  [[nodiscard]] bool IsClosed() const { return m_open.empty(); }

 private:
  std::vector<std::u16string> m_open;
  std::size_t m_units = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const auto* const runtime = new hv::xml::XmlRuntime;  // started once for all inputs
  (void)runtime;
  hv::xml::SaxParser parser;
  NestingCheck check;
  try {
    parser.ParseBytes(std::as_bytes(std::span(data, size)), "s", check);
    if (!check.IsClosed()) std::abort();
  } catch (const hv::xml::XmlError& e) {
    if (e.Reason().empty()) std::abort();
  }
  return 0;
}
