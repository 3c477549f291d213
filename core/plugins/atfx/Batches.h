// core/plugins/atfx/Batches.h - long values are read and written in batches that stay in the cache.
#pragma once

#include <algorithm>
#include <cstdint>

namespace hv::vex::engine::atfx {

/// Elements of one batch.
inline constexpr std::uint64_t kBatch = 8192;

/// Calls `use(first, count)` for each batch of elements.
template <class Use>
void ForEachBatch(std::uint64_t count, Use use) {
  for (std::uint64_t first = 0; first < count; first += kBatch) {
    use(first, std::min(kBatch, count - first));
  }
}

}  // namespace hv::vex::engine::atfx
