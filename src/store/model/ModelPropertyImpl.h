// store/model/ModelPropertyImpl.h - a property of an entity.
#pragma once

#include <cstdint>
#include <utility>

#include "cor/Counted.h"
#include "store/model/IModelPropertyImpl.h"

namespace hv::vex {

class CModelPropertyImpl final : public cor::Counted<IModelPropertyImpl> {
 public:
  CModelPropertyImpl(WString name, WString baseName, enumDataType dataType, std::int32_t minOccur,
                     std::int32_t maxOccur)
      : m_name(std::move(name)),
        m_baseName(std::move(baseName)),
        m_dataType(dataType),
        m_minOccur(minOccur),
        m_maxOccur(maxOccur) {}

  // IModelPropertyImpl
  Result GetName(WString* name) override;
  Result GetDataType(enumDataType* dataType) override;
  Result GetBaseName(WString* baseName) override;
  Result GetMinOccur(std::int32_t* minOccur) override;
  Result GetMaxOccur(std::int32_t* maxOccur) override;

 private:
  ~CModelPropertyImpl() override = default;

  WString m_name;
  WString m_baseName;
  enumDataType m_dataType;
  std::int32_t m_minOccur;
  std::int32_t m_maxOccur;
};

}  // namespace hv::vex
