// companion/Exports.cpp - the four functions of the GUI companion. Nothing is thrown out of them.
#include <cstdint>
#include <new>

#include "companion/DragDrop.h"
#include "store/core/Exception.h"

#define HV_COMPANION_EXPORT extern "C" __attribute__((visibility("default")))

using namespace hv::vex;

// The module keeps no state between its objects, so there is nothing to start or to end.
HV_COMPANION_EXPORT void Init() {}
HV_COMPANION_EXPORT void Cleanup() {}

/// Dialogs are the host toolkit's; the export is there because the library asks for it.
HV_COMPANION_EXPORT hv::IUnknown* gvexCreateDialogs(std::int32_t* error) {
  if (error) *error = errc::kNotSupported;
  return nullptr;
}

HV_COMPANION_EXPORT IDragDrop* gvexCreateDragDrop(std::int32_t* error) {
  IDragDrop* const made = new (std::nothrow) companion::DragDrop;
  if (error) *error = made ? 0 : errc::kOutOfMemory;
  return made;
}
