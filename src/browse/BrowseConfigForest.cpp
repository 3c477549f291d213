// browse/BrowseConfigForest.cpp - the generic layer of a browse configuration.
#include "browse/BrowseConfigForest.h"

#include <utility>

#include "automation/Guards.h"
#include "browse/ResolveReference.h"
#include "store/core/IContainer.h"
#include "store/core/IInstList.h"
#include "store/core/IInstance.h"
#include "store/core/IStore.h"

namespace hv::vex {

namespace {

constexpr std::u16string_view kStartBase = u"aotest";
constexpr std::u16string_view kChildren = u"children";
constexpr std::u16string_view kQuantities = u"measurement_quantities";

IBrowseConfigEntity* Given(tBrowseConfigEntityImpl* level) {
  return Ref<IBrowseConfigEntity>::Share(level).Detach();
}

void PathOf(tBrowseConfigEntityImpl* level, WString& path) {
  if (level) {
    path = level->Path();
  } else {
    path.clear();
  }
}

/// A lookup without a result code finds nothing where the engine fails.
Ref<IEntity> TryGetEntity(const Ref<IModel>& model, std::u16string_view name) try {
  return Ref<IEntity>::Adopt(model ? model->GetEntity(name) : nullptr);
} catch (const Exception&) {
  return {};
}

}  // namespace

void* tBrowseConfigImpl::FindFace(const Iid& iid) {
  if (iid == IBrowseConfig::kIid) return static_cast<IBrowseConfig*>(this);
  return Counted::FindFace(iid);
}

tBrowseConfigImpl::Entity* tBrowseConfigImpl::FindLevel(IEntity* entity) const {
  const auto found = m_levels.find(entity);
  return found == m_levels.end() ? nullptr : found->second.entity.Get();
}

IBrowseConfigEntity* tBrowseConfigImpl::GetEntityByName(std::u16string_view name) {
  return GetEntity(TryGetEntity(m_model, name).Get());
}

IBrowseConfigEntity* tBrowseConfigImpl::GetEntity(IEntity* entity) {
  return Given(FindLevel(entity));
}

void tBrowseConfigImpl::GetFirstRootPath(WString& path) { PathOf(m_roots.FirstForPath(), path); }
IBrowseConfigEntity* tBrowseConfigImpl::GetFirstRoot() { return Given(m_roots.FirstEntity()); }
void tBrowseConfigImpl::GetNextRootPath(WString& path) { PathOf(m_roots.NextForPath(), path); }
IBrowseConfigEntity* tBrowseConfigImpl::GetNextRoot() { return Given(m_roots.NextEntity()); }

bool tBrowseConfigImpl::IsEntityInPathByName(std::u16string_view name) {
  return IsEntityInPath(TryGetEntity(m_model, name).Get());
}

bool tBrowseConfigImpl::IsEntityInPath(IEntity* entity) {
  if (!entity) return false;
  for (const auto& [key, level] : m_levels) {
    if (entity->IsKindOf(key) != 0) return true;
  }
  return false;
}

IStringList* tBrowseConfigImpl::GetDataLevelNames() {
  return Ref<StringList>(m_dataLevelNames).Detach();
}

bool tBrowseConfigImpl::IsDataLevelByName(std::u16string_view name) {
  return IsDataLevel(TryGetEntity(m_model, name).Get());
}

bool tBrowseConfigImpl::IsDataLevel(IEntity* entity) {
  Entity* const level = FindLevel(entity);
  return level && level->IsDataLevel();
}

Result tBrowseConfigImpl::Load(IStore* store, std::u16string_view) try {
  HV_RETURN_IF_NULL(store);
  m_model = Ref<IModel>::Adopt(store->GetModel());
  HV_RETURN_CODE_IF(!m_model, E_UNEXPECTED);
  if (m_configStore) {
    BuildFromConfig();
  } else {
    BuildDefaultPath();
  }
  return S_OK;
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

void tBrowseConfigImpl::BuildDefaultPath() {
  const Ref<IEntity> start = FirstDerived(Ref<IEntity>::Adopt(m_model->GetEntity(kStartBase)));
  if (!start) return;
  Ref<Entity> level = MakeEntity(*start, BrowsePlace::Root(*start));
  (void)Register(*level);
  AddRoot(*level);
  while (const auto children =
             Ref<IRelation>::Adopt(level->ModelEntity().GetRelationByName(kChildren))) {
    // A reference back to the entity itself ends the walk, and so does one to a level above, which
    // would never come to an end.
    const auto target = Ref<IEntity>::Adopt(children->GetTargetEntity());
    if (!target || m_levels.contains(target.Get())) break;
    level = AddChildByReference(*level, *children);
  }
  if (const auto quantities =
          Ref<IRelation>::Adopt(level->ModelEntity().GetRelationByName(kQuantities))) {
    (void)AddChildByReference(*level, *quantities);
  }
}

Ref<tBrowseConfigEntityImpl> tBrowseConfigImpl::AddChildByReference(Entity& parent,
                                                                    IRelation& reference) {
  const auto target = Ref<IEntity>::Adopt(reference.GetTargetEntity());
  Ref<Entity> child = MakeEntity(*target, BrowsePlace::Child(reference, parent));
  if (m_levels.contains(target.Get())) return child;
  parent.AppendChild(*child);
  (void)Register(*child);
  return child;
}

Result tBrowseConfigImpl::Register(Entity& level) {
  IEntity& entity = level.ModelEntity();
  const bool isNew =
      m_levels.try_emplace(&entity, Level{Ref<IEntity>::Share(&entity), Ref<Entity>::Share(&level)})
          .second;
  HV_RETURN_CODE_IF(!isNew, S_FALSE);
  if (!level.IsDataLevel()) return S_OK;
  if (level.Kind() == BaseKind::Measurement && level.Parent()) level.Parent()->SetDataLevel(true);
  m_dataLevelNames->Append(NameOf(entity));
  return S_OK;
}

void tBrowseConfigImpl::Erase(LevelMap& map, IEntity& entity) {
  const auto found = map.find(&entity);
  if (found == map.end()) return;
  const Level leaving = std::move(found->second);
  // In a tree from a configuration store more than one level may have it as a child.
  for (const auto& [key, level] : map) {
    if (level.entity) level.entity->ForgetChild(*leaving.entity);
  }
  map.erase(found);
  leaving.entity->Leave();
}

void tBrowseConfigImpl::EraseAll(LevelMap& map) {
  const LevelMap leaving = std::exchange(map, {});
  for (const auto& [key, level] : leaving) level.entity->Leave();
}

void tBrowseConfigImpl::DropForest() {
  m_roots.Clear();
  EraseAll(m_levels);
  m_dataLevelNames = MakeRef<StringList>();
}

void tBrowseConfigImpl::Clear() {
  DropForest();
  m_configStore.Reset();
}

// --- configuration stores ----------------------------------------------------------------------

void tBrowseConfigImpl::BuildFromConfig() try {
  if (!m_configStore || !m_model) return;
  ConfigMap known;
  const auto roots = Ref<IInstList>::Adopt(m_configStore->GetInstances(u"/#browseroot"));
  while (const auto instance = Ref<IInstance>::Adopt(roots->Next())) {
    WString name;
    instance.As<IContainer>()->GetString(name, u"name");
    const auto entity = Ref<IEntity>::Adopt(m_model->GetEntityByName(name));
    if (!entity) throw Exception(errc::kUnknownName, name);
    const auto root = Ref<IBrowseConfigEntity>::Adopt(
                          CreateEntityFromConfig(entity.Get(), instance.Get(), nullptr))
                          .As<Entity>();
    if (!root || Register(*root) != S_OK) continue;
    known.emplace(instance.Get(), std::pair(instance, root));
    AddRoot(*root);
    ReadConfigChildren(*root, *instance, known);
  }
} catch (const Exception&) {
  // The operation has no result code: what was read so far is the tree.
}

void tBrowseConfigImpl::ReadConfigChildren(Entity& parent, IInstance& instance, ConfigMap& known) {
  const auto children = Ref<IInstList>::Adopt(instance.GetRelated(u"browsechildren"));
  while (const auto child = Ref<IInstance>::Adopt(children->Next())) {
    if (const auto shared = known.find(child.Get()); shared != known.end()) {
      parent.AppendChild(*shared->second.second);
      continue;
    }
    WString name;
    child.As<IContainer>()->GetString(name, u"name");
    const auto reference = Ref<IRelation>::Adopt(parent.ModelEntity().GetRelationByName(name));
    const auto entity = Ref<IEntity>::Adopt(reference ? reference->GetTargetEntity() : nullptr);
    if (!entity) continue;
    const auto level =
        Ref<IBrowseConfigEntity>::Adopt(CreateEntityFromConfig(entity.Get(), child.Get(), &parent))
            .As<Entity>();
    if (!level || Register(*level) != S_OK) continue;
    known.emplace(child.Get(), std::pair(child, level));
    parent.AppendChild(*level);
    ReadConfigChildren(*level, *child, known);
  }
}

}  // namespace hv::vex
