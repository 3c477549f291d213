// automation/DispatchListingTest.cpp - names, ids, faces and listings of wrappers; creating by
// name.
#include <array>

#include "ToyObjects.h"
#include "automation/ClassRegistry.h"

namespace hv::automation::toys {
namespace {

class DispatchListing : public ToyTest {
 protected:
  /// The members as listed: name, id, kinds, arguments and how many of them are required.
  static std::string ListingOf(IDispatch& object) {
    std::string text;
    for (std::uint32_t i = 0; i < object.GetMemberCount(); ++i) {
      MemberInfo info;
      EXPECT_EQ(S_OK, object.GetMember(i, &info));
      text += cor::ToUtf8(info.name) + " " + std::to_string(info.id) + " ";
      if ((info.kinds & CallKind::Method) != CallKind::None) text += "m";
      if ((info.kinds & CallKind::Get) != CallKind::None) text += "g";
      if ((info.kinds & CallKind::Put) != CallKind::None) text += "p";
      text += std::to_string(info.argumentCount) + std::to_string(info.requiredCount) + "; ";
    }
    return text;
  }

  Ref<CBigToyInt> m_big = MakeRef<CBigToyInt>();
};

TEST_F(DispatchListing, FindsNamesWithoutRegardToCase) {
  const struct {
    IDispatch* object;
    std::u16string_view name;
    std::int32_t id;
  } cases[] = {
      {m_toy.Get(), u"Clear", 5},
      {m_toy.Get(), u"cLEAR", 5},
      {m_toy.Get(), u"name", 1},
      {m_toy.Get(), u"Clea", kDispIdUnknown},
      {m_toy.Get(), u"Clears", kDispIdUnknown},
      {m_toy.Get(), u"", kDispIdUnknown},
      {m_toy.Get(), u"Size", kDispIdUnknown},
      {m_big.Get(), u"Size", 50},
      {m_big.Get(), u"Clear", 5},
      {m_big.Get(), u"Cl\u00ebar", kDispIdUnknown},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(cor::ToUtf8(c.name));
    std::int32_t id = 7;
    EXPECT_EQ(c.id == kDispIdUnknown ? DISP_E_UNKNOWNNAME : S_OK,
              c.object->GetIdOfName(c.name, &id));
    EXPECT_EQ(c.id, id);
  }
  EXPECT_EQ(E_POINTER, m_toy->GetIdOfName(u"Clear", nullptr));
}

TEST_F(DispatchListing, ListsEveryMemberOnceWithItsKinds) {
  const std::string listing = ListingOf(*m_toy);  // the base's members come first
  EXPECT_TRUE(
      listing.starts_with("Name 1 gp00; Friend 2 gp00; Values 3 gp11; Join 4 m31; "
                          "Clear 5 m00; EchoBool 10 m11; "))
      << listing;
  EXPECT_EQ(33U, m_toy->GetMemberCount());
  MemberInfo info;
  EXPECT_EQ(E_INVALIDARG, m_toy->GetMember(33, &info));
  EXPECT_EQ(kDispIdUnknown, info.id);
  EXPECT_EQ(E_POINTER, m_toy->GetMember(0, nullptr));
}

TEST_F(DispatchListing, AnExtendedMapReplacesAndAdds) {
  EXPECT_EQ("Values 3 gp11; Join 4 m31; Clear 5 m00; Friend 2 gp00; size 50 g00; Name 1 gp00; ",
            ListingOf(*m_big));
  EXPECT_EQ(u"Toy", m_toy->GetClassName());
  EXPECT_EQ(u"BigToy", m_big->GetClassName());
  ASSERT_EQ(S_OK, Call(*m_big, u"Name"));
  EXPECT_EQ("big", TextOf(m_result));
  ASSERT_EQ(S_OK, Call(*m_big, u"Size"));
  EXPECT_EQ("1000", TextOf(m_result));
  // The getter was replaced, the setter of the base still stands: it raises nothing for this code.
  EXPECT_EQ(S_OK, Put(*m_big, u"Name", {Variant::Text(u"x")}));
  EXPECT_EQ(E_ACCESSDENIED, m_error.code);
  EXPECT_EQ(DISP_E_EXCEPTION, Call(*m_big, u"Clear"));
  EXPECT_EQ("Clear not implemented.", Utf8(m_error.text));
}

TEST_F(DispatchListing, AnswersForItsFaces) {
  IToy* const typed = m_toy.Get();
  EXPECT_EQ(static_cast<INamed*>(typed), QueryRef<INamed>(typed).Get());
  EXPECT_EQ(static_cast<IDispatch*>(typed), QueryRef<IDispatch>(typed).Get());
  const Ref<IWeighed> weighed = QueryRef<IWeighed>(typed);
  ASSERT_TRUE(weighed);
  EXPECT_EQ(typed, QueryRef<IToy>(weighed.Get()).Get());
  EXPECT_EQ(QueryRef<IUnknown>(typed), QueryRef<IUnknown>(weighed.Get()));
  EXPECT_FALSE(QueryRef<IVariantIterator>(typed));
  EXPECT_FALSE(QueryRef<IWeighed>(m_big.Get()));
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
  const struct {
    const char* name;
    std::vector<MemberRow> rows;
    RowProblem problem;
  } cases[] = {
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
  for (const auto& c : cases) EXPECT_EQ(c.problem, CheckRows(c.rows)) << c.name;
}

Result MakeToy(IDispatch** out) {
  *out = new CToyInt;
  return S_OK;
}
Result MakeHalf(IDispatch** out) {
  *out = new CToyInt;
  return E_ACCESSDENIED;
}
Result MakeThrow(IDispatch**) { throw std::bad_alloc(); }

class ClassesByName : public NoLeaks {};

TEST_F(ClassesByName, AreCreatedOrRefused) {
  static constexpr ClassEntry kClasses[] = {
      {u"Toys.Toy", &MakeToy}, {u"Toys.Half.1", &MakeHalf}, {u"Toys.Throw", &MakeThrow}};
  static_assert(IsSound(kClasses));
  constexpr ClassRegistry kRegistry{kClasses};
  const struct {
    std::u16string_view progId;
    Result code;
  } cases[] = {
      {u"Toys.Toy", S_OK},
      {u"TOYS.tOY", S_OK},
      {u"Toys.Half.1", E_ACCESSDENIED},
      {u"Toys.Throw", E_OUTOFMEMORY},
      {u"Toys.Half", CLASS_E_CLASSNOTAVAILABLE},
      {u"", CLASS_E_CLASSNOTAVAILABLE},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(cor::ToUtf8(c.progId));
    Ref<IDispatch> object;
    EXPECT_EQ(c.code, kRegistry.CreateObject(c.progId, object.Put()));
    EXPECT_EQ(c.code == S_OK, bool(object));
  }
  EXPECT_EQ(E_POINTER, kRegistry.CreateObject(u"Toys.Toy", nullptr));
  // Names that differ in case only, no name, and no maker.
  static_assert(!IsSound(std::array<ClassEntry, 2>{{{u"A.B", &MakeToy}, {u"a.b", &MakeToy}}}));
  static_assert(!IsSound(std::array<ClassEntry, 1>{{{u"", &MakeToy}}}));
  static_assert(!IsSound(std::array<ClassEntry, 1>{{{u"A", nullptr}}}));
}

}  // namespace
}  // namespace hv::automation::toys
