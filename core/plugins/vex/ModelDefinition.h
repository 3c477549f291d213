// core/plugins/vex/ModelDefinition.h - reads the definition of a document's model.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "core/model/Model.h"

namespace hv::vex::engine::vexdoc {

/// The organisation that all URIs of models begin with.
inline constexpr std::u16string_view kOrganisation = u"http://www.halvorn.example";

struct ModelDefinition {
  std::u16string path;  ///< "/DataModels/VEX/Query/1_2": the URI without the organisation
  std::shared_ptr<const Model> model;
};

/// Reads a definition; docs/formats/vex-document.md tells the form. The model has its path and its
/// URI as parts. Its references from the whole to the part are the declared ones, and each has an
/// inverse that isn't. Throws kBadFile with source, line and reason.
ModelDefinition ReadModelDefinition(std::span<const std::byte> text, std::string_view sourceName);

}  // namespace hv::vex::engine::vexdoc
