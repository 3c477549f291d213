#include "core/plugins/vex/DocumentModels.h"

#include <embedded/kBrowseSettingsModel.h>
#include <embedded/kContextParameterModel.h>
#include <embedded/kQueryModel.h>

#include <span>

#include "core/plugins/vex/ModelDefinition.h"

namespace hv::vex::engine {
namespace {

struct Resource {
  std::u16string_view path;
  std::string_view file;
  std::span<const char> text;
};
constexpr Resource kResources[] = {
    {u"/DataModels/VEX/BrowseSettings/1_0", "browse-settings-1_0.xml",
     embedded::kBrowseSettingsModel},
    {u"/DataModels/VEX/ContextParameter/1_0", "context-parameter-1_0.xml",
     embedded::kContextParameterModel},
    {u"/DataModels/VEX/Query/1_2", "query-1_2.xml", embedded::kQueryModel},
};

}  // namespace

std::shared_ptr<const Model> FindDocumentModel(std::u16string_view uri) {
  if (uri.starts_with(vexdoc::kOrganisation)) uri.remove_prefix(vexdoc::kOrganisation.size());
  for (const Resource& resource : kResources) {
    if (resource.path != uri) continue;
    return vexdoc::ReadModelDefinition(std::as_bytes(resource.text), resource.file).model;
  }
  return nullptr;
}

std::u16string_view PathOfDocumentModel(const Model& model) {
  if (model.BaseVersion() != 0 || model.Parts().empty()) return {};
  return model.Parts().front();
}

}  // namespace hv::vex::engine
