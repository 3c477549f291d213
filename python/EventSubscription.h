// python/EventSubscription.h - events of automation objects to Python functions.
#pragma once

#include <pybind11/pybind11.h>

#include <cstdint>

#include "python/ObjectProxy.h"
#include "storefabric/Dispatch.h"

namespace hv::python {

/// Listens until `Unadvise`, also when the script has dropped it: the source holds the listener.
class EventSubscription {
 public:
  /// Throws AttributeError for an event that the object doesn't have, TypeError for an object
  /// without events or a handler that can't be called.
  static py::object Make(const ObjectProxy& object, const py::dict& handlers);

  void Unadvise();

 private:
  Ref<IEventSource> m_source;
  std::uint32_t m_cookie = 0;
};

void RegisterEvents(py::module_& module);

}  // namespace hv::python
