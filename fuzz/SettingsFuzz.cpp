// fuzz/SettingsFuzz.cpp - stored settings: handlers see balanced events, and let go of everything.
#include "cor/Counted.h"
#include "fuzz/Fuzz.h"
#include "xml/SaxState.h"

namespace {

using namespace hv;
using namespace hv::xml;

/// Counts what opens and closes, over all elements of one reader.
class CountingState final : public ISAXStateImpl {
 public:
  explicit CountingState(int& open) : m_open(open) {}
  void OnAttributes(std::span<const AttributeView>) override { ++m_open; }
  void OnCharacters(std::u16string_view text) override { Require(m_open > 0 && !text.empty()); }
  void OnEnd() override { Require(--m_open >= 0); }

 private:
  int& m_open;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  KeepXml();
  const std::u16string text(data, data + size);
  const std::int64_t alive = cor::LiveObjectCount();
  int open = 0;
  {
    const auto root = MakeRef<CountingState>(open);
    const auto list = MakeRef<CountingState>(open);
    list->AddChildState(u"column", MakeRef<CountingState>(open));
    root->AddChildState(u"list", list);
    const Result code = ParseXmlDocument(text, u"root", *root);
    Require(Failed(code) || open == 0);
  }
  Require(cor::LiveObjectCount() == alive);
  return 0;
}
