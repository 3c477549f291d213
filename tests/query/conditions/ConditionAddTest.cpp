// query/conditions/ConditionAddTest.cpp - what Add takes and refuses, by name and typed.
#include "ConditionsFixture.h"

#include "automation/conv/VexTime.h"
#include "query/conditions/DateValue.h"

namespace hv::vex::test {
namespace {

const Variant kMoment = Variant::Date(39950.43767361111);  // the same day at 10:30:15

TEST_F(ConditionsTest, AddChecksAndKeeps) {
  Variant seven = T(u"7");
  Variant reference = Variant::RefTo(&seven);
  Variant two = Variant::Array({Variant::I4(5), T(u"a OR b")});
  const Variant time =
      Variant::Object(CreateTime(util::conv::TimeValue::FromText("20090517103015")).Get());
  const auto badOperator = [](const std::string& text) {
    return "212 The text " + text +
           " is not a valid value for the argument Operator of the method Add.";
  };
  const auto noLists = [](const std::string& op) {
    return "301 The operator " + op + " does not support multiple values connected with OR.";
  };
  const std::string badValue =
      "303 The value of the argument Value of the method Add is not valid.";
  const std::string noDate =
      "297 The argument Value of the method Add must be either a date or VexTimeDisp.";
  const std::string noValue =
      "214 The argument passed to Value must be either a string or an integer.";
  const struct {
    std::u16string_view property, op;
    Variant value;
    std::string shown;  ///< operator, size, value text, first value and its type; or the error
    Result typed = S_OK;
  } kCases[] = {
      {u"Name", u"=", T(u"a*"), "=|1|a*|a*|8"},
      {u"Name", u"<>", T(u""), "<>|1|||8"},
      {u"Name", u"=", Variant(), "=|0||empty|0"},
      {u"Name", u"=", T(u"a or b oR c"), "=|3|a OR b OR c|a|8"},
      {u"Name", u"=", T(u"salt \\or pepper"), "=|1|salt \\or pepper|salt or pepper|8"},
      {u"Size", u">=", Variant::I4(5), ">=|1|5|5|3"},
      {u"Size", u"<", T(u"5"), "<|1|5|5|3"},
      {u"Mass", u"=", Variant::R8(0.1 + 0.2), "=|1|0.30000000000000004|0.3|5"},
      {u"Name", u"=", two, "=|2|5 OR a \\OR b|5|3"},
      {u"Name", u"=", Variant::Array({T(u"a OR b")}), "=|1|a \\OR b|a OR b|8"},
      {u"Size", u"=", Variant::RefTo(&reference), "=|1|7|7|3"},
      {u"Name", u"=", Variant::RefTo(&two), "=|2|5 OR a \\OR b|5|3"},
      {u"Day", u"=", kDay, "Date equal|1|05/17/2009|5/17/2009|7"},
      {u"Day", u">=", kMoment, "Date after|1|05/17/2009 10:30:15|5/17/2009 10:30:15 AM|7"},
      {u"Day", u"Date before", time, "Date before|1|05/17/2009 10:30:15|object|9"},
      {u"Day", u"<=", T(u"5/17/2009 10:30:15"),
       "Date before|1|05/17/2009 10:30:15|5/17/2009 10:30:15 AM|7"},
      {u"Day", u"#", T(u"LastSevenDays"), "Relative range|1|LastSevenDays|LastSevenDays|8"},
      {u"Day", u"relative range", T(u"Last 7 days"), "Relative range|1|Last 7 days|Last 7 days|8"},

      {u"Nix", u"?", T(u"a"),
       "212 The text Nix is not a valid value for the argument Property of the method Add.",
       VEX_E_INVALID_PROPERTY},
      {u"Name", u"", Variant::Null(), badOperator(""), VEX_E_BAD_OPERATOR},
      {u"Name", u"<", T(u"a"), badOperator("<"), VEX_E_BAD_OPERATOR},
      {u"Size", u"#", T(u"Today"), badOperator("#"), VEX_E_BAD_OPERATOR},
      {u"Size", u"Date after", Variant::I4(1), badOperator("Date after"), VEX_E_BAD_OPERATOR},
      {u"Day", u">", kDay, badOperator(">"), VEX_E_BAD_OPERATOR},
      {u"Name", u"<>", T(u"a Or b"), noLists("<>"), VEX_E_OR_OPERATOR},
      {u"Size", u">", two, noLists(">"), VEX_E_OR_OPERATOR},
      {u"Name", u"=", Variant::Null(), noValue, E_INVALIDARG},
      {u"Name", u"=", Variant::Missing(), noValue, E_INVALIDARG},
      {u"Name", u"=", Variant::Array({T(u"a"), Variant::Null()}), badValue, VEX_E_BAD_VALUE},
      {u"Name", u"=", Variant::Array({two}), badValue, VEX_E_BAD_VALUE},
      {u"Day", u"#", T(u"lastsevendays"), badValue, VEX_E_BAD_VALUE},
      {u"Day", u"#", kDay, badValue, VEX_E_BAD_VALUE},
      {u"Day", u"=", T(u"hello"), noDate, VEX_E_BAD_VALUE},
      {u"Day", u"=", Variant::Null(), noDate, VEX_E_BAD_VALUE},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(&c - kCases);
    ASSERT_EQ(S_OK, m_conditions->RemoveAll());
    const Answer added = Get(m_face.Get(), u"Add", T(u"Test"), T(c.property), T(c.op), c.value);
    std::string shown = added.Shown();
    if (added.Object()) {
      Ref<IConditionImpl> logic;
      ASSERT_EQ(S_OK, m_conditions->GetItem(0, logic.Put()));
      shown = Eval(added.Object(), "Operator").Shown() + "|" +
              Eval(added.Object(), "Size").Shown() + "|" + cor::ToUtf8(logic->GetValueText()) +
              "|" + Eval(added.Object(), "Value").Shown() + "|" +
              std::to_string(logic->GetFirstValue().Type());
    }
    EXPECT_EQ(c.shown, shown);
    ExpectShown(m_face.Get(), {{"Count", Failed(c.typed) ? "0" : "1"}});
    Ref<ISVEXCondition> condition;
    EXPECT_EQ(c.typed, m_face->Add(u"Test", c.property, c.op, c.value, condition.Put()));
    EXPECT_EQ(Failed(c.typed), !condition);
  }
  const auto bad = [](const std::string& text, const std::string& argument) {
    return "212 The text " + text + " is not a valid value for the argument " + argument +
           " of the method Add.";
  };
  ExpectShown(m_face.Get(), {{"RemoveAll", "empty"},
                             {"Add('Tset','Name','=','a')", bad("Tset", "Type")},
                             {"Add(null,'Nix','?','a')", bad("", "Type")},
                             {"Add('Test',null,'=','a')", bad("", "Property")},
                             {"Add('Test','Name',null,'a')", bad("", "Operator")},
                             {"Count", "0"}});
  Ref<ISVEXCondition> none;
  EXPECT_EQ(VEX_E_BAD_TYPE_ARGUMENT, m_face->Add(u"Tset", u"Name", u"=", T(u"a"), none.Put()));
  EXPECT_FALSE(none);
}

TEST_F(ConditionsTest, GiveTheStoresNameWhereItTakesNoLists) {
  class OneValue final : public CDataStoreConditionCollImpl {
   public:
    using CDataStoreConditionCollImpl::CDataStoreConditionCollImpl;
    Result CheckOperatorForOr(std::u16string_view) override { return VEX_E_OR_UNSUPPORTED; }
    Result SetLogic(std::u16string_view) override { return VEX_E_LOGIC_UNSUPPORTED; }
  };
  ExpectShown(
      MakeRef<CDataStoreConditionCollInt>(MakeRef<OneValue>(&m_query, m_model.Get())).Get(),
      {{"Add('Test','Name','=','a OR b')",
        "326 The data store Bench does not support multiple values connected with OR."},
       {"Logic = 'C1 OR C2'",
        "325 The data store Bench does not support queries with a custom logical operation (e.g. "
        "with \"OR\")."}});
}

TEST_F(ConditionsTest, KnowNothingOfTypesWithoutAStore) {
  const auto conditions = MakeRef<easyImpl::CConditionCollImpl>(nullptr);
  ExpectShown(
      MakeRef<CConditionCollInt>(conditions).Get(),
      {{"Add('any','thing','#','Today').Operator", "#"},
       {"Add('any','thing','like','a')",
        "212 The text like is not a valid value for the argument Operator of the method Add."},
       {"Add('','thing','=','a')",
        "212 The text  is not a valid value for the argument Type of the method Add."}});
  EXPECT_TRUE(conditions->GetStoreName().empty());
}

TEST(ConditionDates, ReadTheFormatOfTheLanguageOnly) {
  constexpr struct {
    std::u16string_view text;
    Language language;
    std::u16string_view shown;  ///< under ">=", in the same language; empty if it is no date
  } kDates[] = {
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
  for (const auto& c : kDates) {
    SCOPED_TRACE(cor::ToUtf8(c.text));
    const std::optional<Variant> date = DateFromText(c.text, c.language);
    EXPECT_EQ(c.shown, DateToText(date.value_or(Variant()), u">=", c.language).view());
  }
  EXPECT_EQ(u"17.05.2009", DateToText(kMoment, u"=", Language::German).view());
  EXPECT_TRUE(DateToText(T(u"17.05.2009"), u"=").empty());
}

}  // namespace
}  // namespace hv::vex::test
