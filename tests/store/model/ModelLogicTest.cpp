// store/model/ModelLogicTest.cpp - the model's logic over entities made by hand, and the messages
// of its wrappers for every code.
#include <array>
#include <string>

#include <gtest/gtest.h>

#include "core/store/RecordStore.h"
#include "store/model/DataStoreModelImpl.h"
#include "store/model/DataStoreModelInt.h"
#include "store/model/EntityCollImpl.h"
#include "store/model/EntityImplCache.h"
#include "store/model/EntityInt.h"
#include "store/model/IModelPropertyImpl.h"
#include "store/model/ModelPropertyInt.h"
#include "store/model/ModelReferenceInt.h"
#include "tests/elements/EngineFixture.h"
#include "tests/elements/Script.h"
#include "tests/store/model/FakeModel.h"

namespace hv::vex {
namespace {

using test::FakeEntity;
using test::FakeEntityList;

/// Ends with as many counted objects as it began with.
class EntityFill : public ::testing::Test {
 protected:
  ~EntityFill() override {
    m_collection.Reset();
    m_cache.Reset();
    m_list.Reset();
    EXPECT_EQ(m_objectsBefore, cor::LiveObjectCount());
  }
  std::string Names() { return test::NamesOf(MakeRef<CEntityCollInt>(m_collection).Get()); }

