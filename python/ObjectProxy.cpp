#include "python/ObjectProxy.h"

#include <pybind11/eval.h>

#include <cstdio>
#include <stdexcept>
#include <vector>

#include "python/EventSubscription.h"
#include "python/Slots.h"

namespace hv::python {
namespace {

constexpr CallKind kRead = CallKind::Method | CallKind::Get;

std::string Path(const ObjectProxy& object, std::u16string_view member) {
  return "'" + object.ClassName() + (member.empty() ? "" : "." + cor::ToUtf8(member)) + "'";
}

/// The arguments of a call of a member; an empty name stands for the default member.
std::vector<Variant> Arguments(const ObjectProxy& object, std::u16string_view member,
                               py::handle args, py::handle named) {
  if (named && PyDict_GET_SIZE(named.ptr()) > 0) {
    throw py::type_error(Path(object, member) + " takes no arguments by keyword");
  }
  const Py_ssize_t count = PyTuple_GET_SIZE(args.ptr());
  std::vector<Variant> values;
  values.reserve(static_cast<std::size_t>(count));
  for (Py_ssize_t i = 0; i < count; ++i) {
    values.push_back(ToVariant(PyTuple_GET_ITEM(args.ptr(), i)));
  }
  return values;
}

/// An index in brackets; several are a tuple.
std::vector<Variant> Indexes(py::handle index) {
  std::vector<Variant> values;
  if (PyTuple_Check(index.ptr())) {
    for (const py::handle one : index) values.push_back(ToVariant(one));
  } else {
    values.push_back(ToVariant(index));
  }
  return values;
}

/// The new value comes behind all indexes, also behind those that are left out.
std::vector<Variant> PutArguments(const Member& member, std::vector<Variant> indexes,
                                  py::handle value) {
  const auto count = static_cast<std::size_t>(member.argumentCount);
  if (indexes.size() < count) indexes.resize(count, Variant::Missing());
  indexes.push_back(ToVariant(value));
  return indexes;
}

std::string Hexadecimal(Result rc) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(CodeOf(rc)));
  return text;
}

[[noreturn]] void RaiseDispatchError(const ErrorInfo& error) {
  const py::handle type = State().dispatchError;
  PyErr_SetObject(type.ptr(), type(error.number, ToPython(error.text.view())).ptr());
  throw py::error_already_set();
}

/// A way of calling that the member doesn't have.
[[noreturn]] void RaiseNoSuchCall(const std::string& path, bool isDefault, CallKind kinds) {
  if (isDefault) throw py::type_error(path + " has no default member that can do that");
  throw py::attribute_error(
      path + (kinds == CallKind::Put ? " can't be written" : " can't be called or read"));
}

/// Turns a failed call into the Python exception that tells of it; an empty name stands for the
/// default member.
[[noreturn]] void Raise(const ObjectProxy& object, std::u16string_view name, CallKind kinds,
                        Result rc, const ErrorInfo& error) {
  if (rc == DISP_E_EXCEPTION) RaiseDispatchError(error);
  if (rc == E_OUTOFMEMORY) throw std::bad_alloc();
  const std::string path = Path(object, name);
  if (rc == DISP_E_MEMBERNOTFOUND) RaiseNoSuchCall(path, name.empty(), kinds);
  if (rc == DISP_E_BADPARAMCOUNT) throw py::type_error(path + ": wrong number of arguments");
  const std::string place =
      path +
      (error.argument < 0 ? ": an argument" : ": argument " + std::to_string(error.argument + 1));
  if (rc == DISP_E_PARAMNOTFOUND) throw py::type_error(place + " is missing");
  if (rc == DISP_E_OVERFLOW) throw std::overflow_error(place + " is out of range");
  if (rc == E_INVALIDARG) throw py::value_error(place + " is invalid");
  if (rc == DISP_E_TYPEMISMATCH || rc == DISP_E_BADVARTYPE) {
    throw py::type_error(place + " is of the wrong type");
  }
  throw std::runtime_error(path + " failed with " + Hexadecimal(rc));
}

/// Walks a collection that offers an enumerator.
class Walker {
 public:
  explicit Walker(Ref<IVariantIterator> iterator) : m_iterator(std::move(iterator)) {}
  py::object Next() {
    Variant item;
    const Result rc = m_iterator->Next(&item);
    if (Failed(rc)) throw std::runtime_error("the collection can't be walked: " + Hexadecimal(rc));
    if (rc == S_FALSE) throw py::stop_iteration();
    return ToPython(item);
  }

 private:
  Ref<IVariantIterator> m_iterator;
};

