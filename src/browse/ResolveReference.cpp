// browse/ResolveReference.cpp - references of a model by name.
#include "browse/ResolveReference.h"

#include "automation/Guards.h"
#include "browse/BrowseResults.h"

namespace hv::vex {

Result ResolveReference(IEntity& entity, std::u16string_view name, Ref<IRelation>* reference,
                        Ref<IRelation>* inverse) {
  *reference = Ref<IRelation>::Adopt(entity.GetRelationByName(name));
  *inverse = Ref<IRelation>::Adopt(*reference ? (*reference)->GetInverse() : nullptr);
  HV_RETURN_CODE_IF(!*inverse, kModelMismatch);
  const auto target = Ref<IEntity>::Adopt((*reference)->GetTargetEntity());
  HV_RETURN_CODE_IF(!target || NameOf(*target).view().starts_with(u"ao"), kModelMismatch);
  return S_OK;
}

WString NameOf(IEntity& entity) {
  WString name;
  entity.GetName(name);
  return name;
}

WString NameOf(IRelation& relation) {
  WString name;
  relation.GetName(name);
  return name;
}

}  // namespace hv::vex
