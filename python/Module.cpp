// python/Module.cpp - the Python module "storefabric".
#include "python/ObjectProxy.h"
#include "storefabric/StoreFabric.h"

namespace hv::python {
namespace {

ObjectProxy CreateObject(const py::str& progId) {
  const WString name = TextOf(progId);
  if (name.view().find(u'\0') != std::u16string_view::npos) {
    throw py::value_error("a ProgID holds no zero character");
  }
  Ref<IDispatch> object;
  const Result rc = CreateStoreFabricObject(name.c_str(), object.Put());
  if (rc == CLASS_E_CLASSNOTAVAILABLE) {
    throw py::value_error("there is no class \"" + cor::ToUtf8(name) + "\"");
  }
  if (rc == E_OUTOFMEMORY) throw std::bad_alloc();
  if (Failed(rc) || !object) {
    throw std::runtime_error("\"" + cor::ToUtf8(name) + "\" can't be made");
  }
  return ObjectProxy(std::move(object));
}

}  // namespace
}  // namespace hv::python

PYBIND11_MODULE(storefabric, module) {
  module.doc() =
      "Measurement data stores for scripts.\n\n"
      "env = storefabric.CreateObject(\"VEX.DataStoreEnvironment\")\n"
      "store = env.ConnectDataStoreByParameter(\"ATFX\", \"<filename>bench.atfx</filename>\")";
  hv::python::RegisterProxy(module);
  module.def("CreateObject", &hv::python::CreateObject, pybind11::arg("ProgID"),
             "Makes an automation object by its ProgID. ValueError for an unknown one.");
}
