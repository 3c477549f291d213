// store/elements/EntityOfPath.cpp - where a path of references leads to.
#include "store/elements/EntityOfPath.h"

#include <cstddef>

#include "store/core/IModel.h"

namespace hv::vex {

namespace {

/// Cuts the next step off a path: its name, without the condition behind it.
std::u16string_view CutStep(std::u16string_view& path) {
  bool isQuoted = false;
  std::size_t depth = 0;
  std::size_t nameEnd = std::u16string_view::npos;
  std::size_t end = 0;
  for (; end < path.size(); ++end) {
    const char16_t unit = path[end];
    if (unit == u'\'') {
      isQuoted = !isQuoted;
    } else if (!isQuoted && unit == u'(') {
      if (depth++ == 0 && nameEnd == std::u16string_view::npos) nameEnd = end;
    } else if (!isQuoted && unit == u')') {
      if (depth > 0) --depth;
    } else if (!isQuoted && depth == 0 && unit == u'.') {
      break;
    }
  }
  const std::u16string_view step = path.substr(0, nameEnd < end ? nameEnd : end);
  path.remove_prefix(end < path.size() ? end + 1 : end);
  return step;
}

Ref<IEntity> RootOf(IModel& model, std::u16string_view step) {
  if (step.starts_with(u"/##")) {
    return Ref<IEntity>::Adopt(model.GetEntityByName(step.substr(3)));
  }
  if (step.starts_with(u"/#")) return Ref<IEntity>::Adopt(model.GetEntity(step.substr(2)));
  return {};
}

}  // namespace

Ref<IEntity> EntityOfPath(IModel& model, IEntity* start, std::u16string_view path) {
  auto entity = start ? Ref<IEntity>::Share(start) : RootOf(model, CutStep(path));
  while (entity && !path.empty()) {
    const auto relation = Ref<IRelation>::Adopt(entity->GetRelationByName(CutStep(path)));
    entity = Ref<IEntity>::Adopt(relation ? relation->GetTargetEntity() : nullptr);
  }
  return entity;
}

}  // namespace hv::vex
