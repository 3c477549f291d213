// automation/ClassRegistry.cpp - finding and creating classes by name.
#include "automation/ClassRegistry.h"

#include <algorithm>

#include "automation/Guards.h"

namespace hv::automation {

const ClassEntry* ClassRegistry::TryFind(std::u16string_view progId) const {
  const auto at = std::ranges::find_if(m_entries, [progId](const ClassEntry& entry) {
    return CompareNames(entry.progId, progId) == 0;
  });
  return at == m_entries.end() ? nullptr : &*at;
}

Result ClassRegistry::CreateObject(std::u16string_view progId, IDispatch** out) const try {
  HV_RETURN_IF_NULL(out);
  *out = nullptr;
  const ClassEntry* entry = TryFind(progId);
  HV_RETURN_CODE_IF(!entry, CLASS_E_CLASSNOTAVAILABLE);
  Ref<IDispatch> object;
  HV_RETURN_IF_FAILED(entry->create(object.Put()));
  *out = object.Detach();
  return S_OK;
}
HV_CATCH_RETURN()

}  // namespace hv::automation
