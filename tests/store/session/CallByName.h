// tests/store/session/CallByName.h - calls a member by name, as a script does.
#pragma once

#include <storefabric/Dispatch.h>

#include <vector>

namespace hv::test {

struct Call {
  Result code = S_OK;
  Variant result;
  ErrorInfo error;
};

inline Call CallByName(IDispatch& object, std::u16string_view name,
                       const std::vector<Variant>& args = {},
                       CallKind kinds = CallKind::Method | CallKind::Get) {
  Call call;
  std::int32_t id = kDispIdUnknown;
  call.code = object.GetIdOfName(name, &id);
  if (!Failed(call.code)) call.code = object.Invoke(id, kinds, args, &call.result, &call.error);
  return call;
}

}  // namespace hv::test
