// store/CollectionsTest.cpp - ordered and named collections, unique names, iterators.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <storefabric/Ref.h>

#include "cor/Counted.h"
#include "store/collections/CollectionImpl.h"
#include "store/collections/NamedCollectionImpl.h"

namespace hv::vex::easyImpl {
namespace {

class IThing : public IUnknown {
 public:
  static constexpr Iid kIid = MakeIid("test::IThing");
  virtual Result SetName(const WString& name) = 0;
  virtual std::string Name() const = 0;

 protected:
  ~IThing() = default;
};

class CThing final : public cor::Counted<IThing> {
 public:
  explicit CThing(Result answer = S_OK) : m_answer(answer) {}
  Result SetName(const WString& name) override {
    m_name = cor::ToUtf8(name);
    return m_answer;
  }
  std::string Name() const override { return m_name; }

 private:
  ~CThing() override = default;
  Result m_answer;
  std::string m_name;
};

class CThings final : public tNamedCollectionImpl<INamedCollectionImpl<IThing>> {
 public:
  using tNamedCollectionImpl::Add;

  /// Adds a new thing and gives the name that it was told.
  std::string AddThing(std::u16string_view name) {
    const auto thing = MakeRef<CThing>();
    EXPECT_EQ(S_OK, Add(thing.Get(), name));
    return thing->Name();
  }
  std::string m_defaultName = "NoName";

 private:
  ~CThings() override = default;
  WString DefaultName() const override { return cor::FromUtf8(m_defaultName); }
};

/// No names, and a record of the hooks.
class CPlainThings final : public tCollectionImpl<ICollectionImpl<IThing>> {
 public:
  using tCollectionImpl::Append;
  std::string m_hooks;

 private:
  ~CPlainThings() override = default;
  void OnRemove(std::size_t position) override {
    m_hooks += "remove " + ItemAt(position).Name() + ";";
  }
  void OnSwap(std::size_t first, std::size_t second) override {
    m_hooks += "swap " + ItemAt(first).Name() + " " + ItemAt(second).Name() + ";";
  }
};

/// The names with "|" between them.
template <class Source>
std::string NamesOf(Source& things) {
  std::string names;
  std::int32_t count = -1;
  EXPECT_EQ(S_OK, things.GetCount(&count));
  for (std::int32_t i = 0; i < count; ++i) {
    Ref<IThing> thing;
    EXPECT_EQ(S_OK, things.GetItem(i, thing.Put()));
    names += (i == 0 ? "" : "|") + thing->Name();
  }
  return names;
}

std::string ItemNamed(CThings& things, std::u16string_view name) {
  Ref<IThing> thing;
  const Result rc = things.GetItemByName(name, thing.Put());
  EXPECT_EQ(rc == S_OK, bool(thing));
  return thing ? thing->Name() : rc == E_INVALIDARG ? "invalid" : "other code";
}

class Collections : public ::testing::Test {
 protected:
  void TearDown() override {
    things.Reset();
    plain.Reset();
    EXPECT_EQ(m_liveBefore, cor::LiveObjectCount());
  }
  /// Things "1" to "n" without a place for names.
  void FillPlain(int count) {
    for (int i = 1; i <= count; ++i) {
      const auto thing = MakeRef<CThing>();
      ASSERT_EQ(S_OK, thing->SetName(cor::FromUtf8(std::to_string(i))));
      ASSERT_EQ(S_OK, plain->Append(thing.Get()));
    }
  }
  /// Adds things and gives the names of all.
  std::string Add(std::initializer_list<std::u16string_view> names) {
    for (const auto name : names) things->AddThing(name);
    return NamesOf(*things);
  }
  static std::string Rest(tIIteratorImpl<IThing>& iterator) {
    std::string names;
    Ref<IThing> thing;
    while (iterator.Next(thing.Put()) == S_OK) names += thing->Name();
    EXPECT_FALSE(thing);
    return names;
  }

