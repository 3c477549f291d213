// fuzz/TagFuzz.cpp - connection parameters: every walk ends inside the text, and no password stays.
#include "xml/ConnectParams.h"
#include "xml/TagCursor.h"

#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace hv::xml;
  const std::u16string text(data, data + size);
  for (const bool trim : {false, true}) {
    TagCursor cursor(text, false, trim);
    std::size_t tags = 0;
    while (cursor.NextTag()) {
      if (++tags > size) std::abort();
      const hv::WString content = cursor.GetTagContent();
      if (text.find(content.view()) == text.npos) std::abort();
      const AttributeList attributes = cursor.GetTagAttributes();
      if (attributes.size() > size) std::abort();
    }
    (void)TagCursor(text, true, trim).FindTag(u"b", nullptr, nullptr);
  }
  const hv::WString stripped = StripPassword(text);
  if (stripped.size() > size) std::abort();

  hv::WString parameters;
  AppendFilenameTag(parameters, text);
  hv::WString name;  // comes back as it was written
  if (!TagCursor(parameters, true, false).FindTag(u"filename", &name, nullptr)) std::abort();
  name.ReplaceAll(u"&lt;", u"<").ReplaceAll(u"&gt;", u">").ReplaceAll(u"&amp;", u"&");
  if (!name.EqualsExact(text)) std::abort();
  return 0;
}
