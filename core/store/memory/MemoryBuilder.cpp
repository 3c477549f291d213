// core/store/memory/MemoryBuilder.cpp - filling tables and resolving links in both directions.
#include "core/store/memory/MemoryBuilder.h"

#include <algorithm>
#include <span>
#include <utility>

#include "core/store/memory/Failure.h"
#include "core/store/memory/MemoryStoreAccess.h"
#include "core/store/memory/MemoryTable.h"
#include "store/core/Exception.h"

namespace hv::vex::engine {

/// A link as the source told it: the side that told it and the id it named.
struct MemoryBuilder::Pending {
  RecordId target;
  Row row;
  bool isBackward;  // told by the second of the two relations
};

/// Two relations that are one.
struct MemoryBuilder::RelationPair {
  EntityId firstEntity;
  std::int32_t first;
  EntityId secondEntity;
  std::int32_t second;
  std::vector<Pending> pending;  // in order of appearance, of both sides
};

namespace {

struct RowPair {
  Row from;
  Row to;
};

/// Lists of one direction by a counting sort, which keeps the order of appearance.
template <Row RowPair::*From, Row RowPair::*To>
void SetLists(LinkColumn& column, std::size_t rows, const std::vector<RowPair>& links) {
  if (links.empty()) return;
  std::vector<std::uint32_t> starts(rows + 1);
  for (const RowPair& link : links) ++starts[link.*From + 1];
  for (std::size_t i = 1; i <= rows; ++i) starts[i] += starts[i - 1];
  std::vector<Row> targets(links.size());
  for (const RowPair& link : links) targets[starts[link.*From]++] = link.*To;
  // Every start has moved to the next row's start.
  starts.pop_back();
  starts.insert(starts.begin(), 0);
  column.SetLists(std::move(starts), std::move(targets));
}

/// Removes repetitions where neither side is to-one; the first of equal links stays.
void RemoveRepeated(std::vector<RowPair>& links, std::size_t fromRows, std::size_t toRows) {
  std::vector<std::uint32_t> starts(fromRows + 1);
  for (const RowPair& link : links) ++starts[link.from + 1];
  for (std::size_t i = 1; i <= fromRows; ++i) starts[i] += starts[i - 1];
  std::vector<std::uint32_t> order(links.size());
  for (std::size_t i = 0; i < links.size(); ++i) {
    order[starts[links[i].from]++] = static_cast<std::uint32_t>(i);
  }
  std::vector<Row> lastFrom(toRows, kNoRow);
  constexpr Row kRepeated = kNoRow;
  for (const std::uint32_t i : order) {
    RowPair& link = links[i];
    if (lastFrom[link.to] == link.from) {
      link.to = kRepeated;
    } else {
      lastFrom[link.to] = link.from;
    }
  }
  std::erase_if(links, [](const RowPair& link) { return link.to == kRepeated; });
}

/// Partners of a to-one side; empty for a to-many side.
class Singles final {
 public:
  Singles(bool isToMany, std::size_t rows) : m_partners(isToMany ? 0 : rows, kNoRow) {}
  [[nodiscard]] bool IsUsed() const { return !m_partners.empty(); }
  [[nodiscard]] bool IsTaken(Row row) const { return IsUsed() && m_partners[row] != kNoRow; }
  [[nodiscard]] bool Is(Row row, Row partner) const {
    return IsUsed() && m_partners[row] == partner;
  }
  void Set(Row row, Row partner) {
    if (IsUsed()) m_partners[row] = partner;
  }
  std::vector<Row> Take() { return std::move(m_partners); }

