// tests/install/host/Engine.cpp - the beginning of an engine: everything it needs can be included.
#include "store/core/Seam.h"

extern "C" __attribute__((visibility("default"))) hv::vex::IContainer* vexCreateContainer(
    std::int32_t* error) {
  *error = hv::vex::errc::kNotSupported;
  return nullptr;
}
