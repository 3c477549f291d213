// query/expression/IIdentifierMapper.h - turns identifiers of an expression into a store's own
// form.
#pragma once

#include <string_view>

#include <storefabric/WString.h>

namespace hv::vex {

/// Borrowed for the time in which an expression is written.
class IIdentifierMapper {
 public:
  /// The store's form of a path of names joined with ".".
  [[nodiscard]] virtual WString Map(std::u16string_view identifier) = 0;
  /// Whether the expression is restricted to what has a name.
  [[nodiscard]] virtual bool ShouldFilter() = 0;

 protected:
  ~IIdentifierMapper() = default;
};

}  // namespace hv::vex