 private:
  std::vector<Row> m_partners;
};

}  // namespace

MemoryBuilder::MemoryBuilder(std::shared_ptr<const Model> model)
    : m_store(std::make_unique<MemoryStore>(std::move(model), MemoryPersistence())) {
  const Model& all = *m_store->GetModel();
  m_sides.resize(all.Entities().size());
  m_isOpen.resize(all.Entities().size());
  for (const Entity& entity : all.Entities()) {
    if (entity.isBase) continue;
    auto& sides = m_sides[entity.id];
    sides.resize(entity.relations.size());
    for (std::int32_t r = 0; r < static_cast<std::int32_t>(sides.size()); ++r) {
      // Every other relation has an inverse, which names it back: the model sees to that.
      const Relation& relation = entity.relations[static_cast<std::size_t>(r)];
      if (relation.IsMixed()) continue;
      const std::pair inverse(relation.target, relation.inverse);
      Side& side = sides[static_cast<std::size_t>(r)];
      if (inverse < std::pair(entity.id, r)) {
        side = {m_sides[inverse.first][static_cast<std::size_t>(inverse.second)].pair, true};
      } else {
        side = {static_cast<std::uint32_t>(m_pairs.size()), false};
        m_pairs.push_back({entity.id, r, inverse.first, inverse.second, {}});
      }
    }
  }
}

MemoryBuilder::~MemoryBuilder() = default;

const Model& MemoryBuilder::GetModel() const { return *m_store->GetModel(); }

MemoryTable& MemoryBuilder::Table(EntityId entity) { return *m_store->m_tables[entity]; }

std::optional<Row> MemoryBuilder::AppendRecord(EntityId entity, RecordId id) {
  const Row row = Table(entity).Append(id);
  if (row == kNoRow) return std::nullopt;
  return row;
}

Row MemoryBuilder::BeginRecord(EntityId entity) {
  m_isOpen[entity] = true;
  return static_cast<Row>(Table(entity).Rows());
}

bool MemoryBuilder::EndRecord(EntityId entity, RecordId id) {
  m_isOpen[entity] = false;
  if (Table(entity).Append(id) != kNoRow) return true;
  Table(entity).AppendDead();
  return false;
}

RecordId MemoryBuilder::EndRecordWithNewId(EntityId entity) {
  const RecordId id = Table(entity).NewId();
  EndRecord(entity, id);
  return id;
}

bool MemoryBuilder::SetInteger(EntityId entity, Row row, std::int32_t attribute,
                               std::int64_t value) {
  return attribute != Table(entity).IdAttribute() &&
         Table(entity).At(attribute).SetInteger(row, value);
}

bool MemoryBuilder::SetReal(EntityId entity, Row row, std::int32_t attribute, double value) {
  return Table(entity).At(attribute).SetReal(row, value);
}

bool MemoryBuilder::SetText(EntityId entity, Row row, std::int32_t attribute,
                            std::u16string_view text) {
  return Table(entity).At(attribute).SetText(row, text);
}

bool MemoryBuilder::SetValue(EntityId entity, Row row, std::int32_t attribute, const Value& value) {
  if (attribute == Table(entity).IdAttribute()) return false;
  const LongAttribute which = LongAttributeOf(GetModel(), entity, attribute);
  if (which == LongAttribute::None) return Table(entity).At(attribute).SetValue(row, value);
  if (which == LongAttribute::Flags && value.IsSet() && value.type != OdsType::Short) return false;
  std::shared_ptr<const InMemoryValues> values;
  try {
    if (value.IsSet()) values = InMemoryValues::FromValue(value);
  } catch (const Exception&) {
    return false;
  }
  LocalColumn& column = Table(entity).MakeLocalColumn(row);
  (which == LongAttribute::Values ? column.values : column.flags) = {std::move(values), nullptr};
  return true;
}

void MemoryBuilder::AddLink(EntityId entity, Row row, std::int32_t relation, RecordId target) {
  const Side side = m_sides[entity][static_cast<std::size_t>(relation)];
  m_pairs[side.pair].pending.push_back({target, row, side.isBackward});
}

void MemoryBuilder::SetValues(EntityId entity, Row row,
                              std::shared_ptr<const InMemoryValues> values) {
  Table(entity).MakeLocalColumn(row).values = {std::move(values), nullptr};
}

void MemoryBuilder::SetValues(EntityId entity, Row row, ValueProvider provider) {
  Table(entity).MakeLocalColumn(row).values = {nullptr, std::move(provider)};
}

void MemoryBuilder::SetFlags(EntityId entity, Row row,
                             std::shared_ptr<const InMemoryValues> flags) {
  Table(entity).MakeLocalColumn(row).flags = {std::move(flags), nullptr};
}

void MemoryBuilder::SetFlags(EntityId entity, Row row, ValueProvider provider) {
  Table(entity).MakeLocalColumn(row).flags = {nullptr, std::move(provider)};
}

bool MemoryBuilder::SetInstanceAttribute(EntityId entity, Row row,
                                         const InstanceAttribute& attribute) {
  return Table(entity).InstanceValues().Set(row, attribute);
}

void MemoryBuilder::AddWarning(std::u16string text) { m_store->AddWarning(std::move(text)); }

void MemoryBuilder::SetContextValue(std::u16string_view name, std::u16string_view text) {
  for (auto& [knownName, knownText] : m_store->m_contextValues) {
    if (knownName != name) continue;
    knownText = text;
    return;
  }
  m_store->m_contextValues.emplace_back(name, text);
}

/// Joins what both sides of one relation told, in the order in which it was told.
void MemoryBuilder::ResolveLinks(RelationPair& pair, const DropCallback& onDropped) {
  if (pair.pending.empty()) return;
  MemoryTable& firstTable = Table(pair.firstEntity);
  MemoryTable& secondTable = Table(pair.secondEntity);
  LinkColumn& forward = firstTable.Links(pair.first);
  LinkColumn& backward = secondTable.Links(pair.second);
  const std::size_t firstRows = firstTable.Rows();
  const std::size_t secondRows = secondTable.Rows();
  const bool isSymmetric = &backward == &forward;

  Singles forwardSingles(forward.IsToMany(), firstRows);
  Singles backwardSingles(isSymmetric || backward.IsToMany(), secondRows);
  std::vector<RowPair> links;
  links.reserve(pair.pending.size());
  for (const Pending& told : pair.pending) {
    const MemoryTable& teller = told.isBackward ? secondTable : firstTable;
    const MemoryTable& named = told.isBackward ? firstTable : secondTable;
    if (!teller.Alive().Has(told.row)) continue;
    const auto drop = [&](DroppedLink::Reason reason) {
      if (!onDropped) return;
      const EntityId entity = told.isBackward ? pair.secondEntity : pair.firstEntity;
      onDropped({reason,
                 {entity, teller.IdAt(told.row)},
                 told.isBackward ? pair.second : pair.first,
                 told.target});
    };
    const Row target = named.Find(told.target);
    if (target == kNoRow) {
      drop(DroppedLink::Reason::NoSuchTarget);
      continue;
    }
    const RowPair link = told.isBackward ? RowPair{target, told.row} : RowPair{told.row, target};
    if (forwardSingles.Is(link.from, link.to) || backwardSingles.Is(link.to, link.from)) continue;
    const bool isTaken = forwardSingles.IsTaken(link.from) || backwardSingles.IsTaken(link.to) ||
                         (isSymmetric && forwardSingles.IsTaken(link.to));
    if (isTaken) {
      drop(DroppedLink::Reason::Taken);
      continue;
    }
    forwardSingles.Set(link.from, link.to);
    backwardSingles.Set(link.to, link.from);
    if (isSymmetric) forwardSingles.Set(link.to, link.from);
    links.push_back(link);
    if (isSymmetric && link.from != link.to) links.push_back({link.to, link.from});
  }
  pair.pending = {};

  if (!forwardSingles.IsUsed() && !backwardSingles.IsUsed()) {
    RemoveRepeated(links, firstRows, secondRows);
  }
  if (forwardSingles.IsUsed()) {
    forward.SetSingles(forwardSingles.Take());
  } else {
    SetLists<&RowPair::from, &RowPair::to>(forward, firstRows, links);
  }
  if (isSymmetric) return;
  if (backwardSingles.IsUsed()) {
    backward.SetSingles(backwardSingles.Take());
  } else {
    SetLists<&RowPair::to, &RowPair::from>(backward, secondRows, links);
  }
}

std::unique_ptr<MemoryStore> MemoryBuilder::Finish(MemoryPersistence persistence,
                                                   const DropCallback& onDropped) {
  if (std::find(m_isOpen.begin(), m_isOpen.end(), true) != m_isOpen.end()) {
    Fail(errc::kInternal, {u"a record is still open"});
  }
  for (RelationPair& pair : m_pairs) ResolveLinks(pair, onDropped);
  for (const auto& table : m_store->m_tables) {
    if (table != nullptr) table->ShrinkToFit();
  }
  m_store->m_persistence = std::move(persistence);
  return std::move(m_store);
}

}  // namespace hv::vex::engine
