#include "python/EventSubscription.h"

#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "cor/Counted.h"

namespace hv::python {
namespace {

/// The arguments of an event while a handler runs; a by-reference one is worth nothing after it.
class EventArguments {
 public:
  explicit EventArguments(std::span<const Variant> args) : m_values(args.size()) {
    for (std::size_t i = 0; i < args.size(); ++i) {
      if ((args[i].Type() & VT_BYREF) == 0) {
        m_values[i] = ToPython(args[i]);
      } else {
        const py::object reference = py::cast(Reference{args[i].AsReference()});
        m_references.push_back(reference.cast<Reference*>());
        m_values[i] = reference;
      }
    }
  }
  ~EventArguments() {
    for (Reference* const reference : m_references) reference->target = nullptr;
  }
  EventArguments(const EventArguments&) = delete;
  EventArguments& operator=(const EventArguments&) = delete;

  [[nodiscard]] const py::tuple& Values() const { return m_values; }

 private:
  py::tuple m_values;
  std::vector<Reference*> m_references;  // the values own them
};

/// Hands events to Python functions. A function that raises doesn't disturb the source: the error
/// is told as one that nobody could catch.
class FunctionSink final : public cor::Counted<IEventSink> {
 public:
  using Handlers = std::map<std::int32_t, py::object>;

  explicit FunctionSink(Handlers handlers)
      : m_handlers(std::make_unique<Handlers>(std::move(handlers))) {}

  Result OnEvent(std::int32_t id, std::u16string_view, std::span<const Variant> args,
                 Variant* result) override {
    if (!Py_IsInitialized()) return S_FALSE;
    const auto found = m_handlers->find(id);
    if (found == m_handlers->end()) return S_FALSE;
    const py::object handler = found->second;  // it may unadvise itself while it runs
    try {
      const EventArguments arguments(args);
      const py::object answer = handler(*arguments.Values());
      if (!answer.is_none()) *result = ToVariant(answer);
      return S_OK;
    } catch (py::error_already_set& error) {
      error.discard_as_unraisable(handler);
      return E_FAIL;
    } catch (const py::builtin_exception& error) {
      error.set_error();
    } catch (const std::exception& error) {
      PyErr_SetString(PyExc_RuntimeError, error.what());
    }
    PyErr_WriteUnraisable(handler.ptr());
    return E_FAIL;
  }

 private:
  ~FunctionSink() override {
    // After the interpreter's end its objects can't be given back any more.
    if (!Py_IsInitialized()) (void)m_handlers.release();
  }
  std::unique_ptr<Handlers> m_handlers;
};

std::int32_t EventId(IEventSource& source, const ObjectProxy& object, const WString& name) {
  MemberInfo info;
  for (std::uint32_t i = 0; i < source.GetEventCount(); ++i) {
    if (!Failed(source.GetEvent(i, &info)) && name == info.name) return info.id;
  }
  throw py::attribute_error("'" + object.ClassName() + "' has no event '" + cor::ToUtf8(name) +
                            "'");
}

}  // namespace

py::object EventSubscription::Make(const ObjectProxy& object, const py::dict& handlers) {
  EventSubscription made;
  made.m_source = QueryRef<IEventSource>(object.Get());
  if (!made.m_source) throw py::type_error("'" + object.ClassName() + "' has no events");
  std::map<std::int32_t, py::object> functions;
  for (const auto& [name, function] : handlers) {
    if (!PyCallable_Check(function.ptr())) throw py::type_error("a handler must be callable");
    functions[EventId(*made.m_source, object, TextOf(py::str(name)))] =
        py::reinterpret_borrow<py::object>(function);
  }
  const Ref<IEventSink> sink = MakeRef<FunctionSink>(std::move(functions));
  if (Failed(made.m_source->Advise(sink.Get(), &made.m_cookie))) {
    throw std::runtime_error("the object takes no listener");
  }
  return py::cast(std::move(made));
}

void EventSubscription::Unadvise() {
  // The functions go with the sink, and what they hold may lead back here.
  if (const Ref<IEventSource> source = std::exchange(m_source, nullptr)) {
    (void)source->Unadvise(m_cookie);
  }
}

void RegisterEvents(py::module_& module) {
  py::class_<EventSubscription>(module, "Subscription", py::module_local(), "What Advise gives.")
      .def("Unadvise", &EventSubscription::Unadvise, "Stops listening; once is enough.");
}

}  // namespace hv::python
