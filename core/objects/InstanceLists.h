// core/objects/InstanceLists.h - lists of instances: of one store by ids, or free ones.
#pragma once

#include <vector>

#include "cor/Counted.h"
#include "core/objects/RecordBatch.h"
#include "core/objects/StoreObject.h"
#include "store/core/IInstList.h"
#include "store/core/IInstance.h"

namespace hv::vex::engine {

/// Records of one store. Holds ids; instances are made when they are asked for.
class RecordList final : public cor::Counted<IInstList> {
 public:
  RecordList(Ref<StoreObject> store, RecordRuns records)
      : m_store(std::move(store)), m_batch(MakeRef<RecordBatch>(std::move(records))) {}
  /// Over records that somebody else lists as well.
  RecordList(Ref<StoreObject> store, Ref<RecordBatch> batch)
      : m_store(std::move(store)), m_batch(std::move(batch)) {}

  std::uint64_t GetCount() override { return Records().Size(); }
  IInstance* Next() override;
  IInstance* GetInstance(std::uint64_t index) override;
  void Truncate(std::uint64_t count) override { m_batch->Records().Truncate(count); }
  void Reset() override { m_next = 0; }
  /// An instance of another store throws kInvalidArgument.
  void Append(IInstance* instance) override;
  void Clear() override;
  void GetKey(std::uint64_t index, WString& key) override;
  void GetAddressText(WString& text) override;

  [[nodiscard]] const RecordRuns& Records() const { return m_batch->Records(); }
  [[nodiscard]] StoreObject& Store() { return *m_store; }

 private:
  ~RecordList() override = default;
  Ref<StoreObject> m_store;
  Ref<RecordBatch> m_batch;
  std::uint64_t m_next = 0;
};

/// Instances of any stores, as a caller puts them together.
class FreeInstList final : public cor::Counted<IInstList> {
 public:
  FreeInstList() = default;

  std::uint64_t GetCount() override { return m_instances.size(); }
  IInstance* Next() override;
  IInstance* GetInstance(std::uint64_t index) override;
  void Truncate(std::uint64_t count) override;
  void Reset() override { m_next = 0; }
  void Append(IInstance* instance) override;
  void Clear() override;
  void GetKey(std::uint64_t index, WString& key) override;
  void GetAddressText(WString& text) override;

 private:
  ~FreeInstList() override = default;
  std::vector<Ref<IInstance>> m_instances;
  std::uint64_t m_next = 0;
};

}  // namespace hv::vex::engine
