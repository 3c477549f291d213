// store/elements/ReferencePath.cpp - paths of references from an instance, step by step.
#include "store/elements/ReferencePath.h"

#include "store/core/IInstance.h"
#include "store/core/IModel.h"
#include "store/core/IStore.h"

namespace hv::vex {

std::optional<LastStep> FindLastStep(IEntity& entity, std::u16string_view path) {
  if (path.empty()) return {};
  if (auto relation = Ref<IRelation>::Adopt(entity.GetRelationByName(path))) {
    return LastStep{{}, path, std::move(relation)};
  }
  for (std::size_t dot = path.find(u'.'); dot != path.npos; dot = path.find(u'.', dot + 1)) {
    const auto before = FindLastStep(entity, path.substr(0, dot));
    const auto between =
        Ref<IEntity>::Adopt(before ? before->relation->GetTargetEntity() : nullptr);
    if (!between) continue;
    const std::u16string_view name = path.substr(dot + 1);
    if (auto relation = Ref<IRelation>::Adopt(between->GetRelationByName(name))) {
      return LastStep{path.substr(0, dot), name, std::move(relation)};
    }
  }
  return {};
}

WString PathToName(std::u16string_view path, std::u16string_view name) {
  WString text = path;
  text += u"(name='";
  for (const char16_t unit : name) {
    if (unit == u'\'') text += u'\'';
    text += unit;
  }
  text += u"')";
  return text;
}

Ref<IEntity> EntityOfInstance(IInstance& instance) {
  const auto store = Ref<IStore>::Adopt(instance.GetStore());
  const auto model = Ref<IModel>::Adopt(store ? store->GetModel() : nullptr);
  return Ref<IEntity>::Adopt(model ? model->GetEntityOf(&instance) : nullptr);
}

}  // namespace hv::vex
