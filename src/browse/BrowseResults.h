// browse/BrowseResults.h - result codes that only browse configurations know. Frozen numbers.
#pragma once

#include <storefabric/Result.h>

namespace hv::vex {

/// Loaded, but symbols are missing. The configuration is good to use.
inline constexpr Result kPartialSymbols = MakeResult(0x80007015);
/// Loaded, but a display name couldn't be read; or a display name that can't be shown.
inline constexpr Result kPartialDisplayName = MakeResult(0x80007017);
/// An entity comes twice in a path.
inline constexpr Result kInvalidPath = VEX_E_BROWSE_MODEL;
/// The path names what the model doesn't have.
inline constexpr Result kModelMismatch = VEX_E_OTHER_STORE;
/// The model has no entity for a base type that the path needs.
inline constexpr Result kMissingBaseType = MakeResult(0x80050112);

}  // namespace hv::vex
