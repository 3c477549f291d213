// query/values/AttributeDataTypeHelper.cpp - what kind of values a property takes.
#include "query/values/AttributeDataTypeHelper.h"

#include "store/model/IEntityImpl.h"
#include "store/model/IModelPropertyImpl.h"

namespace hv::vex {

CDSAttributeDataTypeHelper::CDSAttributeDataTypeHelper(IEntityImpl* entity,
                                                       std::u16string_view propertyName)
    : m_entity(Ref<IEntityImpl>::Share(entity)) {
  if (!m_entity || propertyName.empty()) return;
  Ref<IModelPropertyCollImpl> properties;
  Ref<IModelPropertyImpl> property;
  enumDataType type = eNoType;
  if (Failed(m_entity->GetModelProperties(properties.Put())) || !properties) return;
  if (Failed(properties->GetItemByName(propertyName, property.Put())) || !property) return;
  if (!Failed(property->GetDataType(&type))) m_dataType = type;
}

CDSAttributeDataTypeHelper::~CDSAttributeDataTypeHelper() = default;

}  // namespace hv::vex
