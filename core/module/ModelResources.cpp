#include "core/module/ModelResources.h"

#include <embedded/kTestBenchModel.h>

#include <span>

#include "core/plugins/atfx/AtfxReader.h"
#include "core/plugins/vex/DocumentModels.h"

namespace hv::vex::engine {
namespace {

/// A model is kept as an exchange file without instances.
struct ModelResource {
  std::u16string_view name;
  std::string_view file;
  std::span<const char> text;
};
constexpr ModelResource kModels[] = {
    {u"testbench", "testbench.atfx", embedded::kTestBenchModel},
};

}  // namespace

std::shared_ptr<const Model> FindModelResource(std::u16string_view name) {
  for (const ModelResource& resource : kModels) {
    if (resource.name != name) continue;
    return atfx::ReadAtfxBytes(std::as_bytes(resource.text), resource.file, {}, {})->GetModel();
  }
  return FindDocumentModel(name);
}

}  // namespace hv::vex::engine
