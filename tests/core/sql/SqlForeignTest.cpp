// tests/core/sql/SqlForeignTest.cpp - databases that other tools of the convention made, and adding
// one store to another.
#include <algorithm>

#include "ModelText.h"
#include "SqlFixtures.h"

namespace hv::vex::engine::test {
namespace {

/// Lower-case columns, the word NULL for no column, a column's name as inverse name, decimals as
/// length, dates of two kinds.
constexpr const char* kForeign = R"(
CREATE TABLE svcenum(enumid int, enumname varchar, item int, itemname varchar);
INSERT INTO svcenum VALUES(1,'TestResult',0,'ok'),(1,'TestResult',1,'failed');
CREATE TABLE svcent(aid int, aname varchar, bid int, dbtname varchar);
INSERT INTO svcent VALUES(1,'Test',36,'TEST'),(2,'Subtest',2,'SUBTEST'),(4,'Unit Under Test',21,'UUT');
CREATE TABLE svcattr(aid int, attrnr int, aaname varchar, baname varchar, faid int, adtype int,
  aflen int, dbcname varchar, invname varchar, flag int, enumname varchar);
INSERT INTO svcattr VALUES
  (1,1,'Id','id',NULL,8,0,'TEST_ID',NULL,7,NULL),
  (1,2,'Name','name',NULL,1,2,'NAME',NULL,2,NULL),
  (1,3,'Result',NULL,NULL,30,0,'RESULT',NULL,0,'TestResult'),
  (1,4,'Subtests','children',2,NULL,NULL,'NULL','Test',0,NULL),
  (1,5,'When',NULL,NULL,10,0,'T',NULL,0,NULL),
  (1,6,'Limits',NULL,NULL,21,0,'LIMITS',NULL,0,NULL),
  (2,1,'Id','id',NULL,8,0,'SUBTEST_ID',NULL,7,NULL),
  (2,2,'Name','name',NULL,1,0,'NAME',NULL,2,NULL),
  (2,3,'Test','parent_test',1,8,0,'TEST_ID','TEST_ID',2,NULL),
  (4,1,'Id','id',NULL,8,0,'UUT_ID',NULL,7,NULL),
  (4,2,'Name','name',NULL,1,0,'NAME',NULL,2,NULL);
CREATE TABLE svcref(aid1 int, aid2 int, refname varchar, dbtname varchar, invname varchar,
  baname varchar, invbaname varchar);
INSERT INTO svcref VALUES(2,4,'Uuts','REL_SUB_UUT','Subtests',NULL,NULL);
CREATE TABLE TEST(TEST_ID INTEGER PRIMARY KEY, NAME TEXT, RESULT INTEGER, T TEXT, LIMITS TEXT);
INSERT INTO TEST VALUES(1,'Größe',1,'2024-11-05T14:13:45Z','?'),(2,'klein',0,'20241106','?');
CREATE TABLE SUBTEST(SUBTEST_ID INTEGER PRIMARY KEY, NAME TEXT, TEST_ID int REFERENCES TEST(TEST_ID));
INSERT INTO SUBTEST VALUES(10,'a',1),(11,'b',1),(12,'c',2);
CREATE TABLE UUT(UUT_ID INTEGER PRIMARY KEY, NAME TEXT);
INSERT INTO UUT VALUES(5,'car');
CREATE TABLE REL_SUB_UUT(UUT_ID int, SUBTEST_ID int, REFNAME varchar);
INSERT INTO REL_SUB_UUT VALUES(5,11,'Uuts'),(5,12,'Uuts'),(5,10,'Other');
CREATE TABLE SVCVAL(MEQID int, PMATNUM int, SEGNUM int, VALBLOB blob);
)";

TEST(SqlForeign, ReadsDatabasesOfOtherTools) {
  const TempFolder folder;
  const auto path = folder.File("foreign.sqlite");
  ASSERT_EQ("", Ask(path, kForeign));

  const auto store = OpenDatabase(path);
  const Model& model = *store->GetModel();
  const EntityId test = model.Find(u"Test")->id;
  const EntityId subtest = model.Find(u"Subtest")->id;
  const EntityId uut = model.Find(u"Unit Under Test")->id;
  EXPECT_EQ(u"aotest", model.BaseNameOf(test));
  const auto read = [&](EntityId entity, std::u16string_view name, std::vector<RecordId> ids) {
    const std::int32_t asked[] = {model.At(entity).FindAttribute(name)};
    return Describe(store->ReadColumns(entity, ids, asked)[0]);
  };
  EXPECT_EQ("'Größe', 'klein'", read(test, u"Name", {1, 2}));
  EXPECT_EQ("'20241105141345', '20241106'", read(test, u"When", {1, 2}));
  EXPECT_EQ("1, 0", read(test, u"Result", {1, 2}));
  EXPECT_FALSE(store->ReadValue({test, 1}, model.At(test).FindAttribute(u"Limits")).IsSet());
  const auto targets = [&](EntityId entity, std::u16string_view name, RecordId id) {
    return Describe(Targets(*store, {entity, id}, model.At(entity).FindRelation(name)));
  };
  EXPECT_EQ("10, 11", targets(test, u"Subtests", 1));
  EXPECT_EQ("1", targets(subtest, u"Test", 11));
  EXPECT_EQ("5", targets(subtest, u"Uuts", 11));
  EXPECT_EQ("", targets(subtest, u"Uuts", 10)) << "a row of another relation in the same table";
  EXPECT_EQ("11, 12", targets(uut, u"Subtests", 5));

  const auto find = [&](EntityId entity, std::u16string_view condition) {
    return Describe(store->Select(Where(model, entity, condition)));
  };
  EXPECT_EQ("1", find(test, u"Name = 'GRÖ*'wi"));
  EXPECT_EQ("10, 11", find(subtest, u"Test.When = '20241105141345'"));
  EXPECT_EQ("11, 12", find(subtest, u"Uuts.Name = 'CAR'i"));
  BoundQuery words = All(test);
  words.freeText = u"rösse";
  EXPECT_EQ("1", Describe(store->Select(words)));
  BoundQuery among = Where(model, subtest, u"Name != 'B'i");
  among.start = BoundStart{test, model.At(test).FindRelation(u"Subtests"), 1};
  EXPECT_EQ("10", Describe(store->Select(among)));
  among.start = BoundStart{uut, model.At(uut).FindRelation(u"Subtests"), 5};
  EXPECT_EQ("12", Describe(store->Select(among)));
  const auto isAboutValues = [](const std::u16string& line) {
    return line == u"values of local columns in the table SVCVAL can't be read";
  };
  const auto warnings = store->Warnings();
  EXPECT_EQ(1, std::count_if(warnings.begin(), warnings.end(), isAboutValues));
  EXPECT_FALSE(store->GetCapabilities().writable);
  EXPECT_EQ(errc::kWriteProtected, CodeOf([&] { store->Create(test); }))
      << "a database without our own tables can't be changed";
}

TEST(SqlMerge, AddsRecordsUnderNewIdsOrTellsWhatDoesNotFit) {
  const auto model = MakeContractModel();
  const ContractModel m(*model);
  MemoryStore source(model, KeptNowhere());
  m.Link(source, "P7.Runs+R9 P7.Runs+R3 P7.Runs-R3");
  m.SetName(source, {m.run, 9}, u"run");
  source.Create(m.column, 1);
  source.WriteValues({m.column, 1}, Longs({4, 5}), {}, false);

  const TempFolder folder;
  const auto path = folder.File("a.sqlite");
  const auto add = [&](const RecordStore& records) {
    kSqlPlugin.write(records, FileParameters(path, u"<add>yes</add>"));
  };
  for (int round = 0; round < 2; ++round) add(source);
  const auto store = OpenDatabase(path);
  EXPECT_EQ("3, 9, 10, 11", Describe(store->AllOf(m.run)));
  EXPECT_EQ("P7.Runs=9 P8.Runs=11", m.LinksOf(*store, "P7.Runs= P8.Runs="));
  EXPECT_EQ(Word(u"run"), m.Get(*store, {m.run, 11}, u"Name"));
  EXPECT_EQ("4 5", ValuesText(store->OpenValues({m.column, 2}).get()));

  ModelBuilder builder(u"asam36");
  Declare(builder, "element Run AoAny\nattr Colour type=DT_STRING\nattr Count type=DT_STRING");
  MemoryStore other(builder.Build(), KeptNowhere());
  other.Create(other.GetModel()->Find(u"Run")->id, 1);
  const std::string refused = Thrown([&] { add(other); });
  EXPECT_TRUE(
      refused.ends_with(" the stores' models don't fit: Run has no attribute Colour; "
                        "Run.Count is of type DT_LONG, not DT_STRING"))
      << refused;
  EXPECT_EQ(4u, store->CountOf(m.run));
}

}  // namespace
}  // namespace hv::vex::engine::test
