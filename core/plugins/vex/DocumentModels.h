// core/plugins/vex/DocumentModels.h - the models of documents that are built into the engine.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "core/model/Model.h"

namespace hv::vex::engine {

/// The model of that URI, with or without the organisation in front; null if there is none. Made
/// anew by each call.
std::shared_ptr<const Model> FindDocumentModel(std::u16string_view uri);

/// The path of a document model ("/DataModels/VEX/Query/1_2"); empty for models of other kinds.
std::u16string_view PathOfDocumentModel(const Model& model);

}  // namespace hv::vex::engine
