// store/core/EngineModule.h - finds and loads the modules that the library binds at run time.
#pragma once

#include <string_view>

#include <storefabric/WString.h>

#include "cor/osdep/SharedLibrary.h"

namespace hv::vex {

/// Where the module of that stem ("vexex") is: in `binDir` of the configuration; without one,
/// beside this library if it is there; otherwise the bare file name, which leaves the search to the
/// system. A configuration that can't be read counts as one without `binDir`.
WString EngineModulePath(std::u16string_view stem);

/// Loads the module of that stem. The caller owns it; null if it can't be loaded, for whatever
/// reason: that comes out at the first call into it.
cor::osdep::SharedLibrary* TryLoadEngineModule(std::u16string_view stem) noexcept;

/// The function of that name as `Function`; null without a module or such an export.
template <class Function>
Function TryBind(const cor::osdep::SharedLibrary* module, const char* name) {
  return module ? reinterpret_cast<Function>(module->GetSymbol(name, false)) : nullptr;
}

/// Gives back one attachment to a table of a module's functions; the last one unloads the module,
/// which nothing finds any more by then.
template <class Library>
void DetachModule(Library& library) noexcept {
  if (library.attachCount-- != 1 || !library.module) return;
  const cor::osdep::SharedLibrary* const module = library.module;
  library = {};
  delete module;
}

}  // namespace hv::vex
