// store/core/GuiCompanion.h - the GUI companion module: attached, counted, called.
#pragma once

#include <cstdint>

#include <storefabric/IDragDrop.h>
#include <storefabric/Ref.h>

namespace hv::cor::osdep {
class SharedLibrary;
}

namespace hv::vex {

/// "Init" and "Cleanup" of the companion: counted start and end.
using CompanionInit = void (*)();
using CompanionCleanup = void (*)();
/// "gvexCreateDialogs": must be present; the library never calls it.
using CompanionCreateDialogs = IUnknown* (*)(std::int32_t* error);
/// "gvexCreateDragDrop": the object that reads drag data, with one reference.
using CompanionCreateDragDrop = IDragDrop* (*)(std::int32_t* error);

/// The module and its functions, once per process. A function that the module lacks is null.
struct GuiCompanion {
  std::uint32_t attachCount = 0;
  cor::osdep::SharedLibrary* module = nullptr;  ///< owned, as `CoreLibrary::module`
  CompanionInit Init = nullptr;
  CompanionCleanup Cleanup = nullptr;
  CompanionCreateDialogs gvexCreateDialogs = nullptr;
  CompanionCreateDragDrop gvexCreateDragDrop = nullptr;
};

/// The process's record, to look at.
const GuiCompanion& GetGuiCompanion();

/// Loads the companion if nobody has attached it yet. Counts in any case: each call needs its
/// `DetachGuiCompanion`.
/// \return true if all four functions are bound; then the caller starts it
bool AttachGuiCompanion() noexcept;
/// Gives one attachment back and unloads the companion with the last.
void DetachGuiCompanion() noexcept;

/// The companion's `Init` and `Cleanup`; nothing happens if they aren't bound.
void StartGuiCompanion();
void StopGuiCompanion();

/// The object that reads drag data. Throws `Exception`: with kNotBound if the function isn't bound,
/// with the companion's error word if it reports one.
Ref<IDragDrop> CreateCompanionDragDrop();

}  // namespace hv::vex
