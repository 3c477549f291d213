#include "python/Values.h"

#include <datetime.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "python/ModuleState.h"
#include "python/ObjectProxy.h"

namespace hv::python {
namespace {

constexpr int kEpochOrdinal = 693594;  // 1899-12-30, where dates count from, in Python's own count
constexpr int kLastOrdinal = 3652059;  // 9999-12-31
constexpr std::int64_t kMicrosPerDay = 86'400'000'000;

void NeedDateTime() {
  if (!PyDateTimeAPI) PyDateTime_IMPORT;
  if (!PyDateTimeAPI) throw py::error_already_set();
}

[[noreturn]] void Throw(PyObject* type, const char* text) {
  PyErr_SetString(type, text);
  throw py::error_already_set();
}

Variant DateVariant(py::handle value) {
  const int ordinal = value.attr("toordinal")().cast<int>();
  std::int64_t micros = 0;
  if (PyDateTime_Check(value.ptr())) {
    PyObject* const moment = value.ptr();
    if (PyDateTime_DATE_GET_TZINFO(moment) != Py_None) {
      throw py::type_error("dates have no time zone here: hand on a datetime without one");
    }
    micros = ((PyDateTime_DATE_GET_HOUR(moment) * std::int64_t{60} +
               PyDateTime_DATE_GET_MINUTE(moment)) *
                  60 +
              PyDateTime_DATE_GET_SECOND(moment)) *
                 1'000'000 +
             PyDateTime_DATE_GET_MICROSECOND(moment);
  }
  const double days = ordinal - kEpochOrdinal;
  const double part = static_cast<double>(micros) / static_cast<double>(kMicrosPerDay);
  // Before the first day the time of day still counts forward: -1.75 is the day -1, 18 o'clock.
  return Variant::Date(days < 0 ? days - part : days + part);
}

py::object DateToPython(double date) {
  NeedDateTime();
  const double day = std::trunc(date);
  std::int64_t micros = 0;
  auto ordinal = std::numeric_limits<double>::quiet_NaN();
  if (std::isfinite(date)) {
    micros = std::llround(std::fabs(date - day) * static_cast<double>(kMicrosPerDay));
    ordinal = day + kEpochOrdinal + (micros == kMicrosPerDay ? 1 : 0);
    micros %= kMicrosPerDay;
  }
  if (!(ordinal >= 1 && ordinal <= kLastOrdinal)) return py::float_(date);
  constexpr int kUnixOrdinal = 719163;  // 1970-01-01
  const std::chrono::year_month_day base{
      std::chrono::sys_days{std::chrono::days{static_cast<int>(ordinal) - kUnixOrdinal}}};
  const auto seconds = static_cast<int>(micros / 1'000'000);
  PyObject* const moment = PyDateTime_FromDateAndTime(
      static_cast<int>(base.year()), static_cast<int>(static_cast<unsigned>(base.month())),
      static_cast<int>(static_cast<unsigned>(base.day())), seconds / 3600, seconds / 60 % 60,
      seconds % 60, static_cast<int>(micros % 1'000'000));
  if (!moment) throw py::error_already_set();
  return py::reinterpret_steal<py::object>(moment);
}

Variant IntVariant(py::handle value) {
  int overflow = 0;
  const long long number = PyLong_AsLongLongAndOverflow(value.ptr(), &overflow);
  if (overflow != 0) Throw(PyExc_OverflowError, "an integer beyond 64 bits can't be handed on");
  if (number == -1 && PyErr_Occurred()) throw py::error_already_set();
  if (number >= std::numeric_limits<std::int32_t>::min() &&
      number <= std::numeric_limits<std::int32_t>::max()) {
    return Variant::I4(static_cast<std::int32_t>(number));
  }
  return Variant::I8(number);
}

/// Python's own guard against nesting without end, as of a list that holds itself.
class RecursionGuard {
 public:
  RecursionGuard() {
    if (Py_EnterRecursiveCall(" while a list is handed on") != 0) throw py::error_already_set();
  }
  ~RecursionGuard() { Py_LeaveRecursiveCall(); }
  RecursionGuard(const RecursionGuard&) = delete;
  RecursionGuard& operator=(const RecursionGuard&) = delete;
};

Variant ListVariant(py::handle list) {
  const RecursionGuard guard;
  std::vector<Variant> items;
  for (const py::handle item : list) items.push_back(ToVariant(item));
  return Variant::Array(std::move(items));
}

Variant BytesVariant(py::handle value) {
  const std::string bytes = value.cast<py::bytes>();
  std::vector<Variant> items;
  items.reserve(bytes.size());
  for (const char byte : bytes) items.push_back(Variant::UI1(static_cast<std::uint8_t>(byte)));
  return Variant::Array(std::move(items));
}

bool IsDecimal(py::handle value) {
  return py::isinstance(value, py::module_::import("decimal").attr("Decimal"));
}

/// Beyond 28 places behind the point the number is rounded; in front of it nothing is lost.
Variant DecimalVariant(py::handle value) {
  if (!value.attr("is_finite")().cast<bool>()) {
    throw py::value_error("a decimal that is no finite number can't be handed on");
  }
  const py::module_ decimals = py::module_::import("decimal");
  constexpr int kMostPlaces = 28;
  Variant decimal;
  // Checked before a text is made, which would be as long as the exponent is large.
  bool fits = value.attr("is_zero")().cast<bool>() ||
              value.attr("adjusted")().cast<std::int64_t>() <= kMostPlaces;
  if (fits) {
    auto plain = py::reinterpret_borrow<py::object>(value);
    if (plain.attr("as_tuple")().attr("exponent").cast<std::int64_t>() < -kMostPlaces) {
      const py::object wide = decimals.attr("Context")(py::arg("prec") = 2 * kMostPlaces + 2);
      plain = plain.attr("quantize")(decimals.attr("Decimal")("1e-28"), py::arg("context") = wide);
    }
    if (plain.attr("is_zero")().cast<bool>()) return Variant::Dec({});
    const Variant text = Variant::Text(TextOf(plain.attr("__format__")("f")));
    fits = !Failed(text.ChangeType(VT_DECIMAL, &decimal));
  }
  if (!fits) Throw(PyExc_OverflowError, "a decimal beyond 96 bits can't be handed on");
  return decimal;
}

/// Numbers of other libraries, which say that they are integers or reals.
Variant ForeignNumber(py::handle value) {
  PyObject* number = nullptr;
  if (PyIndex_Check(value.ptr())) {
    number = PyNumber_Index(value.ptr());
  } else if (py::hasattr(value, "__float__")) {
    number = PyNumber_Float(value.ptr());
  } else {
    throw py::type_error("a value of the type " + std::string(Py_TYPE(value.ptr())->tp_name) +
                         " can't be handed on");
  }
  if (!number) throw py::error_already_set();
  const auto hold = py::reinterpret_steal<py::object>(number);
  return PyFloat_Check(number) ? Variant::R8(PyFloat_AS_DOUBLE(number)) : IntVariant(hold);
}

py::object DecimalToPython(const Variant& value) {
  Variant text;
  if (Failed(value.ChangeType(VT_BSTR, &text))) throw py::value_error("an invalid decimal");
  return py::module_::import("decimal").attr("Decimal")(ToPython(text.AsText().view()));
}

py::object ArrayToPython(const std::vector<Variant>& items) {
  bool areBytes = !items.empty();
  for (const Variant& item : items) areBytes = areBytes && item.Is(VT_UI1);
  if (areBytes) {
    std::string bytes;
    for (const Variant& item : items) bytes += static_cast<char>(item.AsUInt64());
    return py::bytes(bytes);
  }
  py::list list;
  for (const Variant& item : items) list.append(ToPython(item));
  return list;
}

}  // namespace

py::str ToPython(std::u16string_view text) {
  // Most texts are plain ASCII, which needs no decoder.
  if (std::ranges::all_of(text, [](char16_t unit) { return unit < 0x80; })) {
    PyObject* const plain = PyUnicode_New(static_cast<Py_ssize_t>(text.size()), 0x7F);
    if (!plain) throw py::error_already_set();
    std::ranges::transform(text, PyUnicode_1BYTE_DATA(plain),
                           [](char16_t unit) { return static_cast<Py_UCS1>(unit); });
    return py::reinterpret_steal<py::str>(plain);
  }
  int native = -1;  // little-endian, and no byte order mark is taken away
  PyObject* const made =
      PyUnicode_DecodeUTF16(reinterpret_cast<const char*>(text.data()),
                            static_cast<Py_ssize_t>(text.size() * 2), "surrogatepass", &native);
  if (!made) throw py::error_already_set();
  return py::reinterpret_steal<py::str>(made);
}

WString TextOf(py::handle text) {
  if (PyUnicode_KIND(text.ptr()) == PyUnicode_2BYTE_KIND) {
    return WString(
        std::u16string_view(reinterpret_cast<const char16_t*>(PyUnicode_2BYTE_DATA(text.ptr())),
                            static_cast<std::size_t>(PyUnicode_GET_LENGTH(text.ptr()))));
  }
  if (PyUnicode_KIND(text.ptr()) == PyUnicode_1BYTE_KIND) {
    const Py_UCS1* const units = PyUnicode_1BYTE_DATA(text.ptr());
    return WString(std::u16string(units, units + PyUnicode_GET_LENGTH(text.ptr())));
  }
  PyObject* const bytes = PyUnicode_AsEncodedString(text.ptr(), "utf-16-le", "surrogatepass");
  if (!bytes) throw py::error_already_set();
  const auto hold = py::reinterpret_steal<py::object>(bytes);
  std::u16string units(static_cast<std::size_t>(PyBytes_GET_SIZE(bytes)) / 2, u'\0');
  std::memcpy(units.data(), PyBytes_AS_STRING(bytes), units.size() * 2);
  return WString(units);
}

Variant ToVariant(py::handle value) {
  NeedDateTime();
  if (value.is_none()) return Variant::Null();
  if (PyBool_Check(value.ptr())) return Variant::Bool(value.ptr() == Py_True);
  if (PyLong_Check(value.ptr())) return IntVariant(value);
  if (PyFloat_Check(value.ptr())) return Variant::R8(PyFloat_AS_DOUBLE(value.ptr()));
  if (PyUnicode_Check(value.ptr())) return Variant::Text(TextOf(value));
  if (py::isinstance<ObjectProxy>(value)) {
    return Variant::Object(value.cast<ObjectProxy&>().Get());
  }
  if (value.is(State().empty)) return Variant();
  if (value.is(State().missing)) return Variant::Missing();
  if (py::isinstance<Handle>(value)) return Variant::Unknown(value.cast<Handle&>().object.Get());
  if (PyDate_Check(value.ptr())) return DateVariant(value);
  if (PyBytes_Check(value.ptr())) return BytesVariant(value);
  if (PyList_Check(value.ptr()) || PyTuple_Check(value.ptr())) return ListVariant(value);
  if (IsDecimal(value)) return DecimalVariant(value);
  return ForeignNumber(value);
}

py::object ToPython(const Variant& value) {
  if ((value.Type() & VT_BYREF) != 0) return ToPython(value.Dereferenced());
  if ((value.Type() & VT_ARRAY) != 0) return ArrayToPython(value.AsArray());
  switch (value.Type()) {
    case VT_EMPTY:
      return py::reinterpret_borrow<py::object>(State().empty);
    case VT_NULL:
      return py::none();
    case VT_I1:
    case VT_I2:
    case VT_I4:
    case VT_I8:
    case VT_INT:
      return py::int_(value.AsInt64());
    case VT_UI1:
    case VT_UI2:
    case VT_UI4:
    case VT_UI8:
    case VT_UINT:
      return py::int_(value.AsUInt64());
    case VT_BOOL:
      return py::bool_(value.AsInt64() != 0);
    case VT_R4:
    case VT_R8:
      return py::float_(value.AsDouble());
    case VT_DATE:
      return DateToPython(value.AsDouble());
    case VT_BSTR:
      return ToPython(value.AsText().view());
    case VT_ERROR:
      if (value.IsMissing()) return py::reinterpret_borrow<py::object>(State().missing);
      return py::int_(value.AsInt64());
    case VT_CY:
    case VT_DECIMAL:
      return DecimalToPython(value);
    case VT_DISPATCH:
      if (!value.AsObject()) return py::none();
      return py::cast(ObjectProxy(Ref<IDispatch>::Share(value.AsObject())));
    case VT_UNKNOWN:
      if (!value.AsUnknown()) return py::none();
      if (auto object = QueryRef<IDispatch>(value.AsUnknown())) {
        return py::cast(ObjectProxy(std::move(object)));
      }
      return py::cast(Handle{Ref<IUnknown>::Share(value.AsUnknown())});
    default:
      throw py::type_error("a value of the type number " + std::to_string(value.Type()) +
                           " has no place in Python");
  }
}

void RegisterValues(py::module_& module) {
  py::class_<Handle>(module, "Handle", py::module_local(),
                     "An object that scripts can only hand on.")
      .def("__repr__", [](const Handle&) { return "<an object to hand on>"; });
  py::class_<Special>(module, "Special", py::module_local(),
                      "The class of Empty, the empty value, and Missing, a left-out argument.")
      .def("__bool__", [](const Special&) { return false; })
      .def("__repr__", [](const Special& self) { return std::string("storefabric.") + self.name; })
      // By its name in the module, so that a copy is the same object.
      .def("__reduce__", [](const Special& self) { return self.name; });
  module.attr("Empty") = Special{"Empty"};
  module.attr("Missing") = Special{"Missing"};
  State().empty = module.attr("Empty").ptr();
  State().missing = module.attr("Missing").ptr();

  const auto target = [](const Reference& self) {
    if (!self.target) throw py::value_error("the event is over");
    return self.target;
  };
  py::class_<Reference>(module, "Reference", py::module_local(),
                        "An argument of an event that may be changed while the handler runs.")
      .def_property(
          "Value", [target](const Reference& self) { return ToPython(*target(self)); },
          [target](const Reference& self, py::handle value) { *target(self) = ToVariant(value); });
}

}  // namespace hv::python
