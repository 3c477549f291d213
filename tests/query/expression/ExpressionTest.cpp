// tests/query/expression/ExpressionTest.cpp - the text of conditions, and that engines find by it.
#include "query/expression/ExpressionText.h"
#include "tests/elements/TestElement.h"
#include "tests/query/objects/ChangingStore.h"
#include "tests/query/objects/QueryFixture.h"

namespace hv::vex {
namespace {

class Expression : public QueryTest {
 protected:
  Expression() { Use(OpenBench()); }
};

struct TextCase {
  std::string_view conditions;
  std::u16string_view logic;
  std::string body;
  const char* hits;
};

TEST_F(Expression, FindsTheSameInFilesAndDatabases) {
  const TextCase kCases[] = {
      // texts
      {"Name|=|a*", u"", "AND(=(Name w'a*'))", "1 2 4"},
      {"Name|<>|a*", u"", "AND(!=(Name w'a*'))", "3 5 6 7 8"},
      {"Name|=|a<b", u"", "AND(=(Name w'a&lt;b'))", "4"},
      {"Name|=|Zoe & \"Tom\";Name|=|O'Neil", u"OR",
       "OR(=(Name w'Zoe &amp; &quot;Tom&quot;')=(Name w'O&apos;Neil'))", "6 7"},
      {"P & Q|=|*", u"", "AND(=(P &amp; Q w'*'))", ""},
      {"Name|=|al\tha", u"", "AND(=(Name w'al?ha'))", "1"},
      {"Name|=|a\r\na\nn\r", u"", "AND(=(Name w'a*a*n*'))", ""},
      {"Title|=|run 3", u"", "AND(=(name w'run 3'))", "3"},
      {"State|<>|done", u"", "AND(!=(State w'done'))", "1 3 5 7"},
      // several values
      {"Name|=|alpha OR beta", u"", "AND(OR(=(Name w'alpha')=(Name w'beta')))", "1 3"},
      {"Name|=|alpha OR beta;Size|>|7", u"C1 OR C2",
       "OR(=(Name w'alpha')=(Name w'beta')&gt;(Size p'7'))", "1 3 8"},
      {"Size|=|2 or 4", u"", "AND(OR(=(Size p'2')=(Size p'4')))", "2 4"},
      {"Name|=|salt \\OR pepper", u"", "AND(=(Name w'salt OR pepper'))", "5"},
      // numbers
      {"Size|<>|3", u"", "AND(&lt;&gt;(Size p'3'))", "1 2 4 5 6 7 8"},
      {"Size|>=|3;Weight|<|5", u"", "AND(&gt;=(Size p'3')&lt;(Weight p'5'))", "3 4 5"},
      {"Weight|<=|0.5", u"", "AND(&lt;=(Weight p'0.5'))", "1"},
      // dates
      {"Time|=|@20090517093000", u"",
       "AND(&gt;=(Time p'20090517000000')&lt;=(Time p'20090517235959'))", "2 3 4"},
      {"Time|=|@20090517;Size|=|8", u"C1 OR C2",
       "OR(AND(&gt;=(Time p'20090517000000')&lt;=(Time p'20090517235959'))=(Size p'8'))",
       "2 3 4 8"},
      {"Time|Date after|@20090517120000", u"", "AND(&gt;=(Time p'20090517120000'))", "3 4 5"},
      {"Time|<=|@20090510080000", u"", "AND(&lt;=(Time p'20090510080000'))", "6 7"},
      {"Time|>|@20090517120000", u"", "AND(&gt;(Time p'20090517000000'))", "3 4 5"},
      {"Time|<>|@20090517120000", u"", "AND(&lt;&gt;(Time p'20090517000000'))", "1 3 4 5 6 7"},
      {"Time|#|Yesterday", u"", "AND(&gt;=(Time p'20090516000000')&lt;=(Time p'20090516235959'))",
       "1"},
      {"Time|#|Last 7 days", u"", "AND(&gt;=(Time p'20090510000000')&lt;=(Time p'20090517153000'))",
       "1 2 3 6"},
      {"Time|#|Today;Time|#|LastThirtyDays", u"C1 OR C2",
       "OR(AND(&gt;=(Time p'20090517000000')&lt;=(Time p'20090517235959'))"
       "AND(&gt;=(Time p'20090417000000')&lt;=(Time p'20090517153000')))",
       "1 2 3 4 6"},
      // ways
      {"Step|Name|=|cold", u"", "AND(=(Step.name w'cold'))", "1 2 3 4"},
      {"Campaign|Start.Date|=|@20090501", u"",
       "AND(&gt;=(Step.Campaign.Start.Date p'20090501000000')"
       "&lt;=(Step.Campaign.Start.Date p'20090501235959'))",
       "1 2 3 4"},
      {"Channel|Name|=|torque", u"", "AND(=(Channels.name w'torque'))", "2"},
      {"Step|Campaign.Title|=|Summer", u"", "AND(=(Step.parent_test.name w'Summer'))", "5 6 7 8"},
      // logic
      {"Size|=|1;Size|=|2;State|=|open", u"(C1 OR C2) AND C3",
       "AND(OR(=(Size p'1')=(Size p'2'))=(State w'open'))", "1"},
      {"Time|=|@20090516;Size|=|2 OR 7;Size|<|7", u"(C1 OR C2) AND C3",
       "AND(OR(AND(&gt;=(Time p'20090516000000')&lt;=(Time p'20090516235959'))"
       "=(Size p'2')=(Size p'7'))&lt;(Size p'7'))",
       "1 2"},
      {"Size|=|1;Size|>|4;State|=|done", u"C1 OR C2 AND C3",
       "OR(=(Size p'1')AND(&gt;(Size p'4')=(State w'done')))", "1 6 8"},
      {"Size|=|1;Size|=|2;Size|=|3", u"((C1)) OR (C2 OR (C3 AND C3))",
       "OR(AND(AND(=(Size p'1')))OR(=(Size p'2')AND(=(Size p'3')=(Size p'3'))))", "1 2 3"},
      {"Size|=|1;Size|=|2", u"C2", "AND(=(Size p'2'))", "2"},
      {"Size|=|1;Name|=|<Enter a value>", u"C1 OR C2",
       "OR(=(Size p'1')=(Name w'&lt;Enter a value&gt;'))", "1"},
  };
  for (const bool isDatabase : {false, true}) {
    SCOPED_TRACE(isDatabase ? "database" : "file");
    if (isDatabase) m_store = OpenBenchDatabase();
    for (const TextCase& c : kCases) {
      SCOPED_TRACE(c.conditions);
      Use(m_store);
      ASSERT_NO_FATAL_FAILURE(Fill(c.conditions, c.logic));
      WString text;
      ASSERT_EQ(S_OK, Build(&text));
      EXPECT_EQ(c.body, Short(text));
      EXPECT_EQ(c.hits, Hits(text));
    }
  }
}

TEST_F(Expression, IsWrittenByteForByte) {
  Fill("Name|=|a*;Size|>|3;Time|#|Today", u"(C1 AND C2) OR C3");
  m_query->SetFreeText(u"brake & disc");
  WString text;
  ASSERT_EQ(S_OK, Build(&text, 100));
  EXPECT_EQ(R"x(<?xml version="1.0" encoding="UTF-16" standalone="no" ?>
<query>
<ftsexpression>brake &amp; disc</ftsexpression>
<entity name="MeaResult" >
<expression limit="100">
<q:function name="OR">
<q:function name="AND">
<q:function name="=">
<q:identifier>Name</q:identifier>
<q:constant wildcards="?*" caseinsensitive="yes">a*</q:constant>
</q:function>
<q:function name="&gt;">
<q:identifier>Size</q:identifier>
<q:constant>3</q:constant>
</q:function>
</q:function>
<q:function name="AND">
<q:function name="&gt;=">
<q:identifier>Time</q:identifier>
<q:constant>20090517000000</q:constant>
</q:function>
<q:function name="&lt;=">
<q:identifier>Time</q:identifier>
<q:constant>20090517235959</q:constant>
</q:function>
</q:function>
</q:function>
</expression></entity></query>)x",
            cor::ToUtf8(text));
  const auto config = MakeRef<CDataStoreConfigHelper>(m_store.Get());
  WString plain;
  ASSERT_EQ(S_OK, m_query->BuildPlainExpression(u"Step", &plain, *config));
  EXPECT_NE(-1, plain.Find(u"?>\n<query>\n<entity name=\"Step\" >\n<expression>\n"));
  EXPECT_NE(-1, plain.Find(u"<q:identifier>Results.Name</q:identifier>"));
  WString head;
  AppendHead(head, u"A&B", u"urn:x", 0, {});
  EXPECT_NE(-1, head.Find(u"<entity name=\"A&B\" uri=urn:x >\n<expression>\n"));
}

TEST_F(Expression, WithoutAStoreKnowsNoTypes) {
  Fill("Name|<>|a;Time|#|Today");
  WString text;
  ASSERT_EQ(S_OK, m_query->GetExpression(*MakeRef<CDataStoreConfigHelper>(nullptr), &text));
  EXPECT_EQ("AND(&lt;&gt;(Name p'a')=(Time p'Today'))", Short(text));
}

TEST_F(Expression, BelowAnElementLooksForInstanceAttributes) {
  const auto record = Ref<IInstance>::Adopt(m_store->GetInstance(u"MeaResult:1"));
  const auto element = MakeRef<test::CTestElement>(*record);
  const auto config = MakeRef<CDataStoreConfigHelper>(m_store.Get());
  const std::string jane =
      "=(instance_attributes.values w'Jane')==(instance_attributes.name c'Operator')";
  const std::string jim =
      "=(instance_attributes.values w'Jim')==(instance_attributes.name c'Operator')";
  const std::string both = "AND(" + jane + ")AND(" + jim + ")";
  const TextCase kCases[] = {
      {"Operator|=|Jane;Size|<|9", u"", "AND(" + jane + "&lt;(Size p'9'))", "2"},
      {"Operator|=|Jane;Size|=|5", u"OR", "OR(AND(" + jane + ")=(Size p'5'))", "2 5"},
      {"Operator|=|Jane OR Jim", u"", "AND(OR(" + both + "))", "2 3"},
      {"Operator|=|Jane OR Jim;Size|=|5", u"OR", "OR(" + both + "=(Size p'5'))", "2 3 5"},
      {"Operator|<>|Jane", u"", "AND(!" + jane + ")", "3"},
  };
  for (const TextCase& c : kCases) {
    SCOPED_TRACE(c.conditions);
    Use(m_store);
    Fill(c.conditions, c.logic);
    WString text;
    ASSERT_EQ(S_OK, m_query->GetExpressionBelow(element.Get(), &text, *config));
    EXPECT_EQ(c.body, Short(text));
    EXPECT_EQ(c.hits, Hits(text));
    EXPECT_EQ(VEX_E_INVALID_PROPERTY, Build(&text)) << "only below an element";
    EXPECT_EQ(1u, m_query->GetFailedCondition());
  }
  WString text;
  EXPECT_EQ(E_INVALIDARG, m_query->GetExpressionBelow(nullptr, &text, *config));
}

/// No way leads anywhere.
class NoPaths final : public IEntityPaths {
 public:
  WString PathBetween(std::u16string_view, std::u16string_view) override { return {}; }
};

class Mapper final : public IIdentifierMapper {
 public:
  WString Map(std::u16string_view identifier) override { return WString(u"@") + identifier; }
  bool ShouldFilter() override { return true; }
};

TEST_F(Expression, MapsIdentifiersAndFiltersByName) {
  Mapper mapper;
  NoPaths paths;
  const auto config = MakeRef<CDataStoreConfigHelper>(m_store.Get());
  Fill("Size|=|1;Step|Name|=|x");
  for (const bool isOr : {false, true}) {
    ASSERT_EQ(S_OK, Conditions().SetLogic(isOr ? u"OR" : u"AND"));
    WString body;
    std::uint32_t failed = 0;
    ExpressionWriter writer({Conditions(), *config, paths, u"MeaResult", false, &mapper});
    ASSERT_EQ(S_OK, writer.WriteLogic(&body, &failed));
    EXPECT_EQ(isOr ? "AND(=(@name w'*')OR(=(@Size p'1')=(@name w'x')))"
                   : "AND(=(@Size p'1')=(@name w'x')=(@name w'*'))",
              Short(body + u"</expression>"));
  }
}

TEST_F(Expression, IsRefusedWithACodeAndTheCondition) {
  struct {
    std::string_view conditions;
    std::u16string_view logic;
    Result code;
    std::uint32_t failed = 0;
    std::int32_t customLogic = 1;  // what the store can do
    std::int32_t severalValues = 1;
    std::uint64_t longest = 0;
  } const kCases[] = {
      {"", u"", E_INVALIDARG},
      {"Name|=|;Name|=|<Enter a value>;Name|=|<Enter a property>", u"C1 OR (C2 AND C3)",
       E_INVALIDARG},
      {"Size|=|1;Nope|=|1", u"C1", VEX_E_INVALID_PROPERTY, 2},
      {"Size|=|1;Nobody|Size|=|1", u"", VEX_E_INVALID_PROPERTY, 2},
      {"Size|=|1;Size|>|1 OR 2", u"", VEX_E_OR_OPERATOR, 2},
      {"Size|=|1;Time|>=|soon", u"", VEX_E_VALUE_TYPE, 2},
      {"Size|=|1;Size|=|1", u"C1 AND", VEX_E_BAD_LOGIC},
      {"Size|=|1;Size|=|1", u"C1 AND C9", VEX_E_BAD_LOGIC},
      {"Size|=|1;Size|=|1", u"C1 OR C2", VEX_E_LOGIC_UNSUPPORTED, 0, 0},
      {"Size|=|1;Size|=|1", u"C2 AND C1", VEX_E_LOGIC_UNSUPPORTED, 0, 0},
      {"Size|=|1;Size|=|1", u"", S_OK, 0, 0},
      {"Size|=|1;Size|=|1 OR 2", u"", VEX_E_OR_UNSUPPORTED, 2, 1, 0},
      {"Size|=|1;Name|=|abc OR abcd", u"", VEX_E_VALUE_TOO_LONG, 2, 1, 1, 3},
      {"Size|=|1;Name|=|abc OR abcd", u"", S_OK, 0, 1, 1, 4},
  };
  const auto store = MakeRef<test::ChangingStore>(m_store);
  for (const auto& c : kCases) {
    SCOPED_TRACE(std::string(c.conditions) + " " + cor::ToUtf8(c.logic));
    Use(m_store);
    Fill(c.conditions, c.logic);
    store->Model().m_logic = c.customLogic;
    store->Model().m_several = c.severalValues;
    store->Model().m_longest = c.longest;
    WString text = u"old";
    EXPECT_EQ(c.code, m_query->GetExpression(*MakeRef<CDataStoreConfigHelper>(store.Get()), &text));
    EXPECT_EQ(Failed(c.code), text.empty()) << "no partial text";
    EXPECT_EQ(c.failed, m_query->GetFailedCondition());
  }
}

TEST_F(Expression, AsksForTheKindOfProperties) {
  const auto config = MakeRef<CDataStoreConfigHelper>(m_store.Get());
  for (const auto& [property, type, kinds] : {std::tuple{u"Name", 23, "sk"},
                                              {u"State", 24, "sk"},
                                              {u"Size", 3, "ik"},
                                              {u"Weight", 10, "rk"},
                                              {u"Step.Campaign.Start.Date", 30, "dk"},
                                              {u"Good", 11, "k"},
                                              {u"Nope", 0, ""},
                                              {u"", 0, ""}}) {
    Ref<IAttributeDataTypeHelper> helper;
    ASSERT_EQ(S_OK, config->MakePropertyHelper(u"MeaResult", property, helper.Put()));
    std::string all;
    if (helper->IsString() && helper->ForwardIsString()) all += 's';
    if (helper->IsInteger() && helper->ForwardIsInteger()) all += 'i';
    if (helper->IsReal() && helper->ForwardIsReal()) all += 'r';
    if (helper->IsDate() && helper->ForwardIsDate()) all += 'd';
    if (helper->IsKnown() && helper->ForwardIsKnown()) all += 'k';
    EXPECT_EQ(kinds, all) << cor::ToUtf8(property);
    EXPECT_EQ(type, helper->GetDataType());
    EXPECT_EQ(type, helper->ForwardGetDataType());
  }
}

TEST_F(Expression, GoesAsDeepAsTheLogic) {
  Fill("Size|=|1");
  constexpr std::size_t kDeep = 100'000;
  WString logic;
  logic.append(kDeep, u'(').append(u"C1").append(kDeep, u')');
  ASSERT_EQ(S_OK, Conditions().SetLogicNormalised(logic));
  WString text;
  ASSERT_EQ(S_OK, Build(&text));
  EXPECT_LT(kDeep * 30, text.size());
}

}  // namespace
}  // namespace hv::vex
