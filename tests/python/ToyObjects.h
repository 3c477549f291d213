// python/ToyObjects.h - automation objects with every kind of member, event and failure.
#pragma once

#include <storefabric/Dispatch.h>

namespace hv::toys {

/// \name Each call gives a new object
/// @{
/// Members of every kind, values of every type, and the events `Changed` and `Closing`.
Ref<IDispatch> MakeToy();
/// An object whose every call gives the code that it is told, as a host's own objects might.
Ref<IDispatch> MakeRefuser();
/// @}

}  // namespace hv::toys
