// core/plugins/atfx/ModelWriter.h - writes an application model as ATFX.
#pragma once

#include "core/model/Model.h"
#include "core/plugins/atfx/XmlOutput.h"

namespace hv::vex::engine::atfx {

/// Writes the section `application_model`. Members stand in their order; whatever the base model of
/// the version says anyhow is left out, except for the ends of relations, which many readers need.
/// Throws kNotSupported for an element that stands on no base element of the standard.
void WriteModel(const Model& model, XmlOutput& xml);

/// The namespace that belongs to a base model version.
std::u16string_view NamespaceOf(int baseVersion);

}  // namespace hv::vex::engine::atfx
