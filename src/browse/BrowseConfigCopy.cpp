// browse/BrowseConfigCopy.cpp - deep copies of browse configurations, into another model by name or
// along with the model.
#include <set>

#include "automation/Guards.h"
#include "browse/BrowseConfigImpl.h"
#include "browse/BrowseResults.h"
#include "browse/ResolveReference.h"

namespace hv::vex {

namespace {

constexpr std::u16string_view kMeasurement = u"measurement";
constexpr std::u16string_view kLocalColumns = u"local_columns";

}  // namespace

void CDataStoreBrowseConfigImpl::StartCopy(CDataStoreBrowseConfigImpl& source) {
  Clear();
  m_symbols.CopyFrom(source.m_symbols);
}

Result CDataStoreBrowseConfigImpl::CopyFrom(IBrowseConfig* source) try {
  HV_RETURN_IF_NULL(source);
  const auto own = OwnBrowseConfig(source);
  HV_RETURN_CODE_IF(own.Get() == this, S_FALSE);
  HV_RETURN_CODE_IF(!own, E_INVALIDARG);
  HV_RETURN_CODE_IF(!m_model, E_UNEXPECTED);
  StartCopy(*own);
  HV_RETURN_CODE_IF(!own->FirstRoot(), S_OK);
  HV_RETURN_IF_FAILED(CopyChain(*own));
  HV_RETURN_IF_FAILED(CopyImplicitBranch(*own));
  ++m_generation;
  return S_OK;
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

Result CDataStoreBrowseConfigImpl::CopyChain(CDataStoreBrowseConfigImpl& source) {
  std::set<const IEntity*> visited;
  Entity* last = nullptr;
  for (Entity* level = source.FirstRoot(); level; level = level->Child()) {
    HV_RETURN_CODE_IF(!visited.insert(&level->ModelEntity()).second, kInvalidPath);
    last = level;
  }
  HV_CHECK(last);
  Ref<IEntity> entity;
  if (last->Kind() == BaseKind::MeasurementQuantity) {
    entity = FirstDerived(m_baseTypes.measurementQuantity);
    HV_RETURN_CODE_IF(!entity, kMissingBaseType);
  } else {
    entity = Ref<IEntity>::Adopt(m_model->GetEntity(NameOf(last->ModelEntity())));
    HV_RETURN_CODE_IF(!entity, kModelMismatch);
  }
  Ref<Entity> copy;
  return CopyUpward(*entity, *last, &copy);
}

Result CDataStoreBrowseConfigImpl::CopyUpward(IEntity& entity, Entity& from, Ref<Entity>* copy) {
  if (from.ParentPath().empty()) {
    HV_RETURN_IF_FAILED(CopyLevel(from, entity, BrowsePlace::Root(entity), copy));
    AddRoot(**copy);
    return S_OK;
  }
  Ref<IRelation> up;
  Ref<IRelation> down;
  HV_RETURN_IF_FAILED(ResolveReference(entity, from.ParentPath(), &up, &down));
  const auto target = Ref<IEntity>::Adopt(up->GetTargetEntity());
  HV_RETURN_CODE_IF(!target || !from.Parent(), E_UNEXPECTED);
  Ref<Entity> parent;
  HV_RETURN_IF_FAILED(CopyUpward(*target, static_cast<Entity&>(*from.Parent()), &parent));
  HV_RETURN_IF_FAILED(CopyLevel(from, entity, BrowsePlace::Child(*down, *parent), copy));
  parent->AppendChild(**copy);
  return S_OK;
}

Result CDataStoreBrowseConfigImpl::CopyLevel(Entity& from, IEntity& entity, BrowsePlace place,
                                             Ref<Entity>* copy) {
  *copy = MakeLevel(entity, std::move(place));
  // Whether the symbol is the default goes along: a copy is what dialogs edit, and there a level
  // that is no data level any more has to show it.
  (*copy)->TakeSymbol(from.GetSymbolKey(), from.IsDefaultSymbol());
  HV_RETURN_CODE_IF(Register(**copy) != S_OK, E_UNEXPECTED);
  return (*copy)->Parts().CopyResolved(&from.Parts(), &entity);
}

Result CDataStoreBrowseConfigImpl::CopyImplicitBranch(CDataStoreBrowseConfigImpl& source) {
  const Ref<IEntity> submatrix = FirstDerived(m_baseTypes.submatrix);
  HV_RETURN_CODE_IF(!submatrix, kMissingBaseType);
  m_pathComplete = source.m_pathComplete;
  Entity* const from = source.ImplicitLevel(FirstDerived(source.m_baseTypes.submatrix).Get());
  if (!from) return S_OK;
  const auto up = Ref<IRelation>::Adopt(submatrix->GetRelationByName(kMeasurement));
  const auto measurement = Ref<IEntity>::Adopt(up ? up->GetTargetEntity() : nullptr);
  const Ref<Entity> level = MakeLevel(*submatrix, BrowsePlace::Root(*submatrix));
  level->TakeSymbol(from->GetSymbolKey(), from->IsDefaultSymbol());
  level->SetParent(FindLevel(measurement.Get()), kMeasurement);
  AddImplicit(*level);
  HV_RETURN_IF_FAILED(level->Parts().CopyResolved(&from->Parts(), submatrix.Get()));

  const Ref<IEntity> localColumn = FirstDerived(m_baseTypes.localColumn);
  HV_RETURN_CODE_IF(!localColumn, kMissingBaseType);
  Entity* const fromColumn =
      source.ImplicitLevel(FirstDerived(source.m_baseTypes.localColumn).Get());
  const auto down = Ref<IRelation>::Adopt(submatrix->GetRelationByName(kLocalColumns));
  if (fromColumn && down) {
    const Ref<Entity> column = MakeLevel(*localColumn, BrowsePlace::Child(*down, *level));
    column->TakeSymbol(fromColumn->GetSymbolKey(), fromColumn->IsDefaultSymbol());
    AddImplicit(*column);
    level->AppendChild(*column);
    HV_RETURN_IF_FAILED(column->Parts().CopyResolved(&fromColumn->Parts(), localColumn.Get()));
  }
  m_pathComplete = true;
  return S_OK;
}

Result CDataStoreBrowseConfigImpl::CloneFrom(IBrowseConfig* source) try {
  HV_RETURN_IF_NULL(source);
  const auto own = OwnBrowseConfig(source);
  HV_RETURN_CODE_IF(own.Get() == this, S_FALSE);
  HV_RETURN_CODE_IF(!own, E_INVALIDARG);
  HV_RETURN_CODE_IF(!own->m_model, E_UNEXPECTED);
  StartCopy(*own);
  m_model = own->m_model;
  m_baseTypes = own->m_baseTypes;
  HV_RETURN_CODE_IF(!own->FirstRoot(), S_OK);
  HV_RETURN_IF_FAILED(CloneChain(*own));
  // A model that has come along needs no submatrix of its own for this.
  if (!own->m_implicitLevels.empty()) HV_RETURN_IF_FAILED(CopyImplicitBranch(*own));
  m_pathComplete = own->m_pathComplete;
  ++m_generation;
  return S_OK;
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

Result CDataStoreBrowseConfigImpl::CloneChain(CDataStoreBrowseConfigImpl& source) {
  Ref<Entity> parent;
  for (Entity* from = source.FirstRoot(); from; from = from->Child()) {
    IEntity& entity = from->ModelEntity();
    HV_RETURN_CODE_IF(m_levels.contains(&entity), kInvalidPath);
    BrowsePlace place;
    place.path = from->Path();
    place.parentPath = from->ParentPath();
    place.parent = parent.Get();
    from->GetRepresentedBy(place.representedBy);
    Ref<Entity> copy;
    HV_RETURN_IF_FAILED(CopyLevel(*from, entity, std::move(place), &copy));
    if (parent) {
      parent->AppendChild(*copy);
    } else {
      AddRoot(*copy);
    }
    parent = copy;
  }
  return S_OK;
}

}  // namespace hv::vex
