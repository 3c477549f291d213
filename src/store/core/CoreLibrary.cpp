// store/core/CoreLibrary.cpp - the storage engine as a module: attached, counted, called.
#include "store/core/CoreLibrary.h"

#include <atomic>

#include "cor/osdep/SharedLibrary.h"
#include "store/core/EngineModule.h"
#include "store/core/ErrorWord.h"
#include "store/core/IContainer.h"
#include "store/core/IEnvironment.h"
#include "store/core/IInstList.h"

namespace hv::vex {

namespace {

constexpr const char16_t* kUnbound = u"vex not correctly initialized";

constinit CoreLibrary g_core;
constinit std::atomic<std::int32_t> g_initCount = 0;

void LoadCore() noexcept {
  g_core.module = TryLoadEngineModule(u"vexex");
  g_core.Init = TryBind<EngineInit>(g_core.module, "Init");
  g_core.Cleanup = TryBind<EngineCleanup>(g_core.module, "Cleanup");
  g_core.vexGetEnvironment = TryBind<EngineGetEnvironment>(g_core.module, "vexGetEnvironment");
  g_core.vexCreateContainer = TryBind<EngineCreateContainer>(g_core.module, "vexCreateContainer");
  g_core.vexCreateInstList = TryBind<EngineCreateInstList>(g_core.module, "vexCreateInstList");
  g_core.vexCreateContainerList =
      TryBind<EngineCreateContainerList>(g_core.module, "vexCreateContainerList");
}

}  // namespace

const CoreLibrary& GetCoreLibrary() { return g_core; }

bool AttachCore() noexcept {
  if (g_core.attachCount == 0) LoadCore();
  // Counted also after a failed load: every attachment is given back.
  ++g_core.attachCount;
  return g_core.Init && g_core.Cleanup && g_core.vexGetEnvironment && g_core.vexCreateContainer &&
         g_core.vexCreateInstList && g_core.vexCreateContainerList;
}

void DetachCore() noexcept { DetachModule(g_core); }

void StartCore() {
  if (g_core.Init) g_core.Init();
}

void StopCore() {
  if (g_core.Cleanup) g_core.Cleanup();
}

Ref<IEnvironment> GetEngineEnvironment() {
  return CallWithErrorWord(g_core.vexGetEnvironment, kUnbound, kInterfaceVersion, u"",
                           kFormatStamp);
}

Ref<IContainer> CreateEngineContainer() {
  return CallWithErrorWord(g_core.vexCreateContainer, kUnbound);
}

Ref<IInstList> CreateEngineInstList() {
  return CallWithErrorWord(g_core.vexCreateInstList, kUnbound);
}

std::int32_t HostInit() noexcept {
  if (g_initCount.load() == 0 && AttachCore()) StartCore();
  return ++g_initCount;
}

void HostCleanup() noexcept {
  if (--g_initCount != 0) return;
  StopCore();
  DetachCore();
}

}  // namespace hv::vex
