// core/objects/StoreObject.h - a store at the seam, over any record store.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "cor/Counted.h"
#include "cor/ObjectTable.h"
#include "core/objects/ModelObjects.h"
#include "core/objects/RecordRuns.h"
#include "core/store/RecordStore.h"
#include "store/core/IBulkReader.h"
#include "store/core/IEnvironment.h"
#include "store/core/IStore.h"
#include "store/core/IStoreQuery.h"

namespace hv::vex::engine {

class InstanceObject;
class RecordBatch;

/// What is known of which records exist: a snapshot that a deletion or a new look at the store
/// makes out of date.
struct RecordKnowledge {
  std::uint32_t looks = 0;
  std::uint32_t deletions = 0;
  bool operator==(const RecordKnowledge&) const = default;
};

/// Owns its record store and model object; instances and lists hold the store. Knows its living
/// instances by plain pointers, which they take out when they die.
class StoreObject final : public cor::Counted<IStore, IStoreQuery, IBulkReader> {
 public:
  struct Names {
    std::u16string name;
    std::u16string pluginName;
    std::u16string parameters;
    std::u16string location;
  };
  StoreObject(std::unique_ptr<RecordStore> records, Names names, Ref<IEnvironment> environment);

  // IStore
  void GetName(WString& name) override;
  void GetPluginName(WString& name) override;
  IInstance* CreateInstance(IEntity* entity) override;
  std::int32_t GetState(std::int32_t selector) override;
  IInstance* GetInstance(std::u16string_view key) override;
  IModel* GetModel() override;
  IEnvironment* GetEnvironment() override;
  void Save(std::u16string_view mode) override;
  IStoreContext* GetContext(std::int32_t mode) override;
  void GetParameters(WString& parameters) override;
  void GetDisplayLocation(WString& location) override;
  IInstList* GetInstances(std::u16string_view path) override;
  void Refresh() override;
  void DeleteInstance(IInstance* instance) override;
  void Discard() override;
  IAttribute* GetWarnings() override;
  std::int32_t IsReadOnly() override;

  // IStoreQuery
  IInstList* Execute(std::u16string_view queryText) override;
  void BuildQueryText(WString& queryText, std::u16string_view returnType, std::int32_t odsConform,
                      std::u16string_view expression) override;
  IAttribute* GetDistinctValues(std::u16string_view entity, std::u16string_view attribute,
                                std::u16string_view restriction, std::uint64_t limit) override;
  IAttribute* GetBounds(std::u16string_view entity, std::u16string_view attribute,
                        std::u16string_view restriction, std::uint64_t* count) override;

  // IBulkReader
  IValueTable* ReadRelated(IInstance* start, std::u16string_view reference,
                           std::u16string_view filter, IContainer* attributes) override;
  IValueTable* ReadInstances(IInstList* instances, IContainer* attributes) override;
  IValueTable* ReadQuery(std::u16string_view queryText, IContainer* attributes) override;

  [[nodiscard]] RecordStore& Records() { return *m_records; }
  [[nodiscard]] const RecordStore& Records() const { return *m_records; }
  [[nodiscard]] const Model& GetCoreModel() const { return m_model->Get(); }
  [[nodiscard]] ModelObject& GetModelObject() { return *m_model; }
  /// Makes room for that many living instances more.
  void Expect(std::size_t count) { m_instances.Reserve(m_instances.Size() + count); }
  [[nodiscard]] RecordKnowledge Now() const { return m_now; }
  /// The one living object of a record, made if there is none; with a reference for the caller.
  /// \param seen  when the record was read from the store; default: not known to exist
  IInstance* InstanceOf(RecordRef record, RecordKnowledge seen = {});
  /// The same for a record of a batch, which is read along with its neighbours from then on.
  IInstance* InstanceAt(RecordBatch& batch, std::uint64_t position, RecordKnowledge seen = {});
  /// The record behind an instance of this store; nothing for one of another store.
  std::optional<RecordRef> OwnRecord(IInstance* instance);
  void ForgetInstance(RecordRef record);
  /// Deletes a record. Its object, if one lives, asks again whether there is such a record.
  void DeleteRecord(RecordRef record);
  /// Room for a text that is handed out until the next call.
  [[nodiscard]] std::u16string& Scratch() { return m_scratch; }
  /// A list over records of this store.
  IInstList* MakeList(RecordRuns records);

 private:
  ~StoreObject() override;
  /// What others have changed, or what was thrown away, may show from now on.
  void LookAnew() { ++m_now.looks; }
  Ref<InstanceObject> LivingInstanceOf(RecordRef record, RecordKnowledge seen);
  /// Hands the queries of a text, which has one for each entity, to `find`, which gives the number
  /// of its hits, until the text's limit is reached.
  template <class Find>
  void RunQueries(std::u16string_view queryText, Find find);
  /// The records of a list of this store's instances; throws kInvalidArgument for others.
  RecordRuns RecordsOf(IInstList& instances);
  struct ByRecord {
    using Key = RecordRef;
    static RecordRef KeyOf(const InstanceObject& instance);
    static std::uint64_t HashOf(const RecordRef& record) {
      return static_cast<std::uint64_t>(record.id) + (std::uint64_t{record.entity} << 40);
    }
  };
  std::unique_ptr<RecordStore> m_records;
  Names m_names;
  Ref<IEnvironment> m_environment;
  Ref<ModelObject> m_model;
  RecordKnowledge m_now{1, 0};
  std::u16string m_scratch;
  cor::ObjectTable<InstanceObject, ByRecord> m_instances;
};

}  // namespace hv::vex::engine
