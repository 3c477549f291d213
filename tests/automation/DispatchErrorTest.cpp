// automation/DispatchErrorTest.cpp - which number and text a failed call by name gives.
#include <stdexcept>

#include "ToyObjects.h"
#include "automation/Guards.h"

namespace hv::automation::toys {
namespace {

constexpr Result kAnyCode = MakeResult(0x80040099);

struct ErrorCase {
  const char* name;
  std::u16string_view member;
  Result code;
  std::int32_t number;  // 0: the call raises nothing
  const char* text;
  std::int32_t helpContext;
};

const char* const kUnlistedNotImplemented = "FailUnlisted not implemented.";
const char* const kNotLoaded =
    "Properties and methods which change the contents of an object can only be called on data "
    "which is "
    "loaded.";

const ErrorCase kErrorCases[] = {
    // A member without rows: the four named codes, under its own name.
    {"UnlistedNotImpl", u"failunlisted", E_NOTIMPL, 245, kUnlistedNotImplemented, 0},
    {"UnlistedPending", u"FailUnlisted", E_PENDING, 241,
     "The operation FailUnlisted was timed out.", 0},
    {"UnlistedGone", u"FailUnlisted", VEX_E_OBJECT_GONE, 323, "The object is no longer valid.", -1},
    {"UnlistedMemory", u"FailUnlisted", E_OUTOFMEMORY, 207, "The application is out of memory.",
     -1},
    {"UnlistedOther", u"FailUnlisted", E_FAIL, 0, "", 0},
    {"PlainOther", u"FailPlain", E_INVALIDARG, 0, "", 0},
    // A member with nothing but its own rows.
    {"OnlyOwn", u"FailOnly", E_FAIL, 292, "Opening the Sifter Store causes an error.", 0},
    {"OnlyNotImpl", u"FailOnly", E_NOTIMPL, 0, "", 0},
    {"OnlyGone", u"FailOnly", VEX_E_OBJECT_GONE, 0, "", 0},
    {"OnlyRefused", u"FailOnly", VEX_E_CONNECT_REFUSED, 0, "", 0},
    // A member that changes something.
    {"ChangeNotImpl", u"FailChange", E_NOTIMPL, 254, kNotLoaded, -1},
    {"ChangePending", u"FailChange", E_PENDING, 241, "The operation ChangeName was timed out.", 0},
    {"ChangeOwn", u"FailChange", E_FAIL, 344,
     "Your data cannot be saved. Maybe the data is in files that are readonly.", -1},
    {"ChangeOther", u"FailChange", kAnyCode, 250, "Unknown error.", -1},
    // A member with rows of every kind. Its second argument is the text "7up".
    {"FullOwn", u"FailFull", E_ACCESSDENIED, 365, "The data store is write protected.", -1},
    {"FullLiterals", u"FailFull", E_INVALIDARG, 212,
     "The text 7up is not a valid value for the argument a of the method b.", 0},
    {"FullMemberCodeIsNoConversion", u"FailFull", DISP_E_TYPEMISMATCH, 214,
     "The argument passed to Item must be either a string or an integer.", 0},
    {"FullNumber", u"FailFull", E_POINTER, 211,
     "The index 0 is out of range for the property Values.", 0},
    {"FullObjectText", u"FailFull", VEX_E_LOGIC_UNSUPPORTED, 325,
     "The data store toy does not support queries with a custom logical operation (e.g. with "
     "\"OR\").",
     0},
    {"FullOtherNumber", u"FailFull", VEX_E_OR_UNSUPPORTED, 325,
     "The data store toy does not support multiple values connected with OR.", 0},
    {"FullTypeName", u"FailFull", E_HANDLE, 218,
     "Properties cannot be created with the type String.", 0},
    {"FullOwnBeforeStandard", u"FailFull", E_OUTOFMEMORY, 215,
     "The index  does not correspond to a member of the collection.", 0},
    {"FullNamed", u"FailFull", E_NOTIMPL, 245, "FullName not implemented.", 0},
    {"FullOther", u"FailFull", kAnyCode, 250, "Unknown error.", -1},
};

class DispatchErrors : public ::testing::TestWithParam<ErrorCase> {};

TEST_P(DispatchErrors, SelectsNumberAndText) {
  const ErrorCase& c = GetParam();
  const auto toy = MakeRef<CToyInt>();
  std::vector<Variant> args{Variant::I4(Number(c.code))};
  if (c.member == u"FailFull") args.push_back(Variant::Text(u"7up"));
  Variant result = Variant::I4(1);
  ErrorInfo error;
  ASSERT_EQ(c.number ? DISP_E_EXCEPTION : S_OK, CallByName(*toy, c.member, args, &result, &error));
  EXPECT_EQ(c.number, error.number);
  EXPECT_EQ(c.text, Utf8(error.text));
  EXPECT_EQ(c.helpContext, error.helpContext);
  EXPECT_EQ(c.code, error.code);
  EXPECT_EQ(-1, error.argument);
  if (c.number) {
    EXPECT_TRUE(result.IsEmpty());
  }
}
INSTANTIATE_TEST_SUITE_P(Rows, DispatchErrors, ::testing::ValuesIn(kErrorCases),
                         [](const auto& row) { return std::string(row.param.name); });

class DispatchErrorPaths : public NoLeaks {};

TEST_F(DispatchErrorPaths, AFailureThatRaisesNothingGivesTheNullOrZeroValue) {
  const auto toy = MakeRef<CToyInt>();
  Variant result;
  const Variant code = Variant::I4(Number(kAnyCode));
  ASSERT_EQ(S_OK, CallByName(*toy, u"FailUnlisted", {code}, &result));
  ASSERT_TRUE(result.Is(VT_BSTR));
  EXPECT_TRUE(result.AsText().empty());
  ASSERT_EQ(S_OK, CallByName(*toy, u"FailOnly", {code}, &result));
  ASSERT_TRUE(result.Is(VT_DISPATCH));
  EXPECT_EQ(nullptr, result.AsObject());
  ASSERT_EQ(S_OK, CallByName(*toy, u"FailPlain", {code}, &result));
  EXPECT_TRUE(result.IsEmpty());
}

TEST_F(DispatchErrorPaths, ANullArgumentIsRefusedBeforeTheCall) {
  const auto toy = MakeRef<CToyInt>();
  const Variant code = Variant::I4(Number(kAnyCode));
  const Variant nulls[] = {Variant::Null(), Variant(), Variant::Object(nullptr),
                           Variant::Unknown(nullptr)};
  for (const Variant& null : nulls) {
    ErrorInfo error;
    EXPECT_EQ(DISP_E_EXCEPTION, CallByName(*toy, u"TakeToy", {code, null}, nullptr, &error));
    EXPECT_EQ(222, error.number);
    EXPECT_EQ("The argument Toy of the method TakeToy must be a Val.", Utf8(error.text));
    EXPECT_EQ(S_OK, error.code);
  }
  ErrorInfo error;
  EXPECT_EQ(DISP_E_EXCEPTION,
            CallByName(*toy, u"TakeToy", {code, Variant::Object(toy.Get())}, nullptr, &error));
  EXPECT_EQ(250, error.number);
}

TEST_F(DispatchErrorPaths, ExceptionsOfAMemberBecomeCodes) {
  struct Case {
    std::int32_t kind;
    Result code;
    std::int32_t number;
  };
  // `ThrowIt` has the rows of `FailFull`, where running out of memory has a row of its own.
  const Case cases[] = {{0, E_OUTOFMEMORY, 215},
                        {1, E_PENDING, 241},
                        {2, DISP_E_TYPEMISMATCH, 214},
                        {3, E_FAIL, 250}};
  const auto toy = MakeRef<CToyInt>();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.kind);
    ErrorInfo error;
    EXPECT_EQ(DISP_E_EXCEPTION,
              CallByName(*toy, u"ThrowIt", {Variant::I4(c.kind)}, nullptr, &error));
    EXPECT_EQ(c.code, error.code);
    EXPECT_EQ(c.number, error.number);
  }
}

