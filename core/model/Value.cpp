// core/model/Value.cpp - counting the elements of a value.
#include "core/model/Value.h"

namespace hv::vex::engine {

std::size_t Value::Count() const {
  return std::visit(
      [this](const auto& elements) -> std::size_t {
        if constexpr (std::is_same_v<std::decay_t<decltype(elements)>, std::monostate>) {
          return 0;
        } else {
          return elements.size() / PartsOf(type);
        }
      },
      data);
}

}  // namespace hv::vex::engine
