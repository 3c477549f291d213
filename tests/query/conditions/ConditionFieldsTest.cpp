// query/conditions/ConditionFieldsTest.cpp - reading conditions, copying them, and moving them to
// another model.
#include "ConditionsFixture.h"

#include "automation/conv/VexTime.h"
#include "query/values/RelativeRange.h"

namespace hv::vex::test {
namespace {

Variant T(std::u16string_view text) { return Variant::Text(text); }
const Variant kDay = Variant::Date(39950);

TEST_F(ConditionsTest, ShowOnlyAlternativesAmongSeveralValues) {
  struct ValuesCase {
    std::u16string_view op;
    std::size_t count;
    const char* values;  ///< by name, from index 0 to the size
    std::int32_t effectiveSize;
  };
  constexpr ValuesCase kCases[] = {
      {u"=", 0, "", 0},     {u"=", 1, "v0 ", 1},           {u"=", 3, "v0 v1 v2 ", 3},
      {u"<>", 1, "v0 ", 1}, {u"<>", 2, "empty empty ", 0}, {u"#", 2, "empty empty ", 0},
  };
  for (const ValuesCase& c : kCases) {
    ASSERT_EQ(S_OK, m_conditions->RemoveAll());
    const Ref<IConditionImpl> logic = AddNamed(u"", u"Name", c.op, Variant());
    std::vector<Variant> values;
    for (std::size_t i = 0; i < c.count; ++i)
      values.push_back(T(u"v" + std::u16string(1, static_cast<char16_t>(u'0' + i))));
    ASSERT_EQ(S_OK, logic->SetValues(values, u"text"));
    const Answer condition = Get(m_face.Get(), u"Item", Variant::I4(1));
    std::string shown;
    for (std::size_t i = 0; i < c.count; ++i) {
      shown +=
          Get(condition.Object(), u"Values", Variant::I4(static_cast<std::int32_t>(i))).Shown() +
          " ";
    }
    EXPECT_EQ(c.values, shown);
    EXPECT_EQ(std::to_string(c.count), Get(condition.Object(), u"Size").Shown());
    EXPECT_EQ(c.effectiveSize, logic->GetEffectiveSize());
    EXPECT_EQ(
        "211 The index " + std::to_string(c.count) + " is out of range for the property Values.",
        Get(condition.Object(), u"Values", Variant::I4(static_cast<std::int32_t>(c.count)))
            .Shown());
    EXPECT_EQ(211, Get(condition.Object(), u"Values", Variant::I4(-1)).error.number);
    // Without a collection nobody tells which operators take several values.
    ASSERT_EQ(S_OK, m_conditions->RemoveAt(0));
    EXPECT_EQ(static_cast<std::int32_t>(c.count), logic->GetEffectiveSize());
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
  ASSERT_EQ(S_OK, condition->SetFromText(u"A"));
  EXPECT_FALSE(other->Compare(*m_conditions));
  ASSERT_EQ(S_OK, condition->SetFromText(u"a"));
  ASSERT_EQ(S_OK, condition->SetOperator(u"<>"));
  EXPECT_FALSE(other->Compare(*m_conditions));
  ASSERT_EQ(S_OK, condition->SetOperator(u"="));
  ASSERT_EQ(S_OK, condition->SetProperty(u"name"));
  EXPECT_FALSE(other->Compare(*m_conditions));
  ASSERT_EQ(S_OK, condition->SetProperty(u"Name"));
  ASSERT_TRUE(other->Compare(*m_conditions));
  ASSERT_EQ(S_OK, other->SetLogic(u"OR"));
  EXPECT_FALSE(other->Compare(*m_conditions));
  ASSERT_EQ(S_OK, other->SetLogic(u""));
  EXPECT_TRUE(other->Compare(*m_conditions)) << "a chain that is written out is the same logic";
  m_model->m_prefix = u"xo";
  ASSERT_EQ(S_OK, condition->SetType(u"Test"));
  EXPECT_FALSE(other->Compare(*m_conditions)) << "internal names count";
}

TEST_F(ConditionsTest, CopyAllOrWhatTheLogicNames) {
  struct CopyCase {
    std::u16string_view logic;
    const char* names;
    std::u16string_view copied;
  };
  constexpr CopyCase kCases[] = {
      {u"", "C1 C2 C10", u"C1 AND C2 AND C10"},
      {u"C10", "C10", u"C10"},
      {u"(C2 OR C10)", "C2 C10", u"(C2 OR C10)"},
      {u"C2OR C1", "C1 C2", u"C2OR C1"},
  };
  ASSERT_EQ(S_OK, AddNamed(u"", u"Name", u"=", T(u"a OR b"))->SetDataType(eR64));
  AddNamed(u"", u"Size", u">", Variant::I4(1));
  AddNamed(u"C10", u"Day", u"=", kDay);
  const Ref<CDataStoreConditionCollImpl> source = m_conditions;
  for (const CopyCase& c : kCases) {
    ASSERT_EQ(S_OK, c.logic.empty() ? S_OK : source->SetLogic(c.logic));
    m_conditions = MakeRef<CDataStoreConditionCollImpl>(nullptr, m_model.Get());
    ASSERT_EQ(S_OK, m_conditions->CopyReferenced(*source));
    EXPECT_EQ(c.names, Names());
    EXPECT_EQ(c.copied, m_conditions->GetStoredLogic().view());
    ASSERT_EQ(S_OK, m_conditions->CopyReferenced(*m_conditions)) << "itself";
    EXPECT_EQ(c.names, Names());
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
  struct FitCase {
    std::int32_t type;
    std::u16string_view op;
    Variant value;
    bool fits;
  };
  const FitCase kCases[] = {
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
  for (const FitCase& c : kCases) {
    SCOPED_TRACE(c.type);
    ASSERT_EQ(S_OK, m_conditions->RemoveAll());
    m_model->m_types[u"Any"] = c.type;
    const Ref<IConditionImpl> condition = AddNamed(u"", u"Any", c.op, Variant());
    ASSERT_EQ(S_OK, condition->SetValue(c.value, u"text"));
    EXPECT_EQ(c.fits ? S_OK : VEX_E_OTHER_STORE,
              m_conditions->Reattach(&m_query, m_model.Get(), false));
  }
}

TEST_F(ConditionsTest, MoveToAnotherModel) {
  const Ref<IConditionImpl> first = AddNamed(u"", u"Size", u"=", Variant::I4(1));
  const Ref<IConditionImpl> second = AddNamed(u"", u"Name", u"=", T(u"x"));
  const auto other = MakeRef<ToyModel>();
  other->m_entity = u"Probe";
  other->m_prefix = u"xo";
  other->m_hasLocalNames = true;
  EXPECT_EQ(VEX_E_OTHER_STORE, m_conditions->Reattach(&m_query, other.Get(), false));
  EXPECT_EQ(u"Test", first->GetType().view());
  // The first one moves, the second stays as it was.
  other->m_types[u"Name"] = eTime;
  EXPECT_EQ(VEX_E_OTHER_STORE, m_conditions->Reattach(&m_query, other.Get(), true));
  EXPECT_EQ(u"Probe", first->GetType().view());
  EXPECT_EQ(u"xoSize", first->GetInternalProperty().view());
  EXPECT_EQ(u"Test aoName", (second->GetType() + u" " + second->GetInternalProperty()).view());
  other->m_types.erase(u"Name");
  EXPECT_EQ(E_UNEXPECTED, m_conditions->Reattach(&m_query, other.Get(), true));
  other->m_types[u"Name"] = eString;
  EXPECT_EQ(S_OK, m_conditions->Reattach(&m_query, other.Get(), true));
  EXPECT_EQ(u"engName", second->GetShownProperty().view());
  EXPECT_EQ(E_POINTER, m_conditions->Reattach(&m_query, nullptr, true));

  m_query.m_state = VEX_E_QUERY_BROWSE_PATH;
  m_conditions->Detach();
  EXPECT_EQ("object", Get(m_face.Get(), u"Item", Variant::I4(1)).Shown());
  EXPECT_EQ(
      "1",
      Get(Get(m_face.Get(), u"Item", Variant::I4(1)).Object(), u"Values", Variant::I4(0)).Shown())
      << "what is detached stays readable";
  EXPECT_EQ(212, Get(m_face.Get(), u"Add", T(u"Probe"), T(u"Name"), T(u"="), T(u"x")).error.number);
  EXPECT_EQ(S_OK, m_conditions->Reattach(&m_query, m_model.Get(), true));
  EXPECT_EQ(u"Test", second->GetType().view());
  std::int32_t size = 0;
  EXPECT_EQ(VEX_E_QUERY_BROWSE_PATH, second->GetSize(&size)) << "bound again";
}

TEST_F(ConditionsTest, AskTheQueryBeforeTheyCountValues) {
  const Ref<IConditionImpl> logic = AddNamed(u"", u"Name", u"=", T(u"x"));
  const auto condition = MakeRef<CDataStoreConditionInt>(logic);
  const std::pair<Result, int> kStates[] = {
      {VEX_E_OBJECT_GONE, 323}, {VEX_E_PARENT_GONE, 322}, {VEX_E_QUERY_BROWSE_PATH, 369}};
  for (const auto& [state, number] : kStates) {
    m_query.m_state = state;
    EXPECT_EQ(number, Get(condition.Get(), u"Size").error.number);
    EXPECT_EQ(number, Get(condition.Get(), u"Values", Variant::I4(0)).error.number);
    EXPECT_EQ("x", Get(condition.Get(), u"Value").Shown());
  }
  // The collection goes, the condition stays with its fields.
  m_face.Reset();
  m_conditions.Reset();
  EXPECT_EQ("1", Get(condition.Get(), u"Size").Shown());
  EXPECT_EQ("C1 Test Name =", Get(condition.Get(), u"Name").Shown() + " " +
                                  Get(condition.Get(), u"Type").Shown() + " " +
                                  Get(condition.Get(), u"Property").Shown() + " " +
                                  Get(condition.Get(), u"Operator").Shown());
}

TEST_F(ConditionsTest, AnswerByName) {
  IDispatch* const face = m_face.Get();
  const Answer ordered = Get(face, u"AddOrderBy", T(u"Test"), T(u"Size"), Variant::I4(0));
  EXPECT_EQ("0", Get(ordered.Object(), u"OrderBy").Shown());
  EXPECT_EQ("245 OrderBy not implemented.",
            Put(ordered.Object(), u"OrderBy", Variant::I4(1)).Shown());
  EXPECT_EQ("245 AddOrderBy not implemented.",
            Get(face, u"AddOrderBy", T(u"Test"), T(u"Size"), Variant::I4(2)).Shown());
  EXPECT_EQ("2", Get(face, u"Count").Shown()) << "the condition stays";
  EXPECT_EQ(
      "212 The text Tset is not a valid value for the argument Type of the method AddOrderBy.",
      Get(face, u"AddOrderBy", T(u"Tset"), T(u"Size"), Variant::I4(0)).Shown());
  EXPECT_EQ(
      "212 The text Nix is not a valid value for the argument Property of the method AddOrderBy.",
      Get(face, u"AddOrderBy", T(u"Test"), T(u"Nix"), Variant::I4(0)).Shown());

  EXPECT_EQ("C1 C2", hv::test::NamesOf(face));
  EXPECT_EQ("C2", Get(hv::test::Index(face, Variant::I4(2)).Object(), u"Name").Shown());
  for (const std::int32_t index : {-1, 0, 3}) {
    const std::string refused = "215 The index " + std::to_string(index) +
                                " does not correspond to a member of the collection.";
    EXPECT_EQ(refused, Get(face, u"Item", Variant::I4(index)).Shown());
    EXPECT_EQ(refused, Get(face, u"Remove", Variant::I4(index)).Shown());
  }
  EXPECT_EQ("298 The provided logical operation: C1 XOR C2 is not valid.",
            Put(face, u"Logic", T(u"C1 XOR C2")).Shown());
  EXPECT_EQ("empty", Put(face, u"Logic", T(u"OR")).Shown());
  EXPECT_EQ("empty", Get(face, u"Remove", Variant::I4(1)).Shown());
  EXPECT_EQ("C2", Get(face, u"Logic").Shown());
  EXPECT_EQ("empty", Get(face, u"Renumber").Shown());
  EXPECT_EQ("C1", Get(face, u"Logic").Shown());
  EXPECT_EQ("empty", Get(face, u"RemoveAll").Shown());
  EXPECT_EQ("0", Get(face, u"Count").Shown());
  EXPECT_EQ(E_POINTER, m_face->Add(u"", u"", u"", Variant(), nullptr)) << "before all other checks";
}

}  // namespace
}  // namespace hv::vex::test
