// automation/DispatchErrorTest.cpp - which number and text a failed call by name gives.
#include <stdexcept>

#include "ToyObjects.h"

namespace hv::automation::toys {
namespace {

constexpr Result kAnyCode = MakeResult(0x80040099);

struct ErrorCase {
  std::u16string_view member;
  Result code;
  std::int32_t number;  // 0: the call raises nothing
  const char* text = "";
  std::int32_t helpContext = 0;
};

const ErrorCase kErrorCases[] = {
    // A member without rows: the four named codes, under its own name.
    {u"failunlisted", E_NOTIMPL, 245, "FailUnlisted not implemented."},
    {u"FailUnlisted", E_PENDING, 241, "The operation FailUnlisted was timed out."},
    {u"FailUnlisted", VEX_E_OBJECT_GONE, 323, "The object is no longer valid.", -1},
    {u"FailUnlisted", E_OUTOFMEMORY, 207, "The application is out of memory.", -1},
    {u"FailUnlisted", E_FAIL, 0},
    {u"FailPlain", E_INVALIDARG, 0},
    // A member with nothing but its own rows.
    {u"FailOnly", E_FAIL, 292, "Opening the Sifter Store causes an error."},
    {u"FailOnly", E_NOTIMPL, 0},
    {u"FailOnly", VEX_E_OBJECT_GONE, 0},
    {u"FailOnly", VEX_E_CONNECT_REFUSED, 0},
    // A member that changes something.
    {u"FailChange", E_NOTIMPL, 254,
     "Properties and methods which change the contents of an object can only be called on data "
     "which is loaded.",
     -1},
    {u"FailChange", E_PENDING, 241, "The operation ChangeName was timed out."},
    {u"FailChange", E_FAIL, 344,
     "Your data cannot be saved. Maybe the data is in files that are readonly.", -1},
    {u"FailChange", kAnyCode, 250, "Unknown error.", -1},
    // A member with rows of every kind. Its second argument is the text "7up". What it returns is
    // no conversion of an argument, and its own row comes before the standard one.
    {u"FailFull", E_ACCESSDENIED, 365, "The data store is write protected.", -1},
    {u"FailFull", E_INVALIDARG, 212,
     "The text 7up is not a valid value for the argument a of the method b."},
    {u"FailFull", DISP_E_TYPEMISMATCH, 214,
     "The argument passed to Item must be either a string or an integer."},
    {u"FailFull", E_POINTER, 211, "The index 0 is out of range for the property Values."},
    {u"FailFull", VEX_E_LOGIC_UNSUPPORTED, 325,
     "The data store toy does not support queries with a custom logical operation (e.g. with "
     "\"OR\")."},
    {u"FailFull", VEX_E_OR_UNSUPPORTED, 325,
     "The data store toy does not support multiple values connected with OR."},
    {u"FailFull", E_HANDLE, 218, "Properties cannot be created with the type String."},
    {u"FailFull", E_OUTOFMEMORY, 215,
     "The index  does not correspond to a member of the collection."},
    {u"FailFull", E_NOTIMPL, 245, "FullName not implemented."},
    {u"FailFull", kAnyCode, 250, "Unknown error.", -1},
};

class DispatchErrors : public ToyTest {};

TEST_F(DispatchErrors, HaveTheNumberAndTextOfTheirRow) {
  for (const ErrorCase& c : kErrorCases) {
    SCOPED_TRACE(cor::ToUtf8(c.member) + " " + ::testing::PrintToString(c.code));
    std::vector<Variant> args{CodeOfScript(c.code)};
    if (c.member == u"FailFull") args.push_back(Variant::Text(u"7up"));
    EXPECT_EQ(c.number ? DISP_E_EXCEPTION : S_OK, Call(c.member, args));
    EXPECT_EQ(c.number, m_error.number);
    EXPECT_EQ(c.text, Utf8(m_error.text));
    EXPECT_EQ(c.helpContext, m_error.helpContext);
    EXPECT_EQ(c.code, m_error.code);
    EXPECT_EQ(-1, m_error.argument);
    EXPECT_TRUE(c.number == 0 || m_result.IsEmpty());
  }
}

TEST_F(DispatchErrors, ThatRaiseNothingGiveTheNullOrZeroValue) {
  ASSERT_EQ(S_OK, Call(u"FailUnlisted", {CodeOfScript(kAnyCode)}));
  ASSERT_TRUE(m_result.Is(VT_BSTR));
  EXPECT_TRUE(m_result.AsText().empty());
  ASSERT_EQ(S_OK, Call(u"FailOnly", {CodeOfScript(kAnyCode)}));
  ASSERT_TRUE(m_result.Is(VT_DISPATCH));
  EXPECT_EQ(nullptr, m_result.AsObject());
  ASSERT_EQ(S_OK, Call(u"FailPlain", {CodeOfScript(kAnyCode)}));
  EXPECT_TRUE(m_result.IsEmpty());
}

TEST_F(DispatchErrors, RefuseANullArgumentBeforeTheCall) {
  for (const Variant& null :
       {Variant::Null(), Variant(), Variant::Object(nullptr), Variant::Unknown(nullptr)}) {
    SCOPED_TRACE(null.Type());
    EXPECT_EQ(DISP_E_EXCEPTION, Call(u"TakeToy", {CodeOfScript(kAnyCode), null}));
    EXPECT_EQ(222, m_error.number);
    EXPECT_EQ("The argument Toy of the method TakeToy must be a Val.", Utf8(m_error.text));
    EXPECT_EQ(S_OK, m_error.code);
  }
  EXPECT_EQ(DISP_E_EXCEPTION,
            Call(u"TakeToy", {CodeOfScript(kAnyCode), Variant::Object(m_toy.Get())}));
  EXPECT_EQ(250, m_error.number);
}

TEST_F(DispatchErrors, TranslateExceptionsOfAMember) {
  const struct {
    std::int32_t kind;
    Result code;
    std::int32_t number;
  } cases[] = {// `ThrowIt` has the rows of `FailFull`, where running out of memory has one.
               {0, E_OUTOFMEMORY, 215},
               {1, E_PENDING, 241},
               {2, DISP_E_TYPEMISMATCH, 214},
               {3, E_FAIL, 250}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.kind);
    EXPECT_EQ(DISP_E_EXCEPTION, Call(u"ThrowIt", {Variant::I4(c.kind)}));
    EXPECT_EQ(c.code, m_error.code);
    EXPECT_EQ(c.number, m_error.number);
  }
}

TEST_F(DispatchErrors, ThatAreRaisedArriveWithTheirHelpContextAndAreForgotten) {
  EXPECT_EQ(DISP_E_EXCEPTION, Call(u"RaiseWithText", {Variant::Text(u"words")}));
  EXPECT_EQ(208, m_error.number);
  EXPECT_EQ("words", Utf8(m_error.text));
  EXPECT_EQ(0, m_error.helpContext);
  EXPECT_EQ(DISP_E_EXCEPTION, Call(u"RaiseFromTable"));
  EXPECT_EQ(263, m_error.number);
  EXPECT_EQ("Incorrect Parameter", Utf8(m_error.text));
  EXPECT_EQ(-1, m_error.helpContext);
  EXPECT_EQ(S_OK, Call(u"Name"));
  EXPECT_EQ(0, m_error.number);
  EXPECT_TRUE(m_error.text.empty());
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
  const struct {
    int kind;
    Result code;
  } cases[] = {
      {-800, E_OUTOFMEMORY}, {-1008, E_PENDING},    {-1302, VEX_E_WRITE_PROTECTED},
      {-1006, E_UNEXPECTED}, {-1906, E_UNEXPECTED}, {20, DISP_E_TYPEMISMATCH},
      {21, E_UNEXPECTED},    {52, E_INVALIDARG},    {81, E_OUTOFMEMORY},
      {85, E_UNEXPECTED},    {150, E_UNEXPECTED},   {180, E_PENDING},
      {205, E_UNEXPECTED},   {12345, E_UNEXPECTED}, {0, E_UNEXPECTED},
  };
  for (const auto& c : cases) EXPECT_EQ(c.code, Throwing(c.kind)) << c.kind;
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
