// store/core/ErrorWord.h - calls a module's function that reports failures through an error word.
#pragma once

#include <cstdint>
#include <type_traits>

#include <storefabric/Ref.h>

#include "store/core/Exception.h"

namespace hv::vex {

/// Calls `function(args..., &error)` and takes over the reference it gives.
/// \param unbound  the message of the exception for a null function
template <class Function, class... Args>
auto CallWithErrorWord(Function function, const char16_t* unbound, Args... args) {
  using Object = std::remove_pointer_t<std::invoke_result_t<Function, Args..., std::int32_t*>>;
  if (!function) throw Exception(errc::kNotBound, unbound);
  std::int32_t error = 0;
  // Taken over before the error word counts, so that a module that gives both leaks nothing.
  Ref<Object> result = Ref<Object>::Adopt(function(args..., &error));
  if (error != 0) throw Exception(error);
  return result;
}

}  // namespace hv::vex
