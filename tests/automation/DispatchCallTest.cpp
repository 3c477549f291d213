// automation/DispatchCallTest.cpp - arguments and results of calls by name.
#include <limits>

#include "ToyObjects.h"

namespace hv::automation::toys {
namespace {

using V = Variant;

class DispatchCall : public ToyTest {};

TEST_F(DispatchCall, ConvertsArgumentsThereAndBackOrRefusesThem) {
  using Int64 = std::numeric_limits<std::int64_t>;
  struct Case {
    std::u16string_view member;
    Variant argument;
    Result code;
    std::uint16_t type = VT_EMPTY;  // of the result
    const char* text = "";          // the result as text
  };
  const Case cases[] = {
      {u"EchoBool", V::Bool(true), S_OK, VT_BOOL, "-1"},
      {u"EchoBool", V::I4(7), S_OK, VT_BOOL, "-1"},
      {u"EchoBool", V::Text(u"false"), S_OK, VT_BOOL, "0"},
      {u"EchoBool", V::Text(u"perhaps"), DISP_E_TYPEMISMATCH},
      {u"EchoBool", V(), S_OK, VT_BOOL, "0"},
      {u"EchoBool", V::Null(), DISP_E_TYPEMISMATCH},
      {u"EchoI8", V::I4(-128), S_OK, VT_I1, "-128"},
      {u"EchoI8", V::I4(128), DISP_E_OVERFLOW},
      {u"EchoI16", V::I4(-32768), S_OK, VT_I2, "-32768"},
      {u"EchoI16", V::I4(32768), DISP_E_OVERFLOW},
      {u"EchoI32", V::I4(-2147483647 - 1), S_OK, VT_I4, "-2147483648"},
      {u"EchoI32", V::R8(2.5), S_OK, VT_I4, "2"},
      {u"EchoI32", V::Text(u"41"), S_OK, VT_I4, "41"},
      {u"EchoI32", V::I8(2147483648LL), DISP_E_OVERFLOW},
      {u"EchoI32", V::Text(u"x"), DISP_E_TYPEMISMATCH},
      {u"EchoI32", V::Missing(), DISP_E_PARAMNOTFOUND},
      {u"EchoI64", V::I8(Int64::min()), S_OK, VT_I8, "-9223372036854775808"},
      {u"EchoU8", V::I4(255), S_OK, VT_UI1, "255"},
      {u"EchoU8", V::I4(-1), DISP_E_OVERFLOW},
      {u"EchoU16", V::I4(65535), S_OK, VT_UI2, "65535"},
      {u"EchoU32", V::I8(4294967295LL), S_OK, VT_UI4, "4294967295"},
      {u"EchoU32", V::I8(4294967296LL), DISP_E_OVERFLOW},
      {u"EchoU64", V::UI8(~0ULL), S_OK, VT_UI8, "18446744073709551615"},
      {u"EchoFloat", V::R8(0.25), S_OK, VT_R4, "0.25"},
      {u"EchoFloat", V::R8(1e300), DISP_E_OVERFLOW},
      {u"EchoDouble", V::Text(u"1.5"), S_OK, VT_R8, "1.5"},
      {u"EchoEnum", V::Text(u"2"), S_OK, VT_I4, "2"},
      {u"EchoEnum", V::I4(99), S_OK, VT_I4, "99"},  // not one of its values
      {u"EchoText", V::Text(u"\u00e4 b"), S_OK, VT_BSTR, "\u00e4 b"},
      {u"EchoText", V::R8(-1.5), S_OK, VT_BSTR, "-1.5"},
      {u"EchoText", V(), S_OK, VT_BSTR},
      {u"EchoText", V::Null(), DISP_E_TYPEMISMATCH},
      {u"EchoText", V::Array({}), DISP_E_TYPEMISMATCH},
      {u"EchoView", V::I4(12), S_OK, VT_BSTR, "12"},
      {u"EchoVariant", V::Date(2.0), S_OK, VT_DATE, "1/1/1900"},
      {u"EchoVariant", V::Null(), S_OK, VT_NULL},
      {u"EchoVariant", V::Missing(), S_OK, VT_ERROR},
      {u"EchoObject", V::Null(), S_OK, VT_DISPATCH},
      {u"EchoObject", V(), S_OK, VT_DISPATCH},
      {u"EchoObject", V::Object(nullptr), S_OK, VT_DISPATCH},
      {u"EchoObject", V::I4(0), DISP_E_TYPEMISMATCH},
      {u"EchoObject", V::Text(u"toy"), DISP_E_TYPEMISMATCH},
      {u"EchoUnknown", V::Unknown(nullptr), S_OK, VT_DISPATCH},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(cor::ToUtf8(c.member) + " " + ::testing::PrintToString(c.argument));
    Variant target = c.argument;
    // A by-reference variant is followed before anything else.
    for (const Variant& argument : {c.argument, Variant::RefTo(&target)}) {
      m_error = {};
      EXPECT_EQ(c.code, Call(c.member, {argument}));
      EXPECT_EQ(c.type, m_result.Type());
      EXPECT_EQ(Failed(c.code) ? 0 : -1, m_error.argument);
      EXPECT_EQ(c.text, TextOf(m_result));
    }
  }
}

TEST_F(DispatchCall, HandsObjectsThroughWithTheirReferences) {
  const auto other = MakeRef<CToyInt>(u"other");
  for (const std::u16string_view member : {u"EchoObject", u"EchoUnknown"}) {
    for (const Variant& argument :
         {Variant::Object(other.Get()), Variant::Unknown(static_cast<IToy*>(other.Get()))}) {
      ASSERT_EQ(S_OK, Call(member, {argument}));
      ASSERT_TRUE(m_result.Is(VT_DISPATCH));
      EXPECT_EQ(static_cast<IDispatch*>(other.Get()), m_result.AsObject());
    }
  }
  ASSERT_EQ(S_OK, Put(u"friend", {Variant::Object(other.Get())}));
  ASSERT_EQ(S_OK, Put(u"Friend", {Variant::Null()}));
  ASSERT_EQ(S_OK, Call(u"Friend"));
  ASSERT_TRUE(m_result.Is(VT_DISPATCH));
  EXPECT_EQ(nullptr, m_result.AsObject());
}

class Stranger final : public cor::Counted<IVariantIterator> {
 public:
  Result Next(Variant*) override { return S_FALSE; }
  Result Reset() override { return S_OK; }