TEST_F(DispatchErrorPaths, RaisedErrorsArriveWithTheirHelpContext) {
  const auto toy = MakeRef<CToyInt>();
  ErrorInfo error;
  EXPECT_EQ(DISP_E_EXCEPTION,
            CallByName(*toy, u"RaiseWithText", {Variant::Text(u"words")}, nullptr, &error));
  EXPECT_EQ(208, error.number);
  EXPECT_EQ("words", Utf8(error.text));
  EXPECT_EQ(0, error.helpContext);
  EXPECT_EQ(DISP_E_EXCEPTION, CallByName(*toy, u"RaiseFromTable", {}, nullptr, &error));
  EXPECT_EQ(263, error.number);
  EXPECT_EQ("Incorrect Parameter", Utf8(error.text));
  EXPECT_EQ(-1, error.helpContext);
}

TEST_F(DispatchErrorPaths, AnErrorPlaceThatIsUsedAgainForgetsTheLastFailure) {
  const auto toy = MakeRef<CToyInt>();
  ErrorInfo error;
  EXPECT_EQ(DISP_E_EXCEPTION, CallByName(*toy, u"RaiseFromTable", {}, nullptr, &error));
  EXPECT_EQ(S_OK, CallByName(*toy, u"Name", {}, nullptr, &error));
  EXPECT_EQ(0, error.number);
  EXPECT_TRUE(error.text.empty());
}

