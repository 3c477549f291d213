// python/ModuleState.h - what the module makes once and keeps until the process ends.
#pragma once

#include <pybind11/pybind11.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "storefabric/Dispatch.h"

namespace hv::python {

namespace py = pybind11;

/// What a listing says about a member.
struct Member {
  std::int32_t id = kDispIdUnknown;
  CallKind kinds = CallKind::None;
  std::int32_t argumentCount = 0;
  std::u16string name;  ///< as published
};

/// Remembers the members that scripts have used, by class name and id: a listing is a walk, and a
/// loop over elements asks for the same few members again and again.
class MemberCache {
 public:
  /// The member of that id, or null if the object doesn't list it. Valid for good.
  const Member* Find(IDispatch& object, std::int32_t id);
  /// The member of a name in any case, or null. Names that stand in scripts are known by their
  /// objects, so that the second look is one of an address.
  const Member* FindByName(IDispatch& object, py::handle name);

 private:
  struct Use {
    const char16_t* className;  ///< a class has its name in one place
    PyObject* name;
    bool operator==(const Use&) const = default;
  };
  struct UseHash {
    std::size_t operator()(const Use& use) const {
      return reinterpret_cast<std::uintptr_t>(use.className) ^
             reinterpret_cast<std::uintptr_t>(use.name) >> 4;
    }
  };

  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::u16string_view text) const {
      return std::hash<std::u16string_view>()(text);
    }
  };
  using MembersById = std::unordered_map<std::int32_t, Member>;
  std::unordered_map<std::u16string, MembersById, Hash, std::equal_to<>> m_classes;
  std::unordered_map<Use, const Member*, UseHash> m_uses;  // keeps the names alive
};

/// The objects are borrowed from the module, which keeps them as attributes.
struct ModuleState {
  py::handle empty;
  py::handle missing;
  py::handle dispatchError;
  MemberCache members;
};

/// Never destroyed: proxies may outlive the interpreter's shutdown.
ModuleState& State();

}  // namespace hv::python
