// automation/DispatchMap.h - the declarative table behind every automation wrapper.
// A wrapper lists its members once, as rows; calling by name, error selection and member listing
// are shared code over that table. Everything here is built and checked by the compiler.
#pragma once

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include <storefabric/Dispatch.h>

#include "automation/DispatchBind.h"
#include "automation/ErrorRows.h"
#include "automation/NameOrder.h"

namespace hv::automation {

/// One way of using one member.
struct MemberRow {
  std::u16string_view name;
  std::int32_t id = kDispIdUnknown;  ///< frozen once published
  CallKind kind = CallKind::None;    ///< exactly one
  std::uint8_t argumentCount = 0;    ///< the new value of a put not counted
  std::uint8_t requiredCount = 0;    ///< the arguments that can't be left out
  CallThunk call = nullptr;
  MemberErrors errors{};

  /// The last `count` arguments may be left out: they arrive as zero, empty, null or, in a
  /// `Variant`, as the missing argument.
  [[nodiscard]] constexpr MemberRow Optional(std::uint8_t count) const {
    MemberRow row = *this;
    row.requiredCount = static_cast<std::uint8_t>(argumentCount - count);
    return row;
  }
};

/// A method: `Result F(inputs...)` or `Result F(inputs..., Out* out)`. The member may be the
/// interface's or the wrapper's own.
template <auto Member>
constexpr MemberRow Method(std::u16string_view name, std::int32_t id, MemberErrors errors = {}) {
  using B = Bind<Member>;
  return {name, id, CallKind::Method, B::kInputs, B::kInputs, &B::Call, errors};
}

/// Reads a property, with or without indexes: `Result F(indexes..., Out* out)`.
template <auto Member>
constexpr MemberRow Get(std::u16string_view name, std::int32_t id, MemberErrors errors = {}) {
  using B = Bind<Member>;
  static_assert(B::kHasOut, "a property that is read needs an out parameter");
  return {name, id, CallKind::Get, B::kInputs, B::kInputs, &B::Call, errors};
}

/// Writes a property: `Result F(indexes..., newValue)`. Takes the id of the `Get` of that name.
template <auto Member>
constexpr MemberRow Put(std::u16string_view name, std::int32_t id, MemberErrors errors = {}) {
  using B = Bind<Member>;
  static_assert(!B::kHasOut && B::kInputs > 0, "a property that is written needs a new value");
  constexpr std::uint8_t kIndexes = B::kInputs - 1;
  return {name, id, CallKind::Put, kIndexes, kIndexes, &B::Call, errors};
}

/// A member whose call by name differs from the typed one: `Result F(Self&, CallFrame&)`, a plain
/// function that takes the arguments as they come. It may call `ThrowDispatchError`.
template <auto Function>
constexpr MemberRow Custom(std::u16string_view name, std::int32_t id, CallKind kind,
                           std::uint8_t argumentCount, MemberErrors errors = {}) {
  return {name, id, kind, argumentCount, argumentCount, &BindCustom<Function>::Call, errors};
}

/// Names are what a script can write: letters, digits and underscores.
constexpr bool IsMemberName(std::u16string_view name) {
  const auto isNameUnit = [](char16_t unit) {
    const char16_t folded = FoldNameUnit(unit);
    return (folded >= u'a' && folded <= u'z') || (folded >= u'0' && folded <= u'9') ||
           folded == u'_';
  };
  return !name.empty() && std::ranges::all_of(name, isNameUnit) &&
         !(name[0] >= u'0' && name[0] <= u'9');
}

/// What is wrong with a list of rows; a table with a problem doesn't compile.
enum class RowProblem : std::uint8_t {
  None,
  BadName,       ///< a name that no script can write
  BadKind,       ///< not exactly one kind
  BadId,         ///< the id that means "no member"
  IdOfTwoNames,  ///< one id under two names
  NameOfTwoIds,  ///< one name under two ids
  KindTwice,     ///< a member that has the same kind twice
  MethodAndGet,  ///< a member that is both a method and a property
  CountsDiffer,  ///< a property that is read and written with different indexes
  BadOptional,   ///< more optional arguments than arguments
};

constexpr RowProblem CheckPair(const MemberRow& a, const MemberRow& b) {
  const bool sameName = CompareNames(a.name, b.name) == 0;
  if (!sameName) return a.id == b.id ? RowProblem::IdOfTwoNames : RowProblem::None;
  if (a.id != b.id) return RowProblem::NameOfTwoIds;
  if (a.kind == b.kind) return RowProblem::KindTwice;
  if (a.kind == CallKind::Method || b.kind == CallKind::Method) return RowProblem::MethodAndGet;
  return a.argumentCount == b.argumentCount ? RowProblem::None : RowProblem::CountsDiffer;
}

constexpr RowProblem CheckRows(std::span<const MemberRow> rows) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const MemberRow& row = rows[i];
    if (!IsMemberName(row.name)) return RowProblem::BadName;
    if (row.kind != CallKind::Method && row.kind != CallKind::Get && row.kind != CallKind::Put) {
      return RowProblem::BadKind;
    }
    if (row.id == kDispIdUnknown) return RowProblem::BadId;
    if (row.requiredCount > row.argumentCount) return RowProblem::BadOptional;
    for (std::size_t j = 0; j < i; ++j) {
      const RowProblem problem = CheckPair(rows[j], row);
      if (problem != RowProblem::None) return problem;
    }
  }
  return RowProblem::None;
}

