// tests/query/files/QueryFilesTest.cpp - what stands in query files, and what becomes of it.
#include "tests/query/files/FilesFixture.h"

namespace hv::vex {
namespace {

TEST_F(QueryFiles, HoldTheQueryInAFixedOrder) {
  Fill("Title|=|a < b;Campaign|Title|<>|x", u"C1 OR C2");
  m_query->SetFilterActive(1);
  EXPECT_EQ(Whole(R"( <asamquery_manager>
  <version>6574665</version>
  <queries>
   <asamquery>
    <returntype>as_entity</returntype>
    <returntype_name>measurement</returntype_name>
    <filterActive>true</filterActive>
    <logic>C1 OR C2</logic>
    <conditions>
     <asamcondition>
      <name>C1</name>
      <property>name</property>
      <type>as_entity</type>
      <type_name>measurement</type_name>
      <operator>equal</operator>
      <value>a &lt; b</value>
      <values>a &lt; b</values>
      <datatype>23</datatype>
     </asamcondition>
     <asamcondition>
      <name>C2</name>
      <property>name</property>
      <type>as_entity</type>
      <type_name>measurement.test.parent_test</type_name>
      <operator>not_equal</operator>
      <value>x</value>
      <values>x</values>
      <datatype>23</datatype>
     </asamcondition>
    </conditions>
   </asamquery>
  </queries>
 </asamquery_manager>
)"),
            SavedText());
}

TEST_F(QueryFiles, GiveValuesBackAsTheyWere) {
  const struct {
    std::string_view condition;  // as `Add` takes it
    std::string_view op, value, values, dataType;
    std::string_view read;  // as `Described` shows it
  } kCases[] = {
      {"Title|=| a*? ", "equal", " a*? ", " a*? ", "23", "MeaResult.Title = 8: a*? "},
      {"Title|=|", "equal", "", "", "23", "MeaResult.Title = 8:"},
      {"Title|=|salt \\OR pepper", "equal", "salt OR pepper", "salt \\OR pepper", "23",
       "MeaResult.Title = 8:salt \\OR pepper"},
      {"Title|=|a OR b \\or c OR d", "equal", "a", "a OR b \\or c OR d", "23",
       "MeaResult.Title = 8:a OR b \\or c OR d 3"},
      {"Size|>=|-12", "greater_than", "-12", "-12", "3", "MeaResult.Size >= 3:-12"},
      {"Size|=|1 OR 2", "equal", "1", "1 OR 2", "3", "MeaResult.Size = 3:1 OR 2 2"},
      {"Size|<|5000000000", "less", "5000000000", "5000000000", "23",
       "MeaResult.Size < 20:5000000000"},
      {"Weight|<=|0.1", "less_than", "0.1000000000000000055511151231257827021182", "0.1", "10",
       "MeaResult.Weight <= 5:0.1"},
      {"Weight|>|many", "greater", "many", "many", "23", "MeaResult.Weight > 8:many"},
      {"State|=|open", "equal", "open", "open", "23", "MeaResult.State = 8:open"},
      {"Time|>=|@20090517120000", "after", "             39950.5", "05/17/2009 12:00:00", "30",
       "MeaResult.Time Date after 7:05/17/2009 12:00:00"},
      {"Time|<=|05/17/2009 12:00:00", "before", "             39950.5", "05/17/2009 12:00:00", "30",
       "MeaResult.Time Date before 7:05/17/2009 12:00:00"},
      {"Time|=|05/17/2009", "day", "               39950", "05/17/2009", "30",
       "MeaResult.Time Date equal 7:05/17/2009"},
      {"Campaign|Start.Date|#|Last 7 days", "pre", "LastSevenDays", "Last 7 days", "23",
       "Campaign.Start.Date Relative range 8:LastSevenDays"},
      {"Time|=|some day", "day", "some day", "some day", "23",
       "MeaResult.Time Date equal 8:some day"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.condition);
    Use(m_store);
    Fill(c.condition);
    const std::string text = SavedText();
    EXPECT_EQ(c.op, Tag(text, "operator"));
    EXPECT_EQ(c.value, Tag(text, "value"));
    EXPECT_EQ(c.values, Tag(text, "values"));
    EXPECT_EQ(c.dataType, Tag(text, "datatype"));
    Use(m_store);
    EXPECT_EQ(S_OK, LoadText(text, *m_query));
    EXPECT_EQ("C1 " + std::string(c.read) + "\nC1", Described(*m_query));
    EXPECT_EQ(text, SavedText());
  }
}

TEST_F(QueryFiles, KeepWhatHoldsAndRefuseTheRest) {
  const auto condition = [](std::string_view tags, std::string_view property = "name",
                            std::string_view type = "measurement") {
    return "<asamcondition><type_name>" + std::string(type) + "</type_name><property>" +
           std::string(property) + "</property>" + std::string(tags) + "</asamcondition>";
  };
  const auto query = [](std::string_view conditions, std::string_view logic = {},
                        std::string_view returnType = "measurement") {
    return Document("<returntype_name>" + std::string(returnType) + "</returntype_name><logic>" +
                    std::string(logic) + "</logic><conditions>" + std::string(conditions) +
                    "</conditions>");
  };
  const auto one = [&](std::string_view op, std::string_view value, std::string_view type,
                       std::string_view property = "name") {
    return query(condition("<operator>" + std::string(op) + "</operator><value>" +
                               std::string(value) + "</value><datatype>" + std::string(type) +
                               "</datatype>",
                           property));
  };
  const std::string equalA = "<operator>equal</operator><value>a</value>";
  const auto named = [&](std::string_view name) {
    return condition("<name>" + std::string(name) + "</name>" + equalA);
  };
  std::string newer = query(named("C1"));
  newer[newer.find("1_2")] = '9';
  newer.insert(newer.find("<logic>"), "<mood>good</mood>");
  const struct {
    std::string document;
    std::string read;
    Result code = S_OK;
  } kCases[] = {
      {query(""), ""},
      {query(named("condition") + named("condition") + named("CONDITION"), "C1 AND C3"),
       "C1 MeaResult.Title = 8:a\nC2 MeaResult.Title = 8:a\nC3 MeaResult.Title = 8:a\nC1 AND C3"},
      {query(named("C2") + named("C2") + named("x y")),
       "C2 MeaResult.Title = 8:a\nC3 MeaResult.Title = 8:a\nC4 MeaResult.Title = 8:a\n"
       "C2 AND C3 AND C4"},
      {query(named("C1") + named("C2"), "C1 OR ( C9"),
       "C1 MeaResult.Title = 8:a\nC2 MeaResult.Title = 8:a\nC1 AND C2"},
      {query(condition(equalA, "name", "")), "C1 Channel.Name = 8:a\nC1"},
      {query(condition("<operator>equal</operator>")), "C1 MeaResult.Title = 8:\nC1"},
      {one("day", "1,5", "30", "Time"), "C1 MeaResult.Time Date equal 7:12/31/1899\nC1"},
      {one("after", "39950.5", "0", "Time"),
       "C1 MeaResult.Time Date after 7:05/17/2009 12:00:00\nC1"},
      {one("day", "1e9", "30", "Time"), "C1 MeaResult.Time Date equal 8:1e9\nC1"},
      {one("equal", " 1,5 ", "30", "Weight"), "C1 MeaResult.Weight Date equal 7:12/31/1899\nC1"},
      {query(condition(equalA + "<values>a or b Or c</values>")),
       "C1 MeaResult.Title = 8:a OR b OR c 3\nC1"},
      {one("pre", "Yesterday", "23", "Time"), "C1 MeaResult.Time Relative range 8:Yesterday\nC1"},
      {one("less", "12", "0", "Size"), "C1 MeaResult.Size < 3:12\nC1"},
      {one("less", "12", "0", "Weight"), "C1 MeaResult.Weight < 5:12\nC1"},
      {one("equal", "12", "0"), "C1 MeaResult.Title = 8:12\nC1"},
      {one("less", "x", "0", "Size"), "C1 MeaResult.Size < 8:x\nC1"},
      {one("equal", "12 mm", "3"), "C1 MeaResult.Title = 8:12 mm\nC1"},
      {one("equal", "1,5", "10"), "C1 MeaResult.Title = 8:1,5\nC1"},
      {one("equal", "12", "99"), "C1 MeaResult.Title = 8:12\nC1"},
      {query(named("C1"), "", "MeaResult"), "C1 MeaResult.Title = 8:a\nC1"},
      {newer, "C1 MeaResult.Title = 8:a\nC1"},

      {one("like", "a", "23"), "", VEX_E_BAD_FILE},
      {one("=", "a", "23"), "", VEX_E_BAD_FILE},
      {query(condition("<value>a</value>")), "", VEX_E_BAD_FILE},
      {query(named("C1") + condition(equalA, "colour")), "", VEX_E_BAD_FILE},
      {query(condition(equalA, "name", "measurement.wheel")), "", VEX_E_BAD_FILE},
      {query(condition(equalA, "Levels")), "", VEX_E_BAD_FILE},
      {query(named("C1"), "", "wheel"), "", VEX_E_BAD_FILE},
      {Whole("<asamquery_manager/>"), "", VEX_E_NO_QUERY},
      {Whole("<asamquery/>"), "", VEX_E_NO_QUERY},
      {"<html/>", "", E_INVALIDARG},
      {"<vex_document version='1' model='/DataModels/VEX/BrowseSettings/1_0'/>", "", E_INVALIDARG},
      {"", "", VEX_E_NO_FILE_NAME},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.document);
    Use(m_store);
    Fill("Size|=|7", u"C1");
    EXPECT_EQ(c.code, LoadText(c.document, *m_query));
    EXPECT_EQ(c.code == S_OK ? c.read : "C1 MeaResult.Size = 3:7\nC1", Described(*m_query));
    EXPECT_TRUE(m_query->GetReturnType().EqualsExact(u"MeaResult"));
  }
}

TEST_F(QueryFiles, FindTheirNamesInAnotherStore) {
  Fill("Title|=|x;Campaign|Start.Date|>=|@20200101;Channel|Name|=|n", u"C1 OR C3");
  const std::string path = m_folder.File("a&b.query").string();
  ASSERT_EQ(S_OK, SaveQueryFile(m_query.Get(), cor::FromUtf8(path)));
  const Ref<IStore> other = OpenFile(HV_TEST_DATA_DIR "/browse/campaign.atfx");
  const auto query = MakeRef<CDataStoreAdvancedQueryImpl>(*other, nullptr);
  EXPECT_EQ(S_OK, LoadQueryFile(cor::FromUtf8(path), *query));
  EXPECT_EQ(
      "C1 Run.Name = 8:x\nC2 Campaign.Start.Date Date after 7:01/01/2020 00:00:00\n"
      "C3 Channel.Name = 8:n\nC1 OR C3",
      Described(*query));
  EXPECT_TRUE(query->GetReturnType().EqualsExact(u"Run"));
}

}  // namespace
}  // namespace hv::vex
