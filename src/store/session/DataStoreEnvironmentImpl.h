// store/session/DataStoreEnvironmentImpl.h - the object that opens sessions.
#pragma once

#include "cor/Counted.h"
#include "store/core/CoreBinding.h"
#include "store/session/IDataStoreEnvironmentImpl.h"

namespace hv::vex {

class CDataStoreEnvironmentImpl final : private CoreBinding,
                                        public cor::Counted<IDataStoreEnvironmentImpl> {
 public:
  CDataStoreEnvironmentImpl() = default;

  // IDataStoreEnvironmentImpl
  Result Connect(std::u16string_view name, std::u16string_view pluginName,
                 std::u16string_view parameter, IDataStoreImpl** store) override;

 private:
  ~CDataStoreEnvironmentImpl() override = default;
};

}  // namespace hv::vex
