// browse/BrowseConfigPath.cpp - building and lengthening the path of a browse configuration.
#include "automation/Guards.h"
#include "browse/BrowseConfigImpl.h"
#include "browse/BrowseResults.h"
#include "browse/ResolveReference.h"

namespace hv::vex {

namespace {

constexpr std::u16string_view kMeasurement = u"measurement";
constexpr std::u16string_view kLocalColumns = u"local_columns";
constexpr std::u16string_view kQuantities = u"measurement_quantities";

/// The entity of this model under the name that another one has, maybe in another model.
Ref<IEntity> SameEntity(IModel& model, const Ref<IEntity>& other) {
  return Ref<IEntity>::Adopt(other ? model.GetEntity(NameOf(*other)) : nullptr);
}
Ref<IEntity> SourceIn(IModel& model, IRelation& hop) {
  return SameEntity(model, Ref<IEntity>::Adopt(hop.GetSourceEntity()));
}
Ref<IEntity> TargetIn(IModel& model, IRelation& hop) {
  return SameEntity(model, Ref<IEntity>::Adopt(hop.GetTargetEntity()));
}

}  // namespace

Result CDataStoreBrowseConfigImpl::AppendHop(IRelation& hop, Ref<Entity>* level) {
  const auto target = TargetIn(*m_model, hop);
  HV_RETURN_CODE_IF(!target, kModelMismatch);
  HV_RETURN_CODE_IF(m_levels.contains(target.Get()), kInvalidPath);
  const Ref<Entity> child = MakeLevel(*target, BrowsePlace::Child(hop, **level));
  HV_RETURN_IF_FAILED(Register(*child));
  (*level)->AppendChild(*child);
  *level = child;
  return S_OK;
}

Result CDataStoreBrowseConfigImpl::BuildFromReferences(References references) try {
  HV_RETURN_CODE_IF(references.empty() || !references.back(), E_UNEXPECTED);
  const auto start = SourceIn(*m_model, *references.back());
  HV_RETURN_CODE_IF(!start, E_UNEXPECTED);
  Ref<Entity> level = MakeLevel(*start, BrowsePlace::Root(*start));
  HV_RETURN_IF_FAILED(Register(*level));
  AddRoot(*level);
  for (auto hop = references.rbegin(); hop != references.rend(); ++hop) {
    HV_RETURN_CODE_IF(!*hop, E_UNEXPECTED);
    const Result rc = AppendHop(**hop, &level);
    HV_RETURN_CODE_IF(Failed(rc), rc == kModelMismatch ? E_UNEXPECTED : rc);
  }
  RefreshSubmatrixBranch();
  return S_OK;
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

Result CDataStoreBrowseConfigImpl::ExtendPath(IBrowseConfig* source, References references) try {
  HV_RETURN_IF_NULL(source);
  HV_RETURN_CODE_IF(references.empty(), E_UNEXPECTED);
  for (IRelation* const hop : references) HV_RETURN_IF_NULL(hop);
  HV_RETURN_IF_FAILED(CopyFrom(source));
  Ref<Entity> level = Ref<Entity>::Share(FirstRoot());
  HV_RETURN_CODE_IF(!level, E_INVALIDARG);
  const auto start = SourceIn(*m_model, *references.back());
  HV_RETURN_CODE_IF(!start, kModelMismatch);
  HV_RETURN_CODE_IF(start.Get() != &level->ModelEntity(), E_INVALIDARG);
  auto hop = references.rbegin();
  for (; hop != references.rend() && level->Child(); ++hop) {
    const auto next = Ref<Entity>::Share(level->Child());
    const auto target = TargetIn(*m_model, **hop);
    HV_RETURN_CODE_IF(!target, kModelMismatch);
    HV_RETURN_CODE_IF(target.Get() != &next->ModelEntity(), E_INVALIDARG);
    HV_RETURN_CODE_IF(!next->Path().EqualsExact(NameOf(**hop)), E_INVALIDARG);
    level = next;
  }
  for (; hop != references.rend(); ++hop) HV_RETURN_IF_FAILED(AppendHop(**hop, &level));
  RefreshSubmatrixBranch();
  return S_OK;
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

Result CDataStoreBrowseConfigImpl::AddChildAndBranch(Entity& parent, IRelation& reference,
                                                     IBrowseConfigEntity** child) {
  const auto alive = Ref<CDataStoreBrowseConfigImpl>::Share(this);
  const auto target = Ref<IEntity>::Adopt(reference.GetTargetEntity());
  HV_RETURN_CODE_IF(!target || m_levels.contains(target.Get()), kInvalidPath);
  const Ref<tBrowseConfigEntityImpl> made = AddChildByReference(parent, reference);
  HV_RETURN_IF_FAILED(made.CopyTo(child));
  HV_RETURN_CODE_IF(made->Kind() != BaseKind::Measurement, S_FALSE);
  parent.SetDataLevel(true);
  if (const auto quantities =
          Ref<IRelation>::Adopt(made->ModelEntity().GetRelationByName(kQuantities))) {
    (void)AddChildByReference(*made, *quantities);
  }
  RefreshSubmatrixBranch();
  return S_OK;
}

void CDataStoreBrowseConfigImpl::RefreshSubmatrixBranch() {
  m_pathComplete = false;
  const Ref<IEntity> submatrix = FirstDerived(m_baseTypes.submatrix);
  if (!submatrix) return;
  if (IsEntityInPath(submatrix.Get())) m_pathComplete = true;
  const Ref<IEntity> localColumn = FirstDerived(m_baseTypes.localColumn);
  if (!localColumn) return;
  if (IsEntityInPath(localColumn.Get())) m_pathComplete = true;
  if (!m_pathComplete) BuildImplicitBranch(*submatrix, *localColumn);
}

void CDataStoreBrowseConfigImpl::BuildImplicitBranch(IEntity& submatrix, IEntity& localColumn) {
  const auto toMeasurement = Ref<IRelation>::Adopt(submatrix.GetRelationByName(kMeasurement));
  const auto measurement =
      Ref<IEntity>::Adopt(toMeasurement ? toMeasurement->GetTargetEntity() : nullptr);
  tBrowseConfigEntityImpl* const parent = FindLevel(measurement.Get());
  // A path that doesn't reach a measurement stays incomplete.
  if (!parent) return;
  // What a copy has brought along keeps its symbol and its display name.
  Ref<Entity> level = Ref<Entity>::Share(ImplicitLevel(&submatrix));
  if (!level) {
    level = MakeLevel(submatrix, BrowsePlace::Root(submatrix));
    level->SetParent(parent, kMeasurement);
    AddImplicit(*level);
  }
  const auto columns = Ref<IRelation>::Adopt(submatrix.GetRelationByName(kLocalColumns));
  if (columns && !ImplicitLevel(&localColumn)) {
    const Ref<Entity> column = MakeLevel(localColumn, BrowsePlace::Child(*columns, *level));
    AddImplicit(*column);
    level->AppendChild(*column);
  }
  m_pathComplete = true;
}

}  // namespace hv::vex
