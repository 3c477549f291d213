// automation/DispatchCallTest.cpp - arguments and results of calls by name.
#include <limits>

#include "ToyObjects.h"

namespace hv::automation::toys {
namespace {

struct EchoCase {
  const char* name;
  std::u16string_view member;
  Variant argument;
  Result code;
  std::uint16_t type;        // of the result
  std::u16string_view text;  // the result as text
};

std::vector<EchoCase> EchoCases() {
  const auto i4 = [](std::int32_t value) { return Variant::I4(value); };
  const auto text = [](std::u16string_view value) { return Variant::Text(value); };
  return {
      {"BoolTrue", u"EchoBool", Variant::Bool(true), S_OK, VT_BOOL, u"-1"},
      {"BoolFromNumber", u"EchoBool", i4(7), S_OK, VT_BOOL, u"-1"},
      {"BoolFromText", u"EchoBool", text(u"false"), S_OK, VT_BOOL, u"0"},
      {"BoolRefusesWord", u"EchoBool", text(u"perhaps"), DISP_E_TYPEMISMATCH, 0, u""},
      {"BoolFromEmpty", u"EchoBool", Variant(), S_OK, VT_BOOL, u"0"},
      {"BoolRefusesNull", u"EchoBool", Variant::Null(), DISP_E_TYPEMISMATCH, 0, u""},
      {"I8", u"EchoI8", i4(-128), S_OK, VT_I1, u"-128"},
      {"I8Beyond", u"EchoI8", i4(128), DISP_E_OVERFLOW, 0, u""},
      {"I16", u"EchoI16", i4(-32768), S_OK, VT_I2, u"-32768"},
      {"I16Beyond", u"EchoI16", i4(32768), DISP_E_OVERFLOW, 0, u""},
      {"I32", u"EchoI32", i4(std::numeric_limits<std::int32_t>::min()), S_OK, VT_I4,
       u"-2147483648"},
      {"I32FromReal", u"EchoI32", Variant::R8(2.5), S_OK, VT_I4, u"2"},
      {"I32FromText", u"EchoI32", text(u"41"), S_OK, VT_I4, u"41"},
      {"I32Beyond", u"EchoI32", Variant::I8(2147483648LL), DISP_E_OVERFLOW, 0, u""},
      {"I32RefusesWord", u"EchoI32", text(u"x"), DISP_E_TYPEMISMATCH, 0, u""},
      {"I32RefusesMissing", u"EchoI32", Variant::Missing(), DISP_E_PARAMNOTFOUND, 0, u""},
      {"I64", u"EchoI64", Variant::I8(std::numeric_limits<std::int64_t>::min()), S_OK, VT_I8,
       u"-9223372036854775808"},
      {"U8", u"EchoU8", i4(255), S_OK, VT_UI1, u"255"},
      {"U8Below", u"EchoU8", i4(-1), DISP_E_OVERFLOW, 0, u""},
      {"U16", u"EchoU16", i4(65535), S_OK, VT_UI2, u"65535"},
      {"U32", u"EchoU32", Variant::I8(4294967295LL), S_OK, VT_UI4, u"4294967295"},
      {"U32Beyond", u"EchoU32", Variant::I8(4294967296LL), DISP_E_OVERFLOW, 0, u""},
      {"U64", u"EchoU64", Variant::UI8(~0ULL), S_OK, VT_UI8, u"18446744073709551615"},
      {"Float", u"EchoFloat", Variant::R8(0.25), S_OK, VT_R4, u"0.25"},
      {"FloatBeyond", u"EchoFloat", Variant::R8(1e300), DISP_E_OVERFLOW, 0, u""},
      {"Double", u"EchoDouble", text(u"1.5"), S_OK, VT_R8, u"1.5"},
      {"Enum", u"EchoEnum", text(u"2"), S_OK, VT_I4, u"2"},
      {"EnumUnknownValue", u"EchoEnum", i4(99), S_OK, VT_I4, u"99"},
      {"Text", u"EchoText", text(u"\u00e4 b"), S_OK, VT_BSTR, u"\u00e4 b"},
      {"TextFromNumber", u"EchoText", Variant::R8(-1.5), S_OK, VT_BSTR, u"-1.5"},
      {"TextFromEmpty", u"EchoText", Variant(), S_OK, VT_BSTR, u""},
      {"TextRefusesNull", u"EchoText", Variant::Null(), DISP_E_TYPEMISMATCH, 0, u""},
      {"TextRefusesArray", u"EchoText", Variant::Array({}), DISP_E_TYPEMISMATCH, 0, u""},
      {"View", u"EchoView", i4(12), S_OK, VT_BSTR, u"12"},
      {"VariantKeepsType", u"EchoVariant", Variant::Date(2.0), S_OK, VT_DATE, u"1/1/1900"},
      {"VariantNull", u"EchoVariant", Variant::Null(), S_OK, VT_NULL, u""},
      {"VariantMissing", u"EchoVariant", Variant::Missing(), S_OK, VT_ERROR, u""},
      {"ObjectNull", u"EchoObject", Variant::Null(), S_OK, VT_DISPATCH, u""},
      {"ObjectEmpty", u"EchoObject", Variant(), S_OK, VT_DISPATCH, u""},
      {"ObjectNothing", u"EchoObject", Variant::Object(nullptr), S_OK, VT_DISPATCH, u""},
      {"ObjectRefusesNumber", u"EchoObject", i4(0), DISP_E_TYPEMISMATCH, 0, u""},
      {"ObjectRefusesText", u"EchoObject", text(u"toy"), DISP_E_TYPEMISMATCH, 0, u""},
      {"UnknownNull", u"EchoUnknown", Variant::Unknown(nullptr), S_OK, VT_DISPATCH, u""},
  };
}

class DispatchArguments : public ::testing::TestWithParam<EchoCase> {};

TEST_P(DispatchArguments, ConvertThereAndBackOrAreRefused) {
  const EchoCase& c = GetParam();
  const auto toy = MakeRef<CToyInt>();
  Variant target = c.argument;
  // A by-reference variant is followed before anything else.
  for (const Variant& argument : {c.argument, Variant::RefTo(&target)}) {
    Variant result = Variant::I4(-1);
    ErrorInfo error;
    ASSERT_EQ(c.code, CallByName(*toy, c.member, {argument}, &result, &error));
    EXPECT_EQ(c.type, result.Type());
    EXPECT_EQ(Failed(c.code) ? 0 : -1, error.argument);
    Variant text;
    if (!c.text.empty() && !Failed(result.ChangeType(VT_BSTR, &text))) {
      EXPECT_EQ(Utf8(c.text), Utf8(text.AsText()));
    } else {
      EXPECT_TRUE(c.text.empty());
    }
  }
}
INSTANTIATE_TEST_SUITE_P(Kinds, DispatchArguments, ::testing::ValuesIn(EchoCases()),
                         [](const auto& row) { return std::string(row.param.name); });

class DispatchCall : public NoLeaks {};

TEST_F(DispatchCall, HandsObjectsThroughWithTheirReferences) {
  const auto toy = MakeRef<CToyInt>();
  const auto other = MakeRef<CToyInt>(u"other");
  for (const std::u16string_view member : {u"EchoObject", u"EchoUnknown"}) {
    for (const Variant& argument :
         {Variant::Object(other.Get()), Variant::Unknown(static_cast<IToy*>(other.Get()))}) {
      Variant result;
      ASSERT_EQ(S_OK, CallByName(*toy, member, {argument}, &result));
      ASSERT_TRUE(result.Is(VT_DISPATCH));
      EXPECT_EQ(static_cast<IDispatch*>(other.Get()), result.AsObject());
    }
  }
  ASSERT_EQ(S_OK, PutByName(*toy, u"friend", {Variant::Object(other.Get())}));
  Variant name;
  ErrorInfo error;
  EXPECT_EQ(S_OK, CallByName(*toy, u"EchoObject", {Variant::Object(other.Get())}));
  ASSERT_EQ(S_OK, PutByName(*toy, u"Friend", {Variant::Null()}));
  ASSERT_EQ(S_OK, CallByName(*toy, u"Friend", {}, &name));
  EXPECT_TRUE(name.Is(VT_DISPATCH));
  EXPECT_EQ(nullptr, name.AsObject());
}

class Stranger final : public cor::Counted<IVariantIterator> {
 public:
  Result Next(Variant*) override { return S_FALSE; }
  Result Reset() override { return S_OK; }

