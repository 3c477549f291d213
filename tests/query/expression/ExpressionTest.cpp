// tests/query/expression/ExpressionTest.cpp - the text of conditions, and that engines find by it.
#include "query/expression/ExpressionText.h"
#include "query/logic/LogicParser.h"
#include "tests/elements/TestElement.h"
#include "tests/query/objects/QueryFixture.h"

namespace hv::vex {
namespace {

using Texts = std::vector<std::string>;

struct TextCase {
  const char* name;
  Texts conditions;
  std::u16string_view logic;
  const char* body;
  const char* hits;
};

class ExpressionFinds : public QueryTest, public ::testing::WithParamInterface<TextCase> {};

TEST_P(ExpressionFinds, TheSameInFilesAndDatabases) {
  const TextCase& c = GetParam();
  for (const bool isDatabase : {false, true}) {
    SCOPED_TRACE(isDatabase ? "database" : "file");
    Use(isDatabase ? OpenBenchDatabase() : OpenBench());
    ASSERT_NO_FATAL_FAILURE(Fill(c.conditions, c.logic));
    WString text;
    ASSERT_EQ(S_OK, Build(&text));
    EXPECT_EQ(c.body, Short(text));
    EXPECT_EQ(c.hits, Hits(text));
  }
}

const TextCase kTextCases[] = {
    // texts
    {"OneCondition", {"MeaResult|Name|=|a*"}, u"", "AND(=(Name w'a*'))", "1 2 4"},
    {"TextUnequal", {"MeaResult|Name|<>|a*"}, u"", "AND(!=(Name w'a*'))", "3 5 6 7 8"},
    {"Less", {"MeaResult|Name|=|a<b"}, u"", "AND(=(Name w'a&lt;b'))", "4"},
    {"Marks",
     {"MeaResult|Name|=|Zoe & \"Tom\"", "MeaResult|Name|=|O'Neil"},
     u"OR",
     "OR(=(Name w'Zoe &amp; &quot;Tom&quot;')=(Name w'O&apos;Neil'))",
     "6 7"},
    {"MarkedProperty", {"MeaResult|P & Q|=|*"}, u"", "AND(=(P &amp; Q w'*'))", ""},
    {"TypedTab", {"MeaResult|Name|=|al\tha"}, u"", "AND(=(Name w'al?ha'))", "1"},
    {"TypedLines", {"MeaResult|Name|=|a\r\na\nn\r"}, u"", "AND(=(Name w'a*a*n*'))", ""},
    {"BaseName", {"MeaResult|Title|=|run 3"}, u"", "AND(=(name w'run 3'))", "3"},
    {"Enumeration", {"MeaResult|State|<>|done"}, u"", "AND(!=(State w'done'))", "1 3 5 7"},
    // several values
    {"AnyOfTwo",
     {"MeaResult|Name|=|alpha OR beta"},
     u"",
     "AND(OR(=(Name w'alpha')=(Name w'beta')))",
     "1 3"},
    {"AnyOfTwoInOr",
     {"MeaResult|Name|=|alpha OR beta", "MeaResult|Size|>|7"},
     u"C1 OR C2",
     "OR(=(Name w'alpha')=(Name w'beta')&gt;(Size p'7'))",
     "1 3 8"},
    {"AnyOfNumbers", {"MeaResult|Size|=|2 or 4"}, u"", "AND(OR(=(Size p'2')=(Size p'4')))", "2 4"},
    {"TheWordItself",
     {"MeaResult|Name|=|salt \\OR pepper"},
     u"",
     "AND(=(Name w'salt OR pepper'))",
     "5"},
    // numbers
    {"Unequal", {"MeaResult|Size|<>|3"}, u"", "AND(&lt;&gt;(Size p'3'))", "1 2 4 5 6 7 8"},
    {"Between",
     {"MeaResult|Size|>=|3", "MeaResult|Weight|<|5"},
     u"",
     "AND(&gt;=(Size p'3')&lt;(Weight p'5'))",
     "3 4 5"},
    {"UpTo", {"MeaResult|Weight|<=|0.5"}, u"", "AND(&lt;=(Weight p'0.5'))", "1"},
    // dates
    {"Day",
     {"MeaResult|Time|=|@20090517093000"},
     u"",
     "AND(&gt;=(Time p'20090517000000')&lt;=(Time p'20090517235959'))",
     "2 3 4"},
    {"DayInOr",
     {"MeaResult|Time|=|@20090517", "MeaResult|Size|=|8"},
     u"C1 OR C2",
     "OR(AND(&gt;=(Time p'20090517000000')&lt;=(Time p'20090517235959'))=(Size p'8'))",
     "2 3 4 8"},
    {"AfterHasTime",
     {"MeaResult|Time|Date after|@20090517120000"},
     u"",
     "AND(&gt;=(Time p'20090517120000'))",
     "3 4 5"},
    {"BeforeHasTime",
     {"MeaResult|Time|<=|@20090510080000"},
     u"",
     "AND(&lt;=(Time p'20090510080000'))",
     "6 7"},
    {"StrictHasNone",
     {"MeaResult|Time|>|@20090517120000"},
     u"",
     "AND(&gt;(Time p'20090517000000'))",
     "3 4 5"},
    {"UnequalHasNone",
     {"MeaResult|Time|<>|@20090517120000"},
     u"",
     "AND(&lt;&gt;(Time p'20090517000000'))",
     "1 3 4 5 6 7"},
    {"Yesterday",
     {"MeaResult|Time|#|Yesterday"},
     u"",
     "AND(&gt;=(Time p'20090516000000')&lt;=(Time p'20090516235959'))",
     "1"},
    {"LocalName",
     {"MeaResult|Time|#|Last 7 days"},
     u"",
     "AND(&gt;=(Time p'20090510000000')&lt;=(Time p'20090517153000'))",
     "1 2 3 6"},
    {"RangeInOr",
     {"MeaResult|Time|#|Today", "MeaResult|Time|#|LastThirtyDays"},
     u"C1 OR C2",
     "OR(AND(&gt;=(Time p'20090517000000')&lt;=(Time p'20090517235959'))"
     "AND(&gt;=(Time p'20090417000000')&lt;=(Time p'20090517153000')))",
     "1 2 3 4 6"},
    // ways
    {"Upward", {"Step|Name|=|cold"}, u"", "AND(=(Step.name w'cold'))", "1 2 3 4"},
    {"UpwardWithPoint",
     {"Campaign|Start.Date|=|@20090501"},
     u"",
     "AND(&gt;=(Step.Campaign.Start.Date p'20090501000000')"
     "&lt;=(Step.Campaign.Start.Date p'20090501235959'))",
     "1 2 3 4"},
    {"Downward", {"Channel|Name|=|torque"}, u"", "AND(=(Channels.name w'torque'))", "2"},
    {"AlongAPath",
     {"Step|Campaign.Title|=|Summer"},
     u"",
     "AND(=(Step.parent_test.name w'Summer'))",
     "5 6 7 8"},
    // logic
    {"Group",
     {"MeaResult|Size|=|1", "MeaResult|Size|=|2", "MeaResult|State|=|open"},
     u"(C1 OR C2) AND C3",
     "AND(OR(=(Size p'1')=(Size p'2'))=(State w'open'))",
     "1"},
    {"DayInGroup",
     {"MeaResult|Time|=|@20090516", "MeaResult|Size|=|2 OR 7", "MeaResult|Size|<|7"},
     u"(C1 OR C2) AND C3",
     "AND(OR(AND(&gt;=(Time p'20090516000000')&lt;=(Time p'20090516235959'))"
     "=(Size p'2')=(Size p'7'))&lt;(Size p'7'))",
     "1 2"},
    {"MixedIsNormalised",
     {"MeaResult|Size|=|1", "MeaResult|Size|>|4", "MeaResult|State|=|done"},
     u"C1 OR C2 AND C3",
     "OR(=(Size p'1')AND(&gt;(Size p'4')=(State w'done')))",
     "1 6 8"},
    {"Nested",
     {"MeaResult|Size|=|1", "MeaResult|Size|=|2", "MeaResult|Size|=|3"},
     u"((C1)) OR (C2 OR (C3 AND C3))",
     "OR(AND(AND(=(Size p'1')))OR(=(Size p'2')AND(=(Size p'3')=(Size p'3'))))",
     "1 2 3"},
    {"UnnamedIsLeftOut",
     {"MeaResult|Size|=|1", "MeaResult|Size|=|2"},
     u"C2",
     "AND(=(Size p'2'))",
     "2"},
    {"UnfinishedIsWritten",
     {"MeaResult|Size|=|1", "MeaResult|Name|=|<Enter a value>"},
     u"C1 OR C2",
     "OR(=(Size p'1')=(Name w'&lt;Enter a value&gt;'))",
     "1"},
};
INSTANTIATE_TEST_SUITE_P(Texts, ExpressionFinds, ::testing::ValuesIn(kTextCases),
                         [](const auto& row) { return std::string(row.param.name); });

class Expression : public QueryTest {
 protected:
  Expression() { Use(OpenBench()); }
};

TEST_F(Expression, IsWrittenByteForByte) {
  Fill({"MeaResult|Name|=|a*", "MeaResult|Size|>|3", "MeaResult|Time|#|Today"},
       u"(C1 AND C2) OR C3");
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
  Fill({"MeaResult|Name|<>|a", "MeaResult|Time|#|Today"});
  WString text;
  ASSERT_EQ(S_OK, m_query->GetExpression(*MakeRef<CDataStoreConfigHelper>(nullptr), &text));
  EXPECT_EQ("AND(&lt;&gt;(Name p'a')=(Time p'Today'))", Short(text));
}

TEST_F(Expression, BelowAnElementLooksForInstanceAttributes) {
  const auto record = Ref<IInstance>::Adopt(m_store->GetInstance(u"MeaResult:1"));
  const auto element = MakeRef<test::CTestElement>(*record);
  const auto config = MakeRef<CDataStoreConfigHelper>(m_store.Get());
  struct Case {
    Texts conditions;
    std::u16string_view logic;
    const char* body;
    const char* hits;
  };
  const std::string jane =
      "=(instance_attributes.values w'Jane')==(instance_attributes.name c'Operator')";
  const std::string jim =
      "=(instance_attributes.values w'Jim')==(instance_attributes.name c'Operator')";
  const Case cases[] = {
      {{"MeaResult|Operator|=|Jane", "MeaResult|Size|<|9"}, u"", "AND($&lt;(Size p'9'))", "2"},
      {{"MeaResult|Operator|=|Jane", "MeaResult|Size|=|5"}, u"OR", "OR(AND($)=(Size p'5'))", "2 5"},
      {{"MeaResult|Operator|=|Jane OR Jim"}, u"", "AND(OR(AND($)AND(#)))", "2 3"},
      {{"MeaResult|Operator|=|Jane OR Jim", "MeaResult|Size|=|5"},
       u"OR",
       "OR(AND($)AND(#)=(Size p'5'))",
       "2 3 5"},
      {{"MeaResult|Operator|<>|Jane"},
       u"",
       "AND(!=(instance_attributes.values w'Jane')==(instance_attributes.name c'Operator'))",
       "3"},
  };
  for (const Case& c : cases) {
    Use(m_store);
    Fill(c.conditions, c.logic);
    WString body = cor::FromUtf8(c.body);
    body.ReplaceAll(u"$", cor::FromUtf8(jane)).ReplaceAll(u"#", cor::FromUtf8(jim));
    WString text;
    ASSERT_EQ(S_OK, m_query->GetExpressionBelow(element.Get(), &text, *config));
    EXPECT_EQ(cor::ToUtf8(body), Short(text));
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
  Fill({"MeaResult|Size|=|1", "Step|Name|=|x"});
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

/// A store that can do less than ours.
class PoorStore final : public cor::Counted<IStoreConfigHelper> {
 public:
  bool m_logic = true;
  bool m_several = true;
  std::uint64_t m_longest = 0;
  Ref<CDataStoreConfigHelper> m_real;

  bool HasStore() override { return m_real->HasStore(); }
  bool SupportsCustomLogic() override { return m_logic; }
  bool SupportsMultipleValues() override { return m_several; }
  std::uint64_t GetLongestValue() override { return m_longest; }
  Result MakePropertyHelper(std::u16string_view type, std::u16string_view property,
                            IAttributeDataTypeHelper** helper) override {
    return m_real->MakePropertyHelper(type, property, helper);
  }

 private:
  ~PoorStore() override = default;
};

TEST_F(Expression, IsRefusedWithACodeAndTheCondition) {
  struct Case {
    Texts conditions;
    std::u16string_view logic;
    Result code;
    std::uint32_t failed;
    bool customLogic = true;
    bool severalValues = true;
    std::uint64_t longest = 0;
  };
  const std::string fine = "MeaResult|Size|=|1";
  const Case cases[] = {
      {{}, u"", E_INVALIDARG, 0},
      {{"MeaResult|Name|=|", "MeaResult|Name|=|<Enter a value>",
        "MeaResult|Name|=|<Enter a property>"},
       u"C1 OR (C2 AND C3)",
       E_INVALIDARG,
       0},
      {{fine, "MeaResult|Nope|=|1"}, u"C1", VEX_E_INVALID_PROPERTY, 2},
      {{fine, "Nobody|Size|=|1"}, u"", VEX_E_INVALID_PROPERTY, 2},
      {{fine, "MeaResult|Size|>|1 OR 2"}, u"", VEX_E_OR_OPERATOR, 2},
      {{fine, "MeaResult|Time|>=|soon"}, u"", VEX_E_VALUE_TYPE, 2},
      {{fine, fine}, u"C1 AND", VEX_E_BAD_LOGIC, 0},
      {{fine, fine}, u"C1 AND C9", VEX_E_BAD_LOGIC, 0},
      {{fine, fine}, u"C1 OR C2", VEX_E_LOGIC_UNSUPPORTED, 0, false},
      {{fine, fine}, u"C2 AND C1", VEX_E_LOGIC_UNSUPPORTED, 0, false},
      {{fine, fine}, u"", S_OK, 0, false},
      {{fine, "MeaResult|Size|=|1 OR 2"}, u"", VEX_E_OR_UNSUPPORTED, 2, true, false},
      {{fine, "MeaResult|Name|=|abc OR abcd"}, u"", VEX_E_VALUE_TOO_LONG, 2, true, true, 3},
      {{fine, "MeaResult|Name|=|abc OR abcd"}, u"", S_OK, 0, true, true, 4},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(cor::ToUtf8(c.logic) + " " + std::to_string(CodeOf(c.code)));
    Use(m_store);
    Fill(c.conditions, c.logic);
    const auto config = MakeRef<PoorStore>();
    config->m_logic = c.customLogic;
    config->m_several = c.severalValues;
    config->m_longest = c.longest;
    config->m_real = MakeRef<CDataStoreConfigHelper>(m_store.Get());
    WString text = u"old";
    EXPECT_EQ(c.code, m_query->GetExpression(*config, &text));
    EXPECT_EQ(Failed(c.code), text.empty()) << "no partial text";
    EXPECT_EQ(c.failed, m_query->GetFailedCondition());
  }
}

TEST_F(Expression, GoesAsDeepAsTheLogic) {
  Fill({"MeaResult|Size|=|1"});
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
