#include "core/objects/StoreObject.h"

#include <map>

#include "core/objects/AttributeObjects.h"
#include "core/objects/BulkTable.h"
#include "core/objects/Guard.h"
#include "core/objects/InstanceKey.h"
#include "core/objects/InstanceLists.h"
#include "core/objects/InstanceObject.h"
#include "core/objects/InstancePath.h"
#include "core/objects/RecordBatch.h"
#include "core/objects/StoreContextObject.h"
#include "core/query/QueryBinder.h"
#include "core/query/QueryReader.h"
#include "core/query/QueryWriter.h"

namespace hv::vex::engine {

StoreObject::StoreObject(std::unique_ptr<RecordStore> records, Names names,
                         Ref<IEnvironment> environment)
    : m_records(std::move(records)),
      m_names(std::move(names)),
      m_environment(std::move(environment)),
      m_model(MakeRef<ModelObject>(m_records->GetModel(), m_records->GetCapabilities(),
                                   [store = m_records.get()] { return store->ModelStamp(); })) {}

StoreObject::~StoreObject() { m_model->DropStore(); }

// --- what the store is ------------------------------------------------------------------------

void StoreObject::GetName(WString& name) { name = std::u16string_view(m_names.name); }
void StoreObject::GetPluginName(WString& name) { name = std::u16string_view(m_names.pluginName); }
void StoreObject::GetParameters(WString& parameters) {
  parameters = std::u16string_view(m_names.parameters);
}
void StoreObject::GetDisplayLocation(WString& location) {
  location = std::u16string_view(m_names.location);
}
IModel* StoreObject::GetModel() { return Ref<IModel>::Share(m_model.Get()).Detach(); }
IEnvironment* StoreObject::GetEnvironment() { return Ref<IEnvironment>(m_environment).Detach(); }

std::int32_t StoreObject::GetState(std::int32_t selector) {
  return selector == 3 && m_records->IsModified() ? 1 : 0;
}
std::int32_t StoreObject::IsReadOnly() { return m_records->GetCapabilities().writable ? 0 : 1; }

IStoreContext* StoreObject::GetContext(std::int32_t) {
  return Seam([&]() -> IStoreContext* {
    auto values = m_records->ContextValues();
    if (values.empty()) return nullptr;
    return new StoreContextObject(std::move(values));
  });
}

IAttribute* StoreObject::GetWarnings() {
  return Seam([&] { return ValueAttribute::MakeTextList(u"Warnings", m_records->Warnings()); });
}

// --- instances --------------------------------------------------------------------------------

RecordRef StoreObject::ByRecord::KeyOf(const InstanceObject& instance) { return instance.Record(); }

Ref<InstanceObject> StoreObject::LivingInstanceOf(RecordRef record, RecordKnowledge seen) {
  auto instance = Ref<InstanceObject>::Share(m_instances.Find(record));
  if (!instance) {
    m_instances.Reserve(m_instances.Size() + 1);
    instance = MakeRef<InstanceObject>(Ref<StoreObject>::Share(this), record);
    m_instances.Insert(*instance);
  }
  if (seen == m_now) instance->Confirm(m_now.looks);
  return instance;
}

IInstance* StoreObject::InstanceOf(RecordRef record, RecordKnowledge seen) {
  return LivingInstanceOf(record, seen).Detach();
}

IInstance* StoreObject::InstanceAt(RecordBatch& batch, std::uint64_t position,
                                   RecordKnowledge seen) {
  Ref<InstanceObject> instance = LivingInstanceOf(batch.Records().At(position), seen);
  instance->PlaceIn(batch, position);
  return instance.Detach();
}

void StoreObject::DeleteRecord(RecordRef record) {
  m_records->Delete(record);
  ++m_now.deletions;
  if (InstanceObject* const living = m_instances.Find(record)) living->Confirm(0);
}

void StoreObject::ForgetInstance(RecordRef record) { m_instances.Erase(record); }

std::optional<RecordRef> StoreObject::OwnRecord(IInstance* instance) {
  if (!instance) return std::nullopt;
  const Ref<IStore> store = Ref<IStore>::Adopt(instance->GetStore());
  // Only instances of this very store are known to be objects of this class.
  if (store.Get() != static_cast<IStore*>(this)) return std::nullopt;
  return static_cast<InstanceObject*>(instance)->Record();
}

IInstance* StoreObject::CreateInstance(IEntity* entity) {
  return Seam([&] {
    const EntityObject* own = m_model->OwnEntity(entity);
    if (!own || own->Get().isBase) {
      throw Exception(errc::kInvalidArgument,
                      u"instances are made of application entities of the store's own model");
    }
    const EntityId id = own->Get().id;
    return InstanceOf({id, m_records->Create(id)}, m_now);
  });
}

IInstance* StoreObject::GetInstance(std::u16string_view key) {
  return Seam([&]() -> IInstance* {
    const auto record = ParseKey(GetCoreModel(), key);
    if (!record || !m_records->Exists(*record)) return nullptr;
    return InstanceOf(*record, m_now);
  });
}

void StoreObject::DeleteInstance(IInstance* instance) {
  Seam([&] {
    const auto record = OwnRecord(instance);
    if (!record) throw Exception(errc::kInvalidArgument, u"the instance is not of this store");
    if (!m_records->Exists(*record)) {
      throw Exception(errc::kInstanceGone, u"the instance was deleted");
    }
    DeleteRecord(*record);
  });
}

IInstList* StoreObject::MakeList(RecordRuns records) {
  return new RecordList(Ref<StoreObject>::Share(this), std::move(records));
}

IInstList* StoreObject::GetInstances(std::u16string_view path) {
  return Seam([&] { return MakeList(FollowPath(*m_records, std::nullopt, path)); });
}

// --- session ----------------------------------------------------------------------------------

void StoreObject::Save(std::u16string_view mode) {
  Seam([&] {
    m_records->Save(mode);
    m_model->Follow(m_records->GetModel());
  });
}
void StoreObject::Refresh() {
  LookAnew();
  Seam([&] {
    m_records->Refresh();
    m_model->Follow(m_records->GetModel());
  });
}
void StoreObject::Discard() {
  LookAnew();
  Seam([&] {
    m_records->Discard();
    m_model->Follow(m_records->GetModel());
  });
}

// --- queries ----------------------------------------------------------------------------------

template <class Find>
void StoreObject::RunQueries(std::u16string_view queryText, Find find) {
  const ParsedQuery parsed = engine::ReadQuery(queryText);
  auto left = static_cast<std::uint64_t>(parsed.limit);
  for (BoundQuery& query : BindQuery(parsed, GetCoreModel())) {
    if (parsed.limit > 0) {
      if (left == 0) break;
      query.limit = static_cast<std::int64_t>(left);
    }
    left -= std::min<std::uint64_t>(left, find(query));
  }
}

IInstList* StoreObject::Execute(std::u16string_view queryText) {
  return Seam([&] {
    RecordRuns hits;
    RunQueries(queryText, [&](const BoundQuery& query) {
      std::vector<RecordId> ids = m_records->Select(query);
      const std::size_t count = ids.size();
      hits.Append(query.entity, std::move(ids));
      return count;
    });
    return MakeList(std::move(hits));
  });
}

void StoreObject::BuildQueryText(WString& queryText, std::u16string_view returnType,
                                 std::int32_t odsConform, std::u16string_view expression) {
  Seam([&] {
    queryText =
        std::u16string_view(engine::BuildQueryText(returnType, odsConform != 0, expression));
  });
}

namespace {

/// An attribute of an application entity, and the restriction of a question about its values.
struct ValueQuestion {
  EntityId entity;
  std::int32_t attribute;
  EnumPtr enumeration = nullptr;
  std::optional<BoundQuery> restriction;
};

ValueQuestion BindValueQuestion(const Model& model, std::u16string_view entityName,
                                std::u16string_view attributeName,
                                std::u16string_view restriction) {
  const Entity* entity = model.FindAnyCase(entityName);
  if (entity && entity->isBase && !entity->subTypes.empty()) {
    entity = &model.At(entity->subTypes.front());
  }
  if (!entity || entity->isBase) {
    throw Exception(errc::kUnknownName,
                    WString(u"there is no entity \"" + std::u16string(entityName) + u"\""));
  }
  const std::int32_t attribute = entity->FindAttribute(attributeName);
  if (attribute == kNone) {
    throw Exception(errc::kUnknownName,
                    WString(u"the entity \"" + entity->name + u"\" has no attribute \"" +
                            std::u16string(attributeName) + u"\""));
  }
  ValueQuestion question{entity->id, attribute, nullptr, std::nullopt};
  const std::int32_t enumeration =
      entity->attributes[static_cast<std::size_t>(attribute)].enumeration;
  if (enumeration != kNone) {
    question.enumeration = &model.Enumerations()[static_cast<std::size_t>(enumeration)];
  }
  if (!restriction.empty()) {
    for (BoundQuery& query : BindQuery(engine::ReadQuery(restriction), model)) {
      if (query.entity == entity->id) question.restriction = std::move(query);
    }
    if (!question.restriction) {
      throw Exception(errc::kBadQuery, u"the restriction gives records of another entity");
    }
  }
  return question;
}

/// A block of values as one list.
Value ValueOfBlock(ColumnBlock block) {
  Value value = Value::Unset(block.type, true);
  if (block.Rows() == 0) return value;
  switch (StorageKindOf(block.type)) {
    case StorageKind::Integer:
      value.data = std::move(block.integers);
      break;
    case StorageKind::Real:
      value.data = std::move(block.reals);
      break;
    case StorageKind::Text: {
      Value::Texts texts;
      for (std::size_t row = 0; row < block.Rows(); ++row) texts.emplace_back(block.TextAt(row));
      value.data = std::move(texts);
      break;
    }
    case StorageKind::Bytes:
      break;
  }
  return value;
}

}  // namespace

IAttribute* StoreObject::GetDistinctValues(std::u16string_view entity,
                                           std::u16string_view attribute,
                                           std::u16string_view restriction, std::uint64_t limit) {
  return Seam([&]() -> IAttribute* {
    const ValueQuestion question =
        BindValueQuestion(GetCoreModel(), entity, attribute, restriction);
    ColumnBlock block =
        m_records->Distinct(question.entity, question.attribute,
                            question.restriction ? &*question.restriction : nullptr, limit);
    return new ValueAttribute(std::u16string(attribute), ValueOfBlock(std::move(block)),
                              question.enumeration, m_model->Shared());
  });
}

IAttribute* StoreObject::GetBounds(std::u16string_view entity, std::u16string_view attribute,
                                   std::u16string_view restriction, std::uint64_t* count) {
  return Seam([&]() -> IAttribute* {
    const ValueQuestion question =
        BindValueQuestion(GetCoreModel(), entity, attribute, restriction);
    const Bounds bounds =
        m_records->BoundsOf(question.entity, question.attribute,
                            question.restriction ? &*question.restriction : nullptr);
    if (count) *count = bounds.count;
    Value value = Value::Unset(bounds.lowest.type, true);
    if (bounds.count > 0) {
      value.data = bounds.lowest.data;
      std::visit(
          [&](auto& all) {
            using All = std::remove_reference_t<decltype(all)>;
            if constexpr (!std::is_same_v<All, std::monostate>) {
              const auto& highest = std::get<All>(bounds.highest.data);
              all.insert(all.end(), highest.begin(), highest.end());
            }
          },
          value.data);
    }
    return new ValueAttribute(std::u16string(attribute), std::move(value), question.enumeration,
                              m_model->Shared());
  });
}

// --- bulk reading -----------------------------------------------------------------------------

namespace {

std::vector<std::u16string> TextsOf(IContainer* container) {
  std::vector<std::u16string> texts;
  const Ref<IAttribute> list =
      container ? Ref<IAttribute>::Adopt(container->GetAttribute(u"")) : Ref<IAttribute>();
  if (!list) return texts;
  const std::uint64_t count = list->GetCount();
  WString text;
  for (std::uint64_t i = 0; i < count; ++i) {
    list->GetText(i, text);
    texts.emplace_back(text.view());
  }
  return texts;
}

/// Keeps the records that the query gives, in their own order.
RecordRuns Intersect(const RecordRuns& records, const RecordStore& store,
                     const std::vector<BoundQuery>& queries) {
  RecordRuns kept;
  for (const RecordRuns::Run& run : records.Runs()) {
    for (const BoundQuery& query : queries) {
      if (query.entity != run.entity) continue;
      std::vector<RecordId> hits = store.Select(query);
      std::sort(hits.begin(), hits.end());
      std::vector<RecordId> ids;
      for (const RecordId id : run.ids) {
        if (std::binary_search(hits.begin(), hits.end(), id)) ids.push_back(id);
      }
      kept.Append(run.entity, std::move(ids));
    }
  }
  return kept;
}

/// The records at a path that meet the query. What one step leads to is found by the store itself.
RecordRuns FindRelated(const RecordStore& store, std::optional<RecordRef> from,
                       std::u16string_view path, std::u16string_view filter) {
  const Model& model = *store.GetModel();
  std::vector<BoundQuery> queries = BindQuery(engine::ReadQuery(filter), model);
  const std::int32_t step = from ? OnlyStep(model.At(from->entity), path) : kNone;
  const EntityId target =
      step == kNone ? kNoEntity
                    : model.At(from->entity).relations[static_cast<std::size_t>(step)].target;
  // A reference to a base entity leads to records of several.
  if (step == kNone || model.At(target).isBase) {
    return Intersect(FollowPath(store, from, path), store, queries);
  }
  RecordRuns rows;
  for (BoundQuery& query : queries) {
    if (query.entity != target) continue;
    query.start = BoundStart{from->entity, step, from->id};
    query.order.clear();
    rows.Append(target, store.Select(query));
  }
  return rows;
}

}  // namespace

IValueTable* StoreObject::ReadRelated(IInstance* start, std::u16string_view reference,
                                      std::u16string_view filter, IContainer* attributes) {
  return Seam([&]() -> IValueTable* {
    std::optional<RecordRef> from;
    if (start) {
      from = OwnRecord(start);
      if (!from) throw Exception(errc::kInvalidArgument, u"the instance is not of this store");
      if (!m_records->Exists(*from)) {
        throw Exception(errc::kInstanceGone, u"the instance was deleted");
      }
    }
    RecordRuns rows = filter.empty() ? FollowPath(*m_records, from, reference)
                                     : FindRelated(*m_records, from, reference, filter);
    return new BulkTable(Ref<StoreObject>::Share(this), std::move(rows), TextsOf(attributes));
  });
}

RecordRuns StoreObject::RecordsOf(IInstList& instances) {
  // Hits of this store are ids already; a list put together by a caller tells its records by key.
  auto* const own = dynamic_cast<RecordList*>(&instances);
  if (own && &own->Store() == this) return own->Records();
  RecordRuns records;
  WString key;
  const std::uint64_t count = instances.GetCount();
  for (std::uint64_t i = 0; i < count; ++i) {
    instances.GetKey(i, key);
    const auto record = ParseKey(GetCoreModel(), key);
    if (!record) throw Exception(errc::kInvalidArgument, u"the instance is not of this store");
    records.Append(*record);
  }
  return records;
}

IValueTable* StoreObject::ReadInstances(IInstList* instances, IContainer* attributes) {
  return Seam([&]() -> IValueTable* {
    if (!instances) throw Exception(errc::kInvalidArgument, u"a list is needed");
    return new BulkTable(Ref<StoreObject>::Share(this), RecordsOf(*instances), TextsOf(attributes));
  });
}

IValueTable* StoreObject::ReadQuery(std::u16string_view queryText, IContainer* attributes) {
  return Seam([&]() -> IValueTable* {
    const std::vector<std::u16string> names = TextsOf(attributes);
    RecordRuns hits;
    std::map<EntityId, BulkTable::Blocks> blocks;
    RunQueries(queryText, [&](const BoundQuery& query) {
      SelectedColumns selected = m_records->SelectColumns(
          query, BulkTable::OwnAttributes(GetCoreModel(), query.entity, names));
      const std::size_t count = selected.ids.size();
      hits.Append(query.entity, std::move(selected.ids));
      blocks[query.entity] = std::move(selected.blocks);
      return count;
    });
    return new BulkTable(Ref<StoreObject>::Share(this), std::move(hits), names,
                         [&](EntityId entity) { return std::move(blocks[entity]); });
  });
}

}  // namespace hv::vex::engine
