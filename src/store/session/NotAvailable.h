// store/session/NotAvailable.h - the answer of a session to what it has no objects for.
#pragma once

#include <storefabric/Result.h>

namespace hv::vex {

/// Serves the out parameter of an operation whose objects this session doesn't have.
/// \return E_POINTER if `out` is null; otherwise E_NOTIMPL with `*out` null.
template <class Object>
Result NotAvailable(Object** out) {
  if (!out) return E_POINTER;
  *out = nullptr;
  return E_NOTIMPL;
}

}  // namespace hv::vex
