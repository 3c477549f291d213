#include "core/objects/InstanceLists.h"

#include "core/objects/Guard.h"
#include "core/objects/InstanceKey.h"

namespace hv::vex::engine {

IInstance* RecordList::Next() {
  IInstance* instance = GetInstance(m_next);
  if (instance) ++m_next;
  return instance;
}

IInstance* RecordList::GetInstance(std::uint64_t index) {
  if (index >= Records().Size()) return nullptr;
  return Seam([&] { return m_store->InstanceAt(*m_batch, index); });
}

void RecordList::Append(IInstance* instance) {
  Seam([&] {
    const auto record = m_store->OwnRecord(instance);
    if (!record) {
      throw Exception(errc::kInvalidArgument, u"the instance is not of the list's store");
    }
    m_batch->Records().Append(*record);
  });
}

void RecordList::Clear() {
  // Instances that came out of the list keep the batch that they know.
  m_batch = MakeRef<RecordBatch>(RecordRuns());
  m_next = 0;
}

void RecordList::GetKey(std::uint64_t index, WString& key) {
  key.clear();
  if (index >= Records().Size()) return;
  Seam([&] {
    std::u16string text;
    AppendKey(m_store->GetCoreModel(), Records().At(index), text);
    key = std::u16string_view(text);
  });
}

void RecordList::GetAddressText(WString& text) {
  Seam([&] {
    std::u16string all;
    for (const RecordRuns::Run& run : Records().Runs()) {
      for (const RecordId id : run.ids) {
        AppendKey(m_store->GetCoreModel(), {run.entity, id}, all);
        all += u'\n';
      }
    }
    text = std::u16string_view(all);
  });
}

IInstance* FreeInstList::Next() {
  IInstance* instance = GetInstance(m_next);
  if (instance) ++m_next;
  return instance;
}

IInstance* FreeInstList::GetInstance(std::uint64_t index) {
  if (index >= m_instances.size()) return nullptr;
  return Ref<IInstance>(m_instances[index]).Detach();
}

void FreeInstList::Truncate(std::uint64_t count) {
  if (count < m_instances.size()) m_instances.resize(count);
}

void FreeInstList::Append(IInstance* instance) {
  if (!instance) throw Exception(errc::kInvalidArgument, u"a list takes no null instance");
  Seam([&] { m_instances.push_back(Ref<IInstance>::Share(instance)); });
}

void FreeInstList::Clear() {
  m_instances.clear();
  m_next = 0;
}

void FreeInstList::GetKey(std::uint64_t index, WString& key) {
  key.clear();
  if (index < m_instances.size()) m_instances[index]->GetKey(key);
}

void FreeInstList::GetAddressText(WString& text) {
  Seam([&] {
    text.clear();
    WString key;
    for (const Ref<IInstance>& instance : m_instances) {
      instance->GetKey(key);
      text += key;
      text += u'\n';
    }
  });
}

}  // namespace hv::vex::engine
