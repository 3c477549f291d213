// fuzz/TagFuzz.cpp - connection parameters: every walk ends inside the text, and no password stays.
#include "fuzz/Fuzz.h"
#include "xml/ConnectParams.h"
#include "xml/TagCursor.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace hv::xml;
  const std::u16string text(data, data + size);
  for (const bool trim : {false, true}) {
    TagCursor cursor(text, false, trim);
    std::size_t tags = 0;
    while (cursor.NextTag()) {
      Require(++tags <= size);
      Require(text.find(cursor.GetTagContent().view()) != text.npos);
      Require(cursor.GetTagAttributes().size() <= size);
    }
    (void)TagCursor(text, true, trim).FindTag(u"b", nullptr, nullptr);
  }
  Require(StripPassword(text).size() <= size);

  hv::WString parameters;
  AppendFilenameTag(parameters, text);
  hv::WString name;  // comes back as it was written
  Require(TagCursor(parameters, true, false).FindTag(u"filename", &name, nullptr));
  name.ReplaceAll(u"&lt;", u"<").ReplaceAll(u"&gt;", u">").ReplaceAll(u"&amp;", u"&");
  Require(name.EqualsExact(text));
  return 0;
}
