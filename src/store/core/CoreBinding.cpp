// store/core/CoreBinding.cpp - keeps the storage engine loaded while a logic object lives.
#include "store/core/CoreBinding.h"

#include "store/core/CoreLibrary.h"

namespace hv::vex {

CoreBinding::CoreBinding() : m_attached(AttachCore()) {
  if (m_attached) StartCore();
}

CoreBinding::~CoreBinding() {
  // Whether the engine was complete doesn't count here: what is bound is called.
  StopCore();
  DetachCore();
}

}  // namespace hv::vex
