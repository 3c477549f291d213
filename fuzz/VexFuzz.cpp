// fuzz/VexFuzz.cpp - documents from outside: what is read comes back as the same document.
#include "core/plugins/vex/DocumentModels.h"
#include "core/plugins/vex/VexReader.h"
#include "core/plugins/vex/VexWriter.h"
#include "fuzz/Fuzz.h"

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
  KeepXml();
  std::string once;
  if (IsDone(hv::vex::errc::kBadFile, [&] { once = Rewritten(TextOf(data, size)); })) {
    Require(Rewritten(once) == once);
  }
  return 0;
}
