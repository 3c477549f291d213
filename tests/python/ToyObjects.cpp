#include "tests/python/ToyObjects.h"

#include <map>

#include "automation/DispatchError.h"
#include "automation/DispatchImpl.h"
#include "automation/EventSource.h"

namespace hv::toys {

namespace {

using namespace automation;  // NOLINT: the vocabulary of the tables below

template <class T>
Result Give(std::type_identity_t<T> value, T* out) {
  *out = std::move(value);
  return S_OK;
}

class CWalk final : public cor::Counted<IVariantIterator> {
 public:
  explicit CWalk(std::vector<Variant> items) : m_items(std::move(items)) {}

  Result Next(Variant* item) override {
    item->Clear();
    if (m_next >= m_items.size()) return S_FALSE;
    *item = m_items[m_next++];
    return item->Is(VT_ERROR) ? E_FAIL : S_OK;
  }
  Result Reset() override { return Give(0, &m_next); }

 private:
  std::vector<Variant> m_items;
  std::size_t m_next = 0;
};

/// The members that make a collection; a map leaves some of them out.
class CListInt final : public DispatchImpl<CListInt, IDispatch> {
 public:
  static const DispatchMap& Map();
  CListInt(const DispatchMap& map, std::vector<Variant> items)
      : m_map(map), m_items(std::move(items)) {}

  Result GetIdOfName(std::u16string_view name, std::int32_t* id) override {
    return FindMemberId(m_map, name, id);
  }
  Result Invoke(std::int32_t id, CallKind kinds, std::span<const Variant> args, Variant* result,
                ErrorInfo* error) override {
    return InvokeMember(m_map, *this, id, kinds, args, result, error);
  }
  std::uint32_t GetMemberCount() override { return CountMembers(m_map); }
  Result GetMember(std::uint32_t index, MemberInfo* info) override {
    return DescribeMember(m_map, index, info);
  }
  std::u16string_view GetClassName() override { return m_map.className; }

  Result Item(std::int32_t index, Variant* out) {
    if (index < 0 || index >= std::ssize(m_items)) {
      ThrowDispatchError(215, u"The index doesn't correspond to a member of the collection.");
    }
    *out = m_items[static_cast<std::size_t>(index)];
    return S_OK;
  }
  Result put_Item(std::int32_t index, const Variant& value) {
    m_items.at(static_cast<std::size_t>(index)) = value;
    return S_OK;
  }
  Result get_Count(std::int32_t* out) {
    return Give(static_cast<std::int32_t>(m_items.size()), out);
  }
  Result Exists(const WString& name, std::int32_t* out) {
    return Give(name == u"known" ? 1 : 0, out);
  }
  Result get__NewEnum(IVariantIterator** out) { return Give(new CWalk(m_items), out); }

 private:
  const DispatchMap& m_map;
  std::vector<Variant> m_items;
};

using L = CListInt;
constexpr auto kListRows = MakeRows(
    Get<&L::Item>(u"Item", 0), Put<&L::put_Item>(u"Item", 0), Get<&L::get_Count>(u"Count", 1),
    Method<&L::Exists>(u"Exists", 2), Get<&L::get__NewEnum>(u"_NewEnum", kDispIdNewEnum));
constexpr DispatchMap kListMap(u"List", kListRows);
constexpr auto kCountedRows = MakeRows(Get<&L::Item>(u"Item", 0), Get<&L::get_Count>(u"Count", 1));
constexpr DispatchMap kCountedMap(u"CountedList", kCountedRows);
constexpr auto kWalkedRows = MakeRows(Get<&L::get__NewEnum>(u"_NewEnum", kDispIdNewEnum));
constexpr DispatchMap kWalkedMap(u"WalkedList", kWalkedRows);
constexpr auto kGetRows = MakeRows(Get<&L::get_Count>(u"Length", 1));
constexpr DispatchMap kPlainMap(u"Plain", kGetRows);

const DispatchMap& CListInt::Map() { return kListMap; }

constexpr std::int32_t kChanged = 1;
constexpr std::int32_t kClosing = 2;
constexpr EventRow kEvents[] = {{u"Changed", kChanged, 2}, {u"Closing", kClosing, 1}};

constexpr std::int32_t kMessageEmpty = 360;
constexpr auto kNameErrors = Errors(u"Name", On(E_INVALIDARG, kMessageEmpty));

class CToyInt final : public DispatchImpl<CToyInt, IDispatch, IEventSource> {
 public:
  static const DispatchMap& Map();

  // IEventSource
  Result Advise(IEventSink* sink, std::uint32_t* cookie) override {
    return m_events.Advise(sink, cookie);
  }
  Result Unadvise(std::uint32_t cookie) override { return m_events.Unadvise(cookie); }
  std::uint32_t GetEventCount() override { return m_events.GetEventCount(); }
  Result GetEvent(std::uint32_t index, MemberInfo* info) override {
    return m_events.GetEvent(index, info);
  }

