// fuzz/SettingsFuzz.cpp - stored settings: handlers see balanced events, and let go of everything.
#include "cor/Counted.h"
#include "xml/SaxState.h"

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

using namespace hv;
using namespace hv::xml;

/// Counts what opens and closes, over all elements of one reader.
class CountingState final : public ISAXStateImpl {
 public:
  CountingState(int& open, bool& sawText) : m_open(open), m_sawText(sawText) {}
  void OnAttributes(std::span<const AttributeView>) override { ++m_open; }
  void OnCharacters(std::u16string_view text) override {
    if (m_open <= 0 || text.empty()) std::abort();
    m_sawText = true;
  }
  void OnEnd() override {
    if (--m_open < 0) std::abort();
  }

 private:
  int& m_open;
  bool& m_sawText;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const auto* const runtime = new XmlRuntime;  // started once for all inputs
  (void)runtime;
  const std::u16string text(data, data + size);
  const std::int64_t alive = cor::LiveObjectCount();
  int open = 0;
  bool sawText = false;
  {
    const auto root = MakeRef<CountingState>(open, sawText);
    const auto list = MakeRef<CountingState>(open, sawText);
    list->AddChildState(u"column", MakeRef<CountingState>(open, sawText));
    root->AddChildState(u"list", list);
    const Result code = ParseXmlDocument(text, u"root", *root);
    if (!Failed(code) && open != 0) std::abort();
  }
  if (cor::LiveObjectCount() != alive) std::abort();
  return 0;
}
