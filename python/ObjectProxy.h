// python/ObjectProxy.h - every automation object in Python: one class over the late-bound face.
#pragma once

#include <pybind11/pybind11.h>

#include <string>

#include "python/ModuleState.h"
#include "python/Values.h"
#include "storefabric/Dispatch.h"

namespace hv::python {

/// An automation object. Attributes are its members, without regard to case.
class ObjectProxy {
 public:
  explicit ObjectProxy(Ref<IDispatch> object) : m_object(std::move(object)) {}

  [[nodiscard]] IDispatch* Get() const { return m_object.Get(); }
  [[nodiscard]] std::string ClassName() const;

  /// A property that takes no arguments is read at once; a method, or a property that takes some,
  /// even optional ones, gives a BoundMember to call or to index. Throws AttributeError for an
  /// unknown name.
  [[nodiscard]] py::object GetAttribute(py::handle name) const;
  void SetAttribute(const py::str& name, py::handle value) const;
  [[nodiscard]] py::list Names() const;

  /// The default member: `collection("Id")`, `collection[0]`. TypeError if there is none.
  /// \param args   a tuple
  /// \param named  a dict, or null
  [[nodiscard]] py::object Call(py::handle args, py::handle named) const;
  [[nodiscard]] py::object GetItem(py::handle index) const;
  void SetItem(py::handle index, py::handle value) const;

  [[nodiscard]] std::size_t Length() const;
  /// False for an empty collection alone.
  [[nodiscard]] bool IsTrue() const;
  [[nodiscard]] py::object Iterate() const;
  /// Asks `Exists`. Without that member the items are compared, if they aren't objects.
  [[nodiscard]] bool Contains(py::handle item) const;
  /// Listens to events: a dict of names and functions. Gives a subscription with `Unadvise`.
  [[nodiscard]] py::object Advise(const py::dict& handlers) const;

  /// Calls a member and turns a failure into the Python exception that tells of it.
  py::object Invoke(std::int32_t id, std::u16string_view name, CallKind kinds,
                    std::span<const Variant> args) const;

 private:
  /// Null if there is no such member.
  [[nodiscard]] const Member* Find(std::u16string_view name) const;
  [[nodiscard]] const Member& Require(py::handle name) const;
  [[nodiscard]] bool Has(std::u16string_view name) const;

  Ref<IDispatch> m_object;
};

/// A member that needs arguments, before it gets them.
class BoundMember {
 public:
  BoundMember(ObjectProxy object, const Member& member)
      : m_object(std::move(object)), m_member(member) {}

  [[nodiscard]] py::object Call(py::handle args, py::handle named) const;
  [[nodiscard]] py::object GetItem(py::handle index) const;
  void SetItem(py::handle index, py::handle value) const;
  /// Always a TypeError: `if store.IsModified:` lacks the call.
  [[nodiscard]] bool IsTrue() const;
  [[nodiscard]] std::string Describe() const;

 private:
  ObjectProxy m_object;
  const Member& m_member;  // the module's, which keeps it
};

/// Adds the classes and exceptions to a module.
void RegisterProxy(py::module_& module);

}  // namespace hv::python
