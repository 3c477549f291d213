// python/Slots.h - what scripts do most, straight from the interpreter: without a search for the
// overload that suits, which costs more than the call itself.
#pragma once

#include <pybind11/pybind11.h>

#include <new>
#include <stdexcept>

namespace hv::python {

namespace py = pybind11;

/// Runs the body of a slot, which gives an object. Its exceptions become Python's.
template <class Body>
PyObject* RunSlot(Body body) noexcept {
  try {
    return py::object(body()).release().ptr();
  } catch (py::error_already_set& error) {
    error.restore();
  } catch (const py::builtin_exception& error) {
    error.set_error();
  } catch (const std::bad_alloc&) {
    PyErr_NoMemory();
  } catch (const std::overflow_error& error) {
    PyErr_SetString(PyExc_OverflowError, error.what());
  } catch (const std::exception& error) {
    PyErr_SetString(PyExc_RuntimeError, error.what());
  }
  return nullptr;
}

template <class T>
T& SelfOf(PyObject* self) {
  return py::detail::cast_op<T&>(py::detail::load_type<T>(py::handle(self)));
}

/// \name The slots of a class `T`, for `py::custom_type_setup`
/// @{

/// No object without something behind it, also of a class that a script derives.
inline void SetNoConstructor(PyTypeObject& type) {
  type.tp_new = [](PyTypeObject*, PyObject*, PyObject*) -> PyObject* {
    PyErr_SetString(PyExc_TypeError, "objects come from CreateObject and from other objects");
    return nullptr;
  };
}

/// Attributes that the class itself doesn't have: `GetAttribute(handle)`.
template <class T>
void SetGetAttribute(PyTypeObject& type) {
  type.tp_getattro = [](PyObject* self, PyObject* name) -> PyObject* {
    if (_PyType_Lookup(Py_TYPE(self), name)) return PyObject_GenericGetAttr(self, name);
    return RunSlot([&] { return SelfOf<T>(self).GetAttribute(name); });
  };
}

/// `self(...)`: `Call(args, named)`, where `named` may be null.
template <class T>
void SetCall(PyTypeObject& type) {
  type.tp_call = [](PyObject* self, PyObject* args, PyObject* named) -> PyObject* {
    return RunSlot([&] { return SelfOf<T>(self).Call(args, named); });
  };
}

/// `self[index]`: `GetItem(handle)`.
template <class T>
void SetGetItem(PyHeapTypeObject& type) {
  type.as_mapping.mp_subscript = [](PyObject* self, PyObject* index) -> PyObject* {
    return RunSlot([&] { return SelfOf<T>(self).GetItem(index); });
  };
}

/// The next item of an iterator: `Next()`, which throws `py::stop_iteration`.
template <class T>
void SetNext(PyTypeObject& type) {
  type.tp_iter = PyObject_SelfIter;
  type.tp_iternext = [](PyObject* self) -> PyObject* {
    return RunSlot([&] { return SelfOf<T>(self).Next(); });
  };
}
/// @}

}  // namespace hv::python
