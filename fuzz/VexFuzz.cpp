// fuzz/VexFuzz.cpp - documents from outside: what is read comes back as the same document.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "core/plugins/vex/DocumentModels.h"
#include "core/plugins/vex/VexReader.h"
#include "core/plugins/vex/VexWriter.h"
#include "store/core/Exception.h"
#include "xml/SaxParser.h"

namespace {

using namespace hv::vex::engine;

std::shared_ptr<const Model> OneModel(std::u16string_view) {
  static const auto& model = *new auto(FindDocumentModel(u"/DataModels/VEX/Query/1_2"));
  return model;
}

std::string Rewritten(std::string_view text) {
  const hv::WString wide = hv::cor::FromUtf8(text);
  return vexdoc::WriteVexText(*vexdoc::ReadVexText(wide, "fuzz.vex", {{}, OneModel, {}}));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // Starting the XML library anew for every input would take most of the time.
  static const auto* const runtime = new hv::xml::XmlRuntime;
  static_cast<void>(runtime);
  std::string once;
  try {
    once = Rewritten({reinterpret_cast<const char*>(data), size});
  } catch (const hv::vex::Exception& error) {
    // Nothing but the refusal of a bad document may come out.
    if (error.code != hv::vex::errc::kBadFile) std::abort();
    return 0;
  }
  if (Rewritten(once) != once) std::abort();
  return 0;
}
