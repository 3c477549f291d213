// store/model/ModelReferenceInt.h - an entity's references as hosts see them.
#pragma once

#include <cstdint>
#include <utility>

#include <storefabric/IDataStoreModel.h>
#include <storefabric/Ref.h>

#include "automation/DispatchImpl.h"
#include "elements/WrapObject.h"
#include "store/model/IModelReferenceImpl.h"

namespace hv::vex {

class CModelReferenceInt final
    : public automation::DispatchImpl<CModelReferenceInt, IModelReference> {
 public:
  explicit CModelReferenceInt(Ref<IModelReferenceImpl> logic) : m_logic(std::move(logic)) {}
  static const automation::DispatchMap& Map();

  // IModelReference
  Result get_Name(WString* name) override;
  Result get_EntityType(IModelEntity** entity) override;
  Result get_BaseName(WString* baseName) override;
  Result get_MinOccur(std::int32_t* minOccur) override;
  Result get_MaxOccur(std::int32_t* maxOccur) override;
  Result get_Inverse(IModelReference** inverse) override;

 private:
  ~CModelReferenceInt() override = default;

  Ref<IModelReferenceImpl> m_logic;
};

class CModelReferenceCollInt final
    : public automation::tReadCollectionInt<
          CModelReferenceCollInt,
          tReadTraits<IModelReferenceCollImpl, IModelReference, CModelReferenceInt>,
          IModelReferences> {
 public:
  explicit CModelReferenceCollInt(Ref<IModelReferenceCollImpl> logic)
      : tReadCollectionInt(std::move(logic)) {}
  static const automation::DispatchMap& Map();

  // IModelReferences
  Result Exists(const WString& name, std::int32_t* exists) override;

 private:
  ~CModelReferenceCollInt() override = default;
};

}  // namespace hv::vex
