// python/Values.h - values between Python and the automation layer.
#pragma once

#include <pybind11/pybind11.h>

#include "storefabric/Dispatch.h"

namespace hv::python {

namespace py = pybind11;

/// An object with no face that scripts know: handed on as it is.
struct Handle {
  Ref<IUnknown> object;
};

/// The class of `Empty` and `Missing`, one object each.
struct Special {
  const char* name;
};

/// An argument of an event that the host may change.
struct Reference {
  Variant* target;  ///< null once the handler has returned
};

/// UTF-16 and Python text; unpaired surrogates go through in both directions.
py::str ToPython(std::u16string_view text);
WString TextOf(py::handle text);

/// None becomes VT_NULL, bool VT_BOOL, int VT_I4 or VT_I8, float VT_R8, str VT_BSTR, datetime and
/// date VT_DATE, Decimal VT_DECIMAL, bytes an array of VT_UI1, list and tuple an array of variants,
/// an Object its object. Throws OverflowError for an int beyond 64 bits or a Decimal beyond 96
/// bits, ValueError for a Decimal that is no number, TypeError for anything else.
Variant ToVariant(py::handle value);

/// The way back; a null object is None. Dates that Python doesn't have become floats.
py::object ToPython(const Variant& value);

/// Adds the classes and objects that stand for values to a module.
void RegisterValues(py::module_& module);

}  // namespace hv::python
