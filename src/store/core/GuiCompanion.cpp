// store/core/GuiCompanion.cpp - the GUI companion module: attached, counted, called.
#include "store/core/GuiCompanion.h"

#include "cor/osdep/SharedLibrary.h"
#include "store/core/EngineModule.h"
#include "store/core/ErrorWord.h"

namespace hv::vex {

namespace {

constexpr const char16_t* kUnbound = u"gvex not correctly initialized";

constinit GuiCompanion g_companion;

void LoadCompanion() noexcept {
  g_companion.module = TryLoadEngineModule(u"gvexex");
  g_companion.Init = TryBind<CompanionInit>(g_companion.module, "Init");
  g_companion.Cleanup = TryBind<CompanionCleanup>(g_companion.module, "Cleanup");
  g_companion.gvexCreateDialogs =
      TryBind<CompanionCreateDialogs>(g_companion.module, "gvexCreateDialogs");
  g_companion.gvexCreateDragDrop =
      TryBind<CompanionCreateDragDrop>(g_companion.module, "gvexCreateDragDrop");
}

}  // namespace

const GuiCompanion& GetGuiCompanion() { return g_companion; }

bool AttachGuiCompanion() noexcept {
  if (g_companion.attachCount == 0) LoadCompanion();
  ++g_companion.attachCount;
  return g_companion.Init && g_companion.Cleanup && g_companion.gvexCreateDialogs &&
         g_companion.gvexCreateDragDrop;
}

void DetachGuiCompanion() noexcept { DetachModule(g_companion); }

void StartGuiCompanion() {
  if (g_companion.Init) g_companion.Init();
}

void StopGuiCompanion() {
  if (g_companion.Cleanup) g_companion.Cleanup();
}

Ref<IDragDrop> CreateCompanionDragDrop() {
  return CallWithErrorWord(g_companion.gvexCreateDragDrop, kUnbound);
}

}  // namespace hv::vex
