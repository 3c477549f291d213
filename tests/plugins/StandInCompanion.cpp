// tests/plugins/StandInCompanion.cpp - a GUI companion that does what a test tells it to.
// Built once complete and once, with HV_LACKING, without one of the four exports.
#include <storefabric/IDragDrop.h>

#include "plugins/StandIn.h"

namespace hv::test {
namespace {

class DragDrop final : public Living<vex::IDragDrop> {
 public:
  std::int32_t HoldsQueryConditions(vex::IDataObject*) override { return 1; }
  std::int32_t HoldsPropertyDescriptions(vex::IDataObject*) override { return 0; }
  void ListQueryConditions(vex::IDataObject*, vex::IDragItemSink*) override {}
  void ListPropertyDescriptions(vex::IDataObject*, vex::IDragItemSink*) override {}
};

}  // namespace
}  // namespace hv::test

using namespace hv::test;

HV_STAND_IN hv::vex::IDragDrop* gvexCreateDragDrop(std::int32_t* error) {
  return Answer(error, []() -> hv::vex::IDragDrop* { return new DragDrop; });
}

#ifndef HV_LACKING
HV_STAND_IN void* gvexCreateDialogs(std::int32_t*) {
  ++Log().neverCalled;
  return nullptr;
}
#endif