  const std::int64_t m_liveBefore = cor::LiveObjectCount();
  Ref<CThings> things = MakeRef<CThings>();
  Ref<CPlainThings> plain = MakeRef<CPlainThings>();
};

TEST_F(Collections, NamesAreMadeUniqueInOrderOfAddition) {
  const std::pair<std::vector<std::u16string_view>, const char*> kCases[] = {
      {{u"A", u"A", u"A"}, "A|A_1|A_2"},
      {{u"A_1", u"A", u"A"}, "A_1|A|A_2"},
      {{u"", u"", u"NoName", u""}, "NoName|NoName_1|NoName_2|NoName_3"},
      {{u"A", u"a", u"A"}, "A|a|A_1"},
      {{u"A", u"A", u"A_1", u"A"}, "A|A_1|A_1_1|A_2"},
      {{u" ", u" "}, " | _1"},
  };
  for (const auto& [requested, expected] : kCases) {
    SCOPED_TRACE(expected);
    const auto collection = MakeRef<CThings>();
    for (const auto name : requested) {
      const std::string told = collection->AddThing(name);
      EXPECT_EQ(told, ItemNamed(*collection, cor::FromUtf8(told)));
    }
    EXPECT_EQ(expected, NamesOf(*collection));
  }
}

TEST(SuffixCounters, TryTheFirstNumberASecondTime) {
  SuffixCounters counters;
  EXPECT_EQ(1U, counters.CounterOf(SuffixCounters::kDefaultName));
  EXPECT_EQ(0U, counters.CounterOf(u"A"));

  std::string tried;
  const auto taken = [&tried](std::u16string_view name) {
    tried += cor::ToUtf8(name) + " ";
    return name == u"A" || name == u"A_1";
  };
  EXPECT_TRUE(counters.MakeUnique(u"A", taken).EqualsExact(u"A_2"));
  EXPECT_EQ("A A_1 A_1 A_2 ", tried);
  EXPECT_EQ(3U, counters.CounterOf(u"A"));
  EXPECT_EQ(0U, counters.CounterOf(u"A_1"));
}

TEST_F(Collections, ClearForgetsNamesButNotCounters) {
  Add({u"A", u"A", u"A"});
  ASSERT_EQ(S_OK, things->Clear());
  EXPECT_EQ("", NamesOf(*things));
  EXPECT_EQ("invalid", ItemNamed(*things, u"A"));
  EXPECT_EQ("A_1|A|A_3", Add({u"A_1", u"A", u"A"}));
}

TEST_F(Collections, RefusedItemsAreNoMembers) {
  EXPECT_EQ(E_POINTER, things->Add(nullptr, u"A"));
  EXPECT_EQ(E_POINTER, plain->Append(nullptr));

  const auto unwilling = MakeRef<CThing>(E_ACCESSDENIED);
  WString name = u"untouched";
  EXPECT_EQ(E_ACCESSDENIED, things->Add(unwilling.Get(), u"A", &name));
  EXPECT_TRUE(name.EqualsExact(u"untouched"));

  things->m_defaultName.clear();
  EXPECT_EQ(E_FAIL, things->Add(MakeRef<CThing>().Get(), u""));
  EXPECT_EQ("A", Add({u"A"}));
}

TEST_F(Collections, IndexesAndNamesOutsideAreRefused) {
  Add({u"A", u"B"});
  for (const std::int32_t index : {-1, 2, INT32_MIN, INT32_MAX}) {
    SCOPED_TRACE(index);
    IThing* thing = reinterpret_cast<IThing*>(8);
    EXPECT_EQ(E_INVALIDARG, things->GetItem(index, &thing));
    EXPECT_EQ(nullptr, thing);
    EXPECT_EQ(E_INVALIDARG, things->RemoveAt(index));
    EXPECT_EQ(E_INVALIDARG, things->Swap(index, 0));
    EXPECT_EQ(E_INVALIDARG, things->Swap(0, index));
  }
  for (const std::u16string_view name : {u"", u"a", u"A_1"}) {
    EXPECT_EQ("invalid", ItemNamed(*things, name));
    EXPECT_EQ(E_INVALIDARG, things->RemoveByName(name));
    bool exists = true;
    EXPECT_EQ(S_OK, things->Exists(name, &exists));
    EXPECT_FALSE(exists);
  }
  EXPECT_EQ(E_POINTER, things->GetItem(0, nullptr));
  EXPECT_EQ(E_POINTER, things->GetItemByName(u"A", nullptr));
  EXPECT_EQ(E_POINTER, things->GetCount(nullptr));
  EXPECT_EQ(E_POINTER, things->GetIterator(nullptr));
  EXPECT_EQ(E_POINTER, things->Exists(u"A", nullptr));
  EXPECT_EQ(E_POINTER, things->Rename(u"A", u"C", nullptr));
  EXPECT_EQ("A|B", NamesOf(*things));
}

TEST_F(Collections, RemovalFreesTheNameAndSwapTakesItAlong) {
  Add({u"A", u"B", u"C", u"D"});
  EXPECT_EQ(S_OK, things->RemoveAt(1));
  EXPECT_EQ(S_OK, things->RemoveByName(u"D"));
  EXPECT_EQ("invalid", ItemNamed(*things, u"B"));
  EXPECT_EQ("A|C|B", Add({u"B"}));
  EXPECT_EQ(S_OK, things->Swap(0, 2));
  EXPECT_EQ(S_OK, things->Swap(1, 1));
  EXPECT_EQ("B|C|A", NamesOf(*things));
  for (const auto* name : {u"A", u"B", u"C"}) {
    EXPECT_EQ(cor::ToUtf8(WString(name)), ItemNamed(*things, name));
  }
  EXPECT_EQ(S_OK, things->RemoveByName(u"A"));
  EXPECT_EQ("B|C", NamesOf(*things));
}

TEST_F(Collections, RenameKeepsThePlace) {
  Add({u"A", u"B", u"C"});
  const struct {
    std::u16string_view from, to;
    Result code;
    std::string_view unique;
  } rows[] = {
      // Each goes on from the one before. The things keep the names that they were told.
      {u"B", u"B", S_OK, "B"},         {u"X", u"X", S_OK, "X"},  // unknown
      {u"B", u"Z", S_OK, "Z"},         {u"Z", u"z", S_OK, "z"},
      {u"z", u"A", S_OK, "A_1"},    // taken
      {u"A_1", u"A", S_OK, "A_2"},  // its own number is taken, too
      {u"B", u"Y", E_INVALIDARG, ""},  {u"", u"Y", E_INVALIDARG, ""},
      {u"A_2", u"", E_INVALIDARG, ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(cor::ToUtf8(row.from) + " to " + cor::ToUtf8(row.to));
    WString unique = u"before";
    EXPECT_EQ(row.code, things->Rename(row.from, row.to, &unique));
    EXPECT_EQ(row.unique, cor::ToUtf8(unique));
  }
  EXPECT_EQ("B", ItemNamed(*things, u"A_2"));
  for (const auto* name : {u"B", u"Z", u"z", u"A_1"})
    EXPECT_EQ("invalid", ItemNamed(*things, name));
  EXPECT_EQ("A|B|C", NamesOf(*things));
  // The place under the new name can be swapped and removed like any other.
  EXPECT_EQ(S_OK, things->Swap(0, 1));
  EXPECT_EQ("B", ItemNamed(*things, u"A_2"));
  EXPECT_EQ(S_OK, things->RemoveAt(0));
  EXPECT_EQ("invalid", ItemNamed(*things, u"A_2"));
}

TEST_F(Collections, HooksSeeTheItems) {
  FillPlain(3);
  EXPECT_EQ(S_OK, plain->Swap(0, 2));
  EXPECT_EQ(S_OK, plain->RemoveAt(1));
  EXPECT_EQ(S_OK, plain->Clear());
  EXPECT_EQ("swap 3 1;remove 2;", plain->m_hooks);
}

TEST_F(Collections, FacesAreAnsweredFor) {
  EXPECT_TRUE(QueryRef<INamedCollectionImpl<IThing>>(things.Get()));
  EXPECT_TRUE(QueryRef<ICollectionImpl<IThing>>(things.Get()));
  EXPECT_TRUE(QueryRef<ICollectionImpl<IThing>>(plain.Get()));
  EXPECT_FALSE(QueryRef<INamedCollectionImpl<IThing>>(plain.Get()));
}

template <class Iterator>
class Iterators : public Collections {
 protected:
  Ref<tIIteratorImpl<IThing>> Walk() {
    if constexpr (std::is_same_v<Iterator, tBePoIterator<CPlainThings>>) {
      return MakeRef<Iterator>(*plain);
    } else {
      Ref<tIIteratorImpl<IThing>> iterator;
      EXPECT_EQ(S_OK, plain->GetIterator(iterator.Put()));
      return iterator;
    }
  }
};
using BothIterators = ::testing::Types<tIIteratorImpl<IThing>, tBePoIterator<CPlainThings>>;
TYPED_TEST_SUITE(Iterators, BothIterators);

TYPED_TEST(Iterators, WalkSkipAndStartAgain) {
  EXPECT_EQ("", this->Rest(*this->Walk()));
  this->FillPlain(5);
  const auto iterator = this->Walk();
  EXPECT_EQ(E_POINTER, iterator->Next(nullptr));
  EXPECT_EQ(E_POINTER, iterator->Clone(nullptr));
  EXPECT_EQ(S_OK, iterator->Skip(0));
  EXPECT_EQ(S_OK, iterator->Skip(3));
  EXPECT_EQ(E_INVALIDARG, iterator->Skip(-1));
  Ref<tIIteratorImpl<IThing>> clone;
  EXPECT_EQ(S_OK, iterator->Clone(clone.Put()));
  EXPECT_EQ("45", this->Rest(*iterator));
  EXPECT_EQ(S_FALSE, iterator->Skip(1));
  EXPECT_EQ("45", this->Rest(*clone));
  EXPECT_EQ(S_OK, iterator->Reset());
  EXPECT_EQ(S_OK, iterator->Skip(5));
  EXPECT_EQ("", this->Rest(*iterator));
  EXPECT_EQ(S_OK, iterator->Reset());
  EXPECT_EQ(S_FALSE, iterator->Skip(INT32_MAX));
  this->FillPlain(1);
  EXPECT_EQ("1", this->Rest(*iterator));
  EXPECT_EQ(S_OK, iterator->Reset());
  this->plain.Reset();  // the iterator holds what it walks
  EXPECT_EQ("123451", this->Rest(*iterator));
}

TEST_F(Collections, WalkingSurvivesChanges) {
  FillPlain(6);
  Ref<tIIteratorImpl<IThing>> iterator;
  ASSERT_EQ(S_OK, plain->GetIterator(iterator.Put()));
  ASSERT_EQ(S_OK, iterator->Skip(3));   // behind "3"
  ASSERT_EQ(S_OK, plain->RemoveAt(2));  // the one just given
  ASSERT_EQ(S_OK, plain->RemoveAt(0));  // one before
  ASSERT_EQ(S_OK, plain->RemoveAt(2));  // "5", still to come
  FillPlain(1);
  EXPECT_EQ("461", Rest(*iterator));

  ASSERT_EQ(S_OK, plain->Clear());
  FillPlain(2);
  EXPECT_EQ("12", Rest(*iterator));
}

/// Makes its items on demand; the second can't be made.
class COnDemand final : public cor::Counted<IUnknown> {
 public:
  using Item = IThing;
  Result GetItem(std::int32_t index, IThing** out) {
    *out = nullptr;
    if (index == 1 || index >= 3) return E_INVALIDARG;
    return MakeRef<CThing>().CopyTo(out);
  }
  Result GetCount(std::int32_t* out) {
    *out = 3;
    return S_OK;
  }

 private:
  ~COnDemand() override = default;
};

TEST_F(Collections, AnItemThatCannotBeMadeIsReportedOnce) {
  const auto source = MakeRef<COnDemand>();
  const Ref<tIIteratorImpl<IThing>> iterator = MakeRef<tBePoIterator<COnDemand>>(*source);
  Ref<IThing> thing;
  for (const Result expected : {S_OK, E_INVALIDARG, S_OK, S_FALSE, S_FALSE}) {
    EXPECT_EQ(expected, iterator->Next(thing.Put()));
    EXPECT_EQ(expected == S_OK, bool(thing));
  }
}

TEST_F(Collections, ManyItemsStayConsistent) {
  constexpr std::int32_t kCount = 20'000;
  for (std::int32_t i = 0; i < kCount; ++i) things->AddThing(i % 2 == 0 ? u"even" : u"odd");
  EXPECT_EQ("odd_9999", ItemNamed(*things, u"odd_9999"));
  // Every third goes, by index and by name in turn; the others must still be found by both.
  for (std::int32_t i = kCount - 1; i >= 0; i -= 3) {
    Ref<IThing> thing;
    ASSERT_EQ(S_OK, things->GetItem(i, thing.Put()));
    ASSERT_EQ(S_OK, i % 2 == 0 ? things->RemoveAt(i)
                               : things->RemoveByName(cor::FromUtf8(thing->Name())));
    ASSERT_EQ("invalid", ItemNamed(*things, cor::FromUtf8(thing->Name())));
  }
  std::int32_t count = 0;
  ASSERT_EQ(S_OK, things->GetCount(&count));
  ASSERT_EQ(13'333, count);
  for (std::int32_t i = 0; i < count; ++i) {
    Ref<IThing> thing;
    ASSERT_EQ(S_OK, things->GetItem(i, thing.Put()));
    ASSERT_EQ(thing->Name(), ItemNamed(*things, cor::FromUtf8(thing->Name())));
  }
}

}  // namespace
}  // namespace hv::vex::easyImpl
