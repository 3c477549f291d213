// tests/store/session/OddStore.h - a store that fails, refuses and answers null.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "tests/support/NoModel.h"

namespace hv::test {

using namespace vex;  // NOLINT: the seam's vocabulary

/// A model that says of itself that its browse path is fixed, and nothing else.
class QmdModel final : public NoModel {
  std::int32_t HasModelPart(std::u16string_view identifier) override {
    return identifier == u"/DataModels/VEX/QMD/1_0" ? 1 : 0;
  }
};

/// A store of the engine with faults.
class OddStore final : public cor::Counted<IStore> {
 public:
  explicit OddStore(Ref<IStore> store) : m_store(std::move(store)) {}

  std::int32_t thrown = 0;  ///< thrown by every operation, if it isn't 0
  bool hasEnvironment = true;
  bool hasQmdModel = false;
  std::u16string savedMode;
  std::int32_t contextMode = 0;
  int refreshed = 0;

  void GetName(WString& name) override { Real().GetName(name); }
  void GetPluginName(WString& name) override { Real().GetPluginName(name); }
  IInstance* CreateInstance(IEntity* entity) override { return Real().CreateInstance(entity); }
  /// Any number that isn't 0 says that there are changes.
  std::int32_t GetState(std::int32_t selector) override { return Real().GetState(selector) - 7; }
  IInstance* GetInstance(std::u16string_view key) override { return Real().GetInstance(key); }
  IModel* GetModel() override {
    return hasQmdModel ? MakeRef<QmdModel>().Detach() : Real().GetModel();
  }
  IEnvironment* GetEnvironment() override {
    return hasEnvironment ? Real().GetEnvironment() : nullptr;
  }
  void Save(std::u16string_view mode) override {
    (void)Real();
    savedMode = mode;
  }
  IStoreContext* GetContext(std::int32_t mode) override {
    (void)Real();
    contextMode = mode;
    return nullptr;
  }
  void GetParameters(WString& parameters) override { Real().GetParameters(parameters); }
  void GetDisplayLocation(WString& location) override { Real().GetDisplayLocation(location); }
  IInstList* GetInstances(std::u16string_view path) override { return Real().GetInstances(path); }
  void Refresh() override {
    ++refreshed;
    Real().Refresh();
  }
  void DeleteInstance(IInstance* instance) override { Real().DeleteInstance(instance); }
  void Discard() override { Real().Discard(); }
  IAttribute* GetWarnings() override { return Real().GetWarnings(); }
  std::int32_t IsReadOnly() override { return Real().IsReadOnly(); }

 private:
  IStore& Real() {
    if (thrown != 0) throw Exception(thrown);
    return *m_store;
  }

  Ref<IStore> m_store;
};

}  // namespace hv::test
