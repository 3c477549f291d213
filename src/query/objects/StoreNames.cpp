// query/objects/StoreNames.cpp - names of entities and properties, from hosts and internal.
#include "query/objects/StoreNames.h"

#include "query/objects/AttributePath.h"
#include "query/values/AttributeDataTypeHelper.h"
#include "store/core/IAttribute.h"
#include "store/model/BaseNames.h"

#include <array>

namespace hv::vex {

namespace {

constexpr std::u16string_view kQuantityBase = u"aomeasurementquantity";
/// The block that holds bulk data. Conditions begin or end there, they don't pass through.
constexpr std::array<std::u16string_view, 4> kBulkBlock = {u"aomeasurement", kQuantityBase,
                                                           u"aosubmatrix", kLocalColumnBase};

struct PathMessage {
  std::int32_t flag;
  std::int32_t message;
};
constexpr PathMessage kPathMessages[] = {
    {pathflag::kRecursive, 12008}, {pathflag::kBrowsePath, 12008}, {pathflag::kUnknown, 12009},
    {pathflag::kType, 12011},      {pathflag::kVector, 12010},     {pathflag::kAmbiguous, 12013},
};

WString NameOf(IEntity& entity) {
  WString name;
  entity.GetName(name);
  return name;
}

bool IsOfBlock(IModel& model, IEntity& entity) {
  for (const std::u16string_view name : kBulkBlock) {
    const auto base = Ref<IEntity>::Adopt(model.GetEntity(name));
    if (base && entity.IsKindOf(base.Get()) != 0) return true;
  }
  return false;
}

/// True if the target of the current step is where the path has been before.
bool ComesBack(AttributePathInfo& path) {
  const tAttributePathInfoAutoPosition keep(path);
  const WString name = NameOf(*path.Current().target);
  const std::size_t here = path.GetPosition();
  path.SetPosition(0);
  while (path.Next()) {
    if (NameOf(*path.Current().source).EqualsExact(name)) return true;
    if (path.GetPosition() == here) return false;
  }
  return false;
}

/// True if the reference's inverse leads back by this reference and no other.
bool HasOwnInverse(IRelation& relation) {
  const auto inverse = Ref<IRelation>::Adopt(relation.GetInverse());
  const auto back = Ref<IRelation>::Adopt(inverse ? inverse->GetInverse() : nullptr);
  if (!back) return false;
  WString name;
  WString own;
  back->GetName(name);
  relation.GetName(own);
  return name.EqualsExact(own);
}

std::int32_t CheckProperty(IModel& model, AttributePathInfo& path) {
  IEntity& entity = path.Target();
  WString baseName;
  entity.GetAttributeBaseName(baseName, path.Property());
  const auto column = Ref<IEntity>::Adopt(model.GetEntity(kLocalColumnBase));
  // The one sequence that is let through, whatever the engine makes of it.
  const bool isColumn = column && entity.IsKindOf(column.Get()) != 0;
  if (isColumn && baseName.EqualsExact(kValuesBase)) return pathflag::kValid;
  const auto found = Ref<IAttribute>::Adopt(entity.GetAttribute(path.Property()));
  const auto definition = QueryRef<IAttributeDefinition>(found.Get());
  if (!definition) return pathflag::kUnknown;
  const std::int32_t type = definition->GetDataType();
  const bool isNumber = type >= eI8 && type <= eR64;
  if (!isNumber && !IsStringType(type) && !IsDateType(type)) return pathflag::kType;
  std::int32_t least = 0;
  std::int32_t most = 0;
  definition->GetOccurrence(&least, &most);
  return most == 1 || most == 0 ? pathflag::kValid : pathflag::kVector;
}

}  // namespace

std::int32_t PathCheckMessage(std::int32_t flags) {
  for (const PathMessage& row : kPathMessages) {
    if ((flags & row.flag) != 0) return row.message;
  }
  return 0;
}

Ref<IEntity> StoreNames::FindEntity(std::u16string_view name) const {
  return Ref<IEntity>::Adopt(m_model && !name.empty() ? m_model->GetEntityByName(name) : nullptr);
}

Ref<IEntity> StoreNames::MeasurementQuantity() const {
  return Ref<IEntity>::Adopt(m_model ? m_model->GetApplicationEntityOfBase(kQuantityBase)
                                     : nullptr);
}

WString StoreNames::ApplicationName(std::u16string_view baseName,
                                    std::u16string_view otherwise) const {
  const auto entity =
      Ref<IEntity>::Adopt(m_model ? m_model->GetApplicationEntityOfBase(baseName) : nullptr);
  return entity ? NameOf(*entity) : WString(otherwise);
}

Result StoreNames::InternalEntity(std::u16string_view entity, WString* internal) const {
  internal->clear();
  const Ref<IEntity> quantity = MeasurementQuantity();
  const Ref<IEntity> target = FindEntity(entity);
  if (!target) return E_INVALIDARG;
  if (!quantity) {
    *internal = NameOf(*target);
    return S_OK;
  }
  if (quantity->IsKindOf(target.Get()) != 0) return S_OK;
  WString names;
  if (m_model->FindPath(quantity.Get(), target.Get(), names) == 0) return E_INVALIDARG;
  AttributePathInfo path;
  if (Failed(path.Parse(*quantity, names, false))) return E_INVALIDARG;
  *internal = path.BaseNames();
  return internal->empty() ? E_INVALIDARG : S_OK;
}

Result StoreNames::InternalProperty(std::u16string_view entity, std::u16string_view property,
                                    WString* internal) const {
  internal->clear();
  const Ref<IEntity> start = FindEntity(entity);
  AttributePathInfo path;
  if (!start || Failed(path.Parse(*start, property, true))) return E_INVALIDARG;
  *internal = path.BaseNames();
  return S_OK;
}

Result StoreNames::ExternalEntity(std::u16string_view internal, WString* entity) const {
  entity->clear();
  Ref<IEntity> found = MeasurementQuantity();
  AttributePathInfo path;
  if (found && !Failed(path.Parse(*found, internal, false))) {
    found = Ref<IEntity>::Share(&path.Target());
  } else {
    found = FindEntity(internal);
  }
  if (!found) return E_INVALIDARG;
  *entity = NameOf(*found);
  return S_OK;
}

Result StoreNames::ExternalNames(std::u16string_view internal, WString* entity,
                                 WString* property) const {
  entity->clear();
  property->clear();
  // The way to the measurement quantity itself is empty.
  if (internal.starts_with(u'.')) internal.remove_prefix(1);
  Ref<IEntity> start = MeasurementQuantity();
  AttributePathInfo path;
  bool isFound = start && !Failed(path.Parse(*start, internal, true));
  for (std::size_t dot = internal.rfind(u'.'); !isFound && dot != internal.npos && dot != 0;
       dot = internal.rfind(u'.', dot - 1)) {
    start = FindEntity(internal.substr(0, dot));
    isFound = start && !Failed(path.Parse(*start, internal.substr(dot + 1), true));
  }
  if (!isFound) return E_INVALIDARG;
  *entity = NameOf(path.Target());
  *property = path.Property();
  return S_OK;
}

Result StoreNames::FindPath(std::u16string_view from, std::u16string_view to, WString* path) const {
  path->clear();
  const Ref<IEntity> start = FindEntity(from);
  const Ref<IEntity> target = FindEntity(to);
  if (!start || !target || m_model->FindPath(start.Get(), target.Get(), *path) == 0) {
    path->clear();
    return E_INVALIDARG;
  }
  return S_OK;
}

std::int32_t StoreNames::CheckPath(std::u16string_view entity, std::u16string_view property,
                                   IBrowseConfig* browseConfig) const {
  const Ref<IEntity> start = FindEntity(entity);
  AttributePathInfo path;
  if (!start || Failed(path.Parse(*start, property, true))) return pathflag::kUnknown;
  while (path.Next()) {
    const AttributePathStep& step = path.Current();
    if (ComesBack(path)) return pathflag::kRecursive;
    if (path.GetPosition() < path.Steps().size() && IsOfBlock(*m_model, *step.target)) {
      return pathflag::kUnknown;
    }
    if (browseConfig && browseConfig->IsEntityInPath(step.target.Get())) {
      return pathflag::kBrowsePath;
    }
    if (!HasOwnInverse(*step.relation)) return pathflag::kAmbiguous;
  }
  return CheckProperty(*m_model, path);
}

}  // namespace hv::vex