/// Walks a collection by its count and items.
class IndexWalker {
 public:
  IndexWalker(ObjectProxy object, std::size_t count)
      : m_object(std::move(object)), m_count(count) {}
  py::object Next() {
    if (m_next >= m_count) throw py::stop_iteration();
    return m_object.GetItem(py::int_(m_next++));
  }

 private:
  ObjectProxy m_object;
  std::size_t m_count;
  std::size_t m_next = 0;
};

}  // namespace

std::string ObjectProxy::ClassName() const { return cor::ToUtf8(m_object->GetClassName()); }

const Member* ObjectProxy::Find(std::u16string_view name) const {
  std::int32_t id = kDispIdUnknown;
  if (Failed(m_object->GetIdOfName(name, &id))) return nullptr;
  return State().members.Find(*m_object, id);
}

const Member& ObjectProxy::Require(py::handle name) const {
  if (const Member* member = State().members.FindByName(*m_object, name)) return *member;
  throw py::attribute_error("'" + ClassName() + "' has no member '" + cor::ToUtf8(TextOf(name)) +
                            "'");
}

bool ObjectProxy::Has(std::u16string_view name) const {
  std::int32_t id = kDispIdUnknown;
  return !Failed(m_object->GetIdOfName(name, &id));
}

py::object ObjectProxy::Invoke(std::int32_t id, std::u16string_view name, CallKind kinds,
                               std::span<const Variant> args) const {
  Variant result;
  ErrorInfo error;
  const Result rc = m_object->Invoke(id, kinds, args, &result, &error);
  if (Failed(rc)) Raise(*this, name, kinds, rc, error);
  return ToPython(result);
}

py::object ObjectProxy::GetAttribute(py::handle name) const {
  const Member& member = Require(name);
  // A property with optional arguments isn't read at once: `p.Values[0] = 5` would write into a
  // list that nobody keeps.
  if (Intersects(member.kinds, CallKind::Method) || member.argumentCount > 0) {
    return py::cast(BoundMember(*this, member));
  }
  if (!Intersects(member.kinds, CallKind::Get)) {
    throw py::attribute_error(Path(*this, member.name) + " can only be written");
  }
  return Invoke(member.id, member.name, kRead, {});
}

void ObjectProxy::SetAttribute(const py::str& name, py::handle value) const {
  const Member& member = Require(name);
  (void)Invoke(member.id, member.name, CallKind::Put, PutArguments(member, {}, value));
}

py::list ObjectProxy::Names() const {
  py::list names;
  MemberInfo info;
  const std::uint32_t count = m_object->GetMemberCount();
  for (std::uint32_t i = 0; i < count; ++i) {
    if (!Failed(m_object->GetMember(i, &info))) names.append(ToPython(info.name));
  }
  if (QueryRef<IEventSource>(m_object.Get())) names.append("Advise");
  return names;
}

py::object ObjectProxy::Call(py::handle args, py::handle named) const {
  return Invoke(kDispIdValue, {}, kRead, Arguments(*this, {}, args, named));
}

py::object ObjectProxy::GetItem(py::handle index) const {
  return Invoke(kDispIdValue, {}, kRead, Indexes(index));
}

void ObjectProxy::SetItem(py::handle index, py::handle value) const {
  std::vector<Variant> args = Indexes(index);
  args.push_back(ToVariant(value));
  (void)Invoke(kDispIdValue, {}, CallKind::Put, args);
}

std::size_t ObjectProxy::Length() const {
  const Member* const count = Find(u"Count");
  if (!count) throw py::type_error(Path(*this, {}) + " is no collection");
  return Invoke(count->id, count->name, kRead, {}).cast<std::size_t>();
}

bool ObjectProxy::IsTrue() const { return !Has(u"Count") || Length() > 0; }

py::object ObjectProxy::Iterate() const {
  Variant made;
  ErrorInfo error;
  const Result rc = m_object->Invoke(kDispIdNewEnum, kRead, {}, &made, &error);
  if (rc == DISP_E_MEMBERNOTFOUND) return py::cast(IndexWalker(*this, Length()));
  if (Failed(rc)) Raise(*this, u"_NewEnum", kRead, rc, error);
  auto iterator =
      made.Is(VT_UNKNOWN) ? QueryRef<IVariantIterator>(made.AsUnknown()) : Ref<IVariantIterator>();
  if (!iterator) throw py::type_error(Path(*this, {}) + " can't be walked");
  return py::cast(Walker(std::move(iterator)));
}

