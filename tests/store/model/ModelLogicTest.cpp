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
#include "tests/store/model/FakeModel.h"
#include "tests/support/Script.h"

namespace hv::vex {
namespace {

using test::FakeEntity;
using test::FakeEntityList;

/// Ends with as many counted objects as it began with.
class EntityFill : public ::testing::Test {
 protected:
  ~EntityFill() override {
    m_script = test::Script();
    m_collection.Reset();
    m_cache.Reset();
    m_list.Reset();
    m_model.Reset();
    EXPECT_EQ(m_objectsBefore, cor::LiveObjectCount());
  }
  std::string Fill(Result expected = S_OK) {
    EXPECT_EQ(expected, m_collection->Fill(*m_list, *m_cache));
    m_script.Set("all", Variant::Object(MakeRef<CEntityCollInt>(m_collection).Get()));
    return m_script.Show("all");
  }
  /// The references of an entity, as a host sees them.
  std::string Refer(FakeEntity& entity) {
    entity.m_model = m_model.Get();
    Fill();
    return m_script.Show("Set references = all(0).ModelReferences");
  }
  void Expect(const std::vector<test::Line>& lines) { m_script.Expect(lines); }

  std::int64_t m_objectsBefore = cor::LiveObjectCount();
  Ref<test::FakeModel> m_model = MakeRef<test::FakeModel>();
  Ref<FakeEntityList> m_list = MakeRef<FakeEntityList>();
  Ref<CEntityImplCache> m_cache = MakeRef<CEntityImplCache>();
  Ref<CEntityCollImpl> m_collection = MakeRef<CEntityCollImpl>();
  test::Script m_script;
};

TEST_F(EntityFill, LeavesOutWhatOnlyTheBaseModelHas) {
  m_list->Add(u"aotest").m_isBaseOnly = true;
  m_list->Add(u"AoTest").m_isBaseOnly = true;  // the text decides, letter by letter
  m_list->Add(u"aoOwn");
  m_list->Add(u"Own");
  EXPECT_EQ("[AoTest|aoOwn|Own]", Fill());
}

TEST_F(EntityFill, TellsOfANameThatComesTwiceAndGoesOn) {
  for (const char16_t* name : {u"A", u"B", u"A", u"a"}) m_list->Add(name);
  EXPECT_EQ("[A|B|a]", Fill(E_ACCESSDENIED));
}

TEST_F(EntityFill, LeavesOutAnEntityThatFails) {
  m_list->Add(u"A");
  FakeEntity& bad = m_list->Add(u"Bad");
  m_list->Add(u"C");
  const std::pair<std::int32_t, Result> kCodes[] = {
      {-800, E_OUTOFMEMORY}, {-1008, E_PENDING}, {-1999, E_FAIL}};
  for (const auto& [thrown, code] : kCodes) {
    SCOPED_TRACE(thrown);
    bad.m_failure = thrown;
    m_collection = MakeRef<CEntityCollImpl>();
    m_cache = MakeRef<CEntityImplCache>();
    EXPECT_EQ("[A|C]", Fill(code));
    Ref<IEntityImpl> entity;
    EXPECT_EQ(E_INVALIDARG, m_cache->Get(u"Bad", entity.Put()));
  }
}

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
  EXPECT_EQ(E_POINTER, m_cache->GetOrCreate(nullptr, first.Put()));
  EXPECT_EQ(E_POINTER, m_cache->GetOrCreate(&upper, nullptr));
  EXPECT_EQ(E_POINTER, m_cache->Get(u"A", nullptr));
  EXPECT_EQ(E_INVALIDARG, m_cache->Get(u"", first.Put()));
}

TEST_F(EntityFill, LeavesOutTheValuesOfALocalColumnAndNamesThatComeTwice) {
  FakeEntity& column = m_list->Add(u"Column");
  column.m_isLocalColumn = true;
  column.AddRelation(u"Content", u"Values", nullptr);
  column.AddRelation(u"Matrix", u"submatrix", nullptr);
  column.AddRelation(u"matrix", u"second", nullptr);
  EXPECT_EQ("[Matrix]", Refer(column));
  Expect({{"references.Exists('values')", "0"},
          {"references.Exists('Content')", "0"},
          {"references('second')", "Matrix"}});  // the one that stayed
}

TEST_F(EntityFill, ShowsOtherReferencesAsTheEngineSaysThem) {
  FakeEntity& entity = m_list->Add(u"E");
  const auto stranger = MakeRef<FakeEntity>();
  stranger->m_name = u"Stranger";
  entity.AddRelation(u"Content", u"values", nullptr);
  entity.AddRelation(u"Unknown", u"", stranger.Get());
  EXPECT_EQ("[Content|Unknown]", Refer(entity));
  Expect({{"references(0).MinOccur", "3"},
          {"references(0).MaxOccur", "-7"},
          // They may lead nowhere.
          {"references(0).EntityType", test::kUnknown},
          {"references(0).Inverse", "245 Inverse not implemented."},
          {"references(1).EntityType", test::kUnknown},
          {"references(1).Inverse", "245 Inverse not implemented."}});
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
class RefusingProperty final : public cor::Counted<IModelPropertyImpl> {
 public:
  Result GetName(WString*) override { return g_answer; }
  Result GetDataType(enumDataType*) override { return g_answer; }
  Result GetBaseName(WString*) override { return g_answer; }
  Result GetMinOccur(std::int32_t*) override { return g_answer; }
  Result GetMaxOccur(std::int32_t*) override { return g_answer; }
};
class RefusingReferences final : public cor::Counted<IModelReferenceCollImpl> {
 public:
  Result GetItem(std::int32_t, IModelReferenceImpl**) override { return g_answer; }
  Result GetCount(std::int32_t*) override { return g_answer; }
  Result GetItemByName(std::u16string_view, IModelReferenceImpl**) override { return g_answer; }
  Result Exists(std::u16string_view, bool*) override { return g_answer; }
  Result GetIterator(easyImpl::tIIteratorImpl<IModelReferenceImpl>**) override { return g_answer; }
};

TEST(ModelMessages, StandAsInTheTable) {
  test::Script script;
  script.Set("model", Variant::Object(MakeRef<CDataStoreModelInt>(MakeRef<RefusingModel>()).Get()));
  script.Set("property",
             Variant::Object(MakeRef<CModelPropertyInt>(MakeRef<RefusingProperty>()).Get()));
  script.Set("references",
             Variant::Object(MakeRef<CModelReferenceCollInt>(MakeRef<RefusingReferences>()).Get()));
  const std::string memory = "207 The application is out of memory.";
  const std::string notLoaded =
      "254 Properties and methods which change the contents of an object can only be called on "
      "data which is loaded.";
  const std::string cannotWrite =
      "358 Cannot write the file x. Maybe the file is write protected or the path does not exist.";
  const auto timedOut = [](const std::string& operation) {
    return "241 The operation " + operation + " was timed out.";
  };
  const std::pair<Result, test::Line> rows[] = {
      {E_NOTIMPL, {"model.Entities", "245 GetEntities not implemented."}},
      {E_PENDING, {"model.Entities", timedOut("GetEntities")}},
      {VEX_E_OBJECT_GONE, {"model.Entities", test::kGone}},
      {E_OUTOFMEMORY, {"model.Entities", memory}},
      {E_UNEXPECTED, {"model.Entities", test::kUnknown}},
      {E_FAIL, {"model.Export('x')", cannotWrite}},
      {E_PENDING, {"model.Export('x')", timedOut("Export")}},
      {E_ACCESSDENIED, {"model.Export('x')", test::kUnknown}},
      {VEX_E_NOT_BASE_PROPERTY, {"property.BaseName", test::kNotBase}},
      {E_NOTIMPL, {"property.BaseName", "245 GetBaseName not implemented."}},
      {E_FAIL, {"property.BaseName", test::kUnknown}},
      {E_FAIL, {"property.DataType", test::kUnknown}},
      {E_INVALIDARG, {"references.Item('x')", test::NoMember("x")}},
      {E_NOTIMPL, {"references.Item('x')", notLoaded}},
      {E_NOTIMPL, {"references._NewEnum", "245 _NewEnum not implemented."}},
      {E_NOTIMPL, {"references.Exists('x')", notLoaded}},
      {E_PENDING, {"references.Exists('x')", timedOut("Exists")}},
      {E_FAIL, {"references.Exists('x')", "0"}},  // no row: no error
  };
  for (const auto& [code, line] : rows) {
    g_answer = code;
    script.Expect({line});
  }
  g_answer = S_OK;
}

}  // namespace
}  // namespace hv::vex