/// The rows of a map with their indexes by name and by id. Declare it `static constexpr` or
/// `inline constexpr`; maps point into it.
template <std::size_t N>
class DispatchRows {
 public:
  /// Doesn't compile if the rows aren't sound; `CheckRows` tells what is wrong with them.
  explicit consteval DispatchRows(const std::array<MemberRow, N>& rows) : m_rows(rows) {
    if (CheckRows(m_rows) != RowProblem::None) throw CheckRows(m_rows);
    for (std::size_t i = 0; i < N; ++i) m_byName[i] = m_byId[i] = static_cast<std::uint16_t>(i);
    std::ranges::sort(m_byName, [this](std::uint16_t a, std::uint16_t b) {
      const int order = CompareForLookup(m_rows[a].name, m_rows[b].name);
      return order != 0 ? order < 0 : a < b;
    });
    std::ranges::sort(m_byId, [this](std::uint16_t a, std::uint16_t b) {
      return m_rows[a].id != m_rows[b].id ? m_rows[a].id < m_rows[b].id : a < b;
    });
  }

  [[nodiscard]] constexpr std::span<const MemberRow> Rows() const { return m_rows; }
  [[nodiscard]] constexpr std::span<const std::uint16_t> ByName() const { return m_byName; }
  [[nodiscard]] constexpr std::span<const std::uint16_t> ById() const { return m_byId; }

 private:
  std::array<MemberRow, N> m_rows;
  std::array<std::uint16_t, N> m_byName{};
  std::array<std::uint16_t, N> m_byId{};
};

/// Collects rows: `inline constexpr auto kRows = MakeRows(Get<&IFoo::get_Name>(u"Name", 1), ...);`
template <std::same_as<MemberRow>... Rows>
consteval DispatchRows<sizeof...(Rows)> MakeRows(Rows... rows) {
  return DispatchRows<sizeof...(Rows)>(std::array<MemberRow, sizeof...(Rows)>{rows...});
}

/// Gives a text that the wrapper supplies for messages.
using ObjectTextFunction = WString (*)(IDispatch& self, ObjectTextId id);

/// Everything that is known by name of one wrapper class.
struct DispatchMap {
  std::u16string_view className;
  std::span<const MemberRow> rows;
  std::span<const std::uint16_t> byName;
  std::span<const std::uint16_t> byId;
  /// The map whose members this class has as well; own rows come before its rows. Bind rows that
  /// are meant to be shared to the interface: a row bound to another wrapper can't be called here.
  const DispatchMap* base = nullptr;
  /// The member that answers for `kDispIdValue`.
  std::int32_t defaultId = kDispIdUnknown;
  ObjectTextFunction objectText = nullptr;

  template <std::size_t N>
  constexpr DispatchMap(std::u16string_view name, const DispatchRows<N>& table,
                        const DispatchMap* baseMap = nullptr)
      : className(name),
        rows(table.Rows()),
        byName(table.ByName()),
        byId(table.ById()),
        base(baseMap),
        defaultId(baseMap ? baseMap->defaultId : kDispIdUnknown),
        objectText(baseMap ? baseMap->objectText : nullptr) {}

  /// The same map with a default member.
  [[nodiscard]] constexpr DispatchMap WithDefault(std::int32_t id) const {
    DispatchMap map = *this;
    map.defaultId = id;
    return map;
  }
  /// The same map with a member function `WString F(ObjectTextId) const` that supplies texts.
  template <auto Member>
  [[nodiscard]] constexpr DispatchMap WithObjectText() const {
    DispatchMap map = *this;
    map.objectText = &BindObjectText<Member>::Call;
    return map;
  }
};

/// True if a map and its bases agree on names and ids; for a `static_assert` or a test beside a map
/// that extends another.
constexpr bool FitsBase(const DispatchMap& map) {
  for (const DispatchMap* base = map.base; base; base = base->base) {
    for (const MemberRow& own : map.rows) {
      for (const MemberRow& inherited : base->rows) {
        const bool sameName = CompareNames(own.name, inherited.name) == 0;
        if (sameName != (own.id == inherited.id)) return false;
      }
    }
  }
  return true;
}

/// \name What wrappers share: the bodies of the operations of `IDispatch`
/// @{
Result FindMemberId(const DispatchMap& map, std::u16string_view name, std::int32_t* id);
Result InvokeMember(const DispatchMap& map, IDispatch& self, std::int32_t id, CallKind kinds,
                    std::span<const Variant> args, Variant* result, ErrorInfo* error);
std::uint32_t CountMembers(const DispatchMap& map);
Result DescribeMember(const DispatchMap& map, std::uint32_t index, MemberInfo* info);
/// @}

}  // namespace hv::automation
