// browse/BrowseConfigForest.h - the generic layer of a browse configuration: a forest of levels,
// filled from the model or from a configuration store.
#pragma once

#include <map>
#include <string_view>

#include <storefabric/Ref.h>

#include "browse/BaseTypes.h"
#include "browse/BrowseConfigEntity.h"
#include "browse/BrowseEntityList.h"
#include "browse/IDataStoreBrowseConfig.h"
#include "browse/StringList.h"
#include "cor/Counted.h"
#include "store/core/IStore.h"

namespace hv::vex {

class tBrowseConfigImpl
    : public cor::Counted<IDataStoreBrowseConfig, IDataStoreBrowseConfigTesterInterface> {
 public:
  // IBrowseConfig
  IBrowseConfigEntity* GetEntityByName(std::u16string_view name) override;
  IBrowseConfigEntity* GetEntity(IEntity* entity) override;
  std::int32_t GetRootCount() override { return m_roots.Count(); }
  void GetFirstRootPath(WString& path) override;
  IBrowseConfigEntity* GetFirstRoot() override;
  void GetNextRootPath(WString& path) override;
  IBrowseConfigEntity* GetNextRoot() override;
  Result Reserved(IUnknown*) override { return E_NOTIMPL; }
  bool IsEntityInPathByName(std::u16string_view name) override;
  bool IsEntityInPath(IEntity* entity) override;
  IStringList* GetDataLevelNames() override;
  bool IsDataLevelByName(std::u16string_view name) override;
  bool IsDataLevel(IEntity* entity) override;
  IModel* GetModel() override { return Ref<IModel>(m_model).Detach(); }
  std::uint64_t GetGeneration() override { return 0; }
  Result Load(IStore* store, std::u16string_view fileName) override;
  void BuildFromConfig() override;
  void Clear() override;

  StringList& DataLevelNames() { return *m_dataLevelNames; }
  /// A new level below `parent` along a reference, put into the path.
  Ref<tBrowseConfigEntityImpl> AddChildByReference(tBrowseConfigEntityImpl& parent,
                                                   IRelation& reference);

 protected:
  using Entity = tBrowseConfigEntityImpl;
  struct Level {
    Ref<IEntity> key;
    Ref<Entity> entity;
  };
  /// By identity of the model's entity.
  using LevelMap = std::map<IEntity*, Level>;

  tBrowseConfigImpl() = default;
  ~tBrowseConfigImpl() override = default;

  void* FindFace(const Iid& iid) override;

  /// New levels, not yet part of the path. They throw what the engine throws.
  virtual Ref<Entity> MakeEntity(IEntity& entity, BrowsePlace place) = 0;
  /// The level of an entity or null.
  [[nodiscard]] virtual Entity* FindLevel(IEntity* entity) const;

  /// Puts a level into the path. S_FALSE, with nothing done, if its entity is there already.
  Result Register(Entity& level);
  void AddRoot(Entity& root) { m_roots.Append(root); }
  void BuildDefaultPath();
  /// Lets go of all levels.
  void DropForest();
  /// Takes a level out of a map, and tells it.
  static void Erase(LevelMap& map, IEntity& entity);
  static void EraseAll(LevelMap& map);

  Ref<IModel> m_model;
  Ref<IStore> m_configStore;
  LevelMap m_levels;
  BrowseEntityList m_roots;
  Ref<StringList> m_dataLevelNames = MakeRef<StringList>();
  BaseTypes m_baseTypes;

 private:
  using ConfigMap = std::map<IInstance*, std::pair<Ref<IInstance>, Ref<Entity>>>;

  void ReadConfigChildren(Entity& parent, IInstance& instance, ConfigMap& known);
};

}  // namespace hv::vex
