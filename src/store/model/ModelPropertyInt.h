// store/model/ModelPropertyInt.h - an entity's properties as hosts see them.
#pragma once

#include <cstdint>
#include <utility>

#include <storefabric/IDataStoreModel.h>
#include <storefabric/Ref.h>

#include "automation/DispatchImpl.h"
#include "store/model/IModelPropertyImpl.h"

namespace hv::vex {

class CModelPropertyInt final : public automation::DispatchImpl<CModelPropertyInt, IModelProperty> {
 public:
  explicit CModelPropertyInt(Ref<IModelPropertyImpl> logic) : m_logic(std::move(logic)) {}
  static const automation::DispatchMap& Map();

  // IModelProperty
  Result get_Name(WString* name) override;
  Result get_DataType(enumDataType* dataType) override;
  Result get_BaseName(WString* baseName) override;
  Result get_MinOccur(std::int32_t* minOccur) override;
  Result get_MaxOccur(std::int32_t* maxOccur) override;

 private:
  ~CModelPropertyInt() override = default;

  Ref<IModelPropertyImpl> m_logic;
};

class CModelPropertyCollInt final
    : public automation::DispatchImpl<CModelPropertyCollInt, IModelProperties> {
 public:
  explicit CModelPropertyCollInt(Ref<IModelPropertyCollImpl> logic) : m_logic(std::move(logic)) {}
  static const automation::DispatchMap& Map();

  // IModelProperties
  Result Item(const Variant& nameOrIndex, IModelProperty** property) override;
  Result get_Count(std::int32_t* count) override;
  Result Exists(const WString& name, std::int32_t* exists) override;

 private:
  ~CModelPropertyCollInt() override = default;

  Ref<IModelPropertyCollImpl> m_logic;
};

}  // namespace hv::vex
