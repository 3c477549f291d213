// store/model/FilenameParameter.h - the parameter text that names a file to the engine.
#pragma once

#include <string_view>

#include <storefabric/WString.h>

namespace hv::vex {

/// "<filename>path</filename>" with "&", "<" and ">" of the path escaped.
WString FilenameParameter(std::u16string_view path);

}  // namespace hv::vex
