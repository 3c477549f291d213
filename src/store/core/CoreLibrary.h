// store/core/CoreLibrary.h - the storage engine as a module: attached, counted, called.
// Not locked: everything but `HostInit` and `HostCleanup` belongs to the host's thread.
#pragma once

#include <cstdint>

#include <storefabric/Ref.h>

#include "store/core/EngineExports.h"

namespace hv::cor::osdep {
class SharedLibrary;
}

namespace hv::vex {

class IContainer;
class IEnvironment;
class IInstList;

/// The module and its functions, once per process. A function that the module lacks is null.
struct CoreLibrary {
  std::uint32_t attachCount = 0;
  /// Owned; a plain pointer because the process may end with the engine attached, and then nothing
  /// may be unloaded under objects that are still alive.
  cor::osdep::SharedLibrary* module = nullptr;
  EngineInit Init = nullptr;
  EngineCleanup Cleanup = nullptr;
  EngineGetEnvironment vexGetEnvironment = nullptr;
  EngineCreateContainer vexCreateContainer = nullptr;
  EngineCreateInstList vexCreateInstList = nullptr;
  EngineCreateContainerList vexCreateContainerList = nullptr;
};

/// The process's record, to look at.
const CoreLibrary& GetCoreLibrary();

/// Loads the engine if nobody has attached it yet. Counts in any case: each call needs its
/// `DetachCore`.
/// \return true if all six functions are bound
bool AttachCore() noexcept;
/// Gives one attachment back and unloads the engine with the last.
void DetachCore() noexcept;

/// The engine's `Init` and `Cleanup`; nothing happens if they aren't bound.
void StartCore();
void StopCore();

/// \name Calls into the engine
/// The result carries one reference; it is null only if an engine says neither yes nor no. They
/// throw `Exception`: with kNotBound if the function isn't bound, with the engine's error word if
/// it reports one.
/// @{
Ref<IEnvironment> GetEngineEnvironment();
Ref<IContainer> CreateEngineContainer();
Ref<IInstList> CreateEngineInstList();
/// @}

/// The host's `Init`: the first call attaches and starts the engine. Gives the new count. Safe
/// against `HostInit` and `HostCleanup` on other threads.
std::int32_t HostInit() noexcept;
/// The host's `Cleanup`: the call that brings the count to 0 stops and detaches the engine.
void HostCleanup() noexcept;

}  // namespace hv::vex
