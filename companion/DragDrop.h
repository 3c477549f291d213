// companion/DragDrop.h - tells what drag data holds.
#pragma once

#include <storefabric/IDragDrop.h>

#include "cor/Counted.h"

namespace hv::vex::companion {

class DragDrop final : public cor::Counted<IDragDrop> {
 public:
  std::int32_t HoldsQueryConditions(IDataObject* object) override;
  std::int32_t HoldsPropertyDescriptions(IDataObject* object) override;
  void ListQueryConditions(IDataObject* object, IDragItemSink* sink) override;
  void ListPropertyDescriptions(IDataObject* object, IDragItemSink* sink) override;
};

}  // namespace hv::vex::companion
