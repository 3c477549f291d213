// tests/core/sql/SqlWalkTest.cpp - values read along with those of neighbours, and how old they
// get.
#include <chrono>
#include <thread>

#include "core/objects/InstanceObject.h"
#include "core/objects/StoreObject.h"
#include "store/core/IAttribute.h"
#include "store/core/IInstList.h"

#include "SqlFixtures.h"

namespace hv::vex::engine::test {
namespace {

constexpr RecordId kRuns = 700;
constexpr std::chrono::milliseconds kOldest(RecordBatch::kLongestMilliseconds + 10);

class SqlWalk : public SqlTest {
 protected:
  SqlWalk() {
    const auto writer = Open();
    for (RecordId id = 1; id <= kRuns; ++id) {
      writer->Create(m.run, id);
      if (id % 3 != 0) m.SetName(*writer, {m.run, id}, NameFor(id));  // every third has no name
    }
    writer->Save(u"");
    m_store = OpenObjects();
    m_list = Ref<IInstList>::Adopt(m_store->GetInstances(u"/#Run"));
  }

  static std::u16string NameFor(RecordId id) {
    return u"run " + std::u16string(cor::FromUtf8(std::to_string(id)));
  }
  Ref<StoreObject> OpenObjects() const {
    return MakeRef<StoreObject>(Open(), StoreObject::Names(), Ref<IEnvironment>());
  }
  Ref<IInstance> At(std::uint64_t index) const {
    return Ref<IInstance>::Adopt(m_list->GetInstance(index));
  }
  static std::u16string NameOf(IInstance& instance) {
    WString name;
    QueryRef<IContainer>(&instance)->GetString(name, u"Name");
    return std::u16string(name.view());
  }
  /// Walks the records from `first` to `last` and gives the name of the last one.
  std::u16string Walk(std::uint64_t first, std::uint64_t last) const {
    std::u16string name;
    for (std::uint64_t i = first; i <= last; ++i) name = NameOf(*At(i));
    return name;
  }

  Ref<StoreObject> m_store;
  Ref<IInstList> m_list;
};

TEST_F(SqlWalk, GivesWhatEachRecordHas) {
  const auto expected = [](RecordId id) { return id % 3 == 0 ? u"" : NameFor(id); };
  for (RecordId id = 1; id <= kRuns; ++id) {
    const Ref<IInstance> run = At(static_cast<std::uint64_t>(id - 1));
    ASSERT_NE(0, run->IsValid());
    ASSERT_EQ(id, QueryRef<IContainer>(run.Get())->GetInteger64(u"Id", 0));
    ASSERT_EQ(expected(id), NameOf(*run)) << id;
  }
  // In steps that are no walk, and back.
  for (RecordId id = kRuns; id > 7; id -= 7) {
    ASSERT_EQ(expected(id), NameOf(*At(static_cast<std::uint64_t>(id - 1)))) << id;
  }
  // A list that lost its first records, whose instances are still held, and one put together anew.
  const Ref<IInstance> tenth = At(9);
  m_list->Clear();
  for (RecordId id = 20; id < 40; ++id) {
    m_list->Append(Ref<IInstance>::Adopt(m_store->InstanceOf({m.run, id})).Get());
  }
  EXPECT_EQ(NameFor(38), Walk(0, 18));
  EXPECT_EQ(NameFor(10), NameOf(*tenth));
}

TEST_F(SqlWalk, GoesOverFromOneEntityToAnother) {
  // Places of attributes mean others in each entity, or none.
  const auto records = Open();
  std::vector<RecordRef> all;
  for (const EntityId entity : {m.run, m.tag, m.project, m.run}) {
    for (RecordId id = 301; id <= 312; ++id) {
      if (entity != m.run) records->Create(entity, id);
      all.push_back({entity, id});
    }
  }
  records->Save(u"");
  m_list->Clear();
  for (const RecordRef record : all) {
    m_list->Append(Ref<IInstance>::Adopt(m_store->InstanceOf(record)).Get());
  }
  for (std::uint64_t i = 0; i < all.size(); ++i) {
    const Ref<IInstance> instance = At(i);
    const auto values = QueryRef<IContainer>(instance.Get());
    ASSERT_NE(0, instance->IsValid()) << i;
    const auto names = Ref<IAttribute>::Adopt(values->GetNames());
    WString name;
    for (std::uint64_t n = 0; n < names->GetCount(); ++n) {
      names->GetText(n, name);
      ScalarValue value;
      ASSERT_NO_THROW((void)instance->ReadScalar(name, &value)) << i << cor::ToUtf8(name);
      const bool isNamed = all[i].entity == m.run && all[i].id % 3 != 0;
      if (name == u"Id") {
        ASSERT_EQ(all[i].id, value.integer);
      } else if (name == u"Name") {
        ASSERT_EQ(isNamed ? NameFor(all[i].id) : u"", value.text) << i;
      }
    }
  }
}

TEST_F(SqlWalk, ChangesOfThisProcessShowAtOnce) {
  EXPECT_EQ(NameFor(40), Walk(30, 39));
  QueryRef<IContainer>(At(40).Get())->SetString(u"Name", u"own");
  EXPECT_EQ(u"own", NameOf(*At(40)));
  m_store->Discard();
  EXPECT_EQ(NameFor(41), NameOf(*At(40)));

  const Ref<StoreObject> other = OpenObjects();
  EXPECT_EQ(NameFor(61), Walk(50, 60));
  const auto theirs = Ref<IInstance>::Adopt(other->GetInstance(u"Run:62"));
  QueryRef<IContainer>(theirs.Get())->SetString(u"Name", u"theirs");
  EXPECT_EQ(NameFor(62), NameOf(*At(61))) << "not saved";
  other->Save(u"");
  EXPECT_EQ(u"theirs", NameOf(*At(61)));

  EXPECT_EQ(NameFor(83), Walk(70, 82));
  const Ref<IInstance> gone = At(83);
  Ref<IInstance>::Adopt(other->GetInstance(u"Run:84"))->Delete();
  other->Save(u"");
  EXPECT_EQ(0, gone->IsValid());
  EXPECT_THROW((void)NameOf(*gone), Exception);
}

TEST_F(SqlWalk, ChangesOfOthersShowSoon) {
  const auto countAt = [this](std::uint64_t index) {
    return QueryRef<IContainer>(At(index).Get())->GetInteger64(u"Count", 0);
  };
  const auto walk = [&](std::uint64_t first, std::uint64_t last) {
    for (std::uint64_t i = first; i <= last; ++i) EXPECT_EQ(0, countAt(i));
  };
  // Values that were read ahead serve for a while; on a slow machine it may be over at once.
  bool served = false;
  for (std::uint64_t at = 20; at < 300 && !served; at += 20) {
    walk(at - 10, at - 1);
    Change("UPDATE Run SET Count=5 WHERE RUN_ID=" + std::to_string(at + 1));
    served = countAt(at) == 0;
    std::this_thread::sleep_for(kOldest);
    EXPECT_EQ(5, countAt(at));
  }
  EXPECT_TRUE(served) << "nothing was read ahead";

  walk(400, 410);
  Change("UPDATE Run SET Count=6 WHERE RUN_ID IN (412, 413)");
  const Ref<IInstance> run = At(411);
  run->Refresh();
  EXPECT_EQ(6, QueryRef<IContainer>(run.Get())->GetInteger64(u"Count", 0));
  m_store->Refresh();
  EXPECT_EQ(6, countAt(412));
}

}  // namespace
}  // namespace hv::vex::engine::test
