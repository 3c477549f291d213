// python/ToyModule.cpp - the Python module "toy": the proxy over objects made for its tests.
#include <pybind11/pybind11.h>

#include "cor/Counted.h"
#include "python/ObjectProxy.h"
#include "tests/python/ToyObjects.h"

PYBIND11_MODULE(toy, module) {
  using hv::python::ObjectProxy;
  hv::python::RegisterProxy(module);
  module.def("Toy", [] { return ObjectProxy(hv::toys::MakeToy()); });
  module.def("Refuser", [] { return ObjectProxy(hv::toys::MakeRefuser()); });
  module.def("LiveObjects", &hv::cor::LiveObjectCount);
}
