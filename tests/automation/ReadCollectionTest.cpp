// automation/ReadCollectionTest.cpp - the wrapper around a logic collection, by code and by name.
#include "automation/ReadCollection.h"

#include "ToyObjects.h"
#include "automation/rows/Collections.h"

namespace hv::automation::toys {
namespace {

/// A logic item: what wrappers are made around.
class Block final : public cor::Counted<IUnknown> {
 public:
  explicit Block(std::u16string_view name) : m_name(name) {}
  WString m_name;

 private:
  ~Block() override = default;
};

class BlockIterator;

class Blocks final : public cor::Counted<IUnknown> {
 public:
  explicit Blocks(std::vector<Ref<Block>> items) : m_items(std::move(items)) {}
  Result GetItem(std::int32_t index, Block** out) {
    HV_RETURN_CODE_IF(index < 0 || static_cast<std::size_t>(index) >= m_items.size(), E_INVALIDARG);
    return m_items[static_cast<std::size_t>(index)].CopyTo(out);
  }
  Result GetItemByName(std::u16string_view name, Block** out) {
    for (const Ref<Block>& item : m_items) {
      if (item->m_name.EqualsExact(name)) return item.CopyTo(out);
    }
    return E_INVALIDARG;
  }
  Result GetCount(std::int32_t* out) {
    *out = static_cast<std::int32_t>(m_items.size());
    return m_count;
  }
  Result GetIterator(BlockIterator** out);
  Result m_count = S_OK;

 private:
  ~Blocks() override = default;
  std::vector<Ref<Block>> m_items;
};

class BlockIterator final : public cor::Counted<IUnknown> {
 public:
  explicit BlockIterator(Ref<Blocks> blocks) : m_blocks(std::move(blocks)) {}
  Result Next(Block** out) {
    return Failed(m_blocks->GetItem(m_next, out)) ? S_FALSE : (++m_next, S_OK);
  }
  Result Reset() {
    m_next = 0;
    return S_OK;
  }

 private:
  ~BlockIterator() override = default;
  Ref<Blocks> m_blocks;
  std::int32_t m_next = 0;
};

Result Blocks::GetIterator(BlockIterator** out) {
  *out = new BlockIterator(Ref<Blocks>::Share(this));
  return S_OK;
}

class IToys : public IDispatch {
 public:
  static constexpr Iid kIid = MakeIid("toys::IToys");
  virtual Result Item(const Variant& nameOrIndex, IToy** out) = 0;
  virtual Result get_Count(std::int32_t* out) = 0;
  virtual Result get__NewEnum(IVariantIterator** out) = 0;

 protected:
  ~IToys() = default;
};

template <std::int32_t First>
struct BlockTraits {
  using Collection = Blocks;
  using Item = Block;
  using Face = IToy;
  using Iterator = BlockIterator;
  static constexpr std::int32_t kFirstIndex = First;
  static Result Wrap(Block& block, IToy** out) {
    *out = new CToyInt(block.m_name);
    return S_OK;
  }
};

constexpr auto kToysRows =
    MakeRows(Method<&IToys::Item>(u"Item", kDispIdValue, rows::kCollectionItem),
             Get<&IToys::get_Count>(u"Count", 1, rows::kElementsCount),
             Get<&IToys::get__NewEnum>(u"_NewEnum", kDispIdNewEnum, rows::kElementsNewEnum));
constexpr DispatchMap kToysMap(u"Toys", kToysRows);

template <std::int32_t First>
class CToysInt final : public tReadCollectionInt<CToysInt<First>, BlockTraits<First>, IToys> {
 public:
  static const DispatchMap& Map() { return kToysMap; }
  explicit CToysInt(Ref<Blocks> blocks)
      : tReadCollectionInt<CToysInt<First>, BlockTraits<First>, IToys>(std::move(blocks)) {}