 private:
  ~Stranger() override = default;
};

TEST_F(DispatchCall, RefusesAnObjectWithoutTheFaceAndSaysWhich) {
  const Variant stranger = Variant::Unknown(MakeRef<Stranger>().Get());
  EXPECT_EQ(DISP_E_TYPEMISMATCH, Call(u"TakeToy", {V::I4(0), stranger}));
  EXPECT_EQ(1, m_error.argument);
  ASSERT_EQ(S_OK, Call(u"EchoUnknown", {stranger}));
  EXPECT_TRUE(m_result.Is(VT_UNKNOWN));
}

TEST_F(DispatchCall, FillsLeftOutArguments) {
  struct Case {
    std::vector<Variant> args;
    Result code;
    const char* text = "";
  };
  const Variant a = Variant::Text(u"a");
  const Variant missing = Variant::Missing();
  const Case cases[] = {
      {{a, V::I4(2), V::I4(3)}, S_OK, "a|2|3"},
      {{a, V::I4(2)}, S_OK, "a|2|0"},
      {{a}, S_OK, "a|missing|0"},
      {{a, missing, V::I4(3)}, S_OK, "a|missing|3"},
      {{a, missing, missing}, S_OK, "a|missing|0"},
      {{}, DISP_E_BADPARAMCOUNT},
      {{missing}, DISP_E_PARAMNOTFOUND},
      {{a, a, V::I4(3), a}, DISP_E_BADPARAMCOUNT},
      {{a, a, a}, DISP_E_TYPEMISMATCH},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::PrintToString(c.args));
    EXPECT_EQ(c.code, Call(u"JOIN", c.args));
    EXPECT_EQ(c.text, TextOf(m_result));
  }
}

TEST_F(DispatchCall, ReadsAndWritesPropertiesWithAndWithoutIndex) {
  ASSERT_EQ(S_OK, Put(u"Values", {V::I4(1), V::Text(u"one")}));
  ASSERT_EQ(S_OK, Call(u"values", {V::I4(1)}));
  EXPECT_EQ("one", TextOf(m_result));
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Put(u"Values", {V::I4(1)}));
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Put(u"Values", {V(), V(), V()}));
  EXPECT_EQ(DISP_E_TYPEMISMATCH, Put(u"Values", {V::Text(u"x"), V()}));
  EXPECT_EQ(0, m_error.argument);
  m_error = {};
  EXPECT_EQ(DISP_E_PARAMNOTFOUND, Put(u"Name", {V::Missing()}));
  EXPECT_EQ(0, m_error.argument);
  ASSERT_EQ(S_OK, Put(u"NAME", {V::I4(5)}));
  ASSERT_EQ(S_OK, Call(u"name"));
  EXPECT_EQ("5", TextOf(m_result));
}

