// automation/DispatchError.h - the automation error: a message number and a text.
// The only code that builds one; everything else names rows (ErrorRows.h).
#pragma once

#include <cstdint>
#include <string_view>

#include <storefabric/Dispatch.h>

namespace hv::automation {

/// Leaves a call by name with that error; help context 0. Only from a member of kind `Custom`: a
/// typed member returns a code and lets nothing out.
[[noreturn]] void ThrowDispatchError(std::int32_t number, std::u16string_view text);
/// The same with the text from the string table under that number; help context -1.
[[noreturn]] void ThrowDispatchError(std::int32_t number);

/// What the two calls above throw; `InvokeMember` catches it.
struct DispatchException {
  std::int32_t number;
  WString text;
  std::int32_t helpContext;
};

}  // namespace hv::automation