Result GuardedStep(Result step, int* evaluated) {
  HV_RETURN_IF_FAILED((++*evaluated, step));
  return S_FALSE;
}

Result Throwing(int kind) try {
  if (kind < 0) throw vex::Exception(kind, u"");
  if (kind > 0) throw static_cast<vex::com::cErrCode>(kind);
  throw std::runtime_error("any");
}
HV_CATCH_RETURN_AS(E_UNEXPECTED)

TEST(Guards, EvaluateTheirExpressionOnce) {
  int evaluated = 0;
  EXPECT_EQ(E_FAIL, GuardedStep(E_FAIL, &evaluated));
  EXPECT_EQ(1, evaluated);
  EXPECT_EQ(S_FALSE, GuardedStep(S_FALSE, &evaluated));
  EXPECT_EQ(2, evaluated);
}

TEST(Guards, TranslateExceptions) {
  struct Case {
    int kind;
    Result code;
  };
  const Case cases[] = {
      {-800, E_OUTOFMEMORY}, {-1008, E_PENDING},    {-1302, VEX_E_WRITE_PROTECTED},
      {-1006, E_UNEXPECTED}, {-1906, E_UNEXPECTED}, {20, DISP_E_TYPEMISMATCH},
      {21, E_UNEXPECTED},    {52, E_INVALIDARG},    {81, E_OUTOFMEMORY},
      {85, E_UNEXPECTED},    {150, E_UNEXPECTED},   {180, E_PENDING},
      {205, E_UNEXPECTED},   {12345, E_UNEXPECTED}, {0, E_UNEXPECTED},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.kind);
    EXPECT_EQ(c.code, Throwing(c.kind));
  }
}

TEST(Guards, AnOperationsOwnRowsComeBeforeTheCommonOnes) {
  constexpr CodeRow kRows[] = {{-1906, VEX_E_CONNECT_REFUSED}, {-800, E_FAIL}};
  EXPECT_EQ(VEX_E_CONNECT_REFUSED,
            ResultFromVexException(vex::Exception(-1906), kRows, E_UNEXPECTED));
  EXPECT_EQ(E_FAIL, ResultFromVexException(vex::Exception(-800), kRows, E_UNEXPECTED));
  EXPECT_EQ(E_PENDING, ResultFromVexException(vex::Exception(-1008), kRows, E_UNEXPECTED));
  EXPECT_EQ(E_UNEXPECTED, ResultFromVexException(vex::Exception(-1), kRows, E_UNEXPECTED));
}

}  // namespace
}  // namespace hv::automation::toys
