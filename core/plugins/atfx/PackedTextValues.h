// core/plugins/atfx/PackedTextValues.h - texts and byte strings in a component file.
#pragma once

#include <memory>

#include "core/plugins/atfx/ComponentFile.h"
#include "core/plugins/atfx/ComponentValues.h"

namespace hv::vex::engine::atfx {

/// Opens texts that are ended by zero bytes; one without its zero at the end counts too.
/// \param isCut  set if the file ends before the component does.
std::unique_ptr<ValueSource> OpenTexts(std::shared_ptr<const ComponentFile> file,
                                       const Component& component, OdsType wanted, bool* isCut);

/// Opens byte strings that each stand behind their length. Exporters disagree about the byte order
/// of the lengths, so the one counts with which they add up to the component's length.
std::unique_ptr<ValueSource> OpenByteStrings(std::shared_ptr<const ComponentFile> file,
                                             const Component& component, bool* isCut);

}  // namespace hv::vex::engine::atfx