 private:
  ~CToysInt() override = default;
};

class ReadCollection : public NoLeaks {
 protected:
  static Ref<Blocks> MakeBlocks() {
    return MakeRef<Blocks>(std::vector<Ref<Block>>{MakeRef<Block>(u"red"), MakeRef<Block>(u"7")});
  }
  static std::string NameOf(const Variant& toy) {
    Variant name;
    if (!toy.Is(VT_DISPATCH) || !toy.AsObject()) return "(none)";
    EXPECT_EQ(S_OK, CallByName(*toy.AsObject(), u"Name", {}, &name));
    return Utf8(name.AsText());
  }
};

TEST_F(ReadCollection, FindsItemsByNameAndByIndexOrRaises) {
  struct Case {
    Variant key;
    const char* fromZero;  // the name found, or the message
    const char* fromOne;
  };
  const char* const kRefused = "The argument passed to Item must be either a string or an integer.";
  const Case cases[] = {
      {Variant::I4(0), "red", "The index 0 does not correspond to a member of the collection."},
      {Variant::I4(1), "7", "red"},
      {Variant::R8(1.0), "7", "red"},
      {Variant::Text(u"red"), "red", "red"},
      {Variant::Text(u"7"), "7", "7"},
      {Variant::Text(u"RED"), "The index RED does not correspond to a member of the collection.",
       "The index RED does not correspond to a member of the collection."},
      {Variant::I4(-1), "The index -1 does not correspond to a member of the collection.",
       "The index -1 does not correspond to a member of the collection."},
      {Variant::I8(1LL << 40),
       "The index 1099511627776 does not correspond to a member of the collection.",
       "The index 1099511627776 does not correspond to a member of the collection."},
      {Variant::Null(), kRefused, kRefused},
      {Variant(), kRefused, kRefused},
      {Variant::Array({}), kRefused, kRefused},
  };
  const auto zero = MakeRef<CToysInt<0>>(MakeBlocks());
  const auto one = MakeRef<CToysInt<1>>(MakeBlocks());
  const auto outcome = [](IDispatch& toys, const Variant& key) {
    Variant result;
    ErrorInfo error;
    const Result rc = CallByName(toys, u"Item", {key}, &result, &error);
    return Failed(rc) ? Utf8(error.text) : NameOf(result);
  };
  for (const Case& c : cases) {
    EXPECT_EQ(c.fromZero, outcome(*zero, c.key));
    EXPECT_EQ(c.fromOne, outcome(*one, c.key));
  }
}

TEST_F(ReadCollection, WalksItsItemsAndStaysAtTheEnd) {
  Variant walker;
  {
    const auto toys = MakeRef<CToysInt<0>>(MakeBlocks());
    ASSERT_EQ(S_OK, toys->Invoke(kDispIdNewEnum, CallKind::Get, {}, &walker, nullptr));
  }
  ASSERT_TRUE(walker.Is(VT_UNKNOWN));
  const Ref<IVariantIterator> iterator = QueryRef<IVariantIterator>(walker.AsUnknown());
  ASSERT_TRUE(iterator);
  for (int round = 0; round < 2; ++round) {
    Variant item = Variant::I4(1);
    ASSERT_EQ(S_OK, iterator->Next(&item));
    EXPECT_EQ("red", NameOf(item));
    ASSERT_EQ(S_OK, iterator->Next(&item));
    EXPECT_EQ("7", NameOf(item));
    EXPECT_EQ(S_FALSE, iterator->Next(&item));
    EXPECT_TRUE(item.IsEmpty());
    EXPECT_EQ(S_FALSE, iterator->Next(&item));
    EXPECT_EQ(S_OK, iterator->Reset());
  }
  EXPECT_EQ(E_POINTER, iterator->Next(nullptr));
}

TEST_F(ReadCollection, CountsAndRefusesNullOutPointers) {
  const auto blocks = MakeBlocks();
  const auto toys = MakeRef<CToysInt<0>>(blocks);
  Variant count;
  ErrorInfo error;
  ASSERT_EQ(S_OK, CallByName(*toys, u"count", {}, &count));
  EXPECT_EQ(2, count.AsInt64());
  blocks->m_count = E_NOTIMPL;
  EXPECT_EQ(DISP_E_EXCEPTION, CallByName(*toys, u"count", {}, &count, &error));
  EXPECT_EQ(254, error.number);
  EXPECT_EQ(E_POINTER, toys->Item(Variant::I4(0), nullptr));
  EXPECT_EQ(E_POINTER, toys->get_Count(nullptr));
  EXPECT_EQ(E_POINTER, toys->get__NewEnum(nullptr));
}

}  // namespace
}  // namespace hv::automation::toys
