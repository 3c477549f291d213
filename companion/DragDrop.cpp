// companion/DragDrop.cpp - tells what drag data holds.
#include "companion/DragDrop.h"

#include "store/core/Exception.h"

namespace hv::vex::companion {

namespace {

std::int32_t Holds(IDataObject* object, std::u16string_view format) {
  if (!object) return 0;
  const std::byte* bytes = nullptr;
  std::size_t size = 0;
  const Result rc = object->GetData(format, &bytes, &size);
  return !Failed(rc) && bytes && size > 0 ? 1 : 0;
}

[[noreturn]] void RefuseToList() {
  throw Exception(errc::kNotSupported, u"the companion tells formats apart, it doesn't read them");
}

}  // namespace

std::int32_t DragDrop::HoldsQueryConditions(IDataObject* object) {
  return Holds(object, kFormatQueryConditions);
}

std::int32_t DragDrop::HoldsPropertyDescriptions(IDataObject* object) {
  return Holds(object, kFormatPropertyDescriptions);
}

void DragDrop::ListQueryConditions(IDataObject*, IDragItemSink*) { RefuseToList(); }
void DragDrop::ListPropertyDescriptions(IDataObject*, IDragItemSink*) { RefuseToList(); }

}  // namespace hv::vex::companion
