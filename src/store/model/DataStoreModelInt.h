// store/model/DataStoreModelInt.h - the data model of a store as hosts see it.
#pragma once

#include <utility>

#include <storefabric/IDataStoreModel.h>
#include <storefabric/Ref.h>

#include "automation/DispatchImpl.h"
#include "store/model/IDataStoreModelImpl.h"

namespace hv::vex {

class CDataStoreModelInt final
    : public automation::DispatchImpl<CDataStoreModelInt, IDataStoreModel> {
 public:
  explicit CDataStoreModelInt(Ref<IDataStoreModelImpl> logic) : m_logic(std::move(logic)) {}
  static const automation::DispatchMap& Map();

  // IDataStoreModel
  Result get_Entities(IModelEntities** entities) override;
  Result Export(const WString& pathName) override;

 private:
  ~CDataStoreModelInt() override = default;

  Ref<IDataStoreModelImpl> m_logic;
};

}  // namespace hv::vex
