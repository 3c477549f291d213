// cor/Counted.cpp - the number of counted objects that are alive in this module.
#include "cor/Counted.h"

namespace hv::cor {

namespace {
std::int64_t g_liveObjects = 0;
}

std::int64_t LiveObjectCount() { return g_liveObjects; }
void AddLiveObject(std::int64_t delta) { g_liveObjects += delta; }

}  // namespace hv::cor