 private:
  ~Stranger() override = default;
};

TEST_F(DispatchCall, RefusesAnObjectWithoutTheFaceAndSaysWhich) {
  const auto toy = MakeRef<CToyInt>();
  const auto stranger = MakeRef<Stranger>();
  ErrorInfo error;
  EXPECT_EQ(DISP_E_TYPEMISMATCH,
            CallByName(*toy, u"TakeToy", {Variant::I4(0), Variant::Unknown(stranger.Get())},
                       nullptr, &error));
  EXPECT_EQ(1, error.argument);
  Variant result;
  ASSERT_EQ(S_OK, CallByName(*toy, u"EchoUnknown", {Variant::Unknown(stranger.Get())}, &result));
  EXPECT_TRUE(result.Is(VT_UNKNOWN));
}

TEST_F(DispatchCall, FillsLeftOutArguments) {
  struct Case {
    std::vector<Variant> args;
    Result code;
    const char* text;
  };
  const Variant a = Variant::Text(u"a");
  const Variant missing = Variant::Missing();
  const Case cases[] = {
      {{a, Variant::I4(2), Variant::I4(3)}, S_OK, "a|2|3"},
      {{a, Variant::I4(2)}, S_OK, "a|2|0"},
      {{a}, S_OK, "a|missing|0"},
      {{a, missing, Variant::I4(3)}, S_OK, "a|missing|3"},
      {{a, missing, missing}, S_OK, "a|missing|0"},
      {{}, DISP_E_BADPARAMCOUNT, ""},
      {{missing}, DISP_E_PARAMNOTFOUND, ""},
      {{a, a, Variant::I4(3), a}, DISP_E_BADPARAMCOUNT, ""},
      {{a, a, a}, DISP_E_TYPEMISMATCH, ""},
  };
  const auto toy = MakeRef<CToyInt>();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.args.size());
    Variant result;
    EXPECT_EQ(c.code, CallByName(*toy, u"JOIN", c.args, &result));
    EXPECT_EQ(c.text, result.Is(VT_BSTR) ? Utf8(result.AsText()) : "");
  }
}

