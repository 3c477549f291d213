// store/model/ModelPropertyImpl.cpp - a property of an entity.
#include "store/model/ModelPropertyImpl.h"

#include "automation/Guards.h"

namespace hv::vex {

Result CModelPropertyImpl::GetName(WString* name) {
  HV_RETURN_IF_NULL(name);
  *name = m_name;
  return S_OK;
}

Result CModelPropertyImpl::GetDataType(enumDataType* dataType) {
  HV_RETURN_IF_NULL(dataType);
  *dataType = m_dataType;
  return S_OK;
}

Result CModelPropertyImpl::GetBaseName(WString* baseName) {
  HV_RETURN_IF_NULL(baseName);
  *baseName = m_baseName;
  return m_baseName.empty() ? VEX_E_NOT_BASE_PROPERTY : S_OK;
}

Result CModelPropertyImpl::GetMinOccur(std::int32_t* minOccur) {
  HV_RETURN_IF_NULL(minOccur);
  *minOccur = m_minOccur;
  return S_OK;
}

Result CModelPropertyImpl::GetMaxOccur(std::int32_t* maxOccur) {
  HV_RETURN_IF_NULL(maxOccur);
  *maxOccur = m_maxOccur;
  return S_OK;
}

}  // namespace hv::vex