TEST_F(DispatchCall, AsksForTheKindThatTheCallerMeans) {
  const Variant text = Variant::Text(u"x");
  const struct {
    std::int32_t id;
    CallKind kind;
    Result code;
  } cases[] = {{1, CallKind::Method, DISP_E_MEMBERNOTFOUND},
               {5, CallKind::Get, DISP_E_MEMBERNOTFOUND},
               {5, CallKind::Put, DISP_E_MEMBERNOTFOUND},
               {999, CallKind::Method, DISP_E_MEMBERNOTFOUND},
               {kDispIdUnknown, CallKind::Method, DISP_E_MEMBERNOTFOUND},
               {1, CallKind::Get, S_OK},
               {1, CallKind::Put, S_OK},
               {37, CallKind::Method, S_FALSE}};
  for (const auto& c : cases) {
    const std::span<const Variant> args(&text, c.kind == CallKind::Put ? 1 : 0);
    EXPECT_EQ(c.code, m_toy->Invoke(c.id, c.kind, args, nullptr, nullptr)) << c.id;
  }
  Variant result = Variant::I4(1);
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, m_toy->Invoke(1, CallKind::Method, {}, &result, nullptr));
  EXPECT_TRUE(result.IsEmpty());
}

TEST_F(DispatchCall, ReachesTheDefaultMember) {
  const auto other = MakeRef<CToyInt>();
  const Variant value[] = {V::I4(2), V::Text(u"two")};
  ASSERT_EQ(S_OK, other->Invoke(kDispIdValue, CallKind::Put, value, nullptr, nullptr));
  ASSERT_EQ(S_OK, m_toy->put_Friend(other.Get()));
  // A property that gives an object passes arguments on to that object's default member.
  ASSERT_EQ(S_OK, Call(u"Friend", {V::I4(2)}));
  EXPECT_EQ("two", TextOf(m_result));
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Call(u"Name", {V::I4(2)}));
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Call(*other, u"Friend", {V::I4(2)}));
  EXPECT_TRUE(m_result.IsEmpty());
}

TEST_F(DispatchCall, LetsTheResultBeAnArgument) {
  Variant both = Variant::Text(u"kept");
  ASSERT_EQ(S_OK, m_toy->Invoke(22, CallKind::Method, {&both, 1}, &both, nullptr));
  EXPECT_EQ("kept", TextOf(both));
}

TEST_F(DispatchCall, KeepsTheObjectAliveUntilTheCallEnds) {
  CToyInt* toy = new CToyInt(u"alone");
  toy->m_held = Ref<CToyInt>::Adopt(toy);
  ASSERT_EQ(S_OK, toy->Invoke(38, CallKind::Method, {}, &m_result, nullptr));
  EXPECT_EQ("alone", TextOf(m_result));
}

}  // namespace
}  // namespace hv::automation::toys
