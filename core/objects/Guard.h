// core/objects/Guard.h - nothing but hv::vex::Exception leaves the engine.
#pragma once

#include <new>
#include <stdexcept>
#include <utility>

#include "store/core/Exception.h"

namespace hv::vex::engine {

/// Turns whatever is being handled into hv::vex::Exception. Call it in a catch-all handler only.
[[noreturn]] void RethrowAsSeamException();

/// Runs the body of an interface operation.
template <class Body>
auto Seam(Body&& body) -> decltype(body()) {
  try {
    return std::forward<Body>(body)();
  } catch (const Exception&) {
    throw;
  } catch (...) {
    RethrowAsSeamException();
  }
}

}  // namespace hv::vex::engine
