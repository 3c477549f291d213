// query/conditions/ConditionFieldsTest.cpp - reading conditions, copying them, and moving them to
// another model.
#include "ConditionsFixture.h"

#include "automation/conv/VexTime.h"
#include "query/values/RelativeRange.h"

namespace hv::vex::test {
namespace {

TEST_F(ConditionsTest, ShowOnlyAlternativesAmongSeveralValues) {
  constexpr struct {
    std::u16string_view op;
    std::int32_t count;
    const char* values;  ///< by name, from index 0 to the size
    std::int32_t effectiveSize;
  } kCases[] = {
      {u"=", 0, "", 0},
      {u"=", 1, "a ", 1},
      {u"=", 3, "a b c ", 3},
      {u"<>", 1, "a ", 1},
      {u"<>", 2, "empty empty ", 0},
      {u"#", 2, "empty empty ", 0},
  };
  const Variant values[] = {T(u"a"), T(u"b"), T(u"c")};
  for (const auto& c : kCases) {
    ASSERT_EQ(S_OK, m_conditions->RemoveAll());
    const Ref<IConditionImpl> logic = AddNamed(u"", u"Name", c.op, Variant());
    ASSERT_EQ(S_OK, logic->SetValues({values, values + c.count}, u"text"));
    std::string shown;
    for (std::int32_t i = 0; i <= c.count; ++i) {
      shown += Eval(m_face.Get(), "Item(1).Values(" + std::to_string(i) + ")").Shown() + " ";
    }
    const std::string count = std::to_string(c.count);
    EXPECT_EQ(c.values + ("211 The index " + count) + " is out of range for the property Values. ",
              shown);
    ExpectShown(m_face.Get(), {{"Item(1).Size", count},
                               {"Item(1).Values(-1)",
                                "211 The index -1 is out of range for the property Values."}});
    EXPECT_EQ(c.effectiveSize, logic->GetEffectiveSize());
    // Without a collection nobody tells which operators take several values.
    ASSERT_EQ(S_OK, m_conditions->RemoveAt(0));
    EXPECT_EQ(c.count, logic->GetEffectiveSize());
  }
}

TEST_F(ConditionsTest, NameOperatorsOfDates) {
  const Ref<IConditionImpl> plain = AddNamed(u"", u"Size", u"Date after", Variant::I4(1));
  EXPECT_EQ(u">=", plain->GetOperatorForDisplay().view());
  ASSERT_EQ(S_OK, plain->SetValue(kDay, u"17.05."));
  EXPECT_EQ(u"Date after", plain->GetOperatorForDisplay().view()) << "the value tells";
  ASSERT_EQ(S_OK, plain->SetFromText(u"1"));
  ASSERT_EQ(S_OK, plain->SetDataType(eTime));
  EXPECT_EQ(u"Date after", plain->GetOperatorForDisplay().view()) << "the type tells";
  ASSERT_EQ(S_OK, plain->SetOperator(u"<>"));
  EXPECT_EQ(u"<>", plain->GetOperatorForDisplay().view());
  ASSERT_EQ(S_OK, plain->SetOperator(u"date EQUAL"));
  EXPECT_EQ(u"=", plain->GetOperatorSymbol().view());
  const Ref<IConditionImpl> date = AddNamed(u"", u"Day", u"<=", T(u"soon"));
  ASSERT_EQ(S_OK, date->SetDataType(eString));
  EXPECT_EQ(u"Date before", date->GetOperatorForDisplay().view()) << "the property tells";
}

TEST_F(ConditionsTest, TakeNewNamesOfPropertyAndType) {
  m_model->m_hasLocalNames = true;
  const Ref<IConditionImpl> condition = AddNamed(u"", u"Name", u"=", T(u"5"));
  EXPECT_EQ(u"engName", condition->GetShownProperty().view());
  EXPECT_EQ(u"engTest", condition->GetShownType().view());
  EXPECT_EQ(u"aoName", condition->GetInternalProperty().view());
  EXPECT_TRUE(condition->GetFirstValue().Is(VT_BSTR));
  // A source of names that fails, and one that throws, leave the plain names.
  for (const auto* property : {u"Size", u"Mass"}) {
    ASSERT_EQ(S_OK, condition->SetProperty(property));
    EXPECT_EQ(property, condition->GetShownProperty().str());
    EXPECT_EQ(u"Test", condition->GetShownType().str());
    EXPECT_EQ(WString(u"ao") + property, condition->GetInternalProperty());
    ASSERT_EQ(S_OK, condition->SetFromText(u"5"));
    EXPECT_TRUE(
        condition->GetFirstValue().Is(property == std::u16string_view(u"Size") ? VT_I4 : VT_R8));
  }
  ASSERT_EQ(S_OK, condition->SetType(u"Unknown"));
  EXPECT_EQ(u"Unknown", condition->GetInternalType().view()) << "what can't be resolved is kept";
  EXPECT_EQ(u"Mass", condition->GetInternalProperty().view());

  Ref<IConditionImpl> read;
  ASSERT_EQ(S_OK, m_conditions->AddResolved(u"C5", u"Test", u"Size", u"a.b", u"size", u"Date equal",
                                            Variant::I4(5), read.Put()));
  EXPECT_EQ("C1 C5", Names());
  EXPECT_EQ(u"a.b size =", (read->GetInternalType() + u" " + read->GetInternalProperty() + u" " +
                            read->GetOperatorSymbol())
                               .view());
}

TEST_F(ConditionsTest, CompareEveryFieldExactly) {
  const auto other = MakeRef<CDataStoreConditionCollImpl>(nullptr, m_model.Get());
  AddNamed(u"", u"Name", u"=", T(u"a"));
  AddNamed(u"", u"Size", u">", Variant::I4(1));
  EXPECT_FALSE(m_conditions->Compare(*other));
  ASSERT_EQ(S_OK, other->AssignFrom(*m_conditions));
  ASSERT_TRUE(other->Compare(*m_conditions));

  Ref<IConditionImpl> condition;
  ASSERT_EQ(S_OK, other->GetItem(0, condition.Put()));
  const auto differsAfter = [&](Result changed) {
    return changed == S_OK && !other->Compare(*m_conditions);
  };
  EXPECT_TRUE(differsAfter(condition->SetFromText(u"A")));
  EXPECT_FALSE(differsAfter(condition->SetFromText(u"a")));
  EXPECT_TRUE(differsAfter(condition->SetOperator(u"<>")));
  EXPECT_FALSE(differsAfter(condition->SetOperator(u"=")));
  EXPECT_TRUE(differsAfter(condition->SetProperty(u"name")));
  EXPECT_FALSE(differsAfter(condition->SetProperty(u"Name")));
  EXPECT_TRUE(differsAfter(other->SetLogic(u"OR")));
  EXPECT_FALSE(differsAfter(other->SetLogic(u""))) << "a chain written out is the same logic";
  m_model->m_prefix = u"xo";
  EXPECT_TRUE(differsAfter(condition->SetType(u"Test"))) << "internal names count";
}

TEST_F(ConditionsTest, CopyAllOrWhatTheLogicNames) {
  constexpr std::tuple<std::u16string_view, const char*, std::u16string_view> kCases[] = {
      {u"", "C1 C2 C10", u"C1 AND C2 AND C10"},
      {u"C10", "C10", u"C10"},
      {u"(C2 OR C10)", "C2 C10", u"(C2 OR C10)"},
      {u"C2OR C1", "C1 C2", u"C2OR C1"},
  };
  ASSERT_EQ(S_OK, AddNamed(u"", u"Name", u"=", T(u"a OR b"))->SetDataType(eR64));
  AddNamed(u"", u"Size", u">", Variant::I4(1));
  AddNamed(u"C10", u"Day", u"=", kDay);
  const Ref<CDataStoreConditionCollImpl> source = m_conditions;
  for (const auto& [logic, names, copied] : kCases) {
    ASSERT_EQ(S_OK, logic.empty() ? S_OK : source->SetLogic(logic));
    m_conditions = MakeRef<CDataStoreConditionCollImpl>(nullptr, m_model.Get());
    ASSERT_EQ(S_OK, m_conditions->CopyReferenced(*source));
    EXPECT_EQ(names, Names());
    EXPECT_EQ(copied, m_conditions->GetStoredLogic().view());
    ASSERT_EQ(S_OK, m_conditions->CopyReferenced(*m_conditions)) << "itself";
    EXPECT_EQ(names, Names());
  }
  // A copy has everything, and nothing in common with what it was made of.
  ASSERT_EQ(S_OK, m_conditions->AssignFrom(*source));
  Ref<IConditionImpl> copy;
  ASSERT_EQ(S_OK, m_conditions->GetItemByName(u"C1", copy.Put()));
  std::vector<Variant> values;
  ASSERT_EQ(S_OK, copy->CopyValues(&values));
  EXPECT_EQ(2U, values.size());
  EXPECT_EQ(eR64, copy->GetDataType()) << "as it was last known";
  EXPECT_EQ(u"aoTest", copy->GetInternalType().view());
  ASSERT_EQ(S_OK, source->RemoveAll());
  EXPECT_EQ("C1 C2 C10", Names());
  EXPECT_EQ(u"C2OR C1", m_conditions->GetStoredLogic().view());
  ASSERT_EQ(S_OK, m_conditions->AddClone(*copy)) << "its name is taken";
  EXPECT_EQ("C1 C2 C10", Names());
}

TEST_F(ConditionsTest, AddByDefaultWhatThePropertyAsksFor) {
  Ref<IConditionImpl> condition;
  ASSERT_EQ(S_OK, m_conditions->AddDefault(u"Test", u"Size", condition.Put()));
  EXPECT_EQ(u"=", condition->GetOperatorSymbol().view());
  EXPECT_EQ(u"", condition->GetFirstValue().AsText().view());
  double before = 0;
  double after = 0;
  ASSERT_TRUE(automation::SystemTimeToVariantTime(LocalNow(), &before));
  ASSERT_EQ(S_OK, m_conditions->AddDefault(u"Test", u"Day", condition.Put()));
  ASSERT_TRUE(automation::SystemTimeToVariantTime(LocalNow(), &after));
  EXPECT_EQ(u">=", condition->GetOperatorSymbol().view());
  ASSERT_TRUE(condition->GetFirstValue().Is(VT_DATE));
  EXPECT_LE(before, condition->GetFirstValue().AsDouble());
  EXPECT_GE(after, condition->GetFirstValue().AsDouble());
  EXPECT_EQ(19U, condition->GetValueText().size()) << "with the time of day";
}

TEST_F(ConditionsTest, FitValuesToTypes) {
  const Variant time = Variant::Object(CreateTime(util::conv::TimeValue()).Get());
  const std::tuple<std::int32_t, std::u16string_view, Variant, bool> kCases[] = {
      {eI8, u"=", Variant::I4(1), true},
      {eR64, u"=", T(u"1,5"), true},
      {eI32, u"=", Variant::Bool(true), true},
      {eU64, u"=", Variant::UInt(1), true},
      {eByte, u"=", Variant::I1(1), true},
      {kTypeEnumeration, u"=", T(u"red"), true},
      {eI32, u"=", time, false},
      {eI32, u"=", Variant(), false},
      {eString, u"=", T(u"x"), true},
      {eString, u"=", Variant::I4(1), false},
      {eTime, u"=", time, true},
      {eTime, u"=", kDay, true},
      {eTime, u"=", T(u"Today"), false},
      {eTime, u"#", T(u"Today"), true},
      {eTime, u"#", T(u"Someday"), false},
      {kTypeBoolean, u"=", Variant::Bool(true), false},
      {eNoType, u"=", T(u"x"), false},
  };
  for (const auto& [type, op, value, fits] : kCases) {
    SCOPED_TRACE(type);
    ASSERT_EQ(S_OK, m_conditions->RemoveAll());
    m_model->m_types[u"Any"] = type;
    ASSERT_EQ(S_OK, AddNamed(u"", u"Any", op, Variant())->SetValue(value, u"text"));
    EXPECT_EQ(fits ? S_OK : VEX_E_OTHER_STORE,
              m_conditions->Reattach(&m_query, m_model.Get(), false));
  }
}

TEST_F(ConditionsTest, MoveToAnotherModel) {
  AddNamed(u"", u"Size", u"=", Variant::I4(1));
  const Ref<IConditionImpl> second = AddNamed(u"", u"Name", u"=", T(u"x"));
  const auto other = MakeRef<ToyModel>();
  other->m_entity = u"Probe";
  other->m_prefix = u"xo";
  other->m_hasLocalNames = true;
  EXPECT_EQ(VEX_E_OTHER_STORE, m_conditions->Reattach(&m_query, other.Get(), false));
  EXPECT_EQ(u"Test", second->GetType().view());
  EXPECT_EQ(S_OK, m_conditions->Reattach(&m_query, other.Get(), true));
  EXPECT_EQ(u"engName", second->GetShownProperty().view());
  EXPECT_EQ(E_POINTER, m_conditions->Reattach(&m_query, nullptr, true));

  m_query.m_state = VEX_E_QUERY_BROWSE_PATH;
  m_conditions->Detach();
  // What is detached stays readable.
  ExpectShown(
      m_face.Get(),
      {{"Item(1).Values(0)", "1"},
       {"Add('Probe','Name','=','x')",
        "212 The text Probe is not a valid value for the argument Type of the method Add."}});
  EXPECT_EQ(S_OK, m_conditions->Reattach(&m_query, m_model.Get(), true));
  EXPECT_EQ(u"Test", second->GetType().view());
  std::int32_t size = 0;
  EXPECT_EQ(VEX_E_QUERY_BROWSE_PATH, second->GetSize(&size)) << "bound again";
}

TEST_F(ConditionsTest, AskTheQueryBeforeTheyCountValues) {
  const Ref<IConditionImpl> logic = AddNamed(u"", u"Name", u"=", T(u"x"));
  const auto condition = MakeRef<CDataStoreConditionInt>(logic);
  for (const auto& [state, message] :
       {std::pair{VEX_E_OBJECT_GONE, "323 The object is no longer valid."},
        {VEX_E_PARENT_GONE, "322 The parent object is no longer valid."},
        {VEX_E_QUERY_BROWSE_PATH, "369 The query does not match the browse path."}}) {
    m_query.m_state = state;
    ExpectShown(condition.Get(), {{"Size", message}, {"Values(0)", message}, {"Value", "x"}});
  }
  // The collection goes, the condition stays with its fields.
  m_face.Reset();
  m_conditions.Reset();
  ExpectShown(
      condition.Get(),
      {{"Size", "1"}, {"Name", "C1"}, {"Type", "Test"}, {"Property", "Name"}, {"Operator", "="}});
}

TEST_F(ConditionsTest, AnswerByName) {
  ExpectShown(m_face.Get(),
              {{"AddOrderBy('Test','Size',0).OrderBy", "0"},
               {"Item(1).OrderBy = 1", "245 OrderBy not implemented."},
               {"AddOrderBy('Test','Size',2)", "245 AddOrderBy not implemented."},
               {"Count", "2"},  // the condition stays
               {"AddOrderBy('Tset','Size',0)",
                "212 The text Tset is not a valid value for the argument Type of the method "
                "AddOrderBy."},
               {"AddOrderBy('Test','Nix',0)",
                "212 The text Nix is not a valid value for the argument Property of the method "
                "AddOrderBy."}});
  EXPECT_EQ("C1 C2", hv::test::NamesOf(m_face.Get()));
  const Answer second = hv::test::Index(m_face.Get(), Variant::I4(2));
  ExpectShown(second.Object(), {{"Name", "C2"}});
  for (const std::string index : {"-1", "0", "3"}) {
    const std::string refused =
        "215 The index " + index + " does not correspond to a member of the collection.";
    ExpectShown(m_face.Get(),
                {{"Item(" + index + ")", refused}, {"Remove(" + index + ")", refused}});
  }
  ExpectShown(m_face.Get(), {{"Logic = 'C1 XOR C2'",
                              "298 The provided logical operation: C1 XOR C2 is not valid."},
                             {"Logic = 'OR'", "empty"},
                             {"Remove(1)", "empty"},
                             {"Logic", "C2"},
                             {"Renumber", "empty"},
                             {"Logic", "C1"},
                             {"RemoveAll", "empty"},
                             {"Count", "0"}});
  EXPECT_EQ(E_POINTER, m_face->Add(u"", u"", u"", Variant(), nullptr)) << "before all other checks";
}

}  // namespace
}  // namespace hv::vex::test