  std::int64_t m_objectsBefore = cor::LiveObjectCount();
  Ref<FakeEntityList> m_list = MakeRef<FakeEntityList>();
  Ref<CEntityImplCache> m_cache = MakeRef<CEntityImplCache>();
  Ref<CEntityCollImpl> m_collection = MakeRef<CEntityCollImpl>();
};

TEST_F(EntityFill, LeavesOutWhatOnlyTheBaseModelHas) {
  m_list->Add(u"aotest").m_isBaseOnly = true;
  m_list->Add(u"AoTest").m_isBaseOnly = true;  // the text decides, letter by letter
  m_list->Add(u"aoOwn");
  m_list->Add(u"Own");
  EXPECT_EQ(S_OK, m_collection->Fill(*m_list, *m_cache));
  EXPECT_EQ("AoTest aoOwn Own", Names());
}

TEST_F(EntityFill, TellsOfANameThatComesTwiceAndGoesOn) {
  m_list->Add(u"A");
  m_list->Add(u"B");
  m_list->Add(u"A");
  m_list->Add(u"a");  // another name
  EXPECT_EQ(E_ACCESSDENIED, m_collection->Fill(*m_list, *m_cache));
  EXPECT_EQ("A B a", Names());
}

struct FailureCase {
  const char* name;
  std::int32_t thrown;
  Result code;
};
class EntityFailure : public EntityFill, public ::testing::WithParamInterface<FailureCase> {};
TEST_P(EntityFailure, IsTheResultAndLeavesTheEntityOut) {
  m_list->Add(u"A");
  m_list->Add(u"Bad").m_failure = GetParam().thrown;
  m_list->Add(u"C");
  EXPECT_EQ(GetParam().code, m_collection->Fill(*m_list, *m_cache));
  EXPECT_EQ("A C", Names());
  Ref<IEntityImpl> entity;
  EXPECT_EQ(E_INVALIDARG, m_cache->Get(u"Bad", entity.Put()));
}
INSTANTIATE_TEST_SUITE_P(Codes, EntityFailure,
                         ::testing::Values(FailureCase{"OutOfMemory", -800, E_OUTOFMEMORY},
                                           FailureCase{"Timeout", -1008, E_PENDING},
                                           FailureCase{"AnyOther", -1999, E_FAIL}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(EntityFill, CacheGivesOneObjectPerName) {
  FakeEntity& upper = m_list->Add(u"AoTest");
  FakeEntity& lower = m_list->Add(u"aotest");
  Ref<IEntityImpl> first;
  Ref<IEntityImpl> again;
  Ref<IEntityImpl> other;
  EXPECT_EQ(S_OK, m_cache->GetOrCreate(&upper, first.Put()));
  EXPECT_EQ(S_OK, m_cache->Get(u"AOTEST", other.Put()));
  EXPECT_EQ(first, other);
  EXPECT_EQ(S_OK, m_cache->GetOrCreate(&lower, other.Put()));
  EXPECT_NE(first, other);
  EXPECT_EQ(S_OK, m_cache->GetOrCreate(&upper, again.Put()));
  EXPECT_EQ(first, again);
  EXPECT_EQ(S_OK, m_cache->Get(u"aotest", again.Put()));
  EXPECT_EQ(other, again);
}

TEST_F(EntityFill, CacheRefusesBadArguments) {
  Ref<IEntityImpl> entity;
  EXPECT_EQ(E_POINTER, m_cache->GetOrCreate(nullptr, entity.Put()));
  EXPECT_EQ(E_POINTER, m_cache->GetOrCreate(&m_list->Add(u"A"), nullptr));
  EXPECT_EQ(E_POINTER, m_cache->Get(u"A", nullptr));
  EXPECT_EQ(E_INVALIDARG, m_cache->Get(u"", entity.Put()));
  EXPECT_EQ(E_INVALIDARG, m_cache->Get(u"Nobody", entity.Put()));
}

class ReferenceFill : public EntityFill {
 protected:
  ~ReferenceFill() override { m_references.Reset(); }

  /// The references of an entity, as a host sees them.
  IDispatch* ReferencesOf(FakeEntity& entity) {
    entity.m_model = m_model.Get();
    EXPECT_EQ(S_OK, m_collection->Fill(*m_list, *m_cache));
    Ref<IEntityImpl> logic;
    EXPECT_EQ(S_OK, m_cache->Get(entity.m_name, logic.Put()));
    EXPECT_EQ(S_OK, MakeRef<CEntityInt>(logic)->get_ModelReferences(m_references.Put()));
    return m_references.Get();
  }

  Ref<IModelReferences> m_references;
  Ref<test::FakeModel> m_model = MakeRef<test::FakeModel>();
};

TEST_F(ReferenceFill, LeavesOutTheValuesOfALocalColumn) {
  FakeEntity& column = m_list->Add(u"Column");
  column.m_isLocalColumn = true;
  column.AddRelation(u"Content", u"Values", nullptr);
  column.AddRelation(u"Matrix", u"submatrix", nullptr);
  IDispatch* const references = ReferencesOf(column);
  EXPECT_EQ("Matrix", test::NamesOf(references));
  EXPECT_EQ("0", test::Eval(references, "Exists('values')").Shown());
  EXPECT_EQ("0", test::Eval(references, "Exists('Content')").Shown());
}

TEST_F(ReferenceFill, ShowsReferencesToValuesElsewhere) {
  FakeEntity& other = m_list->Add(u"Other");
  other.AddRelation(u"Content", u"values", nullptr);
  EXPECT_EQ("Content", test::NamesOf(ReferencesOf(other)));
}

TEST_F(ReferenceFill, DropsANameThatComesTwice) {
  FakeEntity& entity = m_list->Add(u"E");
  entity.AddRelation(u"R", u"first", nullptr);
  entity.AddRelation(u"r", u"second", nullptr);
  IDispatch* const references = ReferencesOf(entity);
  EXPECT_EQ("R", test::NamesOf(references));
  // Its base name leads to the one that stayed.
  EXPECT_EQ("R", test::Eval(references, "Item('second').Name").Shown());
}

TEST_F(ReferenceFill, GivesOccurrencesAsTheEngineSaysThem) {
  FakeEntity& entity = m_list->Add(u"E");
  entity.AddRelation(u"R", u"", nullptr);
  IDispatch* const references = ReferencesOf(entity);
  EXPECT_EQ("3", test::Eval(references, "Item(0).MinOccur").Shown());
  EXPECT_EQ("-7", test::Eval(references, "Item(0).MaxOccur").Shown());
}

TEST_F(ReferenceFill, AReferenceMayLeadNowhere) {
  FakeEntity& entity = m_list->Add(u"E");
  const auto stranger = MakeRef<FakeEntity>();
  stranger->m_name = u"Stranger";
  entity.AddRelation(u"NoTarget", u"", nullptr);
  entity.AddRelation(u"Unknown", u"", stranger.Get());
  IDispatch* const references = ReferencesOf(entity);
  for (const char* name : {"NoTarget", "Unknown"}) {
    SCOPED_TRACE(name);
    const std::string item = "Item('" + std::string(name) + "')";
    EXPECT_EQ("250 Unknown error.", test::Eval(references, item + ".EntityType").Shown());
    EXPECT_EQ("245 Inverse not implemented.", test::Eval(references, item + ".Inverse").Shown());
  }
  Ref<IModelReference> reference;
  ASSERT_EQ(S_OK, m_references->Item(Variant::Text(u"Unknown"), reference.Put()));
  Ref<IModelEntity> target;
  EXPECT_EQ(E_FAIL, reference->get_EntityType(target.Put()));
  Ref<IModelReference> inverse;
  EXPECT_EQ(E_NOTIMPL, reference->get_Inverse(inverse.Put()));
  EXPECT_EQ(nullptr, inverse.Get());
}

/// A plug-in that only remembers how it was asked to write.
class ExportFormat : public test::FleetTest {
 protected:
  static std::u16string& Written() {
    static std::u16string parameters;
    return parameters;
  }
  static void Remember(const engine::RecordStore&, const engine::ConnectParameters& parameters) {
    Written() = parameters.TagText();
  }
};

TEST_F(ExportFormat, IsVexForItsExtensionAlone) {
  engine::PluginInfo vex;
  vex.name = u"VEX";
  vex.write = &Remember;
  const std::array plugins{engine::kAtfxPlugin, vex};
  m_store.Reset();
  m_environment = MakeRef<engine::EnvironmentObject>(plugins);
  m_store = Open(u"<filename>");
  const auto model = MakeRef<CDataStoreModelImpl>();
  ASSERT_EQ(S_OK, model->SetStore(m_store.Get()));
  for (const std::u16string_view path : {u"/no.where/x.vsf", u"/no.where/x.VSF"}) {
    Written().clear();
    EXPECT_EQ(S_OK, model->Export(path));
    EXPECT_EQ(u"<filename>" + std::u16string(path) + u"</filename>", Written());
  }
  Written().clear();
  EXPECT_EQ(E_FAIL, model->Export(u"/no.where/x"));  // ATFX, and no such folder
  EXPECT_EQ(E_FAIL, model->Export(u"/no.where/vsf"));
  EXPECT_EQ(u"", Written());
}

TEST(DataStoreModel, NeedsAStore) {
  const auto model = MakeRef<CDataStoreModelImpl>();
  Ref<IEntityCollImpl> entities;
  Ref<IEntityImplCache> cache;
  EXPECT_EQ(E_UNEXPECTED, model->GetEntities(entities.Put()));
  EXPECT_EQ(E_UNEXPECTED, model->GetCache(cache.Put()));
  EXPECT_EQ(E_UNEXPECTED, model->Export(u"x"));
  EXPECT_EQ(E_POINTER, model->SetStore(nullptr));
  EXPECT_EQ(E_POINTER, model->GetEntities(nullptr));
  EXPECT_EQ(E_POINTER, model->GetCache(nullptr));
}

/// Logic objects that answer every call with one code.
Result g_answer = S_OK;

class RefusingModel final : public cor::Counted<IDataStoreModelImpl> {
 public:
  Result GetEntities(IEntityCollImpl**) override { return g_answer; }
  Result Export(std::u16string_view) override { return g_answer; }
  Result SetStore(IStore*) override { return g_answer; }
  Result GetCache(IEntityImplCache**) override { return g_answer; }
};
class RefusingEntity final : public cor::Counted<IEntityImpl> {
 public:
  Result GetName(WString*) override { return g_answer; }
  Result GetModelProperties(IModelPropertyCollImpl**) override { return g_answer; }
  Result GetModelReferences(IModelReferenceCollImpl**) override { return g_answer; }
  Result GetSubTypes(IEntityCollImpl**) override { return g_answer; }
  Result GetSuperType(IEntityImpl**) override { return g_answer; }
  Result IsKindOf(std::u16string_view, std::int32_t*) override { return g_answer; }
  Result IsBaseType(std::int32_t*) override { return g_answer; }
  Result Reserved() override { return g_answer; }
};
class RefusingProperty final : public cor::Counted<IModelPropertyImpl> {
 public:
  Result GetName(WString*) override { return g_answer; }
  Result GetDataType(enumDataType*) override { return g_answer; }
  Result GetBaseName(WString*) override { return g_answer; }
  Result GetMinOccur(std::int32_t*) override { return g_answer; }
  Result GetMaxOccur(std::int32_t*) override { return g_answer; }
};
class RefusingReference final : public cor::Counted<IModelReferenceImpl> {
 public:
  Result GetName(WString*) override { return g_answer; }
  Result GetEntityType(IEntityImpl**) override { return g_answer; }
  Result GetBaseName(WString*) override { return g_answer; }
  Result GetMinOccur(std::int32_t*) override { return g_answer; }
  Result GetMaxOccur(std::int32_t*) override { return g_answer; }
  Result GetInverse(IModelReferenceImpl**) override { return g_answer; }
};
class RefusingReferences final : public cor::Counted<IModelReferenceCollImpl> {
 public:
  Result GetItem(std::int32_t, IModelReferenceImpl**) override { return g_answer; }
  Result GetCount(std::int32_t*) override { return g_answer; }
  Result GetItemByName(std::u16string_view, IModelReferenceImpl**) override { return g_answer; }
  Result Exists(std::u16string_view, bool*) override { return g_answer; }
  Result GetIterator(easyImpl::tIIteratorImpl<IModelReferenceImpl>**) override { return g_answer; }
};

struct MessageCase {
  const char* object;
  const char* call;
  Result code;
  const char* shown;
};

TEST(ModelMessages, StandAsInTheTable) {
  const auto model = MakeRef<CDataStoreModelInt>(MakeRef<RefusingModel>());
  const auto entity = MakeRef<CEntityInt>(MakeRef<RefusingEntity>());
  const auto property = MakeRef<CModelPropertyInt>(MakeRef<RefusingProperty>());
  const auto reference = MakeRef<CModelReferenceInt>(MakeRef<RefusingReference>());
  const auto references = MakeRef<CModelReferenceCollInt>(MakeRef<RefusingReferences>());
  const std::map<std::string, IDispatch*> objects{{"model", model.Get()},
                                                  {"entity", entity.Get()},
                                                  {"property", property.Get()},
                                                  {"reference", reference.Get()},
                                                  {"references", references.Get()}};
  constexpr const char* kMemory = "207 The application is out of memory.";
  constexpr const char* kGone = "323 The object is no longer valid.";
  constexpr const char* kUnknown = "250 Unknown error.";
  const MessageCase rows[] = {
      {"model", "Entities", E_NOTIMPL, "245 GetEntities not implemented."},
      {"model", "Entities", E_PENDING, "241 The operation GetEntities was timed out."},
      {"model", "Entities", VEX_E_OBJECT_GONE, kGone},
      {"model", "Entities", E_OUTOFMEMORY, kMemory},
      {"model", "Entities", E_UNEXPECTED, kUnknown},
      {"model", "Export('/a/b.atfx')", E_FAIL,
       "358 Cannot write the file /a/b.atfx. Maybe the file is write protected or the path does "
       "not exist."},
      {"model", "Export('x')", E_NOTIMPL, "245 Export not implemented."},
      {"model", "Export('x')", E_PENDING, "241 The operation Export was timed out."},
      {"model", "Export('x')", E_ACCESSDENIED, kUnknown},
      {"entity", "Name", E_FAIL, kUnknown},
      {"entity", "ModelProperties", E_PENDING, "241 The operation ModelProperties was timed out."},
      {"entity", "ModelReferences", VEX_E_OBJECT_GONE, kGone},
      {"entity", "SubTypes", E_ACCESSDENIED, kUnknown},
      {"entity", "SuperType", E_OUTOFMEMORY, kMemory},
      {"entity", "IsBaseType", E_NOTIMPL, "245 IsBaseType not implemented."},
      {"entity", "IsKindOf('x')", E_PENDING, "241 The operation IsKindOf was timed out."},
      {"property", "BaseName", VEX_E_NOT_BASE_PROPERTY, "343 This property is no base property."},
      {"property", "BaseName", E_NOTIMPL, "245 GetBaseName not implemented."},
      {"property", "BaseName", E_FAIL, kUnknown},
      {"property", "DataType", E_FAIL, kUnknown},
      {"reference", "Inverse", E_NOTIMPL, "245 Inverse not implemented."},
      {"reference", "EntityType", E_FAIL, kUnknown},
      {"reference", "BaseName", E_PENDING, "241 The operation BaseName was timed out."},
      {"references", "Item('x')", E_INVALIDARG,
       "215 The index x does not correspond to a member of the collection."},
      {"references", "Item('x')", E_NOTIMPL,
       "254 Properties and methods which change the contents of an object can only be called on "
       "data which is loaded."},
      {"references", "_NewEnum", E_NOTIMPL, "245 _NewEnum not implemented."},
      {"references", "Exists('x')", E_NOTIMPL,
       "254 Properties and methods which change the contents of an object can only be called on "
       "data which is loaded."},
      {"references", "Exists('x')", E_PENDING, "241 The operation Exists was timed out."},
      {"references", "Exists('x')", E_FAIL, "0"},  // no row: no error
  };
  for (const MessageCase& row : rows) {
    SCOPED_TRACE(std::string(row.object) + "." + row.call);
    g_answer = row.code;
    EXPECT_EQ(row.shown, test::Eval(objects.at(row.object), row.call).Shown());
  }
  g_answer = S_OK;
}

}  // namespace
}  // namespace hv::vex
