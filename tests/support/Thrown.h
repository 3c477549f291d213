// tests/support/Thrown.h - exceptions of the engine as text.
#pragma once

#include <string>

#include <storefabric/WString.h>

#include "store/core/Exception.h"

namespace hv::vex::engine {

/// Runs `use` and gives "code message" of what it throws, or "no error".
template <class Use>
std::string Thrown(Use&& use) {
  try {
    use();
  } catch (const Exception& error) {
    return std::to_string(error.code) + " " + cor::ToUtf8(error.message);
  }
  return "no error";
}

}  // namespace hv::vex::engine