bool ObjectProxy::Contains(py::handle item) const {
  if (const Member* const exists = Find(u"Exists")) {
    const Variant name = ToVariant(item);
    return Invoke(exists->id, exists->name, kRead, {&name, 1}).cast<bool>();
  }
  const py::object items = Iterate();
  for (const py::handle other : items) {
    // Objects are wrapped anew each time, so that none would ever be found.
    if (py::isinstance<ObjectProxy>(other)) {
      throw py::type_error(Path(*this, {}) + " has no 'Exists' to ask");
    }
    if (other.equal(item)) return true;
  }
  return false;
}

py::object ObjectProxy::Advise(const py::dict& handlers) const {
  return EventSubscription::Make(*this, handlers);
}

py::object BoundMember::Call(py::handle args, py::handle named) const {
  return m_object.Invoke(m_member.id, m_member.name, kRead,
                         Arguments(m_object, m_member.name, args, named));
}

py::object BoundMember::GetItem(py::handle index) const {
  return m_object.Invoke(m_member.id, m_member.name, kRead, Indexes(index));
}

void BoundMember::SetItem(py::handle index, py::handle value) const {
  (void)m_object.Invoke(m_member.id, m_member.name, CallKind::Put,
                        PutArguments(m_member, Indexes(index), value));
}

bool BoundMember::IsTrue() const {
  throw py::type_error(Path(m_object, m_member.name) +
                       " is a member, not its value: it needs parentheses");
}

std::string BoundMember::Describe() const {
  return "<member " + m_object.ClassName() + "." + cor::ToUtf8(m_member.name) + ">";
}

namespace {

// A Python class, so that scripts may pickle, subclass and print it like any other.
constexpr const char* kDispatchErrorClass = R"(
class DispatchError(Exception):
    """A call failed. `number` is the message's number, `text` its text."""

    def __init__(self, number, text):
        super().__init__(number, text)
        self.number = number
        self.text = text

    def __str__(self):
        return self.text
)";

void RegisterException(py::module_& module) {
  const py::dict scope;
  scope["__builtins__"] = py::module_::import("builtins");
  scope["__name__"] = module.attr("__name__");
  py::exec(kDispatchErrorClass, scope);
  module.attr("DispatchError") = scope["DispatchError"];
  State().dispatchError = module.attr("DispatchError").ptr();
}

template <class Iterator>
void RegisterIterator(py::module_& module, const char* name) {
  const auto setup = [](PyHeapTypeObject* type) {
    SetNoConstructor(type->ht_type);
    SetNext<Iterator>(type->ht_type);
  };
  py::class_<Iterator>(module, name, py::module_local(), py::custom_type_setup(setup),
                       "Walks a collection.");
}

}  // namespace

void RegisterProxy(py::module_& module) {
  RegisterException(module);
  RegisterValues(module);
  RegisterEvents(module);
  RegisterIterator<Walker>(module, "_Walker");
  RegisterIterator<IndexWalker>(module, "_IndexWalker");
  const auto setupMember = [](PyHeapTypeObject* type) {
    SetNoConstructor(type->ht_type);
    SetCall<BoundMember>(type->ht_type);
    SetGetItem<BoundMember>(*type);
  };
  const auto setupObject = [](PyHeapTypeObject* type) {
    SetNoConstructor(type->ht_type);
    SetGetAttribute<ObjectProxy>(type->ht_type);
    SetCall<ObjectProxy>(type->ht_type);
    SetGetItem<ObjectProxy>(*type);
  };
  py::class_<BoundMember>(module, "Member", py::module_local(), py::custom_type_setup(setupMember),
                          "A member waiting for its arguments, in parentheses or brackets.")
      .def("__setitem__", &BoundMember::SetItem)
      .def("__bool__", &BoundMember::IsTrue)
      .def("__repr__", &BoundMember::Describe);
  py::class_<ObjectProxy>(module, "Object", py::module_local(), py::custom_type_setup(setupObject),
                          "An automation object; its members are its attributes, without regard to "
                          "case, and dir() lists them.")
      .def("__setattr__", &ObjectProxy::SetAttribute)
      .def("__dir__", &ObjectProxy::Names)
      .def("__setitem__", &ObjectProxy::SetItem)
      .def("__len__", &ObjectProxy::Length)
      .def("__bool__", &ObjectProxy::IsTrue)
      .def("__iter__", &ObjectProxy::Iterate)
      .def("__contains__", &ObjectProxy::Contains)
      .def("__repr__", [](const ObjectProxy& self) { return "<" + self.ClassName() + ">"; })
      .def("Advise", &ObjectProxy::Advise, py::arg("handlers"),
           "Listens to events: a dict of event names and functions. Gives a Subscription, which "
           "listens until its Unadvise; the object holds the functions as long.");
}

}  // namespace hv::python
