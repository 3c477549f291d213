// tests/core/sql/SqlSessionTest.cpp - several sessions on one file, killed ones, and damaged files.
#include <chrono>
#include <csignal>
#include <fstream>
#include <optional>
#include <random>

#include <sys/wait.h>
#include <unistd.h>

#include "core/objects/StoreObject.h"
#include "core/plugins/sql/SqlStore.h"
#include "store/core/IInstance.h"

#include "ModelText.h"
#include "SqlFixtures.h"

namespace hv::vex::engine::test {
namespace {

class SqlSessions : public SqlTest {
 protected:
  void SetName(RecordStore& store, RecordId id, std::u16string_view name) const {
    m.SetName(store, {m.run, id}, name);
  }
  std::u16string NameOf(const RecordStore& store, RecordId id) const {
    return std::get<Value::Texts>(m.Get(store, {m.run, id}, u"Name").data).at(0);
  }
  std::string Named(const RecordStore& store, const std::u16string& name) const {
    return Describe(store.Select(Where(*m_model, m.run, u"Name = '" + name + u"'i")));
  }
  std::string Integrity() const {
    return Ask(m_path, "PRAGMA integrity_check; PRAGMA foreign_key_check;");
  }
  /// Runs `work` in a process of its own and kills that after so many microseconds, or waits for
  /// its end; gives its status.
  template <class Work>
  static int InChild(const Work& work, std::optional<unsigned> killedAfter = {}) {
    const pid_t child = fork();
    EXPECT_GE(child, 0);
    if (child == 0) _exit(work());
    if (killedAfter) {
      usleep(*killedAfter);
      kill(child, SIGKILL);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status;
  }
  void Backup(const std::filesystem::path& from) const {
    sqlite3 *source = nullptr, *target = nullptr;
    sqlite3_open(from.c_str(), &source);
    sqlite3_open(m_path.c_str(), &target);
    sqlite3_backup* const copy = sqlite3_backup_init(target, "main", source, "main");
    EXPECT_EQ(SQLITE_DONE, sqlite3_backup_step(copy, -1));
    EXPECT_EQ(SQLITE_OK, sqlite3_backup_finish(copy));
    sqlite3_close(source);
    sqlite3_close(target);
  }
  /// Opening the file is refused as bad, with these words somewhere.
  static void ExpectBadFile(const std::filesystem::path& path, const std::string& reason) {
    const std::string message = Thrown([&] { OpenDatabase(path); });
    EXPECT_TRUE(message.starts_with("-1301 " + path.string() + ": ")) << message;
    EXPECT_NE(std::string::npos, message.find(reason)) << message;
  }
};

TEST_F(SqlSessions, SeeWhatOthersSavedAndNothingElse) {
  const auto writer = Open();
  const auto reader = Open();
  writer->Create(m.run, 1);
  SetName(*writer, 1, u"Größe");
  EXPECT_EQ("1", Named(*writer, u"GRÖSSE"));
  EXPECT_EQ("", Named(*reader, u"GRÖSSE")) << "unsaved work is its session's own";
  EXPECT_FALSE(reader->Exists({m.run, 1}));
  writer->Save(u"");
  EXPECT_EQ("1", Named(*reader, u"GRÖSSE"));
  SetName(*writer, 1, u"other");
  EXPECT_EQ(u"Größe", NameOf(*reader, 1)) << "a reader doesn't wait for a writer";
  writer->Discard();
  EXPECT_EQ(u"Größe", NameOf(*writer, 1));
}

TEST_F(SqlSessions, ShowWhatTheModelHasGrownTo) {
  const auto open = [&] {
    return MakeRef<StoreObject>(Open(), StoreObject::Names{}, Ref<IEnvironment>());
  };
  const auto names = [](const Ref<IEntity>& entity) {
    return Ref<IAttribute>::Adopt(entity->GetAttributeNames())->GetCount();
  };
  // As if another program had changed the tables of the open file.
  const auto becomes = [&](ModelVariant variant, RecordId run) {
    const std::filesystem::path other = m_folder.File("other.sqlite");
    MemoryStore records(MakeContractModel(variant), KeptNowhere());
    records.Create(m.run, run);
    sql::WriteDatabase(records, other);
    Backup(other);
  };
  becomes(ModelVariant::Plain, 1);
  const auto session = open();
  const auto model = Ref<IModel>::Adopt(session->GetModel());
  const auto run = Ref<IEntity>::Adopt(model->GetEntity(u"Run"));
  const auto instance = Ref<IInstance>::Adopt(session->GetInstance(u"Run:1"));
  const std::uint64_t members = names(run);
  becomes(ModelVariant::Grown, 1);
  EXPECT_EQ(nullptr, model->GetEntity(u"Extra"));
  session->Refresh();
  EXPECT_EQ(2u, model->GetChangeCounter());
  EXPECT_EQ(members + 2, names(run)) << "a mood, and the way to the extras";
  const auto extra = Ref<IEntity>::Adopt(model->GetEntity(u"Extra"));
  ASSERT_TRUE(extra);
  EXPECT_EQ(run, Ref<IEntity>::Adopt(
                     Ref<IRelation>::Adopt(extra->GetRelationByName(u"Run"))->GetTargetEntity()));
  // What was held from before reads and writes the new places.
  Ref<IAttribute>::Adopt(instance->GetAttributeValue(u"Mood"))->SetText(0, u"good");
  const auto made = Ref<IInstance>::Adopt(session->CreateInstance(extra.Get()));
  EXPECT_TRUE(made);
  session->Refresh();
  session->Save(u"");
  const auto second = open();
  WString mood;
  const auto seen = Ref<IInstance>::Adopt(second->GetInstance(u"Run:1"));
  Ref<IAttribute>::Adopt(seen->GetAttributeValue(u"Mood"))->GetStringValue(mood);
  EXPECT_EQ(u"good", mood);
  session->Refresh();
  EXPECT_EQ(2u, model->GetChangeCounter()) << "others have changed nothing";

  becomes(ModelVariant::Moved, 2);
  EXPECT_EQ(errc::kNotSupported, CodeOf([&] { session->Refresh(); }));
  EXPECT_EQ(errc::kNotSupported, CodeOf([&] { session->Refresh(); })) << "it stays so";
  EXPECT_EQ(extra, Ref<IEntity>::Adopt(model->GetEntity(u"Extra")));
}

TEST_F(SqlSessions, DoLittleForOneRecordOfManyThatCameLately) {
  const auto store = Open();
  const RecordId project = store->Create(m.project);
  const std::int32_t relation = m.RelationOf(m.run, u"Project");
  auto& connection = static_cast<sql::SqlStore&>(*store).GetConnection();
  RecordId last = 0;
  const auto add = [&](int count) {
    for (int i = 0; i < count; ++i) {
      last = store->Create(m.run);
      store->Connect({m.run, last}, relation, {m.project, project});
    }
  };
  add(10);
  store->Save(u"");
  connection.Execute(connection.GetDialect().Analyze());
  add(3000);  // the database goes on to believe that there are ten
  int asked = 0;
  connection.AskMeanwhile([&asked] { return ++asked > 0; });
  EXPECT_EQ(1u, store->Follow(m.run, relation, {&last, 1}).size());
  EXPECT_EQ(0, asked) << "asked every few thousand steps";
  EXPECT_EQ(3010u, store->AllOf(m.run).size());
  EXPECT_LT(0, asked) << "so that it means anything";
  connection.AskMeanwhile(nullptr);
}

TEST_F(SqlSessions, ASecondWriterWaitsAndThenGivesUp) {
  const auto first = Open();
  const auto second = Open(u"<timeout>0.2</timeout>");
  first->Create(m.run, 1);
  const auto begin = std::chrono::steady_clock::now();
  const std::string message = Thrown([&] { second->Create(m.run, 2); });
  const std::chrono::duration<double> waited = std::chrono::steady_clock::now() - begin;
  EXPECT_EQ("-1008 " + m_path.string() + ": another session is writing", message);
  EXPECT_GE(waited.count(), 0.15);
  EXPECT_LT(waited.count(), 5) << "far from the ten seconds without a limit of its own";
  EXPECT_FALSE(second->IsModified());
  first->Save(u"");
  EXPECT_EQ(2, second->Create(m.run, 2));
  EXPECT_EQ(errc::kTimeout, CodeOf([&] { first->Delete({m.run, 1}); }));
  second->Discard();
  EXPECT_EQ(0, CodeOf([&] { first->Delete({m.run, 1}); }));
}

TEST_F(SqlSessions, UnsavedWorkGoesWithItsProcess) {
  InChild([&] {
    const auto store = Open();
    // More than the database's memory holds, so that some of it stands in the file already.
    for (int i = 0; i < 150; ++i) {
      store->WriteValues({m.column, store->Create(m.column)}, Doubles(Value::Reals(1 << 16)), {},
                         false);
    }
    return kill(getpid(), SIGKILL);
  });
  const auto store = Open();
  EXPECT_EQ(0u, store->CountOf(m.column));
  EXPECT_EQ("ok", Integrity());
  EXPECT_EQ(1, store->Create(m.column)) << "nor does it hold the right to write";
}

/// A source of values is read beside the session's other work, and shows what was saved.
TEST_F(SqlSessions, ReadValuesWhileOthersWriteThem) {
  const auto writer = Open();
  const auto reader = Open();
  const auto first = [&](const RecordStore& store) {
    double value = 0;
    if (const auto values = store.OpenValues({m.column, 1})) values->ReadReals(0, {&value, 1});
    return value;
  };
  const auto write = [&](double value) {
    writer->WriteValues({m.column, 1}, Doubles(Value::Reals(9, value)), {}, false);
  };
  writer->Create(m.column, 1);
  write(1);
  writer->Save(u"");
  EXPECT_EQ(1, first(*reader));
  write(2);
  EXPECT_EQ(1, first(*reader));
  EXPECT_EQ(2, first(*writer));
  writer->Discard();
  EXPECT_EQ(1, first(*writer));
  write(3);
  writer->Save(u"");
  EXPECT_EQ(3, first(*reader));
  // Another file in the place of this one holds nothing of it, whenever values are asked for.
  const auto late = Open();
  std::filesystem::rename(m_path, m_folder.File("moved.sqlite"));
  sql::WriteDatabase(MemoryStore(m_model, {}), m_path);
  for (const auto* store : {&reader, &writer, &late}) EXPECT_EQ(3, first(**store));
}

TEST_F(SqlSessions, ARefusedChangeLetsOthersWrite) {
  const auto first = Open();
  const auto second = Open();
  EXPECT_EQ(errc::kInstanceGone, CodeOf([&] { SetName(*first, 77, u"x"); }));
  EXPECT_FALSE(first->IsModified());
  EXPECT_EQ(1, second->Create(m.run));
}

TEST_F(SqlSessions, ReadOnlySessionsRefuseChanges) {
  {
    const auto store = Open();
    for (const EntityId entity : {m.run, m.tag, m.column}) store->Create(entity, 1);
    store->Save(u"");
  }
  const std::string before = DumpStore(*Open());
  EXPECT_EQ("", UnprotectedChanges(*Open(u"<readonly>yes</readonly>"), m));
  // Without a mark, in a folder that nobody may write; the file itself may be writable or not.
  for (const char* beside : {"-wal", "-shm"}) {  // which a reader can't take away
    std::filesystem::remove(m_path.string() + beside);
  }
  std::filesystem::permissions(m_folder.Path(), std::filesystem::perms(0555));
  for (const unsigned mode : {0444U, 0666U}) {
    std::filesystem::permissions(m_path, std::filesystem::perms(mode));
    const int status = InChild([&] {
      constexpr uid_t kNobody = 65534;
      if (geteuid() == 0 && setuid(kNobody) != 0) return 2;
      std::string wrong;
      wrong += Thrown([&] {
        const auto store = Open(u"");
        if (mode == 0444) wrong = UnprotectedChanges(*store, m);
        if (store->CountOf(m.run) != 1) wrong += " not read";
      });
      std::fputs(wrong.c_str(), stderr);
      return wrong.empty() ? 0 : 1;
    });
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << mode;
  }
  std::filesystem::permissions(m_folder.Path(), std::filesystem::perms(0755));
  std::filesystem::permissions(m_path, std::filesystem::perms(0644));
  EXPECT_EQ(before, DumpStore(*Open()));
}

TEST_F(SqlSessions, RefusesParametersThatMakeNoSense) {
  EXPECT_EQ(errc::kInvalidArgument, CodeOf([&] { Open(u"<timeout>soon</timeout>"); }));
  EXPECT_EQ(errc::kNotUnique, CodeOf([&] { kSqlPlugin.create(FileParameters(m_path), m_model); }));
  EXPECT_EQ(errc::kBadFile, CodeOf([&] { kSqlPlugin.open(ConnectParameters(u"")); }));
}

TEST_F(SqlSessions, RefusesDamagedFiles) {
  {
    const auto store = Open();
    for (int i = 0; i < 2000; ++i) SetName(*store, store->Create(m.run), u"a name of some length");
    store->Save(u"");
  }
  const auto size = std::filesystem::file_size(m_path);
  const auto copy = m_folder.File("damaged.sqlite");
  const struct {
    const char* name;
    std::function<void()> damage;
    const char* reason;
  } kCases[] = {
      {"missing", [&] { std::filesystem::remove(copy); }, "No such file"},
      {"empty", [&] { std::filesystem::resize_file(copy, 0); }, "the file is empty"},
      {"half", [&] { std::filesystem::resize_file(copy, size / 2); }, "malformed"},
      {"head", [&] { std::filesystem::resize_file(copy, 50); }, "malformed"},
      {"overwritten", [&] { std::ofstream(copy) << std::string(40000, 'x'); }, "not a database"},
      {"folder", [&] { std::filesystem::remove(copy), std::filesystem::create_directory(copy); },
       "it is no file"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    std::filesystem::remove_all(copy);
    std::filesystem::copy_file(m_path, copy);
    c.damage();
    ExpectBadFile(copy, c.reason);
  }
}

TEST_F(SqlSessions, RefusesDatabasesOfOtherKindsAndVersions) {
  const std::pair<const char*, const char*> kCases[] = {
      {"DROP TABLE SVCENT", "the database holds no measurement data (it has no table SVCENT)"},
      {"UPDATE SF_META SET VALUE='99' WHERE KEY='schema_version'",
       "the database has schema version 99; this program reads version 1 to 2"},
      {"DROP TABLE RUN", "the table \"RUN\" of element Run is missing"},
      {"UPDATE SVCATTR SET ENUMNAME='none' WHERE ENUMNAME='kind_enum'", "none"},
  };
  const auto copy = m_folder.File("other.sqlite");
  for (const auto& [sql, reason] : kCases) {
    SCOPED_TRACE(sql);
    std::filesystem::copy_file(m_path, copy, std::filesystem::copy_options::overwrite_existing);
    EXPECT_EQ("", Ask(copy, sql));
    ExpectBadFile(copy, reason);
  }
}

TEST_F(SqlSessions, SearchThroughIndexes) {
  const auto store = Open();
  const auto expectPlan = [&](std::u16string_view condition, const char* index,
                              const std::vector<RecordId>& ids) {
    const BoundQuery query = Where(*m_model, m.run, condition);
    const std::string plan = dynamic_cast<const sql::SqlStore&>(*store).Explain(query);
    EXPECT_NE(std::string::npos, plan.find(index)) << plan;
    EXPECT_EQ(ids, store->Select(query));
  };
  // What stands there, and how else people of any alphabet may write it.
  const std::u16string_view kNames[][3] = {{u"Motor warm", u"MOTOR WARM", u"motor w*"},
                                           {u"Größe", u"GRÖSSE", u"GRÖSS*"},
                                           {u"Σίσυφος", u"ΣΊΣΥΦΟΣ", u"σίσυφοσ*"},
                                           {u"Мощность", u"МОЩНОСТЬ", u"мощ*"}};
  for (const auto& name : kNames) SetName(*store, store->Create(m.run), name[0]);
  RecordId id = 0;
  for (const auto& [stored, whole, begin] : kNames) {
    SCOPED_TRACE(cor::ToUtf8(stored));
    const std::u16string is = u"Name = '";
    ++id;
    expectPlan(is + std::u16string(whole) + u"'i", "USING INDEX IX_RUN_NAME (<expr>=?)", {id});
    expectPlan(is + std::u16string(begin) + u"'wi",
               "USING INDEX IX_RUN_NAME (<expr>>? AND <expr><?)", {id});
  }
  expectPlan(u"Name = 'Ärger'", "IX_RUN_NAME", {});
  expectPlan(u"When < '20100101000000'", "IX_RUN_WHEN", {});
  expectPlan(u"Count >= 3", "IX_RUN_COUNT", {});
  expectPlan(u"Project.Id = 3", "IX_RUN_PROJECT", {});
  expectPlan(u"Tags.Name = 'Ä*'wi", "IX_TAG_NAME", {});
}

TEST_F(SqlSessions, BringDatabasesOfVersion1ToTheNextAsAWhole) {
  Change("UPDATE SF_META SET VALUE='1' WHERE KEY='schema_version'; DROP INDEX IX_RUN_COUNT");
  constexpr const char* kState =
      "SELECT VALUE FROM SF_META WHERE KEY='schema_version';"
      "SELECT count(*) FROM sqlite_master WHERE name='IX_RUN_COUNT'";
  EXPECT_EQ(0u, Open(u"<readonly>yes</readonly>")->CountOf(m.run));
  EXPECT_EQ("10", Ask(m_path, kState)) << "who can only read finds all in the old one";
  Change("CREATE TRIGGER t BEFORE UPDATE ON SF_META BEGIN SELECT raise(ABORT,'no room'); END");
  EXPECT_NE(std::string::npos, Thrown([&] { Open(); }).find("a.sqlite: no room"));
  EXPECT_EQ("10", Ask(m_path, kState));
  Change("DROP TRIGGER t");
  {
    sqlite3* other = nullptr;
    sqlite3_open(m_path.c_str(), &other);
    sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
    EXPECT_EQ(errc::kTimeout, CodeOf([&] { Open(); }));
    sqlite3_close(other);
  }
  Open();
  EXPECT_EQ("21", Ask(m_path, kState));
}

// --- killed sessions -----------------------------------------------------------------------------

/// In each save all records get the same name, so that a mixture shows half a save.
TEST_F(SqlSessions, KilledWhileSavingNeverLeavesHalfASave) {
  constexpr RecordId kRecords = 20;
  const auto begin = std::chrono::steady_clock::now();
  {
    const auto store = Open();
    for (RecordId id = 1; id <= kRecords; ++id) SetName(*store, store->Create(m.run), u"0");
    store->Save(u"");
  }
  // Long enough for a child to open the store and save some times, on any machine and build.
  const auto once = std::chrono::duration_cast<std::chrono::microseconds>(
      std::chrono::steady_clock::now() - begin);
  const auto longest = static_cast<unsigned>(once.count()) * 3 + 15000;
  std::mt19937 random(7);
  std::u16string last;
  int progressed = 0;
  for (int round = 0; round < 100; ++round) {
    const auto save = [&] {
      const auto store = Open();
      for (int number = 0; number < 100000; ++number) {
        const std::u16string name = Wide(std::to_string(round) + "." + std::to_string(number));
        for (RecordId id = 1; id <= kRecords; ++id) SetName(*store, id, name);
        store->Save(u"");
      }
      return 0;
    };
    InChild(save, static_cast<unsigned>(random() % longest));
    const auto store = Open();
    const std::u16string name = NameOf(*store, 1);
    progressed += name != last ? 1 : 0;
    last = name;
    for (RecordId id = 2; id <= kRecords; ++id) ASSERT_EQ(name, NameOf(*store, id));
    ASSERT_EQ("1, 2, 3", Named(*store, name).substr(0, 7)) << "the index has the same state";
  }
  EXPECT_EQ("ok", Integrity());
  EXPECT_GT(progressed, 20) << "kills must hit sessions that save";
}

TEST_F(SqlSessions, KilledWhileImportingLeavesTheTargetAsItWas) {
  MemoryStore source(m_model, KeptNowhere());
  for (RecordId id = 1; id <= 3000; ++id) {
    source.Create(m.run, id);
    SetName(source, id, u"some run or other");
  }
  std::mt19937 random(11);
  int finished = 0;
  for (int round = 0; round < 100; ++round) {
    const auto import = [&] {
      sql::WriteDatabase(source, m_path);
      return 0;
    };
    InChild(import, static_cast<unsigned>(random() % 60000));
    const std::uint64_t count = Open()->CountOf(m.run);
    ASSERT_TRUE(count == 0 || count == 3000) << count;
    ASSERT_EQ("ok", Integrity());
    if (count == 0) continue;
    ++finished;
    sql::WriteDatabase(MemoryStore(m_model, {}), m_path);
  }
  EXPECT_LT(finished, 100) << "kills must hit imports that aren't finished";
}

}  // namespace
}  // namespace hv::vex::engine::test
