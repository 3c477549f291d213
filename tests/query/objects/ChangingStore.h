// tests/query/objects/ChangingStore.h - a store whose model a test can exchange or restrict.
#pragma once

#include "cor/Counted.h"
#include "tests/support/NoModel.h"

namespace hv::test {

/// Has the entities of a real model, counts its changes, and may be able to do less.
class ChangingModel final : public NoModel {
 public:
  explicit ChangingModel(const Ref<vex::IStore>& store)
      : m_model(Ref<vex::IModel>::Adopt(store->GetModel())) {}
  void Become(const Ref<vex::IStore>& store) {
    m_model = Ref<vex::IModel>::Adopt(store->GetModel());
    ++m_counter;
  }
  std::int32_t m_logic = 1;
  std::int32_t m_several = 1;
  std::uint64_t m_longest = 0;

  vex::IEntityList* GetEntities() override { return m_model->GetEntities(); }
  vex::IEntity* GetEntityByName(std::u16string_view name) override {
    return m_model->GetEntityByName(name);
  }
  vex::IEntity* GetEntityOf(vex::IInstance* i) override { return m_model->GetEntityOf(i); }
  std::int32_t HasModelPart(std::u16string_view part) override {
    return m_model->HasModelPart(part);
  }
  vex::IEntity* GetEntity(std::u16string_view name) override { return m_model->GetEntity(name); }
  vex::IEntity* GetApplicationEntityOfBase(std::u16string_view name) override {
    return m_model->GetApplicationEntityOfBase(name);
  }
  std::int32_t FindPath(vex::IEntity* from, vex::IEntity* to, WString& path) override {
    return m_model->FindPath(from, to, path);
  }
  std::uint64_t GetChangeCounter() override { return m_counter; }
  std::uint64_t GetLongestValue() override { return m_longest; }
  std::int32_t SupportsCustomLogic() override { return m_logic; }
  std::int32_t SupportsMultipleValues() override { return m_several; }
  void GetBaseModelVersion(WString& version) override { m_model->GetBaseModelVersion(version); }
  vex::IAttribute* GetEnumerationNames() override { return m_model->GetEnumerationNames(); }

 private:
  ~ChangingModel() override = default;

  Ref<vex::IModel> m_model;
  std::uint64_t m_counter = 1;
};

/// Has nothing but its model.
class ChangingStore final : public cor::Counted<vex::IStore> {
 public:
  explicit ChangingStore(const Ref<vex::IStore>& store) : m_model(MakeRef<ChangingModel>(store)) {}
  ChangingModel& Model() { return *m_model; }

  void GetName(WString& name) override { name = u"changing"; }
  void GetPluginName(WString&) override {}
  vex::IInstance* CreateInstance(vex::IEntity*) override { return nullptr; }
  std::int32_t GetState(std::int32_t) override { return 0; }
  vex::IInstance* GetInstance(std::u16string_view) override { return nullptr; }
  vex::IModel* GetModel() override { return Ref<vex::IModel>::Share(m_model.Get()).Detach(); }
  vex::IEnvironment* GetEnvironment() override { return nullptr; }
  void Save(std::u16string_view) override {}
  vex::IStoreContext* GetContext(std::int32_t) override { return nullptr; }
  void GetParameters(WString&) override {}
  void GetDisplayLocation(WString&) override {}
  vex::IInstList* GetInstances(std::u16string_view) override { return nullptr; }
  void Refresh() override {}
  void DeleteInstance(vex::IInstance*) override {}
  void Discard() override {}
  vex::IAttribute* GetWarnings() override { return nullptr; }
  std::int32_t IsReadOnly() override { return 1; }

 private:
  ~ChangingStore() override = default;

  Ref<ChangingModel> m_model;
};

}  // namespace hv::test
