// core/plugins/atfx/FixedWidthValues.h - numbers, booleans and bit fields in a component file.
#pragma once

#include <memory>
#include <string_view>

#include "core/plugins/atfx/ComponentFile.h"
#include "core/plugins/atfx/ComponentValues.h"

namespace hv::vex::engine::atfx {

/// Opens a component of numbers. Null with a `problem` if its layout makes no sense.
/// \param isCut  set if the file ends before the last value.
std::unique_ptr<ValueSource> OpenFixedWidth(std::shared_ptr<const ComponentFile> file,
                                            const Component& component, OdsType wanted, bool* isCut,
                                            std::u16string_view* problem);

}  // namespace hv::vex::engine::atfx
