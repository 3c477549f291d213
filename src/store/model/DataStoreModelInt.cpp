// store/model/DataStoreModelInt.cpp - the data model of a store as hosts see it.
#include "store/model/DataStoreModelInt.h"

#include "automation/rows/DataStoreModel.h"
#include "elements/WrapObject.h"
#include "store/model/EntityInt.h"

namespace hv::vex {

namespace {

constexpr auto kRows =
    automation::MakeRows(automation::Get<&IDataStoreModel::get_Entities>(
                             u"Entities", 1, automation::rows::kDataStoreModelGetEntities),
                         automation::Method<&IDataStoreModel::Export>(
                             u"Export", 2, automation::rows::kDataStoreModelExport));
constexpr automation::DispatchMap kMap{u"DataStoreModel", kRows};

}  // namespace

const automation::DispatchMap& CDataStoreModelInt::Map() { return kMap; }

Result CDataStoreModelInt::get_Entities(IModelEntities** entities) {
  return WrapResult<IEntityCollImpl, CEntityCollInt>(
      entities, [this](auto** out) { return m_logic->GetEntities(out); });
}

Result CDataStoreModelInt::Export(const WString& pathName) { return m_logic->Export(pathName); }

}  // namespace hv::vex
