// automation/DispatchListingTest.cpp - names, ids, faces and listings of wrappers; creating by
// name.
#include <set>

#include "ToyObjects.h"
#include "automation/ClassRegistry.h"

namespace hv::automation::toys {
namespace {

class DispatchListing : public NoLeaks {};

TEST_F(DispatchListing, FindsNamesWithoutRegardToCase) {
  const auto toy = MakeRef<CToyInt>();
  const auto big = MakeRef<CBigToyInt>();
  struct Case {
    IDispatch* object;
    std::u16string_view name;
    Result code;
    std::int32_t id;
  };
  const Case cases[] = {
      {toy.Get(), u"Clear", S_OK, 5},
      {toy.Get(), u"cLEAR", S_OK, 5},
      {toy.Get(), u"name", S_OK, 1},
      {toy.Get(), u"Clea", DISP_E_UNKNOWNNAME, kDispIdUnknown},
      {toy.Get(), u"Clears", DISP_E_UNKNOWNNAME, kDispIdUnknown},
      {toy.Get(), u"", DISP_E_UNKNOWNNAME, kDispIdUnknown},
      {toy.Get(), u"Size", DISP_E_UNKNOWNNAME, kDispIdUnknown},
      {big.Get(), u"Size", S_OK, 50},
      {big.Get(), u"Clear", S_OK, 5},
      {big.Get(), u"Cl\u00ebar", DISP_E_UNKNOWNNAME, kDispIdUnknown},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(cor::ToUtf8(c.name));
    std::int32_t id = 7;
    EXPECT_EQ(c.code, c.object->GetIdOfName(c.name, &id));
    EXPECT_EQ(c.id, id);
  }
  EXPECT_EQ(E_POINTER, toy->GetIdOfName(u"Clear", nullptr));
}

TEST_F(DispatchListing, ListsEveryMemberOnceWithItsKinds) {
  const auto toy = MakeRef<CToyInt>();
  std::set<std::int32_t> ids;
  for (std::uint32_t i = 0; i < toy->GetMemberCount(); ++i) {
    MemberInfo info;
    ASSERT_EQ(S_OK, toy->GetMember(i, &info));
    EXPECT_TRUE(ids.insert(info.id).second) << info.id;
    std::int32_t id = 0;
    EXPECT_EQ(S_OK, toy->GetIdOfName(info.name, &id));
    EXPECT_EQ(info.id, id);
  }
  MemberInfo info;
  ASSERT_EQ(S_OK, toy->GetMember(0, &info));  // the base's members come first
  EXPECT_EQ(u"Name", info.name);
  EXPECT_EQ(CallKind::Get | CallKind::Put, info.kinds);
  EXPECT_EQ(0, info.argumentCount);
  ASSERT_EQ(S_OK, toy->GetMember(2, &info));
  EXPECT_EQ(u"Values", info.name);
  EXPECT_EQ(1, info.argumentCount);
  ASSERT_EQ(S_OK, toy->GetMember(3, &info));
  EXPECT_EQ(u"Join", info.name);
  EXPECT_EQ(CallKind::Method, info.kinds);
  EXPECT_EQ(3, info.argumentCount);
  EXPECT_EQ(1, info.requiredCount);
  EXPECT_EQ(E_INVALIDARG, toy->GetMember(toy->GetMemberCount(), &info));
  EXPECT_EQ(kDispIdUnknown, info.id);
  EXPECT_EQ(E_POINTER, toy->GetMember(0, nullptr));
}

TEST_F(DispatchListing, AnExtendedMapReplacesAndAdds) {
  const auto toy = MakeRef<CToyInt>();
  const auto big = MakeRef<CBigToyInt>();
  std::u16string names;
  for (std::uint32_t i = 0; i < big->GetMemberCount(); ++i) {
    MemberInfo info;
    ASSERT_EQ(S_OK, big->GetMember(i, &info));
    names += std::u16string(info.name) + u" ";
  }
  EXPECT_EQ(u"Values Join Clear Friend size Name ", names);
  EXPECT_EQ(u"Toy", toy->GetClassName());
  EXPECT_EQ(u"BigToy", big->GetClassName());
  Variant result;
  ASSERT_EQ(S_OK, CallByName(*big, u"Name", {}, &result));
  EXPECT_EQ("big", Utf8(result.AsText()));
  ASSERT_EQ(S_OK, CallByName(*big, u"Size", {}, &result));
  EXPECT_EQ(1000, result.AsInt64());
  // The getter was replaced, the setter of the base still stands: it raises nothing for this code.
  ErrorInfo error;
  EXPECT_EQ(S_OK, PutByName(*big, u"Name", {Variant::Text(u"x")}, &error));
  EXPECT_EQ(E_ACCESSDENIED, error.code);
  EXPECT_EQ(DISP_E_EXCEPTION, CallByName(*big, u"Clear", {}, nullptr, &error));
  EXPECT_EQ("Clear not implemented.", Utf8(error.text));
}

TEST_F(DispatchListing, AnswersForItsFaces) {
  const auto toy = MakeRef<CToyInt>();
  IToy* const typed = toy.Get();
  EXPECT_EQ(static_cast<INamed*>(typed), QueryRef<INamed>(typed).Get());
  EXPECT_EQ(static_cast<IDispatch*>(typed), QueryRef<IDispatch>(typed).Get());
  const Ref<IWeighed> weighed = QueryRef<IWeighed>(typed);
  ASSERT_TRUE(weighed);
  std::int32_t weight = 0;
  EXPECT_EQ(S_OK, weighed->GetWeight(&weight));
  EXPECT_EQ(12, weight);
  EXPECT_EQ(typed, QueryRef<IToy>(weighed.Get()).Get());
  EXPECT_EQ(QueryRef<IUnknown>(typed), QueryRef<IUnknown>(weighed.Get()));
  EXPECT_FALSE(QueryRef<IVariantIterator>(typed));
  EXPECT_FALSE(QueryRef<IWeighed>(MakeRef<CBigToyInt>().Get()));
}

TEST(DispatchRowsCheck, RefusesWhatNoScriptCouldUse) {
  const auto get = Get<&IToy::get_Friend>(u"Friend", 2);
  const auto put = Put<&IToy::put_Friend>(u"Friend", 2);
  const auto named = [](MemberRow row, std::u16string_view name, std::int32_t id) {
    row.name = name;
    row.id = id;
    return row;
  };
  const auto method = Method<&IToy::Clear>(u"Clear", 5);
  MemberRow noKind = method;
  noKind.kind = CallKind::Get | CallKind::Method;
  struct Case {
    const char* name;
    std::vector<MemberRow> rows;
    RowProblem problem;
  };
  const Case cases[] = {
      {"Sound", {get, put, method}, RowProblem::None},
      {"EmptyName", {named(get, u"", 2)}, RowProblem::BadName},
      {"Blank", {named(get, u"My Friend", 2)}, RowProblem::BadName},
      {"LeadingDigit", {named(get, u"2nd", 2)}, RowProblem::BadName},
      {"NoKind", {noKind}, RowProblem::BadKind},
      {"NoId", {named(get, u"Friend", kDispIdUnknown)}, RowProblem::BadId},
      {"IdOfTwoNames", {get, named(method, u"Clear", 2)}, RowProblem::IdOfTwoNames},
      {"NameOfTwoIds", {get, named(put, u"FRIEND", 3)}, RowProblem::NameOfTwoIds},
      {"KindTwice", {get, put, get}, RowProblem::KindTwice},
      {"MethodAndGet", {get, named(method, u"friend", 2)}, RowProblem::MethodAndGet},
      {"CountsDiffer",
       {get, named(Put<&IToy::put_Values>(u"", 0), u"Friend", 2)},
       RowProblem::CountsDiffer},
      {"TooManyOptional", {get.Optional(1)}, RowProblem::BadOptional},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(c.problem, CheckRows(c.rows));
  }
}

Result MakeToy(IDispatch** out) {
  *out = new CToyInt(u"made");
  return S_OK;
}
Result MakeHalf(IDispatch** out) {
  *out = new CToyInt(u"half");
  return E_ACCESSDENIED;
}
Result MakeThrow(IDispatch**) { throw std::bad_alloc(); }

constexpr ClassEntry kClasses[] = {
    {u"Toys.Toy", &MakeToy}, {u"Toys.Half.1", &MakeHalf}, {u"Toys.Throw", &MakeThrow}};
static_assert(IsSound(kClasses));

class ClassesByName : public NoLeaks {};

TEST_F(ClassesByName, AreCreatedOrRefused) {
  constexpr ClassRegistry kRegistry{kClasses};
  struct Case {
    std::u16string_view progId;
    Result code;
  };
  const Case cases[] = {
      {u"Toys.Toy", S_OK},
      {u"TOYS.tOY", S_OK},
      {u"Toys.Half.1", E_ACCESSDENIED},
      {u"Toys.Throw", E_OUTOFMEMORY},
      {u"Toys.Half", CLASS_E_CLASSNOTAVAILABLE},
      {u"", CLASS_E_CLASSNOTAVAILABLE},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(cor::ToUtf8(c.progId));
    Ref<IDispatch> object;
    EXPECT_EQ(c.code, kRegistry.CreateObject(c.progId, object.Put()));
    EXPECT_EQ(c.code == S_OK, bool(object));
  }
  EXPECT_EQ(E_POINTER, kRegistry.CreateObject(u"Toys.Toy", nullptr));
}

TEST(ClassTable, FindsNamesThatDifferInCaseOnly) {
  const ClassEntry twice[] = {{u"A.B", &MakeToy}, {u"a.b", &MakeToy}};
  const ClassEntry unnamed[] = {{u"", &MakeToy}};
  const ClassEntry unmade[] = {{u"A", nullptr}};
  EXPECT_FALSE(IsSound(twice));
  EXPECT_FALSE(IsSound(unnamed));
  EXPECT_FALSE(IsSound(unmade));
}

}  // namespace
}  // namespace hv::automation::toys