  Result get_Name(WString* out) { return Give(m_name, out); }
  Result put_Name(const WString& name) {
    if (name.empty()) return E_INVALIDARG;
    m_name = name;
    return S_OK;
  }
  Result put_Secret(const WString& name) { return put_Name(name); }
  Result get_Values(std::int32_t index, Variant* out) { return Give(m_values[index], out); }
  Result put_Values(std::int32_t index, const Variant& value) {
    m_values[index] = value;
    return S_OK;
  }
  Result get_Table(std::int32_t row, std::int32_t column, Variant* out) {
    return get_Values(row * 100 + column, out);
  }
  Result put_Table(std::int32_t row, std::int32_t column, const Variant& value) {
    return put_Values(row * 100 + column, value);
  }
  Result Echo(const Variant& value, Variant* out) { return Give(value, out); }
  Result TypeOf(const Variant& value, std::int32_t* out) { return Give(value.Type(), out); }
  Result Make(std::int32_t type, const Variant& value, Variant* out) {
    return value.ChangeType(static_cast<std::uint16_t>(type), out);
  }
  Result MakeDate(double days, Variant* out) { return Give(Variant::Date(days), out); }
  Result Add(std::int32_t a, std::int32_t b, std::int32_t* out) { return Give(a + b, out); }
  Result Fail(std::int32_t number, const WString& text) { ThrowDispatchError(number, text); }
  Result Remark() { return S_FALSE; }
  Result get_Nothing(IDispatch** out) { return Give(nullptr, out); }
  Result get_Other(IUnknown** out) { return Give(new CWalk({}), out); }
  Result get_Self(IUnknown** out) { return Ref<IEventSource>::Share(this).CopyTo(out); }
  Result List(const WString& kind, const Variant& items, IDispatch** out) {
    const DispatchMap& map = kind == u"counted"  ? kCountedMap
                             : kind == u"walked" ? kWalkedMap
                             : kind == u"plain"  ? kPlainMap
                                                 : kListMap;
    *out = new CListInt(map, items.AsArray());
    return S_OK;
  }
  /// Raises `Changed` with both arguments and gives the answer.
  Result Change(const Variant& a, const Variant& b, Variant* out) {
    const Variant args[] = {a, b};
    m_events.Fire(*static_cast<IDispatch*>(this), kChanged, args, out);
    return S_OK;
  }
  /// Raises `Closing`, whose argument listeners may change, and gives what it became.
  Result Close(const Variant& cancel, Variant* out) {
    *out = cancel;
    const Variant args[] = {Variant::RefTo(out)};
    m_events.Fire(*static_cast<IDispatch*>(this), kClosing, args);
    return S_OK;
  }

 private:
  WString m_name = u"toy";
  std::map<std::int32_t, Variant> m_values;
  EventSource m_events{kEvents};
};

using T = CToyInt;
constexpr auto kToyRows =
    MakeRows(Get<&T::get_Name>(u"Name", 1), Put<&T::put_Name>(u"Name", 1, kNameErrors),
             Put<&T::put_Secret>(u"Secret", 2), Get<&T::get_Values>(u"Values", 3),
             Put<&T::put_Values>(u"Values", 3), Get<&T::get_Table>(u"Table", 4),
             Put<&T::put_Table>(u"Table", 4), Get<&T::get_Values>(u"Slot", 5).Optional(1),
             Put<&T::put_Values>(u"Slot", 5), Method<&T::Echo>(u"Echo", 6),
             Method<&T::TypeOf>(u"TypeOf", 7).Optional(1), Method<&T::Make>(u"Make", 8),
             Method<&T::Add>(u"Add", 9).Optional(1), Method<&T::Fail>(u"Fail", 10),
             Method<&T::Remark>(u"Remark", 11), Get<&T::get_Nothing>(u"Nothing", 12),
             Get<&T::get_Other>(u"Other", 13), Get<&T::get_Self>(u"Self", 14),
             Method<&T::List>(u"List", 15), Method<&T::Change>(u"Change", 16),
             Method<&T::Close>(u"Close", 17), Method<&T::MakeDate>(u"MakeDate", 18));
constexpr DispatchMap kToyMap(u"Toy", kToyRows);

const DispatchMap& CToyInt::Map() { return kToyMap; }

/// `Refuse(code, argument)`.
class CRefuser final : public cor::Counted<IDispatch> {
 public:
  Result GetIdOfName(std::u16string_view, std::int32_t* id) override {
    *id = 1;
    return S_OK;
  }
  Result Invoke(std::int32_t, CallKind, std::span<const Variant> args, Variant*,
                ErrorInfo* error) override {
    error->argument = static_cast<std::int32_t>(args[1].AsInt64());
    return static_cast<Result>(args[0].AsInt64());
  }
  std::uint32_t GetMemberCount() override { return 1; }
  Result GetMember(std::uint32_t, MemberInfo* info) override {
    *info = {u"Refuse", 1, CallKind::Method, 2, 2};
    return S_OK;
  }
  std::u16string_view GetClassName() override { return u"Refuser"; }
};

}  // namespace

Ref<IDispatch> MakeToy() { return MakeRef<CToyInt>(); }
Ref<IDispatch> MakeRefuser() { return MakeRef<CRefuser>(); }

}  // namespace hv::toys
