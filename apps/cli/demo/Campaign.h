// apps/cli/demo/Campaign.h - fills a store of the model "testbench" with a measurement campaign.
#pragma once

#include <cstdint>
#include <functional>

namespace hv::vex {
class IStore;
}

namespace hv::cli::demo {

/// Writes the same campaign whenever it is called. The caller saves or writes the store.
/// \param progress  told of every measurement: how many are done, how many there are.
void WriteCampaign(vex::IStore& store,
                   const std::function<void(std::uint64_t done, std::uint64_t all)>& progress);

}  // namespace hv::cli::demo