TEST_F(DispatchCall, ReadsAndWritesPropertiesWithAndWithoutIndex) {
  const auto toy = MakeRef<CToyInt>();
  Variant result;
  ErrorInfo error;
  ASSERT_EQ(S_OK, PutByName(*toy, u"Values", {Variant::I4(1), Variant::Text(u"one")}));
  ASSERT_EQ(S_OK, CallByName(*toy, u"values", {Variant::I4(1)}, &result));
  EXPECT_EQ("one", Utf8(result.AsText()));
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, PutByName(*toy, u"Values", {Variant::I4(1)}));
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, PutByName(*toy, u"Values", {Variant(), Variant(), Variant()}));
  EXPECT_EQ(DISP_E_TYPEMISMATCH,
            PutByName(*toy, u"Values", {Variant::Text(u"x"), Variant()}, &error));
  EXPECT_EQ(0, error.argument);
  EXPECT_EQ(DISP_E_PARAMNOTFOUND, PutByName(*toy, u"Name", {Variant::Missing()}, &error));
  EXPECT_EQ(0, error.argument);
  ASSERT_EQ(S_OK, PutByName(*toy, u"NAME", {Variant::I4(5)}));
  ASSERT_EQ(S_OK, CallByName(*toy, u"name", {}, &result));
  EXPECT_EQ("5", Utf8(result.AsText()));
}

TEST_F(DispatchCall, AsksForTheKindThatTheCallerMeans) {
  const auto toy = MakeRef<CToyInt>();
  const Variant text = Variant::Text(u"x");
  Variant result = Variant::I4(1);
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, toy->Invoke(1, CallKind::Method, {}, &result, nullptr));
  EXPECT_TRUE(result.IsEmpty());
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, toy->Invoke(5, CallKind::Get, {}, nullptr, nullptr));
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, toy->Invoke(5, CallKind::Put, {&text, 1}, nullptr, nullptr));
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, toy->Invoke(999, CallKind::Method, {}, nullptr, nullptr));
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND,
            toy->Invoke(kDispIdUnknown, CallKind::Method, {}, nullptr, nullptr));
  EXPECT_EQ(S_OK, toy->Invoke(1, CallKind::Get, {}, nullptr, nullptr));
  EXPECT_EQ(S_OK, toy->Invoke(1, CallKind::Put, {&text, 1}, nullptr, nullptr));
  EXPECT_EQ(S_FALSE, toy->Invoke(37, CallKind::Method, {}, nullptr, nullptr));
}

TEST_F(DispatchCall, ReachesTheDefaultMember) {
  const auto toy = MakeRef<CToyInt>();
  const auto other = MakeRef<CToyInt>();
  const Variant value[] = {Variant::I4(2), Variant::Text(u"two")};
  ASSERT_EQ(S_OK, other->Invoke(kDispIdValue, CallKind::Put, value, nullptr, nullptr));
  ASSERT_EQ(S_OK, toy->put_Friend(other.Get()));
  Variant result;
  // A property that gives an object passes arguments on to that object's default member.
  ASSERT_EQ(S_OK, CallByName(*toy, u"Friend", {Variant::I4(2)}, &result));
  EXPECT_EQ("two", Utf8(result.AsText()));
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, CallByName(*toy, u"Name", {Variant::I4(2)}, &result));
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, CallByName(*other, u"Friend", {Variant::I4(2)}, &result));
  EXPECT_TRUE(result.IsEmpty());
}

TEST_F(DispatchCall, LetsTheResultBeAnArgument) {
  const auto toy = MakeRef<CToyInt>();
  Variant both = Variant::Text(u"kept");
  const std::span<const Variant> args(&both, 1);
  ASSERT_EQ(S_OK, toy->Invoke(22, CallKind::Method, args, &both, nullptr));
  EXPECT_EQ("kept", Utf8(both.AsText()));
}

TEST_F(DispatchCall, KeepsTheObjectAliveUntilTheCallEnds) {
  CToyInt* toy = new CToyInt(u"alone");
  toy->m_held = Ref<CToyInt>::Adopt(toy);
  Variant result;
  ASSERT_EQ(S_OK, toy->Invoke(38, CallKind::Method, {}, &result, nullptr));
  EXPECT_EQ("alone", Utf8(result.AsText()));
}

}  // namespace
}  // namespace hv::automation::toys
