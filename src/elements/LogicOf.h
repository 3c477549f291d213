// elements/LogicOf.h - the way from an automation object back to its logic object.
#pragma once

#include <storefabric/Unknown.h>

#include "store/collections/ICollectionImpl.h"

namespace hv::vex::easyImpl {

/// A face of wrappers, for other wrappers of this library that are handed one as an argument.
template <class Logic>
class ILogicOf : public IUnknown {
 public:
  static constexpr Iid kIid = MakeTemplateIid("hv::vex::easyImpl::ILogicOf", Logic::kIid);

  /// The logic object, borrowed from the wrapper.
  virtual Logic& GetLogic() = 0;

 protected:
  ~ILogicOf() = default;
};

}  // namespace hv::vex::easyImpl
