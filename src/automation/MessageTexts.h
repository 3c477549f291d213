// automation/MessageTexts.h - what an object says of itself in the messages of other objects.
#pragma once

#include <storefabric/Unknown.h>
#include <storefabric/WString.h>

#include "automation/ErrorRows.h"

namespace hv::automation {

/// A face of wrappers that are arguments of other wrappers' members.
class IMessageTexts : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("hv::automation::IMessageTexts");

  /// Empty for a text that the object doesn't have.
  virtual WString GetMessageText(ObjectTextId id) = 0;

 protected:
  ~IMessageTexts() = default;
};

}  // namespace hv::automation
