// query/conditions/ConditionAddTest.cpp - what Add takes and refuses, by name and typed.
#include "ConditionsFixture.h"

#include "automation/conv/VexTime.h"
#include "query/conditions/DateValue.h"

namespace hv::vex::test {
namespace {

Variant T(std::u16string_view text) { return Variant::Text(text); }

/// 2009-05-17, and the same day at 10:30:15.
const Variant kDay = Variant::Date(39950);
const Variant kMoment = Variant::Date(39950.43767361111);
const std::string kBadValue = "303 The value of the argument Value of the method Add is not valid.";
const std::string kNoDate =
    "297 The argument Value of the method Add must be either a date or VexTimeDisp.";

std::string BadText(const std::string& text, const std::string& argument) {
  return "212 The text " + text + " is not a valid value for the argument " + argument +
         " of the method Add.";
}

struct AddCase {
  const char* name;
  Variant type;
  Variant property;
  Variant op;
  Variant value;
  std::string shown;  ///< operator, size, value text, first value and its type; or the error
  Result typed = S_OK;
};

class ConditionAdd : public ConditionsTest, public ::testing::WithParamInterface<AddCase> {};

TEST_P(ConditionAdd, ChecksAndKeeps) {
  const AddCase& c = GetParam();
  Answer answer = Get(m_face.Get(), u"Add", c.type, c.property, c.op, c.value);
  std::string shown = answer.Shown();
  if (shown == "object") {
    const Ref<IDispatch> condition = Ref<IDispatch>::Share(answer.Object());
    Ref<IConditionImpl> logic;
    ASSERT_EQ(S_OK, m_conditions->GetItem(0, logic.Put()));
    shown = Get(condition.Get(), u"Operator").Shown() + "|" +
            Get(condition.Get(), u"Size").Shown() + "|" + cor::ToUtf8(logic->GetValueText()) + "|" +
            Get(condition.Get(), u"Value").Shown() + "|" +
            std::to_string(logic->GetFirstValue().Type());
  }
  EXPECT_EQ(c.shown, shown);
  std::int32_t count = 0;
  ASSERT_EQ(S_OK, m_conditions->GetCount(&count));
  EXPECT_EQ(Failed(c.typed) ? 0 : 1, count);

  const bool isTyped = c.type.Is(VT_BSTR) && c.property.Is(VT_BSTR) && c.op.Is(VT_BSTR);
  if (!isTyped) return;
  Ref<ISVEXCondition> condition;
  EXPECT_EQ(c.typed, m_face->Add(c.type.AsText(), c.property.AsText(), c.op.AsText(), c.value,
                                 condition.Put()));
  EXPECT_EQ(Failed(c.typed), !condition);
}

Variant Two() { return Variant::Array({Variant::I4(5), T(u"a OR b")}); }
Variant Referred() {
  static Variant target = T(u"7");
  static Variant middle = Variant::RefTo(&target);
  return Variant::RefTo(&middle);
}
Variant ReferredArray() {
  static Variant target = Two();
  return Variant::RefTo(&target);
}
Variant TimeObject() {
  return Variant::Object(CreateTime(util::conv::TimeValue::FromText("20090517103015")).Get());
}

const AddCase kCases[] = {
    {"Text", T(u"Test"), T(u"Name"), T(u"="), T(u"a*"), "=|1|a*|a*|8"},
    {"EmptyText", T(u"Test"), T(u"Name"), T(u"<>"), T(u""), "<>|1|||8"},
    {"Nothing", T(u"Test"), T(u"Name"), T(u"="), Variant(), "=|0||empty|0"},
    {"Folded", T(u"Test"), T(u"Name"), T(u"="), T(u"a or b oR c"), "=|3|a OR b OR c|a|8"},
    {"Escaped", T(u"Test"), T(u"Name"), T(u"="), T(u"salt \\or pepper"),
     "=|1|salt \\or pepper|salt or pepper|8"},
    {"Number", T(u"Test"), T(u"Size"), T(u">="), Variant::I4(5), ">=|1|5|5|3"},
    {"NumberText", T(u"Test"), T(u"Size"), T(u"<"), T(u"5"), "<|1|5|5|3"},
    {"AllDigits", T(u"Test"), T(u"Mass"), T(u"="), Variant::R8(0.1 + 0.2),
     "=|1|0.30000000000000004|0.3|5"},
    {"Array", T(u"Test"), T(u"Name"), T(u"="), Two(), "=|2|5 OR a \\OR b|5|3"},
    {"ArrayOfOne", T(u"Test"), T(u"Name"), T(u"="), Variant::Array({T(u"a OR b")}),
     "=|1|a \\OR b|a OR b|8"},
    {"Reference", T(u"Test"), T(u"Size"), T(u"="), Referred(), "=|1|7|7|3"},
    {"ReferredArray", T(u"Test"), T(u"Name"), T(u"="), ReferredArray(), "=|2|5 OR a \\OR b|5|3"},
    {"Day", T(u"Test"), T(u"Day"), T(u"="), kDay, "Date equal|1|05/17/2009|5/17/2009|7"},
    {"Moment", T(u"Test"), T(u"Day"), T(u">="), kMoment,
     "Date after|1|05/17/2009 10:30:15|5/17/2009 10:30:15 AM|7"},
    {"TimeObject", T(u"Test"), T(u"Day"), T(u"Date before"), TimeObject(),
     "Date before|1|05/17/2009 10:30:15|object|9"},
    {"DateText", T(u"Test"), T(u"Day"), T(u"<="), T(u"5/17/2009 10:30:15"),
     "Date before|1|05/17/2009 10:30:15|5/17/2009 10:30:15 AM|7"},
    {"Range", T(u"Test"), T(u"Day"), T(u"#"), T(u"LastSevenDays"),
     "Relative range|1|LastSevenDays|LastSevenDays|8"},
    {"LocalRange", T(u"Test"), T(u"Day"), T(u"relative range"), T(u"Last 7 days"),
     "Relative range|1|Last 7 days|Last 7 days|8"},

    {"BadType", T(u"Tset"), T(u"Name"), T(u"="), T(u"a"), BadText("Tset", "Type"),
     VEX_E_BAD_TYPE_ARGUMENT},
    {"NullType", Variant::Null(), T(u"Nix"), T(u"?"), T(u"a"), BadText("", "Type"), E_FAIL},
    {"BadProperty", T(u"Test"), T(u"Nix"), T(u"?"), T(u"a"), BadText("Nix", "Property"),
     VEX_E_INVALID_PROPERTY},
    {"NullProperty", T(u"Test"), Variant::Null(), T(u"="), T(u"a"), BadText("", "Property"),
     E_FAIL},
    {"NoOperator", T(u"Test"), T(u"Name"), T(u""), Variant::Null(), BadText("", "Operator"),
     VEX_E_BAD_OPERATOR},
    {"NullOperator", T(u"Test"), T(u"Name"), Variant::Null(), T(u"a"), BadText("", "Operator"),
     E_FAIL},
    {"OperatorOfNumbers", T(u"Test"), T(u"Name"), T(u"<"), T(u"a"), BadText("<", "Operator"),
     VEX_E_BAD_OPERATOR},
    {"OperatorOfDates", T(u"Test"), T(u"Size"), T(u"#"), T(u"Today"), BadText("#", "Operator"),
     VEX_E_BAD_OPERATOR},
    {"DateNameForNumber", T(u"Test"), T(u"Size"), T(u"Date after"), Variant::I4(1),
     BadText("Date after", "Operator"), VEX_E_BAD_OPERATOR},
    {"StrictlyLaterDate", T(u"Test"), T(u"Day"), T(u">"), kDay, BadText(">", "Operator"),
     VEX_E_BAD_OPERATOR},
    {"OrText", T(u"Test"), T(u"Name"), T(u"<>"), T(u"a Or b"),
     "301 The operator <> does not support multiple values connected with OR.", VEX_E_OR_OPERATOR},
    {"OrArray", T(u"Test"), T(u"Size"), T(u">"), Two(),
     "301 The operator > does not support multiple values connected with OR.", VEX_E_OR_OPERATOR},
    {"NullValue", T(u"Test"), T(u"Name"), T(u"="), Variant::Null(),
     "214 The argument passed to Value must be either a string or an integer.", E_INVALIDARG},
    {"MissingValue", T(u"Test"), T(u"Name"), T(u"="), Variant::Missing(),
     "214 The argument passed to Value must be either a string or an integer.", E_INVALIDARG},
    {"NullElement", T(u"Test"), T(u"Name"), T(u"="), Variant::Array({T(u"a"), Variant::Null()}),
     kBadValue, VEX_E_BAD_VALUE},
    {"Dimensions", T(u"Test"), T(u"Name"), T(u"="), Variant::Array({Two()}), kBadValue,
     VEX_E_BAD_VALUE},
    {"NoRange", T(u"Test"), T(u"Day"), T(u"#"), T(u"lastsevendays"), kBadValue, VEX_E_BAD_VALUE},
    {"DateForRange", T(u"Test"), T(u"Day"), T(u"#"), kDay, kBadValue, VEX_E_BAD_VALUE},
    {"NoDate", T(u"Test"), T(u"Day"), T(u"="), T(u"hello"), kNoDate, VEX_E_BAD_VALUE},
    {"NullDate", T(u"Test"), T(u"Day"), T(u"="), Variant::Null(), kNoDate, VEX_E_BAD_VALUE},
};
INSTANTIATE_TEST_SUITE_P(Arguments, ConditionAdd, ::testing::ValuesIn(kCases),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(ConditionsTest, GiveTheStoresNameWhereItTakesNoLists) {
  class OneValue final : public CDataStoreConditionCollImpl {
   public:
    using CDataStoreConditionCollImpl::CDataStoreConditionCollImpl;
    Result CheckOperatorForOr(std::u16string_view) override { return VEX_E_OR_UNSUPPORTED; }
    Result SetLogic(std::u16string_view) override { return VEX_E_LOGIC_UNSUPPORTED; }
  };
  const auto face = MakeRef<CDataStoreConditionCollInt>(MakeRef<OneValue>(&m_query, m_model.Get()));
  EXPECT_EQ("326 The data store Bench does not support multiple values connected with OR.",
            Get(face.Get(), u"Add", T(u"Test"), T(u"Name"), T(u"="), T(u"a OR b")).Shown());
  EXPECT_EQ(325, Put(face.Get(), u"Logic", T(u"C1 OR C2")).error.number);
}

TEST_F(ConditionsTest, KnowNothingOfTypesWithoutAStore) {
  const auto conditions = MakeRef<easyImpl::CConditionCollImpl>(nullptr);
  const auto face = MakeRef<CConditionCollInt>(conditions);
  Answer condition = Get(face.Get(), u"Add", T(u"any"), T(u"thing"), T(u"#"), T(u"Today"));
  EXPECT_EQ("#", Get(condition.Object(), u"Operator").Shown());
  EXPECT_EQ(BadText("like", "Operator"),
            Get(face.Get(), u"Add", T(u"any"), T(u"thing"), T(u"like"), T(u"a")).Shown());
  EXPECT_EQ(212, Get(face.Get(), u"Add", T(u""), T(u"thing"), T(u"="), T(u"a")).error.number);
  EXPECT_TRUE(conditions->GetStoreName().empty());
}

TEST(ConditionDates, ReadTheFormatOfTheLanguageOnly) {
  struct DateCase {
    std::u16string_view text;
    Language language;
    std::u16string_view shown;  ///< under ">=", in the same language; empty if it is no date
  };
  constexpr DateCase kDates[] = {
      {u"05/17/2009", Language::English, u"05/17/2009 00:00:00"},
      {u" 5/7/2009 1:02 ", Language::English, u"05/07/2009 01:02:00"},
      {u"17.05.2009 10:30:15", Language::German, u"17.05.2009 10:30:15"},
      {u"2009/05/17", Language::Japanese, u"2009/05/17 00:00:00"},
      {u"17.05.2009", Language::English, u""},
      {u"05/17/2009", Language::German, u""},
      {u"13/01/2009", Language::English, u""},
      {u"02/29/2009", Language::English, u""},
      {u"02/29/2008", Language::English, u"02/29/2008 00:00:00"},
      {u"05/17/2009 24:00:00", Language::English, u""},
      {u"05/17/2009 x", Language::English, u""},
      {u"05M17D2009", Language::English, u""},
      {u"05/17", Language::English, u""},
      {u"05/17/2009/", Language::English, u""},
      {u"05/17/99999999999", Language::English, u""},
      {u"", Language::English, u""},
      {u" ", Language::English, u""},
  };
  for (const DateCase& c : kDates) {
    SCOPED_TRACE(cor::ToUtf8(c.text));
    const std::optional<Variant> date = DateFromText(c.text, c.language);
    EXPECT_EQ(c.shown, DateToText(date.value_or(Variant()), u">=", c.language).view());
  }
  EXPECT_EQ(u"17.05.2009", DateToText(kMoment, u"=", Language::German).view());
  EXPECT_TRUE(DateToText(T(u"17.05.2009"), u"=").empty());
}

}  // namespace
}  // namespace hv::vex::test
